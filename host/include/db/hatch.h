// Hatches: areas bounded by loops, filled with colour, a gradient or a pattern of lines.
#pragma once

#include "db/entity.h"

struct GcDbHatchSplinePoint {
  GcGePoint2d point;
  double weight = 0;  // 0 in a spline that has no weights
  [[nodiscard]] bool hasWeight() const { return weight != 0; }
};

// An edge of a loop in the hatch's own system. Arcs that run clockwise give their angles measured clockwise too.
struct GcDbHatchEdge {
  enum Type : int16_t { kLine = 1, kArc = 2, kEllipse = 3, kSpline = 4 };

  int16_t type = kLine;
  bool isCounterClockwise = true;
  bool isRational = false;
  bool isPeriodic = false;
  int32_t degree = 3;
  GcGePoint2d start;       // line; the center of arc and ellipse
  GcGePoint2d end;         // line
  GcGeVector2d majorAxis;  // ellipse
  double radius = 0;       // arc; the ellipse's ratio of axes
  double startRad = 0;
  double endRad = 0;
  GcGeVector2d startTangent;
  GcGeVector2d endTangent;
  GcArray<double> knots;
  GcArray<GcDbHatchSplinePoint> controlPoints;
  GcArray<GcGePoint2d> fitPoints;

  [[nodiscard]] bool isLine() const { return type == kLine; }
  [[nodiscard]] bool isArc() const { return type == kArc; }
  [[nodiscard]] bool isEllipse() const { return type == kEllipse; }
  [[nodiscard]] bool isSpline() const { return type == kSpline; }
  [[nodiscard]] bool isCurved() const { return type == kArc || type == kEllipse; }
  [[nodiscard]] bool hasStart() const { return type != kSpline; }
  [[nodiscard]] bool hasFit() const { return type == kSpline && !fitPoints.isEmpty(); }
};

struct GcDbHatchVertex {
  GcGePoint2d point;
  double bulge = 0;
};

// Flags: 1 external, 2 a polyline, 4 derived, 8 around text, 16 outermost, 32 not closed, 64 crosses itself.
struct GcDbHatchLoop {
  int32_t flags = 0;
  bool hasBulge = false;
  bool isClosed = true;
  GcArray<GcDbHatchVertex> vertices;
  GcArray<GcDbHatchEdge> edges;
  GcDbObjectIdArray sources;  // the entities it was made of, for associative hatches

  [[nodiscard]] bool isPolyline() const { return (flags & 2) != 0; }
  [[nodiscard]] bool hasEdges() const { return !isPolyline(); }
  [[nodiscard]] bool isBulgedPolyline() const { return isPolyline() && hasBulge; }
  [[nodiscard]] bool isStraightPolyline() const { return isPolyline() && !hasBulge; }
};

// One family of parallel lines; lengths in drawing units, angles in radians, all of it scaled and turned.
struct GcDbHatchPatternLine {
  double angleRad = 0;
  double baseX = 0, baseY = 0;
  double offsetX = 0, offsetY = 0;  // from one line to the next, along world axes of the plane
  GcArray<double> dashes;           // positive drawn, negative not, 0 a dot; empty for unbroken lines
};

struct GcDbHatchGradientColor {
  double position = 0;
  int16_t colorIndex = 0;  // given beside or in place of the true colour; 0 not given
  GcCmEntityColor color;
};

struct GcDbHatchGradient {
  int32_t isGradient = 0;
  int32_t reserved = 0;
  double angleRad = 0;
  double shift = 0;
  int32_t isOneColor = 0;
  double tint = 0;
  GcArray<GcDbHatchGradientColor> colors;
  GcString name;
};

