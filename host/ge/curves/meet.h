// Where two paths meet, or a path meets itself; in space: skew curves do not.
//
// Trees of boxes leave pairs of leaves. Lines and circles are solved in closed form, all other pairs by halving their
// Bezier forms until boxes along the chords part them or their tangents prove that one meeting is left at most, which
// Newton's method then finds (docs/geometry/intersections.md). Nothing within `tol` is missed.
#pragma once

#include <vector>

#include "host/ge/curves/path.h"

struct GcGeMeeting {
  double ta = 0, tb = 0;  // parameters on the two paths
  GcGeVector3d point;     // from the origin of the first path
};

// A stretch that two paths share; tb0 > tb1 when they run in opposite directions. Through the seam of a closed first
// path it runs from ta0 > ta1.
struct GcGeSharing {
  double ta0 = 0, ta1 = 0, tb0 = 0, tb1 = 0;
  GcGeVector3d from, to;  // its ends, from the origin of the first path
};

struct GcGeMeetings {
  std::vector<GcGeMeeting> points;     // in order along the first path, none inside a shared stretch
  std::vector<GcGeSharing> stretches;  // in order along the first path, joined where they touch
};

// Spans whose meetings nobody asks for, by their index; an empty list skips none.
struct GcGeSkip {
  const std::vector<bool>*a = nullptr, *b = nullptr;
  [[nodiscard]] bool ofA(int span) const { return a != nullptr && !a->empty() && (*a)[span]; }
  [[nodiscard]] bool ofB(int span) const { return b != nullptr && !b->empty() && (*b)[span]; }
};

// Two points closer than `tol` are one.
[[nodiscard]] GcGeMeetings gcgeMeet(const GcGePath& a, const GcGePath& b, double tol, const GcGeSkip& skip = {});

// Crossings of a path with itself, each once with ta < tb; joints of neighbouring spans do not count.
[[nodiscard]] GcGeMeetings gcgeMeetSelf(const GcGePath& path, double tol, const GcGeSkip& skip = {});

// 1e-10 of the smaller bounded size (of the other one for an unbounded line) and the rounding of coordinates.
[[nodiscard]] double gcgeMeetTolerance(const GcGePath& a, const GcGePath& b);
