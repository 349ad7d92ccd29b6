// Named views, and the tiled viewports of model space.
#pragma once

#include "cm/color.h"
#include "db/symboltablerecord.h"
#include "ge/point.h"

// Where a viewer stands and what he sees; the display system has its origin at the target, its Z along the direction.
class GcDbAbstractViewTableRecord : public GcDbSymbolTableRecord {
 public:
  [[nodiscard]] GcGePoint2d centerPoint() const { return m_center; }
  void setCenterPoint(const GcGePoint2d& center) { ignore(assign(m_center, center)); }
  [[nodiscard]] double height() const { return m_height; }
  void setHeight(double height) { ignore(assign(m_height, height)); }
  [[nodiscard]] double width() const { return m_width; }
  void setWidth(double width) { ignore(assign(m_width, width)); }
  [[nodiscard]] GcGePoint3d target() const { return m_target; }
  void setTarget(const GcGePoint3d& target) { ignore(assign(m_target, target)); }
  [[nodiscard]] GcGeVector3d viewDirection() const { return m_direction; }
  void setViewDirection(const GcGeVector3d& direction) { ignore(assign(m_direction, direction)); }
  [[nodiscard]] double viewTwist() const { return m_twistRad; }
  void setViewTwist(double angleRad) { ignore(assign(m_twistRad, angleRad)); }
  [[nodiscard]] double lensLength() const { return m_lensLength; }
  [[nodiscard]] GcGePoint3d ucsOrigin() const { return m_ucsOrigin; }
  [[nodiscard]] GcGeVector3d ucsXAxis() const { return m_ucsXAxis; }
  [[nodiscard]] GcGeVector3d ucsYAxis() const { return m_ucsYAxis; }
  Gcad::ErrorStatus setUcs(const GcGePoint3d& origin, const GcGeVector3d& xAxis, const GcGeVector3d& yAxis);
  // Takes over a named system and remembers it. Errors: those of opening, eInvalidInput for axes without direction.
  Gcad::ErrorStatus setUcs(GcDbObjectId namedUcs);
  [[nodiscard]] GcDbObjectId ucsName() const { return m_ucsId; }  // null for a system without a name

 protected:
  GcDbAbstractViewTableRecord() = default;
  GcGePoint2d m_center;
  GcGePoint3d m_target;
  GcGeVector3d m_direction = GcGeVector3d::kZAxis;
  double m_height = 1;
  double m_width = 1;
  double m_lensLength = 50;
  double m_frontClip = 0;
  double m_backClip = 0;
  double m_twistRad = 0;
  GcGePoint3d m_ucsOrigin;
  GcGeVector3d m_ucsXAxis = GcGeVector3d::kXAxis;
  GcGeVector3d m_ucsYAxis = GcGeVector3d::kYAxis;
  double m_ucsElevation = 0;
  GcDbObjectId m_ucsId;
  GcDbObjectId m_ucsBaseId;
  GcDbObjectId m_visualStyleId;
  GcDbObjectId m_backgroundId;
  GcDbObjectId m_sunId;
  int16_t m_ucsOrthoView = 0;
  int16_t m_viewMode = 0;
  int8_t m_renderMode = 0;
};

class GcDbViewTableRecord : public GcDbAbstractViewTableRecord {
 public:
  GCRX_DECLARE_MEMBERS(GcDbViewTableRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbViewTableRecord() = default;

  [[nodiscard]] bool isUcsAssociated() const { return m_hasUcs; }
  [[nodiscard]] bool isPlottable() const { return m_plottable; }

 private:
  GcDbObjectId m_liveSectionId;
  bool m_hasUcs = false;
  bool m_plottable = false;
};

class GcDbViewportTableRecord : public GcDbAbstractViewTableRecord {
 public:
  GCRX_DECLARE_MEMBERS(GcDbViewportTableRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbViewportTableRecord() = default;

  // Corners on the screen, fractions of its size.
  [[nodiscard]] GcGePoint2d lowerLeftCorner() const { return m_lowerLeft; }
  void setLowerLeftCorner(const GcGePoint2d& corner) { ignore(assign(m_lowerLeft, corner)); }
  [[nodiscard]] GcGePoint2d upperRightCorner() const { return m_upperRight; }
  void setUpperRightCorner(const GcGePoint2d& corner) { ignore(assign(m_upperRight, corner)); }
  [[nodiscard]] double aspectRatio() const { return m_aspect; }
  void setAspectRatio(double widthToHeight) { ignore(assign(m_aspect, widthToHeight)); }
  [[nodiscard]] bool snapEnabled() const { return m_snapOn; }
  [[nodiscard]] bool gridEnabled() const { return m_gridOn; }
  [[nodiscard]] GcGePoint2d gridIncrements() const { return m_gridSpacing; }
  [[nodiscard]] GcGePoint2d snapIncrements() const { return m_snapSpacing; }

 private:
  GcGePoint2d m_lowerLeft;
  GcGePoint2d m_upperRight{1, 1};
  GcGePoint2d m_snapBase;
  GcGePoint2d m_snapSpacing{10, 10};
  GcGePoint2d m_gridSpacing{10, 10};
  double m_aspect = 1;
  double m_snapAngleRad = 0;
  double m_brightness = 0;
  double m_contrast = 0;
  GcCmColor m_ambientColor = GcCmColor::fromIndex(250);
  int16_t m_circleSides = 1000;
  int16_t m_ucsIcon = 3;
  int16_t m_snapStyle = 0;
  int16_t m_snapIsoPair = 0;
  int16_t m_gridFlags = 3;
  int16_t m_gridMajor = 5;
  int16_t m_lightingType = 1;
  bool m_fastZoom = true;
  bool m_snapOn = false;
  bool m_gridOn = false;
  bool m_hasUcs = true;
  bool m_defaultLighting = true;
};
