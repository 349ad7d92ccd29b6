// Files of shapes, built byte by byte, and what their pen draws.
#include "host/gi/shapefile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/gi/shapefiles.h"

namespace {

std::vector<std::vector<GcGePoint2d>> drawn(const std::vector<uint8_t>& codes) {
  const auto file = GcGiShapeFile::parse(gc::test::shapeFile({{7, "ONE", codes}}));
  return file ? file->strokes(7) : std::vector<std::vector<GcGePoint2d>>();
}

void expectNear(const GcGePoint2d& point, double x, double y) {
  EXPECT_NEAR(point.x, x, 1e-9);
  EXPECT_NEAR(point.y, y, 1e-9);
}

}  // namespace

TEST(ShapeFile, NamesAndNumbers) {
  const auto file = GcGiShapeFile::parse(gc::test::shapeFile({{130, "TRACK1", {0}}, {133, "CIRC1", {0}}}));
  ASSERT_TRUE(file.has_value());
  EXPECT_EQ(file->numberOf(GC_T("circ1")), 133);
  EXPECT_EQ(file->numberOf(GC_T("CIRC")), 0);
  EXPECT_EQ(file->nameOf(130), GcText(GC_T("TRACK1")));
  EXPECT_EQ(file->nameOf(131), GcText());
}

TEST(ShapeFile, WhatIsCutOffOrNoneIsRefused) {
  const std::string whole = gc::test::shapeFile({{130, "TRACK1", {0x14, 0}}, {133, "CIRC1", {0}}});
  for (size_t size = 0; size < whole.size(); ++size)
    EXPECT_FALSE(GcGiShapeFile::parse(whole.substr(0, size)).has_value()) << size;
  EXPECT_TRUE(GcGiShapeFile::parse(whole).has_value());
  EXPECT_FALSE(GcGiShapeFile::parse("unifont 1.0\r\n\x1A" + whole).has_value());
}

TEST(ShapeFile, VectorsGoInSixteenDirections) {
  for (int direction = 0; direction < 16; ++direction) {
    const auto lines = drawn({static_cast<uint8_t>(0x20 | direction), 0});
    ASSERT_EQ(lines.size(), 1u);
    const GcGePoint2d end = lines[0].back();
    // On the square of half side 2, an eighth of a turn per two directions.
    EXPECT_EQ(std::max(std::fabs(end.x), std::fabs(end.y)), 2);
    const double angle = std::atan2(end.y, end.x);
    EXPECT_NEAR(std::remainder(angle - direction * std::numbers::pi / 8, 2 * std::numbers::pi), 0, 0.08) << direction;
  }
}

TEST(ShapeFile, PenScalePlaceAndSteps) {
  // Down two, pen up, back to the middle kept before, scaled by 3/2, a step (4, -2), further ones.
  const auto lines = drawn({5, 0x2C, 2, 6, 1, 4, 3, 3, 2, 8, 4, 0xFE, 9, 2, 0, 0, 2, 0, 0, 0});
  ASSERT_EQ(lines.size(), 2u);
  expectNear(lines[0].back(), 0, -2);
  ASSERT_EQ(lines[1].size(), 4u);
  expectNear(lines[1][0], 0, 0);
  expectNear(lines[1][1], 6, -3);
  expectNear(lines[1][2], 9, -3);
  expectNear(lines[1][3], 9, 0);
}

TEST(ShapeFile, ArcsEndWhereTheyShould) {
  const auto quarter = drawn({10, 10, 0x02, 0});  // from the east of a circle of 10, two octants
  ASSERT_EQ(quarter.size(), 1u);
  expectNear(quarter[0].back(), -10, 10);
  const auto back = drawn({10, 10, 0xFE, 0});  // clockwise: -(0x02)
  expectNear(back[0].back(), -10, -10);
  const auto all = drawn({10, 10, 0x00, 0});
  expectNear(all[0].back(), 0, 0);
  // From 55 to 95 degrees on a radius of 3: parts of the second and the third octant.
  const auto part = drawn({11, 56, 28, 0, 3, 0x12, 0});
  const double from = (45 + 56 * 45.0 / 256) * std::numbers::pi / 180,
               to = (90 + 28 * 45.0 / 256) * std::numbers::pi / 180;
  expectNear(part[0].back(), 3 * (std::cos(to) - std::cos(from)), 3 * (std::sin(to) - std::sin(from)));
  const auto half = drawn({12, 0, 10, 127, 0});  // a half circle to the right of the way up
  expectNear(half[0].back(), 0, 10);
  expectNear(half[0][half[0].size() / 2], 5, 5);
  const auto chain = drawn({13, 0, 5, 127, 0, 5, 0, 0, 0, 0});
  expectNear(chain[0].back(), 0, 10);
}

TEST(ShapeFile, CallsAreFollowedAndNeverEndless) {
  const auto file = GcGiShapeFile::parse(
      gc::test::shapeFile({{1, "A", {7, 2, 7, 2, 0}}, {2, "B", {0x10, 14, 0x14, 0}}, {3, "C", {7, 3, 7, 3, 7, 3, 0}}}));
  ASSERT_TRUE(file.has_value());
  const auto lines = file->strokes(1);
  ASSERT_EQ(lines.size(), 1u);
  expectNear(lines[0].back(), 2, 0);  // what counts for vertical writing only is passed over
  EXPECT_TRUE(file->strokes(3).empty());
}
