// DWG as one of the formats of drawing files.
#include "host/db/core/fileformats.h"
#include "host/db/core/rawbits.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dwg/record/recordcodec.h"

namespace gc::dwg {
namespace {

Gcad::ErrorStatus save(GcDbDatabase& database, const std::string& path, const GcDbSaveOptions& options,
                       std::string& message) {
  return writeFile(database, path, {options.version, options.backup, options.report}, message);
}

bool writes(GcDb::GcDbDwgVersion version) { return isWritable(version); }

constexpr GcDbFileFormat kFormat{"dwg", isDwg, read, save, writes};
const GcDbFileFormatEntry kEntry(kFormat);
const bool kReadsBits = (gcdbSetRawBitsReader(readKeptBits), true);

}  // namespace
}  // namespace gc::dwg
