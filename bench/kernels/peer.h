// The same questions put to another kernel.
#pragma once

#include <memory>
#include <vector>

#include "host/ge/curves/nurbs.h"

namespace peer {

// One cubic spline, kept between questions as its users keep it.
class Spline {
 public:
  explicit Spline(const GcGeNurbs& spline);
  ~Spline();
  [[nodiscard]] double length() const;
  [[nodiscard]] GcGePoint3d pointAtDistance(double distance) const;
  [[nodiscard]] double distanceTo(const GcGePoint3d& point) const;

 private:
  struct Kept;
  std::unique_ptr<Kept> m_kept;
};

// Crossings of two curves of the level plane.
class Pair {
 public:
  Pair(const GcGeNurbs& a, const GcGeNurbs& b);
  ~Pair();
  [[nodiscard]] int crossings() const;

 private:
  struct Kept;
  std::unique_ptr<Kept> m_kept;
};

// Crossings of two polylines, chains of straight edges there.
class Polylines {
 public:
  Polylines(const std::vector<GcGePoint3d>& a, const std::vector<GcGePoint3d>& b);
  ~Polylines();
  [[nodiscard]] int crossings() const;

 private:
  struct Kept;
  std::unique_ptr<Kept> m_kept;
};

// The parallels of the closed ring of cases.h; gives the number of their edges.
class Ring {
 public:
  Ring();
  ~Ring();
  [[nodiscard]] int parallel(double distance) const;

 private:
  struct Kept;
  std::unique_ptr<Kept> m_kept;
};

}  // namespace peer
