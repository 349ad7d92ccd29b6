#include "host/lisp/lib/commanditems.h"

#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/names.h"

namespace lisplib {

using ed::InputItem;
using lisp::LispValue;

namespace {

bool pointItem(LispValue value, InputItem& item) {
  double at[3];
  const int count = lisp::pointOf(value, at);
  if (count == 0) return false;
  item = InputItem::of(InputItem::Kind::Point);
  item.point = {at[0], at[1], at[2]};
  item.point2d = count == 2;
  return true;
}

// (entity point), as entsel gives it.
bool pickItem(LispValue value, InputItem& item) {
  GcDbObjectId id;
  if (!value.isPair() || !idOf(value.head(), id) || !value.tail().isPair()) return false;
  if (!pointItem(value.tail().head(), item)) return false;
  item.kind = InputItem::Kind::EntityPoint;
  item.entity = id;
  return true;
}

bool numberItem(LispValue value, InputItem& item) {
  item = InputItem::of(value.isInteger() ? InputItem::Kind::Integer : InputItem::Kind::Real);
  item.number = value.asDouble();
  return true;
}

}  // namespace

bool toItem(lisp::Vm& vm, LispValue value, InputItem& item) {
  GcDbObjectId id;
  if (value.isNil()) {
    item = InputItem::of(InputItem::Kind::Cancel);
  } else if (value.isString()) {
    const lisp::TextView text = value.asString()->view();
    item = text == GC_T("\\") ? InputItem::of(InputItem::Kind::Pause) : InputItem::ofText(text);
  } else if (value.isNumber()) {
    return numberItem(value, item);
  } else if (idOf(value, id)) {
    item = InputItem::of(InputItem::Kind::Entity);
    item.entity = id;
  } else if (const auto* set = lisp::objectOf<lisp::SelectionSet>(value, lisp::ObjectType::SelectionSet)) {
    item = InputItem::of(InputItem::Kind::Set);
    if (const ed::SelectionSet* found = hostOf(vm).editor().sets().find(set->handle)) item.set = found->ids();
  } else {
    return pickItem(value, item) || pointItem(value, item);
  }
  return true;
}

}  // namespace lisplib
