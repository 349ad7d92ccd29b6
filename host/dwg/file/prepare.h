// What a drawing must hold so that a file can say all of it, made before it is written.
#pragma once

#include "db/database.h"

namespace gc::dwg {

// Applications named in extended data are registered: records name them by their table's record. Styles of multileaders
// get the mark that tells which form their records before AC1024 have, where they need it. Sequences of parts
// (vertices, attributes) without an end get one.
void prepareToWrite(GcDbDatabase& database, int version);

}  // namespace gc::dwg
