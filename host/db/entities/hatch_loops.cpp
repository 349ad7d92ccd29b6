// Loops of hatches made from curves of the drawing.
#include <cmath>
#include <memory>

#include "db/arc.h"
#include "db/circle.h"
#include "db/curve.h"
#include "db/ellipse.h"
#include "db/hatch.h"
#include "db/line.h"
#include "db/polyline.h"
#include "db/polyline2d.h"
#include "db/spline.h"
#include "host/db/curves/from_path.h"
#include "host/db/entities/bulge.h"
#include "host/db/entities/ellipse_axes.h"
#include "host/db/entities/hatch_edges.h"
#include "host/db/entities/planar.h"
#include "host/db/entities/sequence.h"
#include "host/rx/math/elementary.h"

namespace {

// The hatch's plane.
struct Plane {
  GcGeVector3d normal;
  [[nodiscard]] GcGePoint2d flat(const GcGePoint3d& world) const {
    const GcGePoint3d own = gcplanar::toOwn(world, normal);
    return {own.x, own.y};
  }
  [[nodiscard]] GcGeVector2d flat(const GcGeVector3d& world) const {
    const GcGeVector3d own = gcplanar::toOwn(world, normal);
    return {own.x, own.y};
  }
  // Whether curves about the other normal keep their shape when seen along this one.
  [[nodiscard]] bool isParallel(const GcGeVector3d& other) const { return normal.crossProduct(other).length() < 1e-9; }
  // True when a curve about the other normal turns the other way here.
  [[nodiscard]] bool isTurnedOver(const GcGeVector3d& other) const { return normal.dotProduct(other) < 0; }
};

GcDbHatchEdge lineEdge(const GcGePoint2d& from, const GcGePoint2d& to) {
  GcDbHatchEdge edge;
  edge.start = from;
  edge.end = to;
  return edge;
}

// Counter-clockwise from the start angle by a positive sweep, seen against the hatch's normal; angles from its X axis.
GcDbHatchEdge arcEdge(const GcGePoint2d& center, double radius, double startRad, double sweepRad, bool clockwise) {
  GcDbHatchEdge edge;
  edge.type = GcDbHatchEdge::kArc;
  edge.start = center;
  edge.radius = radius;
  edge.isCounterClockwise = !clockwise;
  edge.startRad = clockwise ? gcplanar::inFullTurn(-(startRad + sweepRad)) : gcplanar::inFullTurn(startRad);
  edge.endRad = edge.startRad + sweepRad;
  return edge;
}

void addArc(const GcDbArc& arc, const Plane& plane, GcDbHatchLoop& loop) {
  const bool over = plane.isTurnedOver(arc.normal());
  const GcGeVector2d first = plane.flat(gcplanar::directionAt(over ? arc.endAngle() : arc.startAngle(), arc.normal()));
  loop.edges.append(
      arcEdge(plane.flat(arc.center()), arc.radius(), gc::atan2(first.y, first.x), arc.sweepAngle(), false));
}

void addEllipse(const GcDbEllipse& ellipse, const Plane& plane, GcDbHatchLoop& loop) {
  GcDbHatchEdge edge;
  edge.type = GcDbHatchEdge::kEllipse;
  edge.start = plane.flat(ellipse.center());
  edge.majorAxis = plane.flat(ellipse.majorAxis());
  edge.radius = ellipse.radiusRatio();
  edge.isCounterClockwise = !plane.isTurnedOver(ellipse.normal());
  edge.startRad = ellipse.startParam();
  edge.endRad = ellipse.endParam();
  loop.edges.append(edge);
}

bool addSpline(const GcDbSpline& spline, const Plane& plane, GcDbHatchLoop& loop) {
  if (spline.numControlPoints() == 0) return false;
  GcDbHatchEdge edge;
  edge.type = GcDbHatchEdge::kSpline;
  edge.degree = spline.degree();
  edge.isRational = spline.isRational();
  edge.isPeriodic = spline.isMarkedPeriodic();
  edge.knots = spline.knots();
  for (int i = 0; i < spline.numControlPoints(); ++i) {
    const double weight = i < spline.weights().length() ? spline.weights()[i] : 0;
    edge.controlPoints.append(GcDbHatchSplinePoint{plane.flat(spline.controlPoints()[i]), weight});
  }
  loop.edges.append(edge);
  return true;
}

void addSegment(const GcGePoint2d& from, const GcGePoint2d& to, double bulge, GcDbHatchLoop& loop) {
  if (bulge == 0) {
    loop.edges.append(lineEdge(from, to));
    return;
  }
  const gcbulge::Arc arc = gcbulge::arcOf(from, to, bulge);
  const bool clockwise = arc.sweepRad < 0;
  const double start = clockwise ? arc.startRad + arc.sweepRad : arc.startRad;
  loop.edges.append(arcEdge(arc.center, arc.radius, start, std::fabs(arc.sweepRad), clockwise));
}

// A closed polyline that is the whole loop stays one; others give their segments.
void addVertices(const GcArray<GcDbHatchVertex>& vertices, bool closed, bool alone, GcDbHatchLoop& loop) {
  const int count = vertices.length();
  if (alone && closed) {
    constexpr int kPolyline = 2;
    loop.flags |= kPolyline;
    loop.vertices = vertices;
    for (const GcDbHatchVertex& vertex : vertices) loop.hasBulge = loop.hasBulge || vertex.bulge != 0;
    return;
  }
  for (int i = 0; i + 1 < count || (closed && i < count); ++i)
    addSegment(vertices[i].point, vertices[(i + 1) % count].point, vertices[i].bulge, loop);
}

void addPolyline(const GcDbPolyline& polyline, const Plane& plane, bool alone, GcDbHatchLoop& loop) {
  GcArray<GcDbHatchVertex> vertices;
  const double sense = plane.isTurnedOver(polyline.normal()) ? -1.0 : 1.0;
  for (unsigned i = 0; i < polyline.numVerts(); ++i) {
    GcGePoint3d at;
    ignore(polyline.getPointAt(i, at));
    vertices.append(GcDbHatchVertex{plane.flat(at), sense * polyline.vertices()[static_cast<int>(i)].bulge});
  }
  addVertices(vertices, polyline.isClosed(), alone, loop);
}

void addOldPolyline(const GcDb2dPolyline& polyline, const Plane& plane, bool alone, GcDbHatchLoop& loop) {
  GcArray<GcDbHatchVertex> vertices;
  const double sense = plane.isTurnedOver(polyline.normal()) ? -1.0 : 1.0;
  gcsequence::forEach<GcDb2dVertex>(polyline, [&](const GcDb2dVertex& vertex) {
    if (vertex.vertexType() == GcDb2dVertex::k2dSplineCtlVertex) return;
    const GcGePoint3d own(vertex.position().x, vertex.position().y, polyline.elevation());
    vertices.append(GcDbHatchVertex{plane.flat(gcplanar::toWorld(own, polyline.normal())), sense * vertex.bulge()});
  });
  addVertices(vertices, polyline.isClosed(), alone, loop);
}

// An arc of conjugate radii: of a circle where these are of one length at right angles, else of an ellipse.
void addRound(const GcGePoint2d& center, const GcGeVector3d& a, const GcGeVector3d& b, double sweepRad,
              GcDbHatchLoop& loop) {
  const gcellipse::Axes axes = gcellipse::principalAxes(a, sweepRad < 0 ? -b : b);
  GcDbHatchEdge edge;
  edge.type = GcDbHatchEdge::kEllipse;
  edge.start = center;
  edge.majorAxis = {axes.major.x, axes.major.y};
  edge.radius = axes.ratio;
  edge.isCounterClockwise = axes.normal.z >= 0;
  edge.startRad = gcplanar::inFullTurn(-axes.shiftRad);
  edge.endRad = edge.startRad + std::fabs(sweepRad);
  loop.edges.append(edge);
}

void addBezier(const GcGePath& path, const GcGeSpan& span, GcDbHatchLoop& loop) {
  GcGePole poles[GcGeSpan::kMostDegree + 1];
  gcgeTrimBezier(path.poles() + span.firstPole, span.degree, span.u0, span.u1, poles);
  GcDbHatchEdge edge;
  edge.type = GcDbHatchEdge::kSpline;
  edge.degree = span.degree;
  edge.isRational = span.rational;
  for (int i = 0; i <= span.degree; ++i) {
    const GcGePoint3d at = path.origin() + poles[i].point();
    edge.controlPoints.append(GcDbHatchSplinePoint{{at.x, at.y}, span.rational ? poles[i].w : 0});
  }
  for (int i = 0; i < 2 * (span.degree + 1); ++i) edge.knots.append(i <= span.degree ? 0 : 1);
  loop.edges.append(edge);
}

// Any curve, piece by piece, as it looks along the normal.
bool addPath(const GcGePath& world, const Plane& plane, GcDbHatchLoop& loop) {
  if (!world.isBounded()) return false;
  GcGeMatrix3d toPlane;
  toPlane.setToWorldToPlane(plane.normal);
  GcGeMatrix3d flatten;
  flatten.entry[2][2] = 0;
  const GcGePath path = world.transformed(toPlane).transformed(flatten);
  const auto at = [&](const GcGeSpan& span, double u) {
    const GcGePoint3d p = path.origin() + gcgePointAt(span, path.poles(), u);
    return GcGePoint2d(p.x, p.y);
  };
  for (const GcGeSpan& span : path.spans()) {
    if (span.kind == GcGeSpan::Kind::Line) {
      loop.edges.append(lineEdge(at(span, span.u0), at(span, span.u1)));
    } else if (span.kind == GcGeSpan::Kind::Bezier) {
      addBezier(path, span, loop);
    } else {
      const double f = span.sweep * span.u0;
      const GcGeVector3d a = span.b * gc::cos(f) + span.c * gc::sin(f);
      const GcGeVector3d b = span.c * gc::cos(f) - span.b * gc::sin(f);
      const GcGePoint3d center = path.origin() + span.center();
      addRound({center.x, center.y}, a, b, span.sweep * (span.u1 - span.u0), loop);
    }
  }
  return !path.isEmpty();
}

bool addLevelCurve(GcDbEntity& entity, const Plane& plane, bool alone, GcDbHatchLoop& loop) {
  if (const auto* line = GcDbLine::cast(&entity)) {
    loop.edges.append(lineEdge(plane.flat(line->startPoint()), plane.flat(line->endPoint())));
  } else if (const auto* circle = GcDbCircle::cast(&entity)) {
    if (!plane.isParallel(circle->normal())) return false;
    loop.edges.append(arcEdge(plane.flat(circle->center()), circle->radius(), 0, gcplanar::kTwoPi, false));
  } else if (const auto* arc = GcDbArc::cast(&entity)) {
    if (!plane.isParallel(arc->normal())) return false;
    addArc(*arc, plane, loop);
  } else if (const auto* ellipse = GcDbEllipse::cast(&entity)) {
    if (!plane.isParallel(ellipse->normal())) return false;
    addEllipse(*ellipse, plane, loop);
  } else if (const auto* spline = GcDbSpline::cast(&entity)) {
    return addSpline(*spline, plane, loop);
  } else if (const auto* polyline = GcDbPolyline::cast(&entity)) {
    if (!plane.isParallel(polyline->normal())) return false;
    addPolyline(*polyline, plane, alone, loop);
  } else if (const auto* old = GcDb2dPolyline::cast(&entity)) {
    if (!plane.isParallel(old->normal())) return false;
    addOldPolyline(*old, plane, alone, loop);
  } else {
    return false;
  }
  return true;
}

}  // namespace

