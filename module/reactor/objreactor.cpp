#include "module/reactor/objreactor.h"

#include "module/entity/marked.h"

namespace {

constexpr const GCHAR* kClassName = GC_T("CObjReactor");
constexpr int kHandleSize = 100;

// Deliberate: "U" is not among them; whole value only, so that a command within another one does not count.
constexpr const GCHAR* kExcludedCommands[] = {
    GC_T("UNDO"), GC_T("REDO"), GC_T("DIMSTYLE"), GC_T("_U"), GC_T("_UNDO"), GC_T("_REDO"), GC_T("_DIMSTYLE"),
};

GcRxObject* makeReactor() { return new CObjReactor; }

// The running command's name, upper-cased.
GcString runningCommand() {
  resbuf value{};
  if (gcedGetVar(GC_T("CMDNAMES"), &value) != RTNORM || value.restype != RTSTR) {
    gcedRetNil();
    return {};
  }
  const GcString name = GcString(value.resval.rstring).upper();
  gcutDelBuffer(value.resval.rstring);
  return name;
}

bool isExcludedCommandRunning() {
  const GcString running = runningCommand();
  for (const GCHAR* command : kExcludedCommands)
    if (running == GcString(command)) return true;
  return false;
}

// The expression for a marked entity; empty when LISP is not to be told of the object.
GcString expressionFor(const GcDbObject* object, const GCHAR* format) {
  if (isExcludedCommandRunning()) return {};
  const GcDbEntity* entity = GcDbEntity::cast(object);
  if (entity == nullptr || !isMarked(*entity)) return {};
  GcDbHandle handle;
  entity->getGcDbHandle(handle);
  GCHAR digits[kHandleSize];
  if (!handle.getIntoAsciiBuffer(digits, kHandleSize)) return {};
  GcString expression;
  gcutFormat(expression, format, digits);
  return expression;
}

void queue(const GcString& expression) {
  GcApDocManager* documents = gcDocManagerPtr();
  if (documents == nullptr || documents->curDocument() == nullptr) return;
  ignore(documents->sendStringToExecute(documents->curDocument(), expression.c_str(), false, false, false));
}

}  // namespace

GcRxClass* CObjReactor::gpDesc = nullptr;

CObjReactor::CObjReactor(GcDbDatabase* database) : m_database(database) {
  if (m_database != nullptr) m_database->addReactor(this);
}

CObjReactor::~CObjReactor() {
  if (m_database != nullptr) m_database->removeReactor(this);
  m_database = nullptr;
}

GcRxClass* CObjReactor::desc() { return gpDesc != nullptr ? gpDesc : gcrxFindGcRxClass(kClassName); }
GcRxClass* CObjReactor::isA() const { return desc(); }

void CObjReactor::rxInit() {
  if (const GcRxClass* found = gcrxFindGcRxClass(kClassName)) {
    if (found == gpDesc) return;
    gcrx_abort(GC_T("Class mismatch"));
  }
  gpDesc = newGcRxClass(kClassName, GC_T("GcDbDatabaseReactor"), 0, 0, 0, makeReactor);
}

void CObjReactor::objectAppended(const GcDbDatabase*, const GcDbObject* object) {
  // Deliberate: no blank before the last parenthesis here, one in the other expression.
  const GcString expression = expressionFor(object, GC_T("( WSQ_RE_LT_EntAdded \"%s\")\n"));
  if (!expression.isEmpty()) queue(expression);
}

void CObjReactor::objectErased(const GcDbDatabase*, const GcDbObject* object, bool) {
  const GcString expression = expressionFor(object, GC_T("( WSQ_RE_LT_EntErased \"%s\" )\n"));
  if (expression.isEmpty()) return;
  gcutPrintf(GC_T("%s"), expression.c_str());
  queue(expression);
  gcutPrintf(GC_T("CObjReactor::objectErased END\n"));
}

void CObjReactor::goodbye(const GcDbDatabase* database) {
  if (database == m_database) m_database = nullptr;
}
