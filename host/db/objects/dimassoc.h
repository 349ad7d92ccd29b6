// Ties a dimension to points of the objects that it measures.
#pragma once

#include "db/object.h"
#include "ge/point.h"
#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"
#include "rx/gcstring.h"

struct GcDbField;

struct GcDbDimAssocRef {
  GcString className;
  uint8_t snapType = 0;
  GcDbObjectIdArray objects;  // the object, behind the block references it stands in
  int32_t subentityType = 0;
  int32_t marker = 0;
  GcArray<GcString> externalPath;
  double parameter = 0;
  GcGePoint3d point;
  GcDbObjectIdArray crossing;  // for intersections, the other object likewise
  int32_t crossingType = 0;
  int32_t crossingMarker = 0;
  GcArray<GcString> crossingPath;
  bool hasLast = false;

  [[nodiscard]] bool isIntersection() const { return snapType == 6 || snapType == 11; }
};

class GcDbDimAssoc : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDimAssoc);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRecordOf<GcDbDimAssoc>;

  GcDbObjectId m_dimension;
  int32_t m_associativity = 0;
  bool m_acrossSpaces = false;
  uint8_t m_rotatedType = 0;
  GcArray<GcDbDimAssocRef> m_refs;  // one for each bit of the associativity
};
