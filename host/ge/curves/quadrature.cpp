#include "host/ge/curves/quadrature.h"

#include <boost/math/quadrature/gauss_kronrod.hpp>

#include "host/rx/math/elementary.h"

const GcGeGaussRule& gcgeGaussRule() {
  static const GcGeGaussRule kRule = [] {
    GcGeGaussRule rule{};
    const auto& gx = boost::math::quadrature::gauss<double, 10>::abscissa();
    const auto& gw = boost::math::quadrature::gauss<double, 10>::weights();
    const auto& kx = boost::math::quadrature::gauss_kronrod<double, 21>::abscissa();
    const auto& kw = boost::math::quadrature::gauss_kronrod<double, 21>::weights();
    for (int i = 0; i < 5; ++i) rule.gaussNode[i] = gx[i], rule.gaussWeight[i] = gw[i];
    for (int i = 0; i < 11; ++i) rule.kronrodNode[i] = kx[i], rule.kronrodWeight[i] = kw[i];
    return rule;
  }();
  return kRule;
}

namespace {

struct Estimate {
  GcGeVector3d kronrod;
  double error;
};

Estimate estimate(const GcGeFunction<GcGeVector3d>& f, double from, double to) {
  const GcGeGaussRule& rule = gcgeGaussRule();
  const double middle = (from + to) / 2, half = (to - from) / 2;
  GcGeVector3d kronrod = f(middle) * rule.kronrodWeight[0], gauss;
  for (int i = 1; i < 11; ++i) {
    const GcGeVector3d pair = f(middle - half * rule.kronrodNode[i]) + f(middle + half * rule.kronrodNode[i]);
    kronrod += pair * rule.kronrodWeight[i];
    if (i % 2 == 1) gauss += pair * rule.gaussWeight[i / 2];
  }
  return {kronrod * half, (kronrod - gauss).length() * std::abs(half)};
}

GcGeVector3d integrate(const GcGeFunction<GcGeVector3d>& f, double from, double to, double bound, int depth) {
  const Estimate whole = estimate(f, from, to);
  constexpr int kMostHalvings = 40;
  if (whole.error <= bound || depth == kMostHalvings || !std::isfinite(whole.error)) return whole.kronrod;
  const double middle = (from + to) / 2;
  return integrate(f, from, middle, bound, depth + 1) + integrate(f, middle, to, bound, depth + 1);
}

}  // namespace

GcGeVector3d gcgeIntegrateVector(GcGeFunction<GcGeVector3d> f, double from, double to, double scale) {
  const Estimate whole = estimate(f, from, to);
  const double bound = 1e-14 * (scale + whole.kronrod.length());
  if (whole.error <= bound || !std::isfinite(whole.error)) return whole.kronrod;
  const double middle = (from + to) / 2;
  return integrate(f, from, middle, bound, 1) + integrate(f, middle, to, bound, 1);
}

double gcgeAngleMinusSine(double x) {
  if (std::abs(x) > 0.5) return x - gc::sin(x);
  // x^3 / 3! - x^5 / 5! + ...
  double term = x * x * x / 6, sum = term;
  for (int n = 4; n < 20; n += 2) {
    term *= -x * x / (n * (n + 1));
    sum += term;
  }
  return sum;
}
