#include "host/lisp/core/builtin.h"

#include <algorithm>
#include <string_view>

namespace lisp {

namespace {

const Builtin* g_first = nullptr;  // set while the program starts, constant afterwards

}  // namespace

BuiltinRegistration::BuiltinRegistration(Builtin& row) {
  row.next = g_first;
  g_first = &row;
}

const Builtin* firstBuiltin() { return g_first; }

const Builtin* findBuiltin(std::string_view name) {
  const Text wanted = fromUtf8(name);
  for (const Builtin* row = g_first; row; row = row->next)
    if (equalIgnoringCase(fromUtf8(row->name), wanted)) return row;
  return nullptr;
}

Builtin::Counts Builtin::counts() const {
  std::string_view text = signature;
  Counts counts{0, 0};
  int brackets = 0;
  bool first = true;  // the builtin's own name
  size_t i = 1;
  while (i < text.size() && !(text[i] == ')' && brackets == 0)) {
    const char c = text[i];
    if (c == '[') {
      ++brackets, ++i;
    } else if (c == ']') {
      --brackets, ++i;
    } else if (c == ' ') {
      ++i;
    } else {
      const size_t end = text.find_first_of(" []", i);
      size_t stop = std::min(end, text.size());
      if (brackets == 0 || end == std::string_view::npos) stop = std::min(stop, text.find(')', i));
      std::string_view word = text.substr(i, stop - i);
      i = stop;
      const bool repeated = word.ends_with("...");
      if (first) {
        first = false;
      } else {
        if (word != "...") ++counts.max, counts.min += brackets == 0;
        if (repeated) counts.max = UINT32_MAX;
        if (counts.max == UINT32_MAX && repeated) return counts;
      }
    }
  }
  return counts;
}

}  // namespace lisp
