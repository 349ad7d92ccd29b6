#include "host/dwg/file/plan.h"

#include <algorithm>
#include <unordered_map>

#include "db/entity.h"
#include "host/db/core/extra.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/record/bound.h"
#include "host/dwg/record/rawrecord.h"

namespace gc::dwg {

namespace {

constexpr uint32_t kBlockRecordType = 0x31;
constexpr const GCHAR* kUsualApplication = GC_T("ObjectDBX Classes");

class Planner {
 public:
  explicit Planner(RecordContext& context) : m_context(context), m_database(context.database) {}

  WritePlan run() {
    takeClasses();
    choose();
    if (m_context.version < kR2004) linkNeighbours();
    return std::move(m_plan);
  }

 private:
  // The classes the drawing came with keep their descriptions; numbers are given anew, without gaps.
  void takeClasses() {
    for (const GcDbClassRecord& record : m_database.fileParts().classes) {
      if (record.dxfName.isEmpty() || m_context.classes.findByDxfName(view(record.dxfName)) != nullptr) continue;
      ClassMap::FileClass each;
      each.dxfName = GcText(view(record.dxfName));
      each.className = GcText(view(record.className));
      each.appName = GcText(view(record.appName));
      each.isEntity = record.isEntity;
      each.wasZombie = record.wasZombie;
      each.proxyFlags = record.proxyFlags;
      each.dwgVersion = record.dwgVersion;
      each.maintenanceVersion = record.maintenanceVersion;
      addClass(std::move(each));
    }
  }

  ClassMap::FileClass& addClass(ClassMap::FileClass fileClass) {
    auto& all = m_context.classes.fileClasses();
    fileClass.number = kFirstFileClass + static_cast<uint32_t>(all.size());
    m_context.classes.add(std::move(fileClass));
    return all.back();
  }

  uint32_t numberOfClass(GcView dxfName, GcView className, const GcRxClass* rxClass, bool isEntity) {
    if (ClassMap::FileClass* known = m_context.classes.findByDxfName(dxfName)) {
      ++known->instanceCount;
      return known->number;
    }
    ClassMap::FileClass made;
    made.dxfName = GcText(dxfName);
    made.className = GcText(className);
    made.appName = rxClass != nullptr && rxClass->appName() != nullptr ? GcText(view(rxClass->appName()))
                                                                       : GcText(kUsualApplication);
    made.proxyFlags = rxClass != nullptr ? rxClass->proxyFlags() : 0;
    made.isEntity = isEntity;
    made.wasZombie = rxClass == nullptr;
    made.instanceCount = 1;
    return addClass(std::move(made)).number;
  }

  uint32_t typeOfZombie(const GcDbObject& object, const GcDbZombieData& data) {
    const bool isEntity = GcDbEntity::cast(&object) != nullptr;
    const bool isProxy = isProxied(data, m_context.version);
    if (data.dxfName.isEmpty()) return 0;
    if (data.recordType == 0) {
      const uint32_t own = numberOfClass(view(data.dxfName), view(data.dxfName), nullptr, isEntity);
      if (!isProxy) return own;
    }
    if (isProxy) return isEntity ? kProxyEntity : kProxyObject;
    return data.recordType;
  }

  // Of objects of a class, which all have the same: looked up once.
  struct ClassType {
    uint32_t type = 0;    // of records
    uint32_t number = 0;  // of the class among those of the file
    const ObjectKind* kind = nullptr;
    bool isLookedAt = false;  // some objects go as proxies
    int32_t count = 0;
  };

  static uint32_t proxyType(bool isEntity) { return isEntity ? kProxyEntity : kProxyObject; }

  ClassType& classTypeOf(const GcDbObject& object) {
    const GcRxClass& rxClass = *object.isA();
    if (&rxClass == m_lastClass) return *m_lastType;
    const auto [at, isNew] = m_classTypes.try_emplace(&rxClass);
    m_lastClass = &rxClass;
    m_lastType = &at->second;
    if (!isNew) return *m_lastType;
    ClassType& made = at->second;
    made.kind = &m_plan.kinds.emplace_back(classKind(object));
    made.isLookedAt = made.kind->packing != nullptr && made.kind->packing->isWhole != nullptr;
    if (made.kind->isZombie) return made;  // each object has a type of its own
    made.type = ClassMap::fixedTypeOf(view(rxClass.name()));
    if (made.type == 0 && rxClass.dxfName() != nullptr)
      made.type = made.number =
          numberOfClass(view(rxClass.dxfName()), view(rxClass.name()), &rxClass, made.kind->isEntity);
    // A class that is described but whose record is not goes as a proxy that holds its groups.
    if (made.type != 0 && !made.kind->isWritten()) made.type = proxyType(made.kind->isEntity);
    return made;
  }

