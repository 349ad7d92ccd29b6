// Lengths along a path: cumulated lengths at the ends of pieces short enough for one 10-point Gauss rule.
//
// Straight lines and circular arcs are one piece each and exact; ellipses and Bezier curves are halved until the
// Gauss rule agrees with the Kronrod rule built on it to 1e-13 of the piece's length.
#pragma once

#include <vector>

#include "host/ge/curves/path.h"

struct GcGeMeasure {
  struct Piece {
    int span;
    double u0, u1;
    double before;  // length from the path's start (or base, for unbounded lines) to u0
    double length;
    double speed0, speed1;  // derivative of the length by u at the ends
  };
  std::vector<Piece> pieces;
  std::vector<int> firstOfSpan;

  explicit GcGeMeasure(const GcGePath& path);
  [[nodiscard]] double total() const { return pieces.empty() ? 0 : pieces.back().before + pieces.back().length; }
};

// Length of a span between two local parameters, without a table.
[[nodiscard]] double gcgeLengthOf(const GcGeSpan& span, const GcGePole* poles, double u0, double u1);
