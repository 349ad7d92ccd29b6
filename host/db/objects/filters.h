// What limits or lists objects: clipping of block references, layers, sets of references.
#pragma once

#include "db/object.h"
#include "ge/matrix3d.h"
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

  // Clips at an outline (two opposite corners or more points) in the system given by its matrix to the world, for a
  // reference that stands at the transform now; the outline goes with the reference.
  Gcad::ErrorStatus setClip(const GcArray<GcGePoint2d>& outline, const GcGeMatrix3d& toWorld,
                            const GcGeMatrix3d& reference);
  Gcad::ErrorStatus setOn(bool on) { return assign(m_isShown, static_cast<int16_t>(on ? 1 : 0)); }
  Gcad::ErrorStatus setDepth(bool hasFront, double front, bool hasBack, double back);
  [[nodiscard]] bool isOn() const { return m_isShown != 0; }
  // The outline's corners, two for a rectangle, and from their system to that of the block.
  [[nodiscard]] const GcArray<GcGePoint2d>& outline() const { return m_clip; }
  [[nodiscard]] GcGeMatrix3d outlineToBlock() const;
  [[nodiscard]] GcGeVector3d normal() const { return m_normal; }

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
