#include "host/ed/vertexchain.h"

#include <algorithm>
#include <cmath>

#include "db/arc.h"
#include "db/circle.h"
#include "db/line.h"
#include "ge/matrix3d.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

constexpr double kSamePlane = 1e-8;

double distance(const GcGePoint2d& a, const GcGePoint2d& b) { return gc::hypot(a.x - b.x, a.y - b.y); }

GcGePoint3d inPlane(const GcGePoint3d& world, const GcGeVector3d& normal) {
  GcGeMatrix3d plane;
  return plane.setToPlaneToWorld(normal).inverse() * world;
}

}  // namespace

bool VertexChain::take(const GcDbEntity& entity) {
  vertices.clear();
  if (const auto* line = GcDbPolyline::cast(&entity)) {
    for (const GcDbPolylineVertex& vertex : line->vertices()) vertices.push_back(vertex);
    closed = line->isClosed();
    elevation = line->elevation();
    normal = line->normal();
    return vertices.size() > 1;
  }
  if (const auto* circle = GcDbCircle::cast(&entity)) {
    normal = circle->normal();
    const GcGePoint3d center = inPlane(circle->center(), normal);
    elevation = center.z;
    closed = true;
    for (const double side : {1.0, -1.0}) vertices.push_back({{center.x + side * circle->radius(), center.y}, 1});
    return true;
  }
  const auto* arc = GcDbArc::cast(&entity);
  const auto* line = GcDbLine::cast(&entity);
  if (arc == nullptr && line == nullptr) return false;
  GcGePoint3d start, end;
  if (arc != nullptr) {
    normal = arc->normal();
    if (arc->getStartPoint(start) != Gcad::eOk || arc->getEndPoint(end) != Gcad::eOk) return false;
  } else {
    normal = line->normal();
    start = line->startPoint();
    end = line->endPoint();
  }
  const GcGePoint3d a = inPlane(start, normal);
  const GcGePoint3d b = inPlane(end, normal);
  if (std::fabs(a.z - b.z) > kSamePlane * (1 + std::fabs(a.z))) return false;
  elevation = a.z;
  closed = false;
  vertices.push_back({{a.x, a.y}, arc == nullptr ? 0 : gc::tan(arc->sweepAngle() / 4)});
  vertices.push_back({{b.x, b.y}});
  return true;
}

void VertexChain::reverse() {
  std::reverse(vertices.begin(), vertices.end());
  // What belonged to the segment behind a vertex now belongs to the one before it.
  const size_t count = vertices.size();
  std::vector<GcDbPolylineVertex> old = vertices;
  for (size_t i = 0; i < count; ++i) {
    const GcDbPolylineVertex& from = old[(i + 1) % count];
    vertices[i].bulge = -from.bulge;
    vertices[i].startWidth = from.endWidth;
    vertices[i].endWidth = from.startWidth;
  }
}

bool VertexChain::isInPlaneOf(const VertexChain& other) const {
  return normal.dotProduct(other.normal) > 1 - kSamePlane &&
         std::fabs(elevation - other.elevation) <= kSamePlane * (1 + std::fabs(elevation));
}

bool VertexChain::join(VertexChain other, double tolerance) {
  if (closed || other.closed || !isInPlaneOf(other)) return false;
  const auto near = [&](const GcGePoint2d& a, const GcGePoint2d& b) {
    const double size = 1 + std::max(std::fabs(a.x), std::fabs(a.y));
    return distance(a, b) <= std::max(tolerance, kSamePlane * size);
  };
  const GcGePoint2d start = vertices.front().point;
  const GcGePoint2d end = vertices.back().point;
  const GcGePoint2d otherStart = other.vertices.front().point;
  const GcGePoint2d otherEnd = other.vertices.back().point;
  bool before = false;
  if (near(end, otherStart)) {
  } else if (near(end, otherEnd)) {
    other.reverse();
  } else if (near(start, otherEnd)) {
    before = true;
  } else if (near(start, otherStart)) {
    other.reverse();
    before = true;
  } else {
    return false;
  }
  std::vector<GcDbPolylineVertex>& head = before ? other.vertices : vertices;
  std::vector<GcDbPolylineVertex>& tail = before ? vertices : other.vertices;
  const GcGePoint2d joint = head.back().point;
  head.back() = tail.front();
  head.back().point = before ? tail.front().point : joint;
  head.insert(head.end(), tail.begin() + 1, tail.end());
  if (before) vertices = std::move(other.vertices);
  if (vertices.size() > 2 && near(vertices.front().point, vertices.back().point)) {
    vertices.pop_back();
    closed = true;
  }
  return true;
}

void VertexChain::put(GcDbPolyline& line) const {
  while (line.numVerts() > 0) ignore(line.removeVertexAt(line.numVerts() - 1));
  ignore(line.setNormal(normal));
  ignore(line.setElevation(elevation));
  for (size_t i = 0; i < vertices.size(); ++i) {
    const GcDbPolylineVertex& vertex = vertices[i];
    ignore(line.addVertexAt(static_cast<unsigned>(i), vertex.point, vertex.bulge, vertex.startWidth, vertex.endWidth));
  }
  line.setClosed(closed);
}

}  // namespace ed
