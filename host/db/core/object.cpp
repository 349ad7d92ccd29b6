#include "db/object.h"

#include <new>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/filer.h"
#include "host/db/core/extra.h"
#include "host/db/core/pool.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"
#include "host/db/core/xdata.h"
#include "host/db/describe/fieldio.h"
#include "rx/gcassert.h"

GCDB_DEFINE_CLASS(GcDbObject, "AcDbObject")

const GcDbClassInfo* gcdbInfoOf(const GcDbObject& object) { return object.isA()->info(); }

// ---- ids -------------------------------------------------------------------------------------------------

bool GcDbObjectId::isValid() const { return m_stub != nullptr && m_stub->object != nullptr; }
bool GcDbObjectId::isErased() const { return m_stub != nullptr && m_stub->erased; }
GcDbHandle GcDbObjectId::handle() const { return m_stub == nullptr ? GcDbHandle() : GcDbHandle(m_stub->handle); }
GcDbDatabase* GcDbObjectId::database() const { return m_stub == nullptr ? nullptr : m_stub->database(); }
GcRxClass* GcDbObjectId::objectClass() const { return isValid() ? m_stub->object->isA() : nullptr; }

bool GcDbHandle::getIntoAsciiBuffer(GCHAR* buffer, int size) const {
  GCHAR digits[17];
  int count = 0;
  for (uint64_t rest = m_value; rest != 0 || count == 0; rest /= 16) {
    const auto digit = static_cast<unsigned>(rest % 16);
    digits[count++] = static_cast<GCHAR>(digit < 10 ? '0' + digit : 'A' + digit - 10);
  }
  if (count + 1 > size) return false;
  for (int i = 0; i < count; ++i) buffer[i] = digits[count - 1 - i];
  buffer[count] = 0;
  return true;
}

Gcad::ErrorStatus gcdbGetGdsName(gds_name& name, GcDbObjectId id) {
  name[0] = name[1] = 0;
  if (id.isNull()) return Gcad::eNullObjectId;
  name[0] = static_cast<int64_t>(reinterpret_cast<intptr_t>(id.stub()));
  name[1] = id.database()->serial();
  return Gcad::eOk;
}

Gcad::ErrorStatus gcdbGetObjectId(GcDbObjectId& id, const gds_name name) {
  id.setNull();
  if (name[0] == 0) return Gcad::eNullObjectId;
  if (!GcDbStore::isAlive(static_cast<uint32_t>(name[1]))) return Gcad::eInvalidInput;
  id = GcDbObjectId(reinterpret_cast<GcDbStub*>(static_cast<intptr_t>(name[0])));
  return Gcad::eOk;
}

Gcad::ErrorStatus gcdbOpenGcDbObject(GcDbObject*& object, GcDbObjectId id, GcDb::OpenMode mode, bool openErased) {
  object = nullptr;
  GcDbStub* stub = id.stub();
  if (stub == nullptr) return Gcad::eNullObjectId;
  if (stub->object == nullptr) return Gcad::eUnknownHandle;
  if (stub->erased && !openErased) return Gcad::eWasErased;
  if (stub->writing) return Gcad::eWasOpenForWrite;
  if (mode == GcDb::kForWrite) {
    if (stub->readers != 0) return Gcad::eWasOpenForRead;
    stub->writing = true;
  } else {
    if (stub->readers == 0xFFFF) return Gcad::eWasOpenForRead;
    ++stub->readers;
  }
  stub->database()->store().countOpen(1);
  object = stub->object;
  return Gcad::eOk;
}

// ---- memory ----------------------------------------------------------------------------------------------

void* GcDbObject::operator new(std::size_t size) {
  void* memory = gcdbPoolAlloc(size);
  GC_ASSERT(memory != nullptr, "out of memory");
  return memory;
}
void* GcDbObject::operator new(std::size_t size, const std::nothrow_t&) noexcept { return gcdbPoolAlloc(size); }
void GcDbObject::operator delete(void* memory, std::size_t size) noexcept { gcdbPoolFree(memory, size); }
// Only called when a constructor throws, which none does; the size is not known here.
void GcDbObject::operator delete(void*, const std::nothrow_t&) noexcept {}

