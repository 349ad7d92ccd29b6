// What section planes share: their list, and how each shows what it cuts.
#pragma once

#include "db/object.h"
#include "ge/point.h"
#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"
#include "rx/gcstring.h"

struct GcDbField;

class GcDbSectionManager : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSectionManager);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRecordOf<GcDbSectionManager>;

  bool m_isLive = false;
  GcDbObjectIdArray m_sections;
};

struct GcDbSectionGeometry {
  int32_t count = 4;
  int32_t kind = 1;
  int32_t flags = 0;
  GcDbIndexedColor color{256};
  GcString layer, linetype, plotStyle, hatchPattern;
  double linetypeScale = 1;
  int32_t lineWeight = -1;
  int16_t faceTransparency = 0;
  int16_t edgeTransparency = 0;
  int16_t hatchType = 0;
  double hatchAngleRad = 0;
  double hatchSpacing = 1;
  double hatchScale = 1;
};

struct GcDbSectionType {
  int32_t type = 1;
  int32_t generation = 1;
  GcDbObjectIdArray sources;
  GcDbObjectId destinationBlock;
  GcString destinationFile;
  GcArray<GcDbSectionGeometry> geometry;
};

class GcDbSectionSettings : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSectionSettings);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRecordOf<GcDbSectionSettings>;

  int32_t m_currentType = 0;
  GcArray<GcDbSectionType> m_types;
};
