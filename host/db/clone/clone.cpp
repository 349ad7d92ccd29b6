#include "host/db/clone/clone.h"

#include <algorithm>

#include "db/blockbegin.h"
#include "db/dictionary.h"
#include "db/dimension.h"
#include "db/hatch.h"
#include "db/xrecord.h"
#include "db/zombie.h"
#include "host/db/clone/block.h"
#include "host/db/clone/copyname.h"
#include "host/db/core/extra.h"
#include "host/db/core/header.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "host/db/objects/draworder.h"
#include "host/db/objects/standard.h"
#include "host/rx/view.h"

namespace {

// An object that is open for reading as long as this lives, erased ones excluded.
template <class T>
class Reading {
 public:
  explicit Reading(GcDbObjectId id) { ignore(gcdbOpenObject(m_object, id, GcDb::kForRead)); }
  ~Reading() {
    if (m_object != nullptr) ignore(m_object->close());
  }
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;
  explicit operator bool() const { return m_object != nullptr; }
  const T& operator*() const { return *m_object; }
  const T* operator->() const { return m_object; }

 private:
  T* m_object = nullptr;
};

bool isDictionary(GcDbObjectId id) { return id.isValid() && id.objectClass()->isDerivedFrom(GcDbDictionary::desc()); }

bool isEntity(GcDbObjectId id) { return id.isValid() && id.objectClass()->isDerivedFrom(GcDbEntity::desc()); }

// Blocks take whole entities: neither parts of others (vertices, attributes) nor their own beginnings and ends.
// Dictionaries take what is no entity.
bool canTake(GcDbObjectId owner, GcDbObjectId id) {
  if (isDictionary(owner)) return !isEntity(id);
  if (!owner.isValid() || !owner.objectClass()->isDerivedFrom(GcDbBlockTableRecord::desc()) || !isEntity(id))
    return false;
  const GcRxClass* kind = id.objectClass();
  if (kind->isDerivedFrom(GcDbBlockBegin::desc()) || kind->isDerivedFrom(GcDbBlockEnd::desc())) return false;
  const Reading<GcDbEntity> entity(id);
  return entity && !isEntity(entity->ownerId());
}

}  // namespace

// ---- first phase: who goes along ---------------------------------------------------------------------------

Gcad::ErrorStatus GcDbCloner::addPrimary(GcDbObjectId id, GcDbObjectId owner) {
  if (!id.isValid() || id.isErased()) return Gcad::eInvalidInput;
  if (id.database() != &m_source || owner.database() != &m_target) return Gcad::eWrongDatabase;
  GcDbIdPair known;
  if (m_map.compute(id, known) && !known.value().isNull()) {
    m_map.assign({id, known.value(), known.isCloned(), true});
    return Gcad::eOk;
  }
  if (crossing()) {
    Reading<GcDbSymbolTableRecord> record(id);
    if (record) {
      const GcDbObjectId value = counterpartRecord(*record);
      GcDbIdPair pair;
      m_map.compute(id, pair);
      m_map.assign({id, value, pair.isCloned(), true});
      return value.isNull() ? Gcad::eInvalidInput : Gcad::eOk;
    }
  }
  if (!canTake(owner, id)) return Gcad::eNotThatKindOfClass;
  const GcDbObjectId copy = makeCopy(id, owner, true);
  return copy.isNull() ? Gcad::eInvalidInput : attach(copy, id, owner);
}

// An empty object of the same class with a handle of its own; what the source owns follows at once.
GcDbObjectId GcDbCloner::makeCopy(GcDbObjectId source, GcDbObjectId owner, bool primary) {
  Reading<GcDbObject> from(source);
  if (!from) return {};
  auto* made = static_cast<GcDbObject*>(from->isA()->create());
  if (made == nullptr) return {};
  GcDbObjectId copy;
  if (m_target.addGcDbObject(copy, made, owner) != Gcad::eOk) {
    delete made;
    return {};
  }
  m_map.assign({source, copy, true, primary});
  m_pending.push_back({source, copy});
  copyOwned(*from, copy);
  if (crossing())
    bringAlong(*from);
  else if (const auto* dimension = GcDbDimension::cast(&*from))
    counterpart(dimension->dimBlockId());  // one dimension alone shows the block: it goes when that one changes
  return copy;
}

