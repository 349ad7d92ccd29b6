// Attributes of block references by their definitions.
#pragma once

#include "db/attribute.h"
#include "host/ed/editor.h"

namespace ed {

// The attribute definitions of a block in drawing order.
[[nodiscard]] std::vector<GcDbObjectId> attributeDefinitions(GcDbObjectId block);
// Gives the reference the attribute of a definition, with a text unless it is empty.
void addAttribute(GcDbObjectId reference, GcDbObjectId definition, const GcText& text);

}  // namespace ed
