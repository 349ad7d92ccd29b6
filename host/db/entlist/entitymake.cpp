#include "host/db/entlist/entitymake.h"

#include <utility>

#include "db/blockbegin.h"
#include "db/blockreference.h"
#include "db/dictionary.h"
#include "db/dimension.h"
#include "db/groupdata.h"
#include "db/xrecord.h"
#include "host/db/clone/block.h"
#include "host/db/core/extra.h"
#include "host/db/core/loader.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"
#include "host/db/core/xdata.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/sequence.h"

namespace {

constexpr int kMarker = 100;
constexpr int kBrace = 102;
constexpr int kBeginsXData = -3;

bool findGroup(const GcDbGroupList& list, int code, GcDbGroup& found) {
  GcDbGroupList::Cursor cursor(list);
  for (GcDbGroup group; cursor.next(group);)
    if (group.code == code) {
      found = group;
      return true;
    }
  return false;
}

int64_t integerOf(const GcDbGroupList& list, int code) {
  GcDbGroup group;
  return findGroup(list, code, group) ? group.asInt() : 0;
}

GcText textOf(const GcDbGroupList& list, int code) {
  GcDbGroup group;
  return findGroup(list, code, group) ? GcText(group.text) : GcText();
}

GcRxClass* classNamed(const GCHAR* name) { return gcrxFindGcRxClass(name); }

// The last marker that names a class going by the DXF name.
GcRxClass* classByMarkers(const GcDbGroupList& list, GcView kind) {
  GcRxClass* found = nullptr;
  GcDbGroupList::Cursor cursor(list);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code != kMarker) continue;
    GcRxClass* each = gcrxFindGcRxClass(GcText(group.text).c_str());
    if (each != nullptr && each->dxfName() != nullptr && view(each->dxfName()) == kind) found = each;
  }
  return found;
}

// One DXF name for several classes: the flags tell when markers do not.
GcRxClass* classByFlags(const GcDbGroupList& list, GcView kind) {
  const int64_t flags = integerOf(list, 70);
  if (kind == GC_T("POLYLINE"))
    return classNamed((flags & 64) != 0   ? GC_T("AcDbPolyFaceMesh")
                      : (flags & 16) != 0 ? GC_T("AcDbPolygonMesh")
                      : (flags & 8) != 0  ? GC_T("AcDb3dPolyline")
                                          : GC_T("AcDb2dPolyline"));
  if (kind == GC_T("VERTEX"))
    return classNamed((flags & 192) == 192 ? GC_T("AcDbPolyFaceMeshVertex")
                      : (flags & 128) != 0 ? GC_T("AcDbFaceRecord")
                      : (flags & 64) != 0  ? GC_T("AcDbPolygonMeshVertex")
                      : (flags & 32) != 0  ? GC_T("AcDb3dPolylineVertex")
                                           : GC_T("AcDb2dVertex"));
  if (kind == GC_T("DIMENSION")) {
    static constexpr const GCHAR* kKinds[] = {GC_T("AcDbRotatedDimension"),      GC_T("AcDbAlignedDimension"),
                                              GC_T("AcDb2LineAngularDimension"), GC_T("AcDbDiametricDimension"),
                                              GC_T("AcDbRadialDimension"),       GC_T("AcDb3PointAngularDimension"),
                                              GC_T("AcDbOrdinateDimension")};
    return (flags & 7) < 7 ? classNamed(kKinds[flags & 7]) : nullptr;
  }
  return gcrxFindGcRxClassByDxf(GcText(kind).c_str());
}

GcRxClass* classOf(const GcDbGroupList& list, GcView kind) {
  GcRxClass* marked = classByMarkers(list, kind);
  GcRxClass* found = marked != nullptr ? marked : classByFlags(list, kind);
  return found != nullptr && found->isDerivedFrom(GcDbObject::desc()) ? found : nullptr;
}

// Puts the groups of a list into an object, extended data aside. Which groups are the object's own business and
// which the list's is decided here, once for making and changing.
class Filler {
 public:
  explicit Filler(GcDbObject& object) : m_object(object), m_reader(object, GcDb::kDHL_Current) {}

  Gcad::ErrorStatus fill(const GcDbGroupList& list) {
    resetColor(list);
    GcDbGroupList::Cursor cursor(list);
    for (GcDbGroup group; cursor.next(group) && group.code != kBeginsXData;) {
      const Gcad::ErrorStatus status = take(group);
      if (status != Gcad::eOk) return status;
    }
    return Gcad::eOk;
  }

