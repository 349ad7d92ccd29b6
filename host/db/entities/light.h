// Lights of rendered views.
#pragma once

#include "db/entity.h"
#include "host/db/describe/group.h"
#include "host/db/describe/indexedcolor.h"

class GcDbLight : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbLight);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbLight() = default;
  // From its place to its target.
  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  int32_t m_version = 0;
  GcString m_name;
  int16_t m_type = 2;  // 1 distant, 2 point, 3 spot
  bool m_isOn = true;
  GcDbIndexedColor m_lightColor{7};
  bool m_isPlotted = false;  // its glyph
  double m_intensity = 1;
  GcGePoint3d m_position;
  GcGePoint3d m_target;
  GcDbGroupList m_more;  // attenuation, cones, shadows, photometry as they came
};