  uint32_t typeOf(const GcDbObject& object, ClassType& ofClass) {
    if (ofClass.kind->isZombie) return typeOfZombie(object, *zombieDataOf(object));
    ++ofClass.count;
    return ofClass.type;
  }

  // The first one of a class was counted when it got its number.
  void countInstances() {
    for (const auto& [rxClass, ofClass] : m_classTypes)
      if (ofClass.number != 0)
        m_context.classes.fileClasses()[ofClass.number - kFirstFileClass].instanceCount += ofClass.count - 1;
  }

  // An object of which its class's record says not all.
  void asProxy(PlannedObject& planned) {
    planned.kind = &m_plan.kinds.emplace_back(objectKind(*planned.object, m_context.version));
    planned.type = proxyType(planned.kind->isEntity);
  }

  void choose() {
    m_plan.objects.reserve(m_database.store().size());
    m_database.store().forEachByHandle([&](const GcDbStub* stub) {
      if (stub->object != nullptr && !stub->erased) take(*stub);
    });
    countInstances();
  }

  void take(const GcDbStub& stub) {
    const GcDbObject& object = *stub.object;
    ClassType& ofClass = classTypeOf(object);
    PlannedObject planned;
    planned.object = &object;
    planned.handle = stub.handle;
    planned.type = typeOf(object, ofClass);
    planned.kind = ofClass.kind;
    if (ofClass.isLookedAt && !hasPacking(object, m_context.version)) asProxy(planned);
    if (planned.type == 0) {
      m_context.omitted.insert(stub.handle);
      ++m_plan.leftOut;
      return;
    }
    if (ofClass.kind->isEntity) planned.mode = modeOf(object);
    if (planned.type == kBlockRecordType || (object.extra() != nullptr && !object.extra()->parts.isEmpty()))
      m_owners.push_back(&object);
    m_plan.objects.push_back(planned);
  }

  [[nodiscard]] EntityLinks::Mode modeOf(const GcDbObject& entity) const {
    if (entity.ownerId() == m_context.modelSpace) return EntityLinks::Mode::ModelSpace;
    if (entity.ownerId() == m_context.paperSpace) return EntityLinks::Mode::PaperSpace;
    return EntityLinks::Mode::Owner;
  }

  // Files before AC1018 chain the entities of an owner. Neighbours with the handles before and after need not be told.
  void linkNeighbours() {
    for (const GcDbObject* owner : m_owners) {
      if (owner->extra() != nullptr && !owner->extra()->parts.isEmpty())
        chain(owner->extra()->parts);
      else if (const auto* block = GcDbBlockTableRecord::cast(owner))
        chain(block->entities());
    }
  }

  void chain(const GcDbObjectIdArray& all) {
    std::vector<PlannedObject>& objects = m_plan.objects;
    uint32_t before = PlannedObject::kNobody;
    constexpr int kAhead = 16;
    for (int i = 0; i < all.length(); ++i) {
      if (i + kAhead < all.length()) __builtin_prefetch(all[i + kAhead].stub());
      const GcDbObjectId id = all[i];
      if (!m_context.isWritten(id)) continue;
      const uint32_t place = placeOf(id.stub()->handle, before + 1);
      if (place == PlannedObject::kNobody) continue;
      objects[place].previous = before;
      objects[place].consecutive = true;
      if (before != PlannedObject::kNobody) {
        objects[before].next = place;
        if (objects[before].handle + 1 != objects[place].handle)
          objects[before].consecutive = objects[place].consecutive = false;
      }
      before = place;
    }
  }

  // The place of a handle, which is most often the expected one; nobody's when it is not there.
  [[nodiscard]] uint32_t placeOf(uint64_t handle, uint32_t expected) const {
    const auto& all = m_plan.objects;
    if (expected < all.size() && all[expected].handle == handle) return expected;
    const auto at = std::lower_bound(all.begin(), all.end(), handle,
                                     [](const PlannedObject& a, uint64_t b) { return a.handle < b; });
    return at != all.end() && at->handle == handle ? static_cast<uint32_t>(at - all.begin()) : PlannedObject::kNobody;
  }

  RecordContext& m_context;
  GcDbDatabase& m_database;
  WritePlan m_plan;
  std::vector<const GcDbObject*> m_owners;  // of chains
  std::unordered_map<const GcRxClass*, ClassType> m_classTypes;
  const GcRxClass* m_lastClass = nullptr;
  ClassType* m_lastType = nullptr;
};

}  // namespace

EntityLinks WritePlan::linksOf(const PlannedObject& planned) const {
  EntityLinks links;
  links.mode = planned.mode;
  links.consecutive = planned.consecutive;
  if (planned.previous != PlannedObject::kNobody) links.previous = objects[planned.previous].handle;
  if (planned.next != PlannedObject::kNobody) links.next = objects[planned.next].handle;
  return links;
}

WritePlan planFile(RecordContext& context) { return Planner(context).run(); }

}  // namespace gc::dwg
