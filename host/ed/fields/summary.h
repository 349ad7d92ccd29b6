// What a drawing's author has said of it: title, subject, author, keywords …
#pragma once

#include "host/ed/editor.h"

namespace ed {

// False for a name that is none of them; an empty text where nothing was said.
[[nodiscard]] bool drawingSummary(GcDbDatabase& database, GcView name, GcText& text);

}  // namespace ed
