// The section ACDSDATA of files from 2013 on: schemas, then records of named values. A record "ASM_Data" holds the bytes
// of a modeller's body and the handle of the entity they belong to:
//   0 ACDSRECORD | 90 number of the schema | 2 AcDbDs::ID 280 10 320 handle | 2 ASM_Data 280 15 94 bytes 310 ...
// Source: the section as drawings of 2013 and 2018 have it.
#pragma once

#include "host/rx/view.h"

namespace gc::dxf::modeler {

inline constexpr GcView kSection = GC_T("ACDSDATA");
inline constexpr GcView kRecord = GC_T("ACDSRECORD");
inline constexpr GcView kSchema = GC_T("ACDSSCHEMA");
inline constexpr GcView kBodySchema = GC_T("AcDb3DSolid_ASM_Data");
inline constexpr GcView kOwnerName = GC_T("AcDbDs::ID");
inline constexpr GcView kBytesName = GC_T("ASM_Data");

enum Code : int { kSchemaName = 1, kValueName = 2, kSchemaNumber = 90, kValueKind = 280, kHandle = 320 };
inline constexpr int kSize = 94;
inline constexpr int kBytes = 310;
inline constexpr int kHandleKind = 10;
inline constexpr int kBytesKind = 15;

}  // namespace gc::dxf::modeler
