// The HEADER section.
#pragma once

#include "host/dxf/write/group_writer.h"

class GcDbDatabase;

namespace gc::dxf {

// The variables in the order they came in, those the database keeps itself with their present values, those the
// version does not know left out. `codePage`: the name written.
void writeHeader(GroupWriter& out, const GcDbDatabase& database, const char* codePage);

// The version (GcDb::GcDbDwgVersion) that first has a header variable; the oldest for unknown names.
[[nodiscard]] int variableSince(GcView name);

}  // namespace gc::dxf
