// Dimensions that have no block of their own: extension lines, dimension line, arrowheads and the measured value by
// the style's settings, placed as plainly as can be (text over the line's middle).
#include <charconv>

#include "db/database.h"
#include "db/dimension.h"
#include "host/db/entities/arrowheads.h"
#include "host/db/entities/dimoverride.h"
#include "host/db/entities/planar.h"
#include "host/gi/textline.h"

namespace {

// Settings of the style and the dimension's own, scaled.
struct Look {
  double arrow = 2.5, text = 2.5, gap = 0.625, beyond = 1.25, offset = 0.625;
  double factor = 1;
  int decimals = 2;
  int zeros = 0;
  GCHAR separator = '.';
  GcString post;
  GcDbObjectId textStyle;
  GcDbObjectId first, second;
};

double scaleOf(const GcDbDimension& dimension, const GcDbDimStyleTableRecord& style) {
  const double scale = gcdimoverride::real(dimension, 40, style.dimscale());
  return scale > 0 ? scale : 1;
}

Look lookOf(const GcDbDimension& dimension) {
  Look look;
  GcDbDimStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, dimension.dimensionStyle(), GcDb::kForRead) != Gcad::eOk) return look;
  const double scale = scaleOf(dimension, *style);
  const auto length = [&](int code, double ofStyle) { return gcdimoverride::real(dimension, code, ofStyle) * scale; };
  look.arrow = length(41, style->dimasz());
  look.offset = length(42, style->dimexo());
  look.beyond = length(44, style->dimexe());
  look.text = length(140, style->dimtxt());
  look.gap = length(147, style->dimgap());
  look.factor = gcdimoverride::real(dimension, 144, style->dimlfac());
  look.decimals = gcdimoverride::integer(dimension, 271, style->dimdec());
  look.zeros = gcdimoverride::integer(dimension, 78, style->dimzin());
  const int separator = gcdimoverride::integer(dimension, 278, style->dimdsep());
  look.separator = static_cast<GCHAR>(separator > 0 ? separator : '.');
  look.post = style->dimpost();
  look.textStyle = style->dimtxsty();
  const bool separate = gcdimoverride::integer(dimension, 173, style->dimsah()) != 0;
  look.first = separate ? style->dimblk1() : style->dimblk();
  look.second = separate ? style->dimblk2() : style->dimblk();
  look.first = gcdimoverride::arrow(dimension, gcdimoverride::kArrow, look.first);
  look.second = gcdimoverride::arrow(dimension, gcdimoverride::kArrow, look.second);
  look.first = gcdimoverride::arrow(dimension, gcdimoverride::kFirstArrow, look.first);
  look.second = gcdimoverride::arrow(dimension, gcdimoverride::kSecondArrow, look.second);
  ignore(style->close());
  return look;
}

// The measured value as text: decimals, trailing zeros, separator.
GcString valueText(double value, const Look& look) {
  char digits[64];
  const int decimals = look.decimals < 0 ? 0 : look.decimals > 12 ? 12 : look.decimals;
  const auto end =
      std::to_chars(digits, digits + sizeof digits, std::fabs(look.factor) * value, std::chars_format::fixed, decimals);
  GcText text(digits, end.ptr);
  const bool dropsTrailing = (look.zeros & 8) != 0;
  if (dropsTrailing && text.find('.') != GcText::npos) {
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
  }
  for (GCHAR& unit : text)
    if (unit == '.') unit = look.separator;
  return toGcString(text);
}

GcString shownText(const GcDbDimension& dimension, const Look& look, GcView prefix) {
  GcText value = GcText(prefix) + GcText(view(valueText(dimension.measured(), look)));
  const GcView given = view(dimension.dimensionText());
  if (given.empty()) return toGcString(value);
  const size_t at = given.find(GC_T("<>"));
  if (at == GcView::npos) return toGcString(given);
  return toGcString(GcText(given.substr(0, at)) + value + GcText(given.substr(at + 2)));
}

