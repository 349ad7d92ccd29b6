// Dimensions along an arc, of angles and of lengths, and ordinates: what they measure and how they are drawn without a
// block of their own.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "db/dimension.h"
#include "host/db/entities/arrowheads.h"
#include "host/db/entities/dimension_look.h"
#include "host/db/entities/planar.h"
#include "host/rx/math/elementary.h"

namespace {

using namespace gcdimlook;

constexpr double kHalfTurn = std::numbers::pi;

// An arc about a center, counter-clockwise about the normal, and what its extension lines begin at.
struct DimArc {
  GcGePoint3d center;
  GcGeVector3d normal;
  GcGeVector3d start;  // from the center to the beginning
  double sweepRad = 0;
  bool isTurned = false;  // it begins at the second of what is measured

  [[nodiscard]] GcGePoint3d at(double share) const {
    const double turn = sweepRad * share;
    return center + start * gc::cos(turn) + normal.crossProduct(start) * gc::sin(turn);
  }
};

double turnFrom(const GcGeVector3d& from, const GcGeVector3d& to, const GcGeVector3d& normal) {
  return gcplanar::inFullTurn(gcplanar::angleOf(to, normal) - gcplanar::angleOf(from, normal));
}

GcGeVector3d inPlane(const GcGeVector3d& v, const GcGeVector3d& normal) { return v - normal * v.dotProduct(normal); }

// The arc between two directions that passes the place; false when any of them is none.
bool arcBetween(const GcGePoint3d& center, const GcGeVector3d& first, const GcGeVector3d& second,
                const GcGePoint3d& place, const GcGeVector3d& normal, DimArc& arc) {
  const GcGeVector3d a = inPlane(first, normal), b = inPlane(second, normal), p = inPlane(place - center, normal);
  if (a.isZeroLength() || b.isZeroLength() || p.isZeroLength()) return false;
  const double whole = turnFrom(a, b, normal);
  arc.isTurned = turnFrom(a, p, normal) > whole;
  arc.center = center;
  arc.normal = normal;
  arc.start = (arc.isTurned ? b : a).normal() * p.length();
  arc.sweepRad = arc.isTurned ? gcplanar::kTwoPi - whole : whole;
  return arc.sweepRad > 0;
}

// True when text along the arc's middle stands on the side of the center.
bool isInside(const DimArc& arc, const GcGeVector3d& along) { return !readsBackward(along, arc.normal); }

// The arc, arrowheads along its ends, the text over its middle.
void drawArc(GcGiWorldDraw& draw, const GcDbDimension& dimension, const Look& look, const DimArc& arc,
             const GcText& value) {
  const double radius = arc.start.length();
  const GcDbObjectId heads[2] = {arc.isTurned ? look.second : look.first, arc.isTurned ? look.first : look.second};
  const double covered[2] = {gcarrow::reach(heads[0], look.arrow) / radius,
                             gcarrow::reach(heads[1], look.arrow) / radius};
  if (covered[0] + covered[1] < arc.sweepRad)
    draw.geometry().circularArc(arc.center, radius, arc.normal, arc.at(covered[0] / arc.sweepRad) - arc.center,
                                arc.sweepRad - covered[0] - covered[1]);
  // An arrowhead lies along the chord to where its length ends on the arc.
  const double back = std::min(look.arrow / (radius * arc.sweepRad), 0.5);
  gcarrow::draw(draw, heads[0], arc.at(0), arc.at(0) - arc.at(back), look.arrow, arc.normal);
  gcarrow::draw(draw, heads[1], arc.at(1), arc.at(1) - arc.at(1 - back), look.arrow, arc.normal);
  const GcString text = shownText(dimension, look, value);
  const GcGeVector3d out = (arc.at(0.5) - arc.center) * (1 / radius);
  const GcGeVector3d along = arc.normal.crossProduct(out);
  // Inside the arc the ends of the text come nearest to it.
  const double half = std::min(textLength(look, text) / 2, radius);
  const double bend = isInside(arc, along) ? radius - std::sqrt(radius * radius - half * half) : 0;
  drawText(draw, dimension, look, text, arc.at(0.5) - out * bend, along);
}

// A stretch of a line through the vertex, and the direction in which the angle is seen.
struct Leg {
  GcGePoint3d from, to;
  GcGeVector3d way;  // unit
};

// The nearer end of the leg when the foot lies off it.
bool originFor(const Leg& leg, const GcGePoint3d& foot, GcGePoint3d& origin) {
  const GcGeVector3d along = leg.to - leg.from;
  const double t = (foot - leg.from).dotProduct(along) / along.lengthSqrd();
  if (t >= 0 && t <= 1) return false;
  origin = t < 0 ? leg.from : leg.to;
  return true;
}

// Where two lines of the plane meet; false for parallel ones.
bool vertexOf(const Leg& a, const Leg& b, const GcGeVector3d& normal, GcGePoint3d& vertex) {
  const GcGeVector3d u = inPlane(a.to - a.from, normal), v = inPlane(b.to - b.from, normal);
  const double cross = u.crossProduct(v).dotProduct(normal);
  if (std::fabs(cross) <= 1e-12 * u.length() * v.length()) return false;
  const double s = (b.from - a.from).crossProduct(v).dotProduct(normal) / cross;
  vertex = a.from + u * s;
  return true;
}

// The arc in the quarter between two lines that the place lies in; the legs look along the quarter's sides.
bool arcOfLines(Leg& a, Leg& b, const GcGePoint3d& place, const GcGeVector3d& normal, DimArc& arc) {
  GcGePoint3d vertex;
  if (a.from == a.to || b.from == b.to || !vertexOf(a, b, normal, vertex)) return false;
  a.way = inPlane(a.to - a.from, normal).normal();
  b.way = inPlane(b.to - b.from, normal).normal();
  const GcGeVector3d seen = inPlane(place - vertex, normal);
  const double cross = a.way.crossProduct(b.way).dotProduct(normal);
  if (seen.crossProduct(b.way).dotProduct(normal) / cross < 0) a.way = -a.way;
  if (a.way.crossProduct(seen).dotProduct(normal) / a.way.crossProduct(b.way).dotProduct(normal) < 0) b.way = -b.way;
  if (!arcBetween(vertex, a.way, b.way, place, normal, arc)) return false;
  return arc.sweepRad <= kHalfTurn || arcBetween(vertex, b.way, a.way, place, normal, arc);
}

GcGePoint3d footOf(const DimArc& arc, const GcGeVector3d& way) { return arc.center + way * arc.start.length(); }

}  // namespace

