// Records kept bit for bit: objects of classes nobody knows here.
#pragma once

#include "host/dwg/record/recordio.h"

struct GcDbZombieData;

namespace gc::dwg {

// Of a zombie; null for other objects.
[[nodiscard]] GcDbZombieData* zombieDataOf(const GcDbObject& object);

// Keeps what is left of the record's streams. The bits are data, then (from AC1021 on) texts, their size and the bit
// that says they are there, as in the record; references are kept as ids with their codes.
void keepRaw(RecordIn& record, GcDbZombieData& data);
// Puts it back. Bits of one family of versions (R13 and R14; R2000 and R2004; R2007 on) mean nothing in another: the
// caller writes those objects as proxies.
void putRaw(RecordOut& record, const GcDbZombieData& data);

// Whether bits kept from one version can stand in a file of another.
[[nodiscard]] bool rawFits(int keptVersion, int fileVersion);

}  // namespace gc::dwg
