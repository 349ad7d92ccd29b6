// Drawing files of the subcommands that need no LISP: opened, saved, and what went wrong told to the person.
#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "db/database.h"

struct GcDbLoadEntry;

namespace cli {

// How much is told of damage that was repaired or skipped; it stands in the load report in any case.
enum class Remarks { First, All, None };

// The drawing of a file (path in UTF-8); null after a complaint that names file and reason.
std::unique_ptr<GcDbDatabase> openDrawingFile(const std::string& path, Remarks remarks = Remarks::First);

// One remark on reading: {"action", "line", "offset", "handle", "text"}, what is not known left out.
nlohmann::json loadEntryAsJson(const GcDbLoadEntry& entry);

// "R2000" for AC1015 and so on; "?" for an unknown version.
const char* versionName(GcDb::GcDbDwgVersion version);
// The version of a name such as "R2000", any case; kDHL_Unknown for another name.
GcDb::GcDbDwgVersion versionOfName(const std::string& name);

// False, with a complaint, when the file exists and may not be overwritten.
bool mayWrite(const std::string& path, bool force);

}  // namespace cli