double GcDb2LineAngularDimension::measured() const {
  Leg a{m_firstStart, m_firstEnd, {}}, b{m_secondStart, m_definition, {}};
  DimArc arc;
  return arcOfLines(a, b, gcplanar::toWorld(m_arcPoint, m_normal), m_normal, arc) ? arc.sweepRad : 0;
}

void GcDb2LineAngularDimension::drawPlainly(GcGiWorldDraw& draw) const {
  Leg a{m_firstStart, m_firstEnd, {}}, b{m_secondStart, m_definition, {}};
  DimArc arc;
  if (!arcOfLines(a, b, gcplanar::toWorld(m_arcPoint, m_normal), m_normal, arc)) return;
  const Look look = lookOf(*this);
  for (const Leg& leg : {a, b}) {
    const GcGePoint3d foot = footOf(arc, leg.way);
    GcGePoint3d origin;
    if (originFor(leg, foot, origin)) drawExtensionLine(draw, look, origin, foot);
  }
  drawArc(draw, *this, look, arc, angleText(arc.sweepRad, look));
}

double GcDb3PointAngularDimension::measured() const {
  DimArc arc;
  return arcBetween(m_vertex, m_first - m_vertex, m_second - m_vertex, m_definition, m_normal, arc) ? arc.sweepRad : 0;
}

void GcDb3PointAngularDimension::drawPlainly(GcGiWorldDraw& draw) const {
  DimArc arc;
  if (!arcBetween(m_vertex, m_first - m_vertex, m_second - m_vertex, m_definition, m_normal, arc)) return;
  const Look look = lookOf(*this);
  for (const GcGePoint3d& origin : {m_first, m_second})
    drawExtensionLine(draw, look, origin, footOf(arc, inPlane(origin - m_vertex, m_normal).normal()));
  drawArc(draw, *this, look, arc, angleText(arc.sweepRad, look));
}

