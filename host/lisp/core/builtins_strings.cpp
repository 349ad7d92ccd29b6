// Strings.
#include <algorithm>
#include <bitset>
#include <unordered_map>
#include <vector>

#include "host/lisp/core/builtin.h"
#include "host/lisp/core/vm.h"
#include "host/lisp/core/wcmatch.h"

LISP_GROUP("Strings")

namespace lisp {

namespace {

[[noreturn]] void failValue(Args& args, std::string_view what, LispValue culprit) {
  Text message = fromUtf8("bad argument value: ");
  appendAscii(message, what);
  message.push_back(GC_T(' '));
  appendValue(message, culprit, PrintStyle::Quoted, args.vm());
  throw LispError(std::move(message));
}

// A count or position from 0.
size_t natural(Args& args) {
  const int32_t n = args.integer();
  if (n < 0) failValue(args, "non-negative:", LispValue::integer(n));
  return static_cast<size_t>(n);
}

// For each unit of the pattern: how much of its start has been seen again when the unit after it does not fit.
std::vector<uint32_t> overlaps(TextView pattern) {
  std::vector<uint32_t> result(pattern.size(), 0);
  for (uint32_t i = 1, length = 0; i < pattern.size(); ++i) {
    while (length > 0 && pattern[i] != pattern[length]) length = result[length - 1];
    if (pattern[i] == pattern[length]) ++length;
    result[i] = length;
  }
  return result;
}

// Where the pattern begins at or after `start`. A long pattern is searched by Knuth, Morris and Pratt, whose time is
// that of reading both once.
size_t find(TextView text, TextView pattern, size_t start) {
  constexpr size_t kShort = 32;
  if (start > text.size()) return TextView::npos;
  if (pattern.size() <= kShort) return text.find(pattern, start);
  const std::vector<uint32_t> again = overlaps(pattern);
  size_t seen = 0;
  for (size_t i = start; i < text.size(); ++i) {
    while (seen > 0 && text[i] != pattern[seen]) seen = again[seen - 1];
    if (text[i] == pattern[seen] && ++seen == pattern.size()) return i + 1 - seen;
  }
  return TextView::npos;
}

// Which characters a string has.
class Characters {
 public:
  explicit Characters(TextView text) {
    for (const GCHAR c : text) m_has.set(static_cast<uint16_t>(c));
  }
  [[nodiscard]] bool has(GCHAR c) const { return m_has.test(static_cast<uint16_t>(c)); }

