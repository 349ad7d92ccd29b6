// The parts of a file, whatever the container they come in.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/db/core/loadreport.h"

namespace gc::dwg {

struct Sections {
  int version = 0;
  int maintenance = 0;  // maintenance release of the version that wrote the file
  int codePageNumber = 30;
  // The bytes of each part; spans point into the file or into `owned`.
  std::span<const uint8_t> header;   // with sentinels
  std::span<const uint8_t> classes;  // with sentinels
  std::span<const uint8_t> handles;  // the object map
  std::span<const uint8_t> objects;  // the map's offsets count from its first byte
  std::span<const uint8_t> secondHeader;
  struct Named {
    std::string name;
    std::span<const uint8_t> bytes;
  };
  std::vector<Named> others;  // preview, summary, and what else a file holds: kept as it is
  std::vector<std::vector<uint8_t>> owned;
};

// The version a file says it has (GcDb::GcDbDwgVersion), kDHL_Unknown for one that is no such file.
int versionOfBytes(std::span<const uint8_t> bytes);

// Finds the sections. False when nothing can be read; what was wrong stands in the report.
bool openR2000(std::span<const uint8_t> file, Sections& sections, GcDbLoadReport& report);
bool openR2004(std::span<const uint8_t> file, Sections& sections, GcDbLoadReport& report);
bool openR2007(std::span<const uint8_t> file, Sections& sections, GcDbLoadReport& report);

// Adds a line to the report.
void note(GcDbLoadReport& report, GcDbLoadAction action, uint64_t offset, uint64_t handle, std::string text);

}  // namespace gc::dwg
