// One DWG record of any version and type: the first byte chooses the version.
#include <cstddef>
#include <cstdint>

#include "db/database.h"
#include "host/dwg/record/recordcodec.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  GcDbDatabase database(false, true);
  gc::dwg::RecordContext context(database);
  context.version = gc::dwg::kR13 + data[0] % 8;
  const std::span<const uint8_t> body(data + 3, size - 3);
  const uint64_t handleBits = static_cast<uint64_t>(data[1] | data[2] << 8);
  static_cast<void>(gc::dwg::readRecord(context, body, handleBits));
  return 0;
}