bool gchatch::appendCurve(GcDbEntity& entity, const GcGeVector3d& normal, bool alone, GcDbHatchLoop& loop) {
  const Plane plane{normal};
  if (addLevelCurve(entity, plane, alone, loop)) return true;
  const GcDbCurve* curve = GcDbCurve::cast(&entity);
  GcGePath path;
  return curve != nullptr && curve->subPath(path) == Gcad::eOk && addPath(path, plane, loop);
}

bool gchatch::appendPath(const GcGePath& path, const GcGeVector3d& normal, GcDbHatchLoop& loop) {
  const Plane plane{normal};
  const GcDbPolyline* line = nullptr;
  const bool isWholeArc = path.spans().size() == 1 && path.spans()[0].kind == GcGeSpan::Kind::Arc;
  const std::unique_ptr<GcDbCurve> made(isWholeArc ? nullptr : gcdbPolylineFromPath(path, normal));
  if (made != nullptr) line = GcDbPolyline::cast(made.get());
  if (line == nullptr) return addPath(path, plane, loop);
  addPolyline(*line, plane, true, loop);
  return true;
}

// The curves may come in any order and direction; together they must close.
Gcad::ErrorStatus GcDbHatch::makeLoop(int loopType, const GcDbObjectIdArray& curves, GcDbHatchLoop& loop) const {
  if (curves.isEmpty()) return Gcad::eInvalidInput;
  constexpr int kPolyline = 2;
  constexpr int kDerived = 4;
  loop.flags = (loopType & ~kPolyline) | (m_isAssociative ? kDerived : 0);
  GcArray<int> pieces;
  for (const GcDbObjectId id : curves) {
    GcDbEntity* entity = nullptr;
    const Gcad::ErrorStatus status = gcdbOpenObject(entity, id, GcDb::kForRead);
    if (status != Gcad::eOk) return status;
    const int before = loop.edges.length();
    const bool bounds = gchatch::appendCurve(*entity, m_normal, curves.length() == 1, loop);
    ignore(entity->close());
    if (!bounds) return Gcad::eInvalidInput;
    pieces.append(loop.edges.length() - before);
  }
  if (!gchatch::chain(loop.edges, pieces)) return Gcad::eInvalidInput;
  if (m_isAssociative) loop.sources = curves;
  return Gcad::eOk;
}
