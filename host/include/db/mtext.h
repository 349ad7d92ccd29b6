// Paragraph text: several lines with formatting codes, broken at a width.
#pragma once

#include "db/entity.h"

// What few texts have: a filled background, columns.
struct GcDbMTextRare {
  int32_t backgroundFlags = 0;  // 1 filled, 2 with the window's colour, 16 framed
  GcCmEntityColor backgroundColor;
  double backgroundScale = 1.5;  // of the text height, how far the background reaches
  int32_t backgroundTransparency = 0;
  int16_t columnType = 0;  // 0 none, 1 static, 2 dynamic
  int16_t columnCount = 0;
  bool columnFlowReversed = false;
  bool columnAutoHeight = false;
  double columnWidth = 0;
  double columnGutter = 0;
  double totalWidth = 0;
  double totalHeight = 0;
  GcArray<double> columnHeights;

  [[nodiscard]] bool hasBackground() const { return backgroundFlags != 0; }
};

class GcDbMText : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbMText);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum AttachmentPoint : uint8_t {
    kTopLeft = 1,
    kTopCenter,
    kTopRight,
    kMiddleLeft,
    kMiddleCenter,
    kMiddleRight,
    kBottomLeft,
    kBottomCenter,
    kBottomRight
  };
  enum FlowDirection : uint8_t { kLtoR = 1, kRtoL = 2, kTtoB = 3, kBtoT = 4, kByStyle = 5 };

  GcDbMText() = default;

  [[nodiscard]] GcGePoint3d location() const { return m_location; }
  Gcad::ErrorStatus setLocation(const GcGePoint3d& point) { return assign(m_location, point); }
  [[nodiscard]] const GcString& contents() const { return m_contents; }
  Gcad::ErrorStatus setContents(const GCHAR* contents);
  // Width of the column at which lines break; 0 for no breaking.
  [[nodiscard]] double width() const { return m_width; }
  Gcad::ErrorStatus setWidth(double width);
  [[nodiscard]] double textHeight() const { return m_textHeight; }
  Gcad::ErrorStatus setTextHeight(double height);
  [[nodiscard]] GcDbObjectId textStyle() const { return m_styleId; }
  Gcad::ErrorStatus setTextStyle(GcDbObjectId id);
  [[nodiscard]] AttachmentPoint attachment() const { return static_cast<AttachmentPoint>(m_attachment); }
  // Keeps the location: the text moves about it. Errors: eInvalidInput outside 1..9.
  Gcad::ErrorStatus setAttachment(AttachmentPoint attachment);
  [[nodiscard]] FlowDirection flowDirection() const { return static_cast<FlowDirection>(m_flow); }
  Gcad::ErrorStatus setFlowDirection(FlowDirection flow) { return assign(m_flow, static_cast<int16_t>(flow)); }
  [[nodiscard]] GcGeVector3d direction() const { return m_direction; }
  Gcad::ErrorStatus setDirection(const GcGeVector3d& direction);
  // Angle of the direction in the plane of the normal, radians.
  [[nodiscard]] double rotation() const;
  Gcad::ErrorStatus setRotation(double angleRad);
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal);
  [[nodiscard]] double lineSpacingFactor() const { return m_lineSpacing; }
  Gcad::ErrorStatus setLineSpacingFactor(double factor) { return assign(m_lineSpacing, factor); }
  // 1 at least, 2 exactly.
  [[nodiscard]] int lineSpacingStyle() const { return m_lineSpacingStyle; }
  Gcad::ErrorStatus setLineSpacingStyle(int style) { return assign(m_lineSpacingStyle, static_cast<int16_t>(style)); }
  // Size of the text as set, drawing units.
  [[nodiscard]] double actualHeight() const;
  [[nodiscard]] double actualWidth() const;
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  void subLoaded() override;
  void subAppended() override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  static constexpr double kNoTurn = 1e300;
  [[nodiscard]] bool isGivenByAngle() const { return m_turnRad != kNoTurn; }
  [[nodiscard]] double turn() const { return isGivenByAngle() ? m_turnRad : rotation(); }
  [[nodiscard]] bool isGivenByVector() const { return !isGivenByAngle(); }
  [[nodiscard]] uint32_t sumOfMeasured() const;
  [[nodiscard]] bool isMeasured() const { return m_measuredSum != 0 && m_measuredSum == sumOfMeasured(); }
  [[nodiscard]] bool hasColumns() const { return !m_rare.isEmpty() && m_rare[0].columnType != 0; }

  GcGePoint3d m_location;
  GcGeVector3d m_direction = GcGeVector3d::kXAxis;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  double m_textHeight = 0;
  double m_width = 0;
  double m_definedHeight = 0;
  double m_lineSpacing = 1;
  double m_turnRad = kNoTurn;  // the direction as the angle it was given by
  GcString m_contents;
  GcDbObjectId m_styleId;
  GcArray<GcDbMTextRare> m_rare;
  // The size another program measured, with its fonts, and a sum of what it measured; 0 for none. DWG records have it.
  double m_measuredWidth = 0;
  double m_measuredHeight = 0;
  uint32_t m_measuredSum = 0;
  bool m_isAnnotative = false;  // as DWG records say; its sizes by scale stand in its extension dictionary
  int16_t m_attachment = kTopLeft;
  int16_t m_flow = kByStyle;
  int16_t m_lineSpacingStyle = 1;
};
