#include "db/text.h"

#include <iterator>

#include "db/database.h"
#include "db/textstyle.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/mirrored_text.h"
#include "host/db/entities/planar.h"
#include "host/db/entities/text_rows.h"
#include "host/gi/textline.h"
#include "host/rx/math/elementary.h"

GCDB_DEFINE_CLASS(GcDbText, "AcDbText")

// Files have the vertical mode behind a second marker of the same name.
const GcDbField GcDbText::kFields[] = {
    GC_TEXT_ROWS(GcDbText),
    marker("AcDbText"),
    field<&GcDbText::m_vertical>(73, "verticalMode", Is::Plain, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbText);

GcDbText::GcDbText(const GcGePoint3d& position, const GCHAR* text, GcDbObjectId style, double height,
                   double rotationRad)
    : m_position(position), m_height(height), m_rotationRad(rotationRad), m_text(text), m_styleId(style) {}

GcGePoint3d GcDbText::position() const { return gcplanar::toWorld(m_position, m_normal); }
GcGePoint3d GcDbText::alignmentPoint() const { return gcplanar::toWorld(m_alignment, m_normal); }

Gcad::ErrorStatus GcDbText::setPosition(const GcGePoint3d& position) {
  return assign(m_position, gcplanar::toOwn(position, m_normal));
}

Gcad::ErrorStatus GcDbText::setAlignmentPoint(const GcGePoint3d& point) {
  return assign(m_alignment, gcplanar::toOwn(point, m_normal));
}

Gcad::ErrorStatus GcDbText::setHorizontalMode(GcDb::TextHorzMode mode) {
  return mode > GcDb::kTextFit ? Gcad::eInvalidInput : assign(m_horizontal, static_cast<int8_t>(mode));
}

Gcad::ErrorStatus GcDbText::setVerticalMode(GcDb::TextVertMode mode) {
  return mode > GcDb::kTextTop ? Gcad::eInvalidInput : assign(m_vertical, static_cast<int8_t>(mode));
}

Gcad::ErrorStatus GcDbText::setTextString(const GCHAR* text) {
  if (text == nullptr) return Gcad::eInvalidInput;
  return assign(m_text, GcString(text));
}

Gcad::ErrorStatus GcDbText::setHeight(double height) {
  return height > 0 ? assign(m_height, height) : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbText::setTextStyle(GcDbObjectId id) {
  if (id.objectClass() != GcDbTextStyleTableRecord::desc()) return Gcad::eInvalidInput;
  return assign(m_styleId, id);
}

Gcad::ErrorStatus GcDbText::mirrorInX(bool mirrored) {
  return assign(m_mirror, static_cast<int16_t>(mirrored ? m_mirror | 2 : m_mirror & ~2));
}

Gcad::ErrorStatus GcDbText::mirrorInY(bool mirrored) {
  return assign(m_mirror, static_cast<int16_t>(mirrored ? m_mirror | 4 : m_mirror & ~4));
}

Gcad::ErrorStatus GcDbText::setNormal(const GcGeVector3d& normal) {
  if (normal.isZeroLength()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  const GcGePoint3d at = position();
  const GcGePoint3d aligned = alignmentPoint();
  m_normal = normal.normal();
  m_position = gcplanar::toOwn(at, m_normal);
  m_alignment = gcplanar::toOwn(aligned, m_normal);
  return Gcad::eOk;
}

void GcDbText::subAppended() {
  if (m_styleId.isNull()) m_styleId = database()->textstyle();
  if (m_height > 0) return;
  GcDbTextStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, m_styleId, GcDb::kForRead) != Gcad::eOk) return;
  m_height = style->textSize() > 0 ? style->textSize() : style->priorSize();
  ignore(style->close());
}

void GcDbText::textLook(GcGiTextStyle& look) const {
  GcDbTextStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, m_styleId, GcDb::kForRead) == Gcad::eOk) {
    style->look(look);
    ignore(style->close());
  }
  look.height = m_height;
  look.widthFactor = m_widthFactor;
  look.obliqueRad = m_obliqueRad;
  look.backward = isMirroredInX();
  look.upsideDown = isMirroredInY();
}

namespace {

// Where a line of text stands in its plane, and how large.
struct Placement {
  GcGePoint3d position;
  double rotationRad;
  double height;
  double widthFactor;
};

// What an alignment other than the default makes of it; `length` is the text's as it is.
Placement aligned(Placement at, const GcGePoint3d& alignment, int horizontal, int vertical, double length) {
  if (horizontal == GcDb::kTextAlign || horizontal == GcDb::kTextFit) {  // between two points
    const GcGeVector3d span = alignment - at.position;
    const double wanted = gc::hypot(span.x, span.y);
    if (wanted <= 0 || length <= 0) return at;
    at.rotationRad = gcplanar::inFullTurn(gc::atan2(span.y, span.x));
    (horizontal == GcDb::kTextAlign ? at.height : at.widthFactor) *= wanted / length;
    return at;
  }
  constexpr double kDescent = 1.0 / 3.0;  // of the height, below the base line
  const double right = horizontal == GcDb::kTextRight ? length : horizontal == GcDb::kTextLeft ? 0 : length / 2;
  double up = 0;
  if (vertical == GcDb::kTextTop) up = at.height;
  if (vertical == GcDb::kTextVertMid || horizontal == GcDb::kTextMid) up = at.height / 2;
  if (vertical == GcDb::kTextBottom) up = -at.height * kDescent;
  const double c = gc::cos(at.rotationRad);
  const double s = gc::sin(at.rotationRad);
  at.position = alignment - GcGeVector3d(right * c - up * s, right * s + up * c, 0);
  return at;
}

}  // namespace

