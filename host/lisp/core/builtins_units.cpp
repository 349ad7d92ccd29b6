// Numbers as text in drawing units, and geometry helpers.
#include <cmath>

#include "host/lisp/core/builtin.h"
#include "host/lisp/core/units.h"
#include "host/lisp/core/vm.h"
#include "host/rx/math/elementary.h"

LISP_GROUP("Units and geometry")

namespace lisp {

namespace {

constexpr double kPi = 3.14159265358979323846;

// The next argument if given, else the drawing's variable.
int integerOr(Args& args, const char* variable) {
  if (args.moreNotNil()) return args.integer();
  args.skip();
  return args.vm().environment().unitVariable(variable);
}

LengthFormat lengthFormat(Args& args) {
  const int mode = integerOr(args, "LUNITS");
  if (mode < 1 || mode > 5) fail("bad argument value: unit mode");
  return static_cast<LengthFormat>(mode);
}

AngleFormat angleFormat(Args& args) {
  const int mode = integerOr(args, "AUNITS");
  if (mode < 0 || mode > 4) fail("bad argument value: unit mode");
  return static_cast<AngleFormat>(mode);
}

}  // namespace

LISP_BUILTIN("rtos", "(rtos number [mode [precision]]) -> string",
             "A length as text: mode 1 scientific, 2 decimal, 3 engineering, 4 architectural, 5 fractional.") {
  const double value = args.real();
  const auto format = lengthFormat(args);
  const int precision = integerOr(args, "LUPREC");
  return args.newString(
      TextView(formatLength(value, format, precision, args.vm().environment().unitVariable("DIMZIN"))));
}

LISP_BUILTIN(
    "angtos", "(angtos angle [mode [precision]]) -> string",
    "An angle in radians as text: mode 0 degrees, 1 with minutes and seconds, 2 grads, 3 radians, 4 surveyor's.") {
  const double radians = args.real();
  const auto format = angleFormat(args);
  const int precision = integerOr(args, "AUPREC");
  const auto& world = args.vm().environment();
  return args.newString(
      TextView(formatAngle(radians, format, precision, world.angleBase(), world.unitVariable("ANGDIR") == 1)));
}

LISP_BUILTIN("distof", "(distof string [mode]) -> real | nil", "The length that the string writes, as rtos does.") {
  const TextView text = args.string();
  double value = 0;
  return parseLength(text, lengthFormat(args), value) ? LispValue::real(value) : LispValue::nil();
}

LISP_BUILTIN("angtof", "(angtof string [mode]) -> real | nil",
             "The angle in radians that the string writes, as angtos does.") {
  const TextView text = args.string();
  const auto& world = args.vm().environment();
  double value = 0;
  const bool good = parseAngle(text, angleFormat(args), world.angleBase(), world.unitVariable("ANGDIR") == 1, value);
  return good ? LispValue::real(value) : LispValue::nil();
}

LISP_BUILTIN("cvunit", "(cvunit value from to) -> number | list | nil",
             "A number or a point, converted between units.") {
  const LispValue what = args.any();
  const TextView from = args.string();
  const TextView to = args.string();
  if (what.isNumber()) {
    double value = what.asDouble();
    return convertUnits(value, from, to) ? LispValue::real(value) : LispValue::nil();
  }
  double xyz[3];
  const int count = pointOf(what, xyz);
  if (count == 0) failType(args.vm(), kNumberp, what);
  for (int i = 0; i < count; ++i)
    if (!convertUnits(xyz[i], from, to)) return LispValue::nil();
  return args.newPoint(xyz, count);
}

// ---- geometry

LISP_BUILTIN("distance", "(distance point1 point2) -> real",
             "The distance of two points; in the plane unless both have a z.") {
  double a[3], b[3];
  const int m = args.point(a), n = args.point(b);
  const double z = m == 3 && n == 3 ? b[2] - a[2] : 0.0;
  return LispValue::real(gc::hypot(b[0] - a[0], b[1] - a[1], z));
}

LISP_BUILTIN("angle", "(angle point1 point2) -> real",
             "The direction in the plane from the first to the second point, radians.") {
  double a[3], b[3];
  args.point(a);
  args.point(b);
  const double radians = gc::atan2(b[1] - a[1], b[0] - a[0]);
  return LispValue::real(radians < 0 ? radians + 2 * kPi : radians + 0.0);
}

LISP_BUILTIN("polar", "(polar point angle distance) -> point",
             "The point at that direction (radians) and distance in the plane.") {
  double p[3];
  const int count = args.point(p);
  const double radians = args.real(), length = args.real();
  p[0] += length * gc::cos(radians);
  p[1] += length * gc::sin(radians);
  return args.newPoint(p, count);
}

namespace {

// The point where two lines meet, given by points a, b and c, d. In space the lines must lie in one plane.
// False when they are parallel or pass each other; with onSegments also when the point is beyond an end.
// Tolerance: 1e-9 of the size of the lines.
bool intersectLines(const double* a, const double* b, const double* c, const double* d, bool onSegments, double* at) {
  double u[3], v[3], w[3];
  for (int i = 0; i < 3; ++i) u[i] = b[i] - a[i], v[i] = d[i] - c[i], w[i] = c[i] - a[i];
  const auto dot = [](const double* p, const double* q) { return p[0] * q[0] + p[1] * q[1] + p[2] * q[2]; };
  const double n[3] = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
  const double uu = dot(u, u), vv = dot(v, v), nn = dot(n, n);
  if (nn <= 1e-20 * uu * vv || nn == 0) return false;
  const double off = dot(w, n);
  if (off * off > 1e-18 * nn * (uu + vv + dot(w, w))) return false;
  const double wv[3] = {w[1] * v[2] - w[2] * v[1], w[2] * v[0] - w[0] * v[2], w[0] * v[1] - w[1] * v[0]};
  const double wu[3] = {w[1] * u[2] - w[2] * u[1], w[2] * u[0] - w[0] * u[2], w[0] * u[1] - w[1] * u[0]};
  const double s = dot(wv, n) / nn, t = dot(wu, n) / nn;
  constexpr double kSlack = 1e-9;
  if (onSegments && (s < -kSlack || s > 1 + kSlack || t < -kSlack || t > 1 + kSlack)) return false;
  for (int i = 0; i < 3; ++i) at[i] = a[i] + s * u[i];
  return true;
}

}  // namespace

LISP_BUILTIN("inters", "(inters point1 point2 point3 point4 [onseg]) -> point | nil",
             "Where the lines 1-2 and 3-4 meet; with onseg nil the lines are endless.") {
  double p[4][3];
  int count = 3;
  for (auto& point : p) count = std::min(count, args.point(point));
  if (count == 2)
    for (auto& point : p) point[2] = 0;
  const bool onSegments = !args.more() || args.any();
  double at[3];
  return intersectLines(p[0], p[1], p[2], p[3], onSegments, at) ? args.newPoint(at, count) : LispValue::nil();
}

}  // namespace lisp
