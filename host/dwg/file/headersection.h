// The settings of a drawing between the header section and the database.
#pragma once

#include <vector>

#include "host/dwg/file/headerrows.h"
#include "host/dwg/file/sections.h"
#include "host/dwg/record/context.h"

namespace gc::dwg {

// References of the header; names of records can be told only when the records are there.
struct HeaderReferences {
  uint64_t tables[GcDbDatabase::kTableCount] = {};
  uint64_t known[static_cast<size_t>(KnownRecord::kCount)] = {};
  uint64_t handseed = 0;
  struct Setting {
    const HeaderRow* row;
    GcDbObjectId id;
  };
  std::vector<Setting> settings;
  GcCmEntityColor color = GcCmEntityColor::byLayer();
  int lineWeight = GcDb::kLnWtByLayer;
  double linetypeScale = 1;

  [[nodiscard]] uint64_t of(KnownRecord which) const { return known[static_cast<size_t>(which)]; }
};

// Sets what needs no record; false when there is no readable header.
bool readHeader(const Sections& sections, RecordContext& context, HeaderReferences& references, GcDbLoadReport& report);
// Sets the rest: settings that name records, and what the database itself holds.
void connectHeader(const RecordContext& context, const HeaderReferences& references);

// What a setting of the drawing refers to; null when there is no record of the name.
GcDbObjectId referenceOf(const RecordContext& context, const HeaderRow& row);
// The name of a row's setting.
GcText nameOfRow(const char* ascii);

// The section with its sentinels.
std::vector<uint8_t> writeHeader(RecordContext& context, uint64_t handseed);

}  // namespace gc::dwg
