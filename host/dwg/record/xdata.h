// Extended data of an object: its applications one after the other, each with its size, closed by a zero size.
#pragma once

#include "host/db/describe/group.h"
#include "host/dwg/record/recordio.h"

namespace gc::dwg {

// What cannot be read of one application (unknown codes, wrong lengths) is dropped up to its end; `damaged` says so.
// `size`: of the first application's data, which is read already.
void readXData(RecordIn& record, unsigned size, GcDbGroupList& xdata, bool& damaged);
void writeXData(RecordOut& record, const GcDbGroupList& xdata);

}  // namespace gc::dwg
