#include "host/db/curves/from_path.h"

#include <memory>
#include <numbers>

#include "db/arc.h"
#include "db/circle.h"
#include "db/ellipse.h"
#include "db/line.h"
#include "db/polyline.h"
#include "db/xline.h"
#include "host/db/curves/spline_from_path.h"
#include "host/db/entities/ellipse_axes.h"
#include "host/db/entities/planar.h"
#include "host/rx/math/elementary.h"

namespace {

using Kind = GcGeSpan::Kind;
constexpr double kTwoPi = 2 * std::numbers::pi;

GcDbCurve* fromLine(const GcGePath& path) {
  const GcGeSpan& s = path.spans()[0];
  const GcGePoint3d& origin = path.origin();
  if (s.isBounded()) {
    GcDbLine* line = new GcDbLine(origin + path.pointOn(0, s.u0), origin + path.pointOn(0, s.u1));
    return line;
  }
  if (std::isinf(s.u0) && std::isinf(s.u1)) {
    GcDbXline* line = new GcDbXline;
    ignore(line->setBasePoint(origin + s.a));
    ignore(line->setUnitDir(s.b));
    return line;
  }
  GcDbRay* ray = new GcDbRay;
  const bool forward = std::isfinite(s.u0);
  ignore(ray->setBasePoint(origin + s.a + s.b * (forward ? s.u0 : s.u1)));
  ignore(ray->setUnitDir(forward ? s.b : -s.b));
  return ray;
}

GcDbCurve* fromCircular(const GcGePath& path) {
  const GcGeSpan& s = path.spans()[0];
  const GcGeVector3d normal = s.b.crossProduct(s.c).normal() * (s.sweep < 0 ? -1.0 : 1.0);
  const GcGePoint3d center = path.origin() + s.center();
  const double radius = s.b.length();
  if (path.isClosed()) return new GcDbCircle(center, normal, radius);
  const double start = gcplanar::angleOf(path.pointOn(0, s.u0) - s.center(), normal);
  const double sweep = std::abs(s.sweep) * (s.u1 - s.u0);
  return new GcDbArc(center, normal, radius, start, gcplanar::inFullTurn(start + sweep));
}

GcDbCurve* fromElliptic(const GcGePath& path) {
  const GcGeSpan& s = path.spans()[0];
  const GcGeVector3d y = s.sweep < 0 ? -s.c : s.c;
  const gcellipse::Axes axes = gcellipse::principalAxes(s.b, y);
  if (axes.normal.lengthSqrd() == 0 || !(axes.ratio > 0)) return nullptr;
  const GcGeVector3d minor = axes.normal.crossProduct(axes.major) * axes.ratio;
  const auto paramOf = [&](const GcGeVector3d& from) {
    return gcplanar::inFullTurn(
        gc::atan2(from.dotProduct(minor) / minor.lengthSqrd(), from.dotProduct(axes.major) / axes.major.lengthSqrd()));
  };
  const double sweep = std::abs(s.sweep) * (s.u1 - s.u0);
  const double start = path.isClosed() ? 0 : paramOf(path.pointOn(0, s.u0) - s.center());
  return new GcDbEllipse(path.origin() + s.center(), axes.normal, axes.major, axes.ratio, start,
                         start + (path.isClosed() ? kTwoPi : sweep));
}

// An arc of a whole turn has no bulge; two halves have.
void addSegment(GcDbPolyline& polyline, const GcGeMatrix3d& toOwn, const GcGeVector3d& normal, const GcGePath& path,
                int index) {
  const GcGeSpan& s = path.spans()[index];
  const auto add = [&](double u, double bulge) {
    const GcGePoint3d own = toOwn * (path.origin() + path.pointOn(index, u));
    ignore(polyline.addVertexAt(polyline.numVerts(), GcGePoint2d(own.x, own.y), bulge, 0, 0));
  };
  if (s.kind == Kind::Line) return add(s.u0, 0);
  const double sense = s.b.crossProduct(s.c).dotProduct(normal) < 0 ? -1 : 1;
  const double sweep = s.sweep * (s.u1 - s.u0) * sense;
  constexpr double kMostTurn = 0.99 * kTwoPi;
  if (std::abs(sweep) < kMostTurn) return add(s.u0, gc::tan(sweep / 4));
  add(s.u0, gc::tan(sweep / 8));
  add((s.u0 + s.u1) / 2, gc::tan(sweep / 8));
}

}  // namespace

GcDbCurve* gcdbPolylineFromPath(const GcGePath& path, const GcGeVector3d& normal) {
  if (path.isEmpty() || !path.isBounded()) return nullptr;
  const GcGeVector3d start = path.pointOn(0, path.spans()[0].u0);
  const double tol = 100 * path.tolerance();
  for (int i = 0; i < static_cast<int>(path.spans().size()); ++i) {
    const GcGeSpan& s = path.spans()[i];
    if (s.kind == Kind::Bezier || (s.kind == Kind::Arc && !s.circular)) return nullptr;
    for (const double u : {s.u0, s.u1, (s.u0 + s.u1) / 2})
      if (std::abs((path.pointOn(i, u) - start).dotProduct(normal)) > tol) return nullptr;
  }
  GcGeMatrix3d toOwn;
  toOwn.setToWorldToPlane(normal);
  auto polyline = std::make_unique<GcDbPolyline>();
  ignore(polyline->setNormal(normal));
  ignore(polyline->setElevation((toOwn * (path.origin() + start)).z));
  const int count = static_cast<int>(path.spans().size());
  for (int i = 0; i < count; ++i) addSegment(*polyline, toOwn, normal, path, i);
  if (!path.isClosed()) {
    const GcGePoint3d end = toOwn * (path.origin() + path.pointOn(count - 1, path.spans()[count - 1].u1));
    ignore(polyline->addVertexAt(polyline->numVerts(), GcGePoint2d(end.x, end.y), 0, 0, 0));
  }
  polyline->setClosed(path.isClosed());
  return polyline.release();
}

GcDbCurve* gcdbCurveFromPath(const GcGePath& path, const GcGeVector3d& normal) {
  if (path.isEmpty()) return nullptr;
  if (path.spans().size() == 1) {
    const GcGeSpan& s = path.spans()[0];
    if (s.kind == Kind::Line) return fromLine(path);
    if (s.kind == Kind::Arc) return s.circular ? fromCircular(path) : fromElliptic(path);
  }
  if (GcDbCurve* polyline = gcdbPolylineFromPath(path, normal)) return polyline;
  return gcdbSplineFromPath(path);
}
