#include "host/db/entities/hatch_edges.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "host/db/entities/planar.h"
#include "host/ge/curves/nurbs.h"
#include "host/rx/math/elementary.h"

namespace gchatch {
namespace {

GcGePoint3d lifted(const GcGePoint2d& p) { return {p.x, p.y, 0}; }
GcGeVector3d lifted(const GcGeVector2d& v) { return {v.x, v.y, 0}; }

// The edge's conjugate radii; its angle runs from first by sweep.
struct Round {
  GcGeVector2d a, b;
  double first = 0, sweep = 0;
};

Round roundOf(const GcDbHatchEdge& edge) {
  Round round;
  const bool arc = edge.isArc();
  round.a = arc ? GcGeVector2d(edge.radius, 0) : edge.majorAxis;
  round.b = arc ? GcGeVector2d(0, edge.radius) : edge.majorAxis.perpVector() * edge.radius;
  const double sense = edge.isCounterClockwise ? 1 : -1;
  double sweep = edge.endRad - edge.startRad;
  if (sweep <= 0) sweep += gcplanar::kTwoPi;
  round.first = sense * edge.startRad;
  round.sweep = sense * sweep;
  return round;
}

GcGePoint2d pointOn(const GcDbHatchEdge& edge, const Round& round, double angle) {
  return edge.start + round.a * gc::cos(angle) + round.b * gc::sin(angle);
}

GcGeNurbs nurbsOf(const GcDbHatchEdge& edge) {
  GcGeNurbs nurbs;
  nurbs.degree = edge.degree;
  nurbs.knots.assign(edge.knots.begin(), edge.knots.end());
  for (const GcDbHatchSplinePoint& point : edge.controlPoints) {
    nurbs.points.push_back(lifted(point.point));
    if (edge.isRational) nurbs.weights.push_back(point.weight);
  }
  return nurbs;
}

GcGePoint2d splineEnd(const GcDbHatchEdge& edge, bool atEnd) {
  GcGePath path;
  if (!gcgePathOfNurbs(nurbsOf(edge), path) || path.isEmpty()) return {};
  const GcGeSpan& span = atEnd ? path.spans().back() : path.spans().front();
  const GcGePoint3d at = path.origin() + gcgePointAt(span, path.poles(), atEnd ? span.u1 : span.u0);
  return {at.x, at.y};
}

template <class T>
void turnRound(GcArray<T>& items) {
  std::reverse(items.begin(), items.end());
}

void reverseSpline(GcDbHatchEdge& edge) {
  if (!edge.knots.isEmpty()) {
    const double sum = edge.knots[0] + edge.knots.last();
    for (double& knot : edge.knots) knot = sum - knot;
  }
  turnRound(edge.knots);
  turnRound(edge.controlPoints);
  turnRound(edge.fitPoints);
  const GcGeVector2d start = edge.startTangent;
  edge.startTangent = -edge.endTangent;
  edge.endTangent = -start;
}

// What one curve gave: edges first to last, all of them.
struct Piece {
  int first = 0, count = 0;
  GcGePoint2d start, end;
  bool used = false;
};

std::vector<Piece> piecesOf(const GcArray<GcDbHatchEdge>& edges, const GcArray<int>& counts) {
  std::vector<Piece> pieces;
  int at = 0;
  for (const int count : counts) {
    if (count > 0) pieces.push_back({at, count, startOf(edges[at]), endOf(edges[at + count - 1]), false});
    at += count;
  }
  return pieces;
}

// Ends that lie nearer than this are one.
double toleranceOf(const GcArray<GcDbHatchEdge>& edges) {
  constexpr double kRelative = 1e-7;
  constexpr double kRounding = 1e-12;
  double size = 0, reach = 0;
  if (edges.isEmpty()) return 0;
  const bool spline = edges[0].isSpline() && !edges[0].controlPoints.isEmpty();
  const GcGePoint2d from = spline ? edges[0].controlPoints[0].point : edges[0].start;
  const auto grow = [&](const GcGePoint2d& point, double radius) {
    size = std::fmax(size, point.distanceTo(from) + radius);
    reach = std::fmax(reach, std::fabs(point.x) + std::fabs(point.y));
  };
  for (const GcDbHatchEdge& edge : edges) {
    const bool round = edge.isCurved();
    if (round) grow(edge.start, edge.isArc() ? edge.radius : gc::hypot(edge.majorAxis.x, edge.majorAxis.y));
    if (edge.isLine()) grow(edge.start, 0), grow(edge.end, 0);
    for (const GcDbHatchSplinePoint& point : edge.controlPoints) grow(point.point, 0);
  }
  return size * kRelative + reach * kRounding;
}

class Chain {
 public:
  Chain(const GcArray<GcDbHatchEdge>& edges, const GcArray<int>& counts)
      : m_edges(edges), m_pieces(piecesOf(edges, counts)), m_tolerance(toleranceOf(edges)) {}

  bool run(GcArray<GcDbHatchEdge>& ordered) {
    for (Piece& piece : m_pieces)
      if (!piece.used && !ring(piece, ordered)) return false;
    return true;
  }

