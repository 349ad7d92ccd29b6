// Entities that follow another one in files: vertices of polylines, attributes of block references. They stand in the
// rare parts of the entity they belong to, which owns them, and are ended by an entity of their own.
#pragma once

#include "db/entity.h"

namespace gcsequence {

// Makes a new part the last of the owner's. An owner outside a database keeps nothing: eNotInDatabase.
// Errors: eNullEntityPointer, eAlreadyInDb.
Gcad::ErrorStatus append(GcDbEntity& owner, GcDbEntity* part, GcDbObjectId& id);
// The same before the part at the index (at the end when there are fewer).
Gcad::ErrorStatus insertAt(GcDbEntity& owner, int index, GcDbEntity* part, GcDbObjectId& id);

// The parts that are not erased, of one class.
void collect(const GcDbEntity& owner, const GcRxClass* kind, GcDbObjectIdArray& ids);
[[nodiscard]] bool hasParts(const GcDbEntity& owner);

// Calls f with each part that can be opened for read.
template <class T, class F>
void forEach(const GcDbEntity& owner, const F& f) {
  GcDbObjectIdArray ids;
  collect(owner, T::desc(), ids);
  for (const GcDbObjectId id : ids) {
    T* part = nullptr;
    if (gcdbOpenObject(part, id, GcDb::kForRead) != Gcad::eOk) continue;
    f(*part);
    ignore(part->close());
  }
}

}  // namespace gcsequence
