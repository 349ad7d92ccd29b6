// What nothing in the drawing uses.
#pragma once

#include "host/ed/editor.h"

namespace ed {

// Records of a table that no object refers to and the drawing's settings do not name: not erased, without those that
// every drawing has (layer 0, linetypes ByLayer, ByBlock, Continuous, the layouts' blocks, Standard styles) and those
// of external references.
[[nodiscard]] std::vector<GcDbObjectId> unusedRecords(Editor& editor, GcDbDatabase::Table table);

// Erases a record, of blocks with what they hold.
void eraseRecord(GcDbObjectId id);

}  // namespace ed