void drawText(GcGiWorldDraw& draw, const GcDbDimension& dimension, const Look& look, const GcString& text,
              const GcGePoint3d& middle, GcGeVector3d along) {
  GcGiTextStyle style;
  GcDbTextStyleTableRecord* record = nullptr;
  if (gcdbOpenObject(record, look.textStyle, GcDb::kForRead) == Gcad::eOk) {
    record->look(style);
    ignore(record->close());
  }
  style.height = look.text;
  const GcGeVector3d normal = dimension.normal();
  const GcGeVector3d own = gcplanar::toOwn(along, normal);
  const bool readsBackward = own.x < -1e-9 || (std::fabs(own.x) <= 1e-9 && own.y < 0);
  if (readsBackward) along = -along;
  const GcGeVector3d up = normal.crossProduct(along);
  const double length = gcgiTextLength(view(text), style);
  draw.geometry().text(middle - along * (length / 2) + up * look.gap, normal, along, text.c_str(), style);
}

// A straight dimension between two feet on the dimension line.
void drawLinear(GcGiWorldDraw& draw, const GcDbDimension& dimension, const GcGePoint3d& first,
                const GcGePoint3d& second, const GcGePoint3d& onLine, const GcGeVector3d& along) {
  const Look look = lookOf(dimension);
  const auto footOf = [&](const GcGePoint3d& point) { return onLine + along * (point - onLine).dotProduct(along); };
  const GcGePoint3d feet[2] = {footOf(first), footOf(second)};
  const GcGePoint3d origins[2] = {first, second};
  for (int i = 0; i < 2; ++i) {
    const GcGeVector3d way = feet[i] - origins[i];
    if (way.length() <= look.offset) continue;
    const GcGeVector3d unit = way.normal();
    const GcGePoint3d line[2] = {origins[i] + unit * look.offset, feet[i] + unit * look.beyond};
    draw.geometry().polyline(2, line);
  }
  draw.geometry().polyline(2, feet);
  gcarrow::draw(draw, look.first, feet[0], feet[0] - feet[1], look.arrow, dimension.normal());
  gcarrow::draw(draw, look.second, feet[1], feet[1] - feet[0], look.arrow, dimension.normal());
  const GcGePoint3d middle = feet[0] + (feet[1] - feet[0]) * 0.5;
  drawText(draw, dimension, look, shownText(dimension, look, {}), middle, along);
}

// A line from one point to another with an arrow at its end.
void drawToChord(GcGiWorldDraw& draw, const GcDbDimension& dimension, const GcGePoint3d& from, const GcGePoint3d& chord,
                 GcView prefix, bool bothEnds) {
  const Look look = lookOf(dimension);
  const GcGePoint3d line[2] = {from, chord};
  draw.geometry().polyline(2, line);
  gcarrow::draw(draw, look.second, chord, chord - from, look.arrow, dimension.normal());
  if (bothEnds) gcarrow::draw(draw, look.first, from, from - chord, look.arrow, dimension.normal());
  const GcGePoint3d middle = from + (chord - from) * 0.5;
  drawText(draw, dimension, look, shownText(dimension, look, prefix), middle, (chord - from).normal());
}

}  // namespace

double GcDbRotatedDimension::measured() const {
  return std::fabs((m_second - m_first).dotProduct(gcplanar::directionAt(m_rotationRad, m_normal)));
}

double GcDbAlignedDimension::measured() const { return m_first.distanceTo(m_second); }

void GcDbRotatedDimension::drawPlainly(GcGiWorldDraw& draw) const {
  drawLinear(draw, *this, m_first, m_second, m_definition, gcplanar::directionAt(m_rotationRad, m_normal));
}

void GcDbAlignedDimension::drawPlainly(GcGiWorldDraw& draw) const {
  if (m_first == m_second) return;
  drawLinear(draw, *this, m_first, m_second, m_definition, (m_second - m_first).normal());
}

void GcDbDiametricDimension::drawPlainly(GcGiWorldDraw& draw) const {
  if (!(m_definition == m_chord)) drawToChord(draw, *this, m_definition, m_chord, GC_T("%%c"), true);
}

void GcDbRadialDimension::drawPlainly(GcGiWorldDraw& draw) const {
  if (!(m_definition == m_chord)) drawToChord(draw, *this, m_definition, m_chord, GC_T("R"), false);
}
