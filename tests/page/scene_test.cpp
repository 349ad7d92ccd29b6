#include "cli/page/scene.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "cli/page/outline.h"
#include "cli/page/shapecanvas.h"

namespace {

using cli::page::Box;
using cli::page::Detail;
using cli::page::Scene;
using cli::page::Seen;
using cli::page::Shape;
using cli::page::ShapeCanvas;
using cli::page::ShapeId;
using gc::plot::Path;
using gc::plot::Pen;

constexpr double kUnit = 100;  // canvas units for one of the scene

Shape line(double x, double y, double x2, double y2) {
  ShapeCanvas canvas(kUnit);
  Path path;
  path.moveTo({x * kUnit, y * kUnit});
  path.lineTo({x2 * kUnit, y2 * kUnit});
  canvas.stroke(path, Pen());
  return canvas.take();
}

// A circle of three arcs, as entities draw them.
Shape circle(double x, double y, double radius, bool filled = false) {
  ShapeCanvas canvas(kUnit);
  Path path;
  path.moveTo({(x + radius) * kUnit, y * kUnit});
  for (int i = 1; i <= 3; ++i) {
    const double t = 2 * 3.14159265358979323846 * i / 3;
    path.arcTo(radius * kUnit, radius * kUnit, 0, true,
               {(x + radius * std::cos(t)) * kUnit, (y + radius * std::sin(t)) * kUnit});
  }
  if (filled)
    canvas.fill(path, 0);
  else
    canvas.stroke(path, Pen());
  return canvas.take();
}

TEST(ShapeTest, BoundsOfArcsAreThoseOfTheCurve) {
  const Box box = circle(10, 20, 5).bounds;
  EXPECT_NEAR(box.minX, 5, 1e-9);
  EXPECT_NEAR(box.maxX, 15, 1e-9);
  EXPECT_NEAR(box.minY, 15, 1e-9);
  EXPECT_NEAR(box.maxY, 25, 1e-9);
  // Half an ellipse, turned by a right angle and drawn clockwise: from its upper end over its right side.
  ShapeCanvas canvas(1);
  Path path;
  path.moveTo({0, 4});
  path.arcTo(4, 2, 3.14159265358979323846 / 2, false, {2, 0});
  canvas.stroke(path, Pen());
  const Box quarter = canvas.take().bounds;
  EXPECT_NEAR(quarter.minX, 0, 1e-9);
  EXPECT_NEAR(quarter.maxX, 2, 1e-9);
  EXPECT_NEAR(quarter.minY, 0, 1e-9);
  EXPECT_NEAR(quarter.maxY, 4, 1e-9);
}

TEST(ShapeTest, FarFromTheOriginKeepsItsPlace) {
  const Shape shape = line(6e6 + 0.25, 5e6, 6e6 + 1.25, 5e6 + 1);
  const auto outlines = cli::page::outlinesOf(shape);
  ASSERT_EQ(outlines.size(), 1U);
  EXPECT_NEAR(outlines[0].points[1].x, 6e6 + 1.25, 1e-6);
  EXPECT_TRUE(isAt(shape, {6e6 + 0.75, 5e6 + 0.5}, 1e-3));
  EXPECT_FALSE(isAt(shape, {6e6 + 0.75, 5e6 + 0.6}, 1e-3));
}

TEST(ShapeTest, PickingKnowsCurvesAndAreas) {
  const Shape ring = circle(0, 0, 10);
  EXPECT_TRUE(isAt(ring, {7.0711, 7.0711}, 0.02));
  EXPECT_FALSE(isAt(ring, {0, 0}, 5));
  EXPECT_TRUE(isAt(circle(0, 0, 10, true), {1, 1}, 0.01));
  EXPECT_TRUE(crosses(ring, {9, -1, 11, 1}));
  EXPECT_FALSE(crosses(ring, {-1, -1, 1, 1}));
  EXPECT_TRUE(crosses(circle(0, 0, 10, true), {-1, -1, 1, 1}));
  EXPECT_TRUE(liesIn(ring, {-10.1, -10.1, 10.1, 10.1}));
  EXPECT_FALSE(liesIn(ring, {-9, -11, 11, 11}));
  EXPECT_TRUE(crosses(line(-5, -5, 5, 5), {-1, -1, 1, 1}));
  EXPECT_FALSE(crosses(line(-5, 0, 0, 5), {-1, -1, 1, 1}));
}

// The grid against looking at everything, with changes in between.
TEST(SceneTest, FindsWhatASearchOfAllFinds) {
  std::mt19937 random(17);
  const auto between = [&](double low, double high) { return std::uniform_real_distribution<>(low, high)(random); };
  Scene scene;
  std::map<ShapeId, Box> all;
  for (int round = 0; round < 4000; ++round) {
    const auto id = static_cast<ShapeId>(random() % 700);
    if (random() % 4 == 0) {
      scene.remove(id);
      all.erase(id);
    } else {
      const double size = std::pow(10, between(-4, 4)), x = between(-2000, 2000), y = between(-2000, 2000);
      Shape shape = line(x, y, x + between(-size, size), y + between(-size, size));
      all[id] = shape.bounds;
      scene.put(id, std::move(shape));
    }
    if (round % 20 != 0) continue;
    const double x = between(-2000, 2000), y = between(-2000, 2000), size = std::pow(10, between(-3, 4));
    const Box region = {x, y, x + size, y + size};
    std::set<ShapeId> expected;
    for (const auto& [each, box] : all)
      if (cli::page::overlap(box, region)) expected.insert(each);
    const std::vector<ShapeId> found = scene.within(region);
    EXPECT_EQ(std::set<ShapeId>(found.begin(), found.end()), expected);
    EXPECT_EQ(found.size(), expected.size());
    EXPECT_EQ(scene.size(), all.size());
  }
}

TEST(SceneTest, WhatIsTooSmallIsADotForEachPixel) {
  Scene scene;
  for (ShapeId id = 0; id < 1000; ++id) scene.put(id, circle(id % 10 * 0.01, id / 10 * 0.01, 0.002));
  scene.put(1000, line(0, 0, 100, 100));
  const std::vector<Seen> far = scene.look({-100, -100, 200, 200}, 1);
  ASSERT_FALSE(far.empty());
  EXPECT_EQ(far[0].id, 1000U);
  EXPECT_EQ(far[0].detail, Detail::Full);
  EXPECT_LE(far.size(), 5U);  // the line, and all circles within few pixels
  EXPECT_EQ(far.back().detail, Detail::Dot);
  const std::vector<Seen> near = scene.look({-1, -1, 2, 2}, 0.0005);
  EXPECT_EQ(near.size(), 1001U);
  for (const Seen& seen : near) EXPECT_EQ(seen.detail, Detail::Full);
}

TEST(SceneTest, ExtentsFollowChanges) {
  Scene scene;
  EXPECT_TRUE(scene.extents().isEmpty());
  scene.put(3, line(0, 0, 10, 20));
  scene.put(9, line(-5, 0, 1, 1));
  EXPECT_EQ(scene.extents().minX, -5);
  scene.remove(9);
  EXPECT_EQ(scene.extents().minX, 0);
  scene.put(3, line(1, 1, 2, 2));
  EXPECT_EQ(scene.extents().maxY, 2);
  Shape behind = line(0, 0, 1000, 1000);  // seen through a window that shows little of it
  behind.window = 1;
  scene.put(4, std::move(behind));
  EXPECT_EQ(scene.extents().maxY, 2);
  scene.remove(12345);
  scene.clear();
  EXPECT_EQ(scene.size(), 0U);
}

}  // namespace
