// Points, vectors and scale factors in two and three dimensions; drawing units, right-handed systems.
#pragma once

#include <cmath>

#include "ge/gegbl.h"

struct GcGeVector2d {
  double x = 0, y = 0;
  constexpr GcGeVector2d() = default;
  constexpr GcGeVector2d(double ax, double ay) : x(ax), y(ay) {}
  [[nodiscard]] double length() const { return std::hypot(x, y); }
  [[nodiscard]] constexpr double dotProduct(const GcGeVector2d& v) const { return x * v.x + y * v.y; }
  [[nodiscard]] constexpr double crossProduct(const GcGeVector2d& v) const { return x * v.y - y * v.x; }
  [[nodiscard]] constexpr GcGeVector2d perpVector() const { return {-y, x}; }
  // The angle from the X axis, radians in [0, 2 pi).
  [[nodiscard]] double angle() const;
  friend constexpr GcGeVector2d operator*(const GcGeVector2d& v, double f) { return {v.x * f, v.y * f}; }
  friend constexpr GcGeVector2d operator*(double f, const GcGeVector2d& v) { return v * f; }
  friend constexpr GcGeVector2d operator+(const GcGeVector2d& a, const GcGeVector2d& b) {
    return {a.x + b.x, a.y + b.y};
  }
  friend constexpr GcGeVector2d operator-(const GcGeVector2d& a, const GcGeVector2d& b) {
    return {a.x - b.x, a.y - b.y};
  }
  friend constexpr GcGeVector2d operator-(const GcGeVector2d& a) { return {-a.x, -a.y}; }
  friend constexpr bool operator==(const GcGeVector2d&, const GcGeVector2d&) = default;
};

struct GcGePoint2d {
  double x = 0, y = 0;
  constexpr GcGePoint2d() = default;
  constexpr GcGePoint2d(double ax, double ay) : x(ax), y(ay) {}
  [[nodiscard]] double distanceTo(const GcGePoint2d& p) const { return std::hypot(x - p.x, y - p.y); }
  [[nodiscard]] constexpr GcGeVector2d asVector() const { return {x, y}; }
  friend constexpr GcGeVector2d operator-(const GcGePoint2d& a, const GcGePoint2d& b) { return {a.x - b.x, a.y - b.y}; }
  friend constexpr GcGePoint2d operator+(const GcGePoint2d& p, const GcGeVector2d& v) { return {p.x + v.x, p.y + v.y}; }
  friend constexpr GcGePoint2d operator-(const GcGePoint2d& p, const GcGeVector2d& v) { return {p.x - v.x, p.y - v.y}; }
  friend constexpr bool operator==(const GcGePoint2d&, const GcGePoint2d&) = default;
};

struct GcGeVector3d {
  double x = 0, y = 0, z = 0;
  constexpr GcGeVector3d() = default;
  constexpr GcGeVector3d(double ax, double ay, double az) : x(ax), y(ay), z(az) {}
  static const GcGeVector3d kXAxis, kYAxis, kZAxis;

