// Values of programs kept in the drawing under a key, in a dictionary of their own or with an object.
#include <memory>

#include "db/dictionary.h"
#include "db/groupdata.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/keptvalue.h"
#include "host/lisp/lib/names.h"
#include "host/lisp/lib/openobject.h"

using lisp::LispValue;
using lisplib::hostOf;
using lisplib::OpenObject;

LISP_GROUP("Tables and dictionaries")

namespace {

GcDbObjectId idAt(const GcDbDictionary& dictionary, const GcText& key) {
  GcDbObjectId id;
  return dictionary.getAt(key.c_str(), id) == Gcad::eOk && !id.isErased() ? id : GcDbObjectId();
}

// The dictionary of a name, made when it is wanted and there is none.
GcDbObjectId namedDictionary(lisp::Args& args, const GcText& name, bool wanted) {
  const GcDbObjectId rootId = hostOf(args.vm()).database().namedObjectsDictionaryId();
  const OpenObject<GcDbDictionary> root(rootId, wanted ? GcDb::kForWrite : GcDb::kForRead);
  if (!root) return {};
  GcDbObjectId id = idAt(*root, name);
  if (!id.isNull() || !wanted) return id;
  auto made = std::make_unique<GcDbDictionary>();
  if (root->setAt(name.c_str(), made.get(), id) != Gcad::eOk) return {};
  ignore(made.release()->close());
  return id;
}

// The dictionary an argument means: that of a name, or the extension dictionary of an object. Null when there is none.
GcDbObjectId dictionaryArgument(lisp::Args& args, bool wanted) {
  if (args.peek().isString()) return namedDictionary(args, GcText(args.string()), wanted);
  const GcDbObjectId id = lisplib::idOfWord(args.entityName());
  const OpenObject<GcDbObject> object(id, wanted ? GcDb::kForWrite : GcDb::kForRead);
  if (!object) return {};
  if (wanted) ignore(object->createExtensionDictionary());
  return object->extensionDictionary();
}

bool put(GcDbObjectId dictionaryId, const GcText& key, const GcDbGroupList& groups) {
  const OpenObject<GcDbDictionary> dictionary(dictionaryId, GcDb::kForWrite);
  if (!dictionary || key.empty()) return false;
  GcDbObjectId id = idAt(*dictionary, key);
  if (!id.isNull()) {
    const OpenObject<GcDbGroupData> there(id, GcDb::kForWrite);
    if (!there) return false;  // something else that is left as it is
    there->assertWriteEnabled();
    there->groups() = groups;
    return true;
  }
  auto made = std::make_unique<GcDbGroupData>();
  made->groups() = groups;
  if (dictionary->setAt(key.c_str(), made.get(), id) != Gcad::eOk) return false;
  ignore(made.release()->close());
  return true;
}

bool get(lisp::Vm& vm, GcDbObjectId id, LispValue& value) {
  const OpenObject<GcDbGroupData> object(id, GcDb::kForRead);
  return object && lisplib::keptValue(vm, object->groups(), value);
}

}  // namespace

LISP_BUILTIN("vlax-ldata-put", "(vlax-ldata-put dictionary key value [private]) -> value | nil",
             "Keeps a value in the drawing: under a key of the dictionary of a name, or with an object. nil when the "
             "key holds something else.") {
  lisp::Args look = args;
  look.skip();
  const GcText key(look.string());
  const LispValue value = look.any();
  if (!lisplib::canBeKept(value)) lisp::failType(args.vm(), "ldata-value-P:", value);
  const bool done = put(dictionaryArgument(args, true), key, lisplib::groupsOfKept(args.vm(), value));
  return lisplib::settled(args, done ? value : LispValue::nil());
}

LISP_BUILTIN("vlax-ldata-get", "(vlax-ldata-get dictionary key [default [private]]) -> value",
             "The value kept under a key of a named dictionary or with an object; the default when there is none.") {
  const OpenObject<GcDbDictionary> dictionary(dictionaryArgument(args, false), GcDb::kForRead);
  const GcText key(args.string());
  LispValue value;
  return dictionary && get(args.vm(), idAt(*dictionary, key), value) ? value : args.any();
}

LISP_BUILTIN("vlax-ldata-delete", "(vlax-ldata-delete dictionary key [private]) -> T | nil",
             "Erases the value kept under a key; nil when there is none.") {
  const GcDbObjectId dictionaryId = dictionaryArgument(args, false);
  const GcText key(args.string());
  bool erased = false;
  if (const OpenObject<GcDbDictionary> dictionary(dictionaryId, GcDb::kForRead); dictionary) {
    const OpenObject<GcDbGroupData> object(idAt(*dictionary, key), GcDb::kForWrite);
    erased = object && object->erase() == Gcad::eOk;
  }
  return lisplib::settled(args, LispValue::boolean(erased));
}

LISP_BUILTIN("vlax-ldata-list", "(vlax-ldata-list dictionary [private]) -> list",
             "All values kept in a named dictionary or with an object, as (key . value).") {
  lisp::ListBuilder list(args.vm());
  const OpenObject<GcDbDictionary> dictionary(dictionaryArgument(args, false), GcDb::kForRead);
  if (!dictionary) return list.list();
  for (const GcDbDictionaryEntry& entry : dictionary->entries()) {
    LispValue value;
    if (!entry.id.isErased() && get(args.vm(), entry.id, value))
      list.add(args.cons(args.newString(view(entry.key)), value));
  }
  return list.list();
}

LISP_BUILTIN("vlax-ldata-test", "(vlax-ldata-test value) -> T | nil", "Whether a value can be kept in the drawing.") {
  return LispValue::boolean(lisplib::canBeKept(args.any()));
}
