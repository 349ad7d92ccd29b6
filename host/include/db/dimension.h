// Dimensions of all kinds. What is seen is the block they refer to, made when the dimension is; a dimension without a
// block draws its lines, arrows and text plainly.
#pragma once

#include "db/entity.h"

// Flags beside the kind: 32 the block is this dimension's own, 64 an ordinate along X, 128 the text was placed by hand.
class GcDbDimension : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDimension);
  static const GcDbField kFields[];
  static const int kFieldCount;

  [[nodiscard]] GcDbObjectId dimensionStyle() const { return m_styleId; }
  Gcad::ErrorStatus setDimensionStyle(GcDbObjectId id);
  [[nodiscard]] GcDbObjectId dimBlockId() const { return m_blockId; }
  // Makes the block anew from what the dimension measures now and how its style and its own settings draw it; the former
  // one, if it was this dimension's alone, is erased. Errors: eNotInDatabase; eNotApplicable for kinds that draw nothing.
  Gcad::ErrorStatus recomputeDimBlock();
  Gcad::ErrorStatus setDimBlockId(GcDbObjectId id) { return assign(m_blockId, id); }
  // Empty or "<>" for the measured value; one blank for none.
  [[nodiscard]] const GcString& dimensionText() const { return m_text; }
  Gcad::ErrorStatus setDimensionText(const GCHAR* text) { return assign(m_text, GcString(text)); }
  // The text's middle, world coordinates.
  [[nodiscard]] GcGePoint3d textPosition() const;
  Gcad::ErrorStatus setTextPosition(const GcGePoint3d& point);
  [[nodiscard]] double textRotation() const { return m_textRotationRad; }
  Gcad::ErrorStatus setTextRotation(double angleRad) { return assign(m_textRotationRad, angleRad); }
  [[nodiscard]] double horizontalRotation() const { return m_horizontalRad; }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  [[nodiscard]] bool isPlanar() const override { return true; }
  [[nodiscard]] int kind() const { return m_flags & 7; }
  [[nodiscard]] int flags() const { return m_flags; }
  // Lengths in drawing units, angles in radians.
  Gcad::ErrorStatus measurement(double& value) const;
  [[nodiscard]] virtual double measured() const { return m_measurement; }

  // Arrowheads of this dimension, whatever its style says: one for both ends, or one for each. An empty name is the
  // closed filled arrow. Errors: eKeyNotFound for a block the drawing lacks and no arrowhead is called by.
  Gcad::ErrorStatus setDimblk(const GCHAR* name);
  Gcad::ErrorStatus setDimblk1(const GCHAR* name);
  Gcad::ErrorStatus setDimblk2(const GCHAR* name);
  Gcad::ErrorStatus setDimldrblk(const GCHAR* name);
  [[nodiscard]] GcDbObjectId dimblk() const;
  [[nodiscard]] GcDbObjectId dimblk1() const;
  [[nodiscard]] GcDbObjectId dimblk2() const;

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  void subAppended() override;

 protected:
  explicit GcDbDimension(int kind) : m_flags(static_cast<int16_t>(kind | 32)) {}
  Gcad::ErrorStatus setArrowhead(int setting, const GCHAR* name);
  // Lines and arrows where there is no block.
  virtual void drawPlainly(GcGiWorldDraw& draw) const;
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;
  void mirrorTextAngle(const GcGeMatrix3d& transform);
  // Turned over by a mirroring, but with its former normal: angles against its own lines change their sense.
  virtual void subMirrored() {}

  GcGePoint3d m_definition;   // on the dimension line, or as the kind says; world
  GcGePoint3d m_textMiddle;   // own system
  GcGePoint3d m_cloneOffset;  // own system
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  double m_measurement = 0;
  double m_lineSpacing = 1;
  double m_textRotationRad = 0;
  double m_horizontalRad = 0;
  GcString m_text;
  GcDbObjectId m_styleId;
  GcDbObjectId m_blockId;
  int16_t m_flags;
  int16_t m_attachment = 5;
  int16_t m_lineSpacingStyle = 1;
  bool m_unused = false;  // group 73
  bool m_flipArrow1 = false;
  bool m_flipArrow2 = false;
  int8_t m_version = 0;
  uint8_t m_recordFlags = 0;  // of DWG records, without those that m_flags has
};

// Between two points along a direction (rotated) or along the line through them (aligned).
class GcDbRotatedDimension : public GcDbDimension {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRotatedDimension);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbRotatedDimension() : GcDbDimension(0) {}
  // Between the dimension line and extension lines that do not stand at right angles on it, radians; 0: they do.
  [[nodiscard]] double oblique() const { return m_obliqueRad; }
  GcDbRotatedDimension(double rotationRad, const GcGePoint3d& xLine1, const GcGePoint3d& xLine2,
                       const GcGePoint3d& dimLinePoint, const GCHAR* text = nullptr,
                       GcDbObjectId style = GcDbObjectId::kNull);
  [[nodiscard]] GcGePoint3d xLine1Point() const { return m_first; }
  Gcad::ErrorStatus setXLine1Point(const GcGePoint3d& point) { return assign(m_first, point); }
  [[nodiscard]] GcGePoint3d xLine2Point() const { return m_second; }
  Gcad::ErrorStatus setXLine2Point(const GcGePoint3d& point) { return assign(m_second, point); }
  [[nodiscard]] GcGePoint3d dimLinePoint() const { return m_definition; }
  Gcad::ErrorStatus setDimLinePoint(const GcGePoint3d& point) { return assign(m_definition, point); }
  [[nodiscard]] double rotation() const { return m_rotationRad; }
  Gcad::ErrorStatus setRotation(double angleRad) { return assign(m_rotationRad, angleRad); }
  [[nodiscard]] double measured() const override;

 protected:
  void drawPlainly(GcGiWorldDraw& draw) const override;
  void subMirrored() override { m_obliqueRad = -m_obliqueRad; }

 private:
  GcGePoint3d m_first, m_second;
  double m_rotationRad = 0;
  double m_obliqueRad = 0;
};

