// What a dragged drawable shows: which entities of the drawing it draws, and by which transformation they are moved.
#pragma once

#include <vector>

#include "db/entity.h"

namespace ed {

struct ShownSet {
  GcGeMatrix3d matrix;                 // of the first entity drawn
  std::vector<GcDbObjectId> entities;  // in drawing order, none twice; of a reference drawn by its parts the reference
};

[[nodiscard]] ShownSet shownBy(GcDbEntity& drawable);

}  // namespace ed
