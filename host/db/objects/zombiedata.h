// What an object of an unknown class keeps of its file.
#pragma once

#include "host/db/describe/group.h"
#include "rx/gcstring.h"

struct GcDbZombieData {
  GcString dxfName;      // group 0 of the object
  GcDbGroupList groups;  // everything after the common groups, subclass markers included
  // From a DWG record of an unknown class: its bits, string stream included, and its references by handle.
  GcArray<uint8_t> bits;
  int32_t bitCount = 0;
  GcDbObjectIdArray references;
  GcArray<uint8_t> referenceCodes;
  uint8_t version = 0;      // of the file the bits came from, GcDb::GcDbDwgVersion
  uint16_t recordType = 0;  // of the bits' record, where the DXF name alone does not say it; 0 otherwise
};
