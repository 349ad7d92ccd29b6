// Extents of what an entity draws: it is drawn onto a listener that only measures.
#include <cmath>
#include <memory>
#include <vector>

#include "db/entity.h"
#include "host/gi/clipping.h"
#include "host/gi/listener.h"
#include "host/gi/textline.h"
#include "host/rx/math/elementary.h"

namespace {

class Measure : public GcGiListener, public GcGiClipping {
 public:
  explicit Measure(GcDbExtents& extents) : m_extents(&extents) {}

  [[nodiscard]] double deviation() const override { return 0; }

  // What is drawn until the clip goes is measured apart and cut to the box of the outline.
  void pushClip(int count, const GcGePoint3d* outline) override {
    Clip& clip = *m_clips.emplace_back(std::make_unique<Clip>());
    for (int i = 0; i < count; ++i) clip.box.addPoint(!isMoved() ? outline[i] : transform() * outline[i]);
    clip.outside = m_extents;
    m_extents = &clip.drawn;
  }
  void popClip() override {
    if (m_clips.empty()) return;
    const std::unique_ptr<Clip> clip = std::move(m_clips.back());
    m_clips.pop_back();
    m_extents = clip->outside;
    const GcDbExtents &drawn = clip->drawn, &box = clip->box;
    if (drawn.isEmpty() || box.isEmpty()) return;
    const GcGePoint3d low(std::fmax(drawn.min.x, box.min.x), std::fmax(drawn.min.y, box.min.y), drawn.min.z);
    const GcGePoint3d high(std::fmin(drawn.max.x, box.max.x), std::fmin(drawn.max.y, box.max.y), drawn.max.z);
    if (low.x > high.x || low.y > high.y) return;
    m_extents->addPoint(low);
    m_extents->addPoint(high);
  }

 private:
  void add(const GcGePoint3d& p) { m_extents->addPoint(!isMoved() ? p : transform() * p); }
  void polyline(int count, const GcGePoint3d* points, bool) override {
    for (int i = 0; i < count; ++i) add(points[i]);
  }
  void polygon(int count, const GcGePoint3d* points) override { polyline(count, points, true); }
  void polyPolygon(int loopCount, const int* pointCounts, const GcGePoint3d* points) override {
    for (int i = 0; i < loopCount; points += pointCounts[i++]) polyline(pointCounts[i], points, true);
  }
  void circle(const GcGePoint3d& center, double radius, const GcGeVector3d& normal) override {
    const GcGeVector3d x = gcgeArbitraryXAxis(normal.normal()) * radius;
    circularArc(center, radius, normal, x, 2 * 3.14159265358979323846);
  }

  // An arc reaches furthest along an axis of the drawing at its ends or where its tangent is at right angles
  // to that axis.
  void circularArc(const GcGePoint3d& center, double radius, const GcGeVector3d& normal, const GcGeVector3d& start,
                   double sweepRad) override {
    const GcGeVector3d u = start.normal() * radius;
    const GcGeVector3d v = normal.normal().crossProduct(u);
    const auto at = [&](double angle) { return center + u * gc::cos(angle) + v * gc::sin(angle); };
    add(at(0));
    add(at(sweepRad));
    const GcGeMatrix3d& m = transform();
    const GcGeVector3d mu = m * u, mv = m * v;
    const double extremes[3] = {gc::atan2(mv.x, mu.x), gc::atan2(mv.y, mu.y), gc::atan2(mv.z, mu.z)};
    constexpr double kPi = 3.14159265358979323846;
    for (const double angle : extremes)
      for (int turn = -2; turn <= 2; ++turn) {
        const double where = angle + turn * kPi;
        if (where > 0 && where < sweepRad) add(at(where));
      }
  }
  void text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction, const GCHAR* text,
            const GcGiTextStyle& style) override {
    const GcGeVector3d along = direction.normal() * gcgiTextLength(view(text), style);
    const GcGeVector3d up = normal.normal().crossProduct(direction.normal()) * style.height;
    for (const GcGePoint3d& corner : {position, position + along, position + up, position + along + up}) add(corner);
  }
  void xline(const GcGePoint3d&, const GcGeVector3d&) override {}
  void ray(const GcGePoint3d& point, const GcGeVector3d&) override { add(point); }
  void bezier(int count, const GcGePoint3d* points) override { polyline(count, points, false); }

  struct Clip {
    GcDbExtents box, drawn;
    GcDbExtents* outside = nullptr;
  };
  GcDbExtents* m_extents;
  std::vector<std::unique_ptr<Clip>> m_clips;
};

}  // namespace

Gcad::ErrorStatus GcDbEntity::getGeomExtents(GcDbExtents& extents) const {
  assertReadEnabled();
  GcDbExtents found;
  Measure measure(found);
  const_cast<GcDbEntity*>(this)->subWorldDraw(&measure);
  if (found.isEmpty()) return Gcad::eNullExtents;
  extents = found;
  return Gcad::eOk;
}
