#include "host/lisp/lib/keptvalue.h"

#include <algorithm>
#include <cmath>

#include "host/db/core/handletext.h"
#include "host/lisp/core/error.h"
#include "host/lisp/core/reader.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/names.h"

namespace lisplib {

using lisp::LispValue;

namespace {

constexpr lisp::TextView kClassName = GC_T("vlo_VL");
constexpr lisp::TextView kRealMark = GC_T("&VLO-R");
constexpr lisp::TextView kHandleMark = GC_T("&VLO-H");
constexpr int kDeepest = 1000;  // nested lists
constexpr int kRealCode = 40;
constexpr int kTextCode = 300;

bool isMark(LispValue value) {
  if (!value.isCellSymbol()) return false;
  const lisp::TextView name = value.asSymbol()->text();
  return name == kRealMark || name == kHandleMark;
}

bool canBeKept(LispValue value, int depth) {
  for (; value.isPair(); value = value.tail())
    if (depth == 0 || !canBeKept(value.head(), depth - 1)) return false;
  if (value.isReal()) return std::isfinite(value.asReal());
  if (value.isNil() || value.isTrue() || value.isInteger() || value.isString()) return true;
  GcDbObjectId id;
  return value.isCellSymbol() ? !isMark(value) : idOf(value, id);
}

// A copy of a list with other things in place of its atoms, or of some of its lists.
template <class Replace>
LispValue mapped(lisp::Vm& vm, LispValue value, int depth, const Replace& replace) {
  LispValue other;
  if (replace(value, other)) return other;
  if (!value.isPair() || depth == 0) return value;
  lisp::ListBuilder list(vm);
  for (; value.isPair() && !replace(value, other); value = value.tail())
    list.add(mapped(vm, value.head(), depth - 1, replace));
  if (value.isPair())
    list.closeWith(other);
  else if (value)
    list.closeWith(replace(value, other) ? other : value);
  return list.list();
}

LispValue mark(lisp::Vm& vm, lisp::TextView name, LispValue what) {
  return vm.heap().cons(LispValue::of(vm.symbols().intern(name)), what);
}

}  // namespace

bool canBeKept(LispValue value) { return canBeKept(value, kDeepest); }

GcDbGroupList groupsOfKept(lisp::Vm& vm, LispValue value) {
  std::vector<double> reals;
  const auto replace = [&](LispValue each, LispValue& other) {
    GcDbObjectId id;
    if (each.isReal()) {
      other = mark(vm, kRealMark, LispValue::integer(static_cast<int32_t>(reals.size())));
      reals.push_back(each.asReal());
      return true;
    }
    if (!idOf(each, id)) return false;
    other = mark(vm, kHandleMark, vm.heap().string(gcdbHandleText(id.handle())));
    return true;
  };
  const LispValue marked = mapped(vm, value, kDeepest, replace);
  GcDbGroupList groups;
  groups.put(GcDbGroup::ofText(100, kClassName));
  std::reverse(reals.begin(), reals.end());
  for (const double real : reals) groups.put(GcDbGroup::ofReal(kRealCode, real));
  groups.put(GcDbGroup::ofText(kTextCode, vm.print(marked, lisp::PrintStyle::Quoted)));
  return groups;
}

namespace {

// The mark a pair is, replaced by what it stands for.
bool unmarked(lisp::Vm& vm, const std::vector<double>& reals, LispValue pair, LispValue& other) {
  if (!pair.isPair() || !isMark(pair.head())) return false;
  const LispValue what = pair.tail();
  if (pair.head().asSymbol()->text() == kRealMark) {
    if (!what.isInteger() || what.asInteger() < 0 || static_cast<size_t>(what.asInteger()) >= reals.size())
      return false;
    other = LispValue::real(reals[reals.size() - 1 - static_cast<size_t>(what.asInteger())]);
    return true;
  }
  if (!what.isString()) return false;
  GcDbObjectId id;
  ignore(hostOf(vm).database().getGcDbObjectId(id, false, gcdbHandleValue(what.asString()->view())));
  other = id.isNull() ? LispValue::nil() : makeName(vm, id);
  return true;
}

}  // namespace

bool keptValue(lisp::Vm& vm, const GcDbGroupList& groups, LispValue& value) {
  std::vector<double> reals;
  GcDbGroupList::Cursor cursor(groups);
  GcDbGroup group;
  bool found = false;
  while (!found && cursor.next(group)) {
    if (group.code == kRealCode && group.kind == GcDbGroupKind::Real) reals.push_back(group.real);
    found = group.code == kTextCode && group.kind == GcDbGroupKind::Text;
  }
  if (!found) return false;
  const GcText text(group.text);
  try {
    LispValue form;
    lisp::Reader reader(text, vm.heap(), vm.symbols());
    if (!reader.next(form)) return false;
    value =
        mapped(vm, form, kDeepest, [&](LispValue each, LispValue& other) { return unmarked(vm, reals, each, other); });
    return true;
  } catch (const lisp::LispError& error) {
    if (error.kind != lisp::ErrorKind::Error) throw;
    return false;
  }
}

}  // namespace lisplib
