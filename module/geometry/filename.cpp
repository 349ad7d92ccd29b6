#include "module/geometry/filename.h"

#include <string_view>

namespace {

using View = std::basic_string_view<GCHAR>;

constexpr View kBlanks = GC_T(" \t\n\v\f\r");
// Neither can stand in a block's name, whichever of them the platform's paths use.
constexpr View kSeparators = GC_T("\\/");

}  // namespace

GcString trimmed(const GCHAR* text) {
  const View view(text);
  const std::size_t first = view.find_first_not_of(kBlanks);
  if (first == View::npos) return {};
  return {text + first, view.find_last_not_of(kBlanks) - first + 1};
}

GcString blockNameOfFile(const GCHAR* path) {
  View name(path);
  if (const std::size_t at = name.find_last_of(kSeparators); at != View::npos) name.remove_prefix(at + 1);
  if (const std::size_t at = name.find_last_of(GC_T('.')); at != View::npos) name = name.substr(0, at);
  return GcString(name.data(), name.size()).upper();
}
