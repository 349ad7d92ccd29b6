#include "host/gi/wideline.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double kPi = 3.14159265358979323846;

double areaOf(const GcGiWideArea& area) {
  double sum = 0;
  const GcGePoint2d* loop = area.points.data();
  for (const int count : area.counts) {
    double twice = 0;
    for (int i = 0; i < count; ++i) twice += loop[i].asVector().crossProduct(loop[(i + 1) % count].asVector());
    sum += std::fabs(twice) / 2;
    loop += count;
  }
  return sum;
}

GcGiWideVertex vertex(double x, double y, double width, double bulge = 0) { return {{x, y}, bulge, width, width}; }

TEST(WideLine, AStraightSegmentIsARectangle) {
  const GcGiWideVertex vertices[] = {vertex(0, 0, 2), vertex(10, 0, 2)};
  const GcGiWideArea area = gcgiWideLine(vertices, 2, false, 0.01);
  ASSERT_EQ(area.counts.size(), 1u);
  EXPECT_NEAR(areaOf(area), 20, 1e-12);
}

TEST(WideLine, ATaperedSegmentIsATrapezium) {
  const GcGiWideVertex vertices[] = {{{0, 0}, 0, 2, 0}, {{10, 0}, 0, 0, 0}};
  EXPECT_NEAR(areaOf(gcgiWideLine(vertices, 2, false, 0.01)), 10, 1e-12);
}

TEST(WideLine, CornersAreMitred) {
  const GcGiWideVertex vertices[] = {vertex(0, 0, 1), vertex(10, 0, 1), vertex(10, 10, 1), vertex(0, 10, 1)};
  const GcGiWideArea frame = gcgiWideLine(vertices, 4, true, 0.01);
  EXPECT_NEAR(areaOf(frame), 11 * 11 - 9 * 9, 1e-9);
  for (const GcGePoint2d& p : frame.points) {
    EXPECT_TRUE(std::fabs(std::fabs(p.x - 5) - 5.5) < 1e-9 || std::fabs(std::fabs(p.x - 5) - 4.5) < 1e-9);
  }
}

TEST(WideLine, AHalfCircleIsHalfARing) {
  for (const double bulge : {1.0, -1.0}) {
    const GcGiWideVertex vertices[] = {vertex(0, 0, 1, bulge), vertex(10, 0, 1)};
    EXPECT_NEAR(areaOf(gcgiWideLine(vertices, 2, false, 1e-4)), kPi * (5.5 * 5.5 - 4.5 * 4.5) / 2, 0.01);
  }
}

TEST(WideLine, NothingWithoutWidthOrLength) {
  const GcGiWideVertex thin[] = {vertex(0, 0, 0), vertex(10, 0, 0)};
  EXPECT_TRUE(gcgiWideLine(thin, 2, false, 0.01).counts.empty());
  const GcGiWideVertex point[] = {vertex(1, 1, 1), vertex(1, 1, 1)};
  EXPECT_TRUE(gcgiWideLine(point, 2, true, 0.01).counts.empty());
  EXPECT_TRUE(gcgiWideLine(nullptr, 0, false, 0.01).counts.empty());
}

}  // namespace
