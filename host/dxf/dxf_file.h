// Whole drawings in and out of DXF files, ASCII and binary.
#pragma once

#include <string>
#include <string_view>

#include "db/database.h"
#include "host/dxf/tags/tag_writer.h"
#include "host/rx/file/atomic_file.h"

class GcDbSaveReport;

namespace gc::dxf {

// True when the bytes begin as DXF files do.
[[nodiscard]] bool isDxf(std::string_view file);

// Reads the bytes of a file into a database without contents. What is damaged is repaired or skipped and stands in the
// database's load report; what is intact is read. Errors: eBadDxfFile (no DXF file at all; the database is untouched).
Gcad::ErrorStatus read(GcDbDatabase& database, std::string_view file);

struct WriteOptions {
  GcDb::GcDbDwgVersion version = GcDb::kDHL_Current;  // AC1009, AC1015, AC1018 … AC1032
  bool binary = false;
  int decimals = TagWriter::kAllDecimals;
  Backup backup = Backup::None;
  GcDbSaveReport* report = nullptr;  // takes what the version cannot say
};

[[nodiscard]] bool isWritable(GcDb::GcDbDwgVersion version);

// Writes the drawing. Errors: eUnsupportedVersion; eFileWriteError when the sink has failed.
Gcad::ErrorStatus write(GcDbDatabase& database, ByteSink& sink, const WriteOptions& options);

// The same into a file, which is replaced whole or not at all. The message of a failure goes to `message`.
Gcad::ErrorStatus writeFile(GcDbDatabase& database, const std::string& path, const WriteOptions& options,
                            std::string& message);

}  // namespace gc::dxf
