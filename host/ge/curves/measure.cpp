#include "host/ge/curves/measure.h"

#include <algorithm>
#include <limits>

#include "host/ge/curves/quadrature.h"

namespace {

bool isUniform(const GcGeSpan& s) {
  return s.kind == GcGeSpan::Kind::Line || (s.kind == GcGeSpan::Kind::Arc && s.circular);
}

double uniformSpeed(const GcGeSpan& s) {
  return s.kind == GcGeSpan::Kind::Line ? s.b.length() : s.b.length() * std::abs(s.sweep);
}

// The 10-point Gauss rule alone.
double gaussLength(const GcGeSpan& s, const GcGePole* poles, double from, double to) {
  const GcGeGaussRule& rule = gcgeGaussRule();
  const double middle = (from + to) / 2, half = (to - from) / 2;
  double sum = 0;
  for (int i = 0; i < 5; ++i) {
    const double at = half * rule.gaussNode[i];
    sum += rule.gaussWeight[i] * (gcgeSpeedAt(s, poles, middle - at) + gcgeSpeedAt(s, poles, middle + at));
  }
  return sum * half;
}

struct Lengths {
  double gauss, kronrod;
};

Lengths bothLengths(const GcGeSpan& s, const GcGePole* poles, double from, double to) {
  const GcGeGaussRule& rule = gcgeGaussRule();
  const double middle = (from + to) / 2, half = (to - from) / 2;
  double kronrod = gcgeSpeedAt(s, poles, middle) * rule.kronrodWeight[0], gauss = 0;
  for (int i = 1; i < 11; ++i) {
    const double at = half * rule.kronrodNode[i];
    const double pair = gcgeSpeedAt(s, poles, middle - at) + gcgeSpeedAt(s, poles, middle + at);
    kronrod += pair * rule.kronrodWeight[i];
    if (i % 2 == 1) gauss += pair * rule.gaussWeight[i / 2];
  }
  return {gauss * half, kronrod * half};
}

// What rounding does to the speed by u: where the terms of a flat curve's derivative cancel, no more of it is known.
double speedNoise(const GcGeSpan& s, const GcGePole* poles) {
  constexpr double kRounding = 8 * std::numeric_limits<double>::epsilon();
  if (s.kind == GcGeSpan::Kind::Arc) return kRounding * std::abs(s.sweep) * (s.b.length() + s.c.length());
  double most = 0;
  for (int i = 0; i < s.degree; ++i) {
    const GcGePole &p = poles[s.firstPole + i], &q = poles[s.firstPole + i + 1];
    most = std::max(most, (q.point() - p.point()).lengthSqrd());
  }
  return kRounding * s.degree * std::sqrt(most);
}

constexpr int kMostHalvings = 50;

// Calls f(from, to, length) for pieces on which the Gauss rule is good to `relative`, or to the noise of the speed.
template <class F>
void halve(const GcGeSpan& s, const GcGePole* poles, double from, double to, double relative, double noise, int depth,
           const F& f) {
  const Lengths got = bothLengths(s, poles, from, to);
  const bool good = std::abs(got.gauss - got.kronrod) <= relative * got.kronrod + noise * (to - from);
  if (good || depth == kMostHalvings || !std::isfinite(got.kronrod)) return f(from, to, got.kronrod);
  const double middle = (from + to) / 2;
  halve(s, poles, from, middle, relative, noise, depth + 1, f);
  halve(s, poles, middle, to, relative, noise, depth + 1, f);
}

// Newton on the length within one piece, held by a bracket; the first guess is the cubic that has the inverse
// function's values and slopes at both ends.
double solve(const GcGeSpan& s, const GcGePole* poles, const GcGeMeasure::Piece& piece, double dist) {
  const double span = piece.u1 - piece.u0;
  double low = piece.u0, high = piece.u1;
  const double x = dist / piece.length;
  double u = piece.u0 + span * x;
  if (piece.speed0 > 0 && piece.speed1 > 0) {
    const double m0 = piece.length / piece.speed0, m1 = piece.length / piece.speed1;
    const double y = 1 - x;
    const double guess = piece.u0 + x * x * (3 - 2 * x) * span + x * y * (y * m0 - x * m1);
    if (guess > low && guess < high) u = guess;
  }
  for (int i = 0; i < 60; ++i) {
    // Measured from the nearer end, so that the error is that of the shorter way.
    const double error = u - piece.u0 <= piece.u1 - u ? gaussLength(s, poles, piece.u0, u) - dist
                                                      : (piece.length - dist) - gaussLength(s, poles, u, piece.u1);
    (error > 0 ? high : low) = u;
    const double speed = gcgeSpeedAt(s, poles, u);
    double next = speed > 0 ? u - error / speed : low;
    if (!(next >= low && next <= high)) next = (low + high) / 2;
    const double step = std::abs(next - u);
    u = next;
    if (step <= 1e-9 * span && std::abs(error) <= 1e-8 * piece.length) break;  // the step squares the error
    if (step <= 1e-16 * std::abs(u) || high - low <= 1e-16 * std::abs(u)) break;
  }
  return u;
}

}  // namespace

