// Values that need not be written because every reader takes them when they are not there.
#pragma once

#include "tools/dxfdiff/drawing.h"

namespace gc::dxfdiff {

// Whether the class's description leaves this value of the record out, as its default or because other groups say the
// same; for entities also the defaults all of them share. `text` is the value in the spelling of comparisons.
[[nodiscard]] bool isImplied(const Record& record, int code, const std::string& text);

}  // namespace gc::dxfdiff
