// Writes tags, ASCII or binary, into a buffer that empties itself into a sink.
//
// ASCII values are written without padding, codes right-aligned in three places. Strings are bytes in the file's
// encoding without line ends or zeros (rx/text/drawing_text.h makes them so).
// After the sink has failed, writing goes on into nothing and finish() gives the failure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/dxf/tags/tag_reader.h"

namespace gc::dxf {

// Where written bytes go.
class ByteSink {
 public:
  virtual ~ByteSink() = default;
  virtual bool write(const char* bytes, std::size_t count) = 0;  // false: no more can be written
};

class StringSink final : public ByteSink {
 public:
  bool write(const char* bytes, std::size_t count) override {
    m_text.append(bytes, count);
    return true;
  }
  [[nodiscard]] std::string& text() { return m_text; }

 private:
  std::string m_text;
};

constexpr std::size_t kMaxChunk = 127;        // bytes of binary data per tag that every reader takes
constexpr std::size_t kMaxBinaryChunk = 255;  // what the length byte of a binary file can say

class TagWriter {
 public:
  // `lineEnd` is for ASCII: "\n" or "\r\n". A binary file's first bytes are written at once.
  TagWriter(ByteSink& sink, FileForm form, std::string_view lineEnd = "\n");
  TagWriter(const TagWriter&) = delete;
  TagWriter& operator=(const TagWriter&) = delete;

  [[nodiscard]] FileForm form() const { return m_form; }
  // Real numbers of ASCII files are rounded to that many decimals.
  static constexpr int kAllDecimals = 16;
  void setDecimals(int decimals) { m_decimals = decimals; }

  // In a binary file the code must be one of the kind written; else nothing is written and isWellFormed() turns false.
  void writeString(int code, std::string_view bytes);
  void writeReal(int code, double value);  // infinities and NaN are written as 0.0 and isWellFormed() turns false
  void writePoint(int code, double x, double y);            // code, code + 10
  void writePoint(int code, double x, double y, double z);  // code, code + 10, code + 20
  void writeInt(int code, std::int64_t value);              // as wide as the code's kind says
  void writeBool(int code, bool value) { writeInt(code, value ? 1 : 0); }
  void writeHandle(int code, std::uint64_t handle);
  void writeBinary(int code, std::string_view bytes);  // in tags of at most kMaxChunk bytes; none for no bytes
  void writeChunk(int code, std::string_view bytes);   // one tag, at most kMaxBinaryChunk bytes

  // Writes a tag as it was read. Between ASCII and binary the value is converted; false when it cannot be (a damaged
  // number), and nothing is written.
  [[nodiscard]] bool writeTag(const Tag& tag);

  // Hands the rest to the sink. False when the sink has failed.
  [[nodiscard]] bool finish();

  [[nodiscard]] bool isWellFormed() const { return m_wellFormed; }
  [[nodiscard]] std::uint64_t bytesWritten() const {
    return m_flushed + static_cast<std::uint64_t>(m_to - m_buffer.get());
  }

 private:
  char* room(std::size_t count);  // room for that many bytes at m_to
  void flush();
  char* putCode(int code, char* to);
  char* putLineEnd(char* to) const;
  bool expect(int code, ValueKind kind);

  ByteSink& m_sink;
  FileForm m_form;
  int m_decimals = kAllDecimals;
  char m_lineEnd[2] = {'\n', 0};
  unsigned m_lineEndSize = 1;
  std::size_t m_size;
  std::unique_ptr<char[]> m_buffer;
  char* m_to;
  char* m_limit;
  std::uint64_t m_flushed = 0;
  bool m_sinkFailed = false;
  bool m_wellFormed = true;
};

}  // namespace gc::dxf
