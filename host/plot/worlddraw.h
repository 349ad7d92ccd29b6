// Listens to entities that draw themselves and draws them on a page.
// Units:   drawing units in, millimetres of the page out.
// System:  world coordinates in; the projection leads to the page.
#pragma once

#include <vector>

#include "gi/drawable.h"
#include "host/gi/clipping.h"
#include "host/plot/canvas.h"
#include "host/plot/look.h"

class GcDbEntity;

namespace gc::plot {

// From the world to a page or a window on it.
struct Projection {
  GcGeMatrix3d toPage;          // x and y are the page's millimetres, y downwards; z is dropped
  double dashScale = 1;         // page length of one unit of a linetype, before linetype scales
  Box visible;                  // what of the page can be seen: endless lines end there
  double finestPeriodMm = 0.2;  // dashes finer than that are drawn as a solid line
};

class PlotDraw : public GcGiWorldDraw, public GcGiClipping, private GcGiGeometry, private GcGiSubEntityTraits {
 public:
  PlotDraw(Canvas& canvas, Looks& looks, const Projection& projection, bool measuring = false);

  // Draws an entity with what it consists of, unless it is invisible or its layer is.
  void draw(GcGiDrawable* drawable) override;
  // Opens it for read meanwhile.
  void draw(GcDbObjectId id);

  // Endless lines may be left out: nobody wants their bounds.
  [[nodiscard]] int64_t primitiveCount() const { return m_primitives; }
  [[nodiscard]] int denseHatchCount() const { return m_denseHatches; }

  void pushClip(int count, const GcGePoint3d* outline) override;
  void popClip() override { m_canvas.popClip(); }

  GcGiGeometry& geometry() override { return *this; }
  GcGiSubEntityTraits& subEntityTraits() override { return *this; }
  [[nodiscard]] double deviation() const override { return m_deviation; }

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

  void setColor(const GcCmEntityColor& color) override;
  void setLayer(const GcDbObjectId& layerId) override;
  void setLineType(const GcDbObjectId& linetypeId) override;
  void setLineTypeScale(double scale) override;
  void setLineWeight(int hundredthsOfMm) override;
  void setFill(bool filled) override { m_fill = filled; }
  void setGradient(const GcGiGradient* gradient) override;

  [[nodiscard]] Point project(const GcGePoint3d& p) const {
    const GcGePoint3d q = m_total * p;
    return {q.x, q.y};
  }
  void drawEntity(GcDbEntity& entity);
  void updateTotal();
  void addArc(Point center, Point u, Point v, double fromRad, double sweepRad);
  void addEndless(const GcGePoint3d& point, const GcGeVector3d& direction, bool bothWays);
  const Look& look();
  void strokePath(bool mayDash = true);
  // The letters in the pattern of the path's linetype, for dashes that are fitted to it.
  void strokeMarks(const std::vector<double>& fitted, Pen pen);
  void fillPath();

  Canvas& m_canvas;
  Looks& m_looks;
  Projection m_projection;
  bool m_measuring;
  double m_deviation = 0;
  std::vector<GcGeMatrix3d> m_models;  // each leads to the world
  GcGeMatrix3d m_total;                // from the current model to the page

  Traits m_traits;
  Look m_look;  // of the traits
  bool m_lookValid = false;
  Look m_container;  // of what the current entity is part of
  bool m_fill = false;
  bool m_hasGradient = false;
  GcGiGradient m_gradient;

  Path m_path;
  std::vector<double> m_dashes;
  GcDbObjectId m_dashesOf;
  double m_dashesScale = 0;
  std::vector<const GcGiDrawable*> m_open;  // what is being drawn, outermost first
  int64_t m_primitives = 0;
  int m_denseHatches = 0;
};

}  // namespace gc::plot
