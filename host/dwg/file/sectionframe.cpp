#include "host/dwg/file/sectionframe.h"

#include <algorithm>

#include "host/dwg/bits/crc.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/record/streams.h"

namespace gc::dwg {

namespace {

// Later releases of AC1024 on give the size in two words.
bool hasLongSize(int version, int maintenance) { return version >= kR2018 || (version >= kR2010 && maintenance > 3); }

}  // namespace

bool openFrame(const Sections& sections, std::span<const uint8_t> bytes, const Sentinel& begin, const char* name,
               RecordIn& record, GcDbLoadReport& report) {
  constexpr uint64_t kSizeAt = 16;
  if (!holds(bytes, 0, kSizeAt + 4)) {
    note(report, GcDbLoadAction::Missing, 0, 0, std::string("there is no ") + name);
    return false;
  }
  if (!std::equal(begin.begin(), begin.end(), bytes.begin()))
    note(report, GcDbLoadAction::Noted, 0, 0, std::string("the mark before the ") + name + " is missing");
  const uint32_t size = u32(bytes, kSizeAt);
  const uint64_t sizeWords = hasLongSize(sections.version, sections.maintenance) ? 8 : 4;
  const uint64_t contentAt = kSizeAt + sizeWords;
  const auto content = part(bytes, contentAt, size);
  if (content.size() < size)
    note(report, GcDbLoadAction::Missing, kSizeAt, 0, std::string("the ") + name + " end too early");
  else if (holds(bytes, contentAt + size, 2) &&
           crc16(bytes.subspan(kSizeAt, sizeWords + size), kCrcSeed) != u16(bytes, contentAt + size))
    note(report, GcDbLoadAction::Noted, kSizeAt, 0, std::string("the checksum of the ") + name + " is wrong");
  record.data = BitReader(content);
  if (record.version() < kR2007) {
    record.handles = record.data;
    return true;
  }
  const uint64_t dataEnd = record.data.rl();
  if (dataEnd > content.size() * 8) {
    note(report, GcDbLoadAction::Missing, kSizeAt, 0, std::string("the sizes of the ") + name + " are wrong");
    return false;
  }
  splitStreams(record, content, dataEnd);
  return !record.failed();
}

std::vector<uint8_t> closeFrame(const Sentinel& begin, RecordOut& record) {
  BitWriter content;
  if (record.version() >= kR2007) {
    finishStreams(record);
    content.rl(static_cast<uint32_t>(record.data.position()) + 32);
  }
  content.append(record.data);
  content.append(record.handles);
  const std::vector<uint8_t> body = content.take();
  std::vector<uint8_t> out(begin.begin(), begin.end());
  const auto put32 = [&](uint32_t value) {
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<uint8_t>(value >> (8 * i)));
  };
  put32(static_cast<uint32_t>(body.size()));
  if (hasLongSize(record.version(), maintenanceToWrite(record.version()))) put32(0);
  out.insert(out.end(), body.begin(), body.end());
  const uint16_t crc = crc16(std::span<const uint8_t>(out).subspan(begin.size()), kCrcSeed);
  out.push_back(static_cast<uint8_t>(crc));
  out.push_back(static_cast<uint8_t>(crc >> 8));
  const Sentinel end = closing(begin);
  out.insert(out.end(), end.begin(), end.end());
  return out;
}

}  // namespace gc::dwg
