// Sections of fixed shape that hold no objects.
#include <cmath>

#include "host/db/core/dwgversion.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/bytewriter.h"
#include "host/dwg/file/contents.h"
#include "host/dwg/file/sectionframe.h"

namespace gc::dwg {

namespace {

constexpr double kMillisecondsPerDay = 86400000.0;

const GcDbDwgSection* kept(const RecordContext& context, const char* name, bool sameTexts) {
  for (const GcDbDwgSection& each : context.database.fileParts().dwgSections) {
    if (each.name != name) continue;
    const bool fits = !sameTexts || (each.version >= kR2007) == (context.version >= kR2007);
    return fits ? &each : nullptr;
  }
  return nullptr;
}

// Days and milliseconds of a time the header has.
void putTime(ByteWriter& out, const RecordContext& context, GcView name) {
  const double value = context.database.header().real(name);
  const bool usable = value >= 0 && value < 1e9;
  const double days = usable ? std::floor(value) : 0;
  out.u32(static_cast<uint32_t>(days));
  out.u32(usable ? static_cast<uint32_t>((value - days) * kMillisecondsPerDay + 0.5) : 0);
}

}  // namespace

// The places of the pictures count from the beginning of the file: they move with the section.
std::vector<uint8_t> previewSection(const RecordContext& context, uint64_t address) {
  constexpr uint64_t kCountAt = 20;
  constexpr uint64_t kEntrySize = 9;
  ByteWriter out;
  if (const GcDbDwgSection* old = kept(context, "AcDb:Preview", false);
      old != nullptr && old->bytes.size() > kCountAt) {
    out.bytes = old->bytes;
    const unsigned count = out.bytes[kCountAt];
    uint32_t least = UINT32_MAX;
    for (unsigned i = 0; i < count; ++i) {
      const uint32_t at = le<uint32_t>(out.bytes, kCountAt + 1 + i * kEntrySize + 1);
      least = at < least ? at : least;
    }
    const uint64_t first = kCountAt + 1 + count * kEntrySize;
    if (holds(out.bytes, 0, first)) {
      for (unsigned i = 0; i < count; ++i) {
        const uint64_t place = kCountAt + 1 + i * kEntrySize + 1;
        out.patch(place, static_cast<uint32_t>(le<uint32_t>(out.bytes, place) - least + first + address));
      }
      return std::move(out.bytes);
    }
    out.bytes.clear();
  }
  out.append(kPreviewBegin);
  out.u32(1);
  out.u8(0);
  out.append(closing(kPreviewBegin));
  return std::move(out.bytes);
}

std::vector<uint8_t> summarySection(const RecordContext& context) {
  if (const GcDbDwgSection* old = kept(context, "AcDb:SummaryInfo", true)) return old->bytes;
  constexpr int kTexts = 8;
  ByteWriter out;
  for (int i = 0; i < kTexts; ++i) {  // empty texts with their closing zero
    out.u16(1);
    if (context.version >= kR2007)
      out.u16(0);
    else
      out.u8(0);
  }
  putTime(out, context, GC_T("$TDINDWG"));
  putTime(out, context, GC_T("$TDCREATE"));
  putTime(out, context, GC_T("$TDUPDATE"));
  out.u16(0);
  out.u32(0);
  out.u32(0);
  return std::move(out.bytes);
}

std::vector<uint8_t> auxiliarySection(const RecordContext& context, const FileContents& contents) {
  const auto number = static_cast<unsigned>(gcdbDwgNumberOfVersion(context.version));
  ByteWriter out;
  out.u8(0xFF);
  out.u8(0x77);
  out.u8(0x01);
  out.u16(number);
  out.u16(0);
  out.u32(1);  // saves
  out.u32(0xFFFFFFFF);
  out.u16(1);
  out.u16(0);
  out.u32(0);
  for (int i = 0; i < 2; ++i) {
    out.u16(number);
    out.u16(0);
  }
  for (const unsigned value : {5u, 0x893u, 5u, 0x893u, 0u, 1u}) out.u16(value);
  out.zeros(5 * 4);
  putTime(out, context, GC_T("$TDCREATE"));
  putTime(out, context, GC_T("$TDUPDATE"));
  out.u32(contents.handseed <= 0x7FFFFFFF ? static_cast<uint32_t>(contents.handseed) : 0xFFFFFFFF);
  out.u32(0);  // how long a plot took
  out.u16(0);
  out.u16(1);
  out.zeros(3 * 4);
  out.u32(1);
  out.zeros(2 * 4);
  if (context.version >= kR2004) out.zeros(2 * 4);
  if (context.version >= kR2018) out.zeros(3 * 2);
  return std::move(out.bytes);
}

std::vector<uint8_t> freeSpaceSection(const RecordContext& context, const FileContents& contents, uint32_t objectsAt) {
  ByteWriter out;
  const auto count = static_cast<uint32_t>(contents.map.size());
  const bool isWide = context.version >= kR2010;
  out.u32(0);
  if (isWide) out.u32(0);
  out.u32(count);
  if (isWide) out.u32(0);
  putTime(out, context, GC_T("$TDUPDATE"));
  if (!isWide) out.u32(objectsAt);
  out.u8(4);
  for (const uint32_t value : {0x32u, 0x64u, 0x200u, 0xFFFFFFFFu}) {
    out.u64(value);
    if (isWide) out.u64(0);
  }
  return std::move(out.bytes);
}

std::vector<uint8_t> templateSection(const RecordContext& context) {
  ByteWriter out;
  out.u16(0);
  out.u16(static_cast<unsigned>(context.database.header().integer(GC_T("$MEASUREMENT"), 1)));
  return std::move(out.bytes);
}

}  // namespace gc::dwg
