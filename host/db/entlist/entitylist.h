// Objects as LISP programs see them: lists of groups, in the order and form of the dialect. Angles are in radians,
// references are ids, special codes: -1 the object itself, -2 the first entity of a block, -3 begins extended data.
#pragma once

#include "db/objectid.h"
#include "host/db/describe/group.h"

// Which applications' extended data is wanted.
class GcDbApplicationFilter {
 public:
  [[nodiscard]] virtual bool takes(GcView applicationName) const = 0;

 protected:
  ~GcDbApplicationFilter() = default;
};

// Puts the list of an object into the sink. Extended data of the applications the filter takes (none for null)
// comes last, behind a group -3 of kind Text. False when there is no object or it is erased.
bool gcdbEntityList(GcDbObjectId id, const GcDbApplicationFilter* applications, GcDbGroupSink& sink);

// The shorter form of table searches: (0 . "LAYER") and the record's own fields, blocks with their base point and
// first entity (-2).
bool gcdbRecordList(GcDbObjectId id, GcDbGroupSink& sink);

// The name of an object's kind in lists ("LINE"; a zombie's as its file has it).
GcText gcdbDxfNameOf(const GcDbObject& object);
