#include "host/dxf/read/object_reader.h"

#include <cstring>
#include <iterator>

#include "db/xrecord.h"
#include "db/zombie.h"
#include "host/db/core/extra.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/loader.h"
#include "host/db/core/store.h"
#include "host/db/objects/zombiedata.h"
#include "host/dxf/proxy.h"
#include "host/dxf/read/in_filer.h"
#include "host/rx/text/number.h"

namespace gc::dxf {
namespace {

constexpr int kMarkerCode = 100;
constexpr const GCHAR* kEntityMarker = GC_T("AcDbEntity");
constexpr int kBraceCode = 102;
constexpr int kFirstXDataCode = 1000;
constexpr int kAppNameCode = 1001;
constexpr int kOwnerCode = 330;

// Where groups no row knows go: behind those kept of the same section, or into a new section of their own.
GcDbGroupList& foreignList(GcDbObject& object, GcView section) {
  GcArray<GcDbForeignGroups>& all = object.needExtra().foreign;
  for (GcDbForeignGroups& groups : all) {
    if (!groups.ownMarker && view(groups.section) == section) return groups.groups;
  }
  GcDbForeignGroups fresh;
  fresh.section = toGcString(section);
  all.append(std::move(fresh));
  return all.last().groups;
}

void beginForeignSection(GcDbObject& object, GcView marker) {
  GcDbForeignGroups fresh;
  fresh.section = toGcString(marker);
  fresh.ownMarker = true;
  object.needExtra().foreign.append(std::move(fresh));
}

// The foreign section begun last; null when there is none.
GcDbGroupList* lastForeignSection(GcDbObject& object) {
  if (!object.extra() || object.extra()->foreign.isEmpty()) return nullptr;
  GcDbForeignGroups& last = object.extra()->foreign.last();
  return last.ownMarker ? &last.groups : nullptr;
}

// The rows of the common entity part, for entities whose class files itself.
const GcDbField* const* entityRows() {
  static const auto* const rows = [] {
    auto* all = new const GcDbField*[static_cast<std::size_t>(GcDbEntity::kFieldCount)];
    for (int i = 0; i < GcDbEntity::kFieldCount; ++i) all[i] = &GcDbEntity::kFields[i];
    return all;
  }();
  return rows;
}

GcDbZombieData* zombieDataOf(GcDbObject& object) {
  if (auto* entity = GcDbZombieEntity::cast(&object)) return &entity->data();
  if (auto* plain = GcDbZombieObject::cast(&object)) return &plain->data();
  return nullptr;
}

}  // namespace

struct ObjectReader::Target {
  GcDbObject& object;
  GcDbFieldReader fields;
  FieldTaker* taker;
  GcDbZombieData* zombie;  // null for objects of known classes
  GcDbGroupList* rest;     // an extension record: takes all groups behind its marker
  int handleCode = 5;
  bool inHead = true;        // before the first subclass marker
  bool inEntityPart = true;  // a zombie's groups that are read all the same
  bool inGraphics = false;
  bool isFirstOfRest = true;
  bool hasOwnMarker = false;      // one other than the entity part's
  bool keptInEntityPart = false;  // groups that are none of the entity part's
};

namespace {

// Files of some programs mark the entity part alone. What was kept of it is then looked for in all of the class.
void readWithoutMarkers(GcDbObject& object, int version) {
  GcDbGroupList& kept = foreignList(object, kEntityMarker);
  const GcDbGroupList groups = kept;
  kept.clear();
  GcDbFieldReader fields(object, version);
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);)
    if (!fields.take(group)) kept.put(group);
}

}  // namespace

std::uint64_t ObjectReader::handleOf(const RawRecord& record) const {
  const Tag* tag = record.findHead(record.type == "DIMSTYLE" ? 105 : 5);
  std::uint64_t handle = 0;
  if (tag && !tag->handle(handle)) {
    m_context.report(GcDbLoadAction::Repaired, tag->offset, 0,
                     "handle " + m_context.shown(tag->raw) + ": a new one given");
  }
  return handle;
}

