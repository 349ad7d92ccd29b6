// Questions to one curve. Nothing in the drawing changes.
//
// Deliberate: they differ in what they answer for an entity that is no curve (a message, nil, or 0.0) and in whether
// a query that the curve refuses gives nil or the zero that the result began with.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"

namespace {

using Gcad::ErrorStatus;
using Predicate = bool (GcDbCurve::*)() const;
using RealOfCurve = ErrorStatus (GcDbCurve::*)(double&) const;
using PointOfCurve = ErrorStatus (GcDbCurve::*)(GcGePoint3d&) const;
using RealAtReal = ErrorStatus (GcDbCurve::*)(double, double&) const;
using PointAtReal = ErrorStatus (GcDbCurve::*)(double, GcGePoint3d&) const;
using VectorAtReal = ErrorStatus (GcDbCurve::*)(double, GcGeVector3d&) const;
using RealAtPoint = ErrorStatus (GcDbCurve::*)(const GcGePoint3d&, double&) const;

int answer(double value) { return ret::real(value); }
int answer(const GcGePoint3d& point) { return ret::point(point); }
int answer(const GcGeVector3d& vector) { return ret::vector(vector); }

// T or nil; nil for what is no curve.
int test(Predicate query) {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  return ret::truth(curve && ((*curve).*query)());
}

// A value of the whole curve; nil for what is no curve and when the curve refuses.
template <class Value>
int ofCurve(ErrorStatus (GcDbCurve::*query)(Value&) const) {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  Value value{};
  if (!curve || ((*curve).*query)(value) != Gcad::eOk) return ret::nil();
  return answer(value);
}

// A value at a parameter or distance; zero when the curve refuses.
template <class Value>
int atReal(ErrorStatus (GcDbCurve::*query)(double, Value&) const) {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const double where = args.real();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  if (!curve) return args.wrongType();
  Value value{};
  ignore(((*curve).*query)(where, value));
  return answer(value);
}

// A value at a point of the curve; nil when the curve refuses.
int atPoint(RealAtPoint query) {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const GcGePoint3d point = args.point();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  if (!curve) return args.wrongType();
  double value = 0;
  return ((*curve).*query)(point, value) == Gcad::eOk ? ret::real(value) : ret::nil();
}

}  // namespace

int curveIsClosed() { return test(&GcDbCurve::isClosed); }
int curveIsPeriodic() { return test(&GcDbCurve::isPeriodic); }
int curveIsPlanar() { return test(&GcDbCurve::isPlanar); }

int curveGetStartPoint() { return ofCurve(PointOfCurve{&GcDbCurve::getStartPoint}); }
int curveGetEndPoint() { return ofCurve(PointOfCurve{&GcDbCurve::getEndPoint}); }
int curveGetStartParam() { return ofCurve(RealOfCurve{&GcDbCurve::getStartParam}); }
int curveGetEndParam() { return ofCurve(RealOfCurve{&GcDbCurve::getEndParam}); }

int curveGetDistAtParam() { return atReal(RealAtReal{&GcDbCurve::getDistAtParam}); }
int curveGetParamAtDist() { return atReal(RealAtReal{&GcDbCurve::getParamAtDist}); }
int curveGetPointAtParam() { return atReal(PointAtReal{&GcDbCurve::getPointAtParam}); }
int curveGetPointAtDist() { return atReal(PointAtReal{&GcDbCurve::getPointAtDist}); }
int curveGetFirstDeriv() { return atReal(VectorAtReal{&GcDbCurve::getFirstDeriv}); }
int curveGetSecondDeriv() { return atReal(VectorAtReal{&GcDbCurve::getSecondDeriv}); }

int curveGetDistAtPoint() { return atPoint(&GcDbCurve::getDistAtPoint); }
int curveGetParamAtPoint() { return atPoint(&GcDbCurve::getParamAtPoint); }

// 0.0 for what is no curve and for a curve without area.
int curveGetArea() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  double area = 0;
  if (curve) ignore(curve->getArea(area));
  return ret::real(area);
}

int curveGetClosestPointTo() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const GcGePoint3d point = args.point();
  const bool extend = args.optionalFlag();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  if (!curve) return args.wrongType();
  GcGePoint3d closest;
  ignore(curve->getClosestPointTo(point, closest, extend));
  return ret::point(closest);
}

// Unlike with its plain sister the flag must be there.
int curveGetClosestPointToProjection() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const GcGePoint3d point = args.point();
  const GcGePoint3d direction = args.point();
  const bool extend = args.flag();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  if (!curve) return args.wrongType();
  GcGePoint3d closest;
  ignore(curve->getClosestPointTo(point, direction.asVector(), closest, extend));
  return ret::point(closest);
}
