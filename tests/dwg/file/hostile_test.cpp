// Files made to do harm: every size, count and place of the containers set to what cannot be, sections that unpack to
// far more than they are. Reading ends with a status, tells what was wrong, and takes no more memory than it may.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "db/database.h"
#include "db/line.h"
#include "host/db/core/loadreport.h"
#include "host/db/core/store.h"
#include "host/dwg/bits/bitwriter.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dwg/file/objectmap.h"
#include "host/dwg/record/classmap.h"
#include "host/dwg/record/packrow.h"
#include "host/dwg/record/recordcodec.h"
#include "host/rx/file/file_view.h"
#include "tests/dwg/damage/peakmemory.h"
#include "tests/dwg/damage/repack.h"

using namespace gc::dwg;

namespace {

constexpr int kPaged[] = {kR2004, kR2010, kR2013, kR2018};
constexpr uint64_t kMegabyte = 1024 * 1024;

std::vector<uint8_t> drawingOf(int version, int lines = 20) {
  GcDbDatabase database;
  GcDbBlockTableRecord* block = nullptr;
  EXPECT_EQ(gcdbOpenObject(block, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  for (int i = 0; i < lines; ++i) {
    auto* line = new GcDbLine({double(i), 0, 0}, {double(i), 1.5, 1});
    EXPECT_EQ(block->appendGcDbEntity(line), Gcad::eOk);
    ignore(line->close());
  }
  ignore(block->close());
  std::vector<uint8_t> bytes;
  std::string message;
  EXPECT_EQ(writeBytes(database, version, bytes, message), Gcad::eOk) << message;
  return bytes;
}

size_t objectsIn(GcDbDatabase& database) {
  size_t count = 0;
  database.store().forEach([&](GcDbStub* stub) { count += stub->object != nullptr ? 1 : 0; });
  return count;
}

struct Outcome {
  Gcad::ErrorStatus status = Gcad::eOk;
  size_t objects = 0;
  uint64_t told = 0;
  uint64_t peak = 0;  // bytes
};

Outcome outcomeOf(const std::vector<uint8_t>& file) {
  Outcome outcome;
  outcome.peak = peakBytesOf([&] {
    GcDbDatabase back(false, true);
    outcome.status = read(back, {reinterpret_cast<const char*>(file.data()), file.size()});
    outcome.objects = objectsIn(back);
    outcome.told = back.loadReport().total();
  });
  return outcome;
}

// Refused with a status, or read: then either nothing is missing or it is told.
void expectRefusedOrTold(const std::vector<uint8_t>& file, size_t objects, const std::string& what) {
  const Outcome outcome = outcomeOf(file);
  EXPECT_TRUE(outcome.status == Gcad::eOk || outcome.status == Gcad::eBadDwgFile) << what;
  EXPECT_TRUE(outcome.status != Gcad::eOk || outcome.objects >= objects || outcome.told > 0)
      << what << ": " << outcome.objects << " of " << objects << " objects, and nothing is told";
  EXPECT_LT(outcome.peak, 64 * kMegabyte) << what;
}

// What sizes, counts and places are set to.
std::vector<uint32_t> wrongWords(uint32_t right) {
  return {0, 1, right - 1, right + 1, right * 2, 0x7400, 0x100001, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
}

}  // namespace

TEST(Hostile, EveryWordOfTheHiddenHeader) {
  for (const int version : kPaged) {
    const std::vector<uint8_t> whole = drawingOf(version);
    const size_t objects = outcomeOf(whole).objects;
    for (uint64_t at = 0; at + 4 <= r2004::kHeaderCrcAt; at += 4) {
      std::vector<uint8_t> plain(whole.begin() + r2004::kHeaderAt,
                                 whole.begin() + r2004::kHeaderAt + r2004::kHeaderSize);
      r2004::mask(plain);
      for (const uint32_t word : wrongWords(u32(plain, at))) {
        Repacker damaged(whole);
        damaged.changeHeader([&](std::vector<uint8_t>& bytes) { putAt(bytes, at, word); });
        expectRefusedOrTold(damaged.file(), objects,
                            "version " + std::to_string(version) + " header " + std::to_string(at));
      }
    }
  }
}

TEST(Hostile, EveryWordOfThePageMap) {
  for (const int version : kPaged) {
    const std::vector<uint8_t> whole = drawingOf(version);
    const size_t objects = outcomeOf(whole).objects;
    uint64_t size = 0;
    EXPECT_TRUE(Repacker(whole).changePageMap([&](std::vector<uint8_t>& bytes) { size = bytes.size(); }));
    ASSERT_GT(size, 80u);
    for (uint64_t at = 0; at < size; at += 4)
      for (const uint32_t word : {0u, 1u, 2u, 0x7400u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        Repacker damaged(whole);
        if (damaged.changePageMap([&](std::vector<uint8_t>& bytes) { putAt(bytes, at, word); }))
          expectRefusedOrTold(damaged.file(), objects,
                              "version " + std::to_string(version) + " page map " + std::to_string(at));
      }
  }
}

TEST(Hostile, EveryWordOfTheSectionMap) {
  size_t tried = 0;
  for (const int version : kPaged) {
    const std::vector<uint8_t> whole = drawingOf(version);
    const size_t objects = outcomeOf(whole).objects;
    const std::vector<uint8_t> map = Repacker(whole).sectionMap();
    ASSERT_GT(map.size(), 1000u);
    for (uint64_t at = 0; at < map.size(); at += 4) {
      if (u32(map, at) == 0 && at % 32 != 0) continue;  // the filling of names
      for (const uint32_t word : wrongWords(u32(map, at))) {
        Repacker damaged(whole);
        if (!damaged.changeSectionMap([&](std::vector<uint8_t>& bytes) { putAt(bytes, at, word); })) continue;
        ++tried;
        expectRefusedOrTold(damaged.file(), objects,
                            "version " + std::to_string(version) + " section map " + std::to_string(at));
      }
    }
  }
  EXPECT_GT(tried, 3000u);
}

// Every page once as one whose packed bytes end too early, tell of too much or copy from before their beginning.
TEST(Hostile, PackedBytesThatLie) {
  const std::vector<std::vector<uint8_t>> lies = {
      {},
      {0x11, 0, 0},
      {0x01, 'a', 'b', 'c', 'd', 0x20, 0, 0, 0, 0},
      {0x01, 'a', 'b', 'c', 'd', 0x4C, 0xFF, 0x11, 0, 0},
      {0x01, 'a', 'b', 'c', 'd', 0x18, 0, 0xFF, 0xFF, 0x11, 0, 0},
      std::vector<uint8_t>(60, 0),
      std::vector<uint8_t>(60, 0xFF),
  };
  for (const int version : kPaged) {
    const std::vector<uint8_t> whole = drawingOf(version);
    const size_t objects = outcomeOf(whole).objects;
    for (const char* section : {"AcDb:Header", "AcDb:Classes", "AcDb:Handles", "AcDb:AcDbObjects", "AcDb:Template"})
      for (const std::vector<uint8_t>& lie : lies) {
        Repacker damaged(whole);
        ASSERT_TRUE(damaged.putPacked(section, 0, lie)) << section;
        const size_t wanted = std::string(section) == "AcDb:Template" ? 0 : objects;
        expectRefusedOrTold(damaged.file(), wanted, "version " + std::to_string(version) + " " + section);
      }
  }
}

// A page of a hundred bytes that unpacks to a megabyte, told of once per page of the file.
TEST(Hostile, PagesThatUnpackToFarMoreThanTheyAre) {
  std::vector<uint8_t> bomb = {0x01, 'a', 'b', 'c', 'd', 0x20};
  bomb.resize(bomb.size() + 4110, 0);  // zeros that count 255 each
  bomb.insert(bomb.end(), {1, 0, 0, 0x11, 0, 0});
  for (const char* section : {"AcDb:AcDbObjects", "AcDb:Handles", "AcDb:Classes", "AcDb:Header"}) {
    const std::vector<uint8_t> whole = drawingOf(kR2018, 4000);
    Repacker damaged(whole);
    ASSERT_TRUE(damaged.putPacked("AcDb:AcDbObjects", 0, bomb));
    const uint64_t objects = damaged.describedAt("AcDb:AcDbObjects");
    const uint64_t at = damaged.describedAt(section);
    ASSERT_TRUE(damaged.changeSectionMap([&](std::vector<uint8_t>& map) {
      const uint32_t page = u32(map, objects + r2004::kDescriptionSize);
      const uint32_t pages = u32(map, at + 8);
      putAt(map, at, uint64_t{pages} * r2004::kMostPageSize);
      putAt(map, at + 12, r2004::kMostPageSize);
      for (uint32_t i = 0; i < pages; ++i) {
        const uint64_t entry = at + r2004::kDescriptionSize + uint64_t{i} * r2004::kPageEntrySize;
        putAt(map, entry, page);
        putAt(map, entry + 8, uint64_t{i} * r2004::kMostPageSize);
      }
    }));
    const Outcome outcome = outcomeOf(damaged.file());
    EXPECT_TRUE(outcome.status == Gcad::eOk || outcome.status == Gcad::eBadDwgFile) << section;
    EXPECT_GT(outcome.told, 0u) << section;
    EXPECT_LT(outcome.peak, 128 * kMegabyte) << section;
  }
}

// The smallest entries of an object map are two bytes; more of them than records have room for are not taken.
TEST(Hostile, AnObjectMapOfMoreEntriesThanTheFileHasRoomFor) {
  std::vector<uint8_t> map;
  for (int piece = 0; piece < 500; ++piece) {
    map.push_back(0x07);
    map.push_back(0xEE);
    map.resize(map.size() + 0x7EE, 0x01);
  }
  GcDbLoadReport report;
  const std::vector<MapEntry> entries = readObjectMap(map, mostRecordsIn(4000), report);
  EXPECT_EQ(entries.size(), 1000u);
  EXPECT_NE(GcDbLoadReport::describe(report.entries().back()).find("more objects than the file has room for"),
            std::string::npos);
}

// Thousands of references to handles that lie far apart take memory by their number, not by their distance.
TEST(Hostile, HandlesThatLieFarApart) {
  constexpr uint64_t kHandles = 100000;
  const uint64_t peak = peakBytesOf([] {
    GcDbDatabase database(false, true);
    for (uint64_t i = 1; i <= kHandles; ++i) ASSERT_NE(database.store().need(i * 40000), nullptr);
    for (uint64_t i = 1; i <= kHandles; ++i) {
      const GcDbStub* stub = database.store().find(i * 40000);
      ASSERT_NE(stub, nullptr);
      ASSERT_EQ(stub->handle, i * 40000);
      ASSERT_EQ(database.store().find(i * 40000 + 1), nullptr);
    }
    // What is filled in later finds a page of its own and what was there before.
    for (uint64_t i = 0; i < 1000; ++i) ASSERT_NE(database.store().need(40000 * 7 + i), nullptr);
    ASSERT_EQ(database.store().size(), kHandles + 999);
  });
  EXPECT_LT(peak, 64 * kMegabyte);
}

// Classes are found by number and by name without a walk over all of them.
TEST(Hostile, SixtyThousandClasses) {
  ClassMap classes;
  for (uint32_t i = 0; i < 60000; ++i) {
    ClassMap::FileClass each;
    each.number = kFirstFileClass + (i * 7919) % 60000;
    for (const char c : "CLASS_" + std::to_string(i)) each.dxfName.push_back(static_cast<GCHAR>(c));
    classes.add(std::move(each));
  }
  ASSERT_NE(classes.fileClass(kFirstFileClass), nullptr);
  EXPECT_EQ(classes.fileClass(kFirstFileClass)->dxfName, GC_T("CLASS_0"));
  ASSERT_NE(classes.findByDxfName(GC_T("class_59999")), nullptr);
  EXPECT_EQ(classes.findByDxfName(GC_T("class_59999"))->number, kFirstFileClass + (59999u * 7919) % 60000);
  EXPECT_EQ(classes.findByDxfName(GC_T("class_60000")), nullptr);
  EXPECT_EQ(classes.fileClass(kFirstFileClass + 60000), nullptr);
}

// Records of other programs, one of each type: the seeds of the fuzzer of records, whose first bytes say how to read.
TEST(Hostile, RecordsThatFuzzersFound) {
  GcDbDatabase database;
  std::set<uint32_t> types;
  for (const auto& each : std::filesystem::directory_iterator(GC_SOURCE_DIR "/tests/corpus/dwg_record")) {
    gc::FileView file;
    ASSERT_TRUE(file.open(each.path().string()).ok());
    const std::string_view bytes = file.bytes();
    ASSERT_GT(bytes.size(), 3u) << each.path();
    RecordContext context(database);
    context.version = kR13 + static_cast<uint8_t>(bytes[0]) % 8;
    const std::vector<uint8_t> body(bytes.begin() + 3, bytes.end());
    const uint64_t handleBits = static_cast<uint8_t>(bytes[1]) | static_cast<uint64_t>(static_cast<uint8_t>(bytes[2]))
                                                                     << 8;
    const ReadRecord whole = readRecord(context, body, handleBits);
    EXPECT_NE(whole.object, nullptr) << each.path();
    types.insert(whole.type);
    for (size_t bit = 0; bit < body.size() * 8; bit += 3) {
      std::vector<uint8_t> damaged = body;
      damaged[bit / 8] ^= static_cast<uint8_t>(1u << bit % 8);
      const ReadRecord read = readRecord(context, damaged, handleBits);
      EXPECT_TRUE(read.object != nullptr || !read.trouble.empty()) << each.path() << " bit " << bit;
    }
  }
  EXPECT_GT(types.size(), 30u);
}

// Seeds of the fuzzers and what they found: read, or refused.
TEST(Hostile, FilesThatFuzzersFound) {
  size_t files = 0;
  for (const auto& each : std::filesystem::directory_iterator(GC_SOURCE_DIR "/tests/corpus/dwg")) {
    gc::FileView file;
    ASSERT_TRUE(file.open(each.path().string()).ok());
    const std::string_view bytes = file.bytes();
    const Outcome outcome = outcomeOf({bytes.begin(), bytes.end()});
    EXPECT_TRUE(outcome.status == Gcad::eOk || outcome.status == Gcad::eBadDwgFile) << each.path();
    EXPECT_LT(outcome.peak, 64 * kMegabyte) << each.path();
    ++files;
  }
  EXPECT_GT(files, 4u);
}
