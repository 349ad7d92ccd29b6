// One row per system variable: name, type, where it is kept, what it starts as, its range.
#pragma once

#include <span>

#include "host/ed/variables/variables.h"

namespace ed {

enum class Keep : uint8_t {
  Header,    // in the drawing, as the setting $NAME
  Session,   // as long as the document is open
  Computed,  // by get; set, where there is one, puts it where it belongs
};

struct VariableRow {
  const char* name;
  VariableKind kind;
  Keep keep;
  const char* initial;  // as text; points as "x,y,z"
  double least = 0;     // numbers only; both 0: any
  double most = 0;
  bool readOnly = false;
  void (*get)(Editor& editor, VariableValue& value) = nullptr;        // fills a value of the row's kind
  bool (*set)(Editor& editor, const VariableValue& value) = nullptr;  // false: the drawing refuses
};

// The rows, one list per family of variables.
std::span<const VariableRow> headerRows();
std::span<const VariableRow> sessionRows();
std::span<const VariableRow> drawingRows();  // current layer and the like, views, coordinate systems
std::span<const VariableRow> factRows();     // time, names, places, versions

// The initial value of a row.
VariableValue initialValue(const VariableRow& row);

}  // namespace ed
