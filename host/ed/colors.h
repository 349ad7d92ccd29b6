// Colours as people type them: BYLAYER, BYBLOCK, 1 to 255, the names of the first seven, RGB:r,g,b or r,g,b. A leading
// underscore, the mark of English words, is passed over.
#pragma once

#include "cm/color.h"
#include "host/rx/view.h"

namespace ed {

[[nodiscard]] bool parseColor(GcView text, GcCmColor& color);
[[nodiscard]] GcText colorText(const GcCmColor& color);

}  // namespace ed
