// A plane cut up by curves: vertices where curves meet or end, edges between them, loops around the areas.
// System:  world; all curves lie in one plane of the unit normal (those that do not, do not meet).
// Source:  half-edges in cyclic order about their vertices (doubly connected edge list); the order is that in which
//          the curves leave a small circle about the vertex, which tells tangent curves apart too.
#pragma once

#include <vector>

#include "host/ge/curves/path.h"

class GcGeArrangement {
 public:
  GcGeArrangement(const std::vector<GcGePath>& curves, const GcGeVector3d& normal);

  // A piece of one curve; where curves lie over each other, of each of them.
  struct Edge {
    struct Owner {
      int curve = 0;
      bool isReversed = false;  // against the way of the edge
    };
    GcGePath path;
    int start = 0, end = 0;  // vertices
    std::vector<Owner> owners;
  };
  [[nodiscard]] const std::vector<Edge>& edges() const { return m_edges; }
  [[nodiscard]] double tolerance() const { return m_tolerance; }

  // Half-edges are numbered: 2 e runs the way of edge e, 2 e + 1 against it.
  using Loop = std::vector<int>;
  // Loops of those half-edges that `isUsed` says, each turning as far to the left as it can: around one area each, the
  // area on the left.
  [[nodiscard]] std::vector<Loop> trace(const std::vector<bool>& isUsed) const;
  // The loops around all areas the plane is cut into; edges with the same area on both sides are left out.
  [[nodiscard]] std::vector<Loop> areas() const;
  // A closed path along a loop.
  [[nodiscard]] GcGePath pathOf(const Loop& loop) const;

 private:
  void cut(const std::vector<GcGePath>& curves);
  void addPieces(const std::vector<GcGePath>& curves, int curve, std::vector<double> params);
  void addEdge(GcGePath path, int curve);
  int vertexAt(const GcGePoint3d& point);
  void sortAboutVertices();
  [[nodiscard]] int startOf(int half) const { return half % 2 == 0 ? m_edges[half / 2].start : m_edges[half / 2].end; }
  [[nodiscard]] int next(int half, const std::vector<bool>& isUsed) const;

  GcGeVector3d m_normal;
  double m_tolerance = 0;
  std::vector<Edge> m_edges;
  std::vector<GcGePoint3d> m_vertices;
  std::vector<std::vector<int>> m_leaving;  // half-edges from each vertex, counter-clockwise
  std::vector<int> m_place;                 // of each half-edge among those
  struct Finder;
  Finder* m_finder = nullptr;  // while curves are cut
};

// Whether a closed path goes around the point of its plane; false for points on it.
[[nodiscard]] bool gcgeEncloses(const GcGePath& loop, const GcGeVector3d& normal, const GcGePoint3d& point);

enum class GcGeCombination : uint8_t { Union, Difference, Intersection };
// Plane areas put together. Loops run with the area on their left; those of each operand do not cross. The result's
// loops do the same, outer ones and holes in no order; empty when nothing is left.
[[nodiscard]] std::vector<GcGePath> gcgeCombine(const std::vector<GcGePath>& a, const std::vector<GcGePath>& b,
                                                const GcGeVector3d& normal, GcGeCombination how);