 private:
  bool ring(Piece& begin, GcArray<GcDbHatchEdge>& ordered) {
    take(begin, false, ordered);
    GcGePoint2d at = begin.end;
    // A curve that ends where it begins is whole; a straight line never is.
    while (at.distanceTo(begin.start) > m_tolerance) {
      bool backwards = false;
      Piece* next = nearest(at, backwards);
      if (next == nullptr) return false;
      take(*next, backwards, ordered);
      at = backwards ? next->start : next->end;
    }
    return true;
  }

  Piece* nearest(const GcGePoint2d& at, bool& backwards) {
    Piece* found = nullptr;
    double best = m_tolerance;
    for (Piece& piece : m_pieces) {
      if (piece.used) continue;
      for (const bool fromEnd : {false, true}) {
        const double distance = at.distanceTo(fromEnd ? piece.end : piece.start);
        if (distance > best || (found != nullptr && distance == best)) continue;
        best = distance;
        found = &piece;
        backwards = fromEnd;
      }
    }
    return found;
  }

  void take(Piece& piece, bool backwards, GcArray<GcDbHatchEdge>& ordered) {
    piece.used = true;
    for (int i = 0; i < piece.count; ++i) {
      GcDbHatchEdge edge = m_edges[backwards ? piece.first + piece.count - 1 - i : piece.first + i];
      if (backwards) reverse(edge);
      ordered.append(edge);
    }
  }

  const GcArray<GcDbHatchEdge>& m_edges;
  std::vector<Piece> m_pieces;
  double m_tolerance;
};

}  // namespace

void reverse(GcDbHatchEdge& edge) {
  if (edge.isLine()) {
    std::swap(edge.start, edge.end);
  } else if (edge.isCurved()) {
    const double sweep = edge.endRad - edge.startRad;
    edge.startRad = gcplanar::inFullTurn(-edge.endRad);
    edge.endRad = edge.startRad + sweep;
    edge.isCounterClockwise = !edge.isCounterClockwise;
  } else {
    reverseSpline(edge);
  }
}

GcGePoint2d startOf(const GcDbHatchEdge& edge) {
  if (edge.isLine()) return edge.start;
  if (!edge.isCurved()) return splineEnd(edge, false);
  const Round round = roundOf(edge);
  return pointOn(edge, round, round.first);
}

GcGePoint2d endOf(const GcDbHatchEdge& edge) {
  if (edge.isLine()) return edge.end;
  if (!edge.isCurved()) return splineEnd(edge, true);
  const Round round = roundOf(edge);
  return pointOn(edge, round, round.first + round.sweep);
}

void appendTo(GcGePath& path, const GcDbHatchEdge& edge) {
  const double t = static_cast<double>(path.spans().size());
  if (edge.isLine()) {
    path.addLine(lifted(edge.start), lifted(edge.end), t, t + 1);
  } else if (edge.isCurved()) {
    const Round round = roundOf(edge);
    path.addArc(lifted(edge.start), lifted(round.a), lifted(round.b), round.first, round.sweep, t, t + 1);
  } else {
    GcGePath own;
    if (!gcgePathOfNurbs(nurbsOf(edge), own)) return;
    const GcGeVector3d shift = own.origin() - path.origin();
    for (const GcGeSpan& span : own.spans()) {
      GcGePole poles[GcGeSpan::kMostDegree + 1];
      for (int i = 0; i <= span.degree; ++i) {
        poles[i] = own.poles()[span.firstPole + i];
        poles[i].x += shift.x * poles[i].w;
        poles[i].y += shift.y * poles[i].w;
      }
      const double from = static_cast<double>(path.spans().size());
      path.addBezier(poles, span.degree, from, from + 1);
    }
  }
}

namespace {

GcGePoint2d anchorOf(const GcDbHatchLoop& loop) {
  if (!loop.vertices.isEmpty()) return loop.vertices[0].point;
  return loop.edges.isEmpty() ? GcGePoint2d() : startOf(loop.edges[0]);
}

}  // namespace

GcGePath pathOf(const GcDbHatchLoop& loop) {
  GcGePath path(lifted(anchorOf(loop)));
  const int count = loop.vertices.length();
  for (int i = 0; i < count; ++i) {
    const GcDbHatchVertex& from = loop.vertices[i];
    const GcGePoint2d& to = loop.vertices[(i + 1) % count].point;
    if (!(from.point == to)) path.addBulge(lifted(from.point), lifted(to), from.bulge, GcGeVector3d::kZAxis, i, i + 1);
  }
  GcArray<GcDbHatchEdge> edges;
  const GcArray<GcDbHatchEdge>* ordered = &loop.edges;
  GcArray<int> single;
  for (int i = 0; i < loop.edges.length(); ++i) single.append(1);
  // Files may list edges against the way round.
  if (loop.edges.length() > 1 && Chain(loop.edges, single).run(edges)) ordered = &edges;
  for (const GcDbHatchEdge& edge : *ordered) appendTo(path, edge);
  return path;
}

bool chain(GcArray<GcDbHatchEdge>& edges, const GcArray<int>& pieces) {
  GcArray<GcDbHatchEdge> ordered;
  if (!Chain(edges, pieces).run(ordered)) return false;
  edges = ordered;
  return true;
}

}  // namespace gchatch
