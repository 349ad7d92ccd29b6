// What a drawing has and the version of its file does not know, for the drawing's record of round-trip data.
#pragma once

#include "host/db/core/roundtrip.h"

namespace gc::dxf {

// Settings and properties of the drawing, and fields of objects. Not for R12, which has no objects.
[[nodiscard]] GcDbRoundTrip collectYoung(const GcDbDatabase& database, int version);

}  // namespace gc::dxf
