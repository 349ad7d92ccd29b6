// What an entity draws, as straight pieces: the form in which windows, crossings and picks see it.
#pragma once

#include <vector>

#include "db/entity.h"

namespace ed {

struct Stroke {
  std::vector<GcGePoint3d> points;
  bool closed = false;
  bool filled = false;
};

// World coordinates; curves within the deviation (drawing units). Empty for what draws nothing.
[[nodiscard]] std::vector<Stroke> strokesOf(GcDbEntity& entity, double deviation);

}  // namespace ed
