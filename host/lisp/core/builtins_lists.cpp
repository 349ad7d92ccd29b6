// Tables in macros, which the formatter does not settle on.
// clang-format off
// Lists.
#include "host/lisp/core/builtin.h"
#include "host/lisp/core/numbers.h"
#include "host/lisp/core/vm.h"

LISP_GROUP("Lists")

namespace lisp {

namespace {

// Follows car and cdr as the letters between c and r say, from the right.
LispValue follow(Args& args, std::string_view letters) {
  LispValue v = args.any();
  bool first = true;
  for (size_t i = letters.size(); i-- > 0; first = false) {
    if (v.isNil()) return v;
    if (!v.isPair()) failType(args.vm(), first ? kListp : kConsp, v);
    v = letters[i] == 'a' ? v.head() : v.tail();
  }
  return v;
}

}  // namespace

#define LISP_CXR(letters)                                                                                         \
  LISP_BUILTIN("c" letters "r", "(c" letters "r list) -> x", "Follows car (a) and cdr (d) from right to left.") { \
    return follow(args, letters);                                                                                 \
  }
LISP_CXR("a")
LISP_CXR("d") LISP_CXR("aa") LISP_CXR("ad") LISP_CXR("da") LISP_CXR("dd") LISP_CXR("aaa") LISP_CXR("aad")
    LISP_CXR("ada") LISP_CXR("add") LISP_CXR("daa") LISP_CXR("dad") LISP_CXR("dda") LISP_CXR("ddd") LISP_CXR("aaaa")
        LISP_CXR("aaad") LISP_CXR("aada") LISP_CXR("aadd") LISP_CXR("adaa") LISP_CXR("adad") LISP_CXR("adda")
            LISP_CXR("addd") LISP_CXR("daaa") LISP_CXR("daad") LISP_CXR("dada") LISP_CXR("dadd") LISP_CXR("ddaa")
                LISP_CXR("ddad") LISP_CXR("ddda") LISP_CXR("dddd")

                    LISP_BUILTIN("cons", "(cons x list) -> list",
                                 "A list with x in front; with an atom second, a dotted pair.") {
  return args.cons(args[0], args[1]);
}

LISP_BUILTIN("list", "(list [x]...) -> list", "A list of the arguments.") {
  LispValue out;
  for (uint32_t i = args.count(); i-- > 0;) out = args.cons(args[i], out);
  return out;
}

LISP_BUILTIN("vl-list*", "(vl-list* x...) -> list", "Like list, but the last argument is the tail.") {
  LispValue out = args[args.count() - 1];
  for (uint32_t i = args.count() - 1; i-- > 0;) out = args.cons(args[i], out);
  return out;
}

LISP_BUILTIN("append", "(append [list]...) -> list", "One list of all elements.") {
  ListBuilder out(args.vm());
  while (args.count() > 0 && args.more()) {
    LispValue rest = args.list();
    if (!args.more()) {
      out.closeWith(rest);
      break;
    }
    for (; rest.isPair(); rest = rest.tail()) out.add(rest.head());
    if (rest) failType(args.vm(), kListp, rest);
  }
  return out.list();
}

LISP_BUILTIN("length", "(length list) -> integer", "The number of elements.") {
  const LispValue whole = args.list();
  int32_t n = 0;
  LispValue rest = whole;
  for (; rest.isPair(); rest = rest.tail()) ++n;
  if (rest) failType(args.vm(), kListp, rest);
  return LispValue::integer(n);
}

LISP_BUILTIN("vl-list-length", "(vl-list-length list) -> integer | nil", "Like length; nil for a dotted list.") {
  LispValue rest = args.list();
  int32_t n = 0;
  for (; rest.isPair(); rest = rest.tail()) ++n;
  return rest ? LispValue::nil() : LispValue::integer(n);
}

LISP_BUILTIN("assoc", "(assoc key alist) -> pair | nil", "First pair of alist whose head equals key.") {
  const LispValue key = args.any();
  for (LispValue rest = args.list(); rest.isPair(); rest = rest.tail()) {
    const LispValue pair = rest.head();
    if (pair.isPair()) {
      if (isEqual(args.vm(), pair.head(), key)) return pair;
    } else if (pair) {
      failType(args.vm(), kConsp, pair);
    }
  }
  return LispValue::nil();
}

LISP_BUILTIN("member", "(member x list) -> list | nil", "The rest of list from the first element equal to x.") {
  const LispValue x = args.any();
  for (LispValue rest = args.list(); rest.isPair(); rest = rest.tail())
    if (isEqual(args.vm(), rest.head(), x)) return rest;
  return LispValue::nil();
}

LISP_BUILTIN("reverse", "(reverse list) -> list", "The elements from back to front.") {
  LispValue out, rest = args.list();
  for (; rest.isPair(); rest = rest.tail()) out = args.cons(rest.head(), out);
  if (rest) failType(args.vm(), kListp, rest);
  return out;
}

LISP_BUILTIN("nth", "(nth n list) -> x | nil", "Element n, counted from 0; nil past the end.") {
  int32_t n = args.integer();
  if (n < 0) failType(args.vm(), "natural number", LispValue::integer(n));
  LispValue rest = args.list();
  for (; n > 0 && rest.isPair(); --n) rest = rest.tail();
  return rest.isPair() ? rest.head() : LispValue::nil();
}

LISP_BUILTIN("last", "(last list) -> x | nil", "The last element.") {
  LispValue rest = args.list();
  if (rest.isNil()) return rest;
  while (rest.tail().isPair()) rest = rest.tail();
  return rest.head();
}

LISP_BUILTIN("subst", "(subst new old list) -> list", "The list with every element equal to old replaced.") {
  const LispValue fresh = args.any();
  const LispValue old = args.any();
  ListBuilder out(args.vm());
  LispValue rest = args.list();
  for (; rest.isPair(); rest = rest.tail()) out.add(isEqual(args.vm(), rest.head(), old) ? fresh : rest.head());
  out.closeWith(rest);
  return out.list();
}

LISP_BUILTIN("listp", "(listp x) -> T | nil", "Whether x is a list; nil is one.") {
  return LispValue::boolean(args.any().isList());
}
LISP_BUILTIN("vl-consp", "(vl-consp x) -> T | nil", "Whether x is a list that is not empty.") {
  return LispValue::boolean(args.any().isPair());
}
LISP_BUILTIN("atom", "(atom x) -> T | nil", "Whether x is anything but a list with elements.") {
  return LispValue::boolean(!args.any().isPair());
}
LISP_BUILTIN("null", "(null x) -> T | nil", "Whether x is nil.") { return LispValue::boolean(args.any().isNil()); }
LISP_BUILTIN("not", "(not x) -> T | nil", "Whether x is nil.") { return LispValue::boolean(args.any().isNil()); }

LISP_BUILTIN("vl-remove", "(vl-remove x list) -> list", "The list without the elements equal to x.") {
  const LispValue x = args.any();
  ListBuilder out(args.vm());
  for (LispValue rest = args.list(); rest.isPair(); rest = rest.tail())
    if (!isEqual(args.vm(), rest.head(), x)) out.add(rest.head());
  return out.list();
}

LISP_BUILTIN("vl-position", "(vl-position x list) -> integer | nil", "Index of the first element equal to x, from 0.") {
  const LispValue x = args.any();
  int32_t n = 0;
  for (LispValue rest = args.list(); rest.isPair(); rest = rest.tail(), ++n)
    if (isEqual(args.vm(), rest.head(), x)) return LispValue::integer(n);
  return LispValue::nil();
}

}  // namespace lisp
