#include "host/lisp/core/wcmatch.h"

namespace lisp {

namespace {

// Index behind the bracket group that starts at `at`; `at` itself when it is no group, but a plain bracket.
size_t endOfGroup(TextView pattern, size_t at) {
  size_t i = at + 1;
  if (i < pattern.size() && pattern[i] == GC_T('~')) ++i;
  const size_t first = i;
  for (; i < pattern.size(); ++i) {
    if (pattern[i] == GC_T('`') && i + 1 < pattern.size()) {
      ++i;
    } else if (pattern[i] == GC_T(']') && i > first) {
      return i + 1;
    }
  }
  return at;
}

bool inGroup(GCHAR c, TextView group) {
  size_t i = 1;
  const bool negate = group[1] == GC_T('~');
  bool found = false;
  if (negate) ++i;
  while (i + 1 < group.size()) {
    GCHAR low = group[i++];
    if (low == GC_T('`') && i + 1 < group.size()) low = group[i++];
    GCHAR high = low;
    if (group[i] == GC_T('-') && i + 2 < group.size()) {
      high = group[i + 1];
      i += 2;
    }
    found = found || (c >= low && c <= high);
  }
  return found != negate;
}

// Matches one character against the pattern element at `p`; moves `p` behind it.
bool matchOne(GCHAR c, TextView pattern, size_t& p) {
  const GCHAR element = pattern[p];
  switch (element) {
    case GC_T('#'): ++p; return isDigit(c);
    case GC_T('@'): ++p; return isLetter(c);
    case GC_T('.'): ++p; return !isDigit(c) && !isLetter(c);
    case GC_T('?'): ++p; return true;
    case GC_T('['): {
      const size_t end = endOfGroup(pattern, p);
      if (end == p) break;
      const TextView group = pattern.substr(p, end - p);
      p = end;
      return inGroup(c, group);
    }
    case GC_T('`'):
      if (p + 1 < pattern.size()) ++p;
      break;
    default: break;
  }
  return c == pattern[p++];
}

// One alternative, without its leading ~. A mismatch goes back to the last * only, which is enough.
bool matchAlternative(TextView text, TextView pattern) {
  size_t t = 0, p = 0, star = TextView::npos, mark = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == GC_T('*')) {
      star = ++p;
      mark = t;
      continue;
    }
    if (p < pattern.size() && matchOne(text[t], pattern, p)) {
      ++t;
      continue;
    }
    if (star == TextView::npos) return false;
    p = star;
    t = ++mark;
  }
  while (p < pattern.size() && pattern[p] == GC_T('*')) ++p;
  return p == pattern.size();
}

size_t endOfAlternative(TextView pattern, size_t at) {
  while (at < pattern.size() && pattern[at] != GC_T(',')) {
    if (pattern[at] == GC_T('`') && at + 1 < pattern.size()) {
      at += 2;
    } else if (pattern[at] == GC_T('[')) {
      const size_t end = endOfGroup(pattern, at);
      at = end == at ? at + 1 : end;
    } else {
      ++at;
    }
  }
  return at;
}

}  // namespace

bool wildcardMatch(TextView text, TextView pattern) {
  for (size_t at = 0;;) {
    const size_t end = endOfAlternative(pattern, at);
    TextView alternative = pattern.substr(at, end - at);
    const bool negate = !alternative.empty() && alternative[0] == GC_T('~');
    if (negate) alternative.remove_prefix(1);
    if (matchAlternative(text, alternative) != negate) return true;
    if (end >= pattern.size()) return false;
    at = end + 1;
  }
}

}  // namespace lisp
