#include "host/ed/patterns.h"

namespace ed {

namespace {
PatternMatcher g_matcher = nullptr;
}

void setPatternMatcher(PatternMatcher matcher) { g_matcher = matcher; }

bool matchesName(GcView name, GcView pattern) {
  if (g_matcher == nullptr || pattern.find_first_of(GC_T("#@.*?~[]-,`")) == GcView::npos)
    return equalNoCase(name, pattern);
  return g_matcher(upperText(name), upperText(pattern));
}

}  // namespace ed
