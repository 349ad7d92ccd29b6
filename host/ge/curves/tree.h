// A tree of boxes over a path, for nearness and intersections.
//
// Leaves are parts of spans in order along the path, each bending by a quarter turn at most. Level 0 of `boxes` are
// the leaves' boxes, node i of a level encloses nodes 2 i and 2 i + 1 of the level below.
#pragma once

#include <vector>

#include "host/ge/curves/path.h"

struct GcGeLeaf {
  int span = 0;
  int firstPole = -1;  // of GcGeTree::poles, -1: a line, which needs none
  double u0 = 0, u1 = 1;
};

struct GcGeTree {
  std::vector<GcGeLeaf> leaves;
  std::vector<GcGePole> poles;  // Bezier leaves cut to their part, arcs as rational quadratics
  std::vector<GcGeBox> boxes;   // all levels, leaves first
  std::vector<int> levelStart;  // index of a level's first box; one more entry at the end

  explicit GcGeTree(const GcGePath& path);
  [[nodiscard]] int levels() const { return static_cast<int>(levelStart.size()) - 1; }
  [[nodiscard]] int count(int level) const { return levelStart[level + 1] - levelStart[level]; }
  [[nodiscard]] const GcGeBox& box(int level, int index) const { return boxes[levelStart[level] + index]; }
};

// A leaf as a (rational) Bezier curve with parameter v in [0, 1].
struct GcGeLeafCurve {
  GcGePole line[2];  // storage for lines
  const GcGePole* poles = nullptr;
  int degree = 1;
  bool rational = false;
  double u0 = 0, u1 = 1, halfSweep = 0;  // halfSweep: half the leaf's angle for arcs, else 0

  // u of the span at v: linear, but for arcs tan(f / 2) = v sin(h) / (1 - v + v cos(h)), f the angle from the
  // leaf's start and h half its whole angle.
  [[nodiscard]] double uAt(double v) const;
};
void gcgeLeafCurve(const GcGePath& path, const GcGeTree& tree, int leaf, GcGeLeafCurve& out);
