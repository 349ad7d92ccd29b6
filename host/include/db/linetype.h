// Linetypes: a pattern of dashes, gaps and dots, with letters or shapes in it where an element says so.
#pragma once

#include "db/symboltablerecord.h"

// One element: positive a dash, negative a gap, 0 a dot; drawing units before the scale.
struct GcDbLinetypeDash {
  double length = 0;
  int16_t flags = 0;        // 1 the turn is absolute, 2 a text, 4 a shape
  int16_t shapeNumber = 0;  // of a shape
  GcDbObjectId styleId;     // of text or shape
  double scale = 1;
  double rotationRad = 0;
  double offsetX = 0;
  double offsetY = 0;
  GcString text;

  [[nodiscard]] bool isComplex() const { return (flags & 6) != 0; }
  [[nodiscard]] bool isText() const { return (flags & 2) != 0; }
};

class GcDbLinetypeTableRecord : public GcDbSymbolTableRecord {
 public:
  GCRX_DECLARE_MEMBERS(GcDbLinetypeTableRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbLinetypeTableRecord() = default;

  [[nodiscard]] const GcString& comments() const { return m_description; }
  Gcad::ErrorStatus setComments(const GCHAR* text) { return assign(m_description, GcString(text)); }
  [[nodiscard]] double patternLength() const { return m_patternLength; }
  Gcad::ErrorStatus setPatternLength(double length) { return assign(m_patternLength, length); }
  [[nodiscard]] int numDashes() const { return m_dashes.length(); }
  Gcad::ErrorStatus setNumDashes(int count);
  [[nodiscard]] double dashLengthAt(int index) const { return m_dashes[index].length; }
  Gcad::ErrorStatus setDashLengthAt(int index, double length);
  [[nodiscard]] const GcArray<GcDbLinetypeDash>& dashes() const { return m_dashes; }

 private:
  GcString m_description;
  GcArray<GcDbLinetypeDash> m_dashes;
  double m_patternLength = 0;
};