 private:
  // An index alone takes the place of a true colour.
  void resetColor(const GcDbGroupList& list) {
    GcDbGroup group;
    auto* entity = GcDbEntity::cast(&m_object);
    if (entity != nullptr && findGroup(list, 62, group) && !findGroup(list, 420, group))
      ignore(entity->setColor(GcCmEntityColor::byLayer(), false));
  }

  Gcad::ErrorStatus take(const GcDbGroup& group) {
    if (group.code == kBrace) {
      m_inBraces = group.text != GC_T("}");
      m_inExtension = group.text == GC_T("{ACAD_XDICTIONARY");
      return Gcad::eOk;
    }
    if (m_inExtension && group.code == 360) return takeExtension(group.id);
    if (m_inBraces || isIdentity(group)) return Gcad::eOk;
    if (group.code == kMarker) m_seenMarker = true;
    if (group.code == 2 && GcDbSymbolTableRecord::cast(&m_object) != nullptr) return takeName(group.text);
    if (auto* record = GcDbXrecord::cast(&m_object)) return takeOfXrecord(*record, group);
    if (m_reader.take(group) || group.code == kMarker || takeOfEveryEntity(group)) return Gcad::eOk;
    return isPassedOver(group.code) ? Gcad::eOk : Gcad::eInvalidDxfCode;
  }

  // Programs put layer, colour and their like at the end of a list, behind the groups of the entity's own class.
  bool takeOfEveryEntity(const GcDbGroup& group) {
    if (GcDbEntity::cast(&m_object) == nullptr) return false;
    GcDbFieldReader reader(m_object, GcDb::kDHL_Current);
    return reader.take(GcDbGroup::ofText(kMarker, GC_T("AcDbEntity"))) && reader.take(group);
  }

  // A dictionary made before becomes the object's own; one that it has already stays.
  Gcad::ErrorStatus takeExtension(GcDbObjectId id) {
    if (id == m_object.extensionDictionary()) return Gcad::eOk;
    GcDbDictionary* dictionary = nullptr;
    if (!m_object.extensionDictionary().isNull() || gcdbOpenObject(dictionary, id, GcDb::kForWrite) != Gcad::eOk)
      return Gcad::eInvalidInput;
    ignore(dictionary->setOwnerId(m_object.objectId()));
    ignore(dictionary->close());
    m_object.needExtra().extensionDictionary = id;
    return Gcad::eOk;
  }

  // Owner and handle are the database's; space and layout the block's.
  static bool isIdentity(const GcDbGroup& group) {
    return group.code == -1 || group.code == -2 || group.code == 0 || group.code == 5 || group.code == 105 ||
           (group.code == 330 && group.kind == GcDbGroupKind::Id) || group.code == 67 || group.code == 410;
  }
  // Groups of old files that carry nothing: parts follow, and the like.
  static bool isPassedOver(int code) { return code == 66 || code == 92 || code == 160 || code == 310; }

  Gcad::ErrorStatus takeName(GcView name) {
    auto& record = static_cast<GcDbSymbolTableRecord&>(m_object);
    return view(record.getName()) == name ? Gcad::eOk : record.setName(GcText(name).c_str());
  }

  // Behind its marker and merge style an extension record takes whatever comes, and keeps nothing of before.
  Gcad::ErrorStatus takeOfXrecord(GcDbXrecord& record, const GcDbGroup& group) {
    if (group.code == kMarker && group.text == GC_T("AcDbXrecord")) {
      record.groups().clear();
      m_reader.take(group);
      return Gcad::eOk;
    }
    if (!m_seenMarker) return Gcad::eOk;
    if (group.code == 280 && !m_seenMerge) {
      m_seenMerge = true;
      m_reader.take(group);
    } else {
      record.groups().put(group);
    }
    return Gcad::eOk;
  }

  GcDbObject& m_object;
  GcDbFieldReader m_reader;
  bool m_inBraces = false;
  bool m_inExtension = false;
  bool m_seenMarker = false;
  bool m_seenMerge = false;
};

Gcad::ErrorStatus setExtendedData(GcDbObject& object, const GcDbGroupList& list) {
  resbuf* head = nullptr;
  resbuf** tail = &head;
  bool inXData = false;
  GcDbGroupList::Cursor cursor(list);
  for (GcDbGroup group; cursor.next(group);) {
    if (inXData) {
      *tail = gcdbGroupToRb(group);
      tail = &(*tail)->rbnext;
    }
    inXData = inXData || group.code == kBeginsXData;
  }
  if (head == nullptr) return Gcad::eOk;
  const Gcad::ErrorStatus status = object.setXData(head);
  gcutRelRb(head);
  return status;
}

