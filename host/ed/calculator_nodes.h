// Expressions of the calculator as trees, and the functions they call.
#pragma once

#include <span>
#include <string>

#include "host/ed/calculator.h"

namespace ed {

struct CalcNode {
  enum class Kind : uint8_t { Value, Variable, LastPoint, Pick, Vector, Negate, Binary, Call };
  Kind kind = Kind::Value;
  CalcValue value;     // Value
  std::string name;    // Variable, Call: lower case
  size_t pick = 0;     // Pick: its place among the picks
  char operation = 0;  // Binary: + - * / ^ &
  // Vector: what parts it from the one before, ',' or '<'; world: its coordinates are the world's
  std::vector<char> separators;
  bool world = false;
  std::vector<std::unique_ptr<CalcNode>> parts;
};

struct CalcFunction {
  const char* name;
  size_t least, most;  // arguments
  // False for arguments it has no value for.
  bool (*body)(Editor& editor, std::span<const CalcValue> arguments, CalcValue& value);
};

// Null when there is none of the (lower case) name.
[[nodiscard]] const CalcFunction* findCalcFunction(std::string_view name);

}  // namespace ed
