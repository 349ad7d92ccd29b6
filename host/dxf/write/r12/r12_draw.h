// Entities that draw themselves, caught as plain entities of R12.
#pragma once

#include <vector>

#include "host/dxf/write/r12/r12_emitter.h"

namespace gc::dxf {

class R12Draw final : public GcGiWorldDraw, private GcGiGeometry, private GcGiSubEntityTraits {
 public:
  // `deviation`: how far a chain of lines may lie off its curve. `reach`: half the length of endless lines.
  R12Draw(R12Emitter& emitter, double deviation, double reach)
      : m_emitter(emitter), m_deviation(deviation), m_reach(reach) {}

  GcGiGeometry& geometry() override { return *this; }
  GcGiSubEntityTraits& subEntityTraits() override { return *this; }
  [[nodiscard]] double deviation() const override { return m_deviation; }
  void draw(GcGiDrawable* drawable) override;

 private:
  static constexpr int kDeepest = 64;

  void pushModelTransform(const GcGeMatrix3d& toParent) override;
  void popModelTransform() override;
  void polyline(int count, const GcGePoint3d* points, bool closed) override;
  void polygon(int count, const GcGePoint3d* points) override;
  void polyPolygon(int loopCount, const int* pointCounts, const GcGePoint3d* points) override;
  void circle(const GcGePoint3d& center, double radius, const GcGeVector3d& normal) override;
  void circularArc(const GcGePoint3d& center, double radius, const GcGeVector3d& normal,
                   const GcGeVector3d& startVector, double sweepRad) override;
  void text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction, const GCHAR* text,
            const GcGiTextStyle& style) override;
  void xline(const GcGePoint3d& point, const GcGeVector3d& direction) override;
  void ray(const GcGePoint3d& point, const GcGeVector3d& direction) override;
  void bezier(int count, const GcGePoint3d* points) override;

  void setColor(const GcCmEntityColor& color) override { m_emitter.setColor(color.colorIndex()); }
  void setLayer(const GcDbObjectId& layerId) override { m_emitter.setLayer(layerId); }
  void setLineType(const GcDbObjectId& linetypeId) override { m_emitter.setLinetype(linetypeId); }
  void setLineTypeScale(double) override {}
  void setLineWeight(int) override {}
  void setFill(bool filled) override { m_fill = filled; }
  void setGradient(const GcGiGradient*) override {}

  [[nodiscard]] GcGePoint3d place(const GcGePoint3d& p) const {
    return m_transforms.empty() ? p : m_transforms.back() * p;
  }
  [[nodiscard]] GcGeVector3d turn(const GcGeVector3d& v) const {
    return m_transforms.empty() ? v : m_transforms.back() * v;
  }
  void endless(const GcGePoint3d& point, const GcGeVector3d& direction, double back);
  void fill(const std::vector<std::vector<GcGePoint3d>>& rings);
  void put(const std::vector<GcGePoint3d>& points, bool closed);

  R12Emitter& m_emitter;
  double m_deviation;
  double m_reach;
  bool m_fill = false;
  int m_depth = 0;
  std::vector<GcGeMatrix3d> m_transforms;
};

}  // namespace gc::dxf
