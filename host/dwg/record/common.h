// The part of a record that all objects, and all entities, have before what their class adds.
#pragma once

#include "db/entity.h"
#include "host/dwg/record/recordio.h"

namespace gc::dwg {

// Begins behind the handle and the extended data, ends before the first value of the class. References of the common
// part are taken from (put into) the reference stream at the same time. `object` gets its extension dictionary,
// reactors and the common properties of entities; the owner goes to `owner`.
// R13 and R14 give the place of the reference stream in here: it is set up when it is read.
void readCommonEntity(RecordIn& record, GcDbEntity& entity, GcDbObjectId& owner);
void writeCommonEntity(RecordOut& record, const GcDbEntity& entity, uint64_t& sizePosition);
void readCommonObject(RecordIn& record, GcDbObject& object, GcDbObjectId& owner);
void writeCommonObject(RecordOut& record, const GcDbObject& object, uint64_t& sizePosition);

}  // namespace gc::dwg
