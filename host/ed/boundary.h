// Areas of the current space: which closed curve encloses a point, and which curves lie within it.
#pragma once

#include "host/ed/editor.h"

namespace ed {

struct Boundary {
  GcDbObjectIdArray outer;                 // the curve around the point
  std::vector<GcDbObjectIdArray> islands;  // the outermost curves within it that do not hold the point
};

// The smallest closed curve of the current space around the point (user coordinates), seen in the user system's plane,
// or of those given. Curves that only together enclose an area count when their ends meet in a chain.
// False when nothing encloses the point.
[[nodiscard]] bool boundaryAt(Editor& editor, const GcGePoint3d& user, const std::vector<GcDbObjectId>& among,
                              Boundary& boundary);

// Curves put together into closed chains: each closed curve alone, others end to end. What closes nothing is left out.
[[nodiscard]] std::vector<GcDbObjectIdArray> closedChains(const std::vector<GcDbObjectId>& curves);

}  // namespace ed
