// What limits or lists objects: clipping of block references, layers, sets of references.
#pragma once

#include "db/object.h"
#include "ge/point.h"
#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"
#include "rx/gcstring.h"

struct GcDbField;

// Clips a block reference (or external reference) at an outline in the plane of its normal, and before and behind it.
class GcDbSpatialFilter : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSpatialFilter);
  static const GcDbField kFields[];
  static const int kFieldCount;

  [[nodiscard]] bool clipsFront() const { return m_hasFront != 0; }
  [[nodiscard]] bool clipsBack() const { return m_hasBack != 0; }

 private:
  friend struct GcDbRecordOf<GcDbSpatialFilter>;

  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  GcGePoint3d m_origin;
  int16_t m_isShown = 0;
  int16_t m_hasFront = 0;
  double m_front = 0;
  int16_t m_hasBack = 0;
  double m_back = 0;
  GcArray<GcGePoint2d> m_clip;
  GcArray<double> m_matrices;  // two of three rows: from the world to the block at its insertion, and to the outline
};

// The fields of a drawing, in the order in which they are evaluated.
class GcDbFieldList : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbFieldList);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRecordOf<GcDbFieldList>;

  GcDbObjectIdArray m_fields;
};

class GcDbLayerFilter : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbLayerFilter);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRecordOf<GcDbLayerFilter>;

  GcArray<GcString> m_names;
};

class GcDbIdBuffer : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbIdBuffer);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRecordOf<GcDbIdBuffer>;

  GcDbObjectIdArray m_ids;
};
