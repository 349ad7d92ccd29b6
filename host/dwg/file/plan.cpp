#include "host/dwg/file/plan.h"

#include <algorithm>
#include <unordered_map>

#include "db/blockbegin.h"
#include "db/entity.h"
#include "host/db/core/extra.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/file/nearlysorted.h"
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
    completeSequences();
    takeClasses();
    choose();
    sortNearlySorted(m_plan.objects,
                     [](const PlannedObject& a, const PlannedObject& b) { return a.handle < b.handle; });
    if (m_context.version < kR2004) linkNeighbours();
    return std::move(m_plan);
  }

 private:
  void completeSequences() {
    std::vector<GcDbEntity*> incomplete;
    m_database.store().forEach([&](GcDbStub* stub) {
      if (stub->object == nullptr || stub->erased || stub->object->extra() == nullptr) return;
      const GcDbObjectExtra& extra = *stub->object->extra();
      const bool hasEnd = extra.sequenceEnd.isValid() && !extra.sequenceEnd.isErased();
      auto* entity = GcDbEntity::cast(stub->object);
      if (!extra.parts.isEmpty() && !hasEnd && entity != nullptr) incomplete.push_back(entity);
    });
    for (GcDbEntity* entity : incomplete) {
      auto* end = new GcDbSequenceEnd;
      ignore(end->setLayer(entity->layerId()));
      GcDbObjectId id;
      ignore(m_database.addGcDbObject(id, end, entity->objectId()));
      ignore(end->close());
      entity->needExtra().sequenceEnd = id;
    }
  }

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
    m_database.store().forEach([&](GcDbStub* stub) {
      if (stub->object == nullptr || stub->erased) return;
      PlannedObject planned;
      planned.object = stub->object;
      planned.handle = stub->handle;
      ClassType& ofClass = classTypeOf(*stub->object);
      planned.type = typeOf(*stub->object, ofClass);
      planned.kind = ofClass.kind;
      if (ofClass.isLookedAt && !hasPacking(*planned.object, m_context.version)) asProxy(planned);
      if (planned.type == 0) {
        m_context.omitted.insert(stub->handle);
        ++m_plan.leftOut;
        return;
      }
      if (ofClass.kind->isEntity) planned.links.mode = modeOf(*planned.object);
      m_plan.objects.push_back(planned);
    });
    countInstances();
  }

  [[nodiscard]] EntityLinks::Mode modeOf(const GcDbObject& entity) const {
    if (entity.ownerId() == m_context.modelSpace) return EntityLinks::Mode::ModelSpace;
    if (entity.ownerId() == m_context.paperSpace) return EntityLinks::Mode::PaperSpace;
    return EntityLinks::Mode::Owner;
  }

  // Files before AC1018 chain the entities of an owner. Neighbours with the handles before and after need not be told.
  void linkNeighbours() {
    for (const PlannedObject& planned : m_plan.objects) {
      const GcDbObject& object = *planned.object;
      if (object.extra() != nullptr && !object.extra()->parts.isEmpty())
        chain(object.extra()->parts);
      else if (const auto* block = planned.type == kBlockRecordType ? GcDbBlockTableRecord::cast(&object) : nullptr)
        chain(block->entities());
    }
  }

  void chain(const GcDbObjectIdArray& all) {
    std::vector<uint64_t> handles;
    handles.reserve(static_cast<size_t>(all.length()));
    for (const GcDbObjectId id : all)
      if (m_context.isWritten(id)) handles.push_back(id.stub()->handle);
    size_t place = 0;
    for (size_t i = 0; i < handles.size(); ++i) {
      place = placeOf(handles[i], place + 1);
      if (place == m_plan.objects.size()) continue;
      EntityLinks& links = m_plan.objects[place].links;
      links.previous = i > 0 ? handles[i - 1] : 0;
      links.next = i + 1 < handles.size() ? handles[i + 1] : 0;
      links.consecutive =
          (i == 0 || links.previous + 1 == handles[i]) && (links.next == 0 || links.next == handles[i] + 1);
    }
  }

  // The place of a handle, which is most often the expected one; the end when it is not there.
  [[nodiscard]] size_t placeOf(uint64_t handle, size_t expected) const {
    const auto& all = m_plan.objects;
    if (expected < all.size() && all[expected].handle == handle) return expected;
    const auto at = std::lower_bound(all.begin(), all.end(), handle,
                                     [](const PlannedObject& a, uint64_t b) { return a.handle < b; });
    return at != all.end() && at->handle == handle ? static_cast<size_t>(at - all.begin()) : all.size();
  }

  RecordContext& m_context;
  GcDbDatabase& m_database;
  WritePlan m_plan;
  std::unordered_map<const GcRxClass*, ClassType> m_classTypes;
  const GcRxClass* m_lastClass = nullptr;
  ClassType* m_lastType = nullptr;
};

}  // namespace

WritePlan planFile(RecordContext& context) { return Planner(context).run(); }

}  // namespace gc::dwg