// The length lies on the measured arc, whose radius the first point tells; the dimension's own arc is beside it.
double GcDbArcDimension::measured() const {
  DimArc arc;
  const GcGeVector3d radius = inPlane(m_first - m_center, m_normal);
  return arcBetween(m_center, radius, m_second - m_center, m_definition, m_normal, arc) ? radius.length() * arc.sweepRad
                                                                                        : 0;
}

void GcDbArcDimension::drawPlainly(GcGiWorldDraw& draw) const {
  constexpr int kNoSymbol = 2;
  DimArc arc;
  if (!arcBetween(m_center, m_first - m_center, m_second - m_center, m_definition, m_normal, arc)) return;
  const Look look = lookOf(*this);
  for (const GcGePoint3d& origin : {m_first, m_second})
    drawExtensionLine(draw, look, origin, footOf(arc, inPlane(origin - m_center, m_normal).normal()));
  drawArc(draw, *this, look, arc, lengthText(measured(), look));
  if (look.arcSymbol != kNoSymbol) {
    // A small arc over the text stands for the length along an arc.
    const GcGeVector3d out = (arc.at(0.5) - arc.center).normal();
    const GcGeVector3d up = gcplanar::toOwn(out, m_normal).y < 0 ? -out : out;
    const GcGePoint3d low = arc.at(0.5) + up * (look.gap + look.text * 1.25);
    const double radius = look.text / 2;
    const GcGeVector3d right = up.crossProduct(m_normal) * radius;
    draw.geometry().circularArc(low, radius, m_normal, right, kHalfTurn);
  }
  if (m_hasLeader) {
    const GcGePoint3d leader[2] = {m_leader1, m_leader2};
    draw.geometry().polyline(2, leader);
    gcarrow::draw(draw, look.second, m_leader2, m_leader2 - m_leader1, look.arrow, m_normal);
  }
}

// The X axis of the user system the ordinate was made in.
GcGeVector3d GcDbOrdinateDimension::xAxis() const { return gcplanar::directionAt(-m_horizontalRad, m_normal); }

double GcDbOrdinateDimension::measured() const {
  const GcGeVector3d axis = isUsingXAxis() ? xAxis() : m_normal.crossProduct(xAxis());
  return std::fabs((m_feature - m_definition).dotProduct(axis));
}

// The leader runs across the measured axis; with its end aside it has a bend two arrowheads long at either side.
void GcDbOrdinateDimension::drawPlainly(GcGiWorldDraw& draw) const {
  const GcGeVector3d way = m_leaderEnd - m_feature;
  if (way.isZeroLength()) return;
  const Look look = lookOf(*this);
  const GcGeVector3d across = isUsingXAxis() ? m_normal.crossProduct(xAxis()) : xAxis();
  const double length = way.dotProduct(across);
  const GcGeVector3d away = length < 0 ? -across : across;
  const GcGeVector3d aside = way - across * length;
  const double stretch = std::min(2 * look.arrow, std::fabs(length) / 3);
  const GcGePoint3d from = m_feature + away * std::min(look.offset, std::fabs(length) / 2);
  const bool isStraight = aside.length() <= 1e-9 * way.length();
  const GcGePoint3d bend = m_leaderEnd - away * stretch;
  const GcGePoint3d line[4] = {from, bend - away * stretch - aside, bend, m_leaderEnd};
  const GcGePoint3d straight[2] = {from, m_leaderEnd};
  isStraight ? draw.geometry().polyline(2, straight) : draw.geometry().polyline(4, line);
  drawTextBehind(draw, *this, look, shownText(*this, look, lengthText(measured(), look)), m_leaderEnd, away);
}

// The axes turn with the dimension.
Gcad::ErrorStatus GcDbOrdinateDimension::subTransformBy(const GcGeMatrix3d& transform) {
  const GcGeVector3d axis = transform * xAxis();
  const double before = m_horizontalRad;
  const GcGeVector3d normal = gcplanar::normalOfImage(transform, m_normal);
  const double turned = -gcplanar::angleOf(axis, normal);
  if (std::fabs(std::remainder(turned - before, gcplanar::kTwoPi)) > 1e-14)
    m_horizontalRad = std::remainder(turned, gcplanar::kTwoPi);
  const Gcad::ErrorStatus status = GcDbDimension::subTransformBy(transform);
  if (status != Gcad::eOk) m_horizontalRad = before;
  return status;
}
