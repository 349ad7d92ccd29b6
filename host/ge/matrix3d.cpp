#include "ge/matrix3d.h"

#include <cmath>
#include <numbers>
#include <utility>

#include "ge/line3d.h"
#include "host/rx/math/elementary.h"

const GcGeMatrix3d GcGeMatrix3d::kIdentity;

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

double positiveAngle(double angle) { return angle < 0 ? angle + kTwoPi : angle; }

// I - 2 P or 2 P - I with P the projection on the unit direction, then moved to keep `fixed` fixed.
void keepFixed(GcGeMatrix3d& m, const GcGePoint3d& fixed) {
  const GcGeVector3d moved = fixed.asVector() - m * fixed.asVector();
  m.entry[0][3] = moved.x;
  m.entry[1][3] = moved.y;
  m.entry[2][3] = moved.z;
}

}  // namespace

double GcGeVector2d::angle() const { return x == 0 && y == 0 ? 0 : positiveAngle(gc::atan2(y, x)); }

GcGeVector3d GcGeVector3d::normal(const GcGeTol& tol) const {
  const double size = length();
  return size <= tol.vector ? *this : *this / size;
}

bool GcGeVector3d::isParallelTo(const GcGeVector3d& v, const GcGeTol& tol) const {
  return crossProduct(v).length() <= tol.vector * length() * v.length();
}

bool GcGeVector3d::isPerpendicularTo(const GcGeVector3d& v, const GcGeTol& tol) const {
  return std::abs(dotProduct(v)) <= tol.vector * length() * v.length();
}

GcGeVector3d GcGeVector3d::perpVector() const {
  const double size = length();
  return size == 0 ? *this : gcgeArbitraryXAxis(*this / size) * size;
}

double GcGeVector3d::angleTo(const GcGeVector3d& v) const {
  return gc::atan2(crossProduct(v).length(), dotProduct(v));  // stable near 0 and pi, where acos is not
}

double GcGeVector3d::angleTo(const GcGeVector3d& v, const GcGeVector3d& reference) const {
  const double angle = angleTo(v);
  return crossProduct(v).dotProduct(reference) < 0 && angle > 0 ? kTwoPi - angle : angle;
}

bool GcGeVector3d::isEqualTo(const GcGeVector3d& v, const GcGeTol& tol) const {
  return (*this - v).length() <= tol.vector;
}

GcGeVector3d gcgeArbitraryXAxis(const GcGeVector3d& normal) {
  constexpr double kNearZ = 1.0 / 64.0;
  const bool nearZ = std::abs(normal.x) < kNearZ && std::abs(normal.y) < kNearZ;
  return (nearZ ? GcGeVector3d::kYAxis : GcGeVector3d::kZAxis).crossProduct(normal).normal();
}

GcGeMatrix3d& GcGeMatrix3d::setToIdentity() {
  for (int row = 0; row < 4; ++row)
    for (int col = 0; col < 4; ++col) entry[row][col] = row == col ? 1 : 0;
  return *this;
}

GcGeMatrix3d& GcGeMatrix3d::setToTranslation(const GcGeVector3d& offset) {
  setToIdentity();
  entry[0][3] = offset.x;
  entry[1][3] = offset.y;
  entry[2][3] = offset.z;
  return *this;
}

// Rodrigues' formula: R = cos I + (1 - cos) u u' + sin [u]x.
GcGeMatrix3d& GcGeMatrix3d::setToRotation(double angleRad, const GcGeVector3d& axis, const GcGePoint3d& center) {
  setToIdentity();
  const GcGeVector3d u = axis.normal();
  const double c = gc::cos(angleRad), s = gc::sin(angleRad), t = 1 - c;
  const double rotation[3][3] = {{t * u.x * u.x + c, t * u.x * u.y - s * u.z, t * u.x * u.z + s * u.y},
                                 {t * u.x * u.y + s * u.z, t * u.y * u.y + c, t * u.y * u.z - s * u.x},
                                 {t * u.x * u.z - s * u.y, t * u.y * u.z + s * u.x, t * u.z * u.z + c}};
  for (int row = 0; row < 3; ++row)
    for (int col = 0; col < 3; ++col) entry[row][col] = rotation[row][col];
  keepFixed(*this, center);
  return *this;
}

GcGeMatrix3d& GcGeMatrix3d::setToScaling(double scale, const GcGePoint3d& center) {
  setToScaling(GcGeScale3d(scale));
  keepFixed(*this, center);
  return *this;
}

GcGeMatrix3d& GcGeMatrix3d::setToScaling(const GcGeScale3d& scale) {
  setToIdentity();
  entry[0][0] = scale.sx;
  entry[1][1] = scale.sy;
  entry[2][2] = scale.sz;
  return *this;
}

