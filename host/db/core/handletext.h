// Handles as text: upper-case hexadecimal digits without leading zeros.
#pragma once

#include <cstdint>

#include "host/rx/view.h"

GcText gcdbHandleText(uint64_t handle);
// 0 for a text that is no handle.
uint64_t gcdbHandleValue(GcView text);
