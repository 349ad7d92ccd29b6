// Entities and other objects: their lists, stepping through them, making, changing and erasing them.
#include "db/blockbegin.h"
#include "db/database.h"
#include "host/db/core/handletext.h"
#include "host/db/entlist/entitylist.h"
#include "host/db/entlist/entitymake.h"
#include "host/ed/entitywalk.h"
#include "host/ed/screen.h"
#include "host/ed/selection.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/core/wcmatch.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/groupvalues.h"
#include "host/lisp/lib/names.h"

using lisp::LispValue;
using lisplib::hostOf;

LISP_GROUP("Entities")

namespace {

GcDbObjectId entityArgument(lisp::Args& args) { return lisplib::idOfWord(args.entityName()); }

LispValue nameOrNil(lisp::Vm& vm, GcDbObjectId id) {
  return id.isNull() ? LispValue::nil() : lisplib::makeName(vm, id);
}

// The applications a program asks for: a list of wild-card patterns, any case.
class Applications final : public GcDbApplicationFilter {
 public:
  explicit Applications(LispValue patterns) {
    for (; patterns.isPair(); patterns = patterns.tail())
      if (patterns.head().isString()) m_patterns.push_back(upperText(patterns.head().asString()->view()));
  }
  [[nodiscard]] bool takes(GcView applicationName) const override {
    const GcText upper = upperText(applicationName);
    for (const GcText& pattern : m_patterns)
      if (lisp::wildcardMatch(upper, pattern)) return true;
    return false;
  }
  [[nodiscard]] bool isEmpty() const { return m_patterns.empty(); }

 private:
  std::vector<GcText> m_patterns;
};

LispValue makeObject(lisp::Args& args, bool wantName) {
  lisplib::DrawingHost& host = hostOf(args.vm());
  const LispValue list = args.list();
  const GcDbGroupList groups = lisplib::groupsOf(args.vm(), list);
  const GcDbEntityMaker::Made made = host.entityMaker().make(groups, host.editor().currentSpace());
  if (made.status != Gcad::eOk) return LispValue::nil();
  if (!made.blockName.empty() && !wantName) return args.vm().heap().string(made.blockName);
  return wantName ? nameOrNil(args.vm(), made.id) : list;
}

}  // namespace

LISP_BUILTIN("entget", "(entget entity [applications]) -> list | nil",
             "The groups of an entity or other object; with extended data of the applications named.") {
  const GcDbObjectId id = entityArgument(args);
  const Applications applications(args.list());
  lisplib::GroupValues values(args.vm());
  return gcdbEntityList(id, applications.isEmpty() ? nullptr : &applications, values) ? values.list()
                                                                                      : LispValue::nil();
}

LISP_BUILTIN("entmake", "(entmake list) -> list | nil",
             "Makes an entity, a table record or another object from its groups.") {
  return lisplib::settled(args, makeObject(args, false));
}

LISP_BUILTIN("entmakex", "(entmakex list) -> entity | nil", "As entmake, but gives the new object's name.") {
  return lisplib::settled(args, makeObject(args, true));
}

LISP_BUILTIN("entmod", "(entmod list) -> list | nil", "Changes the object that group -1 names to what the list says.") {
  const LispValue list = args.list();
  const bool done = gcdbEntityModify(lisplib::groupsOf(args.vm(), list)) == Gcad::eOk;
  return lisplib::settled(args, done ? list : LispValue::nil());
}

LISP_BUILTIN("entdel", "(entdel entity) -> entity | nil", "Erases an entity, or brings an erased one back.") {
  const GcDbObjectId id = entityArgument(args);
  GcDbObject* object = nullptr;
  if (gcdbOpenGcDbObject(object, id, GcDb::kForWrite, true) != Gcad::eOk) return LispValue::nil();
  const Gcad::ErrorStatus status = object->erase(!object->isErased());
  ignore(object->close());
  return lisplib::settled(args, status == Gcad::eOk ? args[0] : LispValue::nil());
}

