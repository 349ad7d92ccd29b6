// The root of curves: what can be followed from start to end.
//
// Parameters: line, ray and construction line the distance along the unit direction from their first point (a ray
// starts at 0, a construction line has no ends); arc and circle the angle in their own plane; ellipse the parametric
// angle; polylines and leaders vertex index plus fraction of the segment (by length within an arc); spline its knots.
// Distances are lengths along the curve from its start. Points and vectors are in world coordinates. A point counts
// as lying on the curve within 1e-10 of the curve's size plus the rounding of its coordinates.
// Errors: eInvalidInput for a parameter, distance or point that is not on the curve or not finite; eNotApplicable for
// what the kind of curve does not have (the end of a construction line); eDegenerateGeometry for a curve without
// length; eNonPlanarEntity for areas and offsets of curves in no plane. Outputs stay untouched then.
// [main thread] [object open for read, for reverseCurve write]
#pragma once

#include "db/entity.h"

class GcGePath;

class GcDbCurve : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbCurve);

  [[nodiscard]] virtual bool isClosed() const;
  [[nodiscard]] virtual bool isPeriodic() const;
  // True when one plane holds the whole curve (a straight one too).
  [[nodiscard]] bool isPlanar() const override;

  virtual Gcad::ErrorStatus getStartParam(double& param) const;
  virtual Gcad::ErrorStatus getEndParam(double& param) const;
  virtual Gcad::ErrorStatus getStartPoint(GcGePoint3d& point) const;
  virtual Gcad::ErrorStatus getEndPoint(GcGePoint3d& point) const;

  virtual Gcad::ErrorStatus getPointAtParam(double param, GcGePoint3d& point) const;
  virtual Gcad::ErrorStatus getParamAtPoint(const GcGePoint3d& point, double& param) const;
  virtual Gcad::ErrorStatus getDistAtParam(double param, double& dist) const;
  virtual Gcad::ErrorStatus getParamAtDist(double dist, double& param) const;
  virtual Gcad::ErrorStatus getDistAtPoint(const GcGePoint3d& point, double& dist) const;
  virtual Gcad::ErrorStatus getPointAtDist(double dist, GcGePoint3d& point) const;

  // Derivatives of the point by the parameter. At a corner those of the segment that begins there.
  virtual Gcad::ErrorStatus getFirstDeriv(double param, GcGeVector3d& deriv) const;
  virtual Gcad::ErrorStatus getFirstDeriv(const GcGePoint3d& point, GcGeVector3d& deriv) const;
  virtual Gcad::ErrorStatus getSecondDeriv(double param, GcGeVector3d& deriv) const;
  virtual Gcad::ErrorStatus getSecondDeriv(const GcGePoint3d& point, GcGeVector3d& deriv) const;

  // The point of the curve nearest to the given one; extended: the curve prolonged where its kind allows (lines
  // and end segments straight on, arcs to the whole circle or ellipse).
  virtual Gcad::ErrorStatus getClosestPointTo(const GcGePoint3d& given, GcGePoint3d& closest,
                                              bool extend = false) const;
  // The same as seen along the direction: nearest between the projections on a plane at right angles to it.
  virtual Gcad::ErrorStatus getClosestPointTo(const GcGePoint3d& given, const GcGeVector3d& direction,
                                              GcGePoint3d& closest, bool extend = false) const;

  // The area enclosed, never negative; an open curve is closed by a straight line. Stretches that run round in
  // opposite ways count against each other.
  virtual Gcad::ErrorStatus getArea(double& area) const;

  // Parallel curves at the distance (drawing units, in the curve's plane). A positive distance lies to the right of
  // the curve's direction seen against its normal: outside for circles and arcs. Self-intersections are cut away, so
  // there may be several results, in order along the curve, or none (empty array and eOk). Ellipses and splines
  // give splines within 1e-7 of the distance. The new entities have the curve's properties and belong to the caller.
  virtual Gcad::ErrorStatus getOffsetCurves(double offsetDist, GcDbVoidPtrArray& offsetCurves) const;

  // The pieces between the parameters (in rising order) or points, from the start; a closed curve begins and ends at
  // the first of them. The new entities belong to the caller.
  virtual Gcad::ErrorStatus getSplitCurves(const GcArray<double>& params, GcDbVoidPtrArray& pieces) const;
  virtual Gcad::ErrorStatus getSplitCurves(const GcArray<GcGePoint3d>& points, GcDbVoidPtrArray& pieces) const;

  // Turns start into end. Errors: eNotApplicable for arcs, circles, ellipses, rays (their direction is fixed).
  virtual Gcad::ErrorStatus reverseCurve();

  // The curve's geometry, for the host's own use. Errors: eDegenerateGeometry.
  virtual Gcad::ErrorStatus subPath(GcGePath& path) const;

 protected:
  // A new entity for a piece of path lying in this curve's plane, without common properties; null when the kind has
  // none. The default makes lines, arcs, lightweight polylines and splines.
  virtual GcDbCurve* subFromPath(const GcGePath& path) const;
  // Whether the path may be kept while the object is not written to: everything it depends on is in this object.
  [[nodiscard]] virtual bool subKeepsPath() const { return false; }

 private:
  friend class GcDbCurvePaths;
};
