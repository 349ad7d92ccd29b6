// The HEADER section.
#pragma once

#include "host/db/core/savenotes.h"
#include "host/dxf/write/group_writer.h"

class GcDbDatabase;

namespace gc::dxf {

// The variables in the order they came in, those the database keeps itself with their present values, those the
// version does not know told (keep_young.h keeps them). `codePage`: the name written.
void writeHeader(GroupWriter& out, const GcDbDatabase& database, const char* codePage, SaveNotes& notes);

// The code page of the text as $DWGCODEPAGE has it: as the drawing's file spelt it, when it is still the same page.
[[nodiscard]] std::string codePageNameFor(const GcDbDatabase& database, const DrawingText& text);

// Writes the present value of a variable that the database keeps itself; false when `name` is none of them.
bool putKeptVariable(GroupWriter& out, const GcDbDatabase& database, GcView name, const char* codePage);

// The version (GcDb::GcDbDwgVersion) that first has a header variable; the oldest for unknown names.
[[nodiscard]] int variableSince(GcView name);

}  // namespace gc::dxf