GcDbObject::~GcDbObject() { delete m_extra; }

GcDbObjectExtra& GcDbObject::needExtra() {
  if (m_extra == nullptr) m_extra = new GcDbObjectExtra;
  return *m_extra;
}

// ---- open state ------------------------------------------------------------------------------------------

bool GcDbObject::isReadEnabled() const { return m_id.isNull() || m_id.stub()->isOpen(); }
bool GcDbObject::isWriteEnabled() const { return m_id.isNull() || m_id.stub()->writing; }
bool GcDbObject::isNewObject() const { return !m_id.isNull() && m_id.stub()->isNew; }

void GcDbObject::assertReadEnabled() const {
  GC_ASSERT(isReadEnabled() || database()->undo().isApplying(), "object read while it is not open");
}

void GcDbObject::assertWriteEnabled(bool autoUndo, bool recordModified) {
  if (m_id.isNull()) return;
  GcDbStub* stub = m_id.stub();
  GC_ASSERT(stub->writing || database()->undo().isApplying(), "object changed while it is not open for write");
  if (autoUndo && !stub->recorded && !stub->isNew) {
    stub->recorded = true;
    database()->undo().recordModified(*this);
  }
  if (recordModified) stub->modified = true;
  stub->pathKept = false;
}

Gcad::ErrorStatus GcDbObject::close() {
  GcDbStub* stub = m_id.stub();
  if (stub == nullptr) return Gcad::eNotInDatabase;
  if (!stub->isOpen()) return Gcad::eInvalidOpenState;
  GcDbDatabase* owner = stub->database();
  owner->store().countOpen(-1);
  if (!stub->writing) {
    --stub->readers;
    return Gcad::eOk;
  }
  const bool wasNew = stub->isNew;
  const bool wasModified = stub->modified;
  stub->writing = stub->recorded = stub->modified = stub->isNew = false;
  if (wasNew)
    owner->notifyAppended(this);
  else if (wasModified)
    owner->notifyModified(this);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbObject::upgradeOpen() {
  GcDbStub* stub = m_id.stub();
  if (stub == nullptr || stub->writing) return stub == nullptr ? Gcad::eNotInDatabase : Gcad::eWasOpenForWrite;
  if (stub->readers != 1) return stub->readers == 0 ? Gcad::eNotOpenForRead : Gcad::eWasOpenForRead;
  stub->readers = 0;
  stub->writing = true;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbObject::downgradeOpen() {
  GcDbStub* stub = m_id.stub();
  if (stub == nullptr) return Gcad::eNotInDatabase;
  if (!stub->writing) return Gcad::eNotOpenForWrite;
  stub->writing = stub->recorded = false;
  stub->readers = 1;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbObject::erase(bool erasing) {
  GcDbStub* stub = m_id.stub();
  if (stub == nullptr) return Gcad::eNotInDatabase;
  if (!stub->writing) return Gcad::eNotOpenForWrite;
  if (stub->erased == erasing) return erasing ? Gcad::eWasErased : Gcad::eOk;
  const Gcad::ErrorStatus refused = subErase(erasing);
  if (refused != Gcad::eOk) return refused;
  database()->undo().recordErased(*this, erasing);
  stub->erased = stub->erasedAlone = erasing;
  GcDbObjectIdArray owned;
  subOwned(owned);
  if (m_extra != nullptr && !m_extra->extensionDictionary.isNull()) owned.append(m_extra->extensionDictionary);
  for (const GcDbObjectId id : owned) {
    GcDbObject* part = nullptr;
    if (id.isErased() == erasing || (!erasing && id.stub()->erasedAlone)) continue;
    if (gcdbOpenGcDbObject(part, id, GcDb::kForWrite, true) != Gcad::eOk) continue;
    if (part->erase(erasing) == Gcad::eOk) id.stub()->erasedAlone = false;
    ignore(part->close());
  }
  database()->notifyErased(this, erasing);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbObject::subErase(bool) { return Gcad::eOk; }
void GcDbObject::subLoaded() {}
void GcDbObject::subOwned(GcDbObjectIdArray& ids) const {
  if (m_extra == nullptr) return;
  ids.append(m_extra->parts);
  if (!m_extra->sequenceEnd.isNull()) ids.append(m_extra->sequenceEnd);
}
void GcDbObject::subSetOwned(const GcDbObjectIdArray&) {}

Gcad::ErrorStatus GcDbObject::setOwnerId(GcDbObjectId owner) {
  assertWriteEnabled();
  m_ownerId = owner;
  return Gcad::eOk;
}

// ---- extension dictionary, reactors, extended data -------------------------------------------------------

GcDbObjectId GcDbObject::extensionDictionary() const {
  if (m_extra == nullptr || m_extra->extensionDictionary.isErased()) return {};
  return m_extra->extensionDictionary;
}

Gcad::ErrorStatus GcDbObject::createExtensionDictionary() {
  if (m_id.isNull()) return Gcad::eNotInDatabase;
  assertWriteEnabled();
  if (!extensionDictionary().isNull()) return Gcad::eOk;
  auto* dictionary = new GcDbDictionary;
  dictionary->setTreatElementsAsHard(true);
  GcDbObjectId id;
  const Gcad::ErrorStatus status = database()->addGcDbObject(id, dictionary, m_id);
  if (status != Gcad::eOk) {
    delete dictionary;
    return status;
  }
  needExtra().extensionDictionary = id;
  return dictionary->close();
}

Gcad::ErrorStatus GcDbObject::releaseExtensionDictionary() {
  const GcDbObjectId id = extensionDictionary();
  if (id.isNull()) return Gcad::eKeyNotFound;
  GcDbDictionary* dictionary = nullptr;
  const Gcad::ErrorStatus status = gcdbOpenObject(dictionary, id, GcDb::kForWrite);
  if (status != Gcad::eOk) return status;
  const bool empty = dictionary->numEntries() == 0;
  if (empty) ignore(dictionary->erase());
  ignore(dictionary->close());
  if (!empty) return Gcad::eCannotBeErasedByCaller;
  assertWriteEnabled();
  m_extra->extensionDictionary.setNull();
  return Gcad::eOk;
}

void GcDbObject::addPersistentReactor(GcDbObjectId id) {
  assertWriteEnabled();
  if (!needExtra().reactors.contains(id)) m_extra->reactors.append(id);
}

void GcDbObject::removePersistentReactor(GcDbObjectId id) {
  if (m_extra == nullptr) return;
  const int at = m_extra->reactors.find(id);
  if (at < 0) return;
  assertWriteEnabled();
  m_extra->reactors.removeAt(at);
}

const GcDbObjectIdArray& GcDbObject::persistentReactors() const {
  static const GcDbObjectIdArray kNone;
  return m_extra == nullptr ? kNone : m_extra->reactors;
}

resbuf* GcDbObject::xData(const GCHAR* applicationName) const {
  assertReadEnabled();
  return m_extra == nullptr ? nullptr : gcdbXDataChain(m_extra->xdata, view(applicationName));
}

Gcad::ErrorStatus GcDbObject::setXData(const resbuf* chain) {
  assertWriteEnabled();
  GcDbGroupList merged;
  const GcDbGroupList none;
  const Gcad::ErrorStatus status =
      gcdbMergeXData(m_extra == nullptr ? none : m_extra->xdata, chain, database(), merged);
  if (status != Gcad::eOk) return status;
  if (m_extra != nullptr || !merged.isEmpty()) needExtra().xdata = merged;
  return Gcad::eOk;
}

// ---- fields ----------------------------------------------------------------------------------------------

Gcad::ErrorStatus GcDbObject::dwgInFields(GcDbDwgFiler* filer) { return gcdbFieldsDwgIn(*this, *filer); }
Gcad::ErrorStatus GcDbObject::dwgOutFields(GcDbDwgFiler* filer) const { return gcdbFieldsDwgOut(*this, *filer); }
// Described classes are read and written row by row; the common groups of every object (handle, owner,
// dictionaries, extended data) are the file reader's. Nothing is left for the base of other classes.
Gcad::ErrorStatus GcDbObject::dxfInFields(GcDbDxfFiler* filer) { return filer->filerStatus(); }
Gcad::ErrorStatus GcDbObject::dxfOutFields(GcDbDxfFiler* filer) const { return filer->filerStatus(); }
