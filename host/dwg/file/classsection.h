// The classes a file describes beside the fixed ones.
#pragma once

#include "host/db/core/loadreport.h"
#include "host/dwg/file/sections.h"
#include "host/dwg/record/context.h"

namespace gc::dwg {

void readClasses(const Sections& sections, RecordContext& context, GcDbLoadReport& report);
// The section with its sentinels.
std::vector<uint8_t> writeClasses(RecordContext& context);

}  // namespace gc::dwg
