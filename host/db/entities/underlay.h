// Pages of other files (PDF, DWF, DGN) shown under a drawing: placed like block references, clipped at an outline.
#pragma once

#include "db/entity.h"
#include "host/db/describe/recordof.h"

class GcDbUnderlayReference : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbUnderlayReference);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum Flags : uint8_t { kClipped = 1, kOn = 2, kMonochrome = 4, kAdjusted = 8, kInverted = 16 };

  [[nodiscard]] GcDbObjectId definitionId() const { return m_definitionId; }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  [[nodiscard]] bool isPlanar() const override { return true; }
  // The size of the page is in its own file: only a clipping outline can be drawn.
  bool subWorldDraw(GcGiWorldDraw* draw) override;

 protected:
  friend struct GcDbRecordOf<GcDbUnderlayReference>;
  GcDbUnderlayReference() = default;
  [[nodiscard]] bool isInverted() const { return (m_flags & kInverted) != 0; }
  [[nodiscard]] bool hasInnerClip() const { return isInverted() && !m_innerClip.isEmpty(); }

  GcDbObjectId m_definitionId;
  GcGePoint3d m_position;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  double m_scaleX = 1, m_scaleY = 1, m_scaleZ = 1;
  double m_rotationRad = 0;
  GcArray<GcGePoint2d> m_clip;       // in units of the page, two corners or an outline
  GcArray<GcGePoint2d> m_innerClip;  // of the part left out
  uint8_t m_flags = kOn;
  uint8_t m_contrast = 100;
  uint8_t m_fade = 0;
};

#define GC_UNDERLAY(Class)                     \
  class Class : public GcDbUnderlayReference { \
   public:                                     \
    GCRX_DECLARE_MEMBERS(Class);               \
    Class() = default;                         \
  }
GC_UNDERLAY(GcDbPdfReference);
GC_UNDERLAY(GcDbDwfReference);
GC_UNDERLAY(GcDbDgnReference);
#undef GC_UNDERLAY