void GcDbCloner::copyOwned(const GcDbObject& source, GcDbObjectId copy) {
  GcDbObjectIdArray owned;
  source.subOwned(owned);
  if (!source.extensionDictionary().isNull()) owned.append(source.extensionDictionary());
  addOwnedInGroups(source, owned);
  for (const GcDbObjectId id : owned)
    if (id.isValid() && !id.isErased() && m_map.valueOf(id).isNull()) makeCopy(id, copy, false);
}

// Records and objects of unknown classes own what their groups of the codes 350 to 369 name, if it says so too.
void GcDbCloner::addOwnedInGroups(const GcDbObject& source, GcDbObjectIdArray& owned) {
  const bool hasGroups = source.isKindOf(GcDbXrecord::desc()) || source.isKindOf(GcDbZombieObject::desc()) ||
                         source.isKindOf(GcDbZombieEntity::desc());
  if (!hasGroups) return;
  GcDbMemoryFiler filer(GcDb::kWblockCloneFiler);
  ignore(source.dwgOutFields(&filer));
  for (const GcDbReferencePlace& place : filer.references()) {
    if (place.kind != GcDbReferenceKind::HardOwnership && place.kind != GcDbReferenceKind::SoftOwnership) continue;
    const GcDbObjectId id = filer.referenceAt(place);
    const Reading<GcDbObject> object(id);
    if (object && object->ownerId() == source.objectId() && !owned.contains(id)) owned.append(id);
  }
}

// Hard pointers lead to what a copy cannot do without: it is found or made in the target database.
void GcDbCloner::bringAlong(const GcDbObject& source) {
  GcDbMemoryFiler filer(GcDb::kWblockCloneFiler);
  ignore(source.dwgOutFields(&filer));
  for (const GcDbReferencePlace& place : filer.references())
    if (place.kind == GcDbReferenceKind::HardPointer) counterpart(filer.referenceAt(place));
  if (source.extra() == nullptr) return;
  counterpart(source.extra()->plotStyle);
  counterpart(source.extra()->material);
  for (const GcDbObjectId style : source.extra()->visualStyles) counterpart(style);
}

GcDbObjectId GcDbCloner::counterpart(GcDbObjectId source) {
  if (!source.isValid() || source.isErased()) return {};
  GcDbIdPair known;
  if (m_map.compute(source, known)) return known.value();
  {
    Reading<GcDbSymbolTableRecord> record(source);
    if (record) return counterpartRecord(*record);
  }
  Reading<GcDbObject> object(source);
  if (!object) return {};
  const GcDbObjectId owner = object->ownerId();
  return isDictionary(owner) ? counterpartEntry(source, owner) : GcDbObjectId();
}

// The name of the source's file, by which its records are told from others.
GcText GcDbCloner::drawingName() const {
  GcView name = view(m_source.getFilename());
  if (const size_t slash = name.find_last_of(GC_T("/\\")); slash != GcView::npos) name.remove_prefix(slash + 1);
  return GcText(name.substr(0, name.rfind(GC_T('.'))));
}

