#include "host/db/entities/bulge.h"

#include <cmath>
#include <vector>

#include "gi/drawable.h"
#include "host/db/entities/planar.h"
#include "host/gi/wideline.h"
#include "host/rx/math/elementary.h"

namespace gcbulge {

Arc arcOf(const GcGePoint2d& start, const GcGePoint2d& end, double bulge) {
  Arc arc;
  const GcGeVector2d chord = end - start;
  const double toCenter = (1 / bulge - bulge) / 4;
  arc.center = start + chord * 0.5 + chord.perpVector() * toCenter;
  arc.radius = arc.center.distanceTo(start);
  arc.startRad = gc::atan2(start.y - arc.center.y, start.x - arc.center.x);
  arc.sweepRad = 4 * gc::atan(bulge);
  return arc;
}

namespace {

void drawThin(GcGiWorldDraw& draw, const Segment& s, double elevation, const GcGeVector3d& normal,
              const GcGeMatrix3d& toWorld) {
  if (s.bulge == 0 || s.start == s.end) {
    const GcGePoint3d ends[2] = {toWorld * GcGePoint3d(s.start.x, s.start.y, elevation),
                                 toWorld * GcGePoint3d(s.end.x, s.end.y, elevation)};
    draw.geometry().polyline(2, ends);
    return;
  }
  const Arc arc = arcOf(s.start, s.end, s.bulge);
  const GcGePoint2d& first = arc.sweepRad > 0 ? s.start : s.end;  // drawn counter-clockwise
  const GcGeVector3d startVector = toWorld * GcGeVector3d(first.x - arc.center.x, first.y - arc.center.y, 0);
  draw.geometry().circularArc(toWorld * GcGePoint3d(arc.center.x, arc.center.y, elevation), arc.radius, normal,
                              startVector, std::fabs(arc.sweepRad));
}

// The bands of all segments that have a width, their corners mitred.
void drawWide(GcGiWorldDraw& draw, const Segment* segments, int count, bool closed, double elevation,
              const GcGeMatrix3d& toWorld) {
  std::vector<GcGiWideVertex> vertices;
  double widest = 0;
  for (int i = 0; i < count; ++i) {
    const Segment& s = segments[i];
    vertices.push_back({s.start, s.bulge, s.startWidth, s.endWidth});
    widest = std::fmax(widest, std::fmax(s.startWidth, s.endWidth));
  }
  if (!closed) vertices.push_back({segments[count - 1].end, 0, 0, 0});
  constexpr double kCoarsest = 1e-3;  // of the width, for listeners that ask for no deviation
  const double deviation = draw.deviation() > 0 ? draw.deviation() : kCoarsest * widest;
  const GcGiWideArea area = gcgiWideLine(vertices.data(), static_cast<int>(vertices.size()), closed, deviation);
  std::vector<GcGePoint3d> placed;
  const GcGePoint2d* loop = area.points.data();
  for (const int corners : area.counts) {
    placed.clear();
    for (int i = 0; i < corners; ++i) placed.push_back(toWorld * GcGePoint3d(loop[i].x, loop[i].y, elevation));
    draw.geometry().polygon(corners, placed.data());
    loop += corners;
  }
}

}  // namespace

void draw(GcGiWorldDraw& draw, const Segment* segments, int count, bool closed, double elevation,
          const GcGeVector3d& normal) {
  GcGeMatrix3d toWorld;
  toWorld.setToPlaneToWorld(normal);
  bool anyWide = false;
  for (int i = 0; i < count; ++i) {
    if (segments[i].startWidth > 0 || segments[i].endWidth > 0) {
      anyWide = true;
    } else {
      drawThin(draw, segments[i], elevation, normal, toWorld);
    }
  }
  if (anyWide) drawWide(draw, segments, count, closed, elevation, toWorld);
}

}  // namespace gcbulge