GcGeMeasure::GcGeMeasure(const GcGePath& path) {
  double before = 0;
  const GcGePole* poles = path.poles();
  firstOfSpan.reserve(path.spans().size() + 1);
  for (size_t i = 0; i < path.spans().size(); ++i) {
    const GcGeSpan& s = path.spans()[i];
    firstOfSpan.push_back(static_cast<int>(pieces.size()));
    const int span = static_cast<int>(i);
    if (isUniform(s)) {
      const double speed = uniformSpeed(s), length = speed * (s.u1 - s.u0);
      pieces.push_back({span, s.u0, s.u1, before, length, speed, speed});
      before += length;
      continue;
    }
    constexpr double kGaussGood = 1e-13;
    halve(s, poles, s.u0, s.u1, kGaussGood, speedNoise(s, poles), 0, [&](double from, double to, double length) {
      pieces.push_back({span, from, to, before, length, gcgeSpeedAt(s, poles, from), gcgeSpeedAt(s, poles, to)});
      before += length;
    });
  }
  firstOfSpan.push_back(static_cast<int>(pieces.size()));
}

// The Kronrod rule's error is below the difference of the two rules, far below but at a sharp turn.
double gcgeLengthOf(const GcGeSpan& span, const GcGePole* poles, double u0, double u1) {
  if (isUniform(span)) return uniformSpeed(span) * (u1 - u0);
  const double kronrodGood = span.kind == GcGeSpan::Kind::Arc ? 1e-11 : 1e-10;
  double sum = 0;
  halve(span, poles, u0, u1, kronrodGood, speedNoise(span, poles), 0,
        [&](double, double, double length) { sum += length; });
  return sum;
}

double GcGePath::length() const {
  if (m_measure) return m_measure->total();
  double sum = 0;
  for (const GcGeSpan& s : m_spans) sum += gcgeLengthOf(s, poles(), s.u0, s.u1);
  return sum;
}

bool GcGePath::distAt(double t, double& dist) const {
  int span = 0;
  double u = 0;
  if (!locate(t, span, u)) return false;
  const GcGeSpan& s = m_spans[span];
  if (!s.isBounded()) {
    dist = u * s.b.length();
    return true;
  }
  const GcGeMeasure& table = measure();
  int index = table.firstOfSpan[span];
  while (index + 1 < table.firstOfSpan[span + 1] && table.pieces[index].u1 <= u) ++index;
  const GcGeMeasure::Piece& piece = table.pieces[index];
  if (u <= piece.u0)
    dist = piece.before;
  else if (u >= piece.u1)
    dist = piece.before + piece.length;
  else if (isUniform(s))
    dist = piece.before + piece.speed0 * (u - piece.u0);
  else
    dist = piece.before + gaussLength(s, poles(), piece.u0, u);
  return true;
}

bool GcGePath::paramAtDist(double dist, double& t) const {
  if (isEmpty() || std::isnan(dist)) return false;
  if (!isBounded()) {
    const GcGeSpan& s = m_spans.front();
    const double u = dist / s.b.length();
    if (u < s.u0 || u > s.u1 || std::isinf(u)) return false;
    t = s.tBase + s.tPerU * u;
    return true;
  }
  const GcGeMeasure& table = measure();
  const double total = table.total(), slack = std::max(tolerance(), 1e-12 * total);
  if (dist < -slack || dist > total + slack || table.pieces.empty()) return false;
  dist = std::clamp(dist, 0.0, total);
  auto piece = std::upper_bound(table.pieces.begin(), table.pieces.end(), dist,
                                [](double d, const GcGeMeasure::Piece& p) { return d < p.before; });
  if (piece != table.pieces.begin()) --piece;
  const GcGeSpan& s = m_spans[piece->span];
  const double within = dist - piece->before;
  double u = piece->u0;
  if (within >= piece->length)
    u = piece->u1;
  else if (within > 0)
    u = isUniform(s) ? piece->u0 + within / piece->speed0 : solve(s, poles(), *piece, within);
  t = s.tBase + s.tPerU * u;
  return true;
}
