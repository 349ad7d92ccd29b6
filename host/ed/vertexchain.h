// A run of straight and circular segments in a plane, taken from lines, arcs and polylines to be joined and changed.
#pragma once

#include <vector>

#include "db/polyline.h"

namespace ed {

class VertexChain {
 public:
  // False for what is no line, arc, circle or plane polyline, or lies in no plane of its own.
  [[nodiscard]] bool take(const GcDbEntity& entity);

  std::vector<GcDbPolylineVertex> vertices;  // own system
  bool closed = false;
  double elevation = 0;
  GcGeVector3d normal = GcGeVector3d::kZAxis;

  void reverse();
  // Puts the other run on to this one's end or start when two of their ends lie within the tolerance; both lie in one
  // plane then. Closes this one when its ends meet in turn.
  // A gap between them is closed as the gap's kind says.
  enum class Gap : uint8_t {
    Extend,  // straight segments go on to where they meet, else this one's end counts
    Add,     // by a segment
    Both,    // by a segment where straight ones do not meet near their ends
  };
  [[nodiscard]] bool join(VertexChain other, double tolerance, Gap gap = Gap::Extend);
  // Gives a polyline this run.
  void put(GcDbPolyline& line) const;

 private:
  [[nodiscard]] bool isInPlaneOf(const VertexChain& other) const;
};

}  // namespace ed
