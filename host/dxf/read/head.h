// The few header settings a reader must know before it reads anything else.
#pragma once

#include <string>
#include <string_view>

#include "host/rx/text/drawing_text.h"

namespace gc::dxf {

struct Head {
  int version = 0;             // GcDb::GcDbDwgVersion; of a file that does not say: R12
  std::string versionText;     // "AC1015"; empty when the file does not say
  std::string codePageText;    // as the file spells it
  std::uint64_t handseed = 0;  // 0 when the file does not say
  DrawingText text;
};

[[nodiscard]] Head readHead(std::string_view file);

// The version a text like "AC1015" names; kDHL_Unknown for any other.
[[nodiscard]] int versionOf(std::string_view text);
// "AC1015".
[[nodiscard]] const char* versionText(int version);

}  // namespace gc::dxf
