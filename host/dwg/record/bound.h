// The packing of a class tied to the rows of its description, made once per class and process.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/db/describe/classinfo.h"
#include "host/dwg/record/packrow.h"

namespace gc::dwg {

struct BoundTable;

struct BoundRow {
  const PackRow* pack = nullptr;
  const GcDbField* field = nullptr;        // null: a constant, or a field the class does not keep
  const GcDbField* const* args = nullptr;  // of pieces and stored numbers; single ones may be null
  const BoundTable* elements = nullptr;    // Records
};

struct BoundTable {
  std::vector<BoundRow> rows;
  std::vector<std::unique_ptr<BoundTable>> nested;
  std::vector<std::unique_ptr<const GcDbField*[]>> argLists;
  bool (*isWhole)(const GcDbObject& object, int version) = nullptr;  // see ClassPacking
};

// Null for a class without packing, or whose description lacks a field the packing must have.
const BoundTable* boundTableOf(const GcRxClass& rxClass);

// The fields that packings name and descriptions lack: "AcDbLine 39". Empty when all is well.
std::vector<std::string> unboundFields();

// Every packing there is.
const std::vector<ClassPacking>& allPackings();

}  // namespace gc::dwg
