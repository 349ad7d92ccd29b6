// Whole files: parts in memory and, where they are at hand, drawings that other programs wrote.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>

#include "db/database.h"
#include "db/line.h"
#include "db/zombie.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/db/core/loadreport.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/core/store.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dwg/file/lz.h"
#include "host/dwg/file/nearlysorted.h"
#include "host/dwg/file/objectloader.h"
#include "host/dwg/file/objectmap.h"
#include "host/dwg/file/sectionframe.h"
#include "host/dwg/record/packrow.h"
#include "host/rx/file/file_view.h"
#include "host/rx/view.h"

using namespace gc::dwg;
namespace fs = std::filesystem;

namespace {

constexpr int kWritten[] = {kR2000, kR2004, kR2010, kR2013, kR2018};

std::vector<std::string> drawings() {
  std::vector<std::string> found;
  const char* given = std::getenv("GC_DRAWINGS");
  for (const fs::path& folder :
       {fs::path(given != nullptr ? given : ""), fs::path(GC_SOURCE_DIR) / "../shared/drawings"}) {
    if (folder.empty() || !fs::is_directory(folder)) continue;
    for (const auto& entry : fs::directory_iterator(folder))
      if (entry.path().extension() == ".dwg") found.push_back(entry.path().string());
    break;
  }
  return found;
}

std::string_view viewOf(const std::vector<uint8_t>& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string reportOf(GcDbDatabase& database) {
  std::string all;
  for (const GcDbLoadEntry& entry : database.loadReport().entries()) all += GcDbLoadReport::describe(entry) + "\n";
  return all;
}

// What an object is, whichever database it is in: class (or the class a zombie stands for), owner, common properties.
std::map<uint64_t, std::string> contentOf(GcDbDatabase& database) {
  std::map<uint64_t, std::string> all;
  database.store().forEach([&](GcDbStub* stub) {
    if (stub->object == nullptr || stub->erased) return;
    std::string text = toUtf8(view(stub->object->isA()->name()));
    const GcDbZombieData* raw = nullptr;
    if (const auto* zombie = GcDbZombieEntity::cast(stub->object)) raw = &zombie->data();
    if (const auto* zombie = GcDbZombieObject::cast(stub->object)) raw = &zombie->data();
    if (raw != nullptr) {
      text += " " + toUtf8(view(raw->dxfName)) + " " + std::to_string(raw->bitCount) + ":";
      for (const uint8_t byte : raw->bits) text += std::to_string(byte) + ",";
    }
    const GcDbObjectId owner = stub->object->ownerId();
    text += " of " + std::to_string(owner.isValid() ? uint64_t(owner.handle()) : 0);
    if (const auto* record = GcDbSymbolTableRecord::cast(stub->object)) text += " " + toUtf8(view(record->getName()));
    if (const auto* entity = GcDbEntity::cast(stub->object))
      text += " layer " + std::to_string(uint64_t(entity->layerId().handle())) + " color " +
              std::to_string(entity->color().bits());
    all[stub->handle] = text;
  });
  return all;
}

void expectSame(GcDbDatabase& first, GcDbDatabase& second, const std::string& what, bool colorsByIndex) {
  auto a = contentOf(first);
  auto b = contentOf(second);
  for (const auto& [handle, text] : a) {
    const auto at = b.find(handle);
    ASSERT_NE(at, b.end()) << what << ": handle " << std::hex << handle << " is lost: " << text;
    if (colorsByIndex) continue;
    ASSERT_EQ(at->second, text) << what << ": handle " << std::hex << handle;
  }
}

}  // namespace

TEST(Lz, WhatIsPackedUnpacks) {
  std::mt19937 rng(3);
  for (int round = 0; round < 300; ++round) {
    std::vector<uint8_t> bytes(16 + rng() % 0x7400);
    const unsigned range = 1u << (rng() % 9);
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(rng() % (range == 256 ? 256 : range + 1));
    if (round % 3 == 0) bytes.resize(0x7400);
    if (round % 4 == 0)
      for (size_t i = 200; i < bytes.size(); ++i)
        if (rng() % 50 != 0) bytes[i] = bytes[i - 1 - rng() % 200];
    std::vector<uint8_t> packed;
    compress(bytes, packed);
    std::vector<uint8_t> back(bytes.size());
    ASSERT_EQ(decompress(packed, back), bytes.size()) << "round " << round;
    ASSERT_EQ(back, bytes) << "round " << round;
  }
}

// Codes as they stand in files of other programs: four literals, then a copy of each kind.
TEST(Lz, CodesByHand) {
  const auto unpacked = [](std::vector<uint8_t> packed, size_t size) {
    std::vector<uint8_t> out(size);
    out.resize(decompress(packed, out));
    return std::string(out.begin(), out.end());
  };
  EXPECT_EQ(unpacked({0x01, 'a', 'b', 'c', 'd', 0x11, 0, 0}, 50), "abcd");
  EXPECT_EQ(unpacked({0x01, 'a', 'b', 'c', 'd', 0x4C, 0, 0x11, 0, 0}, 50), "abcdabc");  // 3 from 4 back
  EXPECT_EQ(unpacked({0x01, 'a', 'b', 'c', 'd', 0x41, 0, 'X', 0x11, 0, 0}, 50),
            "abcddddX");  // 3 from 1 back, a literal
  EXPECT_EQ(unpacked({0x01, 'a', 'b', 'c', 'd', 0x22, 0x0C, 0, 0x11, 0, 0}, 50), "abcdabcd");
  // Far copies: distance from 0x4000 on, three bits of length.
  std::vector<uint8_t> far = {0x00};
  for (size_t left = 0x4000 - 0x12; left > 0; left -= left < 255 ? left : 255)
    far.push_back(left < 256 ? left & 0xFF : 0);
  for (size_t i = 0; i < 0x4000; ++i) far.push_back(static_cast<uint8_t>('a' + i % 7 + i / 0x1000));
  const std::string start(far.end() - 0x4000, far.end());
  for (const unsigned code : {0x12u, 0x17u}) {
    std::vector<uint8_t> packed = far;
    packed.insert(packed.end(), {static_cast<uint8_t>(code), 0, 0, 0x11, 0, 0});
    EXPECT_EQ(unpacked(packed, 0x5000), start + start.substr(0, (code & 7) + 2));
  }
  far.insert(far.end(), {0x10, 0x05, 0, 0, 0x11, 0, 0});
  EXPECT_EQ(unpacked(far, 0x5000), start + start.substr(0, 14));
}

TEST(Lz, DamagedInputStaysInBounds) {
  std::mt19937 rng(5);
  for (int round = 0; round < 20000; ++round) {
    std::vector<uint8_t> noise(rng() % 200);
    for (uint8_t& byte : noise) byte = static_cast<uint8_t>(rng());
    std::vector<uint8_t> out(rng() % 500);
    EXPECT_LE(decompress(noise, out), out.size());
  }
}

TEST(ObjectMap, EntriesComeBack) {
  std::mt19937_64 rng(11);
  std::vector<MapEntry> entries;
  uint64_t handle = 0;
  for (int i = 0; i < 5000; ++i) {
    handle += 1 + rng() % (i % 100 == 0 ? 1000000 : 5);
    entries.push_back({handle, rng() % 0x7FFFFFFF});
  }
  const std::vector<uint8_t> bytes = writeObjectMap(entries);
  GcDbLoadReport report;
  const std::vector<MapEntry> back = readObjectMap(bytes, SIZE_MAX, report);
  EXPECT_TRUE(report.isClean());
  ASSERT_EQ(back.size(), entries.size());
  for (size_t i = 0; i < back.size(); ++i) {
    EXPECT_EQ(back[i].handle, entries[i].handle);
    EXPECT_EQ(back[i].offset, entries[i].offset);
  }
}

// Strays of every kind: early large ones, late small ones, single ones and runs.
TEST(NearlySorted, AnyOrderIsSorted) {
  std::mt19937 rng(17);
  for (int round = 0; round < 500; ++round) {
    std::vector<uint32_t> numbers(rng() % 200);
    for (size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<uint32_t>(i * 2);
    for (unsigned strays = rng() % 30; strays > 0 && !numbers.empty(); --strays) {
      const auto from = numbers.begin() + static_cast<std::ptrdiff_t>(rng() % numbers.size());
      const auto to = numbers.begin() + static_cast<std::ptrdiff_t>(rng() % numbers.size());
      std::rotate(std::min(from, to), std::min(from, to) + (from == to ? 0 : 1), std::max(from, to));
    }
    if (round % 5 == 0) std::shuffle(numbers.begin(), numbers.end(), rng);
    std::vector<uint32_t> expected = numbers;
    std::sort(expected.begin(), expected.end());
    sortNearlySorted(numbers, [](uint32_t a, uint32_t b) { return a < b; });
    ASSERT_EQ(numbers, expected) << "round " << round;
  }
}

TEST(File, NewDrawingWithLinesInEveryVersion) {
  for (const int version : kWritten) {
    GcDbDatabase database;
    GcDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(gcdbOpenObject(block, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
    for (int i = 0; i < 3000; ++i) {
      auto* line = new GcDbLine({double(i), 0, 0}, {double(i), 1.5, double(i % 2)});
      ASSERT_EQ(block->appendGcDbEntity(line), Gcad::eOk);
      if (i % 7 == 0) ignore(line->erase());
      ignore(line->close());
    }
    ignore(block->close());
    std::vector<uint8_t> bytes;
    std::string message;
    ASSERT_EQ(writeBytes(database, version, bytes, message), Gcad::eOk) << message;
    GcDbDatabase back(false, true);
    ASSERT_EQ(read(back, viewOf(bytes)), Gcad::eOk);
    EXPECT_EQ(reportOf(back), "") << "version " << version;
    expectSame(database, back, "version " + std::to_string(version), false);
    GcDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(gcdbOpenObject(space, back.modelSpaceId(), GcDb::kForRead), Gcad::eOk);
    ASSERT_EQ(space->entities().length(), 3000 - 429);
    const auto* last = GcDbLine::cast(space->entities().last().stub()->object);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->endPoint(), GcGePoint3d(2999, 1.5, 1));
    ignore(space->close());
    EXPECT_GE(uint64_t(back.handseed()), uint64_t(database.handseed()));
  }
}

// Readers take the number of words of a section's size from the maintenance release: files of AC1024 and AC1027 come from
// releases above 3 and have two.
TEST(File, SizesHaveTheWordsTheReleaseSays) {
  for (const int version : {kR2010, kR2013, kR2018}) {
    GcDbDatabase database;
    std::vector<uint8_t> bytes;
    std::string message;
    ASSERT_EQ(writeBytes(database, version, bytes, message), Gcad::eOk) << message;
    if (version != kR2018) {
      EXPECT_GT(bytes[11], 3) << version;
      EXPECT_EQ(bytes[18], bytes[11]) << version;
    }
    Sections sections;
    sections.version = version;
    GcDbLoadReport report;
    ASSERT_TRUE(openR2004(bytes, sections, report));
    for (const std::span<const uint8_t> section : {sections.header, sections.classes}) {
      const uint64_t frame = 16 + 8 + 2 + 16;  // marks, size, checksum
      const uint64_t size = section[16] | section[17] << 8 | section[18] << 16;
      EXPECT_EQ(section.size(), size + frame) << version;
    }
  }
}

// The size of the second header is what lies between its marks.
TEST(File, SecondHeaderEndsWhereItsSizeSays) {
  GcDbDatabase database;
  std::vector<uint8_t> bytes;
  std::string message;
  ASSERT_EQ(writeBytes(database, kR2000, bytes, message), Gcad::eOk) << message;
  const auto at = std::search(bytes.begin(), bytes.end(), kSecondHeaderBegin.begin(), kSecondHeaderBegin.end());
  ASSERT_NE(at, bytes.end());
  const Sentinel mark = closing(kSecondHeaderBegin);
  const auto end = std::search(at, bytes.end(), mark.begin(), mark.end());
  ASSERT_NE(end, bytes.end());
  EXPECT_EQ(end - at - 16, at[16] | at[17] << 8);
}

TEST(File, VersionsNobodyWrites) {
  GcDbDatabase database;
  std::vector<uint8_t> bytes;
  std::string message;
  for (const int version : {kR13, kR14, kR2007, int{GcDb::kDHL_AC1009}})
    EXPECT_EQ(writeBytes(database, version, bytes, message), Gcad::eUnsupportedVersion);
}

TEST(File, OldVersionsAreRefusedWithAReason) {
  GcDbDatabase database(false, true);
  EXPECT_EQ(read(database, std::string("AC1009") + std::string(200, '\0')), Gcad::eUnsupportedVersion);
  EXPECT_NE(reportOf(database).find("R11"), std::string::npos);
  EXPECT_FALSE(isDwg("  0\nSECTION\n"));
}

// A wrong checksum of a record is told with the place and the handle, and every object is read all the same.
TEST(File, WrongChecksumsAreToldAndReadingGoesOn) {
  GcDbDatabase database;
  std::vector<uint8_t> bytes;
  std::string message;
  ASSERT_EQ(writeBytes(database, kR2000, bytes, message), Gcad::eOk) << message;
  Sections sections;
  sections.version = kR2000;
  GcDbLoadReport report;
  ASSERT_TRUE(openR2000(bytes, sections, report));
  const std::vector<MapEntry> map = readObjectMap(sections.handles, SIZE_MAX, report);
  ASSERT_GT(map.size(), 3U);
  const MapEntry& damaged = map[map.size() / 2];
  const uint64_t next =
      std::min_element(map.begin(), map.end(), [&](const MapEntry& a, const MapEntry& b) {
        const auto behind = [&](const MapEntry& e) { return e.offset > damaged.offset ? e.offset : UINT64_MAX; };
        return behind(a) < behind(b);
      })->offset;
  const auto from = static_cast<uint64_t>(sections.objects.data() - bytes.data());
  bytes[from + next - 1] ^= 0x40;  // the checksum's second byte
  GcDbDatabase back(false, true);
  ASSERT_EQ(read(back, viewOf(bytes)), Gcad::eOk);
  ASSERT_EQ(back.loadReport().entries().size(), 1U) << reportOf(back);
  const GcDbLoadEntry& told = back.loadReport().entries()[0];
  EXPECT_EQ(told.handle, damaged.handle);
  EXPECT_EQ(told.offset, damaged.offset);
  EXPECT_NE(told.text.find("checksum"), std::string::npos);
  expectSame(database, back, "damaged", false);
}

// Records that lie over each other could make a small file take long: each as long as the rest of it.
TEST(File, RecordsOverEachOtherAreNotFollowed) {
  constexpr size_t kHead = 16;
  constexpr size_t kCount = 20000;
  std::vector<uint8_t> objects(kHead * kCount);
  std::vector<MapEntry> map;
  for (size_t i = 0; i + 1 < kCount; ++i) {
    BitWriter head;
    head.ms(static_cast<uint32_t>(objects.size() - i * kHead - 6));
    head.bs(0x13);
    head.rl(0);
    head.h(0, 0x1000 + i);
    const std::span<const uint8_t> bytes = head.whole();
    ASSERT_LE(bytes.size(), kHead);
    std::copy(bytes.begin(), bytes.end(), objects.begin() + static_cast<int64_t>(i * kHead));
    map.push_back({0x1000 + i, i * kHead});
  }
  GcDbDatabase database(false, true);
  RecordContext context(database);
  Sections sections;
  sections.version = kR2000;
  sections.objects = objects;
  LoadedLinks links;
  ObjectLoader(sections, context, database.loadReport(), links).loadAll(map);
  EXPECT_NE(reportOf(database).find("records lie over each other"), std::string::npos);
  EXPECT_EQ(database.store().size(), 0U);
}

// The pages of the newer container have checksums too.
TEST(File, WrongChecksumsOfPagesAreTold) {
  GcDbDatabase database;
  std::vector<uint8_t> bytes;
  std::string message;
  ASSERT_EQ(writeBytes(database, kR2018, bytes, message), Gcad::eOk) << message;
  bytes[0x100 + 28] ^= 1;  // the first page's
  GcDbDatabase back(false, true);
  ASSERT_EQ(read(back, viewOf(bytes)), Gcad::eOk);
  EXPECT_NE(reportOf(back).find("the checksum of page 1 is wrong"), std::string::npos) << reportOf(back);
  expectSame(database, back, "damaged", false);
}

// The preview picture and what the summary says come through a save, whatever the version.
TEST(File, PreviewAndSummaryAreKept) {
  const std::vector<uint8_t> picture = {0x42, 0x4D, 1, 2, 3, 4, 5, 6, 7, 8};
  for (const int version : kWritten) {
    GcDbDatabase database;
    std::vector<uint8_t> preview(kPreviewBegin.begin(), kPreviewBegin.end());
    const auto put32 = [&](uint32_t value) {
      for (int i = 0; i < 4; ++i) preview.push_back(static_cast<uint8_t>(value >> (8 * i)));
    };
    put32(static_cast<uint32_t>(1 + 9 + picture.size()));
    preview.push_back(1);  // one picture, of kind 2
    preview.push_back(2);
    put32(16 + 4 + 1 + 9);
    put32(static_cast<uint32_t>(picture.size()));
    preview.insert(preview.end(), picture.begin(), picture.end());
    const Sentinel end = closing(kPreviewBegin);
    preview.insert(preview.end(), end.begin(), end.end());
    std::vector<uint8_t> summary(60, 7);
    database.fileParts().dwgSections.push_back({"AcDb:Preview", preview, version});
    database.fileParts().dwgSections.push_back({"AcDb:SummaryInfo", summary, version});
    std::vector<uint8_t> bytes;
    std::string message;
    ASSERT_EQ(writeBytes(database, version, bytes, message), Gcad::eOk) << message;
    // The head of the file tells where the preview is, the preview where its picture is.
    const uint64_t at = bytes[13] | bytes[14] << 8 | bytes[15] << 16;
    ASSERT_LT(at + 30, bytes.size());
    EXPECT_TRUE(std::equal(kPreviewBegin.begin(), kPreviewBegin.end(), bytes.begin() + static_cast<int64_t>(at)));
    const uint64_t place = bytes[at + 22] | bytes[at + 23] << 8 | bytes[at + 24] << 16;
    ASSERT_LT(place + picture.size(), bytes.size()) << version;
    EXPECT_TRUE(std::equal(picture.begin(), picture.end(), bytes.begin() + static_cast<int64_t>(place))) << version;
    GcDbDatabase back(false, true);
    ASSERT_EQ(read(back, viewOf(bytes)), Gcad::eOk);
    const auto has = [&](const char* name, const std::vector<uint8_t>& content) {
      for (const GcDbDwgSection& each : back.fileParts().dwgSections)
        if (each.name == name) return each.bytes.size() == content.size() && (name[5] == 'P' || each.bytes == content);
      return false;
    };
    EXPECT_TRUE(has("AcDb:Preview", preview)) << version;
    EXPECT_EQ(has("AcDb:SummaryInfo", summary), version >= kR2004) << version;
  }
}

TEST(File, DrawingsOfOthersAreReadWhole) {
  const std::vector<std::string> all = drawings();
  if (all.empty()) GTEST_SKIP() << "no drawings at hand (GC_DRAWINGS)";
  for (const std::string& path : all) {
    gc::FileView file;
    ASSERT_TRUE(file.open(path).ok());
    GcDbDatabase database(false, true);
    ASSERT_EQ(read(database, file.bytes()), Gcad::eOk) << path;
    std::string lost;
    for (const GcDbLoadEntry& entry : database.loadReport().entries())
      if (entry.action != GcDbLoadAction::Noted && entry.text.find("gives a wrong size") == std::string::npos)
        lost += GcDbLoadReport::describe(entry) + "\n";
    EXPECT_EQ(lost, "") << path;
    EXPECT_GT(database.store().size(), 20u);
  }
}

TEST(File, DrawingsOfOthersSurviveEveryVersion) {
  const std::vector<std::string> all = drawings();
  if (all.empty()) GTEST_SKIP() << "no drawings at hand (GC_DRAWINGS)";
  for (const std::string& path : all) {
    gc::FileView file;
    ASSERT_TRUE(file.open(path).ok());
    for (const int version : kWritten) {
      GcDbDatabase database(false, true);
      ASSERT_EQ(read(database, file.bytes()), Gcad::eOk);
      std::vector<uint8_t> bytes;
      std::string message;
      ASSERT_EQ(writeBytes(database, version, bytes, message), Gcad::eOk) << message;
      EXPECT_EQ(message, "") << path;
      GcDbDatabase back(false, true);
      ASSERT_EQ(read(back, viewOf(bytes)), Gcad::eOk);
      EXPECT_EQ(reportOf(back), "") << path << " version " << version;
      const bool losesTrueColors = version < kR2004;
      expectSame(database, back, path + " version " + std::to_string(version), losesTrueColors);
    }
  }
}

TEST(File, DamagedFilesNeverHarm) {
  GcDbDatabase database;
  std::mt19937 rng(17);
  for (const int version : kWritten) {
    std::vector<uint8_t> whole;
    std::string message;
    ASSERT_EQ(writeBytes(database, version, whole, message), Gcad::eOk);
    for (int round = 0; round < 150; ++round) {
      std::vector<uint8_t> bytes = whole;
      if (round % 3 == 0)
        bytes.resize(rng() % bytes.size());
      else
        for (unsigned flips = 1 + rng() % 8; flips > 0; --flips)
          bytes[rng() % bytes.size()] ^= static_cast<uint8_t>(1u << rng() % 8);
      GcDbDatabase back(false, true);
      const Gcad::ErrorStatus status = read(back, viewOf(bytes));
      EXPECT_TRUE(status == Gcad::eOk || status == Gcad::eBadDwgFile || status == Gcad::eUnsupportedVersion);
    }
  }
}
