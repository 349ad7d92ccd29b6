// DWG as one of the formats of drawing files.
#include "host/db/core/fileformats.h"
#include "host/dwg/file/dwgfile.h"

namespace gc::dwg {
namespace {

constexpr GcDbFileFormat kFormat{"dwg", isDwg, read, nullptr};
const GcDbFileFormatEntry kEntry(kFormat);

}  // namespace
}  // namespace gc::dwg
