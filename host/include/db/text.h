// One line of text.
#pragma once

#include "db/entity.h"

struct GcGiTextStyle;

namespace GcDb {
enum TextHorzMode : uint8_t { kTextLeft = 0, kTextCenter, kTextRight, kTextAlign, kTextMid, kTextFit };
enum TextVertMode : uint8_t { kTextBase = 0, kTextBottom, kTextVertMid, kTextTop };
}  // namespace GcDb

class GcDbText : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbText);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbText() = default;
  // A null style is the drawing's current one, a height of 0 the style's, when the text is appended.
  GcDbText(const GcGePoint3d& position, const GCHAR* text, GcDbObjectId style = GcDbObjectId::kNull, double height = 0,
           double rotationRad = 0);

  // Left end of the base line, world coordinates. For text that is not aligned at the left of the base line the
  // alignment point counts and the position follows from it (adjustAlignment).
  [[nodiscard]] GcGePoint3d position() const;
  Gcad::ErrorStatus setPosition(const GcGePoint3d& position);
  [[nodiscard]] GcGePoint3d alignmentPoint() const;
  Gcad::ErrorStatus setAlignmentPoint(const GcGePoint3d& point);
  [[nodiscard]] bool isDefaultAlignment() const { return m_horizontal == 0 && m_vertical == 0; }
  [[nodiscard]] GcDb::TextHorzMode horizontalMode() const { return static_cast<GcDb::TextHorzMode>(m_horizontal); }
  Gcad::ErrorStatus setHorizontalMode(GcDb::TextHorzMode mode);
  [[nodiscard]] GcDb::TextVertMode verticalMode() const { return static_cast<GcDb::TextVertMode>(m_vertical); }
  Gcad::ErrorStatus setVerticalMode(GcDb::TextVertMode mode);
  // Moves the position to where the alignment point and the length of the text put it.
  Gcad::ErrorStatus adjustAlignment();

  [[nodiscard]] const GCHAR* textStringConst() const { return m_text.c_str(); }
  [[nodiscard]] const GcString& textString() const { return m_text; }
  Gcad::ErrorStatus setTextString(const GCHAR* text);
  [[nodiscard]] double height() const { return m_height; }
  Gcad::ErrorStatus setHeight(double height);
  [[nodiscard]] double rotation() const { return m_rotationRad; }
  Gcad::ErrorStatus setRotation(double angleRad) { return assign(m_rotationRad, angleRad); }
  [[nodiscard]] double oblique() const { return m_obliqueRad; }
  Gcad::ErrorStatus setOblique(double angleRad) { return assign(m_obliqueRad, angleRad); }
  [[nodiscard]] double widthFactor() const { return m_widthFactor; }
  Gcad::ErrorStatus setWidthFactor(double factor) { return assign(m_widthFactor, factor); }
  [[nodiscard]] GcDbObjectId textStyle() const { return m_styleId; }
  Gcad::ErrorStatus setTextStyle(GcDbObjectId id);
  [[nodiscard]] bool isMirroredInX() const { return (m_mirror & 2) != 0; }
  Gcad::ErrorStatus mirrorInX(bool mirrored);
  [[nodiscard]] bool isMirroredInY() const { return (m_mirror & 4) != 0; }
  Gcad::ErrorStatus mirrorInY(bool mirrored);
  [[nodiscard]] double thickness() const { return m_thickness; }
  Gcad::ErrorStatus setThickness(double thickness) { return assign(m_thickness, thickness); }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal);
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  void subAppended() override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;
  [[nodiscard]] bool hasAlignmentPoint() const { return !isDefaultAlignment() || m_alignment != GcGePoint3d(); }
  // The text and its letters as they are, seen from behind where the transformation shows them so.
  Gcad::ErrorStatus transformExactly(const GcGeMatrix3d& transform);
  void mirrorReadably(const GcGeMatrix3d& transform);
  // The style the text is set with.
  void textLook(GcGiTextStyle& look) const;

  GcGePoint3d m_position;   // own system
  GcGePoint3d m_alignment;  // own system
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  double m_height = 0;
  double m_rotationRad = 0;
  double m_obliqueRad = 0;
  double m_widthFactor = 1;
  double m_thickness = 0;
  GcString m_text;
  GcDbObjectId m_styleId;
  int16_t m_mirror = 0;  // 2 in X, 4 in Y
  int8_t m_horizontal = 0;
  int8_t m_vertical = 0;
};
