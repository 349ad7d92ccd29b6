// Parallel curves in a plane.
//
// A positive distance lies to the right of the direction of travel seen against the normal: outside for circles that
// run counter-clockwise. Lines and circular arcs give the same; ellipses and Bezier curves give cubics that keep
// to the true parallel curve within `fit`. Corners that open are closed by prolonging their sides (by an arc about
// the corner where these do not meet). What comes nearer to the path than the distance is cut away, so there may be
// several results or none, in order along the path (docs/geometry/offsets.md).
#pragma once

#include <vector>

#include "host/ge/curves/path.h"

struct GcGeOffsetTol {
  double fit = 0;    // deviation of approximated parts, drawing units; 0: 1e-7 of the distance
  double point = 0;  // points closer than this are one; 0: the path's tolerance
};

// The path must lie in a plane at right angles to the unit normal. Lines without end are moved whole.
[[nodiscard]] std::vector<GcGePath> gcgeOffset(const GcGePath& path, const GcGeVector3d& normal, double distance,
                                               GcGeOffsetTol tol = {});

// The untrimmed parallel path: every span's own parallel with its joints closed. Its parameter is one of its own.
// Spans of zero length are left out.
struct GcGeRawOffset {
  GcGePath path;
  // For every corner closed by prolonged sides, the arc about it that they replace.
  std::vector<GcGePath> cornerArcs;
  // Spans in the place of collapsed arcs, everywhere clearly nearer to the source than the distance: they only hold
  // the path together. Empty when there are none.
  std::vector<bool> tooNear;
};
[[nodiscard]] GcGeRawOffset gcgeRawOffset(const GcGePath& path, const GcGeVector3d& normal, double distance,
                                          const GcGeOffsetTol& tol);
