// What a drawing has before anything is drawn into it, and what a drawing read from a file must have.
#pragma once

#include "db/objectid.h"

class GcDbDatabase;
class GcRxClass;

// Makes the tables a drawing does not have.
void gcdbAddMissingTables(GcDbDatabase& database);
void gcdbAddMissingTable(GcDbDatabase& database, int table);  // GcDbDatabase::Table
// Makes the records every drawing has in the table (layer "0", the three linetypes, style "Standard" ...), but for blocks.
void gcdbAddStandardRecords(GcDbDatabase& database, int table);
// The class of a table, by GcDbDatabase::Table.
GcRxClass* gcdbTableClass(int table);

// Tables with their standard records, model and paper spaces, root dictionary, header defaults.
void gcdbBuildNewDrawing(GcDbDatabase& database);

// The plot style that stands for none; null when the drawing has no styles by name.
GcDbObjectId gcdbDefaultPlotStyle(const GcDbDatabase& database);
