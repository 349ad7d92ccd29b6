// Cubic splines through points.
#include "host/ge/curves/nurbs.h"

namespace {

// Solves the tridiagonal system of the points' derivatives. Row i: low[i] d[i-1] + mid[i] d[i] + up[i] d[i+1] = d[i].
void solveTridiagonal(std::vector<double> low, std::vector<double> mid, std::vector<double> up,
                      std::vector<GcGeVector3d>& d) {
  const size_t n = d.size();
  for (size_t i = 1; i < n; ++i) {
    const double f = low[i] / mid[i - 1];
    mid[i] -= f * up[i - 1];
    d[i] = d[i] - d[i - 1] * f;
  }
  d[n - 1] = d[n - 1] / mid[n - 1];
  for (size_t i = n - 1; i-- > 0;) d[i] = (d[i] - d[i + 1] * up[i]) / mid[i];
}

// The cyclic system by Sherman and Morrison: corner entries `low[0]` and `up[n-1]`.
void solveCyclic(std::vector<double> low, std::vector<double> mid, std::vector<double> up,
                 std::vector<GcGeVector3d>& d) {
  const size_t n = d.size();
  const double alpha = up[n - 1], beta = low[0], gamma = -mid[0];
  mid[0] -= gamma;
  mid[n - 1] -= alpha * beta / gamma;
  std::vector<GcGeVector3d> z(n);
  z[0] = {gamma, 0, 0};
  z[n - 1] = {alpha, 0, 0};
  solveTridiagonal(low, mid, up, d);
  solveTridiagonal(low, mid, up, z);
  const double scale = 1 + z[0].x + beta * z[n - 1].x / gamma;
  const GcGeVector3d fact = (d[0] + d[n - 1] * (beta / gamma)) / scale;
  for (size_t i = 0; i < n; ++i) d[i] = d[i] - fact * z[i].x;
}

// Derivatives by the chord length at the points: continuity of the second derivative.
std::vector<GcGeVector3d> slopes(const std::vector<GcGePoint3d>& p, const std::vector<double>& h, bool closed,
                                 const GcGeVector3d& startTangent, const GcGeVector3d& endTangent) {
  const size_t n = closed ? p.size() - 1 : p.size();
  std::vector<double> low(n, 0), mid(n, 1), up(n, 0);
  std::vector<GcGeVector3d> d(n);
  for (size_t i = 0; i < n; ++i) {
    if (!closed && (i == 0 || i + 1 == n)) continue;
    const size_t before = i == 0 ? n - 1 : i - 1;
    const double h0 = h[before], h1 = h[i];
    low[i] = 1 / h0;
    up[i] = 1 / h1;
    mid[i] = 2 * (low[i] + up[i]);
    d[i] = (p[i] - p[before]) * (3 / (h0 * h0)) + (p[i + 1] - p[i]) * (3 / (h1 * h1));
  }
  if (closed) {
    if (n == 2) {  // both neighbours are the same point: each row's corners fall together
      const double determinant = mid[0] * mid[1] - (low[0] + up[0]) * (low[1] + up[1]);
      const GcGeVector3d d0 = (d[0] * mid[1] - d[1] * (low[0] + up[0])) / determinant;
      d[1] = (d[1] * mid[0] - d[0] * (low[1] + up[1])) / determinant;
      d[0] = d0;
    } else {
      solveCyclic(low, mid, up, d);
    }
    d.push_back(d.front());
    return d;
  }
  const auto unit = [](const GcGeVector3d& v) { return v / v.length(); };
  if (startTangent.lengthSqrd() > 0) {
    d[0] = unit(startTangent);
  } else {
    mid[0] = 2, up[0] = 1;
    d[0] = (p[1] - p[0]) * (3 / h[0]);
  }
  if (endTangent.lengthSqrd() > 0) {
    d[n - 1] = unit(endTangent);
  } else {
    mid[n - 1] = 2, low[n - 1] = 1;
    d[n - 1] = (p[n - 1] - p[n - 2]) * (3 / h[n - 2]);
  }
  solveTridiagonal(low, mid, up, d);
  return d;
}

}  // namespace

bool gcgeInterpolate(const std::vector<GcGePoint3d>& points, const GcGeVector3d& startTangent,
                     const GcGeVector3d& endTangent, bool closed, GcGeNurbs& spline) {
  std::vector<GcGePoint3d> p;
  for (const GcGePoint3d& point : points)  // doubled points would make knots fall together
    if (p.empty() || point.distanceTo(p.back()) > 0) p.push_back(point);
  if (closed && !p.empty() && p.back().distanceTo(p.front()) > 0) p.push_back(p.front());
  if (p.size() < 2 || (closed && p.size() < 3)) return false;
  std::vector<double> h, t(1, 0);
  for (size_t i = 1; i < p.size(); ++i) {
    h.push_back(p[i].distanceTo(p[i - 1]));
    t.push_back(t.back() + h.back());
  }
  const std::vector<GcGeVector3d> d = slopes(p, h, closed, startTangent, endTangent);
  // Poles of the spline whose knots are the chord lengths: each is the blossom of three neighbouring knots, found
  // from the Bezier poles of the interval it is nearest to.
  spline = GcGeNurbs();
  spline.closed = closed;
  spline.knots.assign(3, t.front());
  spline.knots.insert(spline.knots.end(), t.begin(), t.end());
  spline.knots.insert(spline.knots.end(), 3, t.back());
  const size_t last = p.size() - 1;
  spline.points.push_back(p.front());
  spline.points.push_back(p.front() + d.front() * (h.front() / 3));
  for (size_t i = 1; i < last; ++i) {
    // blossom(t[i-1], t[i], t[i+1]) from those at (t[i], t[i], t[i-1]) and (t[i], t[i], t[i+1]): both lie on the
    // tangent at t[i]; the wanted pole follows from the cubic's second derivative there.
    const GcGeVector3d second = (p[i + 1] - p[i]) * (6 / (h[i] * h[i])) - (d[i] * 4.0 + d[i + 1] * 2.0) / h[i];
    spline.points.push_back(p[i] + d[i] * ((h[i] - h[i - 1]) / 3) - second * (h[i - 1] * h[i] / 6));
  }
  spline.points.push_back(p.back() - d.back() * (h.back() / 3));
  spline.points.push_back(p.back());
  return true;
}
