// Styles of section and detail views of models.
#pragma once

#include "db/object.h"
#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"
#include "rx/gcstring.h"

struct GcDbField;

class GcDbModelDocViewStyle : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbModelDocViewStyle);
  static const GcDbField kFields[];
  static const int kFieldCount;

 protected:
  friend struct GcDbRecordOf<GcDbModelDocViewStyle>;

  int16_t m_docVersion = 0;
  GcString m_description;
  bool m_isModified = false;
  GcString m_displayName;
  int32_t m_viewFlags = 0;
};

class GcDbSectionViewStyle : public GcDbModelDocViewStyle {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSectionViewStyle);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRecordOf<GcDbSectionViewStyle>;

  int16_t m_version = 0;
  int32_t m_flags = 102;
  GcDbObjectId m_identifierStyle;
  GcDbIndexedColor m_identifierColor{256};
  double m_identifierHeight = 5;
  GcDbObjectId m_startArrow;
  GcDbObjectId m_endArrow;
  GcDbIndexedColor m_arrowColor{256};
  double m_arrowSize = 5;
  GcString m_excludedCharacters;
  double m_arrowExtension = 10;
  int32_t m_identifierPosition = 3;
  double m_identifierOffset = 0.1;
  int32_t m_arrowPosition = 1;
  GcDbObjectId m_planeLinetype;
  int32_t m_planeWeight = 25;
  GcDbIndexedColor m_planeColor{256};
  GcDbObjectId m_bendLinetype;
  int32_t m_bendWeight = 50;
  GcDbIndexedColor m_bendColor{256};
  double m_bendLength = 5;
  double m_endOvershoot = 0;
  double m_endLength = 5;
  GcDbObjectId m_labelStyle;
  GcDbIndexedColor m_labelColor{256};
  double m_labelHeight = 5;
  int32_t m_labelAttachment = 1;
  double m_labelOffset = 15;
  int32_t m_labelAlignment = 1;
  GcString m_labelPattern;
  GcDbIndexedColor m_hatchColor{256};
  GcDbIndexedColor m_hatchBackground{257};
  GcString m_hatchPattern;
  double m_hatchScale = 1;
  int32_t m_hatchTransparency = 0;
  bool m_unknownFlag = false;
  bool m_unknownFlag2 = false;
  GcArray<double> m_hatchAngles;  // radians
};

class GcDbDetailViewStyle : public GcDbModelDocViewStyle {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDetailViewStyle);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRecordOf<GcDbDetailViewStyle>;

  int16_t m_version = 0;
  int32_t m_flags = 3;
  GcDbObjectId m_identifierStyle;
  GcDbIndexedColor m_identifierColor{256};
  double m_identifierHeight = 5;
  GcDbObjectId m_arrow;
  GcDbIndexedColor m_arrowColor{256};
  double m_arrowSize = 5;
  GcString m_excludedCharacters;
  double m_identifierOffset = 7.5;
  uint8_t m_identifierPlacement = 3;
  GcDbObjectId m_boundaryLinetype;
  int32_t m_boundaryWeight = 25;
  GcDbIndexedColor m_boundaryColor{256};
  GcDbObjectId m_labelStyle;
  GcDbIndexedColor m_labelColor{256};
  double m_labelHeight = 5;
  int32_t m_labelAttachment = 1;
  double m_labelOffset = 15;
  int32_t m_labelAlignment = 1;
  GcString m_labelPattern;
  GcDbObjectId m_connectionLinetype;
  int32_t m_connectionWeight = 25;
  GcDbIndexedColor m_connectionColor{256};
  GcDbObjectId m_borderLinetype;
  int32_t m_borderWeight = 25;
  GcDbIndexedColor m_borderColor{256};
  uint8_t m_modelEdge = 0;
};
