#include "host/plot/linemarks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace gc::plot {
namespace {

constexpr double kPi = std::numbers::pi;

LineMark markAt(double at) {
  LineMark mark;
  mark.at = at;
  mark.text = GC_T("I");
  mark.style.height = 1;
  return mark;
}

// The middle of what each letter covers.
std::vector<Box> boxesOf(const Path& strokes, size_t count) {
  std::vector<Box> boxes(count);
  const size_t each = count == 0 ? 0 : strokes.steps().size() / count;
  for (size_t i = 0; i < count * each; ++i) boxes[i / each].add(strokes.steps()[i].to);
  return boxes;
}

TEST(LineMarks, StandOncePerPeriodAlongALine) {
  Path path;
  path.moveTo({0, 0});
  path.lineTo({10, 0});
  const Path one = markStrokes(path, {markAt(1)}, {20, 1, 1});
  const Path five = markStrokes(path, {markAt(1)}, {2, 1, 1});
  ASSERT_FALSE(one.isEmpty());
  ASSERT_EQ(five.steps().size(), 5 * one.steps().size());
  const std::vector<Box> boxes = boxesOf(five, 5);
  for (size_t i = 1; i < boxes.size(); ++i) EXPECT_NEAR(boxes[i].minX - boxes[i - 1].minX, 2, 1e-9);
  EXPECT_NEAR(boxes[0].maxY, 0, 1e-9);  // on the line, upwards on the page
  EXPECT_NEAR(boxes[0].minY, -1, 0.05);
}

TEST(LineMarks, FollowTheLineUnlessTheirTurnIsAbsolute) {
  Path path;
  path.moveTo({0, 10});
  path.lineTo({0, 0});  // up the page
  LineMark mark = markAt(5);
  const Box along = boxesOf(markStrokes(path, {mark}, {20, 1, 1}), 1)[0];
  EXPECT_GT(along.width(), along.height());
  EXPECT_NEAR(along.maxX, 0, 1e-9);
  mark.isAbsolute = true;
  const Box upright = boxesOf(markStrokes(path, {mark}, {20, 1, 1}), 1)[0];
  EXPECT_LT(upright.width(), upright.height());
}

TEST(LineMarks, OffsetsGoAlongTheLineAndToItsLeft) {
  Path path;
  path.moveTo({0, 0});
  path.lineTo({10, 0});
  const Box plain = boxesOf(markStrokes(path, {markAt(5)}, {20, 1, 1}), 1)[0];
  LineMark mark = markAt(5);
  mark.offsetX = 2;
  mark.offsetY = 3;
  const Box moved = boxesOf(markStrokes(path, {mark}, {20, 1, 1}), 1)[0];
  EXPECT_NEAR(moved.minX - plain.minX, 2, 1e-9);
  EXPECT_NEAR(moved.minY - plain.minY, -3, 1e-9);
}

TEST(LineMarks, StandOnArcs) {
  Path path;
  path.moveTo({10, 0});
  path.arcTo(10, 10, 0, true, {0, 10});  // a quarter circle about the origin
  for (const double share : {0.1, 0.5, 0.9}) {
    const Box box = boxesOf(markStrokes(path, {markAt(share * 5 * kPi)}, {100, 1, 1}), 1)[0];
    const double angle = share * kPi / 2;
    EXPECT_NEAR((box.minX + box.maxX) / 2, 10 * std::cos(angle), 1.0) << share;
    EXPECT_NEAR((box.minY + box.maxY) / 2, 10 * std::sin(angle), 1.0) << share;
  }
}

TEST(LineMarks, LettersTooSmallToSeeAreLeftOut) {
  Path path;
  path.moveTo({0, 0});
  path.lineTo({10, 0});
  EXPECT_TRUE(markStrokes(path, {markAt(0.001)}, {0.01, 0.001, 1}).isEmpty());
  EXPECT_TRUE(markStrokes(path, {markAt(1)}, {0, 1, 1}).isEmpty());
}

}  // namespace
}  // namespace gc::plot
