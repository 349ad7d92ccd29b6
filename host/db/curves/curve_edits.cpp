// Curves made from curves: parallel ones, pieces, the reversed one.
#include "db/curve.h"

Gcad::ErrorStatus GcDbCurve::getOffsetCurves(double, GcDbVoidPtrArray&) const { return Gcad::eNotApplicable; }
Gcad::ErrorStatus GcDbCurve::getSplitCurves(const GcArray<double>&, GcDbVoidPtrArray&) const {
  return Gcad::eNotApplicable;
}
Gcad::ErrorStatus GcDbCurve::getSplitCurves(const GcArray<GcGePoint3d>&, GcDbVoidPtrArray&) const {
  return Gcad::eNotApplicable;
}
Gcad::ErrorStatus GcDbCurve::reverseCurve() { return Gcad::eNotApplicable; }
GcDbCurve* GcDbCurve::subFromPath(const GcGePath&) const { return nullptr; }
