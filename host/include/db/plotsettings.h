// How a page is plotted: device, paper, margins, area, scale. Lengths of paper in millimetres.
#pragma once

#include "db/object.h"
#include "ge/point.h"
#include "rx/gcstring.h"

struct GcDbField;

class GcDbPlotSettings : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbPlotSettings);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum PlotPaperUnits : int16_t { kInches = 0, kMillimeters = 1, kPixels = 2 };
  enum PlotRotation : int16_t { k0degrees = 0, k90degrees = 1, k180degrees = 2, k270degrees = 3 };
  enum PlotType : int16_t { kDisplay = 0, kExtents = 1, kLimits = 2, kView = 3, kWindow = 4, kLayout = 5 };

  GcDbPlotSettings() = default;

  [[nodiscard]] const GcString& plotSettingsName() const { return m_pageSetup; }
  Gcad::ErrorStatus setPlotSettingsName(const GCHAR* name) { return assign(m_pageSetup, GcString(name)); }
  [[nodiscard]] const GcString& plotCfgName() const { return m_device; }
  [[nodiscard]] const GcString& canonicalMediaName() const { return m_paperName; }
  [[nodiscard]] const GcString& currentStyleSheet() const { return m_styleSheet; }
  // The unturned paper and its margins.
  [[nodiscard]] GcGePoint2d plotPaperSize() const { return {m_paperWidthMm, m_paperHeightMm}; }
  void getPlotPaperMargins(double& left, double& bottom, double& right, double& top) const;
  [[nodiscard]] PlotPaperUnits plotPaperUnits() const { return static_cast<PlotPaperUnits>(m_paperUnits); }
  [[nodiscard]] PlotRotation plotRotation() const { return static_cast<PlotRotation>(m_rotation & 3); }
  [[nodiscard]] PlotType plotType() const { return static_cast<PlotType>(m_plotType); }
  // Paper units to drawing units, numerator and denominator.
  void getCustomPrintScale(double& paperUnits, double& drawingUnits) const;
  [[nodiscard]] int16_t stdScaleType() const { return m_scaleType; }
  [[nodiscard]] bool isModelType() const { return (m_plotFlags & kModelType) != 0; }
  [[nodiscard]] const GcString& plotViewName() const { return m_viewName; }

  // A sheet of paper, landscape or upright as its sizes say, with the same margin on every side.
  Gcad::ErrorStatus setPaper(const GCHAR* name, double widthMm, double heightMm, double marginMm);
  Gcad::ErrorStatus setModelType(bool model);
  // Takes over everything but the name of the page setup.
  Gcad::ErrorStatus copyFrom(const GcDbPlotSettings& other);

  // For the host's own use: files from R2004 on refer to the view by its record.
  [[nodiscard]] GcDbObjectId plotViewId() const { return m_viewId; }
  void setPlotView(GcDbObjectId id) { m_viewId = id; }
  void subLoaded() override;

 private:
  enum PlotFlags : int16_t { kModelType = 1024 };
  static constexpr int16_t kUsualFlags = 688;  // standard scale, plot styles, line weights, paper space last
  static constexpr int16_t kOneToOne = 16;

  GcString m_pageSetup;
  GcString m_device{GC_T("none_device")};
  GcString m_paperName;
  GcString m_viewName;
  GcString m_styleSheet;
  GcDbObjectId m_viewId;
  GcDbObjectId m_shadePlotId;
  double m_leftMm = 0;
  double m_bottomMm = 0;
  double m_rightMm = 0;
  double m_topMm = 0;
  double m_paperWidthMm = 0;
  double m_paperHeightMm = 0;
  double m_originX = 0;
  double m_originY = 0;
  double m_windowLeft = 0;
  double m_windowBottom = 0;
  double m_windowRight = 0;
  double m_windowTop = 0;
  double m_paperUnit = 1;
  double m_drawingUnits = 1;
  double m_scaleFactor = 1;
  double m_imageX = 0;
  double m_imageY = 0;
  int16_t m_plotFlags = kUsualFlags;
  int16_t m_paperUnits = kMillimeters;
  int16_t m_rotation = k0degrees;
  int16_t m_plotType = kLayout;
  int16_t m_scaleType = kOneToOne;
  int16_t m_shadePlot = 0;
  int16_t m_shadeResolution = 2;
  int16_t m_shadeDpi = 300;
};
