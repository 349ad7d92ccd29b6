// Polynomials on [0, 1] in Bernstein form: their coefficients bound them, and sign changes bound their roots.
#pragma once

#include "host/ge/curves/span.h"

// Degree of the longest polynomial that comes up: the closest point on a rational curve.
inline constexpr int kGcGeMostBernstein = 3 * GcGeSpan::kMostDegree;

// Binomial coefficient n over k, n up to kGcGeMostBernstein.
[[nodiscard]] double gcgeBinomial(int n, int k);

// Roots in [0, 1], rising: every sign change of the polynomial once. Roots of even order (touching without a change
// of sign) are given when they cannot be told from a pair of roots closer than about 1e-7. Returns their number,
// at most `room`.
// Source: variation diminishing property; halving until one sign change is left, then the Illinois rule of false position.
int gcgeBernsteinRoots(const double* coefficients, int degree, double* roots, int room);

// The Bernstein coefficients of (C - p) . C' times the square of the weight, whose roots are the feet of perpendiculars
// from p on the curve. Returns the degree: 2 n - 1, or 3 n - 1 for rational curves. `out` has room for kGcGeMostBernstein + 1.
int gcgeFootPolynomial(const GcGePole* poles, int degree, bool rational, const GcGeVector3d& p, double* out);
