#include "host/ed/vertexchain.h"

#include <algorithm>
#include <cmath>

#include "db/arc.h"
#include "db/circle.h"
#include "db/line.h"
#include "db/polyline2d.h"
#include "ge/matrix3d.h"
#include "host/ed/editedpolyline.h"
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
  if (const auto* old = GcDb2dPolyline::cast(&entity)) {
    EditedPolyline edited;
    if (!edited.take(old->objectId())) return false;
    for (const EditedVertex& vertex : edited.vertices) vertices.push_back(vertex.flat);
    closed = edited.closed;
    elevation = old->elevation();
    normal = old->normal();
    return vertices.size() > 1;
  }
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

namespace {

// Where the straight lines through both last segments meet; false for arcs, parallel lines and points that lie farther
// from either end than the gap may be wide.
bool meetNear(const GcDbPolylineVertex& a, const GcGePoint2d& aEnd, const GcDbPolylineVertex& b,
              const GcGePoint2d& bEnd, double bulgeOfB, double tolerance, GcGePoint2d& at) {
  if (a.bulge != 0 || bulgeOfB != 0) return false;
  const GcGeVector2d u(aEnd.x - a.point.x, aEnd.y - a.point.y), v(bEnd.x - b.point.x, bEnd.y - b.point.y);
  const double cross = u.x * v.y - u.y * v.x;
  if (std::fabs(cross) <= 1e-9 * u.length() * v.length()) return false;
  const double t = ((b.point.x - a.point.x) * v.y - (b.point.y - a.point.y) * v.x) / cross;
  const GcGePoint2d crossing(a.point.x + u.x * t, a.point.y + u.y * t);
  if (distance(crossing, aEnd) > 2 * tolerance || distance(crossing, bEnd) > 2 * tolerance) return false;
  at = crossing;
  return true;
}

}  // namespace

bool VertexChain::join(VertexChain other, double tolerance, Gap gap) {
  if (closed || other.closed || !isInPlaneOf(other)) return false;
  const auto near = [](const GcGePoint2d& a, const GcGePoint2d& b, double most) {
    const double size = 1 + std::max(std::fabs(a.x), std::fabs(a.y));
    return distance(a, b) <= std::max(most, kSamePlane * size);
  };
  const GcGePoint2d start = vertices.front().point;
  const GcGePoint2d end = vertices.back().point;
  const GcGePoint2d otherStart = other.vertices.front().point;
  const GcGePoint2d otherEnd = other.vertices.back().point;
  bool before = false;
  if (near(end, otherStart, tolerance)) {
  } else if (near(end, otherEnd, tolerance)) {
    other.reverse();
  } else if (near(start, otherEnd, tolerance)) {
    before = true;
  } else if (near(start, otherStart, tolerance)) {
    other.reverse();
    before = true;
  } else {
    return false;
  }
  std::vector<GcDbPolylineVertex>& head = before ? other.vertices : vertices;
  std::vector<GcDbPolylineVertex>& tail = before ? vertices : other.vertices;
  const GcGePoint2d headEnd = head.back().point, tailStart = tail.front().point;
  const bool apart = !near(headEnd, tailStart, 0);
  GcGePoint2d joint = before ? tailStart : headEnd;
  const bool meets = apart && gap != Gap::Add &&
                     meetNear(head[head.size() - 2], headEnd, tail[1], tailStart, tail.front().bulge, tolerance, joint);
  if (apart && !meets && gap != Gap::Extend) {
    head.back().bulge = 0;
    head.insert(head.end(), tail.begin(), tail.end());
  } else {
    head.back() = tail.front();
    head.back().point = joint;
    head.insert(head.end(), tail.begin() + 1, tail.end());
  }
  if (before) vertices = std::move(other.vertices);
  if (vertices.size() > 2 && near(vertices.front().point, vertices.back().point, tolerance)) {
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
