// Header settings, class records and the sections that hold no objects.
#pragma once

#include "host/dxf/read/record_reader.h"

namespace gc::dxf {

// The variables of the HEADER section, whose tags stand in the section's own record.
void readHeader(const LoadContext& context, const RawRecord& section);

// Gives the database the settings it keeps itself (current layer and the like). After the tables.
void connectHeader(GcDbDatabase& database);

// One CLASS record.
void readClass(const LoadContext& context, const RawRecord& record);

// A section that holds no objects: its records up to ENDSEC are kept as they are.
void keepSection(LoadContext& context, RecordReader& records, const RawRecord& section);

}  // namespace gc::dxf
