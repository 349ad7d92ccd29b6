// Objects as chains of groups.
#pragma once

#include "db/objectid.h"
#include "rx/resbuf.h"

namespace ed {

// The groups of an object: its name, DXF name, owner, handle, fields, and the extended data of the applications named
// in the chain of strings (null: none; "*": all). The caller releases it. Null for erased objects.
[[nodiscard]] resbuf* entityList(GcDbObjectId id, const resbuf* applications);

}  // namespace ed
