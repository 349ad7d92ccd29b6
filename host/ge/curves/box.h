// Axis-parallel boxes of points given as vectors from a common origin.
#pragma once

#include <algorithm>
#include <cmath>

#include "ge/point.h"

struct GcGeBox {
  double lo[3] = {1e300, 1e300, 1e300};
  double hi[3] = {-1e300, -1e300, -1e300};

  void add(const GcGeVector3d& p) {
    lo[0] = std::min(lo[0], p.x), hi[0] = std::max(hi[0], p.x);
    lo[1] = std::min(lo[1], p.y), hi[1] = std::max(hi[1], p.y);
    lo[2] = std::min(lo[2], p.z), hi[2] = std::max(hi[2], p.z);
  }
  void add(const GcGeBox& box) {
    for (int i = 0; i < 3; ++i) lo[i] = std::min(lo[i], box.lo[i]), hi[i] = std::max(hi[i], box.hi[i]);
  }
  [[nodiscard]] bool isEmpty() const { return lo[0] > hi[0]; }
  [[nodiscard]] double distanceSquared(const GcGeVector3d& p) const {
    const double x = std::max({lo[0] - p.x, 0.0, p.x - hi[0]});
    const double y = std::max({lo[1] - p.y, 0.0, p.y - hi[1]});
    const double z = std::max({lo[2] - p.z, 0.0, p.z - hi[2]});
    return x * x + y * y + z * z;
  }
  // Moved, then wider by `margin` on all sides.
  [[nodiscard]] GcGeBox grown(const GcGeVector3d& shift, double margin) const {
    return {{lo[0] + shift.x - margin, lo[1] + shift.y - margin, lo[2] + shift.z - margin},
            {hi[0] + shift.x + margin, hi[1] + shift.y + margin, hi[2] + shift.z + margin}};
  }
  // Without branches: how it comes out is hard to foretell.
  [[nodiscard]] bool meets(const GcGeBox& other) const {
    const double x = std::max(lo[0] - other.hi[0], other.lo[0] - hi[0]);
    const double y = std::max(lo[1] - other.hi[1], other.lo[1] - hi[1]);
    const double z = std::max(lo[2] - other.hi[2], other.lo[2] - hi[2]);
    return std::max(std::max(x, y), z) <= 0;
  }
  // Whether the boxes come within the tolerance of each other, the other one moved by the shift.
  [[nodiscard]] bool meets(const GcGeBox& other, const GcGeVector3d& shift, double tol) const {
    return meets(other.grown(shift, tol));
  }
  [[nodiscard]] double diagonal() const {
    return isEmpty() ? 0 : GcGeVector3d(hi[0] - lo[0], hi[1] - lo[1], hi[2] - lo[2]).length();
  }
  [[nodiscard]] GcGeVector3d middle() const { return {(lo[0] + hi[0]) / 2, (lo[1] + hi[1]) / 2, (lo[2] + hi[2]) / 2}; }
};
