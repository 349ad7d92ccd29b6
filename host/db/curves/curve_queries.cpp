// What every curve answers from its path: ends, points, parameters, distances, derivatives, nearness, area.
#include <cmath>
#include <limits>

#include "host/db/curves/curve_path.h"

namespace {

// How far off the curve a point given by a program may lie: the path's tolerance and the rounding of the point.
double tolFor(const GcGePath& path, const GcGePoint3d& point) {
  constexpr double kRounding = 16 * std::numeric_limits<double>::epsilon();
  return path.tolerance() + kRounding * point.asVector().length();
}

// Derivatives by knots that lie close together may leave the range of numbers.
bool isFinite(const GcGeVector3d& v) { return std::isfinite(v.x + v.y + v.z); }

bool isFinite(const GcGePoint3d& p) { return std::abs(p.x) + std::abs(p.y) + std::abs(p.z) < GcGePath::kMostNumber; }

Gcad::ErrorStatus placeOf(const GcGePath& path, const GcGePoint3d& point, GcGeOnPath& place) {
  if (!isFinite(point)) return Gcad::eInvalidInput;
  place = path.closestTo(point);
  return place.span >= 0 && place.distance <= tolFor(path, point) ? Gcad::eOk : Gcad::eInvalidInput;
}

Gcad::ErrorStatus endParam(double t, double& param) {
  if (!std::isfinite(t)) return Gcad::eNotApplicable;
  param = t;
  return Gcad::eOk;
}

}  // namespace

Gcad::ErrorStatus GcDbCurve::subPath(GcGePath&) const { return Gcad::eNotApplicable; }

bool GcDbCurve::isClosed() const {
  const GcDbCurvePath path(*this);
  return path.status() == Gcad::eOk && path->isClosed();
}

bool GcDbCurve::isPeriodic() const {
  const GcDbCurvePath path(*this);
  return path.status() == Gcad::eOk && path->isPeriodic();
}

bool GcDbCurve::isPlanar() const {
  const GcDbCurvePath path(*this);
  GcGeVector3d normal;
  return path.status() == Gcad::eOk && path->isPlanar(normal);
}

Gcad::ErrorStatus GcDbCurve::getStartParam(double& param) const {
  const GcDbCurvePath path(*this);
  return path.status() == Gcad::eOk ? endParam(path->startParam(), param) : path.status();
}

Gcad::ErrorStatus GcDbCurve::getEndParam(double& param) const {
  const GcDbCurvePath path(*this);
  return path.status() == Gcad::eOk ? endParam(path->endParam(), param) : path.status();
}

Gcad::ErrorStatus GcDbCurve::getStartPoint(GcGePoint3d& point) const {
  double t = 0;
  const Gcad::ErrorStatus status = getStartParam(t);
  return status == Gcad::eOk ? getPointAtParam(t, point) : status;
}

// A closed curve ends exactly where it starts.
Gcad::ErrorStatus GcDbCurve::getEndPoint(GcGePoint3d& point) const {
  if (isClosed()) return getStartPoint(point);
  double t = 0;
  const Gcad::ErrorStatus status = getEndParam(t);
  return status == Gcad::eOk ? getPointAtParam(t, point) : status;
}

Gcad::ErrorStatus GcDbCurve::getPointAtParam(double param, GcGePoint3d& point) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  return std::isfinite(param) && path->pointAt(param, point) ? Gcad::eOk : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbCurve::getParamAtPoint(const GcGePoint3d& point, double& param) const {
  const GcDbCurvePath path(*this);
  GcGeOnPath place;
  Gcad::ErrorStatus status = path.status();
  if (status == Gcad::eOk) status = placeOf(*path, point, place);
  if (status == Gcad::eOk) param = path->paramOf(place);
  return status;
}

Gcad::ErrorStatus GcDbCurve::getDistAtParam(double param, double& dist) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  return std::isfinite(param) && path->distAt(param, dist) ? Gcad::eOk : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbCurve::getParamAtDist(double dist, double& param) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  return std::isfinite(dist) && path->paramAtDist(dist, param) ? Gcad::eOk : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbCurve::getDistAtPoint(const GcGePoint3d& point, double& dist) const {
  double t = 0;
  const Gcad::ErrorStatus status = getParamAtPoint(point, t);
  return status == Gcad::eOk ? getDistAtParam(t, dist) : status;
}

Gcad::ErrorStatus GcDbCurve::getPointAtDist(double dist, GcGePoint3d& point) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  double t = 0;
  return std::isfinite(dist) && path->paramAtDist(dist, t) && path->pointAt(t, point) ? Gcad::eOk : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbCurve::getFirstDeriv(double param, GcGeVector3d& deriv) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  GcGeJet jet;
  if (!std::isfinite(param) || !path->jetAt(param, jet) || !isFinite(jet.first)) return Gcad::eInvalidInput;
  deriv = jet.first;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbCurve::getFirstDeriv(const GcGePoint3d& point, GcGeVector3d& deriv) const {
  double t = 0;
  const Gcad::ErrorStatus status = getParamAtPoint(point, t);
  return status == Gcad::eOk ? getFirstDeriv(t, deriv) : status;
}

Gcad::ErrorStatus GcDbCurve::getSecondDeriv(double param, GcGeVector3d& deriv) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  GcGeJet jet;
  if (!std::isfinite(param) || !path->jetAt(param, jet) || !isFinite(jet.second)) return Gcad::eInvalidInput;
  deriv = jet.second;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbCurve::getSecondDeriv(const GcGePoint3d& point, GcGeVector3d& deriv) const {
  double t = 0;
  const Gcad::ErrorStatus status = getParamAtPoint(point, t);
  return status == Gcad::eOk ? getSecondDeriv(t, deriv) : status;
}

Gcad::ErrorStatus GcDbCurve::getClosestPointTo(const GcGePoint3d& given, GcGePoint3d& closest, bool extend) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  if (!isFinite(given)) return Gcad::eInvalidInput;
  GcGeOnPath place = extend ? path->extended().closestTo(given) : path->closestTo(given);
  if (place.span < 0) return Gcad::eDegenerateGeometry;
  closest = path->origin() + place.point;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbCurve::getClosestPointTo(const GcGePoint3d& given, const GcGeVector3d& direction,
                                               GcGePoint3d& closest, bool extend) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  const double size = direction.length();
  const bool hasSize = size > GcGePath::kLeastSize && size < GcGePath::kMostNumber;
  if (!isFinite(given) || !hasSize) return Gcad::eInvalidInput;
  const GcGePath whole = extend ? path->extended() : *path;
  const GcGeVector3d unit = direction / size;
  const GcGeVector3d off = given - path->origin();
  const GcGeOnPath place = whole.flattened(unit).closestTo(path->origin() + (off - unit * unit.dotProduct(off)));
  if (place.span < 0) return Gcad::eDegenerateGeometry;
  closest = path->origin() + whole.pointOn(place.span, place.u);
  return Gcad::eOk;
}

// Straight curves enclose nothing.
Gcad::ErrorStatus GcDbCurve::getArea(double& area) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  if (!path->isBounded()) return Gcad::eNotApplicable;
  GcGeVector3d normal;
  if (!path->isPlanar(normal)) return Gcad::eNonPlanarEntity;
  area = std::abs(path->vectorArea().dotProduct(normal));
  return Gcad::eOk;
}
