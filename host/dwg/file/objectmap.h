// Where the record of each handle lies.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "host/db/core/loadreport.h"

namespace gc::dwg {

struct MapEntry {
  uint64_t handle = 0;
  uint64_t offset = 0;  // into the objects' bytes
};

// Entries in the order of the map. Damaged pieces are left out and reported, and so are entries beyond `most`: there are
// no more than the file has records for.
std::vector<MapEntry> readObjectMap(std::span<const uint8_t> bytes, uint64_t most, GcDbLoadReport& report);

// As many records as so many bytes can hold.
constexpr uint64_t mostRecordsIn(uint64_t bytes) { return bytes / 4; }

// The map's bytes, for entries sorted by handle.
std::vector<uint8_t> writeObjectMap(const std::vector<MapEntry>& entries);

}  // namespace gc::dwg
