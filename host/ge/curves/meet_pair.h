// Meetings of one leaf of one path with one leaf of another: what the solvers of meet_*.cpp share.
#pragma once

#include "host/ge/curves/meet.h"
#include "host/ge/curves/tree.h"

// One side of a pair. Points are from the first path's origin: `shift` leads there from the side's own.
struct GcGeMeetSide {
  const GcGePath* path;
  const GcGeTree* tree;
  int leaf;
  GcGeVector3d shift;

  [[nodiscard]] const GcGeLeaf& range() const { return tree->leaves[leaf]; }
  [[nodiscard]] const GcGeSpan& span() const { return path->spans()[range().span]; }
  [[nodiscard]] GcGeVector3d pointAt(double u) const { return gcgePointAt(span(), path->poles(), u) + shift; }
  // An end of the leaf, 0 or 1; arcs have them in the tree.
  [[nodiscard]] GcGeVector3d endAt(int end) const {
    const GcGeLeaf& own = range();
    if (span().kind == GcGeSpan::Kind::Arc) return tree->poles[own.firstPole + 2 * end].point() + shift;
    return pointAt(end == 0 ? own.u0 : own.u1);
  }
  [[nodiscard]] GcGeJet jetAt(double u) const {
    GcGeJet jet = gcgeJetAt(span(), path->poles(), u);
    jet.point += shift;
    return jet;
  }
  // The nearest point of this leaf.
  [[nodiscard]] GcGeOnPath closestTo(const GcGeVector3d& p) const;
  [[nodiscard]] double tAt(double u) const { return span().tBase + span().tPerU * u; }
};

// A small part of the tolerance, and what rounding of coordinates, each curve's in its own system and in the world's,
// does to the distance of two curves.
[[nodiscard]] double gcgeGrazing(const GcGePath& a, const GcGePath& b, double tol);

// Collects what the solvers find.
class GcGeMeetPair {
 public:
  GcGeMeetPair(const GcGeMeetSide& sideA, const GcGeMeetSide& sideB, double tolerance, GcGeMeetings& found)
      : a(sideA), b(sideB), tol(tolerance), m_found(found) {}

  void solve();

  GcGeMeetSide a, b;
  double tol;
  // How far curves that touch may seem to pass each other, or to cross.
  [[nodiscard]] double grazing() const { return gcgeGrazing(*a.path, *b.path, tol); }

  void meet(double ua, double ub);
  // Local parameters held within the leaves; false when (ua, ub) lies outside by more than the tolerance.
  bool meetIfInside(double ua, double ub);
  // Ends of one leaf that lie on the other, and the stretch between two of them if it lies there too.
  // Returns whether there is a shared stretch.
  bool meetEnds(bool alsoSingly);

  void lineLine();
  bool lineArc(bool lineIsA);  // false: left to the general solver
  bool circleCircle();
  void general();

 private:
  // An unbounded line is cut to the ball around the other leaf first.
  bool solveClipped();

  GcGeMeetings& m_found;
};

// The leaf's nearest point to p, which is relative to the path's origin.
[[nodiscard]] GcGeOnPath gcgeClosestOnLeaf(const GcGePath& path, const GcGeTree& tree, int leaf, const GcGeVector3d& p);