GcDbObjectId GcDbCloner::counterpartRecord(const GcDbSymbolTableRecord& record) {
  const GcDbObjectId source = record.objectId();
  if (!record.ownerId().isValid()) return {};
  const GcRxClass* kind = record.ownerId().objectClass();
  GcDbObjectId tableId;
  for (int which = 0; which < GcDbDatabase::kTableCount; ++which)
    if (m_target.tableId(which).objectClass() == kind) tableId = m_target.tableId(which);
  GcDbSymbolTable* table = nullptr;
  if (gcdbOpenObject(table, tableId, GcDb::kForWrite) != Gcad::eOk) return {};
  GcDbObjectId existing;
  GcText name(view(record.getName()));
  name = gcdbNameOfCopy(m_mode, name, drawingName(), [&](GcView each) { return table->has(GcText(each).c_str()); });
  if (table->getAt(name.c_str(), existing) == Gcad::eOk) {
    ignore(table->close());
    // The spaces are what layouts show: their contents are nobody's to replace.
    const bool replace = m_mode == GcDb::kDrcReplace && GcView(name).find(GC_T("_Space")) == GcView::npos;
    m_map.assign({source, existing, replace, false});
    if (replace) replaceRecord(source, existing);
    return existing;
  }
  auto* made = static_cast<GcDbSymbolTableRecord*>(record.isA()->create());
  GcDbObjectId copy;
  const bool added = made->setName(name.c_str()) == Gcad::eOk && table->add(copy, made) == Gcad::eOk;
  ignore(table->close());
  if (!added) {
    delete made;
    return {};
  }
  m_map.assign({source, copy, true, false});
  m_pending.push_back({source, copy});
  if (const auto* block = GcDbBlockTableRecord::cast(made))
    takeEnds(static_cast<const GcDbBlockTableRecord&>(record), *block);
  copyOwned(record, copy);
  bringAlong(record);
  return copy;
}

// A definition has ends of its own from the start, which become the copies of the source's.
void GcDbCloner::takeEnds(const GcDbBlockTableRecord& source, const GcDbBlockTableRecord& copy) {
  for (const auto& [from, to] :
       {std::pair{source.blockBeginId(), copy.blockBeginId()}, std::pair{source.blockEndId(), copy.blockEndId()}}) {
    GcDbObject* end = nullptr;
    if (!from.isValid() || from.isErased() || gcdbOpenGcDbObject(end, to, GcDb::kForWrite) != Gcad::eOk) continue;
    m_map.assign({from, to, true, false});
    m_pending.push_back({from, to});
    if (const Reading<GcDbObject> original(from); original) bringAlong(*original);
  }
}

// The existing record keeps its id, so that all that refers to it sees the new contents.
void GcDbCloner::replaceRecord(GcDbObjectId source, GcDbObjectId existing) {
  GcDbObject* target = nullptr;
  if (gcdbOpenGcDbObject(target, existing, GcDb::kForWrite) != Gcad::eOk) return;
  target->assertWriteEnabled();
  GcDbObjectIdArray owned;
  target->subOwned(owned);
  for (const GcDbObjectId id : owned) {
    GcDbObject* part = nullptr;
    if (gcdbOpenGcDbObject(part, id, GcDb::kForWrite) != Gcad::eOk) continue;
    ignore(part->erase());
    ignore(part->close());
  }
  m_pending.push_back({source, existing});  // stays open for write until it is filled
  Reading<GcDbObject> from(source);
  if (!from) return;
  copyOwned(*from, existing);
  bringAlong(*from);
}

// The dictionary of the target that stands where the source dictionary stands, made when it is missing.
GcDbObjectId GcDbCloner::targetDictionary(GcDbObjectId sourceDictionary) {
  if (sourceDictionary == m_source.namedObjectsDictionaryId()) return m_target.namedObjectsDictionaryId();
  const GcDbObjectId known = m_map.valueOf(sourceDictionary);
  if (!known.isNull()) return known;
  Reading<GcDbDictionary> dictionary(sourceDictionary);
  if (!dictionary || !isDictionary(dictionary->ownerId())) return {};
  Reading<GcDbDictionary> parent(dictionary->ownerId());
  GcString key;
  if (!parent || parent->nameAt(sourceDictionary, key) != Gcad::eOk) return {};
  const GcDbObjectId targetParentId = targetDictionary(dictionary->ownerId());
  GcDbDictionary* targetParent = nullptr;
  if (gcdbOpenObject(targetParent, targetParentId, GcDb::kForWrite) != Gcad::eOk) return {};
  GcDbObjectId id;
  if (targetParent->getAt(key.c_str(), id) != Gcad::eOk) {
    auto* made = static_cast<GcDbDictionary*>(dictionary->isA()->create());
    made->setTreatElementsAsHard(dictionary->isTreatElementsAsHard());
    if (targetParent->setAt(key.c_str(), made, id) == Gcad::eOk)
      ignore(made->close());
    else
      delete made;
  }
  ignore(targetParent->close());
  return id;
}

