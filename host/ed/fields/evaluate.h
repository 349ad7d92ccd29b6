// What the code of one field comes to.
//
//   \AcVar NAME                      a fact of the drawing or the session, a system variable, a variable of LISP
//   \AcObjProp Object(%<\_ObjIdx 0>%).NAME    a property of an object that the field refers to
//   \AcExpr (2*%<\_FldIdx 0>%)       an expression over numbers and child fields
//   \AcDiesel $(getvar,dwgname)      a text of the macro language
//
// A version may follow the evaluator's name (\AcVar.17.0); \f "…" gives the format.
#pragma once

#include <vector>

#include "host/ed/fields/format.h"

namespace ed {

struct FieldCode {
  GcText evaluator;   // without version
  GcText expression;  // what stands between the evaluator and the format
  GcText format;
};

[[nodiscard]] FieldCode splitFieldCode(GcView code);

enum class FieldOutcome : uint8_t { Done, Unknown, Failed };  // Unknown: no evaluator here

// A child field's own result, for expressions.
struct FieldPart {
  GcText text;
  bool isNumber = false;
  double number = 0;
};

struct FieldParts {
  std::vector<FieldPart> children;
  std::vector<GcDbObjectId> objects;
};

[[nodiscard]] FieldOutcome evaluateField(Editor& editor, const FieldCode& code, const FieldParts& parts,
                                         FieldValue& value, GcText& complaint);

// A place in a code: %<\_FldIdx 0>% for a child field, %<\_ObjIdx 0>% for an object.
struct FieldPlace {
  size_t begin = 0, end = 0;
  int index = -1;
};
// The next place of a kind ("_FldIdx") from a position on; an index of -1 when there is none.
[[nodiscard]] FieldPlace nextFieldPlace(GcView code, GcView kind, size_t from);

}  // namespace ed
