// System variables: settings of the drawing, of the session, and facts computed when asked for, in one table
// (rows.h). Variables of the drawing's header that have no row are found too and keep the type they have there.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "host/rx/view.h"

namespace ed {

class Editor;
struct VariableRow;

enum class VariableKind : uint8_t { Integer, Real, Text, Point2d, Point3d };

struct VariableValue {
  VariableKind kind = VariableKind::Integer;
  int32_t integer = 0;
  double real = 0;
  double point[3] = {0, 0, 0};
  GcText text;

  static VariableValue of(int32_t value);
  static VariableValue of(double value);
  static VariableValue of(GcView value);
  static VariableValue ofPoint(double x, double y, double z);
  static VariableValue ofPoint2d(double x, double y);
  // Of a number, whichever kind it has.
  [[nodiscard]] double number() const { return kind == VariableKind::Integer ? integer : real; }
};

enum class VariableStatus : uint8_t { Done, Unknown, ReadOnly, WrongType, OutOfRange, Refused };

// Any letter case. False when there is no such variable.
[[nodiscard]] bool getVariable(Editor& editor, GcView name, VariableValue& value);
// An integer is taken where a real is wanted, and a 2D point for a 3D one; nothing else is converted. Refused: the
// drawing says no (a layer that is not there, say).
VariableStatus setVariable(Editor& editor, GcView name, const VariableValue& value);
// The same without telling the editor's watchers: for what is kept after every point.
VariableStatus setQuietly(Editor& editor, GcView name, const VariableValue& value);

// Variables whose value is known to exist and to be a number, a text.
[[nodiscard]] int32_t integerVariable(Editor& editor, const char* name);
[[nodiscard]] double realVariable(Editor& editor, const char* name);
[[nodiscard]] GcText textVariable(Editor& editor, const char* name);

// Values of the session, by row; rows without an entry have their initial value.
using SessionValues = std::unordered_map<const VariableRow*, VariableValue>;

// Names of all rows, sorted.
[[nodiscard]] std::vector<GcText> variableNames();

}  // namespace ed
