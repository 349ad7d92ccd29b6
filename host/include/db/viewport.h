// Viewports of paper space: windows from a sheet of paper into the model. The one with number 1 stands for the sheet
// itself: its view says which part of the paper the screen shows.
#pragma once

#include "db/entity.h"

class GcDbViewport : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbViewport);
  static const GcDbField kFields[];
  static const int kFieldCount;

  // Scales by number, as programs give them: paper units to one unit of the model.
  enum StandardScaleType : int8_t {
    kScaleToFit,
    kCustomScale,
    k1_1,
    k1_2,
    k1_4,
    k1_5,
    k1_8,
    k1_10,
    k1_16,
    k1_20,
    k1_30,
    k1_40,
    k1_50,
    k1_100,
    k2_1,
    k4_1,
    k8_1,
    k10_1,
    k100_1,
    k1_128in_1ft,
    k1_64in_1ft,
    k1_32in_1ft,
    k1_16in_1ft,
    k3_32in_1ft,
    k1_8in_1ft,
    k3_16in_1ft,
    k1_4in_1ft,
    k3_8in_1ft,
    k1_2in_1ft,
    k3_4in_1ft,
    k1in_1ft,
    k3in_1ft,
    k6in_1ft,
    k1ft_1ft
  };

  GcDbViewport() = default;

  // The window on the paper.
  [[nodiscard]] GcGePoint3d centerPoint() const { return m_center; }
  Gcad::ErrorStatus setCenterPoint(const GcGePoint3d& center) { return assign(m_center, center); }
  [[nodiscard]] double width() const { return m_width; }
  Gcad::ErrorStatus setWidth(double width);  // eInvalidInput for anything but a positive length
  [[nodiscard]] double height() const { return m_height; }
  Gcad::ErrorStatus setHeight(double height);

  // 1 the sheet itself, 2 and up the windows in the order in which they came; 0 before it belongs to a layout, and in
  // files for those of layouts that are not shown.
  [[nodiscard]] int16_t number() const { return m_number; }
  static constexpr int16_t kNumberUnknown = -1;
  [[nodiscard]] bool isSheet() const { return m_number == 1; }
  [[nodiscard]] bool isOn() const { return m_status != 0 && (m_flags & kOff) == 0; }
  [[nodiscard]] bool isSwitchedOff() const { return (m_flags & kOff) != 0; }
  Gcad::ErrorStatus setOn();
  Gcad::ErrorStatus setOff();

  // What is seen: in the display system of the view, its origin at the target and its Z along the direction.
  [[nodiscard]] GcGePoint2d viewCenter() const { return m_viewCenter; }
  Gcad::ErrorStatus setViewCenter(const GcGePoint2d& center) { return assign(m_viewCenter, center); }
  [[nodiscard]] double viewHeight() const { return m_viewHeight; }
  Gcad::ErrorStatus setViewHeight(double height);
  [[nodiscard]] GcGePoint3d viewTarget() const { return m_target; }
  Gcad::ErrorStatus setViewTarget(const GcGePoint3d& target) { return assign(m_target, target); }
  [[nodiscard]] GcGeVector3d viewDirection() const { return m_direction; }
  Gcad::ErrorStatus setViewDirection(const GcGeVector3d& direction);
  [[nodiscard]] double twistAngle() const { return m_twistRad; }
  Gcad::ErrorStatus setTwistAngle(double angleRad) { return assign(m_twistRad, angleRad); }
  [[nodiscard]] double lensLength() const { return m_lensLength; }
  [[nodiscard]] GcGePoint3d ucsOrigin() const { return m_ucsOrigin; }
  [[nodiscard]] GcGeVector3d ucsXAxis() const { return m_ucsXAxis; }
  [[nodiscard]] GcGeVector3d ucsYAxis() const { return m_ucsYAxis; }
  [[nodiscard]] bool isUcsSavedWithViewport() const { return m_hasUcs; }

  // Paper units to one unit of the model; 0 for a view without height. A scale changes the height of the view about
  // its centre. Errors: eInvalidInput for a scale that is not positive, or a number outside the list.
  [[nodiscard]] double customScale() const { return m_viewHeight > 0 ? m_height / m_viewHeight : 0; }
  Gcad::ErrorStatus setCustomScale(double scale);
  // kCustomScale unless the scale is one of the list.
  [[nodiscard]] StandardScaleType standardScale() const;
  // kScaleToFit shows all of the model; kCustomScale changes nothing.
  Gcad::ErrorStatus setStandardScale(StandardScaleType scale);
  Gcad::ErrorStatus setStandardScale(int number);

  // Whether zooming in the viewport is held off.
  [[nodiscard]] bool isLocked() const { return (m_flags & kLocked) != 0; }
  Gcad::ErrorStatus setLocked() { return setFlag(kLocked, true); }
  Gcad::ErrorStatus setUnlocked() { return setFlag(kLocked, false); }

  // The entity whose outline clips what is seen; null for the rectangle.
  [[nodiscard]] GcDbObjectId nonRectClipEntityId() const { return m_clipId; }
  Gcad::ErrorStatus setNonRectClipEntityId(GcDbObjectId id);
  [[nodiscard]] bool isNonRectClipOn() const { return (m_flags & kClipped) != 0 && !m_clipId.isNull(); }

  // Layers that this viewport does not show.
  [[nodiscard]] const GcDbObjectIdArray& frozenLayers() const { return m_frozenLayers; }
  [[nodiscard]] bool isLayerFrozenInViewport(GcDbObjectId layer) const { return m_frozenLayers.contains(layer); }
  Gcad::ErrorStatus freezeLayersInViewport(const GcDbObjectIdArray& layers);
  Gcad::ErrorStatus thawLayersInViewport(const GcDbObjectIdArray& layers);
  Gcad::ErrorStatus thawAllLayersInViewport() { return assign(m_frozenLayers, GcDbObjectIdArray()); }

  [[nodiscard]] bool isPlanar() const override { return true; }
  bool subWorldDraw(GcGiWorldDraw* draw) override;
  void subAppended() override;

  // For the host's own use: gives a viewport that came without them its number and status, from the flags and the
  // numbers of its neighbours.
  void completeNumber(int16_t number);
  void makeSheet() { m_number = m_status = 1; }

 private:
  enum Flags : int32_t { kLocked = 0x4000, kClipped = 0x10000, kOff = 0x20000 };
  static constexpr int32_t kUsualFlags = 0x8060;  // UCS icon shown at the origin, always enabled
  Gcad::ErrorStatus setFlag(int32_t flag, bool on) { return assign(m_flags, on ? m_flags | flag : m_flags & ~flag); }
  [[nodiscard]] bool hasViewExtras() const;

  GcGePoint3d m_center;
  double m_width = 1;
  double m_height = 1;
  GcGePoint2d m_viewCenter;
  GcGePoint2d m_snapBase;
  GcGePoint2d m_snapSpacing{10, 10};
  GcGePoint2d m_gridSpacing{10, 10};
  GcGePoint3d m_target;
  GcGeVector3d m_direction = GcGeVector3d::kZAxis;
  double m_lensLength = 50;
  double m_frontClip = 0;
  double m_backClip = 0;
  double m_viewHeight = 1;
  double m_snapAngleRad = 0;
  double m_twistRad = 0;
  GcGePoint3d m_ucsOrigin;
  GcGeVector3d m_ucsXAxis = GcGeVector3d::kXAxis;
  GcGeVector3d m_ucsYAxis = GcGeVector3d::kYAxis;
  double m_ucsElevation = 0;
  double m_brightness = 0;
  double m_contrast = 0;
  GcDbObjectIdArray m_frozenLayers;
  GcDbObjectId m_clipId;
  GcDbObjectId m_ucsId;
  GcDbObjectId m_ucsBaseId;
  GcDbObjectId m_backgroundId;
  GcDbObjectId m_visualStyleId;
  GcDbObjectId m_shadePlotId;
  GcDbObjectId m_sunId;
  GcString m_styleSheet;
  GcCmColor m_ambientColor = GcCmColor::fromIndex(250);
  int32_t m_flags = kUsualFlags;
  int16_t m_status = 0;
  int16_t m_number = 0;
  int16_t m_circleSides = 1000;
  int16_t m_ucsOrthoView = 0;
  int16_t m_shadePlot = 0;
  int16_t m_gridMajor = 5;
  int8_t m_renderMode = 0;
  int8_t m_lightingType = 1;
  bool m_hasUcs = true;
  bool m_ucsAtOrigin = false;
  bool m_defaultLighting = true;
};
