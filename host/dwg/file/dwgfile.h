// Whole DWG files between memory and a database. docs/dwg.md says which versions and what each of them loses.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "db/database.h"

class GcDbSaveReport;

namespace gc::dwg {

// True for a file of this format, of any version.
bool isDwg(std::string_view bytes);

// Into a database without contents. What was repaired, skipped or is missing stands in the load report.
// Errors: eBadDwgFile (nothing can be read), eUnsupportedVersion (R11 and older).
Gcad::ErrorStatus read(GcDbDatabase& database, std::string_view bytes);

// The versions that are written.
bool isWritable(int version);

// AC1015, AC1018, AC1024, AC1027 or AC1032. The file is replaced whole or not at all; what the version cannot hold is
// replaced or left out and told in `message` (UTF-8), which says what failed when something did.
// Errors: eUnsupportedVersion, eFileAccessErr, eFileWriteError.
struct WriteOptions {
  int version = GcDb::kDHL_AC1032;
  bool backup = false;
  GcDbSaveReport* report = nullptr;  // takes what the version cannot say
};
Gcad::ErrorStatus writeFile(GcDbDatabase& database, const std::string& path, const WriteOptions& options,
                            std::string& message);
// The same into memory.
Gcad::ErrorStatus writeBytes(GcDbDatabase& database, int version, std::vector<uint8_t>& bytes, std::string& message,
                             GcDbSaveReport* report = nullptr);

}  // namespace gc::dwg
