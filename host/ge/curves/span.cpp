#include "host/ge/curves/span.h"

#include <algorithm>

#include "host/rx/math/elementary.h"

namespace {

GcGePole mix(const GcGePole& p, const GcGePole& q, double s) {
  const double r = 1 - s;
  return {r * p.x + s * q.x, r * p.y + s * q.y, r * p.z + s * q.z, r * p.w + s * q.w};
}

// Sine and versine from the half angle: exact at 0 and without cancellation near it.
struct Turn {
  double sine = 0, versine = 0;
  explicit Turn(double angle) {
    if (angle == 0) return;
    const gc::SinCos half = gc::sinCos(angle / 2);
    sine = 2 * half.sin * half.cos;
    versine = 2 * half.sin * half.sin;
  }
};

GcGeJet arcJet(const GcGeSpan& s, double u) {
  const Turn turn(s.sweep * u);
  const double cosine = 1 - turn.versine;
  return {s.a + s.c * turn.sine - s.b * turn.versine, (s.c * cosine - s.b * turn.sine) * s.sweep,
          (s.c * turn.sine + s.b * cosine) * (-s.sweep * s.sweep)};
}

GcGeJet cubicJet(const GcGePole* p, double u) {
  const double v = 1 - u;
  const GcGeVector3d p0 = p[0].numerator(), p1 = p[1].numerator(), p2 = p[2].numerator(), p3 = p[3].numerator();
  const GcGeVector3d d0 = p1 - p0, d1 = p2 - p1, d2 = p3 - p2;
  GcGeJet jet;
  jet.point = p0 * (v * v * v) + p1 * (3 * v * v * u) + p2 * (3 * v * u * u) + p3 * (u * u * u);
  jet.first = (d0 * (v * v) + d1 * (2 * u * v) + d2 * (u * u)) * 3.0;
  jet.second = ((d1 - d0) * v + (d2 - d1) * u) * 6.0;
  return jet;
}

// Quotient rule: C = A / w, C' = (A' - C w') / w, C'' = (A'' - 2 C' w' - C w'') / w.
GcGeJet quotient(const GcGePole& value, const GcGePole& first, const GcGePole& second) {
  GcGeJet jet;
  const double inverse = 1 / value.w;
  jet.point = value.numerator() * inverse;
  jet.first = (first.numerator() - jet.point * first.w) * inverse;
  jet.second = (second.numerator() - jet.first * (2 * first.w) - jet.point * second.w) * inverse;
  return jet;
}

// f0 p0 + f1 p1 + f2 p2 + f3 p3
GcGePole blend(const GcGePole* p, double f0, double f1, double f2, double f3) {
  return {f0 * p[0].x + f1 * p[1].x + f2 * p[2].x + f3 * p[3].x, f0 * p[0].y + f1 * p[1].y + f2 * p[2].y + f3 * p[3].y,
          f0 * p[0].z + f1 * p[1].z + f2 * p[2].z + f3 * p[3].z, f0 * p[0].w + f1 * p[1].w + f2 * p[2].w + f3 * p[3].w};
}

// Differences of neighbours first: nothing cancels in the slopes.
void differences(const GcGePole* from, int count, GcGePole* out) {
  for (int i = 0; i < count; ++i)
    out[i] = {from[i + 1].x - from[i].x, from[i + 1].y - from[i].y, from[i + 1].z - from[i].z,
              from[i + 1].w - from[i].w};
}

struct CubicSlope {
  GcGePole value, first;
  GcGePole legs[4];  // the fourth is zero
  CubicSlope(const GcGePole* p, double u) {
    const double v = 1 - u;
    differences(p, 3, legs);
    legs[3] = {0, 0, 0, 0};
    value = blend(p, v * v * v, 3 * v * v * u, 3 * v * u * u, u * u * u);
    first = blend(legs, 3 * v * v, 6 * v * u, 3 * u * u, 0);
  }
};

GcGeJet rationalCubicJet(const GcGePole* p, double u) {
  const CubicSlope at(p, u);
  GcGePole bends[2];
  differences(at.legs, 2, bends);
  const double f0 = 6 * (1 - u), f1 = 6 * u;
  return quotient(at.value, at.first,
                  {f0 * bends[0].x + f1 * bends[1].x, f0 * bends[0].y + f1 * bends[1].y,
                   f0 * bends[0].z + f1 * bends[1].z, f0 * bends[0].w + f1 * bends[1].w});
}

double rationalCubicSpeed(const GcGePole* p, double u) {
  const CubicSlope at(p, u);
  const double inverse = 1 / at.value.w, slope = at.first.w * inverse;
  const double x = at.first.x - at.value.x * slope, y = at.first.y - at.value.y * slope;
  const double z = at.first.z - at.value.z * slope;
  return std::sqrt(x * x + y * y + z * z) * inverse;
}

// de Casteljau down to the last three rows, which hold the homogeneous value and its two derivatives.
GcGeJet bezierJet(const GcGePole* poles, int n, double u) {
  GcGePole row[GcGeSpan::kMostDegree + 1];
  std::copy(poles, poles + n + 1, row);
  GcGePole first{0, 0, 0, 0}, second{0, 0, 0, 0};
  for (int left = n; left > 0; --left) {
    if (left == 2) {
      const double f = n * (n - 1);
      second = {f * (row[2].x - 2 * row[1].x + row[0].x), f * (row[2].y - 2 * row[1].y + row[0].y),
                f * (row[2].z - 2 * row[1].z + row[0].z), f * (row[2].w - 2 * row[1].w + row[0].w)};
    }
    if (left == 1) {
      const double f = n;
      first = {f * (row[1].x - row[0].x), f * (row[1].y - row[0].y), f * (row[1].z - row[0].z),
               f * (row[1].w - row[0].w)};
    }
    for (int i = 0; i < left; ++i) row[i] = mix(row[i], row[i + 1], u);
  }
  return quotient(row[0], first, second);
}

}  // namespace

