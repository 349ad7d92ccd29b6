// What the screen shows of a space.
#pragma once

#include "ge/point.h"

namespace ed {

struct EditorView {
  GcGePoint2d center;   // display coordinates
  double height = 297;  // drawing units
  double aspect = 1920.0 / 1080.0;
  double pixels = 1080;  // of its height on the screen
  double twistRad = 0;
  GcGeVector3d direction = GcGeVector3d::kZAxis;  // from the target to the eye, world coordinates
  GcGePoint3d target;                             // world coordinates

  bool operator==(const EditorView&) const = default;
  [[nodiscard]] double width() const { return height * aspect; }
};

}  // namespace ed
