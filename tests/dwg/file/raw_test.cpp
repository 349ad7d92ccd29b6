// What a file says of itself, read from its bytes without the loader: numbers of classes, places and ends of records,
// owned handles, the second header. A reader that believes these finds every object.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "db/database.h"
#include "db/line.h"
#include "host/db/core/loadreport.h"
#include "host/dwg/bits/bitreader.h"
#include "host/dwg/bits/crc.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/classsection.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dwg/file/objectmap.h"
#include "host/dwg/file/sectionframe.h"
#include "host/dwg/file/sections.h"
#include "host/dwg/record/recordcodec.h"

using namespace gc::dwg;

namespace {

constexpr int kWritten[] = {kR2000, kR2004, kR2010, kR2013, kR2018};
constexpr int kLines = 40;

struct Raw {
  std::vector<uint8_t> bytes;
  Sections sections;
  std::vector<MapEntry> map;
  GcDbLoadReport report;
  uint64_t modelSpace = 0;
  uint64_t handseed = 0;
  std::vector<uint64_t> lines;  // handles of those that are not erased

  explicit Raw(int version) {
    GcDbDatabase database;
    GcDbBlockTableRecord* block = nullptr;
    EXPECT_EQ(gcdbOpenObject(block, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
    for (int i = 0; i < kLines; ++i) {
      auto* line = new GcDbLine({double(i), 0, 0}, {double(i), 1, 0});
      EXPECT_EQ(block->appendGcDbEntity(line), Gcad::eOk);
      if (i % 5 == 3)
        ignore(line->erase());
      else
        lines.push_back(line->handle());
      ignore(line->close());
    }
    ignore(block->close());
    modelSpace = database.modelSpaceId().handle();
    std::string message;
    EXPECT_EQ(writeBytes(database, version, bytes, message), Gcad::eOk) << message;
    handseed = database.handseed() + 1;  // the file has the record of what goes beside the others as well
    sections.version = version;
    EXPECT_TRUE(version < kR2004 ? openR2000(bytes, sections, report) : openR2004(bytes, sections, report));
    map = readObjectMap(sections.handles, SIZE_MAX, report);
  }

  // The record of an entry; its end behind the checksum in `end`.
  RecordBits record(const MapEntry& entry, uint64_t& end) const {
    const auto rest = sections.objects.subspan(entry.offset);
    BitReader in(rest);
    const uint64_t size = in.ms();
    RecordBits bits;
    if (sections.version >= kR2010) bits.handleBits = in.mc();
    const uint64_t at = in.position() / 8;
    bits.body = rest.subspan(at, size);
    end = entry.offset + at + size + 2;
    EXPECT_EQ(crc16(rest.first(at + size), kCrcSeed), u16(rest, at + size)) << entry.handle;
    return bits;
  }
};

}  // namespace

// One behind the other, without gaps, each handle once and in order, all below the next free one.
TEST(Raw, RecordsFillTheirSection) {
  for (const int version : kWritten) {
    const Raw raw(version);
    EXPECT_TRUE(raw.report.isClean()) << version;
    std::map<uint64_t, uint64_t> ends;  // by offset
    for (size_t i = 0; i < raw.map.size(); ++i) {
      EXPECT_TRUE(i == 0 || raw.map[i].handle > raw.map[i - 1].handle) << i;
      EXPECT_LE(raw.map[i].handle, raw.handseed);
      uint64_t end = 0;
      const RecordBits bits = raw.record(raw.map[i], end);
      EXPECT_NE(typeOfRecord(version, bits.body), 0u);
      ends[raw.map[i].offset] = end;
    }
    ASSERT_EQ(ends.size(), raw.map.size());
    for (auto at = ends.begin(); std::next(at) != ends.end(); ++at) EXPECT_EQ(at->second, std::next(at)->first);
    if (version >= kR2004) {
      EXPECT_EQ(ends.begin()->first, 4u) << "behind the number the section begins with";
      EXPECT_EQ(u32(raw.sections.objects, 0), 0x0DCAu);
      EXPECT_EQ(ends.rbegin()->second, raw.sections.objects.size());
    }
  }
}

// Numbers from 500 on without gaps; each class counts its records, and no record has a number that is not described.
TEST(Raw, ClassesAreNumberedWithoutGapsAndCountTheirRecords) {
  for (const int version : kWritten) {
    Raw raw(version);
    GcDbDatabase other;
    RecordContext context(other);
    context.version = version;
    readClasses(raw.sections, context, raw.report);
    EXPECT_TRUE(raw.report.isClean()) << version;
    std::map<uint32_t, int> records;
    for (const MapEntry& entry : raw.map) {
      uint64_t end = 0;
      ++records[typeOfRecord(version, raw.record(entry, end).body)];
    }
    const auto& classes = context.classes.fileClasses();
    ASSERT_GE(classes.size(), 2u) << version;
    for (size_t i = 0; i < classes.size(); ++i) {
      EXPECT_EQ(classes[i].number, kFirstFileClass + i) << version;
      EXPECT_FALSE(classes[i].dxfName.empty());
      EXPECT_FALSE(classes[i].className.empty());
      const int counted = version >= kR2004 ? classes[i].instanceCount : records[classes[i].number];
      EXPECT_EQ(counted, records[classes[i].number]) << version << " class " << i;
    }
    for (const auto& [type, count] : records)
      EXPECT_TRUE(type < kFirstFileClass || type < kFirstFileClass + classes.size()) << type << " in " << count;
  }
}

// From AC1018 on a block lists what it owns, by handles of hard owners; before, it names the ends of a chain.
TEST(Raw, BlocksListWhatTheyOwn) {
  for (const int version : kWritten) {
    const Raw raw(version);
    GcDbDatabase other(false, true);
    RecordContext context(other);
    context.version = version;
    std::map<uint64_t, RecordLinks> links;
    for (const MapEntry& entry : raw.map) {
      uint64_t end = 0;
      const RecordBits bits = raw.record(entry, end);
      const uint32_t type = typeOfRecord(version, bits.body);
      if (type != 0x31 && type != 0x13) continue;  // blocks, lines
      ReadRecord read = readRecord(context, bits.body, bits.handleBits);
      ASSERT_NE(read.object, nullptr) << read.trouble;
      EXPECT_EQ(read.handle, entry.handle);
      links[entry.handle] = std::move(read.links);
    }
    const RecordLinks& space = links[raw.modelSpace];
    std::vector<uint64_t> owned;
    if (version >= kR2004) {
      for (const GcDbObjectId id : space.parts) owned.push_back(id.handle());
    } else {
      for (uint64_t at = space.firstPart; at != 0 && owned.size() <= raw.lines.size();) {
        owned.push_back(at);
        const RecordLinks& here = links[at];
        EXPECT_EQ(here.mode, RecordLinks::Mode::ModelSpace);
        at = at == space.lastPart ? 0 : here.consecutive ? at + 1 : here.next;
      }
      EXPECT_EQ(owned.back(), space.lastPart);
    }
    EXPECT_EQ(owned, raw.lines) << version;
  }
}

// The second header repeats the places of the first one and names the next free handle.
TEST(Raw, TheSecondHeaderRepeatsTheFirst) {
  const Raw raw(kR2000);
  const auto at = std::search(raw.bytes.begin(), raw.bytes.end(), kSecondHeaderBegin.begin(), kSecondHeaderBegin.end());
  ASSERT_NE(at, raw.bytes.end());
  const auto from = static_cast<uint64_t>(at - raw.bytes.begin());
  BitReader in(std::span<const uint8_t>(raw.bytes).subspan(from + 16));
  in.rl();
  EXPECT_EQ(static_cast<uint64_t>(in.bl()), from);
  const std::string version = "AC1015";
  for (const char c : version) EXPECT_EQ(in.rc(), static_cast<uint8_t>(c));
  for (int i = 0; i < 7; ++i) in.rc();
  EXPECT_EQ(in.bs(), u16(raw.bytes, 17) & 0xFF);
  EXPECT_EQ(in.rs(), u16(raw.bytes, 19));
  const int sections = in.bs();
  EXPECT_EQ(static_cast<uint32_t>(sections), u32(raw.bytes, 21));
  for (int i = 0; i < sections; ++i) {
    const uint64_t locator = 25 + 9 * static_cast<uint64_t>(i);
    EXPECT_EQ(in.rc(), raw.bytes[locator]);
    EXPECT_EQ(static_cast<uint32_t>(in.bl()), u32(raw.bytes, locator + 1)) << "section " << i;
    EXPECT_EQ(static_cast<uint32_t>(in.bl()), u32(raw.bytes, locator + 5)) << "section " << i;
  }
  EXPECT_EQ(in.bs(), 14);
  const unsigned count = in.rc();
  EXPECT_EQ(in.rc(), 0u);
  uint64_t seed = 0;
  for (unsigned i = 0; i < count; ++i) seed = seed << 8 | in.rc();
  EXPECT_GT(seed, raw.map.back().handle);
  EXPECT_FALSE(in.failed());
}
