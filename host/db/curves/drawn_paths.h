// What an entity consists of as far as meeting others is concerned: a curve's own path, else the lines it draws.
#pragma once

#include <vector>

#include "db/entity.h"
#include "host/ge/curves/path.h"

// Appends one path per connected line, in the order of drawing. Text counts by the box around each line of it. `extend`
// prolongs curves as their kinds allow; entities that are no curves stay as they are drawn.
// Errors: eNotApplicable when nothing is drawn that could be met.
Gcad::ErrorStatus gcdbDrawnPaths(const GcDbEntity& entity, bool extend, std::vector<GcGePath>& paths);
