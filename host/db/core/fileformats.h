// The formats of drawing files. Each codec (host/dxf, host/dwg) registers itself when the program starts; reading picks
// the format by the content of the file, saving by the extension of its name.
#pragma once

#include <string>
#include <string_view>

#include "db/database.h"

class GcDbSaveReport;

struct GcDbSaveOptions {
  static constexpr int kAllDecimals = 16;  // as many as tell every number apart
  GcDb::GcDbDwgVersion version = GcDb::kDHL_Current;
  bool binary = false;               // of formats that have both
  int decimals = kAllDecimals;       // of real numbers, in text formats
  bool backup = false;               // the file that was there stays beside the new one
  GcDbSaveReport* report = nullptr;  // takes what the version cannot say; null: nobody asks
};

struct GcDbFileFormat {
  const char* extension;  // lower case, without the dot
  bool (*isMine)(std::string_view bytes);
  // Into a database without contents; repairs and losses go to its load report.
  Gcad::ErrorStatus (*read)(GcDbDatabase& database, std::string_view bytes);
  // The file is replaced whole or not at all. `message` (UTF-8) says what failed.
  Gcad::ErrorStatus (*write)(GcDbDatabase& database, const std::string& path, const GcDbSaveOptions& options,
                             std::string& message);
  bool (*writes)(GcDb::GcDbDwgVersion version);  // whether `write` can say the version
};

// A static object of this type registers a format.
struct GcDbFileFormatEntry {
  explicit GcDbFileFormatEntry(const GcDbFileFormat& format);
};

// Null when no format takes the bytes (the extension).
const GcDbFileFormat* gcdbFormatOfContent(std::string_view bytes);
const GcDbFileFormat* gcdbFormatOfName(std::string_view path);

// The version in which a drawing that came as `own` is saved unless somebody says otherwise: its own where the format
// writes it, else the next newer one.
GcDb::GcDbDwgVersion gcdbVersionToWrite(const GcDbFileFormat& format, GcDb::GcDbDwgVersion own);

// Reads a drawing file (path in UTF-8). Errors: eFileNotFound, eFileAccessErr, eBadDxfFile, eBadDwgFile,
// eUnsupportedVersion; `message` says what failed.
Gcad::ErrorStatus gcdbReadDrawing(GcDbDatabase& database, const std::string& path, std::string& message);

// Saves by the extension of the path. Errors: eInvalidInput (no format has the extension), eUnsupportedVersion,
// eFileWriteError, eFileAccessErr.
Gcad::ErrorStatus gcdbSaveDrawing(GcDbDatabase& database, const std::string& path, const GcDbSaveOptions& options,
                                  std::string& message);
