// Groups of code and value as extension records hold them: whole bytes, a 16-bit code before each value.
#pragma once

#include "host/db/describe/group.h"
#include "host/dwg/record/recordio.h"

namespace gc::dwg::packing {

// False when a code means nothing or a value is cut off.
bool takeGroups(RecordIn& record, BitReader bytes, GcDbGroupList& groups);
void putGroups(RecordOut& record, const GcDbGroupList& groups, BitWriter& bytes);

// The kind of reference a group code stands for.
[[nodiscard]] unsigned referenceCode(int groupCode);

}  // namespace gc::dwg::packing
