// Intersections of entities.
#include "db/curve.h"

Gcad::ErrorStatus GcDbEntity::intersectWith(const GcDbEntity*, GcDb::Intersect, GcArray<GcGePoint3d>&, intptr_t,
                                            intptr_t) const {
  return Gcad::eNotApplicable;
}
