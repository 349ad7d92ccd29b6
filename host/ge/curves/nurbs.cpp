#include "host/ge/curves/nurbs.h"

#include <algorithm>
#include <cmath>

#include "host/ge/curves/tree.h"

namespace {

GcGePole mix(const GcGePole& p, const GcGePole& q, double s) {
  const double r = 1 - s;
  return {r * p.x + s * q.x, r * p.y + s * q.y, r * p.z + s * q.z, r * p.w + s * q.w};
}

std::vector<GcGePole> homogeneous(const GcGeNurbs& spline, const GcGePoint3d& origin) {
  std::vector<GcGePole> poles(spline.points.size());
  for (size_t i = 0; i < poles.size(); ++i) {
    const double w = spline.weights.empty() ? 1 : spline.weights[i];
    const GcGeVector3d v = (spline.points[i] - origin) * w;
    poles[i] = {v.x, v.y, v.z, w};
  }
  return poles;
}

void setPoles(GcGeNurbs& spline, const std::vector<GcGePole>& poles, const GcGePoint3d& origin, bool rational) {
  spline.points.clear();
  spline.weights.clear();
  for (const GcGePole& p : poles) {
    spline.points.push_back(origin + p.point());
    if (rational) spline.weights.push_back(p.w);
  }
}

// One pole of the Bezier form on the knot interval `at`: the blossom with `high` arguments at the interval's end and
// the others at its start (de Boor's recursion with a different argument in each step).
GcGePole blossom(const std::vector<GcGePole>& poles, const std::vector<double>& knots, int p, int at, int high) {
  GcGePole row[GcGeSpan::kMostDegree + 1];
  std::copy(poles.begin() + (at - p), poles.begin() + (at + 1), row);
  for (int r = 1; r <= p; ++r) {
    const double t = r <= high ? knots[at + 1] : knots[at];
    for (int k = p; k >= r; --k) {
      const double from = knots[at - p + k], to = knots[at + k - r + 1];
      row[k] = mix(row[k - 1], row[k], (t - from) / (to - from));
    }
  }
  return row[p];
}

// Boehm's knot insertion, once.
void insertKnot(std::vector<GcGePole>& poles, std::vector<double>& knots, int p, double t) {
  const int at = static_cast<int>(std::upper_bound(knots.begin(), knots.end(), t) - knots.begin()) - 1;
  const int count = static_cast<int>(poles.size());
  std::vector<GcGePole> fresh(count + 1);
  for (int i = 0; i <= count; ++i) {
    if (i <= at - p) {
      fresh[i] = poles[i];
    } else if (i > at || i >= count) {
      fresh[i] = poles[i - 1];
    } else {
      const double span = knots[i + p] - knots[i];
      fresh[i] = span > 0 ? mix(poles[i - 1], poles[i], (t - knots[i]) / span) : poles[i - 1];
    }
  }
  poles = std::move(fresh);
  knots.insert(knots.begin() + at + 1, t);
}

}  // namespace

bool GcGeNurbs::isValid() const {
  const size_t count = points.size();
  if (degree < 1 || degree > GcGeSpan::kMostDegree || count < static_cast<size_t>(degree) + 1) return false;
  if (knots.size() != count + degree + 1 || (!weights.empty() && weights.size() != count)) return false;
  for (size_t i = 0; i < knots.size(); ++i)
    if (!std::isfinite(knots[i]) || (i > 0 && knots[i] < knots[i - 1])) return false;
  for (const double w : weights)
    if (!(w > 0) || !std::isfinite(w)) return false;
  for (const GcGePoint3d& p : points)
    if (!std::isfinite(p.x + p.y + p.z)) return false;
  return knots[count] > knots[degree];
}

bool gcgePathOfNurbs(const GcGeNurbs& spline, GcGePath& path) {
  if (!spline.isValid()) return false;
  const int p = spline.degree;
  path.clear(spline.points.front());
  const std::vector<GcGePole> poles = homogeneous(spline, spline.points.front());
  GcGePole piece[GcGeSpan::kMostDegree + 1];
  for (int at = p; at < static_cast<int>(spline.points.size()); ++at) {
    if (!(spline.knots[at + 1] > spline.knots[at])) continue;
    for (int i = 0; i <= p; ++i) piece[i] = blossom(poles, spline.knots, p, at, i);
    path.addBezier(piece, p, spline.knots[at], spline.knots[at + 1]);
  }
  path.setClosed(spline.closed || spline.periodic, spline.periodic);
  return true;
}

