// The numbers by which DWG files, and proxies in files of either format, name versions of DWG.
#pragma once

#include "db/dbdefs.h"

// The number programs write of the version they save (0x17: AC1015). `version`: GcDb::GcDbDwgVersion.
constexpr int gcdbDwgNumberOfVersion(int version) {
  switch (version) {
    case GcDb::kDHL_AC1012: return 0x13;
    case GcDb::kDHL_AC1014: return 0x15;
    case GcDb::kDHL_AC1015: return 0x17;
    case GcDb::kDHL_AC1018: return 0x19;
    case GcDb::kDHL_AC1021: return 0x1B;
    case GcDb::kDHL_AC1024: return 0x1D;
    case GcDb::kDHL_AC1027: return 0x1F;
    default: return 0x21;
  }
}

// 0 for a number no version has. Even numbers are those of releases before the final one.
constexpr int gcdbVersionOfDwgNumber(int number) {
  if (number < 0x12 || number > 0x21) return 0;
  if (number <= 0x13) return GcDb::kDHL_AC1012;
  if (number <= 0x15) return GcDb::kDHL_AC1014;
  if (number <= 0x17) return GcDb::kDHL_AC1015;
  if (number <= 0x19) return GcDb::kDHL_AC1018;
  if (number <= 0x1B) return GcDb::kDHL_AC1021;
  if (number <= 0x1D) return GcDb::kDHL_AC1024;
  return number <= 0x1F ? GcDb::kDHL_AC1027 : GcDb::kDHL_AC1032;
}
