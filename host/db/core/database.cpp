#include "db/database.h"

#include "db/blockbegin.h"
#include "db/dictionary.h"
#include "db/transaction.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/db/core/life.h"
#include "host/db/core/loadreport.h"
#include "host/db/core/newdrawing.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"
#include "host/db/describe/classinfo.h"
#include "host/rx/view.h"

GCDB_DEFINE_CLASS(GcDbDatabase, "AcDbDatabase")
GCDB_DEFINE_CLASS(GcDbDatabaseReactor, "GcDbDatabaseReactor")

GcDbDatabase::GcDbDatabase(bool buildDefaultDrawing, bool) {
  gcdbRegisterClasses();
  gcdbWatchClasses();
  m_store = new GcDbStore(this);
  m_header = new GcDbHeader;
  m_fileParts = new GcDbFileParts;
  m_undo = new GcDbUndo(*this);
  m_header->setUndo(m_undo);
  m_transactions = new GcDbTransactionManager(*this);
  if (buildDefaultDrawing) gcdbBuildNewDrawing(*this);
}

GcDbDatabase::~GcDbDatabase() {
  const GcArray<GcDbDatabaseReactor*> reactors = m_reactors;  // they may take themselves out
  for (GcDbDatabaseReactor* reactor : reactors) reactor->goodbye(this);
  GcDbHostApplicationServices* services = gcdbHostApplicationServices();
  if (services->workingDatabase() == this) services->setWorkingDatabase(nullptr);
  delete m_transactions;
  m_header->setUndo(nullptr);
  delete m_undo;
  delete m_store;
  delete m_fileParts;
  delete m_header;
  delete m_report;
}

uint32_t GcDbDatabase::serial() const { return m_store->serial(); }

GcDbLoadReport& GcDbDatabase::loadReport() {
  if (m_report == nullptr) m_report = new GcDbLoadReport;
  return *m_report;
}

GcDbHandle GcDbDatabase::handseed() const { return m_store->handseed(); }

