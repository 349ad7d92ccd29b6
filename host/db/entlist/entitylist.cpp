#include "host/db/entlist/entitylist.h"

#include "db/blockbegin.h"
#include "db/database.h"
#include "db/dictionary.h"
#include "db/zombie.h"
#include "host/db/core/extra.h"
#include "host/db/core/groupfiler.h"
#include "host/db/core/handletext.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/db/objects/zombiedata.h"

namespace {

constexpr int kMarker = 100;
constexpr int kFirstLaterCode = 290;  // settings that came after the table searches got their form
constexpr int kBrace = 102;
constexpr int kPaperSpace = 67;
constexpr int kLayoutName = 410;
constexpr GcView kEntityMarker = GC_T("AcDbEntity");

// An object that is read although it may be erased or open: lists are looked at, nothing is changed.
const GcDbObject* objectOf(GcDbObjectId id) { return id.isValid() ? id.stub()->object : nullptr; }

// The layout an entity lies in: that of the block it belongs to, "Model" for block definitions too.
GcText layoutNameOf(const GcDbObject& object) {
  const GcDbObject* owner = objectOf(object.ownerId());
  while (owner != nullptr && !owner->isKindOf(GcDbBlockTableRecord::desc())) owner = objectOf(owner->ownerId());
  const auto* block = GcDbBlockTableRecord::cast(owner);
  if (block == nullptr || !block->isPaperSpace()) return GC_T("Model");
  const auto* layouts = GcDbDictionary::cast(objectOf(block->database()->layoutDictionaryId()));
  if (layouts != nullptr)
    for (const GcDbDictionaryEntry& entry : layouts->entries())
      if (entry.id == block->getLayoutId()) return GcText(view(entry.key));
  return {};
}

bool isInPaperSpace(const GcDbObject& object) {
  const GcDbObject* owner = objectOf(object.ownerId());
  while (owner != nullptr && !owner->isKindOf(GcDbBlockTableRecord::desc())) owner = objectOf(owner->ownerId());
  const auto* block = GcDbBlockTableRecord::cast(owner);
  return block != nullptr && block->isPaperSpace();
}

void putAll(const GcDbGroupList& groups, GcDbGroupSink& sink) {
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) sink.put(group);
}

// Adds space and layout behind the common marker and, at the end of each section, what no description knows.
class Sections final : public GcDbGroupSink {
 public:
  Sections(const GcDbObject& object, GcDbGroupSink& out)
      : m_object(object), m_out(out), m_foreign(object.extra() != nullptr ? &object.extra()->foreign : nullptr) {}

  void put(const GcDbGroup& group) override {
    if (group.code == kMarker) {
      endSection();
      m_section = group.text;
    }
    if (group.code == kPaperSpace && m_section == kEntityMarker) return;
    m_out.put(group);
    if (group.code != kMarker || m_section != kEntityMarker) return;
    m_out.put(GcDbGroup::ofInt(kPaperSpace, isInPaperSpace(m_object) ? 1 : 0));
    m_out.put(GcDbGroup::ofText(kLayoutName, layoutNameOf(m_object)));
  }

  void finish() {
    endSection();
    if (m_foreign == nullptr) return;
    for (const GcDbForeignGroups& groups : *m_foreign) {
      if (groups.ownMarker) m_out.put(GcDbGroup::ofText(kMarker, view(groups.section)));
      if (groups.ownMarker) putAll(groups.groups, m_out);
    }
  }

 private:
  void endSection() {
    if (m_foreign == nullptr || m_section.empty()) return;
    for (const GcDbForeignGroups& groups : *m_foreign)
      if (!groups.ownMarker && view(groups.section) == GcView(m_section)) putAll(groups.groups, m_out);
  }

  const GcDbObject& m_object;
  GcDbGroupSink& m_out;
  const GcArray<GcDbForeignGroups>* m_foreign;
  GcText m_section;
};

void putReferences(const GcDbObject& object, GcDbGroupSink& sink) {
  const GcDbObjectId dictionary = object.extensionDictionary();
  if (!dictionary.isNull()) {
    sink.put(GcDbGroup::ofText(kBrace, GC_T("{ACAD_XDICTIONARY")));
    sink.put(GcDbGroup::ofId(360, dictionary));
    sink.put(GcDbGroup::ofText(kBrace, GC_T("}")));
  }
  bool open = false;
  for (const GcDbObjectId id : object.persistentReactors()) {
    if (id.isErased()) continue;
    if (!open) sink.put(GcDbGroup::ofText(kBrace, GC_T("{ACAD_REACTORS")));
    open = true;
    sink.put(GcDbGroup::ofId(330, id));
  }
  if (open) sink.put(GcDbGroup::ofText(kBrace, GC_T("}")));
}

GcDbObjectId firstEntity(const GcDbBlockTableRecord& block) {
  for (const GcDbObjectId id : block.entities())
    if (id.isValid() && !id.isErased()) return id;
  return block.blockEndId();
}

