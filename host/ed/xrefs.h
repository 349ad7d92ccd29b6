// External references of a drawing: blocks that show other drawings.
#pragma once

#include "host/db/objects/externals.h"
#include "host/ed/editor.h"

namespace ed {

// Blocks of the drawing that are external references, in the order of the table.
[[nodiscard]] std::vector<GcDbObjectId> xrefsOf(GcDbDatabase& database);

// Makes a block that shows a file; nothing is read yet. Null when the name is taken or is none a block can have.
GcDbObjectId makeXref(GcDbDatabase& database, GcView name, GcView path, bool overlay);
// Reads the drawing (again), gives its layers dependent records here, and tells the person how that went.
bool loadXref(Editor& editor, GcDbObjectId block);
void unloadXref(Editor& editor, GcDbObjectId block);
// The block goes, with all that is inserted of it and its dependent records.
void detachXref(Editor& editor, GcDbObjectId block);
// The block holds the drawing's entities from then on. Their records get names of their own ("NAME$0$LAYER") or, when
// `insert`, the plain ones. False when the drawing is not loaded.
bool bindXref(Editor& editor, GcDbObjectId block, bool insert);
bool setXrefPath(GcDbObjectId block, GcView path);

// Looks for the drawings behind all references of a drawing that was opened; tells of those that are missing.
void resolveXrefs(Editor& editor);

}  // namespace ed
