// The base of those who listen to drawables drawing: they override what they want to hear, the rest is passed over,
// points come to them through the transforms pushed so far, and blocks that contain themselves end somewhere.
#pragma once

#include <vector>

#include "gi/drawable.h"

class GcGiListener : public GcGiWorldDraw, protected GcGiGeometry, protected GcGiSubEntityTraits {
 public:
  GcGiGeometry& geometry() override { return *this; }
  GcGiSubEntityTraits& subEntityTraits() override { return *this; }
  void draw(GcGiDrawable* drawable) override {
    constexpr int kMostNested = 100;
    if (m_depth > kMostNested) return;
    ++m_depth;
    drawable->subWorldDraw(this);
    --m_depth;
  }

 protected:
  [[nodiscard]] bool isMoved() const { return !m_transforms.empty(); }
  [[nodiscard]] const GcGeMatrix3d& transform() const {
    return m_transforms.empty() ? GcGeMatrix3d::kIdentity : m_transforms.back();
  }

  void pushModelTransform(const GcGeMatrix3d& toParent) override {
    m_transforms.push_back(m_transforms.empty() ? toParent : m_transforms.back() * toParent);
  }
  void popModelTransform() override {
    if (!m_transforms.empty()) m_transforms.pop_back();
  }

  void polyline(int, const GcGePoint3d*, bool) override {}
  void polygon(int, const GcGePoint3d*) override {}
  void polyPolygon(int, const int*, const GcGePoint3d*) override {}
  void circle(const GcGePoint3d&, double, const GcGeVector3d&) override {}
  void circularArc(const GcGePoint3d&, double, const GcGeVector3d&, const GcGeVector3d&, double) override {}
  void text(const GcGePoint3d&, const GcGeVector3d&, const GcGeVector3d&, const GCHAR*, const GcGiTextStyle&) override {
  }
  void xline(const GcGePoint3d&, const GcGeVector3d&) override {}
  void ray(const GcGePoint3d&, const GcGeVector3d&) override {}
  void bezier(int, const GcGePoint3d*) override {}

  void setColor(const GcCmEntityColor&) override {}
  void setLayer(const GcDbObjectId&) override {}
  void setLineType(const GcDbObjectId&) override {}
  void setLineTypeScale(double) override {}
  void setLineWeight(int) override {}
  void setFill(bool) override {}
  void setGradient(const GcGiGradient*) override {}

 private:
  std::vector<GcGeMatrix3d> m_transforms;
  int m_depth = 0;
};
