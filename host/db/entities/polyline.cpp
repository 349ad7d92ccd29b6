#include "db/polyline.h"

#include <iterator>

#include "db/arc.h"
#include "db/line.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/bulge.h"
#include "host/db/entities/planar.h"

GCDB_DEFINE_CLASS(GcDbPolyline, "AcDbPolyline")

namespace {

constexpr GcDbField kVertexFields[] = {
    field<&GcDbPolylineVertex::point>(10, "point", Is::OcsPoint),
    field<&GcDbPolylineVertex::startWidth>(40, "startWidth", Is::Length),
    field<&GcDbPolylineVertex::endWidth>(41, "endWidth", Is::Length),
    field<&GcDbPolylineVertex::bulge>(42, "bulge", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbPolylineVertex::identifier>(91, "identifier", Is::Plain, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1024),
};

// Where one width holds for all, files give it once.
constexpr GcDbField kEvenVertexFields[] = {
    field<&GcDbPolylineVertex::point>(10, "point", Is::OcsPoint),
    field<&GcDbPolylineVertex::startWidth>(40, "startWidth", Is::Length, Write::ListsOnly),
    field<&GcDbPolylineVertex::endWidth>(41, "endWidth", Is::Length, Write::ListsOnly),
    field<&GcDbPolylineVertex::bulge>(42, "bulge", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbPolylineVertex::identifier>(91, "identifier", Is::Plain, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1024),
};

}  // namespace

const GcDbField GcDbPolyline::kFields[] = {
    marker("AcDbPolyline"),
    count<&GcDbPolyline::m_vertices>(90, "vertexCount"),
    field<&GcDbPolyline::m_flags>(70, "flags", Is::Plain),
    field<&GcDbPolyline::m_constantWidth>(43, "constantWidth", Is::Length)
        .filedAs(
            [](const void* record) {
              return GcDbGroup::ofReal(43, static_cast<const GcDbPolyline*>(record)->commonWidth());
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDbPolyline*>(record)->m_constantWidth = group.asReal();
              return true;
            })
        .when<&GcDbPolyline::isConstantWidth>(),
    field<&GcDbPolyline::m_elevation>(38, "elevation", Is::Elevation, Write::FilesUnlessDefault),
    field<&GcDbPolyline::m_thickness>(39, "thickness", Is::Length, Write::FilesUnlessDefault),
    each<&GcDbPolyline::m_vertices>(-1, "vertices", kVertexFields).when<&GcDbPolyline::hasDifferingWidths>(),
    each<&GcDbPolyline::m_vertices>(-1, "evenVertices", kEvenVertexFields)
        .when<&GcDbPolyline::isConstantWidth>()
        .echo(),
    field<&GcDbPolyline::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbPolyline);

bool GcDbPolyline::isConstantWidth() const {
  for (const GcDbPolylineVertex& vertex : m_vertices)
    if (vertex.startWidth != m_vertices[0].startWidth || vertex.endWidth != m_vertices[0].startWidth) return false;
  return true;
}

// A width given for all counts where no vertex gives its own.
void GcDbPolyline::subLoaded() {
  if (m_vertices.isEmpty()) return;
  if (m_constantWidth != 0 && !hasWidth())
    for (GcDbPolylineVertex& vertex : m_vertices) vertex.startWidth = vertex.endWidth = m_constantWidth;
  m_constantWidth = 0;
}

Gcad::ErrorStatus GcDbPolyline::addVertexAt(unsigned index, const GcGePoint2d& point, double bulge, double startWidth,
                                            double endWidth, int32_t identifier) {
  if (index > numVerts()) return Gcad::eInvalidIndex;
  assertWriteEnabled();
  const double common = isConstantWidth() ? commonWidth() : 0;
  GcDbPolylineVertex vertex;
  vertex.point = point;
  vertex.bulge = bulge;
  vertex.startWidth = startWidth < 0 ? common : startWidth;
  vertex.endWidth = endWidth < 0 ? common : endWidth;
  vertex.identifier = identifier;
  m_vertices.insertAt(static_cast<int>(index), vertex);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbPolyline::removeVertexAt(unsigned index) {
  if (!hasVertex(index)) return Gcad::eInvalidIndex;
  assertWriteEnabled();
  m_vertices.removeAt(static_cast<int>(index));
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbPolyline::getPointAt(unsigned index, GcGePoint2d& point) const {
  if (!hasVertex(index)) return Gcad::eInvalidIndex;
  point = m_vertices[static_cast<int>(index)].point;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbPolyline::getPointAt(unsigned index, GcGePoint3d& point) const {
  GcGePoint2d own;
  const Gcad::ErrorStatus status = getPointAt(index, own);
  if (status == Gcad::eOk) point = gcplanar::toWorld(GcGePoint3d(own.x, own.y, m_elevation), m_normal);
  return status;
}

Gcad::ErrorStatus GcDbPolyline::setPointAt(unsigned index, const GcGePoint2d& point) {
  if (!hasVertex(index)) return Gcad::eInvalidIndex;
  return assign(m_vertices[static_cast<int>(index)].point, point);
}

Gcad::ErrorStatus GcDbPolyline::getBulgeAt(unsigned index, double& bulge) const {
  if (!hasVertex(index)) return Gcad::eInvalidIndex;
  bulge = m_vertices[static_cast<int>(index)].bulge;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbPolyline::setBulgeAt(unsigned index, double bulge) {
  if (!hasVertex(index)) return Gcad::eInvalidIndex;
  return assign(m_vertices[static_cast<int>(index)].bulge, bulge);
}

Gcad::ErrorStatus GcDbPolyline::getWidthsAt(unsigned index, double& startWidth, double& endWidth) const {
  if (!hasVertex(index)) return Gcad::eInvalidIndex;
  startWidth = m_vertices[static_cast<int>(index)].startWidth;
  endWidth = m_vertices[static_cast<int>(index)].endWidth;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbPolyline::setWidthsAt(unsigned index, double startWidth, double endWidth) {
  if (!hasVertex(index)) return Gcad::eInvalidIndex;
  if (startWidth < 0 || endWidth < 0) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_vertices[static_cast<int>(index)].startWidth = startWidth;
  m_vertices[static_cast<int>(index)].endWidth = endWidth;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbPolyline::getConstantWidth(double& width) const {
  if (!isConstantWidth()) return Gcad::eInvalidInput;
  width = commonWidth();
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbPolyline::setConstantWidth(double width) {
  if (!(width >= 0)) return Gcad::eInvalidInput;
  assertWriteEnabled();
  if (m_vertices.isEmpty()) m_constantWidth = width;
  for (GcDbPolylineVertex& vertex : m_vertices) vertex.startWidth = vertex.endWidth = width;
  return Gcad::eOk;
}

void GcDbPolyline::setClosed(bool closed) {
  ignore(assign(m_flags, static_cast<int16_t>(closed ? m_flags | 1 : m_flags & ~1)));
}

void GcDbPolyline::setPlinegen(bool on) {
  ignore(assign(m_flags, static_cast<int16_t>(on ? m_flags | 128 : m_flags & ~128)));
}

bool GcDbPolyline::hasBulges() const {
  for (const GcDbPolylineVertex& vertex : m_vertices)
    if (vertex.bulge != 0) return true;
  return false;
}

bool GcDbPolyline::hasWidth() const {
  for (const GcDbPolylineVertex& vertex : m_vertices)
    if (vertex.startWidth != 0 || vertex.endWidth != 0) return true;
  return false;
}

Gcad::ErrorStatus GcDbPolyline::setNormal(const GcGeVector3d& normal) {
  if (normal.isZeroLength()) return Gcad::eInvalidInput;
  return assign(m_normal, normal.normal());
}

// Arcs stay arcs under turns, mirrors and even scales only.
Gcad::ErrorStatus GcDbPolyline::subTransformBy(const GcGeMatrix3d& transform) {
  if (hasBulges() && !transform.isUniScaledOrtho()) return Gcad::eCannotScaleNonUniformly;
  return GcDbCurve::subTransformBy(transform);
}

bool GcDbPolyline::subWorldDraw(GcGiWorldDraw* draw) {
  const int count = m_vertices.length();
  const int segmentCount = isClosed() ? count : count - 1;
  GcArray<gcbulge::Segment> segments;
  for (int i = 0; i < segmentCount; ++i) {
    const GcDbPolylineVertex& from = m_vertices[i];
    const double startWidth = m_constantWidth > 0 ? m_constantWidth : from.startWidth;
    const double endWidth = m_constantWidth > 0 ? m_constantWidth : from.endWidth;
    segments.append({from.point, m_vertices[(i + 1) % count].point, from.bulge, startWidth, endWidth});
  }
  gcbulge::draw(*draw, segments.begin(), segments.length(), isClosed(), m_elevation, m_normal);
  return true;
}

Gcad::ErrorStatus GcDbPolyline::explode(GcDbVoidPtrArray& entities) const {
  assertReadEnabled();
  const int count = m_vertices.length();
  const int segments = isClosed() ? count : count - 1;
  for (int i = 0; i < segments; ++i) {
    const GcDbPolylineVertex& from = m_vertices[i];
    const GcGePoint2d& to = m_vertices[(i + 1) % count].point;
    GcDbCurve* part = nullptr;
    if (from.bulge == 0 || from.point == to) {
      auto* line = new GcDbLine(gcplanar::toWorld(GcGePoint3d(from.point.x, from.point.y, m_elevation), m_normal),
                                gcplanar::toWorld(GcGePoint3d(to.x, to.y, m_elevation), m_normal));
      ignore(line->setNormal(m_normal));
      ignore(line->setThickness(m_thickness));
      part = line;
    } else {
      const gcbulge::Arc arc = gcbulge::arcOf(from.point, to, from.bulge);
      const double end = arc.startRad + arc.sweepRad;
      const GcGePoint3d center = gcplanar::toWorld(GcGePoint3d(arc.center.x, arc.center.y, m_elevation), m_normal);
      const double first = gcplanar::inFullTurn(arc.sweepRad > 0 ? arc.startRad : end);
      const double last = gcplanar::inFullTurn(arc.sweepRad > 0 ? end : arc.startRad);
      auto* made = new GcDbArc(center, m_normal, arc.radius, first, last);
      ignore(made->setThickness(m_thickness));
      part = made;
    }
    ignore(part->setPropertiesFrom(*this, false));
    entities.append(part);
  }
  return Gcad::eOk;
}