namespace {

// What stands for an entry in the dictionary of another drawing. Keys say it, but for scales: those have keys that are
// only numbers ("A3"), and are the same when their name is. A scale whose key is taken by another one gets a new key.
GcDbObjectId sameEntry(const GcDbDictionary& dictionary, GcDbObjectId source, GcString& key) {
  Reading<GcDbScale> scale(source.objectClass() == GcDbScale::desc() ? source : GcDbObjectId());
  GcDbObjectId existing;
  if (!scale) {
    ignore(dictionary.getAt(key.c_str(), existing));
    return existing;
  }
  for (const GcDbDictionaryEntry& entry : dictionary.entries()) {
    Reading<GcDbScale> other(entry.id);
    if (other && equalNoCase(view(other->name()), view(scale->name()))) return entry.id;
  }
  for (int n = 0; dictionary.has(key.c_str()); ++n) key = toGcString(GC_T("A") + fromUtf8(std::to_string(n)));
  return {};
}

}  // namespace

GcDbObjectId GcDbCloner::counterpartEntry(GcDbObjectId source, GcDbObjectId ownerId) {
  GcString key;
  {
    Reading<GcDbDictionary> owner(ownerId);
    if (!owner || owner->nameAt(source, key) != Gcad::eOk) return {};
  }
  const GcDbObjectId dictionaryId = targetDictionary(ownerId);
  GcDbDictionary* dictionary = nullptr;
  if (gcdbOpenObject(dictionary, dictionaryId, GcDb::kForRead) != Gcad::eOk) return {};
  if (source.objectClass() != GcDbScale::desc())
    key = toGcString(gcdbNameOfCopy(m_mode, view(key), drawingName(),
                                    [&](GcView each) { return dictionary->has(GcText(each).c_str()); }));
  const GcDbObjectId existing = sameEntry(*dictionary, source, key);
  ignore(dictionary->close());
  if (!existing.isNull()) {
    const bool replace = m_mode == GcDb::kDrcReplace && existing.objectClass() == source.objectClass();
    m_map.assign({source, existing, replace, false});
    if (replace) replaceRecord(source, existing);
    return existing;
  }
  const GcDbObjectId copy = makeCopy(source, dictionaryId, false);
  if (copy.isNull()) return {};
  if (gcdbOpenObject(dictionary, dictionaryId, GcDb::kForWrite) != Gcad::eOk) return copy;
  dictionary->assertWriteEnabled();
  dictionary->appendEntry(key, copy);
  ignore(dictionary->close());
  return copy;
}

// ---- second phase: fields and references -------------------------------------------------------------------

// Enters a copy that was asked for into its owner.
Gcad::ErrorStatus GcDbCloner::attach(GcDbObjectId copy, GcDbObjectId source, GcDbObjectId owner) {
  GcDbObject* container = nullptr;
  const Gcad::ErrorStatus status = gcdbOpenGcDbObject(container, owner, GcDb::kForWrite);
  if (status != Gcad::eOk) return status;
  Gcad::ErrorStatus result = Gcad::eNotThatKindOfClass;
  if (auto* block = GcDbBlockTableRecord::cast(container)) {
    result = block->adoptEntity(copy);
  } else if (auto* dictionary = GcDbDictionary::cast(container)) {
    GcText key = GC_T("*A1");
    for (int n = 2; dictionary->has(key.c_str()); ++n) key = GC_T("*A") + fromUtf8(std::to_string(n));
    Reading<GcDbObject> from(source);
    if (from && isDictionary(from->ownerId())) {
      Reading<GcDbDictionary> home(from->ownerId());
      GcString name;
      if (home && home->nameAt(source, name) == Gcad::eOk && !dictionary->has(name.c_str())) key = view(name);
    }
    dictionary->assertWriteEnabled();
    dictionary->appendEntry(toGcString(key), copy);
    result = Gcad::eOk;
  }
  ignore(container->close());
  return result;
}

