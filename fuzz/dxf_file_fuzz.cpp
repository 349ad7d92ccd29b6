// Any bytes as a DXF file: reading ends without a crash; what was read is written; that is read without a complaint
// about its structure and written again as the same bytes. What an audit has mended is mended, and can be said in R12.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/db/audit/audit.h"
#include "host/db/core/savereport.h"
#include "host/dxf/dxf_file.h"

namespace {

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

std::string saved(GcDbDatabase& database, bool binary) {
  gc::dxf::StringSink sink;
  gc::dxf::WriteOptions options;
  // A version that has all objects a drawing needs: each reading of an older one makes those it lacks, at new handles.
  options.version = GcDb::kDHL_AC1015;
  options.binary = binary;
  require(gc::dxf::write(database, sink, options) == Gcad::eOk, "it can be written");
  return std::move(sink.text());
}

std::string rewritten(const std::string& file, bool binary) {
  GcDbDatabase database(false);
  require(gc::dxf::read(database, file) == Gcad::eOk, "what was written can be read");
  return saved(database, binary);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  GcDbDatabase database(false);
  if (gc::dxf::read(database, {reinterpret_cast<const char*>(data), size}) != Gcad::eOk) return 0;
  const bool binary = size % 4 == 0;
  const std::string first = rewritten(saved(database, binary), binary);
  require(rewritten(first, binary) == first, "it is written the same again");
  const GcDbAuditReport found = gcdbAudit(database, true);
  if (found.mended() == static_cast<int>(found.entries.size()))
    require(gcdbAudit(database, false).isClean(), "what an audit has mended is mended");
  GcDbSaveReport report;
  gc::dxf::StringSink sink;
  gc::dxf::WriteOptions options;
  options.version = GcDb::kDHL_AC1009;
  options.binary = binary;
  options.report = &report;
  require(gc::dxf::write(database, sink, options) == Gcad::eOk, "it can be written in R12");
  GcDbDatabase old(false);
  require(gc::dxf::read(old, sink.text()) == Gcad::eOk, "R12 can be read");
  return 0;
}
