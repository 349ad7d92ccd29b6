// What can only be checked when all objects are there.
#pragma once

#include "host/dxf/read/load_context.h"

namespace gc::dxf {

// Tells every object that it is loaded; lists references to objects that are not there; ends cycles of owners.
void afterLoad(const LoadContext& context);

}  // namespace gc::dxf
