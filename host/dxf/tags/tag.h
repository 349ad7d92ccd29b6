// One group of a DXF file: a code and its value, as the bytes of the file.
// Nothing is copied: a tag looks into the file's bytes and is good as long as they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/dxf/tags/group_code.h"

namespace gc::dxf {

struct Tag {
  int code = 0;
  ValueKind kind = ValueKind::String;
  bool isBinaryFile = false;
  std::string_view raw;    // ASCII: the value line without its end; binary: the value's bytes without length or zero
  std::size_t offset = 0;  // of the tag in the file

  // The value of a string, handle or comment in the file's encoding; in an ASCII file the line of any value.
  [[nodiscard]] std::string_view text() const { return raw; }

  // The text without blanks at either end, as names and keywords are compared.
  [[nodiscard]] std::string_view word() const;
  [[nodiscard]] bool is(int wantedCode, std::string_view wantedWord) const {
    return code == wantedCode && word() == wantedWord;
  }

  // The value as a number of the wanted type, whatever the kind says; false, and `value` untouched, when it is none
  // or does not fit. A real with nothing behind the point is taken for an integer.
  [[nodiscard]] bool real(double& value) const;
  [[nodiscard]] bool integer(std::int64_t& value) const;
  [[nodiscard]] bool handle(std::uint64_t& value) const;

  // Appends the bytes of a Binary value; false, and nothing appended, when its digits are damaged.
  [[nodiscard]] bool bytes(std::string& out) const;
};

}  // namespace gc::dxf
