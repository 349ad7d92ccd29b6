// The names of the symbol tables and of their records in files.
#pragma once

#include <string_view>

#include "db/database.h"

namespace gc::dxf {

// By GcDbDatabase::Table. Tables and their records go by the same name.
inline constexpr const char* kTableNames[GcDbDatabase::kTableCount] = {
    "BLOCK_RECORD", "LAYER", "STYLE", "LTYPE", "VIEW", "UCS", "VPORT", "APPID", "DIMSTYLE"};

// GcDbDatabase::kTableCount for an unknown name.
constexpr int tableByName(std::string_view name) {
  int table = 0;
  while (table < GcDbDatabase::kTableCount && name != kTableNames[table]) ++table;
  return table;
}

}  // namespace gc::dxf
