#include "host/dwg/file/plan.h"

#include <algorithm>
#include <unordered_map>

#include "db/blockbegin.h"
#include "db/entity.h"
#include "host/db/core/extra.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/record/rawrecord.h"

namespace gc::dwg {

namespace {

constexpr const GCHAR* kUsualApplication = GC_T("ObjectDBX Classes");

class Planner {
 public:
  explicit Planner(RecordContext& context) : m_context(context), m_database(context.database) {}

  WritePlan run() {
    completeSequences();
    takeClasses();
    choose();
    if (m_context.version < kR2004) linkNeighbours();
    std::sort(m_plan.objects.begin(), m_plan.objects.end(),
              [](const PlannedObject& a, const PlannedObject& b) { return a.object->handle() < b.object->handle(); });
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

  uint32_t typeOf(const GcDbObject& object) {
    if (const GcDbZombieData* data = zombieDataOf(object)) return typeOfZombie(object, *data);
    const GcRxClass& rxClass = *object.isA();
    const bool isEntity = object.isKindOf(GcDbEntity::desc());
    uint32_t type = ClassMap::fixedTypeOf(view(rxClass.name()));
    if (type == 0 && rxClass.dxfName() != nullptr)
      type = numberOfClass(view(rxClass.dxfName()), view(rxClass.name()), &rxClass, isEntity);
    if (type == 0 || hasPacking(object)) return type;
    // A class that is described but whose record is not goes as a proxy that holds its groups.
    return isEntity ? kProxyEntity : kProxyObject;
  }

  void choose() {
    m_database.store().forEach([&](GcDbStub* stub) {
      if (stub->object == nullptr || stub->erased) return;
      PlannedObject planned;
      planned.object = stub->object;
      planned.type = typeOf(*stub->object);
      if (planned.type == 0) {
        m_context.omitted.insert(stub->handle);
        ++m_plan.leftOut;
        return;
      }
      if (planned.object->isKindOf(GcDbEntity::desc())) planned.links.mode = modeOf(*planned.object);
      m_plan.objects.push_back(std::move(planned));
    });
  }

  [[nodiscard]] RecordLinks::Mode modeOf(const GcDbObject& entity) const {
    if (entity.ownerId() == m_context.modelSpace) return RecordLinks::Mode::ModelSpace;
    if (entity.ownerId() == m_context.paperSpace) return RecordLinks::Mode::PaperSpace;
    return RecordLinks::Mode::Owner;
  }

  // Files before AC1018 chain the entities of an owner. Neighbours with the handles before and after need not be told.
  void linkNeighbours() {
    for (size_t i = 0; i < m_plan.objects.size(); ++i) m_places[m_plan.objects[i].object->handle()] = i;
    for (size_t i = 0; i < m_plan.objects.size(); ++i) {
      const GcDbObject& object = *m_plan.objects[i].object;
      if (const auto* block = GcDbBlockTableRecord::cast(&object))
        chain(block->entities());
      else if (object.extra() != nullptr)
        chain(object.extra()->parts);
    }
  }

  void chain(const GcDbObjectIdArray& all) {
    std::vector<uint64_t> handles;
    for (const GcDbObjectId id : all)
      if (m_context.isWritten(id)) handles.push_back(id.handle());
    for (size_t i = 0; i < handles.size(); ++i) {
      const auto place = m_places.find(handles[i]);
      if (place == m_places.end()) continue;
      RecordLinks& links = m_plan.objects[place->second].links;
      links.previous = i > 0 ? handles[i - 1] : 0;
      links.next = i + 1 < handles.size() ? handles[i + 1] : 0;
      links.consecutive =
          (i == 0 || links.previous + 1 == handles[i]) && (links.next == 0 || links.next == handles[i] + 1);
    }
  }

  RecordContext& m_context;
  GcDbDatabase& m_database;
  WritePlan m_plan;
  std::unordered_map<uint64_t, size_t> m_places;
};

}  // namespace

WritePlan planFile(RecordContext& context) { return Planner(context).run(); }

}  // namespace gc::dwg
