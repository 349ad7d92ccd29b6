// DXF as one of the formats of drawing files.
#include "host/db/core/fileformats.h"
#include "host/dxf/dxf_file.h"

namespace gc::dxf {
namespace {

Gcad::ErrorStatus save(GcDbDatabase& database, const std::string& path, const GcDbSaveOptions& options,
                       std::string& message) {
  WriteOptions written;
  written.version = options.version;
  written.binary = options.binary;
  written.decimals = options.decimals;
  written.report = options.report;
  written.backup = options.backup ? Backup::Keep : Backup::None;
  const Gcad::ErrorStatus status = writeFile(database, path, written, message);
  if (status == Gcad::eUnsupportedVersion) message = "cannot save " + path + ": DXF of this version is not written";
  return status;
}

constexpr GcDbFileFormat kFormat{"dxf", isDxf, read, save, isWritable};
const GcDbFileFormatEntry kEntry(kFormat);

}  // namespace
}  // namespace gc::dxf
