// The bytes of regions, solids and surfaces, which files from 2013 on keep in the section ACDSDATA.
#pragma once

#include "host/dxf/read/load_context.h"

namespace gc::dxf {

// Gives the objects their bytes. Their records keep their places in the kept section, without the bytes; those of other
// objects stay as they are.
void takeModelerRecords(const LoadContext& context);

}  // namespace gc::dxf
