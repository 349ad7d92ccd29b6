// Styles of multilines: the parallel lines, their offsets, colours and linetypes, and the caps.
#pragma once

#include "cm/color.h"
#include "db/object.h"
#include "rx/gcstring.h"

struct GcDbField;

struct GcDbMlineElement {
  double offset = 0;
  GcCmColor color = GcCmColor::byLayer();
  GcDbObjectId linetype;
  int16_t linetypeIndex = -1;  // files before R2018 count the linetypes; -1: the id says it
};

class GcDbMlineStyle : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbMlineStyle);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum Flags : int16_t {
    kFilled = 1,
    kShowMiters = 2,
    kStartSquare = 16,
    kStartInnerArcs = 32,
    kStartRound = 64,
    kEndSquare = 256,
    kEndInnerArcs = 512,
    kEndRound = 1024
  };

  GcDbMlineStyle() = default;
  [[nodiscard]] const GcString& name() const { return m_name; }
  [[nodiscard]] const GcArray<GcDbMlineElement>& elements() const { return m_elements; }
  [[nodiscard]] GcArray<GcDbMlineElement>& elements() { return m_elements; }
  [[nodiscard]] int16_t flags() const { return m_flags; }
  // Between the ends' caps and the way, radians.
  [[nodiscard]] double startAngle() const { return m_startRad; }
  [[nodiscard]] double endAngle() const { return m_endRad; }
  [[nodiscard]] GcCmColor fillColor() const { return m_fillColor; }
  // Two lines at a distance of 1 about the middle, by layer.
  void setStandard(GcDbObjectId byLayerLinetype);
  void subLoaded() override;

 private:
  GcString m_name;
  GcString m_description;
  GcArray<GcDbMlineElement> m_elements;
  GcCmColor m_fillColor = GcCmColor::byLayer();
  double m_startRad = 1.5707963267948966;
  double m_endRad = 1.5707963267948966;
  int16_t m_flags = 0;
};

// The place of a linetype among those of the table without ByLayer and ByBlock, which have numbers of their own.
int16_t gcdbLinetypeIndex(const GcDbDatabase& database, GcDbObjectId linetype);
GcDbObjectId gcdbLinetypeAt(const GcDbDatabase& database, int index);
