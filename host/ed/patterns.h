// Names against wild-card patterns. The matcher is the language's (wcmatch), which lies above this folder and is
// registered by it at start.
#pragma once

#include "host/rx/view.h"

namespace ed {

using PatternMatcher = bool (*)(GcView text, GcView pattern);
void setPatternMatcher(PatternMatcher matcher);

// Case does not count. Without a matcher names are compared as they stand.
[[nodiscard]] bool matchesName(GcView name, GcView pattern);

}  // namespace ed
