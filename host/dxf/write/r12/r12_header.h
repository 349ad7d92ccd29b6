// The HEADER section of R12.
#pragma once

#include "host/dxf/write/group_writer.h"
#include "host/dxf/write/r12/r12_names.h"

namespace gc::dxf {

// The settings R12 knows; the others are told. `handseed`: greater than every handle written.
void writeR12Header(GroupWriter& out, const GcDbDatabase& database, const R12Names& names, const char* codePage,
                    std::uint64_t handseed, SaveNotes& notes);

}  // namespace gc::dxf
