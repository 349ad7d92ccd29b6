#include "host/ed/entitywalk.h"

namespace ed {

namespace {

bool isLiving(GcDbObjectId id) { return id.isValid() && !id.isErased(); }

// Sub-entities of an entity, in order.
GcDbObjectIdArray partsOf(GcDbObjectId id) {
  GcDbObjectIdArray parts;
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForRead, true) != Gcad::eOk) return parts;
  entity->subOwned(parts);
  ignore(entity->close());
  return parts;
}

GcDbObjectId ownerOf(GcDbObjectId id) {
  GcDbObject* object = nullptr;
  if (gcdbOpenGcDbObject(object, id, GcDb::kForRead, true) != Gcad::eOk) return {};
  const GcDbObjectId owner = object->ownerId();
  ignore(object->close());
  return owner;
}

// The first living id behind `after` in the list (or from its start for null). The walk is mostly forwards, so the
// place is looked for around the last one found.
GcDbObjectId behind(const GcDbObjectIdArray& ids, GcDbObjectId after, int& hint) {
  int at = 0;
  if (!after.isNull()) {
    const int length = ids.length();
    at = hint < length && ids[hint] == after           ? hint
         : hint + 1 < length && ids[hint + 1] == after ? hint + 1
                                                       : ids.find(after);
    if (at < 0) return {};
    hint = at;
    ++at;
  }
  while (at < ids.length() && !isLiving(ids[at])) ++at;
  return at < ids.length() ? ids[at] : GcDbObjectId();
}

GcDbObjectId behindInBlock(GcDbObjectId block, GcDbObjectId after, int& hint) {
  GcDbBlockTableRecord* record = nullptr;
  if (gcdbOpenObject(record, block, GcDb::kForRead) != Gcad::eOk) return {};
  // From the definition's own beginning the walk goes to its first entity.
  const GcDbObjectId start = after == record->blockBeginId() ? GcDbObjectId() : after;
  const GcDbObjectId found = behind(record->entities(), start, hint);
  ignore(record->close());
  return found;
}

bool isBlock(GcDbObjectId id) {
  GcRxClass* kind = id.objectClass();
  return kind != nullptr && kind->isDerivedFrom(GcDbBlockTableRecord::desc());
}

}  // namespace

GcDbObjectId nextEntity(Editor& editor, GcDbObjectId after) {
  int& hint = editor.walkHint;
  int none = 0;
  const GcDbDatabase& database = editor.database();
  if (after.isNull()) {
    const GcDbObjectId first = behindInBlock(database.modelSpaceId(), {}, hint);
    return first.isNull() ? behindInBlock(database.paperSpaceId(), {}, hint) : first;
  }
  if (isBlock(after)) return behindInBlock(after, {}, hint);
  const GcDbObjectIdArray parts = partsOf(after);
  if (const GcDbObjectId first = behind(parts, {}, none); !first.isNull()) return first;
  GcDbObjectId owner = ownerOf(after);
  if (!owner.isNull() && !isBlock(owner)) {
    if (const GcDbObjectId sibling = behind(partsOf(owner), after, none); !sibling.isNull()) return sibling;
    after = owner;
    owner = ownerOf(owner);
  }
  const GcDbObjectId next = behindInBlock(owner, after, hint);
  if (!next.isNull() || owner != database.modelSpaceId()) return next;
  return behindInBlock(database.paperSpaceId(), {}, hint);
}

}  // namespace ed