Gcad::ErrorStatus GcDbDatabase::getGcDbObjectId(GcDbObjectId& id, bool createIfNotFound,
                                                const GcDbHandle& handle) const {
  id.setNull();
  if (handle.isNull()) return Gcad::eNullHandle;
  GcDbStub* stub = createIfNotFound ? m_store->need(handle) : m_store->find(handle);
  if (stub == nullptr || (stub->object == nullptr && !createIfNotFound)) return Gcad::eUnknownHandle;
  id = GcDbObjectId(stub);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDatabase::addGcDbObject(GcDbObjectId& id, GcDbObject* object, GcDbObjectId owner) {
  if (object == nullptr) return Gcad::eNullObjectPointer;
  if (!object->m_id.isNull()) return Gcad::eAlreadyInDb;
  GcDbStub* stub = m_store->fresh();
  m_store->adopt(stub, object, owner);
  stub->writing = stub->isNew = true;
  m_store->countOpen(1);
  id = GcDbObjectId(stub);
  m_undo->recordAppended(*object);
  return Gcad::eOk;
}

#define GC_GET_TABLE(Class, which)                                                     \
  Gcad::ErrorStatus GcDbDatabase::getSymbolTable(Class*& table, GcDb::OpenMode mode) { \
    return openTable(table, which, mode);                                              \
  }
GC_GET_TABLE(GcDbBlockTable, kBlocks)
GC_GET_TABLE(GcDbLayerTable, kLayers)
GC_GET_TABLE(GcDbLinetypeTable, kLinetypes)
GC_GET_TABLE(GcDbTextStyleTable, kTextStyles)
GC_GET_TABLE(GcDbDimStyleTable, kDimStyles)
GC_GET_TABLE(GcDbRegAppTable, kRegApps)
GC_GET_TABLE(GcDbViewTable, kViews)
GC_GET_TABLE(GcDbViewportTable, kViewports)
GC_GET_TABLE(GcDbUCSTable, kUcss)
#undef GC_GET_TABLE

Gcad::ErrorStatus GcDbDatabase::getNamedObjectsDictionary(GcDbDictionary*& dictionary, GcDb::OpenMode mode) {
  return gcdbOpenObject(dictionary, m_namedObjectsId, mode);
}

GcDbObjectId GcDbDatabase::layoutDictionaryId() const {
  GcDbObjectId id;
  GcDbDictionary* root = nullptr;
  if (gcdbOpenObject(root, m_namedObjectsId, GcDb::kForRead) != Gcad::eOk) return id;
  ignore(root->getAt(GC_T("ACAD_LAYOUT"), id));
  ignore(root->close());
  return id;
}

// ---- current settings ------------------------------------------------------------------------------------

// Undo puts back records that may not be back themselves yet.
bool GcDbDatabase::isUsable(GcDbObjectId id) const {
  return m_undo->isApplying() || (id.database() == this && !id.isErased());
}

template <class T>
void GcDbDatabase::change(T& setting, const T& value) {
  if (setting == value) return;
  m_undo->recordCurrent();
  setting = value;
}

Gcad::ErrorStatus GcDbDatabase::setClayer(GcDbObjectId id) {
  if (!m_undo->isApplying()) {
    if (!isUsable(id) || id.objectClass() != GcDbLayerTableRecord::desc()) return Gcad::eInvalidInput;
    if (static_cast<GcDbLayerTableRecord*>(id.stub()->object)->isFrozen()) return Gcad::eInvalidInput;
  }
  change(m_current.layer, id);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDatabase::setCeltype(GcDbObjectId id) {
  if (!isUsable(id)) return Gcad::eInvalidInput;
  change(m_current.linetype, id);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDatabase::setTextstyle(GcDbObjectId id) {
  if (!isUsable(id)) return Gcad::eInvalidInput;
  change(m_current.textStyle, id);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDatabase::setDimstyle(GcDbObjectId id) {
  if (!isUsable(id)) return Gcad::eInvalidInput;
  change(m_current.dimStyle, id);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDatabase::setUcsBase(GcDbObjectId id) {
  if (!id.isNull() && (id.database() != this || id.isErased() || id.objectClass() != GcDbUCSTableRecord::desc()))
    return Gcad::eInvalidInput;
  const GcString name = id.isNull() ? GcString() : static_cast<GcDbUCSTableRecord*>(id.stub()->object)->getName();
  m_header->setText(GC_T("$UCSBASE"), view(name), 2);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDatabase::setCecolor(const GcCmColor& color) {
  change(m_current.color, color);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDatabase::setCeltscale(double scale) {
  if (!(scale > 0)) return Gcad::eInvalidInput;
  change(m_current.linetypeScale, scale);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDatabase::setCelweight(GcDb::LineWeight weight) {
  change(m_current.lineWeight, static_cast<int16_t>(weight));
  return Gcad::eOk;
}

// ---- reactors --------------------------------------------------------------------------------------------

void GcDbDatabase::addReactor(GcDbDatabaseReactor* reactor) {
  if (reactor != nullptr && !m_reactors.contains(reactor)) m_reactors.append(reactor);
}

void GcDbDatabase::removeReactor(GcDbDatabaseReactor* reactor) {
  const int at = m_reactors.find(reactor);
  if (at >= 0) m_reactors.removeAt(at);
}

namespace {

// Tells the reactors of an object, which is open for read meanwhile unless it is open anyway. Reactors may take
// themselves or each other out while they are told.
template <class Call>
void tellReactors(const GcArray<GcDbDatabaseReactor*>& reactors, const GcDbObject* object, const Call& call) {
  if (reactors.isEmpty()) return;
  GcDbStub* stub = object->objectId().stub();
  const bool opens = stub != nullptr && !stub->isOpen();
  if (opens) ++stub->readers;
  const GcArray<GcDbDatabaseReactor*> all = reactors;
  for (GcDbDatabaseReactor* reactor : all)
    if (reactors.contains(reactor)) call(*reactor);
  if (opens) --stub->readers;
}

}  // namespace

void GcDbDatabase::notifyAppended(const GcDbObject* object) {
  tellReactors(m_reactors, object, [&](GcDbDatabaseReactor& reactor) { reactor.objectAppended(this, object); });
}

void GcDbDatabase::notifyUnAppended(const GcDbObject* object) {
  tellReactors(m_reactors, object, [&](GcDbDatabaseReactor& reactor) { reactor.objectUnAppended(this, object); });
}

void GcDbDatabase::notifyReAppended(const GcDbObject* object) {
  tellReactors(m_reactors, object, [&](GcDbDatabaseReactor& reactor) { reactor.objectReAppended(this, object); });
}

void GcDbDatabase::notifyErased(const GcDbObject* object, bool erased) {
  tellReactors(m_reactors, object, [&](GcDbDatabaseReactor& reactor) { reactor.objectErased(this, object, erased); });
}

void GcDbDatabase::notifyModified(const GcDbObject* object) {
  tellReactors(m_reactors, object, [&](GcDbDatabaseReactor& reactor) { reactor.objectModified(this, object); });
}

void GcDbDatabaseReactor::objectAppended(const GcDbDatabase*, const GcDbObject*) {}
void GcDbDatabaseReactor::objectUnAppended(const GcDbDatabase*, const GcDbObject*) {}
void GcDbDatabaseReactor::objectReAppended(const GcDbDatabase*, const GcDbObject*) {}
void GcDbDatabaseReactor::objectOpenedForModify(const GcDbDatabase*, const GcDbObject*) {}
void GcDbDatabaseReactor::objectModified(const GcDbDatabase*, const GcDbObject*) {}
void GcDbDatabaseReactor::objectErased(const GcDbDatabase*, const GcDbObject*, bool) {}
void GcDbDatabaseReactor::headerSysVarWillChange(const GcDbDatabase*, const GCHAR*) {}
void GcDbDatabaseReactor::headerSysVarChanged(const GcDbDatabase*, const GCHAR*, bool) {}
void GcDbDatabaseReactor::proxyResurrectionCompleted(const GcDbDatabase*, const GCHAR*, GcDbObjectIdArray&) {}
void GcDbDatabaseReactor::goodbye(const GcDbDatabase*) {}

// ---- services --------------------------------------------------------------------------------------------

namespace {
GcDbHostApplicationServices* g_services = nullptr;
}

GcDbHostApplicationServices* gcdbHostApplicationServices() {
  static auto* const plain = new GcDbHostApplicationServices;
  return g_services != nullptr ? g_services : plain;
}

void gcdbSetHostApplicationServices(GcDbHostApplicationServices* services) { g_services = services; }

Gcad::ErrorStatus GcDbHostApplicationServices::findFile(GcString& found, const GCHAR* name, GcDbDatabase*) {
  found = name;
  return Gcad::eOk;
}
