// Raster images and wipeouts: a rectangle of pixels placed by a corner and the vectors of one pixel, and a boundary
// in pixels outside of which (or, inverted, inside of which) nothing is shown. The pixels are in a file of their own.
#pragma once

#include "db/entity.h"
#include "host/db/describe/recordof.h"

class GcDbRasterImage : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRasterImage);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum Display : uint8_t { kShow = 1, kShowUnaligned = 2, kClipped = 4, kTransparent = 8 };
  enum ClipType : uint8_t { kRectangle = 1, kPolygon = 2 };

  GcDbRasterImage() = default;
  [[nodiscard]] GcDbObjectId imageDefId() const { return m_imageDefId; }
  [[nodiscard]] GcDbObjectId reactorId() const { return m_reactorId; }
  [[nodiscard]] bool isPlanar() const override { return true; }
  [[nodiscard]] GcGeVector3d normal() const override;
  // The boundary of what is shown in world coordinates, without the first corner again.
  [[nodiscard]] GcArray<GcGePoint3d> boundary() const;

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 protected:
  friend struct GcDbRecordOf<GcDbRasterImage>;

  // A setting of the drawing: whether a line is drawn around images, around wipeouts.
  [[nodiscard]] bool hasFrame(const GCHAR* dictionaryKey) const;

  GcGePoint3d m_corner;                     // lower left
  GcGeVector3d m_u = GcGeVector3d::kXAxis;  // one pixel to the right
  GcGeVector3d m_v = GcGeVector3d::kYAxis;  // one pixel up
  GcGeVector2d m_size{1, 1};                // in pixels
  GcArray<GcGePoint2d> m_clip;              // pixels from the middle of the upper left one, y downwards
  GcDbObjectId m_imageDefId;
  GcDbObjectId m_reactorId;
  int32_t m_version = 0;
  int16_t m_display = kShow | kShowUnaligned | kClipped;
  int16_t m_clipType = kRectangle;
  uint8_t m_brightness = 50;
  uint8_t m_contrast = 50;
  uint8_t m_fade = 0;
  bool m_isClipped = true;
  bool m_isInverted = false;  // the inside of the boundary is left out
};

// Hides what lies under its boundary.
class GcDbWipeout : public GcDbRasterImage {
 public:
  GCRX_DECLARE_MEMBERS(GcDbWipeout);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbWipeout() = default;
  bool subWorldDraw(GcGiWorldDraw* draw) override;
};
