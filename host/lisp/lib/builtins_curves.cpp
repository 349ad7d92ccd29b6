// Curves of the drawing: the functions programs call by their vlax-curve names, over entity names.
#include "db/curve.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/names.h"
#include "host/rx/view.h"

using lisp::LispValue;

LISP_GROUP("Geometry of the drawing")

namespace {

// The curve of the first argument, open for read while this lives. Anything else raises an error.
class CurveArgument {
 public:
  explicit CurveArgument(lisp::Args& args) {
    const LispValue name = args.peek();
    const GcDbObjectId id = lisplib::idOfWord(args.entityName());
    if (gcdbOpenObject(m_curve, id, GcDb::kForRead) != Gcad::eOk) lisp::failType(args.vm(), "curve", name);
  }
  ~CurveArgument() { ignore(m_curve->close()); }
  CurveArgument(const CurveArgument&) = delete;
  CurveArgument& operator=(const CurveArgument&) = delete;
  const GcDbCurve* operator->() const { return m_curve; }

 private:
  GcDbCurve* m_curve = nullptr;
};

GcGePoint3d pointArgument(lisp::Args& args) {
  double at[3];
  args.point(at);
  return {at[0], at[1], at[2]};
}

// What a query gave; nil when there is no such place on the curve. By reference: the query, an argument as well, fills
// the value in.
LispValue given(lisp::Args& args, Gcad::ErrorStatus status, const GcGePoint3d& point) {
  const double at[] = {point.x, point.y, point.z};
  return status == Gcad::eOk ? args.newPoint(at, 3) : LispValue::nil();
}
LispValue given(Gcad::ErrorStatus status, const double& number) {
  return status == Gcad::eOk ? LispValue::real(number) : LispValue::nil();
}

}  // namespace

LISP_BUILTIN("vlax-curve-getstartparam", "(vlax-curve-getstartparam curve) -> real | nil", "Parameter of the start.") {
  const CurveArgument curve(args);
  double param = 0;
  return given(curve->getStartParam(param), param);
}

LISP_BUILTIN("vlax-curve-getendparam", "(vlax-curve-getendparam curve) -> real | nil", "Parameter of the end.") {
  const CurveArgument curve(args);
  double param = 0;
  return given(curve->getEndParam(param), param);
}

LISP_BUILTIN("vlax-curve-getstartpoint", "(vlax-curve-getstartpoint curve) -> point | nil",
             "The curve's start, world coordinates.") {
  const CurveArgument curve(args);
  GcGePoint3d point;
  return given(args, curve->getStartPoint(point), point);
}

LISP_BUILTIN("vlax-curve-getendpoint", "(vlax-curve-getendpoint curve) -> point | nil",
             "The curve's end, world coordinates.") {
  const CurveArgument curve(args);
  GcGePoint3d point;
  return given(args, curve->getEndPoint(point), point);
}

LISP_BUILTIN("vlax-curve-getpointatparam", "(vlax-curve-getpointatparam curve param) -> point | nil",
             "The point at a parameter; nil off the curve.") {
  const CurveArgument curve(args);
  GcGePoint3d point;
  const double param = args.real();
  return given(args, curve->getPointAtParam(param, point), point);
}

LISP_BUILTIN("vlax-curve-getpointatdist", "(vlax-curve-getpointatdist curve distance) -> point | nil",
             "The point at a length along the curve; nil off the curve.") {
  const CurveArgument curve(args);
  GcGePoint3d point;
  const double dist = args.real();
  return given(args, curve->getPointAtDist(dist, point), point);
}

LISP_BUILTIN("vlax-curve-getparamatpoint", "(vlax-curve-getparamatpoint curve point) -> real | nil",
             "The parameter of a point on the curve; nil off it.") {
  const CurveArgument curve(args);
  double param = 0;
  const GcGePoint3d point = pointArgument(args);
  return given(curve->getParamAtPoint(point, param), param);
}

LISP_BUILTIN("vlax-curve-getparamatdist", "(vlax-curve-getparamatdist curve distance) -> real | nil",
             "The parameter at a length along the curve.") {
  const CurveArgument curve(args);
  double param = 0;
  const double dist = args.real();
  return given(curve->getParamAtDist(dist, param), param);
}

LISP_BUILTIN("vlax-curve-getdistatparam", "(vlax-curve-getdistatparam curve param) -> real | nil",
             "The length from the start to a parameter.") {
  const CurveArgument curve(args);
  double dist = 0;
  const double param = args.real();
  return given(curve->getDistAtParam(param, dist), dist);
}

LISP_BUILTIN("vlax-curve-getdistatpoint", "(vlax-curve-getdistatpoint curve point) -> real | nil",
             "The length from the start to a point on the curve; nil off it.") {
  const CurveArgument curve(args);
  double dist = 0;
  const GcGePoint3d point = pointArgument(args);
  return given(curve->getDistAtPoint(point, dist), dist);
}

LISP_BUILTIN("vlax-curve-getfirstderiv", "(vlax-curve-getfirstderiv curve param) -> vector | nil",
             "The first derivative at a parameter.") {
  const CurveArgument curve(args);
  GcGeVector3d derivative;
  const double param = args.real();
  const Gcad::ErrorStatus status = curve->getFirstDeriv(param, derivative);
  return given(args, status, {derivative.x, derivative.y, derivative.z});
}

LISP_BUILTIN("vlax-curve-getsecondderiv", "(vlax-curve-getsecondderiv curve param) -> vector | nil",
             "The second derivative at a parameter.") {
  const CurveArgument curve(args);
  GcGeVector3d derivative;
  const double param = args.real();
  const Gcad::ErrorStatus status = curve->getSecondDeriv(param, derivative);
  return given(args, status, {derivative.x, derivative.y, derivative.z});
}

LISP_BUILTIN("vlax-curve-getclosestpointto", "(vlax-curve-getclosestpointto curve point [extend]) -> point | nil",
             "The curve's point nearest to a point; with extend, of the curve prolonged.") {
  const CurveArgument curve(args);
  const GcGePoint3d from = pointArgument(args);
  GcGePoint3d point;
  return given(args, curve->getClosestPointTo(from, point, args.moreNotNil()), point);
}

LISP_BUILTIN("vlax-curve-getclosestpointtoprojection",
             "(vlax-curve-getclosestpointtoprojection curve point normal [extend]) -> point | nil",
             "The curve's point nearest to a point as seen along a direction.") {
  const CurveArgument curve(args);
  const GcGePoint3d from = pointArgument(args);
  const GcGeVector3d direction = pointArgument(args).asVector();
  GcGePoint3d point;
  return given(args, curve->getClosestPointTo(from, direction, point, args.moreNotNil()), point);
}

LISP_BUILTIN("vlax-curve-getarea", "(vlax-curve-getarea curve) -> real | nil",
             "The area within the curve; an open one is closed by a straight line.") {
  const CurveArgument curve(args);
  double area = 0;
  return given(curve->getArea(area), area);
}

LISP_BUILTIN("vlax-curve-isclosed", "(vlax-curve-isclosed curve) -> T | nil", "Whether the end meets the start.") {
  return LispValue::boolean(CurveArgument(args)->isClosed());
}

LISP_BUILTIN("vlax-curve-isperiodic", "(vlax-curve-isperiodic curve) -> T | nil",
             "Whether the curve goes round without an end.") {
  return LispValue::boolean(CurveArgument(args)->isPeriodic());
}

LISP_BUILTIN("vlax-curve-isplanar", "(vlax-curve-isplanar curve) -> T | nil", "Whether one plane holds the curve.") {
  return LispValue::boolean(CurveArgument(args)->isPlanar());
}