// The new object; `found` becomes null when it is a zombie.
GcDbObject* ObjectReader::make(const RawRecord& record, RecordKind kind, GcRxClass*& found) const {
  const bool wantsEntity = kind == RecordKind::Entity;
  if (found && found->isDerivedFrom(GcDbEntity::desc()) == wantsEntity) {
    auto* object = GcDbObject::cast(found->create());
    if (object) return object;
  }
  found = nullptr;
  GcDbObject* zombie = wantsEntity ? static_cast<GcDbObject*>(new GcDbZombieEntity) : new GcDbZombieObject;
  zombieDataOf(*zombie)->dxfName = toGcString(m_context.decoded(record.type));
  return zombie;
}

void ObjectReader::adopt(const RawRecord& record, GcDbObject& object) {
  GcDbStore& store = m_context.database.store();
  const std::uint64_t handle = handleOf(record);
  GcDbStub* stub = handle != 0 ? store.need(handle) : store.fresh();
  if (stub->object) {
    stub = store.fresh();
    m_context.report(GcDbLoadAction::Repaired, record.offset, handle,
                     std::string(record.type) + ": the handle is taken; " + hexText(stub->handle) + " given");
  }
  store.adopt(stub, &object, GcDbObjectId());
}

GcDbObject* ObjectReader::read(const RawRecord& record, RecordKind kind, GcRxClass* found, FieldTaker* taker) {
  GcDbObject* object = make(record, kind, found);
  adopt(record, *object);
  if (found && !found->info() && !readBySelf(record, *object)) {
    found = nullptr;
    GcDbObject* zombie = make(record, kind, found);
    delete m_context.database.store().replace(object->objectId().stub(), zombie);
    object = zombie;
  }
  const bool hasRows = !found || found->info();
  GcDbXrecord* xrecord = GcDbXrecord::cast(object);
  Target target{*object,
                hasRows
                    ? GcDbFieldReader(*object, m_context.version)
                    : GcDbFieldReader(object, entityRows(), kind == RecordKind::Entity ? GcDbEntity::kFieldCount : 0,
                                      m_context.version, &m_context.database),
                taker, zombieDataOf(*object), xrecord ? &xrecord->groups() : nullptr};
  readGroups(record, target);
  if (target.keptInEntityPart && !target.hasOwnMarker) readWithoutMarkers(*object, m_context.version);
  const bool isProxy = record.type == "ACAD_PROXY_OBJECT" || record.type == "ACAD_PROXY_ENTITY";
  if (target.zombie && isProxy && unwrapProxy(*target.zombie, m_context.database.fileParts().classes))
    m_context.hasUnwrapped = true;
  return object;
}

// A class without rows reads itself. False when it could not: the object is then kept as a zombie.
bool ObjectReader::readBySelf(const RawRecord& record, GcDbObject& object) {
  std::size_t fields = 0;
  while (fields < record.tags.size() && record.tags[fields].code != kMarkerCode) ++fields;
  GroupCursor cursor(m_context, record.tags);
  cursor.seek(fields);
  InFiler filer(m_context, cursor, object.handle());
  GcDbStub* stub = object.objectId().stub();
  stub->writing = true;
  const Gcad::ErrorStatus status = object.dxfInFields(&filer);
  stub->writing = stub->recorded = stub->modified = false;
  if (status == Gcad::eOk && filer.filerStatus() == Gcad::eOk) return true;
  m_context.report(
      GcDbLoadAction::Noted, record.offset, object.handle(),
      std::string(record.type) + ": its class does not take it (" + gcadErrorStatusName(status) + "): kept as it is");
  return false;
}

void ObjectReader::readGroups(const RawRecord& record, Target& target) {
  GroupCursor cursor(m_context, record.tags);
  cursor.setHandle(target.object.handle());
  if (record.type == "DIMSTYLE") {
    cursor.setNameInGroup5();
    target.handleCode = 105;
  }
  const bool filedItself = !target.zombie && !target.object.isA()->info();
  GcDbGroup group;
  while (cursor.next(group)) {
    // An application's name begins extended data. Extension records and objects of many classes have groups of these
    // codes among their own data.
    if (group.code == kAppNameCode || (group.code >= kFirstXDataCode && target.inHead)) {
      readXData(group, cursor, target);
      return;
    }
    if (group.code == kMarkerCode) target.inHead = false;
    if (target.inHead) {
      readHead(group, cursor, target);
    } else if (filedItself) {
      (void)target.fields.take(group);  // the common part of entities; the rest the object has read
    } else {
      readField(group, target);
    }
  }
}