// What the BLOCK entity tells of the definition, and where its entities begin.
void putBlock(const GcDbBlockTableRecord& block, GcDbGroupSink& sink) {
  gcdbRowsOut(&block, GcDbBlockTableRecord::kBlockFields, GcDbBlockTableRecord::kBlockFieldCount, sink,
              GcDb::kDHL_Current, block.database(), For::List);
  sink.put(GcDbGroup::ofId(-2, firstEntity(block)));
}

void putFields(const GcDbObject& object, Sections& sections) {
  if (object.isA()->info() != nullptr) {
    gcdbFieldsOut(object, sections, GcDb::kDHL_Current, For::List);
  } else {
    if (object.isKindOf(GcDbEntity::desc()))
      gcdbRowsOut(&object, GcDbEntity::kFields, GcDbEntity::kFieldCount, sections, GcDb::kDHL_Current,
                  object.database(), For::List);
    GcDbGroupList own;
    GcDbGroupFiler filer(own);
    GcDbStub* stub = object.objectId().stub();
    ++stub->readers;  // the class insists on being open
    ignore(object.dxfOutFields(&filer));
    --stub->readers;
    putAll(own, sections);
  }
  if (object.isA() == GcDbBlockBegin::desc())
    if (const auto* block = GcDbBlockTableRecord::cast(objectOf(object.ownerId()))) putBlock(*block, sections);
}

// Lists leave the entries of erased objects out, as files do.
class LivingEntries final : public GcDbGroupSink {
 public:
  explicit LivingEntries(GcDbGroupSink& out) : m_out(out) {}
  void put(const GcDbGroup& group) override {
    if (group.code == 3) {
      m_key = group.text;
      return;
    }
    const bool isEntry = group.kind == GcDbGroupKind::Id && (group.code == 350 || group.code == 360) && !m_key.empty();
    if (isEntry && group.id.isErased()) return m_key.clear();
    if (isEntry) m_out.put(GcDbGroup::ofText(3, m_key));
    if (isEntry) m_key.clear();
    m_out.put(group);
  }

 private:
  GcDbGroupSink& m_out;
  GcText m_key;
};

void putExtendedData(const GcDbObject& object, const GcDbApplicationFilter* applications, GcDbGroupSink& sink) {
  if (object.extra() == nullptr || applications == nullptr) return;
  bool begun = false, wanted = false;
  GcDbGroupList::Cursor cursor(object.extra()->xdata);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code == 1001) wanted = applications->takes(group.text);
    if (!wanted) continue;
    if (!begun) sink.put(GcDbGroup::ofText(-3, {}));
    begun = true;
    sink.put(group);
  }
}

}  // namespace

GcText gcdbDxfNameOf(const GcDbObject& object) {
  if (const auto* zombie = GcDbZombieEntity::cast(&object)) return GcText(view(zombie->data().dxfName));
  if (const auto* zombie = GcDbZombieObject::cast(&object)) return GcText(view(zombie->data().dxfName));
  if (object.isKindOf(GcDbSymbolTable::desc())) return GC_T("TABLE");
  return GcText(view(object.isA()->dxfName()));
}

bool gcdbEntityList(GcDbObjectId id, const GcDbApplicationFilter* applications, GcDbGroupSink& sink) {
  const GcDbObject* object = objectOf(id);
  if (object == nullptr || id.isErased()) return false;
  const GcText kind = gcdbDxfNameOf(*object);
  sink.put(GcDbGroup::ofId(-1, id));
  sink.put(GcDbGroup::ofText(0, kind));
  sink.put(GcDbGroup::ofId(330, object->ownerId()));
  const GcText handle = gcdbHandleText(id.handle());
  sink.put(GcDbGroup::ofText(kind == GC_T("DIMSTYLE") ? 105 : 5, handle));
  putReferences(*object, sink);
  LivingEntries living(sink);
  const bool isDictionary = object->isKindOf(GcDbDictionary::desc());
  Sections sections(*object, isDictionary ? static_cast<GcDbGroupSink&>(living) : sink);
  putFields(*object, sections);
  sections.finish();
  putExtendedData(*object, applications, sink);
  return true;
}

bool gcdbRecordList(GcDbObjectId id, GcDbGroupSink& sink) {
  const auto* record = GcDbSymbolTableRecord::cast(objectOf(id));
  if (record == nullptr || id.isErased()) return false;
  class WithoutMarkers final : public GcDbGroupSink {
   public:
    explicit WithoutMarkers(GcDbGroupSink& out) : m_out(out) {}
    void put(const GcDbGroup& group) override {
      if (group.code != kMarker && group.code < kFirstLaterCode) m_out.put(group);
    }

   private:
    GcDbGroupSink& m_out;
  };
  WithoutMarkers plain(sink);
  if (const auto* block = GcDbBlockTableRecord::cast(record)) {
    sink.put(GcDbGroup::ofText(0, GC_T("BLOCK")));
    putBlock(*block, plain);
    return true;
  }
  sink.put(GcDbGroup::ofText(0, gcdbDxfNameOf(*record)));
  gcdbFieldsOut(*record, plain, GcDb::kDHL_Current, For::List);
  return true;
}
