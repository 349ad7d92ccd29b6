// Straight and radial dimensions that have no block of their own: extension lines, dimension line, arrowheads and the
// measured value, placed as plainly as can be (text over the line's middle).
#include <algorithm>
#include <cmath>

#include "db/dimension.h"
#include "host/db/entities/arrowheads.h"
#include "host/db/entities/dimension_look.h"
#include "host/db/entities/planar.h"
#include "host/rx/math/elementary.h"

namespace {

using namespace gcdimlook;

// The line from point to point, as much shorter at either end as the arrowhead there covers.
void drawBetween(GcGiWorldDraw& draw, const GcGePoint3d& from, double atStart, const GcGePoint3d& to, double atEnd) {
  const double length = (to - from).length();
  if (length <= atStart + atEnd) return;
  const GcGeVector3d way = (to - from) * (1 / length);
  const GcGePoint3d line[2] = {from + way * atStart, to - way * atEnd};
  draw.geometry().polyline(2, line);
}

// A straight dimension between two feet on the dimension line. Extension lines stand on it at the oblique angle, or
// at a right one when that is 0 or would lay them along it.
void drawLinear(GcGiWorldDraw& draw, const GcDbDimension& dimension, const GcGePoint3d& first,
                const GcGePoint3d& second, const GcGePoint3d& onLine, const GcGeVector3d& along, double obliqueRad) {
  constexpr double kFlat = 1e-3;
  const Look look = lookOf(dimension);
  const double rise = gc::sin(obliqueRad);
  const double lean = obliqueRad != 0 && std::fabs(rise) > kFlat ? gc::cos(obliqueRad) / rise : 0;
  const GcGeVector3d up = dimension.normal().crossProduct(along);
  const auto footOf = [&](const GcGePoint3d& point) {
    const GcGeVector3d to = onLine - point;
    return onLine + along * (to.dotProduct(up) * lean - to.dotProduct(along));
  };
  const GcGePoint3d feet[2] = {footOf(first), footOf(second)};
  const GcGePoint3d origins[2] = {first, second};
  for (int i = 0; i < 2; ++i) drawExtensionLine(draw, look, origins[i], feet[i]);
  drawBetween(draw, feet[0], gcarrow::reach(look.first, look.arrow), feet[1], gcarrow::reach(look.second, look.arrow));
  gcarrow::draw(draw, look.first, feet[0], feet[0] - feet[1], look.arrow, dimension.normal());
  gcarrow::draw(draw, look.second, feet[1], feet[1] - feet[0], look.arrow, dimension.normal());
  const GcGePoint3d middle = feet[0] + (feet[1] - feet[0]) * 0.5;
  drawText(draw, dimension, look, shownText(dimension, look, lengthText(dimension.measured(), look)), middle, along);
}

// A line from one point to another with an arrow at its end.
void drawToChord(GcGiWorldDraw& draw, const GcDbDimension& dimension, const GcGePoint3d& from, const GcGePoint3d& chord,
                 GcView prefix, bool bothEnds) {
  const Look look = lookOf(dimension);
  const double atStart = bothEnds ? gcarrow::reach(look.first, look.arrow) : 0;
  drawBetween(draw, from, atStart, chord, gcarrow::reach(look.second, look.arrow));
  gcarrow::draw(draw, look.second, chord, chord - from, look.arrow, dimension.normal());
  if (bothEnds) gcarrow::draw(draw, look.first, from, from - chord, look.arrow, dimension.normal());
  const GcGePoint3d middle = from + (chord - from) * 0.5;
  drawText(draw, dimension, look, shownText(dimension, look, GcText(prefix) + lengthText(dimension.measured(), look)),
           middle, (chord - from).normal());
}

}  // namespace

double GcDbRotatedDimension::measured() const {
  return std::fabs((m_second - m_first).dotProduct(gcplanar::directionAt(m_rotationRad, m_normal)));
}

double GcDbAlignedDimension::measured() const { return m_first.distanceTo(m_second); }

void GcDbRotatedDimension::drawPlainly(GcGiWorldDraw& draw) const {
  drawLinear(draw, *this, m_first, m_second, m_definition, gcplanar::directionAt(m_rotationRad, m_normal),
             m_obliqueRad);
}

void GcDbAlignedDimension::drawPlainly(GcGiWorldDraw& draw) const {
  if (m_first == m_second) return;
  drawLinear(draw, *this, m_first, m_second, m_definition, (m_second - m_first).normal(), m_obliqueRad);
}

void GcDbDiametricDimension::drawPlainly(GcGiWorldDraw& draw) const {
  if (!(m_definition == m_chord)) drawToChord(draw, *this, m_definition, m_chord, GC_T("%%c"), true);
}

void GcDbRadialDimension::drawPlainly(GcGiWorldDraw& draw) const {
  if (!(m_definition == m_chord)) drawToChord(draw, *this, m_definition, m_chord, GC_T("R"), false);
}

// A line from the arc towards its center and another, parallel to it, from where the center is shown; between the two
// the line through the jog point, which meets both at the jog angle. Where the two are one line there is no jog.
void GcDbRadialDimensionLarge::drawPlainly(GcGiWorldDraw& draw) const {
  if (m_definition == m_chord) return;
  constexpr double kFlat = 1e-3;
  const Look look = lookOf(*this);
  const GcGeVector3d out = (m_chord - m_definition).normal();
  const GcGeVector3d aside = m_normal.crossProduct(out);
  const double width = (m_chord - m_overrideCenter).dotProduct(aside);
  const double rise = std::fabs(gc::sin(m_jogAngleRad));
  const double back = rise > kFlat ? std::fabs(width * gc::cos(m_jogAngleRad)) / rise : 0;
  // Along `out` from the chord point; the jog's two corners share the way there by their distance from it.
  const double jog = (m_jog - m_chord).dotProduct(out);
  const double share = width != 0 ? std::clamp((m_chord - m_jog).dotProduct(aside) / width, 0.0, 1.0) : 0.5;
  const GcGePoint3d nearArc = m_chord + out * (jog - back * share);
  const GcGePoint3d nearCenter = m_chord + out * (jog + back * (1 - share)) - aside * width;
  const double atArrow = gcarrow::reach(look.second, look.arrow);
  if (std::fabs(width) > 1e-9 * (m_chord - m_definition).length()) {
    const GcGePoint3d line[3] = {m_overrideCenter, nearCenter, nearArc};
    draw.geometry().polyline(3, line);
    drawBetween(draw, nearArc, 0, m_chord, atArrow);
  } else {
    drawBetween(draw, m_overrideCenter, 0, m_chord, atArrow);
  }
  gcarrow::draw(draw, look.second, m_chord, out, look.arrow, m_normal);
  const GcString text = shownText(*this, look, GcText(GC_T("R")) + lengthText(measured(), look));
  drawText(draw, *this, look, text, nearArc + (m_chord - nearArc) * 0.5, out);
}