// The groups before the first marker. In files before R13 these are all.
void ObjectReader::readHead(const GcDbGroup& group, GroupCursor& cursor, Target& target) {
  if (group.code == target.handleCode) return;  // the object has it already
  if (group.code == kOwnerCode && m_context.version >= GcDb::kDHL_AC1012 && group.kind == GcDbGroupKind::Id) {
    GcDbLoader::setOwner(target.object, group.id);
    return;
  }
  if (group.code == kBraceCode && !group.text.empty() && group.text.front() == '{') {
    readBraces(group, cursor, target);
    return;
  }
  readField(group, target);
}

// {ACAD_REACTORS, {ACAD_XDICTIONARY, and groups of applications, which are kept.
void ObjectReader::readBraces(const GcDbGroup& first, GroupCursor& cursor, Target& target) {
  const bool isReactors = first.text == GC_T("{ACAD_REACTORS");
  const bool isDictionary = first.text == GC_T("{ACAD_XDICTIONARY");
  GcDbGroupList* kept = isReactors || isDictionary ? nullptr : &foreignList(target.object, GcView());
  if (kept) kept->put(first);
  GcDbGroup group;
  while (cursor.peek() && cursor.peek()->code != kMarkerCode && cursor.next(group)) {
    const bool isEnd = group.code == kBraceCode;
    if (kept) {
      kept->put(group);
    } else if (isReactors && group.kind == GcDbGroupKind::Id) {
      target.object.needExtra().reactors.append(group.id);
    } else if (isDictionary && group.kind == GcDbGroupKind::Id) {
      target.object.needExtra().extensionDictionary = group.id;
    }
    if (isEnd) return;
  }
  m_context.report(GcDbLoadAction::Repaired, cursor.peek() ? cursor.peek()->offset : 0, target.object.handle(),
                   "a group in braces without its end: ended");
}

void ObjectReader::readXData(GcDbGroup& group, GroupCursor& cursor, Target& target) {
  GcDbGroupList& xdata = target.object.needExtra().xdata;
  do {
    xdata.put(group);
  } while (cursor.next(group));
}

// How an entity looks to programs that do not know its class: a size and chunks of bytes.
bool ObjectReader::takeProxyGraphics(const GcDbGroup& group, Target& target) {
  const bool isSize = group.code == 92 || group.code == 160;
  if (!target.inEntityPart || target.inHead || (!isSize && group.code != 310)) return false;
  if (!GcDbEntity::cast(&target.object) || (isSize && group.asInt() <= 0)) return false;
  if (isSize) {
    target.inGraphics = true;
    return true;
  }
  if (!target.inGraphics) return false;
  GcArray<std::uint8_t>& graphics = target.object.needExtra().proxyGraphics;
  const int old = graphics.length();
  graphics.setLogicalLength(old + static_cast<int>(group.bytes.size()));
  if (!group.bytes.empty()) std::memcpy(graphics.begin() + old, group.bytes.data(), group.bytes.size());
  return true;
}

void ObjectReader::readField(const GcDbGroup& group, Target& target) {
  GcDbObject& object = target.object;
  const bool isMarker = group.code == kMarkerCode;
  if (isMarker) target.inEntityPart = group.text == kEntityMarker;
  if (isMarker && !target.inEntityPart) target.hasOwnMarker = true;
  if (takeProxyGraphics(group, target)) return;
  if (target.zombie) {
    if (!target.inEntityPart || !target.fields.take(group)) target.zombie->groups.put(group);
    return;
  }
  if (target.rest && target.fields.section()[0] != 0) {
    const bool isMerge = target.isFirstOfRest && group.code == 280;
    target.isFirstOfRest = false;
    if (!isMerge || !target.fields.take(group)) target.rest->put(group);
    return;
  }
  if (target.fields.take(group)) return;
  if (target.taker && target.taker->take(group)) return;
  if (isMarker) {
    beginForeignSection(object, group.text);
  } else if (GcDbGroupList* foreign = target.fields.inForeignSection() ? lastForeignSection(object) : nullptr) {
    foreign->put(group);
  } else {
    if (target.inEntityPart && !target.inHead) target.keptInEntityPart = true;
    foreignList(object, fromUtf8(target.fields.section())).put(group);
  }
}

}  // namespace gc::dxf
