#include "db/region.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <string>

#include "host/db/curves/from_path.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/draw_path.h"
#include "host/db/entities/modeler_body.h"
#include "host/db/entities/modeler_rows.h"
#include "host/db/entities/modeler_text.h"
#include "host/db/entities/region_loops.h"
#include "host/ge/curves/arrangement.h"

GCDB_DEFINE_CLASS(GcDbRegion, "AcDbRegion")

using gcmodeler::kLineFields;

struct GcDbRegionFiling {
  using Revision = gcmodeler::RevisionFiling<&GcDbRegion::m_historyId>;
};

const GcDbField GcDbRegion::kFields[] = {
    marker("AcDbModelerGeometry"),
    field<&GcDbRegion::m_hasHistory>(290, "hasHistory", Is::Plain)
        .from(GcDb::kDHL_AC1027)
        .when<&GcDbRegion::isRecorded>()
        .readAnyway(),
    field<&GcDbRegion::m_historyId>(gcmodeler::kRevisionCode, "historyId", Is::Plain)
        .filedAs(GcDbRegionFiling::Revision::get, GcDbRegionFiling::Revision::set)
        .from(GcDb::kDHL_AC1027)
        .when<&GcDbRegion::isRecorded>()
        .readAnyway(),
    field<&GcDbRegion::m_version>(70, "version", Is::Plain).orElse(1).until(GcDb::kDHL_AC1027),
    field<&GcDbRegion::m_version>(70, "textVersion", Is::Plain)
        .orElse(1)
        .from(GcDb::kDHL_AC1027)
        .inFilesWhen<&GcDbRegion::isTextOnly>()
        .echo(),
    each<&GcDbRegion::m_lines>(-1, "lines", kLineFields).until(GcDb::kDHL_AC1027),
    each<&GcDbRegion::m_lines>(-1, "textLines", kLineFields)
        .from(GcDb::kDHL_AC1027)
        .inFilesWhen<&GcDbRegion::isTextOnly>()
        .echo(),
    field<&GcDbRegion::m_bytes>(310, "bytes", Is::Plain, Write::Never),
    gcmodeler::notInGroups(field<&GcDbRegion::m_picture>(-1, "picture", Is::Plain)),
};
GCDB_FIELD_COUNT(GcDbRegion);

namespace {

using gcmodeler::PlaneArea;

GcArray<GcDbModelerLine> linesOf(const PlaneArea& area) { return gcmodeler::linesOf(gcmodeler::write(area)); }

bool areaOf(const GcArray<GcDbModelerLine>& lines, PlaneArea& area) {
  return gcmodeler::read(gcmodeler::textOf(lines), area);
}

}  // namespace

// Text that is no plane area has no bytes; files then have the text.
bool GcDbRegion::isRecorded() const {
  PlaneArea area;
  return m_lines.isEmpty() || areaOf(m_lines, area);
}