  [[nodiscard]] double length() const { return std::sqrt(x * x + y * y + z * z); }
  [[nodiscard]] constexpr double lengthSqrd() const { return x * x + y * y + z * z; }
  [[nodiscard]] constexpr double dotProduct(const GcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
  [[nodiscard]] constexpr GcGeVector3d crossProduct(const GcGeVector3d& v) const {
    return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
  }
  // The unit vector of the same direction; a vector shorter than the tolerance comes back as it is.
  [[nodiscard]] GcGeVector3d normal(const GcGeTol& tol = GcGeContext::gTol) const;
  [[nodiscard]] bool isZeroLength(const GcGeTol& tol = GcGeContext::gTol) const { return length() <= tol.vector; }
  [[nodiscard]] bool isParallelTo(const GcGeVector3d& v, const GcGeTol& tol = GcGeContext::gTol) const;
  [[nodiscard]] bool isPerpendicularTo(const GcGeVector3d& v, const GcGeTol& tol = GcGeContext::gTol) const;
  // A vector at right angles by the arbitrary axis rule of the drawing format.
  [[nodiscard]] GcGeVector3d perpVector() const;
  // Radians in [0, pi].
  [[nodiscard]] double angleTo(const GcGeVector3d& v) const;
  // Radians in [0, 2 pi), counter-clockwise seen against `reference`.
  [[nodiscard]] double angleTo(const GcGeVector3d& v, const GcGeVector3d& reference) const;
  [[nodiscard]] bool isEqualTo(const GcGeVector3d& v, const GcGeTol& tol = GcGeContext::gTol) const;

  friend constexpr GcGeVector3d operator*(const GcGeVector3d& v, double f) { return {v.x * f, v.y * f, v.z * f}; }
  friend constexpr GcGeVector3d operator*(double f, const GcGeVector3d& v) { return v * f; }
  friend constexpr GcGeVector3d operator/(const GcGeVector3d& v, double f) { return {v.x / f, v.y / f, v.z / f}; }
  friend constexpr GcGeVector3d operator+(const GcGeVector3d& a, const GcGeVector3d& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
  }
  friend constexpr GcGeVector3d operator-(const GcGeVector3d& a, const GcGeVector3d& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
  }
  friend constexpr GcGeVector3d operator-(const GcGeVector3d& a) { return {-a.x, -a.y, -a.z}; }
  GcGeVector3d& operator+=(const GcGeVector3d& v) { return *this = *this + v; }
  GcGeVector3d& operator*=(double f) { return *this = *this * f; }
  friend constexpr bool operator==(const GcGeVector3d&, const GcGeVector3d&) = default;
};

inline constexpr GcGeVector3d GcGeVector3d::kXAxis{1, 0, 0};
inline constexpr GcGeVector3d GcGeVector3d::kYAxis{0, 1, 0};
inline constexpr GcGeVector3d GcGeVector3d::kZAxis{0, 0, 1};

struct GcGePoint3d {
  double x = 0, y = 0, z = 0;
  constexpr GcGePoint3d() = default;
  constexpr GcGePoint3d(double ax, double ay, double az) : x(ax), y(ay), z(az) {}
  static const GcGePoint3d kOrigin;

  [[nodiscard]] constexpr GcGeVector3d asVector() const { return {x, y, z}; }
  [[nodiscard]] double distanceTo(const GcGePoint3d& p) const {
    return GcGeVector3d(x - p.x, y - p.y, z - p.z).length();
  }
  [[nodiscard]] bool isEqualTo(const GcGePoint3d& p, const GcGeTol& tol = GcGeContext::gTol) const {
    return distanceTo(p) <= tol.point;
  }
  friend constexpr GcGeVector3d operator-(const GcGePoint3d& a, const GcGePoint3d& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
  }
  friend constexpr GcGePoint3d operator+(const GcGePoint3d& p, const GcGeVector3d& v) {
    return {p.x + v.x, p.y + v.y, p.z + v.z};
  }
  friend constexpr GcGePoint3d operator-(const GcGePoint3d& p, const GcGeVector3d& v) {
    return {p.x - v.x, p.y - v.y, p.z - v.z};
  }
  GcGePoint3d& operator+=(const GcGeVector3d& v) { return *this = *this + v; }
  friend constexpr bool operator==(const GcGePoint3d&, const GcGePoint3d&) = default;
};

inline constexpr GcGePoint3d GcGePoint3d::kOrigin{0, 0, 0};

struct GcGeScale3d {
  double sx = 1, sy = 1, sz = 1;
  constexpr GcGeScale3d() = default;
  constexpr explicit GcGeScale3d(double s) : sx(s), sy(s), sz(s) {}
  constexpr GcGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}
  friend constexpr bool operator==(const GcGeScale3d&, const GcGeScale3d&) = default;
};
