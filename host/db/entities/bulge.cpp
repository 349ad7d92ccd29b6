#include "host/db/entities/bulge.h"

#include <algorithm>
#include <cmath>

#include "gi/drawable.h"
#include "host/db/entities/planar.h"

namespace gcbulge {

Arc arcOf(const GcGePoint2d& start, const GcGePoint2d& end, double bulge) {
  Arc arc;
  const GcGeVector2d chord = end - start;
  const double toCenter = (1 / bulge - bulge) / 4;
  arc.center = start + chord * 0.5 + chord.perpVector() * toCenter;
  arc.radius = arc.center.distanceTo(start);
  arc.startRad = std::atan2(start.y - arc.center.y, start.x - arc.center.x);
  arc.sweepRad = 4 * std::atan(bulge);
  return arc;
}

namespace {

// Corners of a band along a straight segment, filled.
void drawStraightBand(GcGiWorldDraw& draw, const Segment& s, double elevation, const GcGeMatrix3d& toWorld) {
  const GcGeVector2d way = s.end - s.start;
  const double length = way.length();
  if (length == 0) return;
  const GcGeVector2d left = way.perpVector() * (1 / length);
  const GcGePoint2d corners[4] = {s.start + left * (s.startWidth / 2), s.end + left * (s.endWidth / 2),
                                  s.end - left * (s.endWidth / 2), s.start - left * (s.startWidth / 2)};
  GcGePoint3d placed[4];
  for (int i = 0; i < 4; ++i) placed[i] = toWorld * GcGePoint3d(corners[i].x, corners[i].y, elevation);
  draw.geometry().polygon(4, placed);
}

// The band along an arc in pieces of at most a sixtieth of a turn.
void drawArcBand(GcGiWorldDraw& draw, const Segment& s, const Arc& arc, double elevation, const GcGeMatrix3d& toWorld) {
  constexpr double kPiece = gcplanar::kTwoPi / 60;
  const int pieces = std::max(1, static_cast<int>(std::ceil(std::fabs(arc.sweepRad) / kPiece)));
  const auto edge = [&](double share, double side) {
    const double half = (s.startWidth + (s.endWidth - s.startWidth) * share) / 2;
    const double angle = arc.startRad + arc.sweepRad * share;
    const double reach = arc.radius + side * half;
    return toWorld *
           GcGePoint3d(arc.center.x + reach * std::cos(angle), arc.center.y + reach * std::sin(angle), elevation);
  };
  for (int i = 0; i < pieces; ++i) {
    const double from = static_cast<double>(i) / pieces;
    const double to = static_cast<double>(i + 1) / pieces;
    const GcGePoint3d placed[4] = {edge(from, 1), edge(to, 1), edge(to, -1), edge(from, -1)};
    draw.geometry().polygon(4, placed);
  }
}

}  // namespace

void draw(GcGiWorldDraw& draw, const Segment& s, double elevation, const GcGeVector3d& normal) {
  GcGeMatrix3d toWorld;
  toWorld.setToPlaneToWorld(normal);
  const bool wide = s.startWidth > 0 || s.endWidth > 0;
  if (s.bulge == 0 || s.start == s.end) {
    if (wide) {
      drawStraightBand(draw, s, elevation, toWorld);
      return;
    }
    const GcGePoint3d ends[2] = {toWorld * GcGePoint3d(s.start.x, s.start.y, elevation),
                                 toWorld * GcGePoint3d(s.end.x, s.end.y, elevation)};
    draw.geometry().polyline(2, ends);
    return;
  }
  const Arc arc = arcOf(s.start, s.end, s.bulge);
  if (wide) {
    drawArcBand(draw, s, arc, elevation, toWorld);
    return;
  }
  const GcGePoint2d& first = arc.sweepRad > 0 ? s.start : s.end;  // drawn counter-clockwise
  const GcGeVector3d startVector = toWorld * GcGeVector3d(first.x - arc.center.x, first.y - arc.center.y, 0);
  draw.geometry().circularArc(toWorld * GcGePoint3d(arc.center.x, arc.center.y, elevation), arc.radius, normal,
                              startVector, std::fabs(arc.sweepRad));
}

}  // namespace gcbulge