class GcDbAlignedDimension : public GcDbDimension {
 public:
  GCRX_DECLARE_MEMBERS(GcDbAlignedDimension);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbAlignedDimension() : GcDbDimension(1) {}
  [[nodiscard]] double oblique() const { return m_obliqueRad; }
  GcDbAlignedDimension(const GcGePoint3d& xLine1, const GcGePoint3d& xLine2, const GcGePoint3d& dimLinePoint,
                       const GCHAR* text = nullptr, GcDbObjectId style = GcDbObjectId::kNull);
  [[nodiscard]] GcGePoint3d xLine1Point() const { return m_first; }
  [[nodiscard]] GcGePoint3d xLine2Point() const { return m_second; }
  [[nodiscard]] GcGePoint3d dimLinePoint() const { return m_definition; }
  [[nodiscard]] double measured() const override;

 protected:
  void drawPlainly(GcGiWorldDraw& draw) const override;
  void subMirrored() override { m_obliqueRad = -m_obliqueRad; }

 private:
  GcGePoint3d m_first, m_second;
  double m_obliqueRad = 0;
};

// The angle between two lines, or of two points seen from a vertex.
class GcDb2LineAngularDimension : public GcDbDimension {
 public:
  GCRX_DECLARE_MEMBERS(GcDb2LineAngularDimension);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDb2LineAngularDimension() : GcDbDimension(2) {}
  [[nodiscard]] double measured() const override;

 protected:
  void drawPlainly(GcGiWorldDraw& draw) const override;

 private:
  GcGePoint3d m_firstStart, m_firstEnd, m_secondStart, m_arcPoint;  // the second line ends at the definition point
};

class GcDb3PointAngularDimension : public GcDbDimension {
 public:
  GCRX_DECLARE_MEMBERS(GcDb3PointAngularDimension);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDb3PointAngularDimension() : GcDbDimension(5) {}
  [[nodiscard]] double measured() const override;

 protected:
  void drawPlainly(GcGiWorldDraw& draw) const override;

 private:
  GcGePoint3d m_first, m_second, m_vertex, m_arcPoint;
};

class GcDbDiametricDimension : public GcDbDimension {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDiametricDimension);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbDiametricDimension() : GcDbDimension(3) {}
  [[nodiscard]] GcGePoint3d farChordPoint() const { return m_definition; }
  [[nodiscard]] GcGePoint3d chordPoint() const { return m_chord; }
  [[nodiscard]] double measured() const override { return m_definition.distanceTo(m_chord); }

 protected:
  void drawPlainly(GcGiWorldDraw& draw) const override;

 private:
  GcGePoint3d m_chord;
  double m_leaderLength = 0;
};

class GcDbRadialDimension : public GcDbDimension {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRadialDimension);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbRadialDimension() : GcDbDimension(4) {}
  [[nodiscard]] GcGePoint3d center() const { return m_definition; }
  [[nodiscard]] GcGePoint3d chordPoint() const { return m_chord; }
  [[nodiscard]] double measured() const override { return m_definition.distanceTo(m_chord); }

 protected:
  void drawPlainly(GcGiWorldDraw& draw) const override;

 private:
  GcGePoint3d m_chord;
  double m_leaderLength = 0;
};

class GcDbOrdinateDimension : public GcDbDimension {
 public:
  GCRX_DECLARE_MEMBERS(GcDbOrdinateDimension);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbOrdinateDimension() : GcDbDimension(6) {}
  [[nodiscard]] bool isUsingXAxis() const { return (m_flags & 64) != 0; }
  [[nodiscard]] GcGePoint3d origin() const { return m_definition; }
  [[nodiscard]] double measured() const override;

 protected:
  void drawPlainly(GcGiWorldDraw& draw) const override;
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  [[nodiscard]] GcGeVector3d xAxis() const;
  GcGePoint3d m_feature, m_leaderEnd;
};

// The length of an arc.
class GcDbArcDimension : public GcDbDimension {
 public:
  GCRX_DECLARE_MEMBERS(GcDbArcDimension);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbArcDimension() : GcDbDimension(5) {}
  [[nodiscard]] double measured() const override;

 protected:
  void drawPlainly(GcGiWorldDraw& draw) const override;

 private:
  GcGePoint3d m_first, m_second, m_center, m_leader1, m_leader2;
  double m_startParam = 0;
  double m_endParam = 0;
  bool m_isPartial = false;
  bool m_hasLeader = false;
};

// A radius whose center lies far away: the dimension line has a jog.
class GcDbRadialDimensionLarge : public GcDbDimension {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRadialDimensionLarge);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbRadialDimensionLarge() : GcDbDimension(4) {}
  [[nodiscard]] GcGePoint3d center() const { return m_definition; }
  [[nodiscard]] GcGePoint3d chordPoint() const { return m_chord; }
  [[nodiscard]] GcGePoint3d overrideCenter() const { return m_overrideCenter; }
  [[nodiscard]] GcGePoint3d jogPoint() const { return m_jog; }
  [[nodiscard]] double jogAngle() const { return m_jogAngleRad; }
  [[nodiscard]] double measured() const override { return m_definition.distanceTo(m_chord); }

 protected:
  void drawPlainly(GcGiWorldDraw& draw) const override;

 private:
  GcGePoint3d m_chord, m_overrideCenter, m_jog;
  double m_jogAngleRad = 0;
};
