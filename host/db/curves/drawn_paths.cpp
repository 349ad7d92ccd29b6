#include "host/db/curves/drawn_paths.h"

#include <limits>
#include <numbers>

#include "host/db/curves/curve_path.h"
#include "host/db/entities/draw_path.h"
#include "host/gi/listener.h"
#include "host/gi/textline.h"

namespace {

class Collector : public GcGiListener, public gcdraw::PathListener {
 public:
  explicit Collector(std::vector<GcGePath>& paths) : m_paths(paths) {}

  [[nodiscard]] double deviation() const override { return 0; }

  // A curve inside a block is met where its own path is, like one outside.
  void draw(GcGiDrawable* drawable) override {
    const GcDbCurve* curve = GcDbCurve::cast(drawable);
    if (curve == nullptr) return GcGiListener::draw(drawable);
    const GcDbCurvePath path(*curve);
    if (path.status() == Gcad::eOk) return add(*path);
    if (path.status() == Gcad::eNotApplicable) GcGiListener::draw(drawable);
  }

 private:
  void wholePath(const GcGePath& path) override { add(path); }

  void add(const GcGePath& path) {
    if (path.isEmpty() || !path.isFinite()) return;
    m_paths.push_back(!isMoved() ? path : path.transformed(transform()));
  }

  void polyline(int count, const GcGePoint3d* points, bool closed) override {
    if (count < 2) return;
    GcGePath path(points[0]);
    int t = 0;
    for (int i = 0; i + 1 < count + (closed ? 1 : 0); ++i) {
      const GcGePoint3d& to = points[(i + 1) % count];
      if (points[i] == to) continue;
      path.addLine(points[i], to, t, t + 1);
      ++t;
    }
    path.setClosed(closed);
    add(path);
  }
  void polygon(int count, const GcGePoint3d* points) override { polyline(count, points, true); }
  void polyPolygon(int loopCount, const int* pointCounts, const GcGePoint3d* points) override {
    for (int i = 0; i < loopCount; points += pointCounts[i], ++i) polyline(pointCounts[i], points, true);
  }
  void circle(const GcGePoint3d& center, double radius, const GcGeVector3d& normal) override {
    circularArc(center, radius, normal, gcgeArbitraryXAxis(normal.normal()), 2 * std::numbers::pi);
  }
  void circularArc(const GcGePoint3d& center, double radius, const GcGeVector3d& normal, const GcGeVector3d& start,
                   double sweepRad) override {
    const GcGeVector3d x = start.normal() * radius, y = normal.normal().crossProduct(x);
    GcGePath path(center);
    path.addArc(center, x, y, 0, sweepRad, 0, sweepRad);
    const bool whole = std::abs(sweepRad) >= 2 * std::numbers::pi;
    path.setClosed(whole, whole);
    if (radius > 0 && sweepRad != 0) add(path);
  }
  void text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction, const GCHAR* text,
            const GcGiTextStyle& style) override {
    const GcGeVector3d along = direction.normal(), up = normal.normal().crossProduct(along);
    const GcGiTextBox box = gcgiTextBox(style, gcgiTextLength(view(text), style));
    const GcGePoint3d corner = position + along * box.left + up * box.low;
    const GcGeVector3d right = along * (box.right - box.left), rise = up * (box.high - box.low);
    const GcGePoint3d corners[4] = {corner, corner + right, corner + right + rise, corner + rise};
    polyline(4, corners, true);
  }
  void unbounded(const GcGePoint3d& point, const GcGeVector3d& direction, double from) {
    if (direction.length() == 0) return;
    GcGePath path(point);
    path.addUnbounded(point, direction / direction.length(), from, std::numeric_limits<double>::infinity());
    add(path);
  }
  void xline(const GcGePoint3d& point, const GcGeVector3d& direction) override {
    unbounded(point, direction, -std::numeric_limits<double>::infinity());
  }
  void ray(const GcGePoint3d& point, const GcGeVector3d& direction) override { unbounded(point, direction, 0); }
  void bezier(int count, const GcGePoint3d* points) override {
    if (count < 4) return;
    GcGePath path(points[0]);
    for (int i = 0; i + 3 < count; i += 3) {
      GcGePole poles[4];
      for (int k = 0; k < 4; ++k) {
        const GcGeVector3d v = points[i + k] - points[0];
        poles[k] = {v.x, v.y, v.z, 1};
      }
      path.addBezier(poles, 3, i / 3, i / 3 + 1);
    }
    add(path);
  }

  std::vector<GcGePath>& m_paths;
};

}  // namespace

Gcad::ErrorStatus gcdbDrawnPaths(const GcDbEntity& entity, bool extend, std::vector<GcGePath>& paths) {
  if (const GcDbCurve* curve = GcDbCurve::cast(&entity)) {
    const GcDbCurvePath path(*curve);
    if (path.status() == Gcad::eOk) {
      paths.push_back(extend ? path->extended() : *path);
      return Gcad::eOk;
    }
    if (path.status() != Gcad::eNotApplicable) return path.status();
  }
  entity.assertReadEnabled();
  Collector collector(paths);
  const_cast<GcDbEntity&>(entity).subWorldDraw(&collector);
  return paths.empty() ? Gcad::eNotApplicable : Gcad::eOk;
}
