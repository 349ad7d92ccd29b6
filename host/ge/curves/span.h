// One smooth piece of a curve: a straight line, an arc of a circle or an ellipse, or a rational Bezier curve.
//
// Points are vectors from the path's origin, so that pieces far out in the drawing keep all their digits.
// The local parameter u runs over [u0, u1]; 0 and 1 are the ends of the piece as it was made, other values trim or
// prolong it. The curve's own parameter is t = tBase + tPerU * u.
//   Line    a + b u                                      (unbounded ones: b of unit length, u0 or u1 infinite)
//   Arc     a + c sin(f) - b (1 - cos(f)), f = sweep u   a: point at u = 0; b, c: conjugate radii there. The centre
//           a - b may lie far away (flat arcs): nothing is computed from it that has to be exact.
//   Bezier  poles firstPole .. firstPole + degree of the path, homogeneous
#pragma once

#include <cstdint>

#include "ge/matrix3d.h"

struct GcGePole {
  double x = 0, y = 0, z = 0, w = 1;  // the point times its weight, and the weight
  [[nodiscard]] GcGeVector3d numerator() const { return {x, y, z}; }
  [[nodiscard]] GcGeVector3d point() const { return {x / w, y / w, z / w}; }
  friend bool operator==(const GcGePole&, const GcGePole&) = default;
};

// Position and derivatives by the local parameter.
struct GcGeJet {
  GcGeVector3d point, first, second;
};

struct GcGeSpan {
  enum class Kind : uint8_t { Line, Arc, Bezier };
  static constexpr int kMostDegree = 25;

  Kind kind = Kind::Line;
  bool rational = false;  // Bezier: weights differ
  bool circular = false;  // Arc: b and c of equal length at right angles
  int16_t degree = 1;
  int32_t firstPole = 0;
  double u0 = 0, u1 = 1;
  double tBase = 0, tPerU = 1;
  GcGeVector3d a, b, c;
  double sweep = 0;  // radians, signed

  [[nodiscard]] double t0() const { return tBase + tPerU * u0; }
  [[nodiscard]] double t1() const { return tBase + tPerU * u1; }
  // The local parameter of t, held within the stretch in use.
  [[nodiscard]] double uAt(double t) const {
    const double u = (t - tBase) / tPerU;
    return u < u0 ? u0 : u > u1 ? u1 : u;
  }
  [[nodiscard]] bool isBounded() const { return std::isfinite(u0) && std::isfinite(u1); }
  [[nodiscard]] GcGeVector3d center() const { return a - b; }
};

// `poles` is the path's array of poles.
[[nodiscard]] GcGeVector3d gcgePointAt(const GcGeSpan& span, const GcGePole* poles, double u);
[[nodiscard]] GcGeJet gcgeJetAt(const GcGeSpan& span, const GcGePole* poles, double u);
// Length of the first derivative by u.
[[nodiscard]] double gcgeSpeedAt(const GcGeSpan& span, const GcGePole* poles, double u);

// Cuts a Bezier curve of n + 1 poles to the part between v0 and v1 (blossoming by de Casteljau).
void gcgeTrimBezier(const GcGePole* poles, int degree, double v0, double v1, GcGePole* out);
