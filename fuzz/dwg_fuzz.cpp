// Whole DWG files: whatever the bytes, reading ends with a status, in bounds.
#include <cstddef>
#include <cstdint>

#include "db/database.h"
#include "host/dwg/file/dwgfile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  GcDbDatabase database(false, true);
  static_cast<void>(gc::dwg::read(database, {reinterpret_cast<const char*>(data), size}));
  return 0;
}
