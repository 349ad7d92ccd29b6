// Whole DWG files between memory and a database. docs/dwg.md says which versions and what each of them loses.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "db/database.h"

namespace gc::dwg {

// True for a file of this format, of any version.
bool isDwg(std::string_view bytes);

// Into a database without contents. What was repaired, skipped or is missing stands in the load report.
// Errors: eBadDwgFile (nothing can be read), eUnsupportedVersion (R11 and older).
Gcad::ErrorStatus read(GcDbDatabase& database, std::string_view bytes);

}  // namespace gc::dwg
