// What a DWG file of a version could not say of a drawing, object by object.
#pragma once

#include "host/db/core/savereport.h"
#include "host/dwg/file/plan.h"

namespace gc::dwg {

// Objects that go as proxies, and bodies that are bytes in a version whose modeller reads text.
void tellSaved(const WritePlan& plan, int version, GcDbSaveReport& report);

}  // namespace gc::dwg
