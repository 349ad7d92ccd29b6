#include "host/db/entities/sequence.h"

#include "db/blockbegin.h"
#include "db/database.h"
#include "host/db/core/extra.h"

namespace gcsequence {

Gcad::ErrorStatus insertAt(GcDbEntity& owner, int index, GcDbEntity* part, GcDbObjectId& id) {
  id.setNull();
  if (part == nullptr) return Gcad::eNullEntityPointer;
  if (!part->objectId().isNull()) return Gcad::eAlreadyInDb;
  if (owner.objectId().isNull()) return Gcad::eNotInDatabase;
  owner.assertWriteEnabled();
  if (part->layerId().isNull()) ignore(part->setPropertiesFrom(owner, false));
  GcDbDatabase& database = *owner.database();
  const Gcad::ErrorStatus status = database.addGcDbObject(id, part, owner.objectId());
  if (status != Gcad::eOk) return status;
  GcDbObjectExtra& extra = owner.needExtra();
  extra.parts.insertAt(index < extra.parts.length() ? index : extra.parts.length(), id);
  part->subAppended();
  if (!extra.sequenceEnd.isNull()) return Gcad::eOk;
  auto* end = new GcDbSequenceEnd;
  ignore(end->setPropertiesFrom(owner, false));
  const Gcad::ErrorStatus ended = database.addGcDbObject(extra.sequenceEnd, end, owner.objectId());
  return ended == Gcad::eOk ? end->close() : ended;
}

Gcad::ErrorStatus append(GcDbEntity& owner, GcDbEntity* part, GcDbObjectId& id) {
  return insertAt(owner, owner.extra() == nullptr ? 0 : owner.extra()->parts.length(), part, id);
}

void collect(const GcDbEntity& owner, const GcRxClass* kind, GcDbObjectIdArray& ids) {
  if (owner.extra() == nullptr) return;
  for (const GcDbObjectId id : owner.extra()->parts) {
    const GcRxClass* own = id.isErased() ? nullptr : id.objectClass();
    if (own != nullptr && own->isDerivedFrom(kind)) ids.append(id);
  }
}

bool hasParts(const GcDbEntity& owner) {
  if (owner.extra() == nullptr) return false;
  for (const GcDbObjectId id : owner.extra()->parts)
    if (id.isValid() && !id.isErased()) return true;
  return false;
}

}  // namespace gcsequence
