// Integrals along curves. Nodes and weights come from Boost.Math.
#pragma once

#include "ge/point.h"

// A function reference without allocation: `f(x)` of whatever stands behind it.
template <class R>
class GcGeFunction {
 public:
  template <class F>
  GcGeFunction(const F& f)  // NOLINT: implicit, so that lambdas can be passed
      : m_object(&f), m_call([](const void* object, double x) -> R { return (*static_cast<const F*>(object))(x); }) {}
  R operator()(double x) const { return m_call(m_object, x); }

 private:
  const void* m_object;
  R (*m_call)(const void*, double);
};

// Nodes in (-1, 1) and weights: 10-point Gauss rule, and the 21-point Kronrod rule that contains it. Index 0 to 4
// of the Gauss rule are the positive nodes; the Kronrod rule adds the middle (first).
struct GcGeGaussRule {
  double gaussNode[5], gaussWeight[5];
  double kronrodNode[11], kronrodWeight[11];  // node 0 is the middle; odd entries are the Gauss nodes
};
const GcGeGaussRule& gcgeGaussRule();

// Adaptive Gauss-Kronrod over [from, to]. `scale` is the size against which the relative error of 1e-14 is held
// besides the integral's own.
[[nodiscard]] GcGeVector3d gcgeIntegrateVector(GcGeFunction<GcGeVector3d> f, double from, double to, double scale);

// x - sin(x) without cancellation.
[[nodiscard]] double gcgeAngleMinusSine(double x);
