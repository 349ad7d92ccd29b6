// How the three streams lie behind each other in the bits of a record (or a section that is built like one).
#pragma once

#include "host/dwg/record/recordio.h"

namespace gc::dwg {

// Cuts the bits into their streams: references begin at `dataEnd`; before them, from AC1021 on, a bit that says
// whether there are texts, the texts' size, the texts. `record.data` stays where it is and ends where the texts begin.
void splitStreams(RecordIn& record, std::span<const uint8_t> body, uint64_t dataEnd);

// Appends texts, their size and the bit to the data.
void finishStreams(RecordOut& record);

}  // namespace gc::dwg
