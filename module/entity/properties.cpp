// Reading and writing the properties that every entity has, by name.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"
#include "module/entity/commonproperty.h"

// A result that was put stays when a message follows: called with the entity alone it answers the empty list and
// reports missing arguments.
int getProperty() {
  ArgReader args(rules::kEntityReported);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbObject> object(id);
  const CCommonEntProperty properties;
  RbChain list;
  list.append(RTLB);
  for (const resbuf* rb = args.rest(); rb != nullptr; rb = rb->rbnext) {
    if (rb->restype != RTSTR) continue;
    list.append(RTLB);
    list.appendString(node::text(*rb));
    properties.appendValue(list, object.get(), node::text(*rb));
    list.append(RTLE);
  }
  list.append(RTLE);
  ret::list(list);
  return args.atEnd() ? args.refuse(msg::kNoArguments) : RTNORM;
}

namespace {

// One (name value) element of the list: five nodes with its brackets, the name a string, the value one node.
struct NamedValue {
  explicit NamedValue(const resbuf* open) {
    const resbuf* string = open->restype == RTLB ? open->rbnext : nullptr;
    if (string == nullptr || string->restype != RTSTR) return;
    const resbuf* single = string->rbnext;
    if (single == nullptr || single->restype == 0 || single->restype == RTLB || single->restype == RTLE) return;
    const resbuf* close = single->rbnext;
    if (close == nullptr || close->restype != RTLE) return;
    name = node::text(*string);
    value = single;
    next = close->rbnext;
  }
  const GCHAR* name = nullptr;
  const resbuf* value = nullptr;  // null: malformed
  const resbuf* next = nullptr;
};

}  // namespace

// Deliberate: a first argument of another type is reported with the text of the empty call, which is quiet itself.
// What was set before a malformed element stays set.
int putProperty() {
  ArgReader args(rules::kTextFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbObject> object(id);
  if (args.nextType() != RTLB) return args.wrongType();
  const CCommonEntProperty properties;
  for (const resbuf* rb = args.rest()->rbnext; rb != nullptr && rb->restype != RTLE;) {
    const NamedValue pair(rb);
    if (pair.value == nullptr) return args.wrongType();
    properties.put(object.get(), pair.name, *pair.value);
    rb = pair.next;
  }
  return RTNORM;
}
