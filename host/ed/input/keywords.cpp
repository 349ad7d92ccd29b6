#include "host/ed/input/keywords.h"

#include <vector>

namespace ed {

namespace {

std::vector<GcView> words(GcView text, GCHAR separator) {
  std::vector<GcView> found;
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find(separator, at), text.size());
    if (end > at) found.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return found;
}

bool isCapital(GCHAR unit) { return gcLower(unit) != unit || (unit >= GC_T('0') && unit <= GC_T('9')); }

bool beginsWith(GcView text, GcView start) {
  return text.size() >= start.size() && equalNoCase(text.substr(0, start.size()), start);
}

// "eXit" is met by x, xi, xit, ex, exi, exit; "Yes" by y, ye, yes; "YES" and "yes" by the whole word alone.
bool meets(GcView keyword, GcView typed) {
  if (equalNoCase(keyword, typed)) return true;
  size_t first = 0;
  while (first < keyword.size() && !isCapital(keyword[first])) ++first;
  size_t end = first;
  while (end < keyword.size() && isCapital(keyword[end])) ++end;
  if (first == end) return false;
  const bool fromCapitals = typed.size() >= end - first && beginsWith(keyword.substr(first), typed);
  return fromCapitals || (typed.size() >= end && beginsWith(keyword, typed));
}

}  // namespace

GcText matchKeyword(GcView keywords, GcView typed) {
  if (!typed.empty() && typed[0] == GC_T('_')) typed.remove_prefix(1);
  if (typed.empty()) return {};
  std::vector<GcView> local = words(keywords, GC_T(' '));
  std::vector<GcView> global;
  for (size_t i = 0; i < local.size(); ++i) {
    if (local[i][0] != GC_T('_')) continue;
    global.assign(local.begin() + static_cast<std::ptrdiff_t>(i), local.end());
    global[0].remove_prefix(1);
    local.resize(i);
    break;
  }
  for (const auto& list : {local, global}) {
    for (size_t i = 0; i < list.size(); ++i) {
      for (const GcView form : words(list[i], GC_T(','))) {
        if (!meets(form, typed)) continue;
        const GcView answer = i < global.size() ? global[i] : list[i];
        return GcText(answer.substr(0, answer.find(GC_T(','))));
      }
    }
  }
  return {};
}

}  // namespace ed