 private:
  std::bitset<65536> m_has;
};

}  // namespace

LISP_BUILTIN("strcat", "(strcat [string]...) -> string", "The strings joined.") {
  size_t length = 0;
  for (uint32_t i = 0; i < args.count(); ++i) {
    if (!args[i].isString()) failType(args.vm(), kStringp, args[i]);
    length += args[i].asString()->length;
  }
  StringObject* out = args.vm().heap().newString(length);
  GCHAR* at = out->data();
  for (uint32_t i = 0; i < args.count(); ++i) {
    const TextView part = args[i].asString()->view();
    at = std::copy(part.begin(), part.end(), at);
  }
  return LispValue::of(out);
}

LISP_BUILTIN("strlen", "(strlen [string]...) -> integer", "The number of characters.") {
  int32_t length = 0;
  while (args.more()) length += static_cast<int32_t>(args.string().size());
  return LispValue::integer(length);
}

LISP_BUILTIN("substr", "(substr string start [length]) -> string", "A part of the string; start counts from 1.") {
  const TextView text = args.string();
  const int32_t start = args.integer();
  if (start < 1) failValue(args, "positive", LispValue::integer(start));
  const size_t length = args.moreNotNil() ? natural(args) : TextView::npos;
  const size_t from = static_cast<size_t>(start) - 1;
  return args.newString(from >= text.size() ? TextView() : text.substr(from, length));
}

LISP_BUILTIN("strcase", "(strcase string [lower]) -> string", "The string in upper case, or in lower.") {
  const TextView text = args.string();
  return args.newString(TextView(args.moreNotNil() ? lowerCase(text) : upperCase(text)));
}

LISP_BUILTIN("ascii", "(ascii string) -> integer", "The code of the first character; 0 for an empty string.") {
  const TextView text = args.string();
  return LispValue::integer(text.empty() ? 0 : static_cast<uint16_t>(text[0]));
}

LISP_BUILTIN("chr", "(chr code) -> string", "The character of that code.") {
  const int32_t code = args.integer();
  if (code < 0 || code > 0x10FFFF) failValue(args, "character code", LispValue::integer(code));
  Text text;
  if (code) appendCodePoint(text, static_cast<uint32_t>(code));
  return args.newString(TextView(text));
}

LISP_BUILTIN("atoi", "(atoi string) -> integer", "The integer at the start of the string; 0 if there is none.") {
  return LispValue::integer(leadingInteger(args.string()));
}
LISP_BUILTIN("atof", "(atof string) -> real", "The number at the start of the string; 0.0 if there is none.") {
  return LispValue::real(leadingReal(args.string()));
}
LISP_BUILTIN("itoa", "(itoa integer) -> string", "The integer's decimal digits.") {
  Text text;
  appendInteger(text, args.integer());
  return args.newString(TextView(text));
}

LISP_BUILTIN("wcmatch", "(wcmatch string pattern) -> T | nil",
             "Whether the string matches: # digit, @ letter, . neither, * any run, ? any one, ~ not, [...] one of, "
             ", alternatives, ` literally.") {
  const TextView text = args.string();
  return LispValue::boolean(wildcardMatch(text, args.string()));
}

LISP_BUILTIN("snvalid", "(snvalid name [flag]) -> T | nil",
             "Whether the name suits a symbol table; flag 1 allows a vertical bar.") {
  const TextView name = args.string();
  const bool bar = args.moreNotNil() && args.integer() == 1;
  if (name.empty() || name.size() > 255) return LispValue::nil();
  for (const GCHAR c : name) {
    const bool forbidden = TextView(GC_T("<>/\\\":;?*,=`")).find(c) != TextView::npos || (c == GC_T('|') && !bar);
    if (forbidden || static_cast<uint16_t>(c) < 0x20) return LispValue::nil();
  }
  const bool blankEnds = name.front() == GC_T(' ') || name.back() == GC_T(' ');
  return LispValue::boolean(!blankEnds && !(bar && (name.front() == GC_T('|') || name.back() == GC_T('|'))));
}

// ---- vl-string

LISP_BUILTIN("vl-string-search", "(vl-string-search pattern string [start]) -> integer | nil",
             "Where the pattern begins in the string, from 0; nil if it does not occur.") {
  const TextView pattern = args.string();
  const TextView text = args.string();
  const size_t start = args.moreNotNil() ? natural(args) : 0;
  const size_t at = find(text, pattern, start);
  return at == TextView::npos ? LispValue::nil() : LispValue::integer(static_cast<int32_t>(at));
}

LISP_BUILTIN("vl-string-position", "(vl-string-position code string [start [from-end]]) -> integer | nil",
             "Where the character of that code is, from 0; with from-end the last one.") {
  const int32_t code = args.integer();
  const TextView text = args.string();
  const size_t start = args.moreNotNil() ? natural(args) : (args.skip(), size_t{0});
  const bool last = args.moreNotNil();
  const auto unit = static_cast<GCHAR>(code);
  size_t at = TextView::npos;
  if (start <= text.size()) at = last ? text.rfind(unit) : text.find(unit, start);
  if (at == TextView::npos || at < start) return LispValue::nil();
  return LispValue::integer(static_cast<int32_t>(at));
}

LISP_BUILTIN("vl-string-subst", "(vl-string-subst new old string [start]) -> string",
             "The string with the first occurrence of old, from start on, replaced.") {
  const TextView fresh = args.string();
  const TextView old = args.string();
  const LispValue string = args.stringValue();
  const TextView text = string.asString()->view();
  const size_t start = args.moreNotNil() ? natural(args) : 0;
  const size_t at = old.empty() ? TextView::npos : find(text, old, start);
  if (at == TextView::npos) return string;
  Text out(text.substr(0, at));
  out.append(fresh).append(text.substr(at + old.size()));
  return args.newString(TextView(out));
}

LISP_BUILTIN("vl-string-translate", "(vl-string-translate from to string) -> string",
             "The string with each character of from replaced by the one at its place in to.") {
  const TextView from = args.string();
  const TextView to = args.string();
  Text out(args.string());
  std::unordered_map<GCHAR, GCHAR> becomes;
  for (size_t i = 0; i < from.size(); ++i) becomes.emplace(from[i], i < to.size() ? to[i] : from[i]);
  for (GCHAR& c : out)
    if (const auto found = becomes.find(c); found != becomes.end()) c = found->second;
  return args.newString(TextView(out));
}

namespace {

LispValue trim(Args& args, bool left, bool right) {
  const Characters set(args.string());
  TextView text = args.string();
  while (left && !text.empty() && set.has(text.front())) text.remove_prefix(1);
  while (right && !text.empty() && set.has(text.back())) text.remove_suffix(1);
  return args.newString(text);
}

}  // namespace

LISP_BUILTIN("vl-string-trim", "(vl-string-trim characters string) -> string",
             "The string without these characters at its ends.") {
  return trim(args, true, true);
}
LISP_BUILTIN("vl-string-left-trim", "(vl-string-left-trim characters string) -> string",
             "The string without these characters at its start.") {
  return trim(args, true, false);
}
LISP_BUILTIN("vl-string-right-trim", "(vl-string-right-trim characters string) -> string",
             "The string without these characters at its end.") {
  return trim(args, false, true);
}

LISP_BUILTIN("vl-string-elt", "(vl-string-elt string position) -> integer",
             "The code of the character there, from 0.") {
  const TextView text = args.string();
  const size_t at = natural(args);
  if (at >= text.size()) failValue(args, "string position out of range", LispValue::integer(static_cast<int32_t>(at)));
  return LispValue::integer(static_cast<uint16_t>(text[at]));
}

LISP_BUILTIN("vl-string-mismatch",
             "(vl-string-mismatch string1 string2 [position1 [position2 [ignore-case]]]) -> integer",
             "The length of what both strings have in common from these positions.") {
  const TextView a = args.string();
  const TextView b = args.string();
  const size_t i = args.moreNotNil() ? natural(args) : (args.skip(), size_t{0});
  const size_t j = args.moreNotNil() ? natural(args) : (args.skip(), size_t{0});
  const bool fold = args.moreNotNil();
  size_t common = 0;
  while (i + common < a.size() && j + common < b.size()) {
    const GCHAR x = a[i + common], y = b[j + common];
    if (x != y && !(fold && toUpper(x) == toUpper(y))) break;
    ++common;
  }
  return LispValue::integer(static_cast<int32_t>(common));
}

LISP_BUILTIN("vl-string->list", "(vl-string->list string) -> list", "The codes of the characters.") {
  const TextView text = args.string();
  LispValue out;
  for (size_t i = text.size(); i-- > 0;) out = args.cons(LispValue::integer(static_cast<uint16_t>(text[i])), out);
  return out;
}

LISP_BUILTIN("vl-list->string", "(vl-list->string list) -> string", "The characters of these codes.") {
  Text out;
  for (LispValue rest = args.list(); rest.isPair(); rest = rest.tail()) {
    const LispValue code = rest.head();
    if (!code.isInteger()) failType(args.vm(), kFixnump, code);
    if (code.asInteger() < 0 || code.asInteger() > 0x10FFFF) failValue(args, "character code", code);
    if (code.asInteger()) appendCodePoint(out, static_cast<uint32_t>(code.asInteger()));
  }
  return args.newString(TextView(out));
}

}  // namespace lisp
