// Records of symbol tables by name, the way settings, commands and LISP ask for them.
#pragma once

#include "db/database.h"
#include "host/rx/view.h"

namespace ed {

// The record's id; null when the table has no such record.
[[nodiscard]] GcDbObjectId recordNamed(GcDbObjectId table, GcView name);
// The name of a record; empty for a null or foreign id.
[[nodiscard]] GcText nameOfRecord(GcDbObjectId record);
// The table of a kind ("LAYER", "LTYPE", "STYLE", "BLOCK", "APPID", "DIMSTYLE", "VIEW", "UCS", "VPORT"), any case.
[[nodiscard]] GcDbObjectId tableOfKind(GcDbDatabase& database, GcView kind);
// The layer, made when the drawing has none of this name. Null for a name a layer cannot have.
[[nodiscard]] GcDbObjectId needLayer(GcDbDatabase& database, GcView name);

}  // namespace ed
