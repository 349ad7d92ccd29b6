// The two entities that stand before and after a block's entities in files. They carry handle, layer and
// extended data of their own; what the definition is stands in its table record.
#pragma once

#include "db/entity.h"

class GcDbBlockBegin : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbBlockBegin);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbBlockBegin() = default;
};

class GcDbBlockEnd : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbBlockEnd);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbBlockEnd() = default;
};

// Ends a sequence of sub-entities (vertices, attributes).
class GcDbSequenceEnd : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSequenceEnd);
  GcDbSequenceEnd() = default;
};
