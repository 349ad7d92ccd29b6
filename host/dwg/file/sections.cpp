#include "host/dwg/file/sections.h"

#include <cstring>

#include "db/dbdefs.h"

namespace gc::dwg {

int versionOfBytes(std::span<const uint8_t> bytes) {
  struct Known {
    const char* text;
    int version;
  };
  static constexpr Known kKnown[] = {
      {"AC1001", GcDb::kDHL_AC1001}, {"AC1002", GcDb::kDHL_AC1001}, {"AC1003", GcDb::kDHL_AC1001},
      {"AC1004", GcDb::kDHL_AC1001}, {"AC1006", GcDb::kDHL_AC1006}, {"AC1009", GcDb::kDHL_AC1009},
      {"AC1012", GcDb::kDHL_AC1012}, {"AC1014", GcDb::kDHL_AC1014}, {"AC1015", GcDb::kDHL_AC1015},
      {"AC1018", GcDb::kDHL_AC1018}, {"AC1021", GcDb::kDHL_AC1021}, {"AC1024", GcDb::kDHL_AC1024},
      {"AC1027", GcDb::kDHL_AC1027}, {"AC1032", GcDb::kDHL_AC1032},
  };
  constexpr size_t kLength = 6;
  if (bytes.size() < kLength) return GcDb::kDHL_Unknown;
  for (const Known& known : kKnown)
    if (std::memcmp(bytes.data(), known.text, kLength) == 0) return known.version;
  return GcDb::kDHL_Unknown;
}

void note(GcDbLoadReport& report, GcDbLoadAction action, uint64_t offset, uint64_t handle, std::string text) {
  GcDbLoadEntry entry;
  entry.action = action;
  entry.offset = offset;
  entry.handle = handle;
  entry.text = std::move(text);
  report.add(std::move(entry));
}

}  // namespace gc::dwg
