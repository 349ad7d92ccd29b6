// How an annotation looks at one of its scales: kept in the extension dictionary of a text, a leader, a dimension or a
// block reference, one object for each scale it is shown at.
// Source: the published description of the format; drawings that have both forms.
#pragma once

#include "db/object.h"
#include "ge/point.h"
#include "host/db/describe/field.h"
#include "host/db/describe/recordof.h"

class GcDbObjectContextData : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbObjectContextData);
  static const GcDbField kFields[];
  static const int kFieldCount;

 protected:
  GcDbObjectContextData() = default;
  template <class Pass>
  void passContext(Pass& pass) {
    pass.bs(m_version);
    pass.b(m_isDefault);
  }

  int16_t m_version = 4;
  bool m_isDefault = false;  // of all scales the one the object itself shows
};

class GcDbAnnotScaleObjectContextData : public GcDbObjectContextData {
 public:
  GCRX_DECLARE_MEMBERS(GcDbAnnotScaleObjectContextData);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbAnnotScaleObjectContextData() = default;

  [[nodiscard]] GcDbObjectId scaleId() const { return m_scaleId; }

 protected:
  friend struct GcDbRecordOf<GcDbAnnotScaleObjectContextData>;
  template <class Pass>
  void passScale(Pass& pass) {
    passContext(pass);
    pass.h(5, m_scaleId);
  }

  GcDbObjectId m_scaleId;
};

#define GC_CONTEXT_DATA(Class)      \
 public:                            \
  GCRX_DECLARE_MEMBERS(Class);      \
  static const GcDbField kFields[]; \
  static const int kFieldCount;     \
  Class() = default;                \
                                    \
 private:                           \
  friend struct GcDbRecordOf<Class>

class GcDbTextObjectContextData : public GcDbAnnotScaleObjectContextData {
 public:
  GCRX_DECLARE_MEMBERS(GcDbTextObjectContextData);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbTextObjectContextData() = default;

 protected:
  friend struct GcDbRecordOf<GcDbTextObjectContextData>;
  template <class Pass>
  void passText(Pass& pass) {
    passScale(pass);
    pass.bs(m_horizontal);
    pass.bd(m_rotationRad);
    pass.rd2(m_position);
    pass.rd2(m_alignment);
  }

  int16_t m_horizontal = 0;
  double m_rotationRad = 0;
  GcGePoint2d m_position;
  GcGePoint2d m_alignment;
};

// Of attributes of several lines.
class GcDbMTextAttributeObjectContextData : public GcDbTextObjectContextData {
  GC_CONTEXT_DATA(GcDbMTextAttributeObjectContextData);
  bool m_hasContext = false;  // a description of its own follows, which nothing here knows
  GcDbGroupList m_context;
};

class GcDbMTextObjectContextData : public GcDbAnnotScaleObjectContextData {
  GC_CONTEXT_DATA(GcDbMTextObjectContextData);
  [[nodiscard]] bool hasColumns() const { return m_columnType != 0; }
  [[nodiscard]] bool hasHeights() const { return m_columnType == kDynamic && !m_hasAutoHeight; }

  static constexpr int kDynamic = 2;
  int32_t m_attachment = 1;
  GcGePoint3d m_position;
  GcGeVector3d m_direction = GcGeVector3d::kXAxis;
  double m_width = 0, m_height = 0;              // of the frame
  double m_actualWidth = 0, m_actualHeight = 0;  // of the lines in it
  int32_t m_columnType = 0;                      // 1 static, 2 dynamic
  int32_t m_columnCount = 0;
  double m_columnWidth = 0, m_gutter = 0;
  bool m_hasAutoHeight = false;
  bool m_isReversed = false;
  GcArray<double> m_heights;
};

class GcDbBlkRefObjectContextData : public GcDbAnnotScaleObjectContextData {
  GC_CONTEXT_DATA(GcDbBlkRefObjectContextData);
  GcDbGroupList m_place;  // turn, position, three factors
};

class GcDbLeaderObjectContextData : public GcDbAnnotScaleObjectContextData {
  GC_CONTEXT_DATA(GcDbLeaderObjectContextData);
  GcArray<GcGePoint3d> m_points;
  GcGeVector3d m_xDirection = GcGeVector3d::kXAxis;
  bool m_isOnXDirection = true;
  GcGeVector3d m_insertionOffset;
  GcGeVector3d m_endPointOffset;
};

class GcDbFcfObjectContextData : public GcDbAnnotScaleObjectContextData {
  GC_CONTEXT_DATA(GcDbFcfObjectContextData);
  GcGePoint3d m_location;
  GcGeVector3d m_direction = GcGeVector3d::kXAxis;
};

class GcDbDimensionObjectContextData : public GcDbAnnotScaleObjectContextData {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDimensionObjectContextData);
  static const GcDbField kFields[];
  static const int kFieldCount;

 protected:
  GcDbDimensionObjectContextData() = default;
  template <class Pass>
  void passDimension(Pass& pass) {
    passScale(pass);
    GcGePoint2d place(m_textPosition.x, m_textPosition.y);
    pass.rd2(place);
    if constexpr (!Pass::kWriting) m_textPosition = {place.x, place.y, 0};
    pass.b(m_isDefaultPlace);
    pass.bd(m_textRotationRad);
    pass.h(5, m_blockId);
    for (bool* flag : {&m_flag293, &m_forcesLine, &m_suppressesOutside, &m_fits, &m_textInside, &m_movesText})
      pass.b(*flag);
    pass.rc(m_overrides);
    for (bool* flag : {&m_hasSecondArrow, &m_flipsSecondArrow, &m_flipsFirstArrow}) pass.b(*flag);
  }
  // Records have no height of the text's place.
  [[nodiscard]] bool fitsRecord() const { return m_textPosition.z == 0; }

  GcDbObjectId m_blockId;
  bool m_flag293 = false;
  GcGePoint3d m_textPosition;
  bool m_isDefaultPlace = true;
  double m_textRotationRad = 0;
  bool m_forcesLine = false, m_suppressesOutside = false, m_fits = false, m_textInside = false, m_movesText = false;
  uint8_t m_overrides = 0;
  bool m_hasSecondArrow = false, m_flipsSecondArrow = false, m_flipsFirstArrow = false;
};

// Kinds of dimensions: one point more, or two.
#define GC_DIMENSION_CONTEXT(Class)                     \
  class Class : public GcDbDimensionObjectContextData { \
    GC_CONTEXT_DATA(Class);                             \
    GcGePoint3d m_first;                                \
    GcGePoint3d m_second;                               \
  }
GC_DIMENSION_CONTEXT(GcDbAlignedDimensionObjectContextData);
GC_DIMENSION_CONTEXT(GcDbAngularDimensionObjectContextData);
GC_DIMENSION_CONTEXT(GcDbRadialDimensionObjectContextData);
GC_DIMENSION_CONTEXT(GcDbDiametricDimensionObjectContextData);
GC_DIMENSION_CONTEXT(GcDbOrdinateDimensionObjectContextData);
GC_DIMENSION_CONTEXT(GcDbRadialDimensionLargeObjectContextData);
#undef GC_DIMENSION_CONTEXT
#undef GC_CONTEXT_DATA
