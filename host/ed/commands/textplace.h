// Where a line of text goes: asked the same way by all commands that put one.
#pragma once

#include "db/text.h"
#include "host/ed/command/command.h"

namespace ed {

struct TextPlace {
  GcDb::TextHorzMode horizontal = GcDb::kTextLeft;
  GcDb::TextVertMode vertical = GcDb::kTextBase;
  GcGePoint3d point;
  GcGePoint3d second;  // the other end of the base line (Align and Fit)
  double height = 0;
  double rotationRad = 0;
  [[nodiscard]] bool hasTwoPoints() const { return horizontal == GcDb::kTextAlign || horizontal == GcDb::kTextFit; }
};

// Point, justification, style, height and rotation. False when there is no point.
Task<bool> askTextPlace(CommandInput& in, TextPlace& place);
void giveTextPlace(GcDbText& text, const TextPlace& place);

}  // namespace ed
