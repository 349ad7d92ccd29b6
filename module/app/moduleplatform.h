// What the module asks of the platform about itself.
#pragma once

#include <cstdint>

#include "module/app/host.h"

namespace moduleplatform {

// The module's own handle, by which its string resources are found; null where libraries have none.
void* handle();

// Loads a string resource, cut to size - 1 units. Leaves the buffer alone when there is none.
void loadString(void* module, uint32_t resourceId, GCHAR* buffer, int size);

}  // namespace moduleplatform
