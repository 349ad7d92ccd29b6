// The data section of files from R2013 on: what is too large for records, by the handle of the object it belongs to.
// Bodies of solid modellers and pictures of blocks stand there. docs/dwg.md draws it.
#pragma once

#include "host/db/core/loadreport.h"
#include "host/dwg/record/context.h"

namespace gc::dwg {

inline constexpr const char* kDataSection = "AcDb:AcDsPrototype_1b";

// Gives the bodies of the section to their objects. What cannot be read of it is reported; the section itself is kept
// with the drawing.
void takeBodies(std::span<const uint8_t> section, RecordContext& context, GcDbLoadReport& report);

// Notes in the context which of the file's objects the section has more of, before their records are written.
void planDataSection(RecordContext& context);
// The section: what the drawing's own file had there of objects that are still there, and the bodies of all solids and
// regions. Empty when there is neither.
std::vector<uint8_t> writeDataSection(const RecordContext& context);

}  // namespace gc::dwg
