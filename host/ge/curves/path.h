// A curve of any kind as a chain of smooth pieces (GcGeSpan) in rising order of the parameter.
//
// All questions about curves are answered here; what a database class adds is how its fields become a path.
// Units:  drawing units; parameters are the owner's (angles, vertex numbers, knots). System: world.
// What queries need more than once (tree of boxes, table of lengths) is made at the first need and kept; any change
// made through the members below drops it.
// Errors: queries return false, outputs untouched, for parameters or distances that are not on the path.
#pragma once

#include <memory>
#include <vector>

#include "host/ge/curves/box.h"
#include "host/ge/curves/span.h"

struct GcGeTree;
struct GcGeMeasure;

// A place on a path.
struct GcGeOnPath {
  int span = -1;  // -1: none
  double u = 0;
  GcGeVector3d point;  // from the path's origin
  double distance = 0;
};

class GcGePath {
 public:
  GcGePath();
  explicit GcGePath(const GcGePoint3d& origin);
  GcGePath(const GcGePath& other);
  GcGePath(GcGePath&& other) noexcept;
  GcGePath& operator=(const GcGePath& other);
  GcGePath& operator=(GcGePath&& other) noexcept;
  ~GcGePath();

  // Squares and cubes of lengths between the two stay in range; what lies beyond is taken for no curve.
  static constexpr double kMostNumber = 1e90;
  static constexpr double kLeastSize = 1e-90;

  // ---- making ---------------------------------------------------------------------------------------------
  void clear(const GcGePoint3d& origin);
  void reserve(size_t spans, size_t poles);
  void addLine(const GcGePoint3d& from, const GcGePoint3d& to, double t0, double t1);
  // From `base` along the unit direction; u0 and u1 are distances and the parameters, infinite ones allowed.
  void addUnbounded(const GcGePoint3d& base, const GcGeVector3d& unitDirection, double u0, double u1);
  // center + x cos(f) + y sin(f) for f from startRad on by sweepRad; x and y are conjugate radii.
  void addArc(const GcGePoint3d& center, const GcGeVector3d& x, const GcGeVector3d& y, double startRad, double sweepRad,
              double t0, double t1);
  // The circular arc between two points that a bulge (tangent of a quarter of its sweep) describes, about the unit
  // normal; a straight line when the bulge is zero.
  void addBulge(const GcGePoint3d& from, const GcGePoint3d& to, double bulge, const GcGeVector3d& normal, double t0,
                double t1);
  // Homogeneous poles relative to the path's origin.
  void addBezier(const GcGePole* poles, int degree, double t0, double t1);
  void addSpan(const GcGeSpan& span, const GcGePole* poles);  // of another path with the same origin
  // The same, but a span that goes on where the last one ended on the same carrier prolongs that one.
  void addJoined(const GcGeSpan& span, const GcGePole* poles, double tol);
  void setClosed(bool closed, bool periodic = false) { m_closed = closed, m_periodic = periodic; }

  // ---- what it is made of ---------------------------------------------------------------------------------
  [[nodiscard]] const GcGePoint3d& origin() const { return m_origin; }
  [[nodiscard]] const std::vector<GcGeSpan>& spans() const { return m_spans; }
  [[nodiscard]] const GcGePole* poles() const { return m_poles.data(); }
  [[nodiscard]] bool isEmpty() const { return m_spans.empty(); }
  [[nodiscard]] bool isClosed() const { return m_closed; }
  [[nodiscard]] bool isPeriodic() const { return m_periodic; }
  [[nodiscard]] bool isBounded() const;
  // No coordinate, weight or parameter is NaN or beyond kMostNumber (but for unbounded ends), no weight 0 or below.
  [[nodiscard]] bool isFinite() const;
  [[nodiscard]] double startParam() const { return m_spans.front().t0(); }
  [[nodiscard]] double endParam() const { return m_spans.back().t1(); }
  // Diagonal of the box around everything bounded; 1 for unbounded lines.
  [[nodiscard]] double size() const;
  // Distance within which two points of this path count as one: 1e-10 of the size and the rounding of coordinates.
  [[nodiscard]] double tolerance() const;

  // ---- by parameter ---------------------------------------------------------------------------------------
  // The span that holds t (the later one at a joint) and the local parameter; false when t is not on the path.
  bool locate(double t, int& span, double& u) const;
  bool pointAt(double t, GcGePoint3d& point) const;
  // Derivatives by t; the point relative to the origin.
  bool jetAt(double t, GcGeJet& jet) const;
  [[nodiscard]] GcGeVector3d pointOn(int span, double u) const { return gcgePointAt(m_spans[span], poles(), u); }
  [[nodiscard]] double paramOf(const GcGeOnPath& place) const {
    const GcGeSpan& span = m_spans[place.span];
    return span.tBase + span.tPerU * place.u;
  }

  // ---- by length ------------------------------------------------------------------------------------------
  [[nodiscard]] double length() const;  // infinite for unbounded lines
  bool distAt(double t, double& dist) const;
  // Signed for two-sided unbounded lines. A distance beyond the end by no more than rounding is the end.
  bool paramAtDist(double dist, double& t) const;

  // ---- nearness, areas ------------------------------------------------------------------------------------
  // The nearest point (the first of several as near); nothing is missed, see docs/geometry/closest-point.md.
  [[nodiscard]] GcGeOnPath closestTo(const GcGePoint3d& point) const;
  // Whether some point of the path is nearer than the distance.
  [[nodiscard]] bool comesNearer(const GcGePoint3d& point, double distance) const;
  // The nearest point on one span only.
  [[nodiscard]] GcGeOnPath closestOnSpan(int span, const GcGePoint3d& point) const;
  // Half the integral of C x dC, closed by a straight line, as a vector along the plane's normal.
  [[nodiscard]] GcGeVector3d vectorArea() const;
  // Whether a plane holds the path; straight paths lie in many and give a zero normal. The normal points to the
  // side of +Z (else +Y, else +X).
  bool isPlanar(GcGeVector3d& normal) const;

  // ---- other paths from this one --------------------------------------------------------------------------
  [[nodiscard]] GcGePath transformed(const GcGeMatrix3d& m) const;
  // Projected along the unit direction on the plane through the origin at right angles to it; spans and local
  // parameters correspond (an unbounded line's direction is no longer of unit length).
  [[nodiscard]] GcGePath flattened(const GcGeVector3d& unitDirection) const;
  [[nodiscard]] GcGePath reversed() const;  // parameters run from start to end as before
  // Between two parameters; t1 <= t0 on a closed path runs through the start, parameters then go on rising.
  [[nodiscard]] GcGePath trimmed(double t0, double t1) const;
  // Lines prolonged without end, arcs to the whole circle or ellipse; Bezier ends stay.
  [[nodiscard]] GcGePath extended() const;

  // Kept between queries.
  const GcGeTree& tree() const;
  const GcGeMeasure& measure() const;

 private:
  void changed();
  GcGeSpan& append(GcGeSpan::Kind kind, double t0, double t1);

  GcGePoint3d m_origin;
  std::vector<GcGeSpan> m_spans;
  std::vector<GcGePole> m_poles;
  bool m_closed = false, m_periodic = false;
  mutable double m_size = -1;
  mutable std::unique_ptr<GcGeTree> m_tree;
  mutable std::unique_ptr<GcGeMeasure> m_measure;
};
