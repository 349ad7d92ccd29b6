// Polylines of all kinds as curves: the parameter is the vertex's number plus the part of the segment behind it.
#include <vector>

#include "db/polyline.h"
#include "db/polyline2d.h"
#include "host/db/curves/from_path.h"
#include "host/db/entities/planar.h"
#include "host/db/entities/sequence.h"
#include "host/ge/curves/path.h"

namespace {

struct Corner {
  GcGePoint3d point;  // world
  double bulge;
};

Gcad::ErrorStatus chain(GcGePath& path, const std::vector<Corner>& corners, const GcGeVector3d& normal, bool closed) {
  if (corners.empty()) return Gcad::eDegenerateGeometry;
  path.clear(corners[0].point);
  const int count = static_cast<int>(corners.size());
  if (count < 2) return Gcad::eDegenerateGeometry;
  path.reserve(corners.size(), 0);
  for (int i = 0; i < (closed ? count : count - 1); ++i)
    path.addBulge(corners[i].point, corners[(i + 1) % count].point, corners[i].bulge, normal, i, i + 1);
  path.setClosed(closed, closed);
  return Gcad::eOk;
}

}  // namespace

Gcad::ErrorStatus GcDbPolyline::subPath(GcGePath& path) const {
  GcGeMatrix3d toWorld;
  toWorld.setToPlaneToWorld(m_normal);
  const bool level = m_normal == GcGeVector3d::kZAxis;
  std::vector<Corner> corners;
  corners.reserve(m_vertices.length());
  for (const GcDbPolylineVertex& v : m_vertices) {
    const GcGePoint3d own(v.point.x, v.point.y, m_elevation);
    corners.push_back({level ? own : toWorld * own, v.bulge});
  }
  return chain(path, corners, m_normal, isClosed());
}

Gcad::ErrorStatus GcDb2dPolyline::subPath(GcGePath& path) const {
  std::vector<Corner> corners;
  gcsequence::forEach<GcDb2dVertex>(*this, [&](const GcDb2dVertex& v) {
    if (v.vertexType() == GcDb2dVertex::k2dSplineCtlVertex) return;  // steers the curve, is not on it
    const GcGePoint3d own(v.position().x, v.position().y, m_elevation);
    corners.push_back({gcplanar::toWorld(own, m_normal), v.bulge()});
  });
  return chain(path, corners, m_normal, isClosed());
}

Gcad::ErrorStatus GcDb3dPolyline::subPath(GcGePath& path) const {
  constexpr int kControlPoint = 16;
  std::vector<Corner> corners;
  gcsequence::forEach<GcDb3dPolylineVertex>(*this, [&](const GcDb3dPolylineVertex& v) {
    if ((v.flags() & kControlPoint) == 0) corners.push_back({v.position(), 0});
  });
  return chain(path, corners, GcGeVector3d::kZAxis, isClosed());
}

// Bulges and widths belong to segments: they move with them, turned round. An open polyline's last vertex has those of
// no segment, which stay where they are.
Gcad::ErrorStatus GcDbPolyline::reverseCurve() {
  assertWriteEnabled();
  const int count = m_vertices.length();
  const GcArray<GcDbPolylineVertex> old(m_vertices);
  for (int i = 0; i < count; ++i) {
    const GcDbPolylineVertex& place = old[count - 1 - i];
    const int segment = isClosed() ? (2 * count - 2 - i) % count : count - 2 - i;
    const GcDbPolylineVertex& from = segment >= 0 ? old[segment] : old[count - 1];
    GcDbPolylineVertex& v = m_vertices[i];
    v.point = place.point;
    v.identifier = place.identifier;
    v.bulge = segment >= 0 ? -from.bulge : from.bulge;
    v.startWidth = segment >= 0 ? from.endWidth : from.startWidth;
    v.endWidth = segment >= 0 ? from.startWidth : from.endWidth;
  }
  return Gcad::eOk;
}

// Pieces and parallels of a polyline are lightweight polylines, with its one width if it has one.
GcDbCurve* GcDbPolyline::subFromPath(const GcGePath& path) const {
  auto* made = static_cast<GcDbPolyline*>(gcdbPolylineFromPath(path, m_normal));
  if (made == nullptr) return nullptr;
  double width = 0;
  if (getConstantWidth(width) == Gcad::eOk && width > 0) ignore(made->setConstantWidth(width));
  ignore(made->setThickness(m_thickness));
  made->setPlinegen(hasPlinegen());
  return made;
}

GcDbCurve* GcDb2dPolyline::subFromPath(const GcGePath& path) const {
  auto* made = static_cast<GcDbPolyline*>(gcdbPolylineFromPath(path, m_normal));
  if (made == nullptr) return GcDbCurve::subFromPath(path);
  const double width = oneWidth();
  if (width > 0) ignore(made->setConstantWidth(width));
  ignore(made->setThickness(m_thickness));
  return made;
}

// The width of all segments; 0 when they differ.
double GcDb2dPolyline::oneWidth() const {
  double width = -1;
  gcsequence::forEach<GcDb2dVertex>(*this, [&](const GcDb2dVertex& v) {
    if (v.vertexType() == GcDb2dVertex::k2dSplineCtlVertex) return;
    const bool same = v.startWidth() == v.endWidth() && (width < 0 || v.startWidth() == width);
    width = same ? v.startWidth() : 0;
  });
  return std::max(width, 0.0);
}
