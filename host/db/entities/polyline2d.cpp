#include "db/polyline2d.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/entities/bulge.h"
#include "host/db/entities/planar.h"
#include "host/db/entities/sequence.h"
#include "host/rx/math/elementary.h"

GCDB_DEFINE_CLASS(GcDb2dPolyline, "AcDb2dPolyline")
GCDB_DEFINE_CLASS(GcDb3dPolyline, "AcDb3dPolyline")

// Files give the elevation as the height of a point whose other coordinates are 0.
const GcDbField GcDb2dPolyline::kFields[] = {
    marker("AcDb2dPolyline"),
    fixed<66, 1>("verticesFollow"),
    field<&GcDb2dPolyline::m_elevation>(10, "elevation", Is::Elevation)
        .filedAs(
            [](const void* record) {
              return GcDbGroup::ofPoint(10, {0, 0, static_cast<const GcDb2dPolyline*>(record)->m_elevation});
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDb2dPolyline*>(record)->m_elevation = group.point.z;
              return true;
            }),
    field<&GcDb2dPolyline::m_thickness>(39, "thickness", Is::Length, Write::UnlessDefault),
    field<&GcDb2dPolyline::m_flags>(70, "flags", Is::Plain),
    field<&GcDb2dPolyline::m_startWidth>(40, "startWidth", Is::Length, Write::FilesUnlessDefault),
    field<&GcDb2dPolyline::m_endWidth>(41, "endWidth", Is::Length, Write::FilesUnlessDefault),
    field<&GcDb2dPolyline::m_curveType>(75, "curveType", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDb2dPolyline::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDb2dPolyline);

const GcDbField GcDb3dPolyline::kFields[] = {
    marker("AcDb3dPolyline"),
    fixed<66, 1>("verticesFollow"),
    []() {
      GcDbField row = fixed<10, 0>("origin");
      row.get = [](const void*) { return GcDbGroup::ofPoint(10, {}); };
      return row;
    }(),
    field<&GcDb3dPolyline::m_flags>(70, "flags", Is::Plain),
    field<&GcDb3dPolyline::m_curveType>(75, "curveType", Is::Plain, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDb3dPolyline);

Gcad::ErrorStatus GcDb2dPolyline::appendVertex(GcDbObjectId& id, GcDb2dVertex* vertex) {
  return gcsequence::append(*this, vertex, id);
}

Gcad::ErrorStatus GcDb2dPolyline::appendVertex(GcDb2dVertex* vertex) {
  GcDbObjectId id;
  return appendVertex(id, vertex);
}

void GcDb2dPolyline::vertexIds(GcDbObjectIdArray& ids) const { gcsequence::collect(*this, GcDb2dVertex::desc(), ids); }

GcDbObjectIterator* GcDb2dPolyline::vertexIterator() const {
  GcDbObjectIdArray ids;
  vertexIds(ids);
  return new GcDbObjectIterator(ids);
}

GcDb::Poly2dType GcDb2dPolyline::polyType() const {
  constexpr int kCubic = 6;
  if ((m_flags & 4) != 0) return m_curveType == kCubic ? GcDb::k2dCubicSplinePoly : GcDb::k2dQuadSplinePoly;
  return (m_flags & 2) != 0 ? GcDb::k2dFitCurvePoly : GcDb::k2dSimplePoly;
}

Gcad::ErrorStatus GcDb2dPolyline::setFlag(int bit, bool on) {
  return assign(m_flags, static_cast<int16_t>(on ? m_flags | bit : m_flags & ~bit));
}

Gcad::ErrorStatus GcDb2dPolyline::setElevation(double elevation) {
  assertWriteEnabled();
  m_elevation = elevation;
  GcDbObjectIdArray ids;
  vertexIds(ids);
  for (const GcDbObjectId id : ids) {
    GcDb2dVertex* vertex = nullptr;
    if (gcdbOpenObject(vertex, id, GcDb::kForWrite) != Gcad::eOk) continue;
    const GcGePoint3d at = vertex->position();
    ignore(vertex->setPosition({at.x, at.y, elevation}));
    ignore(vertex->close());
  }
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDb2dPolyline::setNormal(const GcGeVector3d& normal) {
  if (normal.isZeroLength()) return Gcad::eInvalidInput;
  return assign(m_normal, normal.normal());
}

// The vertices lie in the polyline's plane and know nothing of its normal: they move by the way from the old plane's
// system to the new one's.
Gcad::ErrorStatus GcDb2dPolyline::subTransformBy(const GcGeMatrix3d& transform) {
  bool hasBulges = false;
  gcsequence::forEach<GcDb2dVertex>(*this, [&](const GcDb2dVertex& v) { hasBulges = hasBulges || v.bulge() != 0; });
  if (hasBulges && !transform.isUniScaledOrtho()) return Gcad::eCannotScaleNonUniformly;
  const GcGeVector3d normal = gcplanar::normalOfImage(transform, m_normal);
  if (normal.isZeroLength()) return Gcad::eCannotScaleNonUniformly;
  GcGeMatrix3d fromOld, toNew;
  fromOld.setToPlaneToWorld(m_normal);
  toNew.setToWorldToPlane(normal);
  const GcGeMatrix3d own = toNew * transform * fromOld;
  const double factor = transform.scale();
  GcDbObjectIdArray ids;
  vertexIds(ids);
  for (const GcDbObjectId id : ids) {
    GcDb2dVertex* vertex = nullptr;
    if (gcdbOpenObject(vertex, id, GcDb::kForWrite) != Gcad::eOk) continue;
    vertex->assertWriteEnabled();
    const GcGePoint3d at(vertex->m_position.x, vertex->m_position.y, m_elevation);
    vertex->m_position = own * at;
    vertex->m_startWidth *= factor;
    vertex->m_endWidth *= factor;
    const GcGeVector3d tangent = own * GcGeVector3d(gc::cos(vertex->m_tangentRad), gc::sin(vertex->m_tangentRad), 0);
    if (vertex->isTangentUsed()) vertex->m_tangentRad = gcplanar::inFullTurn(gc::atan2(tangent.y, tangent.x));
    ignore(vertex->close());
  }
  m_elevation = (own * GcGePoint3d(0, 0, m_elevation)).z;
  m_thickness *= factor;
  m_startWidth *= factor;
  m_endWidth *= factor;
  m_normal = normal;
  return Gcad::eOk;
}

bool GcDb2dPolyline::subWorldDraw(GcGiWorldDraw* draw) {
  GcArray<gcbulge::Segment> segments;
  gcsequence::forEach<GcDb2dVertex>(*this, [&](const GcDb2dVertex& vertex) {
    if (vertex.vertexType() == GcDb2dVertex::k2dSplineCtlVertex) return;  // steers the curve, is not on it
    const GcGePoint2d at(vertex.position().x, vertex.position().y);
    if (!segments.isEmpty()) segments.last().end = at;
    segments.append({at, at, vertex.bulge(), vertex.startWidth(), vertex.endWidth()});
  });
  if (segments.isEmpty()) return true;
  segments.last().end = segments[0].start;
  const int count = isClosed() ? segments.length() : segments.length() - 1;
  gcbulge::draw(*draw, segments.begin(), count, isClosed(), m_elevation, m_normal);
  return true;
}

Gcad::ErrorStatus GcDb3dPolyline::appendVertex(GcDbObjectId& id, GcDb3dPolylineVertex* vertex) {
  return gcsequence::append(*this, vertex, id);
}

Gcad::ErrorStatus GcDb3dPolyline::appendVertex(GcDb3dPolylineVertex* vertex) {
  GcDbObjectId id;
  return appendVertex(id, vertex);
}

void GcDb3dPolyline::vertexIds(GcDbObjectIdArray& ids) const {
  gcsequence::collect(*this, GcDb3dPolylineVertex::desc(), ids);
}

GcDbObjectIterator* GcDb3dPolyline::vertexIterator() const {
  GcDbObjectIdArray ids;
  vertexIds(ids);
  return new GcDbObjectIterator(ids);
}

GcDb::Poly3dType GcDb3dPolyline::polyType() const {
  constexpr int kCubic = 6;
  if ((m_flags & 4) == 0) return GcDb::k3dSimplePoly;
  return m_curveType == kCubic ? GcDb::k3dCubicSplinePoly : GcDb::k3dQuadSplinePoly;
}

Gcad::ErrorStatus GcDb3dPolyline::makeClosed() { return assign(m_flags, static_cast<int16_t>(m_flags | 1)); }
Gcad::ErrorStatus GcDb3dPolyline::makeOpen() { return assign(m_flags, static_cast<int16_t>(m_flags & ~1)); }

bool GcDb3dPolyline::subWorldDraw(GcGiWorldDraw* draw) {
  constexpr int kControlPoint = 16;
  GcArray<GcGePoint3d> points;
  gcsequence::forEach<GcDb3dPolylineVertex>(*this, [&](const GcDb3dPolylineVertex& vertex) {
    if ((vertex.flags() & kControlPoint) == 0) points.append(vertex.position());
  });
  if (points.length() > 1) draw->geometry().polyline(points.length(), points.begin(), isClosed());
  return true;
}
