#include "db/dimension.h"

#include <iterator>

#include "db/blockreference.h"
#include "db/database.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/dimoverride.h"
#include "host/db/entities/mirrored_text.h"
#include "host/db/entities/planar.h"

GCDB_DEFINE_CLASS(GcDbDimension, "AcDbDimension")
GCDB_DEFINE_CLASS(GcDbRotatedDimension, "AcDbRotatedDimension")
GCDB_DEFINE_CLASS(GcDbAlignedDimension, "AcDbAlignedDimension")
GCDB_DEFINE_CLASS(GcDb2LineAngularDimension, "AcDb2LineAngularDimension")
GCDB_DEFINE_CLASS(GcDb3PointAngularDimension, "AcDb3PointAngularDimension")
GCDB_DEFINE_CLASS(GcDbDiametricDimension, "AcDbDiametricDimension")
GCDB_DEFINE_CLASS(GcDbRadialDimension, "AcDbRadialDimension")
GCDB_DEFINE_CLASS(GcDbOrdinateDimension, "AcDbOrdinateDimension")
GCDB_DEFINE_CLASS(GcDbArcDimension, "AcDbArcDimension")
GCDB_DEFINE_CLASS(GcDbRadialDimensionLarge, "AcDbRadialDimensionLarge")

const GcDbField GcDbDimension::kFields[] = {
    marker("AcDbDimension"),
    field<&GcDbDimension::m_version>(280, "version", Is::Plain).from(GcDb::kDHL_AC1024),
    field<&GcDbDimension::m_blockId>(2, "block", Is::BlockName, Write::UnlessDefault),
    field<&GcDbDimension::m_definition>(10, "definitionPoint", Is::WcsPoint),
    field<&GcDbDimension::m_textMiddle>(11, "textMiddle", Is::OcsPoint),
    field<&GcDbDimension::m_cloneOffset>(12, "cloneOffset", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbDimension::m_flags>(70, "flags", Is::Plain),
    field<&GcDbDimension::m_text>(1, "text", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbDimension::m_attachment>(71, "attachment", Is::Plain).orElse(5).from(GcDb::kDHL_AC1015),
    field<&GcDbDimension::m_lineSpacingStyle>(72, "lineSpacingStyle", Is::Plain, Write::FilesUnlessDefault)
        .orElse(1)
        .from(GcDb::kDHL_AC1015),
    field<&GcDbDimension::m_lineSpacing>(41, "lineSpacing", Is::Plain, Write::FilesUnlessDefault)
        .orElse(1)
        .from(GcDb::kDHL_AC1015),
    field<&GcDbDimension::m_measurement>(42, "measurement", Is::Plain, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1015),
    field<&GcDbDimension::m_unused>(73, "unused", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbDimension::m_flipArrow1>(74, "flipArrow1", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbDimension::m_flipArrow2>(75, "flipArrow2", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbDimension::m_textRotationRad>(53, "textRotation", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbDimension::m_horizontalRad>(51, "horizontalDirection", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbDimension::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
    field<&GcDbDimension::m_styleId>(3, "style", Is::DimStyleName),
    field<&GcDbDimension::m_recordFlags>(-70, "recordFlags", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbDimension);

const GcDbField GcDbRotatedDimension::kFields[] = {
    marker("AcDbAlignedDimension"),
    field<&GcDbRotatedDimension::m_first>(13, "firstPoint", Is::WcsPoint),
    field<&GcDbRotatedDimension::m_second>(14, "secondPoint", Is::WcsPoint),
    field<&GcDbRotatedDimension::m_rotationRad>(50, "rotation", Is::Angle, Write::FilesUnlessDefault),
    field<&GcDbRotatedDimension::m_obliqueRad>(52, "oblique", Is::Plain, Write::FilesUnlessDefault),
    marker("AcDbRotatedDimension"),
};
GCDB_FIELD_COUNT(GcDbRotatedDimension);

const GcDbField GcDbAlignedDimension::kFields[] = {
    marker("AcDbAlignedDimension"),
    field<&GcDbAlignedDimension::m_first>(13, "firstPoint", Is::WcsPoint),
    field<&GcDbAlignedDimension::m_second>(14, "secondPoint", Is::WcsPoint),
    field<&GcDbAlignedDimension::m_obliqueRad>(52, "oblique", Is::Plain, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbAlignedDimension);

const GcDbField GcDb2LineAngularDimension::kFields[] = {
    marker("AcDb2LineAngularDimension"),
    field<&GcDb2LineAngularDimension::m_firstStart>(13, "firstStart", Is::WcsPoint),
    field<&GcDb2LineAngularDimension::m_firstEnd>(14, "firstEnd", Is::WcsPoint),
    field<&GcDb2LineAngularDimension::m_secondStart>(15, "secondStart", Is::WcsPoint),
    field<&GcDb2LineAngularDimension::m_arcPoint>(16, "arcPoint", Is::OcsPoint),
};
GCDB_FIELD_COUNT(GcDb2LineAngularDimension);

const GcDbField GcDb3PointAngularDimension::kFields[] = {
    marker("AcDb3PointAngularDimension"),
    field<&GcDb3PointAngularDimension::m_first>(13, "firstPoint", Is::WcsPoint),
    field<&GcDb3PointAngularDimension::m_second>(14, "secondPoint", Is::WcsPoint),
    field<&GcDb3PointAngularDimension::m_vertex>(15, "vertex", Is::WcsPoint),
    field<&GcDb3PointAngularDimension::m_arcPoint>(16, "arcPoint", Is::OcsPoint, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDb3PointAngularDimension);

const GcDbField GcDbDiametricDimension::kFields[] = {
    marker("AcDbDiametricDimension"),
    field<&GcDbDiametricDimension::m_chord>(15, "chordPoint", Is::WcsPoint),
    field<&GcDbDiametricDimension::m_leaderLength>(40, "leaderLength", Is::Length),
};
GCDB_FIELD_COUNT(GcDbDiametricDimension);

const GcDbField GcDbRadialDimension::kFields[] = {
    marker("AcDbRadialDimension"),
    field<&GcDbRadialDimension::m_chord>(15, "chordPoint", Is::WcsPoint),
    field<&GcDbRadialDimension::m_leaderLength>(40, "leaderLength", Is::Length),
};
GCDB_FIELD_COUNT(GcDbRadialDimension);

const GcDbField GcDbOrdinateDimension::kFields[] = {
    marker("AcDbOrdinateDimension"),
    field<&GcDbOrdinateDimension::m_feature>(13, "featurePoint", Is::WcsPoint),
    field<&GcDbOrdinateDimension::m_leaderEnd>(14, "leaderEnd", Is::WcsPoint),
};
GCDB_FIELD_COUNT(GcDbOrdinateDimension);

const GcDbField GcDbArcDimension::kFields[] = {
    marker("AcDbArcDimension"),
    field<&GcDbArcDimension::m_first>(13, "firstPoint", Is::WcsPoint),
    field<&GcDbArcDimension::m_second>(14, "secondPoint", Is::WcsPoint),
    field<&GcDbArcDimension::m_center>(15, "center", Is::WcsPoint),
    field<&GcDbArcDimension::m_isPartial>(70, "isPartial", Is::Plain),
    field<&GcDbArcDimension::m_startParam>(40, "startParam", Is::Plain),
    field<&GcDbArcDimension::m_endParam>(41, "endParam", Is::Plain),
    field<&GcDbArcDimension::m_hasLeader>(71, "hasLeader", Is::Plain),
    field<&GcDbArcDimension::m_leader1>(16, "leaderPoint1", Is::WcsPoint),
    field<&GcDbArcDimension::m_leader2>(17, "leaderPoint2", Is::WcsPoint),
};
GCDB_FIELD_COUNT(GcDbArcDimension);

const GcDbField GcDbRadialDimensionLarge::kFields[] = {
    marker("AcDbRadialDimensionLarge"),
    field<&GcDbRadialDimensionLarge::m_jog>(13, "jogPoint", Is::WcsPoint),
    field<&GcDbRadialDimensionLarge::m_overrideCenter>(14, "overrideCenter", Is::WcsPoint),
    field<&GcDbRadialDimensionLarge::m_chord>(15, "chordPoint", Is::WcsPoint),
    field<&GcDbRadialDimensionLarge::m_jogAngleRad>(40, "jogAngle", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbRadialDimensionLarge);

GcDbRotatedDimension::GcDbRotatedDimension(double rotationRad, const GcGePoint3d& xLine1, const GcGePoint3d& xLine2,
                                           const GcGePoint3d& dimLinePoint, const GCHAR* text, GcDbObjectId style)
    : GcDbDimension(0), m_first(xLine1), m_second(xLine2), m_rotationRad(rotationRad) {
  m_definition = dimLinePoint;
  m_text = text;
  m_styleId = style;
}

GcDbAlignedDimension::GcDbAlignedDimension(const GcGePoint3d& xLine1, const GcGePoint3d& xLine2,
                                           const GcGePoint3d& dimLinePoint, const GCHAR* text, GcDbObjectId style)
    : GcDbDimension(1), m_first(xLine1), m_second(xLine2) {
  m_definition = dimLinePoint;
  m_text = text;
  m_styleId = style;
}

Gcad::ErrorStatus GcDbDimension::setDimensionStyle(GcDbObjectId id) {
  if (id.objectClass() != GcDbDimStyleTableRecord::desc()) return Gcad::eInvalidInput;
  return assign(m_styleId, id);
}

GcGePoint3d GcDbDimension::textPosition() const { return gcplanar::toWorld(m_textMiddle, m_normal); }

Gcad::ErrorStatus GcDbDimension::setTextPosition(const GcGePoint3d& point) {
  constexpr int kPlacedByHand = 128;
  assertWriteEnabled();
  m_textMiddle = gcplanar::toOwn(point, m_normal);
  m_flags = static_cast<int16_t>(m_flags | kPlacedByHand);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDimension::measurement(double& value) const {
  value = measured();
  return Gcad::eOk;
}

void GcDbDimension::subAppended() {
  if (m_styleId.isNull()) m_styleId = database()->dimstyle();
  m_measurement = measured();
}

using gcdimoverride::kArrow;
using gcdimoverride::kFirstArrow;
using gcdimoverride::kLeaderArrow;
using gcdimoverride::kSecondArrow;

// The block shows the former arrowhead: it is made anew where the kind can draw itself.
Gcad::ErrorStatus GcDbDimension::setArrowhead(int setting, const GCHAR* name) {
  const Gcad::ErrorStatus status = gcdimoverride::setArrow(*this, setting, name);
  if (status == Gcad::eOk) ignore(recomputeDimBlock());
  return status;
}

Gcad::ErrorStatus GcDbDimension::setDimblk(const GCHAR* name) { return setArrowhead(kArrow, name); }
Gcad::ErrorStatus GcDbDimension::setDimblk1(const GCHAR* name) { return setArrowhead(kFirstArrow, name); }
Gcad::ErrorStatus GcDbDimension::setDimblk2(const GCHAR* name) { return setArrowhead(kSecondArrow, name); }
Gcad::ErrorStatus GcDbDimension::setDimldrblk(const GCHAR* name) { return setArrowhead(kLeaderArrow, name); }
GcDbObjectId GcDbDimension::dimblk() const { return gcdimoverride::arrow(*this, kArrow); }
GcDbObjectId GcDbDimension::dimblk1() const { return gcdimoverride::arrow(*this, kFirstArrow); }
GcDbObjectId GcDbDimension::dimblk2() const { return gcdimoverride::arrow(*this, kSecondArrow); }

namespace {

bool onlyMoves(const GcGeMatrix3d& m) {
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      if (m.entry[row][column] != (row == column ? 1.0 : 0.0)) return false;
  return true;
}

}  // namespace

// A text turned by hand stays readable.
void GcDbDimension::mirrorTextAngle(const GcGeMatrix3d& transform) {
  if (m_textRotationRad == 0) return;
  const GcGeVector3d along = gcplanar::directionAt(m_textRotationRad, m_normal);
  const gcmirrored::Image image = gcmirrored::imageOf(transform, {}, along, m_normal.crossProduct(along), {});
  m_textRotationRad = gcplanar::angleOf(image.along, m_normal);
}

// Mirrored, a dimension is never seen from behind, whatever the setting for texts. Moved, the dimension shows its block at an offset, as copies that share a block do. Under any other change the
// block no longer fits, and the dimension makes a new one.
Gcad::ErrorStatus GcDbDimension::subTransformBy(const GcGeMatrix3d& transform) {
  if (!transform.isUniScaledOrtho()) return Gcad::eCannotScaleNonUniformly;
  const bool keepsBlock = onlyMoves(transform);
  const GcGeVector3d moved = keepsBlock ? gcplanar::toOwn(transform.translation(), m_normal) : GcGeVector3d();
  const bool turnsOver = gcmirrored::turnsOver(transform, m_normal);
  if (turnsOver) mirrorTextAngle(transform);
  const Gcad::ErrorStatus status =
      gcdbTransformFields(*this, transform, turnsOver ? GcDbImageSide::Mirrors : GcDbImageSide::KeepsTurning);
  if (status != Gcad::eOk) return status;
  if (turnsOver) subMirrored();
  m_cloneOffset = m_cloneOffset + moved;
  if (!keepsBlock) {
    m_measurement = measured();
    if (m_blockId.isNull() || recomputeDimBlock() != Gcad::eOk) m_blockId.setNull();
  }
  return Gcad::eOk;
}

bool GcDbDimension::subWorldDraw(GcGiWorldDraw* draw) {
  if (m_blockId.isValid() && !m_blockId.isErased()) {
    GcDbBlockReference stamp(GcGePoint3d(), m_blockId);
    GcGeMatrix3d offset;
    offset.setToTranslation(gcplanar::toWorld(m_cloneOffset.asVector(), m_normal));
    draw->geometry().pushModelTransform(offset);
    stamp.subWorldDraw(draw);
    draw->geometry().popModelTransform();
    return true;
  }
  drawPlainly(*draw);
  return true;
}

void GcDbDimension::drawPlainly(GcGiWorldDraw&) const {}
