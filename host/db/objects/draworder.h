// The order in which the entities of a block are drawn: by handle, or as the block's sort table says.
#pragma once

#include <vector>

#include "host/db/objects/standard.h"

inline constexpr const GCHAR* kSortTable = GC_T("ACAD_SORTENTS");  // key in the block's extension dictionary

// The block's table; null when it has none.
GcDbObjectId gcdbSortTableOf(GcDbObjectId block);

// The entities that live, in the order they are drawn, each with the handle it is sorted by.
std::vector<GcDbSortPair> gcdbDrawingOrder(GcDbObjectId block);

// Puts entities of one block into the order they are drawn, where the block says one: copies then stand in it.
void gcdbSortAsDrawn(std::vector<GcDbObjectId>& ids);
