#include "host/dwg/record/streams.h"

namespace gc::dwg {

void splitStreams(RecordIn& record, std::span<const uint8_t> body, uint64_t dataEnd) {
  record.handles = BitReader(body, dataEnd, body.size() * 8, record.behind);
  record.data.setEnd(dataEnd);
  if (record.version() < kR2007 || dataEnd == 0) return;
  uint64_t end = dataEnd - 1;
  record.data.setEnd(end);
  record.hasTexts = BitReader(body, end, dataEnd, record.behind).b();
  if (!record.hasTexts) return;
  constexpr uint64_t kSizeBits = 16;
  if (end < 2 * kSizeBits) {
    record.fail();
    return;
  }
  end -= kSizeBits;
  uint64_t size = BitReader(body, end, end + kSizeBits, record.behind).rs();
  if ((size & 0x8000) != 0) {
    end -= kSizeBits;
    size = (size & 0x7FFF) | uint64_t{BitReader(body, end, end + kSizeBits, record.behind).rs()} << 15;
  }
  if (size > end) {
    record.fail();
    return;
  }
  record.texts = BitReader(body, end - size, end, record.behind);
  record.data.setEnd(end - size);
}

void finishStreams(RecordOut& record) {
  if (record.version() < kR2007) return;
  if (record.isRaw) {
    record.data.b(record.rawTexts);
    return;
  }
  if (record.hasTexts) {
    const uint64_t size = record.texts.position();
    record.data.append(record.texts);
    if (size >= 0x8000) record.data.rs(static_cast<unsigned>(size >> 15));
    record.data.rs(static_cast<unsigned>(size & 0x7FFF) | (size >= 0x8000 ? 0x8000u : 0u));
  }
  record.data.b(record.hasTexts);
}

}  // namespace gc::dwg
