// Text styles: the font and look of text. Flags: 1 a file of shapes, 4 vertical text.
#pragma once

#include "db/symboltablerecord.h"

struct GcGiTextStyle;

class GcDbTextStyleTableRecord : public GcDbSymbolTableRecord {
 public:
  GCRX_DECLARE_MEMBERS(GcDbTextStyleTableRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbTextStyleTableRecord() = default;

  // 0 when each text has its own height.
  [[nodiscard]] double textSize() const { return m_height; }
  Gcad::ErrorStatus setTextSize(double height) { return assign(m_height, height); }
  // The height used last, proposed for the next text.
  [[nodiscard]] double priorSize() const { return m_priorSize; }
  Gcad::ErrorStatus setPriorSize(double height) { return assign(m_priorSize, height); }
  [[nodiscard]] double xScale() const { return m_widthFactor; }
  Gcad::ErrorStatus setXScale(double factor) { return assign(m_widthFactor, factor); }
  [[nodiscard]] double obliquingAngle() const { return m_obliqueRad; }
  Gcad::ErrorStatus setObliquingAngle(double angleRad) { return assign(m_obliqueRad, angleRad); }
  [[nodiscard]] const GcString& fileName() const { return m_font; }
  Gcad::ErrorStatus setFileName(const GCHAR* name) { return assign(m_font, GcString(name)); }
  [[nodiscard]] const GcString& bigFontFileName() const { return m_bigFont; }
  Gcad::ErrorStatus setBigFontFileName(const GCHAR* name) { return assign(m_bigFont, GcString(name)); }
  [[nodiscard]] bool isShapeFile() const { return (m_flags & 1) != 0; }
  [[nodiscard]] bool isVertical() const { return (m_flags & 4) != 0; }
  // 2 backward, 4 upside down.
  [[nodiscard]] int flagBits() const { return m_generation; }

  // Font, size, width factor, slant and directions as text of this style begins with.
  void look(GcGiTextStyle& style) const;

 private:
  double m_height = 0;
  double m_widthFactor = 1;
  double m_obliqueRad = 0;
  double m_priorSize = 2.5;
  GcString m_font;
  GcString m_bigFont;
  int16_t m_generation = 0;
};
