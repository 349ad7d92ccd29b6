// The root of curves: what can be followed from start to end.
#pragma once

#include "db/entity.h"

class GcDbCurve : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbCurve);
};
