#include "host/lisp/core/printer.h"

#include "host/lisp/core/symbols.h"

namespace lisp {

namespace {

void appendQuoted(Text& out, TextView text) {
  out.push_back(GC_T('"'));
  for (const GCHAR c : text) {
    switch (c) {
      case GC_T('"'): appendAscii(out, "\\\""); break;
      case GC_T('\\'): appendAscii(out, "\\\\"); break;
      case GC_T('\n'): appendAscii(out, "\\n"); break;
      case GC_T('\r'): appendAscii(out, "\\r"); break;
      case GC_T('\t'): appendAscii(out, "\\t"); break;
      case GCHAR(27): appendAscii(out, "\\e"); break;
      default: out.push_back(c);
    }
  }
  out.push_back(GC_T('"'));
}

void appendAtom(Text& out, LispValue v, PrintStyle style, ObjectPrinter& objects) {
  if (v.isReal()) {
    appendReal(out, v.asReal());
  } else if (v.isInteger()) {
    appendInteger(out, v.asInteger());
  } else if (v.isNil()) {
    appendAscii(out, "nil");
  } else if (v.isString()) {
    style == PrintStyle::Raw ? void(out.append(v.asString()->view())) : appendQuoted(out, v.asString()->view());
  } else if (v.isObject()) {
    objects.printObject(*v.asObject(), out);
  } else {
    out.append(symbolName(v));
  }
}

}  // namespace

void appendValue(Text& out, LispValue value, PrintStyle style, ObjectPrinter& objects) {
  if (!value.isPair()) return appendAtom(out, value, style, objects);
  constexpr uint32_t kAskEvery = 4096;  // elements
  std::vector<LispValue> open;          // for each list under way: what follows the element being printed
  for (uint32_t count = 1;; ++count) {
    if (count % kAskEvery == 0) objects.printing(out.size());
    // Down to the first atom of a nested head.
    while (value.isPair()) {
      out.push_back(GC_T('('));
      open.push_back(value.tail());
      value = value.head();
    }
    appendAtom(out, value, style, objects);
    // Up, as far as lists end here.
    while (!open.empty() && !open.back().isPair()) {
      if (open.back()) {
        appendAscii(out, " . ");
        appendAtom(out, open.back(), style, objects);
      }
      out.push_back(GC_T(')'));
      open.pop_back();
    }
    if (open.empty()) return;
    out.push_back(GC_T(' '));
    value = open.back().head();
    open.back() = open.back().tail();
  }
}

}  // namespace lisp
