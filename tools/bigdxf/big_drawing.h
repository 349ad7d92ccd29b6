// A made-up drawing of any size, to measure with: mixed entities on many layers, blocks, text, extended data.
#pragma once

#include "host/dxf/tags/tag_writer.h"

namespace gc {

// Writes a whole R2000 file of `count` entities, about 300 bytes each. The same count always makes the same file.
void writeBigDrawing(dxf::TagWriter& out, long count);

}  // namespace gc
