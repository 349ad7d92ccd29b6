// Symbol tables as objects: the references to their records.
#pragma once

#include "db/symboltable.h"
#include "host/dwg/record/recordio.h"

namespace gc::dwg {

// The records' handles go to record.links.parts; the table gets them when they are all there.
void readTable(RecordIn& record, const GcDbSymbolTable& table);
void writeTable(RecordOut& record, const GcDbSymbolTable& table);

}  // namespace gc::dwg
