// Writes the section ACDSDATA: what the drawing's own file had there, and the bytes of all regions, solids and surfaces.
#pragma once

#include "host/dxf/write/group_writer.h"

class GcDbDatabase;

namespace gc::dxf {

// Nothing where there is nothing to write. Older versions have the text with the region: they get the bytes of those
// that have no text.
void writeModelerSection(GroupWriter& out, const GcDbDatabase& database);

}  // namespace gc::dxf