// A data object takes all groups from the first marker on, whatever they are.
void fillData(const GcDbGroupData& data, const GcDbGroupList& list) {
  GcDbGroupList groups;
  bool isOwn = false;
  GcDbGroupList::Cursor cursor(list);
  for (GcDbGroup group; cursor.next(group) && group.code != kBeginsXData;) {
    isOwn = isOwn || group.code == kMarker;
    if (isOwn) groups.put(group);
  }
  if (isOwn) data.groups() = groups;
}

// How many records there are of the kinds a list may name but not bring into being: all but layers.
int namedRecords(GcDbDatabase* database, bool withBlocks) {
  if (database == nullptr) return 0;
  int count = 0;
  for (const auto which :
       {GcDbDatabase::kLinetypes, GcDbDatabase::kTextStyles, GcDbDatabase::kDimStyles, GcDbDatabase::kBlocks}) {
    if (which == GcDbDatabase::kBlocks && !withBlocks) continue;
    const GcDbObjectId id = database->tableId(which);
    if (id.isValid()) count += static_cast<const GcDbSymbolTable*>(id.stub()->object)->records().length();
  }
  return count;
}

Gcad::ErrorStatus fillObject(GcDbObject& object, const GcDbGroupList& list) {
  if (const auto* data = GcDbGroupData::cast(&object)) {
    fillData(*data, list);
    return setExtendedData(object, list);
  }
  if (object.isA()->info() == nullptr) return Gcad::eNotApplicable;
  const bool isInsert = GcDbBlockReference::cast(&object) != nullptr;
  const int before = namedRecords(object.database(), isInsert);
  Gcad::ErrorStatus status = Filler(object).fill(list);
  if (namedRecords(object.database(), isInsert) != before) status = Gcad::eKeyNotFound;
  return status == Gcad::eOk ? setExtendedData(object, list) : status;
}

bool isOnLockedLayer(const GcDbObject& object) {
  const auto* entity = GcDbEntity::cast(&object);
  if (entity == nullptr || !entity->layerId().isValid()) return false;
  return static_cast<const GcDbLayerTableRecord*>(entity->layerId().stub()->object)->isLocked();
}

GcDbEntityMaker::Made failed(Gcad::ErrorStatus status) { return {status, {}, {}}; }

GcDbObjectId tableOf(GcDbDatabase& database, const GcRxClass* recordClass) {
  for (int which = 0; which < GcDbDatabase::kTableCount; ++which) {
    const GcDbObjectId id = database.tableId(which);
    if (id.isValid() && static_cast<GcDbSymbolTable*>(id.stub()->object)->recordClass() == recordClass) return id;
  }
  return {};
}

// "*U" and "*U7" ask for the next free number.
GcText freeAnonymousName(GcDbDatabase& database, GcView name) {
  GcText stem(name);
  while (stem.size() > 2 && stem.back() >= '0' && stem.back() <= '9') stem.pop_back();
  GcDbBlockTable* table = nullptr;
  if (database.getSymbolTable(table) != Gcad::eOk) return GcText(name);
  GcText candidate;
  for (int n = 1;; ++n) {
    candidate = stem + fromUtf8(std::to_string(n));
    if (!table->has(candidate.c_str())) break;
  }
  ignore(table->close());
  return candidate;
}

// Dimensions follow their groups: what they measure, and the block that shows them when anything but their looks
// changed.
class DimensionFollower {
 public:
  explicit DimensionFollower(GcDbObject& object) : m_dimension(GcDbDimension::cast(&object)) {
    if (m_dimension != nullptr) m_before = ownGroups();
  }
  void follow() {
    if (m_dimension == nullptr) return;
    m_dimension->subAppended();
    const bool isShown = m_dimension->dimBlockId().isValid();
    if (isShown && !(ownGroups() == m_before)) ignore(m_dimension->recomputeDimBlock());
  }

 private:
  class Filter final : public GcDbGroupSink {
   public:
    void put(const GcDbGroup& group) override {
      constexpr int kBlockCode = 2;
      m_isOwn = m_isOwn || (group.code == kMarker && group.text == GC_T("AcDbDimension"));
      if (m_isOwn && group.code != kBlockCode) kept.put(group);
    }
    GcDbGroupList kept;

   private:
    bool m_isOwn = false;
  };
  [[nodiscard]] GcDbGroupList ownGroups() const {
    Filter filter;
    gcdbFieldsOut(*m_dimension, filter, GcDb::kDHL_Current);
    return std::move(filter.kept);
  }

