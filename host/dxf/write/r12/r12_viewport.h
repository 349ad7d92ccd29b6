// The view of a viewport of paper space, which R12 keeps in extended data of its own application.
#pragma once

#include "host/dxf/write/r12/r12_groups.h"

namespace gc::dxf {

void putViewportData(GroupWriter& out, const R12Names& names, const GcDbEntity& viewport);

}  // namespace gc::dxf