GcGeMatrix3d& GcGeMatrix3d::setToMirroring(const GcGeLine3d& line) {
  setToIdentity();
  if (line.direction().length() == 0) return *this;
  const GcGeVector3d u = line.direction() / line.direction().length();
  const double d[3] = {u.x, u.y, u.z};
  for (int row = 0; row < 3; ++row)
    for (int col = 0; col < 3; ++col) entry[row][col] = 2 * d[row] * d[col] - (row == col ? 1 : 0);
  keepFixed(*this, line.pointOnLine());
  return *this;
}

GcGeMatrix3d& GcGeMatrix3d::setToMirroring(const GcGePoint3d& point) { return setToScaling(-1, point); }

GcGeMatrix3d& GcGeMatrix3d::setCoordSystem(const GcGePoint3d& origin, const GcGeVector3d& x, const GcGeVector3d& y,
                                           const GcGeVector3d& z) {
  const GcGeVector3d columns[4] = {x, y, z, origin.asVector()};
  for (int col = 0; col < 4; ++col) {
    entry[0][col] = columns[col].x;
    entry[1][col] = columns[col].y;
    entry[2][col] = columns[col].z;
    entry[3][col] = col == 3 ? 1 : 0;
  }
  return *this;
}

GcGeMatrix3d& GcGeMatrix3d::setToPlaneToWorld(const GcGeVector3d& normal) {
  const GcGeVector3d z = normal.normal();
  if (z == GcGeVector3d::kZAxis) return setToIdentity();
  const GcGeVector3d x = gcgeArbitraryXAxis(z);
  return setCoordSystem(GcGePoint3d::kOrigin, x, z.crossProduct(x), z);
}

GcGeMatrix3d& GcGeMatrix3d::setToWorldToPlane(const GcGeVector3d& normal) {
  setToPlaneToWorld(normal);
  for (int row = 0; row < 3; ++row)  // orthonormal: the inverse is the transpose
    for (int col = row + 1; col < 3; ++col) std::swap(entry[row][col], entry[col][row]);
  return *this;
}

GcGeMatrix3d operator*(const GcGeMatrix3d& a, const GcGeMatrix3d& b) {
  GcGeMatrix3d out;
  for (int row = 0; row < 4; ++row)
    for (int col = 0; col < 4; ++col) {
      double sum = 0;
      for (int k = 0; k < 4; ++k) sum += a.entry[row][k] * b.entry[k][col];
      out.entry[row][col] = sum;
    }
  return out;
}

double GcGeMatrix3d::det() const { return column(0).dotProduct(column(1).crossProduct(column(2))); }

bool GcGeMatrix3d::isSingular(const GcGeTol& tol) const {
  const double bound = column(0).length() * column(1).length() * column(2).length();
  return !(std::abs(det()) > tol.vector * bound);
}

GcGeMatrix3d GcGeMatrix3d::inverse() const {
  GcGeMatrix3d out;
  const double d = det();
  if (d == 0) return out;
  const GcGeVector3d c0 = column(0), c1 = column(1), c2 = column(2);
  const GcGeVector3d rows[3] = {c1.crossProduct(c2) / d, c2.crossProduct(c0) / d, c0.crossProduct(c1) / d};
  for (int row = 0; row < 3; ++row) {
    out.entry[row][0] = rows[row].x;
    out.entry[row][1] = rows[row].y;
    out.entry[row][2] = rows[row].z;
    out.entry[row][3] = -rows[row].dotProduct(translation());
  }
  return out;
}

bool GcGeMatrix3d::isUniScaledOrtho(const GcGeTol& tol) const {
  const GcGeVector3d x = column(0), y = column(1), z = column(2);
  const double size = x.length();
  const double slack = 1e3 * tol.vector * size;  // columns are products of many roundings
  return size > 0 && std::abs(y.length() - size) <= slack && std::abs(z.length() - size) <= slack &&
         std::abs(x.dotProduct(y)) <= slack * size && std::abs(y.dotProduct(z)) <= slack * size &&
         std::abs(z.dotProduct(x)) <= slack * size;
}

double GcGeMatrix3d::scale() const { return gc::cbrt(std::abs(det())); }

bool GcGeMatrix3d::isEqualTo(const GcGeMatrix3d& other, const GcGeTol& tol) const {
  for (int row = 0; row < 4; ++row)
    for (int col = 0; col < 4; ++col)
      if (std::abs(entry[row][col] - other.entry[row][col]) > tol.point) return false;
  return true;
}
