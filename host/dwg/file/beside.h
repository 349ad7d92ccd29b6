// What a drawing has and DWG records of the version have no place for: it goes beside them, into the drawing's record of
// round-trip data (host/db/core/roundtrip.h).
#pragma once

#include "host/db/core/roundtrip.h"
#include "host/db/core/savenotes.h"
#include "host/dwg/file/plan.h"

namespace gc::dwg {

// `notes` are told of each object of which that is so, and of those that the version itself cannot say all of.
[[nodiscard]] GcDbRoundTrip collectBeside(RecordContext& context, const WritePlan& plan, SaveNotes& notes);

// The DXF name of an object, whatever form its record has.
GcView typeName(const GcDbObject& object);

}  // namespace gc::dwg
