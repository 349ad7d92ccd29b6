// Puts the objects of a file together: tables get their records, blocks their entities, polylines and block references
// their vertices and attributes.
#pragma once

#include "host/dwg/file/headersection.h"
#include "host/dwg/file/objectloader.h"

namespace gc::dwg {

void linkObjects(RecordContext& context, const HeaderReferences& header, LoadedLinks& links, GcDbLoadReport& report);

}  // namespace gc::dwg
