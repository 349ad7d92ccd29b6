#include "host/db/core/life.h"

#include <memory>
#include <vector>

#include "db/database.h"
#include "db/zombie.h"
#include "host/db/core/asgroups.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/groupfiler.h"
#include "host/db/core/rawbits.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/db/objects/zombiedata.h"
#include "host/rx/view.h"

namespace {

// The object may be written to without being opened: its stub says so for a while, as of a new object, so that
// nothing is recorded for undo.
class Unrecorded {
 public:
  explicit Unrecorded(GcDbStub* stub) : m_stub(stub), m_writing(stub->writing), m_isNew(stub->isNew) {
    stub->writing = stub->isNew = true;
  }
  ~Unrecorded() {
    m_stub->writing = m_writing;
    m_stub->isNew = m_isNew;
  }
  Unrecorded(const Unrecorded&) = delete;
  Unrecorded& operator=(const Unrecorded&) = delete;

 private:
  GcDbStub* m_stub;
  bool m_writing, m_isNew;
};

GcDbZombieData* zombieData(GcDbObject* object) {
  if (auto* zombie = GcDbZombieObject::cast(object)) return &zombie->data();
  if (auto* zombie = GcDbZombieEntity::cast(object)) return &zombie->data();
  return nullptr;
}

// What every entity has, from one to the other (the classes' own fields go through groups).
void copyEntityFields(const GcDbObject& from, GcDbObject& to) {
  if (!from.isKindOf(GcDbEntity::desc()) || !to.isKindOf(GcDbEntity::desc())) return;
  GcDbGroupList groups;
  gcdbRowsOut(&from, GcDbEntity::kFields, GcDbEntity::kFieldCount, groups, GcDb::kDHL_Current, from.database());
  std::vector<const GcDbField*> rows;
  for (int i = 0; i < GcDbEntity::kFieldCount; ++i) rows.push_back(&GcDbEntity::kFields[i]);
  GcDbFieldReader reader(&to, rows.data(), static_cast<int>(rows.size()), GcDb::kDHL_Current, to.database());
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) reader.take(group);
}

// Puts `fresh` in the place of the stub's object and frees that one when `fill` succeeds; else everything is as
// before. Id, handle, owner and rare parts stay with the stub.
template <class Fill>
bool exchange(GcDbStub* stub, GcDbObject* fresh, const Fill& fill) {
  GcDbObject* former = stub->object;
  const Unrecorded guard(stub);
  std::unique_ptr<GcDbObject> dead(stub->database()->store().replace(stub, fresh));
  copyEntityFields(*former, *fresh);
  if (fill(*former, *fresh)) return true;
  stub->database()->store().replace(stub, dead.release());
  delete fresh;
  return false;
}

// A status that means the object was read to its end.
bool isComplete(Gcad::ErrorStatus status) { return status == Gcad::eOk || status == Gcad::eEndOfFile; }

GcDbRawBitsReader& bitsReader() {
  static GcDbRawBitsReader reader = nullptr;
  return reader;
}

bool hasBits(const GcDbZombieData& data) { return data.version != 0; }

// Whether what the zombie kept can be read by its class now.
bool isAwaited(const GcDbZombieData& data) {
  if (hasBits(data)) return bitsReader() != nullptr && data.recordType == 0;
  return !data.groups.isEmpty();
}

void wake(GcDbStub* stub, const GcDbZombieData& data) {
  const GcRxClass* descriptor = gcrxFindGcRxClassByDxf(data.dxfName.c_str());
  if (descriptor == nullptr || !isAwaited(data)) return;
  auto* fresh = static_cast<GcDbObject*>(descriptor->create());
  if (fresh == nullptr) return;
  if (fresh->isKindOf(GcDbEntity::desc()) != stub->object->isKindOf(GcDbEntity::desc())) {
    delete fresh;
    return;
  }
  const GcDbZombieData kept = data;
  exchange(stub, fresh, [&](GcDbObject&, GcDbObject& live) {
    if (hasBits(kept)) return bitsReader()(kept, live);
    if (live.isA()->info() != nullptr) return gcdbFromGroups(live, kept.groups);
    GcDbGroupList groups = kept.groups;
    GcDbGroupFiler filer(groups);
    return isComplete(live.dxfInFields(&filer));
  });
}

// Zombies of a class need its record in the drawing, or a file could not name it.
void needClassRecord(GcDbDatabase& database, const GcRxClass& descriptor, bool isEntity) {
  GcDbFileParts& parts = database.fileParts();
  if (descriptor.dxfName() == nullptr || parts.findClass(view(descriptor.dxfName())) != nullptr) return;
  GcDbClassRecord made;
  made.dxfName = descriptor.dxfName();
  made.className = descriptor.name();
  made.appName = descriptor.appName();
  made.proxyFlags = descriptor.proxyFlags();
  made.isEntity = isEntity;
  parts.classes.push_back(made);
}

void putToSleep(GcDbStub* stub, const GcRxClass& descriptor) {
  const bool isEntity = descriptor.isDerivedFrom(GcDbEntity::desc());
  GcDbObject* fresh = isEntity ? static_cast<GcDbObject*>(new GcDbZombieEntity) : new GcDbZombieObject;
  needClassRecord(*stub->database(), descriptor, isEntity);
  exchange(stub, fresh, [&](GcDbObject& live, GcDbObject& zombie) {
    GcDbZombieData& data = *zombieData(&zombie);
    data.dxfName = live.isA()->dxfName();
    GcDbGroupFiler filer(data.groups);
    ignore(live.dxfOutFields(&filer));
    return true;
  });
}

class ClassWatcher final : public GcRxClassWatcher {
 public:
  void classesBuilt() override {
    GcDbStore::forEachDatabase([](GcDbDatabase& database) { gcdbWakeZombies(database); });
  }
  void classGoes(GcRxClass* descriptor) override {
    GcDbStore::forEachDatabase([&](GcDbDatabase& database) {
      database.store().forEach([&](GcDbStub* stub) {
        if (stub->object != nullptr && stub->object->isKindOf(descriptor)) putToSleep(stub, *descriptor);
      });
    });
  }
};

}  // namespace

void gcdbSetRawBitsReader(GcDbRawBitsReader reader) { bitsReader() = reader; }

void gcdbWakeZombies(GcDbDatabase& database) {
  database.store().forEach([](GcDbStub* stub) {
    if (stub->object == nullptr) return;
    if (GcDbZombieData* data = zombieData(stub->object)) wake(stub, *data);
  });
}

void gcdbWatchClasses() {
  static ClassWatcher watcher;
  gcrxSetClassWatcher(&watcher);
}
