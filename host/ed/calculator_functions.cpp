// The calculator's functions. Source of the geometry: lines and planes through points by dot and cross products.
#include <cmath>
#include <numbers>

#include "host/ed/calculator_nodes.h"
#include "host/ed/coordinates.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using Values = std::span<const CalcValue>;
using Vector = GcGeVector3d;

constexpr double kDegree = std::numbers::pi / 180;
constexpr double kLeast = 1e-14;  // lengths below count as none

bool give(CalcValue& value, double number) {
  value = CalcValue::of(number);
  return std::isfinite(number);
}
bool give(CalcValue& value, const Vector& vector) {
  value = CalcValue::of(vector);
  return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
}

bool areNumbers(Values values) {
  for (const CalcValue& each : values)
    if (each.isVector()) return false;
  return true;
}
bool areVectors(Values values) {
  for (const CalcValue& each : values)
    if (!each.isVector()) return false;
  return true;
}

// ---- numbers

template <double (*F)(double)>
bool ofNumber(Editor&, Values v, CalcValue& value) {
  return areNumbers(v) && give(value, F(v[0].number));
}
double sine(double degrees) { return gc::sin(degrees * kDegree); }
double cosine(double degrees) { return gc::cos(degrees * kDegree); }
double tangent(double degrees) { return gc::tan(degrees * kDegree); }
double arcSine(double x) { return gc::asin(x) / kDegree; }
double arcCosine(double x) { return gc::acos(x) / kDegree; }
double arcTangent(double x) { return gc::atan(x) / kDegree; }
double logarithm(double x) { return std::log10(x); }
double naturalLogarithm(double x) { return std::log(x); }
double exponential(double x) { return std::exp(x); }
double powerOfTen(double x) { return std::pow(10.0, x); }
double square(double x) { return x * x; }
double root(double x) { return std::sqrt(x); }
double toRadians(double x) { return x * kDegree; }
double toDegrees(double x) { return x / kDegree; }

bool roundOff(Editor&, Values v, CalcValue& value) {
  if (v[0].isVector()) return false;
  value = CalcValue::ofInteger(std::round(v[0].number));
  return std::isfinite(value.number);
}
bool truncate(Editor&, Values v, CalcValue& value) {
  if (v[0].isVector()) return false;
  value = CalcValue::ofInteger(std::trunc(v[0].number));
  return std::isfinite(value.number);
}

bool absolute(Editor&, Values v, CalcValue& value) {
  if (v[0].isVector()) return give(value, v[0].vector.length());
  value = v[0];
  value.number = std::fabs(value.number);
  return true;
}

// ---- vectors

bool vectorBetween(Editor&, Values v, CalcValue& value) {
  return areVectors(v) && give(value, v[1].vector - v[0].vector);
}
bool unitVector(const Vector& vector, CalcValue& value) {
  const double length = vector.length();
  return length > kLeast && give(value, vector / length);
}
bool unitBetween(Editor&, Values v, CalcValue& value) {
  return areVectors(v) && unitVector(v[1].vector - v[0].vector, value);
}

// Of a vector's direction in the plane, of a line, of three points' plane.
bool normalVector(Editor&, Values v, CalcValue& value) {
  if (!areVectors(v)) return false;
  if (v.size() == 3) return unitVector((v[1].vector - v[0].vector).crossProduct(v[2].vector - v[0].vector), value);
  const Vector way = v.size() == 2 ? v[1].vector - v[0].vector : v[0].vector;
  return v.size() == 2 ? unitVector({0 - way.y, way.x, 0}, value) : unitVector(way, value);
}

double planeAngle(const Vector& v) {
  const double angle = gc::atan2(v.y, v.x) / kDegree;
  return angle < 0 ? angle + 360 : angle;
}

// Of a vector from the X axis; of a line; between two lines from an apex, about Z or about a given axis.
bool angleOf(Editor&, Values v, CalcValue& value) {
  if (!areVectors(v)) return false;
  if (v.size() == 1) return give(value, planeAngle(v[0].vector));
  if (v.size() == 2) return give(value, planeAngle(v[1].vector - v[0].vector));
  Vector a = v[1].vector - v[0].vector, b = v[2].vector - v[0].vector;
  const Vector axis = v.size() == 4 ? v[3].vector - v[0].vector : Vector(0, 0, 1);
  if (axis.length() <= kLeast) return false;
  const Vector n = axis / axis.length();
  a = a - n * n.dotProduct(a);
  b = b - n * n.dotProduct(b);
  const double angle = gc::atan2(a.crossProduct(b).dotProduct(n), a.dotProduct(b)) / kDegree;
  return give(value, angle < 0 ? angle + 360 : angle);
}

bool distanceBetween(Editor&, Values v, CalcValue& value) {
  return areVectors(v) && give(value, (v[1].vector - v[0].vector).length());
}
bool distanceToLine(Editor&, Values v, CalcValue& value) {
  if (!areVectors(v)) return false;
  const Vector way = v[2].vector - v[1].vector;
  return way.length() > kLeast && give(value, way.crossProduct(v[0].vector - v[1].vector).length() / way.length());
}
bool distanceToPlane(Editor&, Values v, CalcValue& value) {
  if (!areVectors(v)) return false;
  const Vector normal = (v[2].vector - v[1].vector).crossProduct(v[3].vector - v[1].vector);
  return normal.length() > kLeast &&
         give(value, std::fabs(normal.dotProduct(v[0].vector - v[1].vector)) / normal.length());
}

