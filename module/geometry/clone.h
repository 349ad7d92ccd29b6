// Copies of entities.
#pragma once

#include "module/app/host.h"

// Copies an object with all it owns into model space of the working database. Null when nothing was copied.
GcDbObjectId cloneIntoModelSpace(GcDbObjectId source);

// The model space block, looked up by its name; null without one.
GcDbObjectId modelSpaceBlockId();
