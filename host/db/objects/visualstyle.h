// Visual styles: how views show faces, edges and backgrounds. A list of properties, each of which says where its value
// comes from; files of each age have another part of it in another form.
#pragma once

#include "db/object.h"
#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"
#include "rx/gcstring.h"

struct GcDbField;

// The properties files have always had, in the order of records: name, kind, group code before R2013.
#define GC_STYLE_PROPERTIES(X)         \
  X(faceLighting, Number, 71)          \
  X(faceQuality, Number, 72)           \
  X(faceColorMode, Number, 73)         \
  X(faceModifiers, Number, 90)         \
  X(faceOpacity, Real, 40)             \
  X(faceSpecular, Real, 41)            \
  X(faceColor, Color, 63)              \
  X(edgeModel, Number, 74)             \
  X(edgeStyle, Number, 91)             \
  X(intersectionColor, Color, 64)      \
  X(obscuredColor, Color, 65)          \
  X(obscuredLinetype, Number, 75)      \
  X(intersectionLinetype, Number, 175) \
  X(creaseAngle, Real, 42)             \
  X(edgeModifiers, Number, 92)         \
  X(edgeColor, Color, 66)              \
  X(edgeOpacity, Real, 43)             \
  X(edgeWidth, Number, 76)             \
  X(overhang, Number, 77)              \
  X(jitter, Number, 78)                \
  X(silhouetteColor, Color, 67)        \
  X(silhouetteWidth, Number, 79)       \
  X(haloGap, Number, 170)              \
  X(isolines, Number, 171)             \
  X(hidePrecision, Flag, 290)          \
  X(displaySettings, Number, 93)       \
  X(brightness, Real, 44)              \
  X(shadowType, Number, 173)

// Those that came with R2013, in their order. What they mean is not published.
#define GC_LATER_STYLE_PROPERTIES(X) \
  X(more1, Flag)                     \
  X(more2, Flag)                     \
  X(more3, Flag)                     \
  X(more4, Flag)                     \
  X(more5, Flag)                     \
  X(more6, Flag)                     \
  X(more7, Flag)                     \
  X(more8, Flag)                     \
  X(more9, Flag)                     \
  X(more10, Number)                  \
  X(more11, Real)                    \
  X(more12, Real)                    \
  X(more13, Number)                  \
  X(more14, Color)                   \
  X(more15, Number)                  \
  X(more16, Number)                  \
  X(more17, Color)                   \
  X(more18, Flag)                    \
  X(more19, Number)                  \
  X(more20, Number)                  \
  X(more21, Number)                  \
  X(more22, Flag)                    \
  X(more23, Number)                  \
  X(more24, Color)                   \
  X(more25, Real)                    \
  X(more26, Number)                  \
  X(more27, Text)                    \
  X(more28, Flag)                    \
  X(more29, Real)                    \
  X(more30, Real)

struct GcDbStyleProperty {
  int32_t number = 0;  // numbers and flags
  double real = 0;
  GcDbIndexedColor color{7};
  GcString text;
  int16_t source = 1;  // 0 inherited, 1 set
};

class GcDbVisualStyle : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbVisualStyle);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum Property : uint8_t {
#define X(name, ...) k_##name,
    GC_STYLE_PROPERTIES(X) GC_LATER_STYLE_PROPERTIES(X)
#undef X
        kPropertyCount
  };

  GcDbVisualStyle();
  [[nodiscard]] const GcString& description() const { return m_description; }

 private:
  friend struct GcDbRecordOf<GcDbVisualStyle>;
  friend struct GcDbStyleRows;

  GcString m_description;
  int32_t m_type = 0;
  int16_t m_lightingModel = 2;
  bool m_isInternal = false;
  int16_t m_color = 5;  // before R2013, unused
  int32_t m_apply = 0;  // before R2010
  double m_unused = 0;  // R2007
  GcDbStyleProperty m_properties[kPropertyCount];
};
