// Entities that own others (vertices, attributes): how records refer to them.
#pragma once

#include "host/db/core/extra.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

// The object a piece works on, when its rows are those of a database object.
template <class Io>
GcDbObject& objectOf(Io& io) {
  return *static_cast<GcDbObject*>(io.object);
}

// Owned entities that are there: erased ones stay out of files.
inline GcDbObjectIdArray livingParts(const RecordContext& context, const GcDbObject& object) {
  GcDbObjectIdArray parts;
  if (object.extra() == nullptr) return parts;
  for (const GcDbObjectId id : object.extra()->parts)
    if (context.isWritten(id)) parts.append(id);
  return parts;
}

// From AC1018 on the number of owned entities stands among the data.
template <class Io>
void partCount(Io& io) {
  if (io.version() < kR2004) return;
  int count = 0;
  if constexpr (Io::kWriting) count = livingParts(io.rec.context, objectOf(io)).length();
  count = io.rec.count(io.rec.bl(count), 8);
  if constexpr (!Io::kWriting) io.rec.links.parts.setLogicalLength(count);
}

// The references: the ends of the chain, or (from AC1018 on) every one; then the entity that ends the sequence.
template <class Io>
void partReferences(Io& io) {
  constexpr unsigned kSoftPointer = 4;
  constexpr unsigned kHardOwner = 3;
  io.rec.links.hasParts = true;
  if constexpr (Io::kWriting) {
    const GcDbObjectIdArray parts = livingParts(io.rec.context, objectOf(io));
    const GcDbObjectExtra* extra = objectOf(io).extra();
    if (io.version() < kR2004) {
      io.rec.h(kSoftPointer, parts.isEmpty() ? GcDbObjectId() : parts[0]);
      io.rec.h(kSoftPointer, parts.isEmpty() ? GcDbObjectId() : parts.last());
    } else {
      for (const GcDbObjectId id : parts) io.rec.h(kHardOwner, id);
    }
    io.rec.h(kHardOwner, extra == nullptr ? GcDbObjectId() : extra->sequenceEnd);
  } else {
    if (io.version() < kR2004) {
      io.rec.links.firstPart = io.rec.handles.h().absolute(io.rec.own);
      io.rec.links.lastPart = io.rec.handles.h().absolute(io.rec.own);
    } else {
      for (GcDbObjectId& id : io.rec.links.parts) id = io.rec.h(kHardOwner, {});
    }
    io.rec.links.sequenceEnd = io.rec.h(kHardOwner, {});
  }
}

}  // namespace gc::dwg::packing