GcGeNurbs gcgeTrimNurbs(const GcGeNurbs& spline, double t0, double t1) {
  const GcGePoint3d origin = spline.points.front();
  std::vector<GcGePole> poles = homogeneous(spline, origin);
  std::vector<double> knots = spline.knots;
  const int p = spline.degree;
  const auto clamp = [&](double t) {
    int times = static_cast<int>(std::count(knots.begin(), knots.end(), t));
    for (; times < p; ++times) insertKnot(poles, knots, p, t);
  };
  clamp(t0);
  clamp(t1);
  // The poles of the part: from the one that t0 (p times) yields to the one that t1 yields.
  const auto first0 = std::upper_bound(knots.begin(), knots.end(), t0) - knots.begin() - p;
  const auto first1 = std::lower_bound(knots.begin(), knots.end(), t1) - knots.begin();
  GcGeNurbs out;
  out.degree = p;
  out.knots.assign(1, t0);
  out.knots.insert(out.knots.end(), knots.begin() + first0, knots.begin() + first1 + p);
  out.knots.push_back(t1);
  const size_t count = out.knots.size() - p - 1;
  std::vector<GcGePole> kept(poles.begin() + (first0 - 1), poles.begin() + (first0 - 1 + static_cast<long>(count)));
  setPoles(out, kept, origin, !spline.weights.empty());
  return out;
}

GcGeNurbs gcgeReverseNurbs(const GcGeNurbs& spline) {
  GcGeNurbs out = spline;
  std::reverse(out.points.begin(), out.points.end());
  std::reverse(out.weights.begin(), out.weights.end());
  const double sum = spline.startParam() + spline.endParam();
  for (size_t i = 0; i < out.knots.size(); ++i) out.knots[i] = sum - spline.knots[spline.knots.size() - 1 - i];
  return out;
}

namespace {

// Raises the degree of a Bezier curve by one, in place.
void raise(std::vector<GcGePole>& poles) {
  const int n = static_cast<int>(poles.size());  // the new degree
  poles.push_back(poles.back());
  for (int i = n - 1; i > 0; --i) poles[i] = mix(poles[i], poles[i - 1], static_cast<double>(i) / n);
}

// The path's parts as Bezier curves over their parameter ranges.
struct Part {
  std::vector<GcGePole> poles;
  double t0, t1;
};

std::vector<Part> partsOf(const GcGePath& path, int& degree, bool& rational) {
  std::vector<Part> parts;
  degree = 1;
  rational = false;
  for (const GcGeSpan& s : path.spans()) {
    if (s.kind == GcGeSpan::Kind::Bezier) {
      Part part{std::vector<GcGePole>(s.degree + 1), s.t0(), s.t1()};
      gcgeTrimBezier(path.poles() + s.firstPole, s.degree, s.u0, s.u1, part.poles.data());
      parts.push_back(std::move(part));
      rational = rational || s.rational;
    }
    if (s.kind == GcGeSpan::Kind::Bezier) continue;
    GcGePath single(path.origin());
    single.addSpan(s, path.poles());
    const GcGeTree tree(single);
    for (int i = 0; i < static_cast<int>(tree.leaves.size()); ++i) {
      GcGeLeafCurve leaf;
      gcgeLeafCurve(single, tree, i, leaf);
      parts.push_back({std::vector<GcGePole>(leaf.poles, leaf.poles + leaf.degree + 1), s.tBase + s.tPerU * leaf.u0,
                       s.tBase + s.tPerU * leaf.u1});
      rational = rational || leaf.rational;
    }
  }
  for (const Part& part : parts) degree = std::max(degree, static_cast<int>(part.poles.size()) - 1);
  return parts;
}

bool joinsSmoothly(const Part& a, const Part& b, int degree, double tol) {
  const GcGeVector3d in = (a.poles[degree].point() - a.poles[degree - 1].point()) / (a.t1 - a.t0);
  const GcGeVector3d out = (b.poles[1].point() - b.poles[0].point()) / (b.t1 - b.t0);
  return (in - out).length() * std::min(a.t1 - a.t0, b.t1 - b.t0) <= tol;
}

}  // namespace

GcGeNurbs gcgeNurbsOfPath(const GcGePath& path) {
  GcGeNurbs out;
  bool rational = false;
  std::vector<Part> parts = partsOf(path, out.degree, rational);
  out.closed = path.isClosed();
  if (parts.empty()) return out;
  for (Part& part : parts)
    while (static_cast<int>(part.poles.size()) <= out.degree) raise(part.poles);
  // Where stretches have been left out of a path its parameter leaps; knots go on without a gap.
  for (size_t i = 1; i < parts.size(); ++i) {
    const double range = parts[i].t1 - parts[i].t0;
    parts[i].t0 = parts[i - 1].t1;
    parts[i].t1 = parts[i].t0 + range;
  }
  const int p = out.degree;
  std::vector<GcGePole> poles(parts[0].poles.begin(), parts[0].poles.end());
  out.knots.assign(p + 1, parts[0].t0);
  for (size_t i = 1; i < parts.size(); ++i) {
    // A gap keeps both its ends: knots of full multiplicity.
    const bool torn = (parts[i].poles[0].point() - poles.back().point()).length() > 16 * path.tolerance();
    const bool smooth = !torn && p > 1 && !rational && joinsSmoothly(parts[i - 1], parts[i], p, path.tolerance());
    if (smooth) poles.pop_back();
    out.knots.insert(out.knots.end(), torn ? p + 1 : smooth ? p - 1 : p, parts[i].t0);
    poles.insert(poles.end(), parts[i].poles.begin() + (torn ? 0 : 1), parts[i].poles.end());
  }
  out.knots.insert(out.knots.end(), p + 1, parts.back().t1);
  setPoles(out, poles, path.origin(), rational);
  return out;
}
