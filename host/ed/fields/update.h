// Fields worked out anew: what their codes come to, put into the texts they belong to.
#pragma once

#include "host/ed/editor.h"

namespace ed {

struct FieldCount {
  int found = 0;    // texts with fields
  int updated = 0;  // of them those whose fields could be worked out
};

// The fields of entities and of the attributes of block references among them. A field whose evaluator is not known
// here keeps its text; one whose object is gone reads "####".
FieldCount updateFields(Editor& editor, const std::vector<GcDbObjectId>& entities);

}  // namespace ed
