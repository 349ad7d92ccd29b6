// Where a block goes: asked the same way by all commands that insert one.
#pragma once

#include "ge/point.h"
#include "host/ed/command/command.h"

namespace ed {

struct Insertion {
  GcDbObjectId block;
  GcGePoint3d point;  // user coordinates
  GcGeScale3d scale;
  double rotationRad = 0;
  bool hasScale = false;
  bool hasRotation = false;
};

// Point, scale factors and rotation, the latter two unless options before the point gave them. False without a point.
Task<bool> askInsertion(CommandInput& in, Insertion& insertion);

}  // namespace ed
