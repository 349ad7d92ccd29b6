// Layouts and their blocks, for the layout manager and for new drawings.
#pragma once

#include "db/layout.h"
#include "db/symboltable.h"

inline constexpr const GCHAR* kModelLayout = GC_T("Model");
inline constexpr const GCHAR* kPaperSpaceBlock = GC_T("*Paper_Space");

// Adds a layout for a block that has none. The id is null when the drawing has no dictionary of layouts.
GcDbObjectId gcdbAddLayout(GcDbDatabase& database, const GCHAR* name, GcDbObjectId block);

// Adds an empty block for a sheet of paper: "*Paper_Space" and the first number that is free.
GcDbObjectId gcdbAddPaperBlock(GcDbDatabase& database);

// Gives a sheet the viewport that stands for it, unless it has one.
void gcdbAddSheetViewport(GcDbDatabase& database, const GcDbLayout& layout);

// Makes a block "*Paper_Space"; the one that was takes its name. Undo knows layouts, not names of their blocks.
void gcdbShowPaperBlock(GcDbDatabase& database, GcDbObjectId block);

// Some files do not say the numbers of viewports: gives every one of the drawing that has none the next of its layout;
// with `zerosToo` those that had none because their layout was not shown.
void gcdbNumberViewports(GcDbDatabase& database);
void gcdbNumberViewports(const GcDbBlockTableRecord& block, bool zerosToo);
