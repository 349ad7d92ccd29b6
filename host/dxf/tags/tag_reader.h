// Splits the bytes of a DXF file into tags: ASCII or binary, told apart by content.
//
// ASCII lines end with LF, CR LF or CR; the last one need not end. Blanks around codes are skipped, values are given
// as they stand. Binary files have one-byte codes (to R12; 255 announces a two-byte one) or two-byte codes.
// Nothing is allocated; bytes are looked at once, in order. Comments (999) are tags like others.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/dxf/tags/tag.h"

namespace gc::dxf {

enum class FileForm : std::uint8_t { Ascii, Binary8, Binary16 };  // the bits of a binary file's group codes

// How binary files begin, 22 bytes.
inline constexpr char kBinarySentinel[] = {0x41, 0x75, 0x74, 0x6F, 0x43, 0x41, 0x44, 0x20, 0x42, 0x69, 0x6E,
                                           0x61, 0x72, 0x79, 0x20, 0x44, 0x58, 0x46, 0x0D, 0x0A, 0x1A, 0x00};

[[nodiscard]] FileForm formOf(std::string_view file);

enum class ReadStatus : std::uint8_t {
  Tag,        // there is a tag
  End,        // nothing but blanks is left
  Truncated,  // the file ends within a tag; its beginning is at errorOffset()
  BadCode,    // where a group code should stand there is none (errorOffset()); skipToRecord() may find the way back
};

class TagReader {
 public:
  // The bytes must outlive the reader and its tags.
  explicit TagReader(std::string_view file);

  [[nodiscard]] FileForm form() const { return m_form; }

  // Reads the next tag. After anything but Tag, `tag` is untouched and the same answer comes again.
  [[nodiscard]] ReadStatus next(Tag& tag);

  // Reading goes on at `offset`, which must be a tag's.
  void moveTo(std::size_t offset);

  // The tag read last comes again. One tag only.
  void pushBack() { m_at = m_last; }

  // After BadCode in an ASCII file: passes over the line where the code should stand. False in other files and at the
  // end.
  bool skipLine();

  // After BadCode: goes on to the next place where a record begins, a code 0 followed by a name, at or after the
  // damage. False when there is none; then the reader is at the end.
  bool skipToRecord();

  [[nodiscard]] std::size_t offset() const { return static_cast<std::size_t>(m_at - m_begin); }
  [[nodiscard]] std::size_t errorOffset() const { return m_errorOffset; }

  // The number (from 1) of the line at `offset`; 0 for binary files. Counts lines: for reports, cheap when offsets rise.
  [[nodiscard]] std::size_t lineAt(std::size_t offset);

  // True when the last line of an ASCII file lacks its end, so that its value may have been cut short.
  [[nodiscard]] bool lastLineIsOpen() const;

 private:
  ReadStatus nextAscii(Tag& tag);
  ReadStatus nextBinary(Tag& tag);
  bool skipToAsciiRecord();
  bool skipToBinaryRecord();
  const char* lineEnd(const char* from) const;
  ReadStatus fail(ReadStatus status, const char* at);

  const char* m_begin;
  const char* m_end;
  const char* m_at;
  const char* m_last;
  FileForm m_form;
  char m_lineEnd = '\n';
  std::size_t m_errorOffset = 0;
  std::size_t m_countedTo = 0;  // lineAt(): line breaks before this offset ...
  std::size_t m_lines = 0;      // ... were that many
};

}  // namespace gc::dxf
