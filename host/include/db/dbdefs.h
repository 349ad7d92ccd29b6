// Small types of the database interface.
#pragma once

#include <cstdint>

#include "rx/gcchar.h"
#include "rx/gcstatus.h"
#include "rx/resbuf.h"

namespace GcDb {

enum OpenMode : uint8_t { kForRead = 0, kForWrite = 1, kForNotify = 2 };

// Versions of drawing files, in order; kDHL_Current is what a new drawing is saved as.
enum GcDbDwgVersion : uint8_t {
  kDHL_Unknown = 0,
  kDHL_AC1001,  // R2.2 to R9, read only
  kDHL_AC1006,  // R10
  kDHL_AC1009,  // R11 and R12
  kDHL_AC1012,  // R13
  kDHL_AC1014,  // R14
  kDHL_AC1015,  // R2000
  kDHL_AC1018,  // R2004
  kDHL_AC1021,  // R2007
  kDHL_AC1024,  // R2010
  kDHL_AC1027,  // R2013
  kDHL_AC1032,  // R2018
  kDHL_Current = kDHL_AC1032
};

enum DuplicateRecordCloning : uint8_t {
  kDrcNotApplicable = 0,
  kDrcIgnore = 1,
  kDrcReplace = 2,
  kDrcXrefMangleName = 3,
  kDrcMangleName = 4,
  kDrcUnmangleName = 5
};

enum DeepCloneType : uint8_t {
  kDcCopy = 0,
  kDcExplode = 1,
  kDcBlock = 2,
  kDcXrefBind = 3,
  kDcSymTableMerge = 4,
  kDcInsert = 6,
  kDcWblock = 7,
  kDcObjects = 8
};

enum Intersect : uint8_t { kOnBothOperands = 0, kExtendThis = 1, kExtendArg = 2, kExtendBoth = 3 };

enum Visibility : uint8_t { kInvisible = 1, kVisible = 0 };

// Hundredths of a millimetre, or one of the negative codes.
enum LineWeight : int16_t {
  kLnWt000 = 0,
  kLnWt025 = 25,
  kLnWt211 = 211,
  kLnWtByLayer = -1,
  kLnWtByBlock = -2,
  kLnWtByLwDefault = -3
};

enum EntSaveAsType : uint8_t { kNoSave = 0, kSaveAsR12, kSaveAsR13, kSaveAsR14 };

}  // namespace GcDb

class GcDbHandle {
 public:
  constexpr GcDbHandle() = default;
  constexpr GcDbHandle(uint64_t value) : m_value(value) {}
  [[nodiscard]] constexpr bool isNull() const { return m_value == 0; }
  constexpr operator uint64_t() const { return m_value; }
  // Upper-case hexadecimal digits without leading zeros, zero-terminated; false when the buffer is too small.
  bool getIntoAsciiBuffer(GCHAR* buffer, int size) const;

 private:
  uint64_t m_value = 0;
};
