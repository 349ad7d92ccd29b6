// The numbers by which DWG files name versions.
#pragma once

#include "host/dwg/record/packrow.h"

namespace gc::dwg {

// The number programs write of the version they save (0x17: AC1015).
constexpr int dwgNumberOfVersion(int version) {
  switch (version) {
    case kR13: return 0x13;
    case kR14: return 0x15;
    case kR2000: return 0x17;
    case kR2004: return 0x19;
    case kR2007: return 0x1B;
    case kR2010: return 0x1D;
    case kR2013: return 0x1F;
    default: return 0x21;
  }
}

// 0 for a number no version has. Even numbers are those of releases before the final one.
constexpr int versionOfDwgNumber(int number) {
  if (number < 0x12 || number > 0x21) return 0;
  if (number <= 0x13) return kR13;
  if (number <= 0x15) return kR14;
  if (number <= 0x17) return kR2000;
  if (number <= 0x19) return kR2004;
  if (number <= 0x1B) return kR2007;
  if (number <= 0x1D) return kR2010;
  return number <= 0x1F ? kR2013 : kR2018;
}

}  // namespace gc::dwg
