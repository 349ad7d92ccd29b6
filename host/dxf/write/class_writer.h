// The CLASSES section.
#pragma once

#include "host/dxf/write/group_writer.h"

class GcDbDatabase;

namespace gc::dxf {

// The records the drawing came with, and one for each class of living objects that needs one and has none.
void writeClasses(GroupWriter& out, GcDbDatabase& database);

}  // namespace gc::dxf