Gcad::ErrorStatus GcDbRegion::getBytes(GcArray<uint8_t>& bytes) const {
  bytes = m_bytes;
  if (!bytes.isEmpty()) return Gcad::eOk;
  PlaneArea area;
  if (!areaOf(m_lines, area)) return Gcad::eNotApplicable;
  const std::string made = gcmodeler::writeBinary(area);
  bytes.setLogicalLength(static_cast<int>(made.size()));
  std::copy(made.begin(), made.end(), bytes.begin());
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbRegion::setBytes(const GcArray<uint8_t>& bytes) {
  assertWriteEnabled();
  PlaneArea area;
  const std::string_view given(reinterpret_cast<const char*>(bytes.begin()), static_cast<size_t>(bytes.length()));
  const bool isPlane = gcmodeler::readBinary(given, area);
  m_lines = isPlane ? linesOf(area) : GcArray<GcDbModelerLine>();
  m_bytes = bytes;
  return isPlane ? Gcad::eOk : Gcad::eNotApplicable;
}

Gcad::ErrorStatus GcDbRegion::createFromCurves(const GcDbVoidPtrArray& curves, GcDbVoidPtrArray& regions) {
  std::vector<const GcDbCurve*> bounds;
  for (void* each : curves) {
    const auto* curve = GcDbCurve::cast(static_cast<GcDbObject*>(each));
    if (curve != nullptr) bounds.push_back(curve);
  }
  const std::vector<PlaneArea> areas = gcregion::areasOf(bounds);
  for (const PlaneArea& area : areas) {
    auto region = std::make_unique<GcDbRegion>();
    region->m_lines = linesOf(area);
    regions.append(region.release());
  }
  return areas.empty() ? Gcad::eInvalidInput : Gcad::eOk;
}

namespace {

GcGePoint3d startOf(const PlaneArea& area) {
  return area.loops[0].origin() + area.loops[0].pointOn(0, area.loops[0].spans()[0].u0);
}

bool lieInOnePlane(const PlaneArea& a, const PlaneArea& b) {
  constexpr double kSlope = 1e-8;  // sine of an angle that still counts as none
  const GcGeVector3d between = startOf(b) - startOf(a);
  return a.normal.crossProduct(b.normal).length() <= kSlope &&
         std::fabs(between.dotProduct(a.normal)) <= kSlope * (between.length() + a.loops[0].size());
}

}  // namespace

Gcad::ErrorStatus GcDbRegion::booleanOper(BoolOperType operation, const GcDbRegion& other) {
  PlaneArea own, second;
  if (!areaOf(m_lines, own) || !areaOf(other.m_lines, second)) return Gcad::eNotApplicable;
  if (!lieInOnePlane(own, second)) return Gcad::eInvalidInput;
  if (own.normal.dotProduct(second.normal) < 0)
    for (GcGePath& loop : second.loops) loop = loop.reversed();
  const GcGeCombination how = operation == kBoolUnite      ? GcGeCombination::Union
                              : operation == kBoolSubtract ? GcGeCombination::Difference
                                                           : GcGeCombination::Intersection;
  assertWriteEnabled();
  own.loops = gcgeCombine(own.loops, second.loops, own.normal, how);
  m_lines = own.loops.empty() ? GcArray<GcDbModelerLine>() : linesOf(own);
  m_bytes.clear();
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbRegion::getArea(double& area) const {
  PlaneArea plane;
  if (!areaOf(m_lines, plane)) return Gcad::eNotApplicable;
  area = 0;
  for (const GcGePath& loop : plane.loops) area += loop.vectorArea().dotProduct(plane.normal);
  area = std::fabs(area);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbRegion::getPerimeter(double& length) const {
  PlaneArea plane;
  if (!areaOf(m_lines, plane)) return Gcad::eNotApplicable;
  length = 0;
  for (const GcGePath& loop : plane.loops) length += loop.length();
  return Gcad::eOk;
}

namespace {

// The moment of the signed area between a stretch and a point of the plane: a third of the integral of
// p (p x p') . n, p from that point.
GcGeVector3d momentOf(const GcGePath& path, const GcGeVector3d& from, const GcGeVector3d& normal) {
  constexpr int kPieces = 8;
  // Nodes and weights of five-point Gauss quadrature on [-1, 1]: exact to degree 9.
  constexpr double kNodes[] = {0, 0.5384693101056831, -0.5384693101056831, 0.9061798459386640, -0.9061798459386640};
  constexpr double kWeights[] = {0.5688888888888889, 0.4786286704993665, 0.4786286704993665, 0.2369268850561891,
                                 0.2369268850561891};
  GcGeVector3d moment;
  for (const GcGeSpan& span : path.spans()) {
    const int pieces = span.kind == GcGeSpan::Kind::Line ? 1 : kPieces * 4;
    const double half = (span.u1 - span.u0) / pieces / 2;
    for (int i = 0; i < pieces; ++i)
      for (int k = 0; k < 5; ++k) {
        const GcGeJet jet = gcgeJetAt(span, path.poles(), span.u0 + half * (2 * i + 1 + kNodes[k]));
        const GcGeVector3d p = jet.point - from;
        moment += p * (p.crossProduct(jet.first).dotProduct(normal) * kWeights[k] * half / 3);
      }
  }
  return moment;
}

}  // namespace

Gcad::ErrorStatus GcDbRegion::getCentroid(GcGePoint3d& centroid) const {
  PlaneArea plane;
  if (!areaOf(m_lines, plane)) return Gcad::eNotApplicable;
  const GcGePoint3d from = plane.loops[0].origin() + plane.loops[0].pointOn(0, plane.loops[0].spans()[0].u0);
  GcGeVector3d moment;
  double area = 0;
  for (const GcGePath& loop : plane.loops) {
    moment += momentOf(loop, from - loop.origin(), plane.normal);
    area += loop.vectorArea().dotProduct(plane.normal);
  }
  if (area == 0) return Gcad::eDegenerateGeometry;
  centroid = from + moment * (1 / area);
  return Gcad::eOk;
}

GcGeVector3d GcDbRegion::normal() const {
  PlaneArea plane;
  return areaOf(m_lines, plane) ? plane.normal : GcGeVector3d::kZAxis;
}

bool GcDbRegion::subWorldDraw(GcGiWorldDraw* draw) {
  PlaneArea plane;
  if (areaOf(m_lines, plane))
    for (const GcGePath& loop : plane.loops) gcdraw::path(*draw, loop);
  return true;
}

Gcad::ErrorStatus GcDbRegion::explode(GcDbVoidPtrArray& entities) const {
  PlaneArea plane;
  if (!areaOf(m_lines, plane)) return Gcad::eNotApplicable;
  for (const GcGePath& loop : plane.loops)
    for (const GcGeSpan& span : loop.spans()) {
      GcGePath single(loop.origin());
      single.addSpan(span, loop.poles());
      single.setClosed(loop.spans().size() == 1, false);
      GcDbCurve* curve = gcdbCurveFromPath(single, plane.normal);
      if (curve == nullptr) continue;
      ignore(curve->setPropertiesFrom(*this, false));
      entities.append(curve);
    }
  return Gcad::eOk;
}

// A body that is no plane area is moved as a whole.
Gcad::ErrorStatus GcDbRegion::moveAsBody(const GcGeMatrix3d& transform) {
  if (!transform.isUniScaledOrtho()) return Gcad::eCannotScaleNonUniformly;
  GcArray<GcDbModelerLine> lines = m_lines;
  GcArray<uint8_t> bytes = m_bytes;
  if (!gcmodeler::moveBody(lines, bytes, transform)) return Gcad::eNotApplicable;
  m_lines = std::move(lines);
  m_bytes = std::move(bytes);
  m_picture.clear();
  return Gcad::eOk;
}

// The text is made anew.
Gcad::ErrorStatus GcDbRegion::subTransformBy(const GcGeMatrix3d& transform) {
  PlaneArea plane;
  if (!areaOf(m_lines, plane)) return moveAsBody(transform);
  PlaneArea moved;
  GcGeVector3d normal;
  for (const GcGePath& loop : plane.loops) moved.loops.push_back(loop.transformed(transform));
  if (!moved.loops[0].isPlanar(normal) || normal.isZeroLength()) return Gcad::eDegenerateGeometry;
  moved.normal = moved.loops[0].vectorArea().dotProduct(normal) < 0 ? -normal : normal;
  m_lines = linesOf(moved);
  m_bytes.clear();
  m_picture.clear();
  return Gcad::eOk;
}
