// The sun of a viewport or a view.
#pragma once

#include "db/object.h"
#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"

struct GcDbField;

class GcDbSun : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSun);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRecordOf<GcDbSun>;

  int32_t m_version = 1;
  GcDbIndexedColor m_color{7};
  double m_intensity = 1;
  int32_t m_julianDay = 2461000;
  int32_t m_milliseconds = 54000000;  // since midnight
  int32_t m_shadowType = 0;           // 0 traced rays, 1 maps
  int16_t m_shadowMapSize = 256;
  uint8_t m_shadowSoftness = 1;
  bool m_isOn = false;
  bool m_hasShadow = true;
  bool m_isDaylightSaving = false;
};
