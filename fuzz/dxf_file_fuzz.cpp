// Any bytes as a DXF file: reading ends without a crash; what was read is written; that is read without a complaint
// about its structure and written again as the same bytes.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/dxf/dxf_file.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

std::string saved(GcDbDatabase& database, bool binary) {
  gc::dxf::StringSink sink;
  gc::dxf::WriteOptions options;
  options.binary = binary;
  require(gc::dxf::write(database, sink, options) == Gcad::eOk);
  return std::move(sink.text());
}

std::string rewritten(const std::string& file, bool binary) {
  GcDbDatabase database(false);
  require(gc::dxf::read(database, file) == Gcad::eOk);
  return saved(database, binary);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  GcDbDatabase database(false);
  if (gc::dxf::read(database, {reinterpret_cast<const char*>(data), size}) != Gcad::eOk) return 0;
  const bool binary = size % 4 == 0;
  const std::string first = rewritten(saved(database, binary), binary);
  require(rewritten(first, binary) == first);
  return 0;
}
