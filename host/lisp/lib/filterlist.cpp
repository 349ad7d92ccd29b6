#include "host/lisp/lib/filterlist.h"

#include "host/lisp/lib/names.h"

namespace lisplib {

using ed::FilterTest;
using ed::SelectionFilter;
using lisp::LispValue;

namespace {

constexpr int kOperator = -4;
constexpr int kExtendedData = -3;

[[noreturn]] void failFilter() { lisp::fail("bad SSGET list"); }

struct Bracket {
  const GCHAR *begin, *end;
  SelectionFilter::Join join;
};
constexpr Bracket kBrackets[] = {{GC_T("<AND"), GC_T("AND>"), SelectionFilter::Join::And},
                                 {GC_T("<OR"), GC_T("OR>"), SelectionFilter::Join::Or},
                                 {GC_T("<NOT"), GC_T("NOT>"), SelectionFilter::Join::Not},
                                 {GC_T("<XOR"), GC_T("XOR>"), SelectionFilter::Join::Xor}};

// True when the operator was a bracket; else it is a relation for the next test.
bool takeBracket(SelectionFilter& filter, lisp::TextView text) {
  for (const Bracket& bracket : kBrackets) {
    if (lisp::equalIgnoringCase(text, bracket.begin)) {
      filter.open(bracket.join);
      return true;
    }
    if (!lisp::equalIgnoringCase(text, bracket.end)) continue;
    if (!filter.close(bracket.join)) failFilter();
    return true;
  }
  return false;
}

void takeApplications(SelectionFilter& filter, LispValue applications) {
  for (; applications.isPair(); applications = applications.tail()) {
    const LispValue application = applications.head();
    if (!application.isPair() || !application.head().isString()) failFilter();
    filter.addApplication(application.head().asString()->view());
  }
}

void takeValue(LispValue value, FilterTest& test) {
  double at[3];
  if (value.isString()) {
    test.kind = FilterTest::Value::Text;
    test.text = value.asString()->view();
  } else if (value.isNumber()) {
    test.kind = FilterTest::Value::Number;
    test.number = value.asDouble();
  } else if (idOf(value, test.entity)) {
    test.kind = FilterTest::Value::Entity;
  } else if (const int count = lisp::pointOf(value, at); count != 0) {
    test.kind = FilterTest::Value::Point;
    test.point = {at[0], at[1], at[2]};
    test.coordinates = count;
  } else {
    failFilter();
  }
}

}  // namespace

SelectionFilter filterOf(lisp::Vm&, LispValue list) {
  SelectionFilter filter;
  FilterTest next;
  for (; list.isPair(); list = list.tail()) {
    const LispValue element = list.head();
    if (!element.isPair() || !element.head().isInteger()) failFilter();
    const int code = element.head().asInteger();
    if (code == kExtendedData) {
      takeApplications(filter, element.tail());
      continue;
    }
    if (code == kOperator) {
      if (!element.tail().isString()) failFilter();
      const lisp::TextView text = element.tail().asString()->view();
      if (!takeBracket(filter, text) && !ed::parseRelations(text, next.relations)) failFilter();
      continue;
    }
    next.code = code;
    takeValue(element.tail(), next);
    filter.add(next);
    next = FilterTest();
  }
  if (!filter.isComplete()) failFilter();
  return filter;
}

}  // namespace lisplib
