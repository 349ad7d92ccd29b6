// Section planes through models: the line they stand on, and how what is cut is shown.
#pragma once

#include "db/entity.h"
#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"

class GcDbSection : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSection);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbSection() = default;
  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  friend struct GcDbRecordOf<GcDbSection>;

  int32_t m_state = 1;
  int32_t m_flags = 0;
  GcString m_name;
  GcGeVector3d m_vertical = GcGeVector3d::kZAxis;
  double m_topHeight = 0;
  double m_bottomHeight = 0;
  int16_t m_transparency = 70;
  GcDbIndexedColor m_indicatorColor{9};
  GcDbObjectId m_settings;
  GcArray<GcGePoint3d> m_vertices;      // the line of the plane
  GcArray<GcGePoint3d> m_backVertices;  // of the volume behind it
};