class GcDbHatch : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbHatch);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum HatchPatternType : uint8_t { kUserDefined = 0, kPreDefined = 1, kCustomDefined = 2 };
  enum HatchStyle : uint8_t { kNormal = 0, kOuter = 1, kIgnore = 2 };

  GcDbHatch() = default;

  [[nodiscard]] HatchPatternType patternType() const { return static_cast<HatchPatternType>(m_patternType); }
  [[nodiscard]] const GcString& patternName() const { return m_patternName; }
  // Takes the lines of the pattern at the present angle and scale. "SOLID" fills. Errors: eKeyNotFound for a
  // pattern nobody knows, eInvalidInput for a type outside 0..2.
  Gcad::ErrorStatus setPattern(HatchPatternType type, const GCHAR* name);
  [[nodiscard]] bool isSolidFill() const { return m_isSolid; }
  // The next setPattern uses them.
  [[nodiscard]] double patternAngle() const { return m_patternAngleRad; }
  Gcad::ErrorStatus setPatternAngle(double angleRad) { return assign(m_patternAngleRad, angleRad); }
  [[nodiscard]] double patternScale() const { return m_patternScale; }
  Gcad::ErrorStatus setPatternScale(double scale);
  [[nodiscard]] double patternSpace() const { return m_patternScale; }
  Gcad::ErrorStatus setPatternSpace(double space) { return setPatternScale(space); }
  [[nodiscard]] bool patternDouble() const { return m_isDouble; }
  Gcad::ErrorStatus setPatternDouble(bool isDouble) { return assign(m_isDouble, isDouble); }
  [[nodiscard]] const GcArray<GcDbHatchPatternLine>& patternLines() const { return m_lines; }
  [[nodiscard]] bool associative() const { return m_isAssociative; }
  Gcad::ErrorStatus setAssociative(bool associative) { return assign(m_isAssociative, associative); }
  [[nodiscard]] HatchStyle hatchStyle() const { return static_cast<HatchStyle>(m_style); }
  Gcad::ErrorStatus setHatchStyle(HatchStyle style) { return assign(m_style, static_cast<int16_t>(style)); }
  [[nodiscard]] double elevation() const { return m_elevation; }
  Gcad::ErrorStatus setElevation(double elevation) { return assign(m_elevation, elevation); }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal);
  [[nodiscard]] bool isPlanar() const override { return true; }

  [[nodiscard]] int numLoops() const { return m_loops.length(); }
  [[nodiscard]] const GcArray<GcDbHatchLoop>& loops() const { return m_loops; }
  [[nodiscard]] int loopTypeAt(int index) const { return m_loops[index].flags; }
  // A loop along curves of the drawing, in their order. Errors: eInvalidInput (no curves, a kind that bounds nothing),
  // eInvalidIndex, what opening a curve gives.
  Gcad::ErrorStatus appendLoop(int loopType, const GcDbObjectIdArray& curves);
  Gcad::ErrorStatus insertLoopAt(int index, int loopType, const GcDbObjectIdArray& curves);
  Gcad::ErrorStatus appendLoop(const GcDbHatchLoop& loop);
  Gcad::ErrorStatus removeLoopAt(int index);
  // Makes the loops of an associative hatch anew from the curves they came from. Errors: as appendLoop.
  Gcad::ErrorStatus evaluateHatch(bool underestimateNumLines = false);
  // The loops stay and follow no curves any more.
  Gcad::ErrorStatus removeAssociativity();

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  // Whether it was last drawn as a fill because its pattern has too many lines.
  [[nodiscard]] bool wasTooDense() const { return m_wasTooDense; }

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  [[nodiscard]] bool hasPattern() const { return !m_isSolid; }
  [[nodiscard]] bool hasSeeds() const { return !m_seeds.isEmpty(); }
  Gcad::ErrorStatus makeLoop(int loopType, const GcDbObjectIdArray& curves, GcDbHatchLoop& loop) const;

  GcArray<GcDbHatchLoop> m_loops;
  GcArray<GcDbHatchPatternLine> m_lines;
  GcArray<GcGePoint2d> m_seeds;
  GcArray<GcDbHatchGradient> m_gradient;
  GcString m_patternName{GC_T("SOLID")};
  double m_elevation = 0;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  double m_patternAngleRad = 0;
  double m_patternScale = 1;
  double m_pixelSize = 0;
  int16_t m_patternType = kPreDefined;
  int16_t m_style = kNormal;
  bool m_isSolid = true;
  bool m_isAssociative = false;
  bool m_isDouble = false;
  bool m_wasTooDense = false;
};