  GcDbDimension* m_dimension;
  GcDbGroupList m_before;
};

Gcad::ErrorStatus changeObject(GcDbObjectId id, const GcDbGroupList& list) {
  GcDbObject* object = nullptr;
  Gcad::ErrorStatus status = gcdbOpenGcDbObject(object, id, GcDb::kForWrite);
  if (status != Gcad::eOk) return status;
  if (isOnLockedLayer(*object)) status = Gcad::eOnLockedLayer;
  if (status == Gcad::eOk) {
    object->assertWriteEnabled();
    DimensionFollower follower(*object);
    status = fillObject(*object, list);
    object->subLoaded();
    if (status == Gcad::eOk) follower.follow();
  }
  ignore(object->close());
  return status;
}

}  // namespace

Gcad::ErrorStatus gcdbEntityModify(const GcDbGroupList& list) {
  GcDbGroup name;
  if (!findGroup(list, -1, name) || !name.id.isValid()) return Gcad::eInvalidInput;
  GcDbUndo& undo = name.id.database()->undo();
  const size_t start = undo.beginTransaction();
  const Gcad::ErrorStatus status = changeObject(name.id, list);
  if (status == Gcad::eOk)
    undo.endTransaction();
  else
    undo.abortTransaction(start);  // what was changed before the group that failed
  return status;
}

GcDbEntityMaker::GcDbEntityMaker(GcDbDatabase& database) : m_database(database) {}
GcDbEntityMaker::~GcDbEntityMaker() = default;

void GcDbEntityMaker::cancel() {
  for (const GcDbObjectId id : {m_sequence, m_block}) {
    GcDbObject* begun = nullptr;
    if (gcdbOpenGcDbObject(begun, id, GcDb::kForWrite) != Gcad::eOk) continue;
    ignore(begun->erase());
    ignore(begun->close());
  }
  m_sequence.setNull();
  m_block.setNull();
}

GcDbEntityMaker::Made GcDbEntityMaker::make(const GcDbGroupList& list, GcDbObjectId space) {
  GcDbUndo& undo = m_database.undo();
  const size_t start = undo.beginTransaction();
  Made made = makeOne(list, space);
  if (made.status == Gcad::eOk)
    undo.endTransaction();
  else
    undo.abortTransaction(start);  // records that came into being with what could not be made
  return made;
}

GcDbEntityMaker::Made GcDbEntityMaker::makeOne(const GcDbGroupList& list, GcDbObjectId space) {
  const GcText kind = upperText(textOf(list, 0));
  if (kind.empty()) return failed(Gcad::eInvalidInput);
  if (kind == GC_T("BLOCK")) return beginBlock(list);
  if (kind == GC_T("ENDBLK")) return endBlock();
  GcRxClass* found = classOf(list, kind);
  if (found == nullptr) return failed(Gcad::eInvalidInput);
  const bool isPart = kind == GC_T("VERTEX") || kind == GC_T("SEQEND") || kind == GC_T("ATTRIB");
  if (isPart) return makePart(list, found);
  if (!m_sequence.isNull()) return failed(Gcad::eBadDxfSequence);
  if (found->isDerivedFrom(GcDbEntity::desc())) return makeEntity(list, found, m_block.isNull() ? space : m_block);
  return found->isDerivedFrom(GcDbSymbolTableRecord::desc()) ? makeRecord(list, found) : makeObject(list, found);
}

GcDbEntityMaker::Made GcDbEntityMaker::beginBlock(const GcDbGroupList& list) {
  if (!m_block.isNull() || !m_sequence.isNull()) return failed(Gcad::eBadDxfSequence);
  GcText name = textOf(list, 2);
  const bool anonymous = name.size() > 1 && name[0] == '*' && upperText(name).find(GC_T("_SPACE")) == GcText::npos;
  if (anonymous) name = freeAnonymousName(m_database, name);
  GcDbBlockTableRecord* block = nullptr;
  const Gcad::ErrorStatus status = gcdbNeedEmptyBlock(m_database, name.c_str(), block);
  if (status != Gcad::eOk) return failed(status);
  GcDbGroup origin;
  if (findGroup(list, 10, origin)) ignore(block->setOrigin(origin.point));
  ignore(block->setBlockFlags(static_cast<int>(integerOf(list, 70) & 3) | (anonymous ? 1 : 0)));
  if (const GcText description = textOf(list, 4); !description.empty()) ignore(block->setComments(description.c_str()));
  m_block = block->objectId();
  ignore(block->close());
  return {};
}

