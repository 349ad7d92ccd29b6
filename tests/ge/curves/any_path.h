// Generated curves for property tests. A failing test prints the seed of its case; the same seed gives the same curve.
#pragma once

#include <cstdint>
#include <random>

#include "host/ge/curves/nurbs.h"
#include "host/ge/curves/path.h"

class AnyPath {
 public:
  explicit AnyPath(uint32_t seed);

  [[nodiscard]] double between(double low, double high);
  [[nodiscard]] int upTo(int most);  // 0 .. most
  GcGePoint3d point(double reach);
  GcGeVector3d unit();

  GcGePath line();
  GcGePath arc();  // of a circle, open
  GcGePath circle();
  GcGePath ellipse();               // arc or whole
  GcGePath polyline(int segments);  // planar, bulges, open or closed
  GcGePath polyline3d(int segments);
  GcGeNurbs nurbs(int degree, int poles, bool rational, bool planar);
  GcGePath spline();
  GcGePath any();  // one of the bounded kinds

  // The curve moved to a place of its own: any scale from 1e-3 to 1e4, tilted plane, sometimes 5e6 out.
  GcGeMatrix3d place();

 private:
  std::mt19937_64 m_engine;
};

// One test body run with many seeds.
#define FOR_SEEDS(count)                                   \
  for (uint32_t seed = 1; seed <= (count) && true; ++seed) \
    if (SCOPED_TRACE(::testing::Message() << "seed " << seed); true)