GcDbObjectId GcDbCloner::translated(GcDbObjectId id, int kind) const {
  if (id.isNull()) return id;
  GcDbIdPair pair;
  if (m_map.compute(id, pair) && !pair.value().isNull()) return pair.value();
  if (crossing()) return {};
  // What a source owns was copied with it unless it was erased: a copy never shares ownership.
  const auto strength = static_cast<GcDbReferenceKind>(kind);
  const bool owning = strength == GcDbReferenceKind::SoftOwnership || strength == GcDbReferenceKind::HardOwnership;
  return owning ? GcDbObjectId() : id;
}

// Handles say the drawing order: the copies are sorted by their own handles in the order of their sources.
void GcDbCloner::sortCopies(GcDbSortentsTable& copy, GcDbObjectId sourceBlock) const {
  GcDbObjectIdArray order;
  std::vector<uint64_t> handles;
  for (const GcDbSortPair& each : gcdbDrawingOrder(sourceBlock)) {
    const GcDbObjectId value = m_map.valueOf(each.entity);
    if (value.isNull()) continue;
    order.append(value);
    handles.push_back(value.handle());
  }
  std::sort(handles.begin(), handles.end());
  GcArray<GcDbSortPair> pairs;
  for (int i = 0; i < order.length(); ++i)
    if (handles[static_cast<size_t>(i)] != order[i].handle())
      pairs.append({order[i], static_cast<int64_t>(handles[static_cast<size_t>(i)])});
  ignore(copy.setPairs(pairs));
}

// A hatch copied together with all its boundary follows the copied one; another copy is bound to nothing.
void GcDbCloner::keepToCopies(GcDbHatch& copy, const GcDbHatch& source) const {
  if (!source.associative()) return;
  for (const GcDbHatchLoop& loop : source.loops())
    for (const GcDbObjectId id : loop.sources)
      if (m_map.valueOf(id).isNull()) return ignore(copy.removeAssociativity());
}

Gcad::ErrorStatus GcDbCloner::fill(const Pending& pending) {
  GcDbObject* copy = pending.copy.stub()->object;
  const GcDbObjectId owner = copy->ownerId();
  const auto* recordCopy = GcDbSymbolTableRecord::cast(copy);
  const GcString name = recordCopy != nullptr ? recordCopy->getName() : GcString();
  Reading<GcDbObject> source(pending.source);
  if (!source) return Gcad::eInvalidInput;
  const GcDb::FilerType type = crossing() ? GcDb::kWblockCloneFiler : GcDb::kDeepCloneFiler;
  GcDbMemoryFiler filer(type);
  gcdbImageOut(*source, filer);
  for (const GcDbReferencePlace& place : filer.references())
    filer.setReferenceAt(place, translated(filer.referenceAt(place), static_cast<int>(place.kind)));
  const Gcad::ErrorStatus status = gcdbImageIn(*copy, filer);
  ignore(copy->setOwnerId(owner));
  if (recordCopy != nullptr) const_cast<GcDbSymbolTableRecord*>(recordCopy)->keepName(name);

  GcDbObjectIdArray owned, copies;
  source->subOwned(owned);
  for (const GcDbObjectId id : owned) {
    const GcDbObjectId value = m_map.valueOf(id);
    if (!value.isNull() || !id.isErased()) copies.append(value);
  }
  copy->subSetOwned(copies);

  if (auto* dictionary = GcDbDictionary::cast(copy)) dictionary->dropNullEntries();
  if (GcDbObjectExtra* extra = copy->extra()) {
    for (int i = extra->parts.length() - 1; i >= 0; --i)
      if (extra->parts[i].isNull()) extra->parts.removeAt(i);
    // Those to be told of changes are told of the copy only when they were copied too.
    GcDbObjectIdArray reactors;
    for (const GcDbObjectId id : source->persistentReactors())
      if (!m_map.valueOf(id).isNull()) reactors.append(m_map.valueOf(id));
    extra->reactors = reactors;
    extra->xdata.translateHandles([&](uint64_t handle) {
      GcDbObjectId id;
      if (m_source.getGcDbObjectId(id, false, handle) != Gcad::eOk) return handle;
      const GcDbObjectId value = m_map.valueOf(id);
      if (!value.isNull()) return static_cast<uint64_t>(value.handle());
      return crossing() ? uint64_t{0} : handle;
    });
  }
  if (auto* hatch = GcDbHatch::cast(copy)) keepToCopies(*hatch, *GcDbHatch::cast(&*source));
  if (auto* order = GcDbSortentsTable::cast(copy)) sortCopies(*order, GcDbSortentsTable::cast(&*source)->blockId());
  copy->subLoaded();
  return status;
}

