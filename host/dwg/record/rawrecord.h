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

// A zombie is written as it was only into a file of the version it came from. Into others it goes as a proxy: the
// number of its class, the version of its bits, the bits. One that was read from groups has its groups instead of bits.
[[nodiscard]] bool isProxied(const GcDbZombieData& data, int fileVersion);
void putProxy(RecordOut& record, const GcDbZombieData& data, uint32_t classNumber);
// Takes what putProxy (or another program) put; false, and the streams where they were, when it is not understood:
// the record is then kept as the proxy it is.
bool takeProxy(RecordIn& record, GcDbZombieData& data, uint32_t& classNumber);

}  // namespace gc::dwg