Gcad::ErrorStatus GcDbText::adjustAlignment() {
  if (isDefaultAlignment()) return Gcad::eOk;
  assertWriteEnabled();
  GcGiTextStyle look;
  textLook(look);
  const Placement at = aligned({m_position, m_rotationRad, m_height, m_widthFactor}, m_alignment, m_horizontal,
                               m_vertical, gcgiTextLength(view(m_text), look));
  m_position = at.position;
  m_rotationRad = at.rotationRad;
  m_height = at.height;
  m_widthFactor = at.widthFactor;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbText::subTransformBy(const GcGeMatrix3d& transform) {
  if (!gcmirrored::keepsReading(*this, transform, m_normal)) return transformExactly(transform);
  mirrorReadably(transform);
  return Gcad::eOk;
}

// Point and alignment point keep their places relative to the text.
void GcDbText::mirrorReadably(const GcGeMatrix3d& transform) {
  GcGiTextStyle look;
  textLook(look);
  Placement at{m_position, m_rotationRad, m_height, m_widthFactor};
  const double natural = gcgiTextLength(view(m_text), look);
  if (!isDefaultAlignment()) at = aligned(at, m_alignment, m_horizontal, m_vertical, natural);
  look.height = at.height;
  look.widthFactor = at.widthFactor;
  const double length = isDefaultAlignment() ? natural : gcgiTextLength(view(m_text), look);
  const GcGiTextBox box = gcgiTextBox(look, length);
  const GcGeVector3d along = gcplanar::directionAt(at.rotationRad, m_normal), up = m_normal.crossProduct(along);
  const GcGePoint3d base = gcplanar::toWorld(at.position, m_normal);
  const gcmirrored::Image image =
      gcmirrored::imageOf(transform, base, along, up, {box.left, box.right, box.low, box.high});
  const double factor = transform.scale();
  const GcGeVector3d way = (alignmentPoint() - base) * factor;
  const GcGePoint3d alignment = image.base + image.along * way.dotProduct(along) + image.up * way.dotProduct(up);
  if (hasAlignmentPoint()) m_alignment = gcplanar::toOwn(alignment, m_normal);
  m_position = gcplanar::toOwn(image.base, m_normal);
  m_rotationRad = gcplanar::angleOf(image.along, m_normal);
  m_height *= factor;
  m_thickness *= factor;
}

// The letters' base vectors are transformed and read back: turn, height, width factor and slant follow.
Gcad::ErrorStatus GcDbText::transformExactly(const GcGeMatrix3d& transform) {
  const GcGeVector3d normal = gcplanar::normalOfImage(transform, m_normal);
  if (normal.isZeroLength()) return Gcad::eCannotScaleNonUniformly;
  const GcGeVector3d way = gcplanar::directionAt(m_rotationRad, m_normal);
  const GcGeVector3d along = transform * way, up = transform * m_normal.crossProduct(way);
  const GcGeVector3d slanted = up + along * gc::tan(m_obliqueRad);
  const double stretch = along.length();
  const GcGeVector3d unit = along / stretch;
  const double sideways = slanted.dotProduct(unit);
  const double rise = (slanted - unit * sideways).length();
  const bool turnsOnly = transform.isUniScaledOrtho();
  const GcGePoint3d at = transform * position();
  const bool hadAlignmentPoint = hasAlignmentPoint();
  const GcGePoint3d aligned = transform * alignmentPoint();
  m_rotationRad = gcplanar::angleOf(along, normal);
  m_height *= turnsOnly ? stretch : rise;
  m_thickness *= transform.scale();
  if (!turnsOnly) {
    m_widthFactor *= stretch / rise;
    m_obliqueRad = gc::atan2(sideways, rise);
  }
  m_normal = normal;
  m_position = gcplanar::toOwn(at, m_normal);
  if (hadAlignmentPoint) m_alignment = gcplanar::toOwn(aligned, m_normal);
  return Gcad::eOk;
}

// The insertion point files keep was computed with the letters of another program's font: aligned text is set anew
// with the letters that are drawn.
bool GcDbText::subWorldDraw(GcGiWorldDraw* draw) {
  if (m_text.isEmpty()) return true;
  GcGiTextStyle look;
  textLook(look);
  Placement at{m_position, m_rotationRad, m_height, m_widthFactor};
  if (!isDefaultAlignment()) {
    at = aligned(at, m_alignment, m_horizontal, m_vertical, gcgiTextLength(view(m_text), look));
    look.height = at.height;
    look.widthFactor = at.widthFactor;
  }
  draw->geometry().text(gcplanar::toWorld(at.position, m_normal), m_normal,
                        gcplanar::directionAt(at.rotationRad, m_normal), m_text.c_str(), look);
  return true;
}