GcDbEntityMaker::Made GcDbEntityMaker::endBlock() {
  if (m_block.isNull() || !m_sequence.isNull()) return failed(Gcad::eBadDxfSequence);
  Made made;
  made.id = m_block;
  made.blockName = GcText(gcdbNameOfRecord(m_block));
  m_block.setNull();
  return made;
}

GcDbEntityMaker::Made GcDbEntityMaker::makeEntity(const GcDbGroupList& list, GcRxClass* kind, GcDbObjectId space) {
  auto* entity = static_cast<GcDbEntity*>(kind->create());
  if (entity == nullptr) return failed(Gcad::eNotThatKindOfClass);
  GcDbBlockTableRecord* block = nullptr;
  Made made;
  made.status = gcdbOpenObject(block, space, GcDb::kForWrite);
  if (made.status != Gcad::eOk) {
    delete entity;
    return made;
  }
  entity->setDatabaseDefaults(&m_database);
  made.status = block->appendGcDbEntity(made.id, entity);
  ignore(block->close());
  if (made.status != Gcad::eOk) {
    delete entity;
    return made;
  }
  // A list that says nothing of colour and its like makes an entity by layer, whatever is current.
  ignore(entity->setColor(GcCmEntityColor::byLayer(), false));
  ignore(entity->setLinetypeScale(1, false));
  ignore(entity->setLineWeight(GcDb::kLnWtByLayer, false));
  ignore(entity->setLinetype(m_database.byLayerLinetype(), false));
  made.status = fillObject(*entity, list);
  if (made.status != Gcad::eOk) ignore(entity->erase());
  entity->subLoaded();
  if (auto* dimension = GcDbDimension::cast(entity)) dimension->subAppended();
  ignore(entity->close());
  if (made.status != Gcad::eOk) made.id.setNull();
  const GcView name = view(kind->dxfName());
  const bool partsFollow = name == GC_T("POLYLINE") || (name == GC_T("INSERT") && integerOf(list, 66) == 1);
  if (made.status == Gcad::eOk && partsFollow) m_sequence = made.id;
  return made;
}

GcDbEntityMaker::Made GcDbEntityMaker::makePart(const GcDbGroupList& list, GcRxClass* kind) {
  GcDbEntity* owner = nullptr;
  if (gcdbOpenObject(owner, m_sequence, GcDb::kForWrite) != Gcad::eOk) return failed(Gcad::eBadDxfSequence);
  Made made;
  if (kind == GcDbSequenceEnd::desc()) {
    made.id = m_sequence;
    m_sequence.setNull();
    owner->subLoaded();
    ignore(owner->close());
    return made;
  }
  auto* part = static_cast<GcDbEntity*>(kind->create());
  ignore(part->setPropertiesFrom(*owner, false));
  made.status = gcsequence::append(*owner, part, made.id);
  ignore(owner->close());
  if (made.status != Gcad::eOk) {
    delete part;
    return made;
  }
  made.status = fillObject(*part, list);
  part->subLoaded();
  ignore(part->close());
  return made;
}

GcDbEntityMaker::Made GcDbEntityMaker::makeRecord(const GcDbGroupList& list, GcRxClass* kind) {
  GcDbSymbolTable* table = nullptr;
  Made made;
  made.status = gcdbOpenObject(table, tableOf(m_database, kind), GcDb::kForWrite);
  if (made.status != Gcad::eOk) return made;
  auto* record = static_cast<GcDbSymbolTableRecord*>(kind->create());
  made.status = record->setName(textOf(list, 2).c_str());
  if (made.status == Gcad::eOk) made.status = table->add(made.id, record);
  ignore(table->close());
  if (made.status != Gcad::eOk) {
    delete record;
    return made;
  }
  made.status = fillObject(*record, list);
  if (made.status != Gcad::eOk) ignore(record->erase());
  record->subLoaded();
  ignore(record->close());
  return made;
}

GcDbEntityMaker::Made GcDbEntityMaker::makeObject(const GcDbGroupList& list, GcRxClass* kind) {
  auto* object = static_cast<GcDbObject*>(kind->create());
  Made made;
  made.status = object == nullptr ? Gcad::eNotThatKindOfClass : m_database.addGcDbObject(made.id, object);
  if (made.status != Gcad::eOk) return made;
  made.status = fillObject(*object, list);
  if (made.status != Gcad::eOk) ignore(object->erase());
  object->subLoaded();
  ignore(object->close());
  return made;
}