bool pointAtDistance(Editor&, Values v, CalcValue& value) {
  if (!areVectors(v.first(2)) || v[2].isVector()) return false;
  const Vector way = v[1].vector - v[0].vector;
  return way.length() > kLeast && give(value, v[0].vector + way * (v[2].number / way.length()));
}
bool pointAtParameter(Editor&, Values v, CalcValue& value) {
  return areVectors(v.first(2)) && !v[2].isVector() &&
         give(value, v[0].vector + (v[1].vector - v[0].vector) * v[2].number);
}

// The point of the first line nearest to the second one: where they meet when they do.
bool lineMeetsLine(Editor&, Values v, CalcValue& value) {
  if (!areVectors(v)) return false;
  const Vector a = v[1].vector - v[0].vector, b = v[3].vector - v[2].vector;
  const Vector normal = a.crossProduct(b);
  if (normal.length() <= kLeast * a.length() * b.length()) return false;
  const double t = (v[2].vector - v[0].vector).crossProduct(b).dotProduct(normal) / normal.lengthSqrd();
  return give(value, v[0].vector + a * t);
}
bool lineMeetsPlane(Editor&, Values v, CalcValue& value) {
  if (!areVectors(v)) return false;
  const Vector way = v[1].vector - v[0].vector;
  const Vector normal = (v[3].vector - v[2].vector).crossProduct(v[4].vector - v[2].vector);
  const double slope = normal.dotProduct(way);
  if (std::fabs(slope) <= kLeast * normal.length() * way.length()) return false;
  return give(value, v[0].vector + way * (normal.dotProduct(v[2].vector - v[0].vector) / slope));
}

// About a point in the plane, or about the axis through two points; degrees.
bool rotated(Editor&, Values v, CalcValue& value) {
  if (v.back().isVector() || !areVectors(v.first(v.size() - 1))) return false;
  const Vector axis = v.size() == 4 ? v[2].vector - v[1].vector : Vector(0, 0, 1);
  if (axis.length() <= kLeast) return false;
  const Vector n = axis / axis.length(), from = v[0].vector - v[1].vector;
  const double angle = v.back().number * kDegree;
  const Vector along = n * n.dotProduct(from), across = from - along;
  return give(value, v[1].vector + along + across * gc::cos(angle) + n.crossProduct(across) * gc::sin(angle));
}

Vector moved(const GcGeMatrix3d& matrix, const Vector& v) { return (matrix * GcGePoint3d(v.x, v.y, v.z)).asVector(); }
bool userToWorld(Editor& editor, Values v, CalcValue& value) {
  return areVectors(v) && give(value, moved(ucsToWorld(editor), v[0].vector));
}
bool worldToUser(Editor& editor, Values v, CalcValue& value) {
  return areVectors(v) && give(value, moved(ucsToWorld(editor).inverse(), v[0].vector));
}

template <int X, int Y, int Z>
bool masked(Editor&, Values v, CalcValue& value) {
  return areVectors(v) && give(value, Vector(v[0].vector.x * X, v[0].vector.y * Y, v[0].vector.z * Z));
}
template <double Vector::*Coordinate>
bool coordinate(Editor&, Values v, CalcValue& value) {
  return areVectors(v) && give(value, v[0].vector.*Coordinate);
}

constexpr CalcFunction kFunctions[] = {
    {"abs", 1, 1, absolute},
    {"acos", 1, 1, ofNumber<arcCosine>},
    {"ang", 1, 4, angleOf},
    {"asin", 1, 1, ofNumber<arcSine>},
    {"atan", 1, 1, ofNumber<arcTangent>},
    {"cos", 1, 1, ofNumber<cosine>},
    {"d2r", 1, 1, ofNumber<toRadians>},
    {"dist", 2, 2, distanceBetween},
    {"dpl", 3, 3, distanceToLine},
    {"dpp", 4, 4, distanceToPlane},
    {"exp", 1, 1, ofNumber<exponential>},
    {"exp10", 1, 1, ofNumber<powerOfTen>},
    {"ill", 4, 4, lineMeetsLine},
    {"ilp", 5, 5, lineMeetsPlane},
    {"ln", 1, 1, ofNumber<naturalLogarithm>},
    {"log", 1, 1, ofNumber<logarithm>},
    {"nor", 1, 3, normalVector},
    {"pld", 3, 3, pointAtDistance},
    {"plt", 3, 3, pointAtParameter},
    {"r2d", 1, 1, ofNumber<toDegrees>},
    {"rot", 3, 4, rotated},
    {"round", 1, 1, roundOff},
    {"rxof", 1, 1, coordinate<&Vector::x>},
    {"ryof", 1, 1, coordinate<&Vector::y>},
    {"rzof", 1, 1, coordinate<&Vector::z>},
    {"sin", 1, 1, ofNumber<sine>},
    {"sqr", 1, 1, ofNumber<square>},
    {"sqrt", 1, 1, ofNumber<root>},
    {"tang", 1, 1, ofNumber<tangent>},
    {"trunc", 1, 1, truncate},
    {"u2w", 1, 1, userToWorld},
    {"vec", 2, 2, vectorBetween},
    {"vec1", 2, 2, unitBetween},
    {"w2u", 1, 1, worldToUser},
    {"xof", 1, 1, masked<1, 0, 0>},
    {"xyof", 1, 1, masked<1, 1, 0>},
    {"xzof", 1, 1, masked<1, 0, 1>},
    {"yof", 1, 1, masked<0, 1, 0>},
    {"yzof", 1, 1, masked<0, 1, 1>},
    {"zof", 1, 1, masked<0, 0, 1>},
};

}  // namespace

const CalcFunction* findCalcFunction(std::string_view name) {
  for (const CalcFunction& each : kFunctions)
    if (name == each.name) return &each;
  return nullptr;
}

}  // namespace ed
