// The flat file of R13 to R2000: six bytes of version, the places of up to six sections, everything else where those
// and the object map say.
#include "host/dwg/bits/crc.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/sections.h"

namespace gc::dwg {

namespace {

constexpr uint64_t kMaintenanceAt = 11;
constexpr uint64_t kPreviewAt = 13;
constexpr uint64_t kCodePageAt = 19;
constexpr uint64_t kCountAt = 21;
constexpr uint64_t kFirstLocator = 25;
constexpr uint64_t kLocatorSize = 9;
constexpr uint32_t kMostSections = 64;

enum SectionNumber : uint8_t { kHeader = 0, kClasses = 1, kObjectMap = 2, kSecond = 3, kTemplate = 4, kAuxiliary = 5 };

// The checksum of the locators is mixed with a number that depends on how many there are.
uint16_t locatorMask(uint32_t count) {
  switch (count) {
    case 3: return 0xA598;
    case 4: return 0x8101;
    case 5: return 0x3CC4;
    case 6: return 0x8461;
    default: return 0;
  }
}

void addOther(Sections& sections, const char* name, std::span<const uint8_t> bytes) {
  if (!bytes.empty()) sections.others.push_back({name, bytes});
}

// The preview has its own size behind a sentinel.
std::span<const uint8_t> previewOf(std::span<const uint8_t> file) {
  constexpr uint64_t kSentinel = 16;
  const uint64_t at = u32(file, kPreviewAt);
  if (at == 0 || !holds(file, at, kSentinel + 4)) return {};
  return part(file, at, kSentinel + 4 + u32(file, at + kSentinel) + kSentinel);
}

}  // namespace

bool openR2000(std::span<const uint8_t> file, Sections& sections, GcDbLoadReport& report) {
  if (!holds(file, 0, kFirstLocator)) return false;
  sections.maintenance = file[kMaintenanceAt];
  sections.codePageNumber = u16(file, kCodePageAt);
  const uint32_t count = u32(file, kCountAt);
  if (count < 3 || count > kMostSections || !holds(file, kFirstLocator, count * kLocatorSize + 2)) {
    note(report, GcDbLoadAction::Missing, kCountAt, 0, "the list of sections is damaged");
    return false;
  }
  const uint64_t end = kFirstLocator + count * kLocatorSize;
  const uint16_t crc = static_cast<uint16_t>(crc16(part(file, 0, end), 0) ^ locatorMask(count));
  if (locatorMask(count) != 0 && crc != u16(file, end))
    note(report, GcDbLoadAction::Noted, end, 0, "the checksum of the list of sections is wrong");
  for (uint32_t i = 0; i < count; ++i) {
    const uint64_t at = kFirstLocator + i * kLocatorSize;
    const uint32_t offset = u32(file, at + 1);
    const uint32_t size = u32(file, at + 5);
    const auto bytes = part(file, offset, size);
    if (bytes.size() < size)
      note(report, GcDbLoadAction::Noted, at, 0, "section " + std::to_string(file[at]) + " reaches past the end");
    switch (file[at]) {
      case kHeader: sections.header = bytes; break;
      case kClasses: sections.classes = bytes; break;
      case kObjectMap: sections.handles = bytes; break;
      case kSecond: sections.secondHeader = bytes; break;
      case kTemplate: addOther(sections, "AcDb:Template", bytes); break;
      case kAuxiliary: addOther(sections, "AcDb:AuxHeader", bytes); break;
      default: break;
    }
  }
  addOther(sections, "AcDb:Preview", previewOf(file));
  sections.objects = file;
  return true;
}

}  // namespace gc::dwg