Gcad::ErrorStatus GcDbCloner::translate() {
  Gcad::ErrorStatus result = Gcad::eOk;
  for (size_t i = 0; i < m_pending.size(); ++i) {
    const Gcad::ErrorStatus status = fill(m_pending[i]);
    if (result == Gcad::eOk) result = status;
  }
  for (const Pending& pending : m_pending) ignore(pending.copy.stub()->object->close());
  m_pending.clear();
  return result;
}

// ---- the database's calls ----------------------------------------------------------------------------------

namespace {

Gcad::ErrorStatus cloneAll(GcDbCloner& cloner, const GcDbObjectIdArray& ids, GcDbObjectId ownerId) {
  Gcad::ErrorStatus result = Gcad::eOk;
  for (const GcDbObjectId id : ids) {
    const Gcad::ErrorStatus status = cloner.addPrimary(id, ownerId);
    if (result == Gcad::eOk) result = status;
  }
  const Gcad::ErrorStatus translated = cloner.translate();
  return result == Gcad::eOk ? translated : result;
}

}  // namespace

Gcad::ErrorStatus GcDbDatabase::deepCloneObjects(const GcDbObjectIdArray& ids, GcDbObjectId ownerId, GcDbIdMapping& map,
                                                 bool deferXlation) {
  if (deferXlation) return Gcad::eNotApplicable;
  GcDbCloner cloner(*this, *this, map, GcDb::kDrcNotApplicable);
  return cloneAll(cloner, ids, ownerId);
}

Gcad::ErrorStatus GcDbDatabase::wblockCloneObjects(const GcDbObjectIdArray& ids, GcDbObjectId ownerId,
                                                   GcDbIdMapping& map, GcDb::DuplicateRecordCloning mode,
                                                   bool deferXlation) {
  GcDbDatabase* target = ownerId.database();
  if (target == nullptr) return Gcad::eNullObjectId;
  if (deferXlation) return Gcad::eNotApplicable;
  GcDbCloner cloner(*this, *target, map, mode);
  return cloneAll(cloner, ids, ownerId);
}

Gcad::ErrorStatus GcDbDatabase::insert(const GCHAR* blockName, GcDbDatabase* source, bool preserveSourceDatabase) {
  GcDbObjectId blockId;
  return insert(blockId, blockName, source, preserveSourceDatabase);
}

// The source is never changed, so preserving it costs nothing and the flag needs no second way.
Gcad::ErrorStatus GcDbDatabase::insert(GcDbObjectId& blockId, const GCHAR* blockName, GcDbDatabase* source, bool) {
  if (source == nullptr || source == this) return Gcad::eInvalidInput;
  GcDbBlockTableRecord* block = nullptr;
  Gcad::ErrorStatus status = gcdbNeedEmptyBlock(*this, blockName, block);
  if (status != Gcad::eOk) return status;
  blockId = block->objectId();
  GcDbObjectIdArray ids;
  if (!source->modelSpaceId().isValid()) {
    ignore(block->close());
    return Gcad::eInvalidInput;
  }
  // Copies stand in the order in which their sources are drawn.
  for (const GcDbSortPair& each : gcdbDrawingOrder(source->modelSpaceId())) ids.append(each.entity);
  ignore(block->setOrigin(source->header().point(GC_T("$INSBASE"))));
  ignore(block->close());
  GcDbIdMapping map;
  return source->wblockCloneObjects(ids, blockId, map, GcDb::kDrcIgnore);
}
