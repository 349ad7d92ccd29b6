#include "host/ge/curves/bernstein.h"

#include <algorithm>

namespace {

struct Binomials {
  double row[kGcGeMostBernstein + 1][kGcGeMostBernstein + 1];
  constexpr Binomials() : row{} {
    for (int n = 0; n <= kGcGeMostBernstein; ++n) {
      row[n][0] = row[n][n] = 1;
      for (int k = 1; k < n; ++k) row[n][k] = row[n - 1][k - 1] + row[n - 1][k];
    }
  }
};
constexpr Binomials kBinomials;

int signChanges(const double* c, int n) {
  int changes = 0;
  double last = 0;
  for (int i = 0; i <= n; ++i) {
    if (c[i] == 0) continue;
    if (last != 0 && (c[i] > 0) != (last > 0)) ++changes;
    last = c[i];
  }
  return changes;
}

double valueAt(const double* c, int n, double u) {
  double row[kGcGeMostBernstein + 1];
  std::copy(c, c + n + 1, row);
  for (int left = n; left > 0; --left)
    for (int i = 0; i < left; ++i) row[i] += u * (row[i + 1] - row[i]);
  return row[0];
}

// The one root between two values of opposite sign.
double illinois(const double* c, int n, double low, double high, double atLow, double atHigh) {
  int side = 0;
  for (int i = 0; i < 80 && high - low > 1e-14; ++i) {
    const double u = (low * atHigh - high * atLow) / (atHigh - atLow);
    if (!(u > low && u < high)) return u <= low ? low : high;  // next to an end: it has nearly the value 0
    const double value = valueAt(c, n, u);
    if (value == 0) return u;
    if ((value > 0) == (atHigh > 0)) {
      if (u > high - 1e-11 && side == 1) return u;
      high = u, atHigh = value;
      if (side == 1) atLow /= 2;
      side = 1;
    } else {
      low = u, atLow = value;
      if (side == -1) atHigh /= 2;
      side = -1;
    }
  }
  return (low + high) / 2;
}

class RootFinder {
 public:
  RootFinder(double* roots, int room) : m_roots(roots), m_room(room) {}
  [[nodiscard]] int found() const { return m_found; }

  void search(const double* c, int n, double from, double to, int depth) {
    const int changes = signChanges(c, n);
    if (changes == 0) {  // an end that is exactly zero counts once, at the left
      if (c[0] == 0) give(from);
      if (c[n] == 0 && to == 1) give(to);
      return;
    }
    constexpr int kMostHalvings = 26;
    if (changes == 1 && c[0] != 0 && c[n] != 0) return give(from + (to - from) * illinois(c, n, 0, 1, c[0], c[n]));
    if (depth == kMostHalvings) return give((from + to) / 2);
    double left[kGcGeMostBernstein + 1], right[kGcGeMostBernstein + 1];
    std::copy(c, c + n + 1, right);
    for (int done = 0; done <= n; ++done) {
      left[done] = right[0];
      for (int i = 0; i < n - done; ++i) right[i] = (right[i] + right[i + 1]) / 2;
    }
    const double middle = (from + to) / 2;
    search(left, n, from, middle, depth + 1);
    search(right, n, middle, to, depth + 1);
  }

 private:
  void give(double root) {
    if (m_found < m_room) m_roots[m_found++] = root;
  }
  double* m_roots;
  int m_room, m_found = 0;
};

}  // namespace

double gcgeBinomial(int n, int k) { return kBinomials.row[n][k]; }

int gcgeBernsteinRoots(const double* coefficients, int degree, double* roots, int room) {
  RootFinder finder(roots, room);
  finder.search(coefficients, degree, 0, 1, 0);
  return finder.found();
}

// Products of Bernstein polynomials are convolutions of coefficients scaled by their binomials.
int gcgeFootPolynomial(const GcGePole* poles, int degree, bool rational, const GcGeVector3d& p, double* out) {
  constexpr int kMost = GcGeSpan::kMostDegree;
  const int n = degree;
  GcGeVector3d rel[kMost + 1], leg[kMost];
  for (int i = 0; i <= n; ++i) {
    const double w = poles[i].w;
    rel[i] = GcGeVector3d(poles[i].x - w * p.x, poles[i].y - w * p.y, poles[i].z - w * p.z);
  }
  for (int i = 0; i < n; ++i) leg[i] = (rel[i + 1] - rel[i]) * gcgeBinomial(n - 1, i);
  for (int i = 1; i < n; ++i) rel[i] *= gcgeBinomial(n, i);
  double slope[2 * kMost] = {};  // N . N', degree 2 n - 1
  for (int i = 0; i <= n; ++i)
    for (int j = 0; j < n; ++j) slope[i + j] += rel[i].dotProduct(leg[j]);
  if (!rational) {
    for (int k = 0; k < 2 * n; ++k) out[k] = slope[k] / gcgeBinomial(2 * n - 1, k);
    return 2 * n - 1;
  }
  double square[2 * kMost + 1] = {};  // N . N, degree 2 n
  for (int i = 0; i <= n; ++i)
    for (int j = 0; j <= n; ++j) square[i + j] += rel[i].dotProduct(rel[j]);
  const int top = 3 * n - 1;
  for (int k = 0; k <= top && k <= kGcGeMostBernstein; ++k) out[k] = 0;
  for (int i = 0; i <= n; ++i) {  // w (N . N')
    const double w = poles[i].w * gcgeBinomial(n, i);
    for (int j = 0; j < 2 * n; ++j) out[i + j] += w * slope[j];
  }
  for (int i = 0; i < n; ++i) {  // - w' (N . N)
    const double step = (poles[i + 1].w - poles[i].w) * gcgeBinomial(n - 1, i);
    for (int j = 0; j <= 2 * n; ++j) out[i + j] -= step * square[j];
  }
  for (int k = 0; k <= top; ++k) out[k] /= gcgeBinomial(top, k);
  return top;
}
