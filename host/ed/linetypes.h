// Linetypes by name: from a file of definitions, else from the list every drafting program knows.
#pragma once

#include <vector>

#include "host/ed/editor.h"

namespace ed {

struct LinetypeDefinition {
  GcText name;
  GcText description;
  std::vector<double> dashes;  // dashes, gaps below 0, dots 0; drawing units
  bool simplified = false;     // letters or shapes were left out
};

// The definitions of a file: "*NAME,description" and "A,.5,-.25" on the next line. Letters and shapes within a pattern
// are left out, the gap they stand in stays.
[[nodiscard]] std::vector<LinetypeDefinition> parseLinetypes(GcView text);
// The usual ones, in inches or millimetres; those of the standard ISO 128 are the same in both.
[[nodiscard]] std::vector<LinetypeDefinition> usualLinetypes(bool metric);

// Puts a definition into the drawing, in the place of one of that name. A null id for a name a record cannot have.
GcDbObjectId putLinetype(GcDbDatabase& database, const LinetypeDefinition& definition);

}  // namespace ed
