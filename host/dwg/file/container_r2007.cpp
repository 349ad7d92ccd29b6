#include "host/dwg/file/sections.h"

namespace gc::dwg {

bool openR2007(std::span<const uint8_t>, Sections&, GcDbLoadReport& report) {
  note(report, GcDbLoadAction::Missing, 0, 0, "drawings of AC1021 are not read");
  return false;
}

}  // namespace gc::dwg