GcGeJet gcgeJetAt(const GcGeSpan& span, const GcGePole* poles, double u) {
  switch (span.kind) {
    case GcGeSpan::Kind::Line: return {span.a + span.b * u, span.b, {}};
    case GcGeSpan::Kind::Arc: return arcJet(span, u);
    case GcGeSpan::Kind::Bezier: break;
  }
  const GcGePole* own = poles + span.firstPole;
  if (span.degree == 3) return span.rational ? rationalCubicJet(own, u) : cubicJet(own, u);
  return bezierJet(own, span.degree, u);
}

GcGeVector3d gcgePointAt(const GcGeSpan& span, const GcGePole* poles, double u) {
  if (span.kind == GcGeSpan::Kind::Line) return span.a + span.b * u;
  if (span.kind == GcGeSpan::Kind::Arc) {
    const Turn turn(span.sweep * u);
    return span.a + span.c * turn.sine - span.b * turn.versine;
  }
  if (span.kind == GcGeSpan::Kind::Bezier) {  // the ends exactly
    const GcGePole* own = poles + span.firstPole;
    if (u == 0) return own[0].point();
    if (u == 1) return own[span.degree].point();
  }
  return gcgeJetAt(span, poles, u).point;
}

double gcgeSpeedAt(const GcGeSpan& span, const GcGePole* poles, double u) {
  if (span.kind == GcGeSpan::Kind::Line) return span.b.length();
  if (span.kind == GcGeSpan::Kind::Bezier && span.degree == 3) {
    const GcGePole* p = poles + span.firstPole;
    if (span.rational) return rationalCubicSpeed(p, u);
    const double v = 1 - u, f0 = 3 * v * v, f1 = 6 * u * v, f2 = 3 * u * u;
    const double x = f0 * (p[1].x - p[0].x) + f1 * (p[2].x - p[1].x) + f2 * (p[3].x - p[2].x);
    const double y = f0 * (p[1].y - p[0].y) + f1 * (p[2].y - p[1].y) + f2 * (p[3].y - p[2].y);
    const double z = f0 * (p[1].z - p[0].z) + f1 * (p[2].z - p[1].z) + f2 * (p[3].z - p[2].z);
    return std::sqrt(x * x + y * y + z * z);
  }
  return gcgeJetAt(span, poles, u).first.length();
}

void gcgeTrimBezier(const GcGePole* poles, int degree, double v0, double v1, GcGePole* out) {
  std::copy(poles, poles + degree + 1, out);
  if (v1 != 1) {
    for (int left = degree; left > 0; --left)  // keep [0, v1]: the last pole of each row stays
      for (int i = degree; i > degree - left; --i) out[i] = mix(out[i - 1], out[i], v1);
  }
  if (v0 == 0) return;
  const double s = v0 / v1;
  for (int left = degree; left > 0; --left)
    for (int i = 0; i < left; ++i) out[i] = mix(out[i], out[i + 1], s);
}
