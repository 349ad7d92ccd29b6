#include "host/plot/dashes.h"

#include <gtest/gtest.h>

#include <cmath>

#include "host/plot/path.h"

namespace gc::plot {
namespace {

using Lengths = std::vector<double>;

TEST(Dashes, ElementsBecomeDashAndGapInTurn) {
  EXPECT_EQ(alternateDashes(Lengths{0.5, -0.25}, 2), (Lengths{1, 0.5}));
  EXPECT_EQ(alternateDashes(Lengths{1, -1, 0, -1}, 1), (Lengths{1, 1, 0, 1}));
  EXPECT_EQ(alternateDashes(Lengths{1, 1, -1, -1}, 1), (Lengths{2, 2}));
  EXPECT_EQ(alternateDashes(Lengths{1, -1, 2}, 1), (Lengths{3, 1}));
  EXPECT_EQ(alternateDashes(Lengths{-1, 2}, 1), (Lengths{2, 1}));
}

TEST(Dashes, NothingToDashIsSolid) {
  EXPECT_TRUE(alternateDashes(Lengths{}, 1).empty());
  EXPECT_TRUE(alternateDashes(Lengths{1}, 1).empty());
  EXPECT_TRUE(alternateDashes(Lengths{1, 0}, 1).empty());
  EXPECT_TRUE(alternateDashes(Lengths{1, -1}, 0).empty());
  EXPECT_TRUE(alternateDashes(Lengths{NAN, -1}, 1).empty());
}

TEST(Dashes, ALineBeginsAndEndsWithADash) {
  const Lengths pattern{3, 1, 0, 1};
  for (const double length : {8.0, 9.7, 23.0, 100.1}) {
    const Lengths fitted = fitDashes(pattern, length, 0.1);
    ASSERT_EQ(fitted.size(), 4u);
    const double period = fitted[0] + fitted[1] + fitted[2] + fitted[3];
    const double rest = std::fmod(length - fitted[0] + 1e-9, period);
    EXPECT_NEAR(rest, 0, 1e-6) << length;
    EXPECT_GT(fitted[0], 3 * 0.6);
    EXPECT_LT(fitted[0], 3 * 1.6);
  }
}

TEST(Dashes, ShortLinesAndFinePatternsAreSolid) {
  EXPECT_TRUE(fitDashes(Lengths{3, 1}, 4.5, 0.1).empty());
  EXPECT_TRUE(fitDashes(Lengths{0.03, 0.01}, 100, 0.1).empty());
  EXPECT_TRUE(fitDashes(Lengths{}, 100, 0.1).empty());
}

TEST(PathLength, LinesAndCurves) {
  Path square;
  square.moveTo({0, 0});
  square.lineTo({1, 0});
  square.lineTo({1, 1});
  square.lineTo({0, 1});
  square.close();
  EXPECT_NEAR(lengthOf(square), 4, 1e-12);

  Path parabola;  // y = x (1 - x) between 0 and 1: length (2 sqrt(2) + ln(1 + sqrt 2) * 2) / 4
  parabola.moveTo({0, 0});
  parabola.quadTo({0.5, 0.5}, {1, 0});
  EXPECT_NEAR(lengthOf(parabola), (std::sqrt(2.0) + std::log(1 + std::sqrt(2.0))) / 2, 1e-9);
}

TEST(PathLength, ArcsOfCirclesAndEllipses) {
  const double pi = std::acos(-1.0);
  for (const bool growing : {false, true}) {
    Path quarter;
    quarter.moveTo({5, 0});
    quarter.arcTo(5, 5, 0.3, growing, {0, growing ? 5.0 : -5.0});
    EXPECT_NEAR(lengthOf(quarter), 5 * pi / 2, 1e-9);
    // A quarter of the ellipse with half axes 5 and 3 about the origin, turned by 90 degrees.
    Path turned;
    turned.moveTo({0, 5});
    turned.arcTo(5, 3, pi / 2, growing, {growing ? -3.0 : 3.0, 0});
    EXPECT_NEAR(lengthOf(turned), 25.52699886339813 / 4, 1e-7);
  }
}

}  // namespace
}  // namespace gc::plot