LISP_BUILTIN("entnext", "(entnext [entity]) -> entity | nil",
             "The entity after the given one, vertices and attributes included; the drawing's first without one.") {
  const GcDbObjectId after = args.more() ? entityArgument(args) : GcDbObjectId();
  return nameOrNil(args.vm(), ed::nextEntity(hostOf(args.vm()).editor(), after));
}

LISP_BUILTIN("entlast", "(entlast) -> entity | nil", "The newest entity that is not erased.") {
  return nameOrNil(args.vm(), ed::lastEntity(hostOf(args.vm()).editor()));
}

LISP_BUILTIN("entupd", "(entupd entity) -> entity | nil", "Draws an entity anew after its parts have changed.") {
  const GcDbObjectId id = entityArgument(args);
  if (!id.isValid() || id.isErased()) return LispValue::nil();
  ed::screen().entityChanged(id);
  return args[0];
}

LISP_BUILTIN("handent", "(handent handle) -> entity | nil", "The object of a handle, an erased one too.") {
  GcDbObjectId id;
  const uint64_t handle = gcdbHandleValue(args.string());
  ignore(hostOf(args.vm()).database().getGcDbObjectId(id, false, handle));
  return nameOrNil(args.vm(), id);
}

namespace {

// Bytes that extended data takes in a drawing, as its limit counts them: the applications' lists with their values.
int32_t sizeOfValue(LispValue pair) {
  if (!pair.isPair()) return 0;
  const LispValue value = pair.tail();
  if (value.isString()) return 4 + static_cast<int32_t>(value.asString()->view().size());
  if (value.isReal()) return 2 + 8;
  if (value.isInteger()) return 2 + (pair.head().isInteger() && pair.head().asInteger() == 1071 ? 4 : 2);
  return value.isPair() ? 2 + 3 * 8 : 2 + 8;
}

int32_t sizeOfXData(LispValue applications) {
  int32_t size = 0;
  if (applications.isPair() && applications.head().isInteger()) applications = applications.tail();
  for (; applications.isPair(); applications = applications.tail()) {
    size += 2 + 8;  // the application
    LispValue values = applications.head();
    for (values = values.isPair() ? values.tail() : LispValue::nil(); values.isPair(); values = values.tail())
      size += sizeOfValue(values.head());
  }
  return size;
}

constexpr int32_t kXDataLimit = 16383;

}  // namespace

LISP_BUILTIN("xdsize", "(xdsize list) -> integer",
             "Bytes that extended data takes, as the limit of 16383 counts them.") {
  return LispValue::integer(sizeOfXData(args.list()));
}

LISP_BUILTIN("xdroom", "(xdroom entity) -> integer | nil", "Bytes left for extended data of an entity.") {
  const GcDbObjectId id = entityArgument(args);
  const Applications all(args.cons(args.newString(std::string_view("*")), LispValue::nil()));
  lisplib::GroupValues values(args.vm());
  if (!gcdbEntityList(id, &all, values)) return LispValue::nil();
  for (LispValue rest = values.list(); rest.isPair(); rest = rest.tail())
    if (rest.head().isPair() && rest.head().head().isInteger() && rest.head().head().asInteger() == -3)
      return LispValue::integer(kXDataLimit - sizeOfXData(rest.head()));
  return LispValue::integer(kXDataLimit);
}

LISP_BUILTIN("regapp", "(regapp name) -> name | nil",
             "Registers an application for extended data; nil when it is registered.") {
  const LispValue name = args.stringValue();
  GcDbRegAppTable* table = nullptr;
  if (hostOf(args.vm()).database().getSymbolTable(table, GcDb::kForWrite) != Gcad::eOk) return LispValue::nil();
  auto* record = new GcDbRegAppTableRecord;
  const GcText text(name.asString()->view());
  const bool added = record->setName(text.c_str()) == Gcad::eOk && table->add(record) == Gcad::eOk;
  if (added)
    ignore(record->close());
  else
    delete record;
  ignore(table->close());
  return lisplib::settled(args, added ? name : LispValue::nil());
}
