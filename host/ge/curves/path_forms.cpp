// Paths made from paths: moved, reversed, trimmed, prolonged; and what a path is as a whole: planar, its area.
#include <limits>
#include <numbers>

#include "host/ge/curves/path.h"
#include "host/ge/curves/quadrature.h"

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// The same span run through from its end: u' = u0 + u1 - u.
void reverse(GcGeSpan& s, std::vector<GcGePole>& poles) {
  switch (s.kind) {
    case GcGeSpan::Kind::Line:
      if (s.isBounded()) {
        s.a = s.a + s.b * (s.u0 + s.u1);
      }
      s.b = -s.b;
      break;
    case GcGeSpan::Kind::Arc: {  // start anew at the end of the stretch in use
      const GcGeJet jet = gcgeJetAt(s, nullptr, s.u0 + s.u1);
      const GcGeVector3d c = jet.first / s.sweep;
      s.b = jet.second / (-s.sweep * s.sweep);
      s.a = jet.point;
      s.c = -c;
      break;
    }
    case GcGeSpan::Kind::Bezier:
      std::reverse(poles.begin() + s.firstPole, poles.begin() + s.firstPole + s.degree + 1);
      break;
  }
  if (s.kind == GcGeSpan::Kind::Bezier) {
    const double u0 = s.u0;
    s.u0 = 1 - s.u1;
    s.u1 = 1 - u0;
  } else if (!s.isBounded()) {
    const double u0 = s.u0;
    s.u0 = -s.u1;
    s.u1 = -u0;
  }
}

// Half the integral of (C - from) x dC over one span. A circular or elliptical arc: the triangle's and the segment's
// area, |b x c| (f - sin f) / 2; Bezier curves: the integrand is a polynomial of degree 2 n - 1 when not rational.
GcGeVector3d spanArea(const GcGeSpan& s, const GcGePole* poles, const GcGeVector3d& from) {
  const GcGeVector3d p0 = gcgePointAt(s, poles, s.u0) - from, p1 = gcgePointAt(s, poles, s.u1) - from;
  if (s.kind == GcGeSpan::Kind::Line) return p0.crossProduct(p1 - p0) * 0.5;
  if (s.kind == GcGeSpan::Kind::Arc) {
    const double angle = s.sweep * (s.u1 - s.u0);
    return p0.crossProduct(p1 - p0) * 0.5 + s.b.crossProduct(s.c) * (0.5 * gcgeAngleMinusSine(angle));
  }
  const double sign = s.u1 < s.u0 ? -1 : 1;
  double reach = 0;  // of the terms of the integrand: what they cancel to is known to their rounding only
  for (int i = 0; i <= s.degree; ++i) reach = std::max(reach, (poles[s.firstPole + i].point() - from).lengthSqrd());
  return gcgeIntegrateVector(
             [&](double u) {
               const GcGeJet jet = gcgeJetAt(s, poles, u);
               return (jet.point - from).crossProduct(jet.first) * 0.5;
             },
             std::min(s.u0, s.u1), std::max(s.u0, s.u1), reach) *
         sign;
}

// Every point that pins down where a span lies: ends of lines, the frame of arcs, all poles.
template <class F>
void eachFramePoint(const GcGePath& path, const F& f) {
  for (const GcGeSpan& s : path.spans()) {
    if (s.kind == GcGeSpan::Kind::Bezier) {
      for (int i = 0; i <= s.degree; ++i) f(path.poles()[s.firstPole + i].point());
      continue;
    }
    const bool arc = s.kind == GcGeSpan::Kind::Arc;
    const double u0 = std::isfinite(s.u0) ? s.u0 : 0, u1 = std::isfinite(s.u1) ? s.u1 : u0 + 1;
    f(gcgePointAt(s, nullptr, u0));
    f(gcgePointAt(s, nullptr, u1));
    if (arc)
      for (int i = 1; i < 8; ++i) f(gcgePointAt(s, nullptr, u0 + (u1 - u0) * i / 8));
  }
}

}  // namespace

GcGeVector3d GcGePath::vectorArea() const {
  if (isEmpty() || !isBounded()) return {};
  const GcGeVector3d from = pointOn(0, m_spans.front().u0);
  GcGeVector3d sum;
  for (const GcGeSpan& s : m_spans) sum += spanArea(s, poles(), from);
  return sum;
}

