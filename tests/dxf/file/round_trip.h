// Reading and writing whole drawings in tests.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "db/database.h"
#include "host/dxf/dxf_file.h"

namespace gc::test {

// The drawing in the bytes of a file; null when they are no DXF file.
std::unique_ptr<GcDbDatabase> load(std::string_view file);

std::string save(GcDbDatabase& database, GcDb::GcDbDwgVersion version = GcDb::kDHL_Current, bool binary = false);

// The load report, a line an entry, but for the tables that short test files do without.
std::vector<std::string> reportOf(GcDbDatabase& database);

// What `after` lacks of `before`, a line a difference; derived header settings are not compared.
std::vector<std::string> losses(std::string_view before, std::string_view after);

}  // namespace gc::test
