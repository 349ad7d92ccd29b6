// Linetypes by name: from a file of definitions, else from the list every drafting program knows.
#pragma once

#include <optional>
#include <vector>

#include "host/ed/editor.h"

namespace ed {

// Letters or a shape at the end of a dash or gap: ["GAS",STANDARD,S=.1,R=0,X=-.1,Y=-.05] or [BAT,shapes.shx,S=.1].
struct LinetypeMark {
  bool isText = false;
  GcText text;   // the letters, or the name or number of the shape
  GcText style;  // the text style, or the file of shapes
  double scale = 1;
  double turnRad = 0;
  bool isAbsolute = false;  // the turn is that of the plane, not of the line
  double offsetX = 0;       // along the line and to its left, drawing units
  double offsetY = 0;
};

struct LinetypeElement {
  double length = 0;  // a dash, a gap below 0, a dot 0; drawing units
  std::optional<LinetypeMark> mark;
};

struct LinetypeDefinition {
  GcText name;
  GcText description;
  std::vector<LinetypeElement> elements;
  GcText trouble;  // what of the pattern could not be understood and was left out
};

// The most elements a pattern has.
constexpr size_t kMostLinetypeElements = 12;

// The definitions of a file: "*NAME,description" and "A,.5,-.25" on the next line.
[[nodiscard]] std::vector<LinetypeDefinition> parseLinetypes(GcView text);
// The usual ones, in inches or millimetres; those of the standard ISO 128 are the same in both.
[[nodiscard]] std::vector<LinetypeDefinition> usualLinetypes(bool metric);

// Puts a definition into the drawing, in the place of one of that name. Text styles a pattern names must be there, else
// the current one is used; files of shapes become styles of their own. A mark that cannot be kept is left out and named
// in `trouble`. A null id for a name a record cannot have or a pattern that is too long.
GcDbObjectId putLinetype(GcDbDatabase& database, const LinetypeDefinition& definition, GcText& trouble);

}  // namespace ed