// The point farthest from the start and the point farthest from their line span the plane; then all are held to it.
bool GcGePath::isPlanar(GcGeVector3d& normal) const {
  normal = {};
  if (isEmpty()) return false;
  const GcGeSpan& head = m_spans.front();
  const GcGeVector3d start = pointOn(0, std::isfinite(head.u0) ? head.u0 : 0);
  GcGeVector3d far, up;
  eachFramePoint(*this, [&](const GcGeVector3d& p) {
    if ((p - start).lengthSqrd() > far.lengthSqrd()) far = p - start;
  });
  const double reach = far.length();
  eachFramePoint(*this, [&](const GcGeVector3d& p) {
    const GcGeVector3d n = far.crossProduct(p - start);
    if (n.lengthSqrd() > up.lengthSqrd()) up = n;
  });
  const double tol = tolerance();
  if (up.length() <= tol * reach) return true;  // straight
  const GcGeVector3d unit = up / up.length();
  double off = 0;
  eachFramePoint(*this, [&](const GcGeVector3d& p) { off = std::max(off, std::abs(unit.dotProduct(p - start))); });
  if (off > 10 * tol) return false;
  const double lead = std::abs(unit.z) > 1e-9 ? unit.z : std::abs(unit.y) > 1e-9 ? unit.y : unit.x;
  normal = lead < 0 ? -unit : unit;
  return true;
}

GcGePath GcGePath::transformed(const GcGeMatrix3d& m) const {
  GcGePath out(*this);
  out.changed();
  out.m_origin = m * m_origin;
  const bool similar = m.isUniScaledOrtho();
  for (GcGeSpan& s : out.m_spans) {
    s.a = m * s.a;
    s.b = m * s.b;
    s.c = m * s.c;
    s.circular = s.circular && similar;
    if (!s.isBounded()) {  // the parameter stays the distance
      const double length = s.b.length();
      if (length == 0) continue;
      s.b = s.b / length;
      s.u0 *= length;
      s.u1 *= length;
    }
  }
  for (GcGePole& p : out.m_poles) {
    const GcGeVector3d v = m * p.numerator();
    p = {v.x, v.y, v.z, p.w};
  }
  return out;
}

GcGePath GcGePath::flattened(const GcGeVector3d& unitDirection) const {
  GcGePath out(*this);
  out.changed();
  const auto flat = [&](const GcGeVector3d& v) {
    const GcGeVector3d on = v - unitDirection * unitDirection.dotProduct(v);
    return on.lengthSqrd() > 1e-24 * v.lengthSqrd() ? on : GcGeVector3d();  // what is left of it is rounding
  };
  for (GcGeSpan& s : out.m_spans) {
    s.a = flat(s.a);
    s.b = flat(s.b);
    s.c = flat(s.c);
    s.circular = false;
  }
  for (GcGePole& p : out.m_poles) {
    const GcGeVector3d v = flat(p.numerator());
    p = {v.x, v.y, v.z, p.w};
  }
  return out;
}

GcGePath GcGePath::reversed() const {
  GcGePath out(*this);
  out.changed();
  std::reverse(out.m_spans.begin(), out.m_spans.end());
  const bool bounded = isBounded();
  const double first = startParam(), last = endParam();
  for (GcGeSpan& s : out.m_spans) {
    const double t0 = s.t0(), t1 = s.t1();
    reverse(s, out.m_poles);
    if (!bounded) continue;
    s.tPerU = (t1 - t0) / (s.u1 - s.u0);
    s.tBase = first + (last - t1) - s.tPerU * s.u0;
  }
  return out;
}

GcGePath GcGePath::trimmed(double t0, double t1) const {
  GcGePath out(m_origin);
  int from = 0, to = 0;
  double uFrom = 0, uTo = 0;
  if (!locate(t0, from, uFrom) || !locate(t1, to, uTo)) return out;
  const int count = static_cast<int>(m_spans.size());
  if (to > 0 && uTo == m_spans[to].u0) uTo = m_spans[--to].u1;  // ends at a joint: no empty span behind it
  const bool wraps = t1 <= t0;
  if (wraps && !m_closed) return out;
  double shift = 0;
  for (int i = from;; ++i) {
    if (i == count) i = 0, shift = endParam() - startParam();
    const bool last = i == to && (shift > 0 || !wraps);
    GcGeSpan s = m_spans[i];
    if (i == from && shift == 0) s.u0 = uFrom;
    if (last) s.u1 = uTo;
    s.tBase += shift;
    if (s.u1 > s.u0) out.addSpan(s, poles());
    if (last) break;
  }
  return out;
}

GcGePath GcGePath::extended() const {
  GcGePath out(*this);
  if (isEmpty()) return out;
  out.changed();
  const bool single = m_spans.size() == 1;
  if (m_closed) return out;
  const auto prolong = [&](GcGeSpan& s, bool atStart, bool atEnd) {
    constexpr double kInf = std::numeric_limits<double>::infinity();
    if (s.kind == GcGeSpan::Kind::Line) {
      if (atStart) s.u0 = -kInf;
      if (atEnd) s.u1 = kInf;
    } else if (s.kind == GcGeSpan::Kind::Arc && s.sweep != 0) {
      const double whole = kTwoPi / std::abs(s.sweep);
      if (whole <= s.u1 - s.u0) return;
      if (atEnd)
        s.u1 = s.u0 + whole;
      else
        s.u0 = s.u1 - whole;
    }
  };
  prolong(out.m_spans.front(), true, single);
  if (!single) prolong(out.m_spans.back(), false, true);
  return out;
}
