// Lights of rendered views.
#pragma once

#include "db/entity.h"
#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"

class GcDbLight : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbLight);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbLight() = default;
  // From its place to its target.
  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  friend struct GcDbRecordOf<GcDbLight>;

  int32_t m_version = 0;
  GcString m_name;
  int16_t m_type = 2;  // 1 distant, 2 point, 3 spot
  bool m_isOn = true;
  GcDbIndexedColor m_lightColor{7};
  bool m_isPlotted = false;  // its glyph
  double m_intensity = 1;
  GcGePoint3d m_position;
  GcGePoint3d m_target;
  int32_t m_attenuation = 0;  // 0 none, 1 by the distance, 2 by its square
  bool m_hasLimits = false;   // of the attenuation
  double m_startLimit = 1;
  double m_endLimit = 10;
  double m_hotspotRad = 0.78539816339744831;
  double m_falloffRad = 0.87266462599716477;
  bool m_castsShadows = true;
  int32_t m_shadowType = 0;
  int16_t m_shadowMapSize = 256;
  uint8_t m_shadowSoftness = 1;
};
