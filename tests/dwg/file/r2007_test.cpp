// The container of AC1021, on files made here: the program does not write any.
#include <gtest/gtest.h>

#include <memory>

#include "db/circle.h"
#include "db/database.h"
#include "db/line.h"
#include "host/db/core/loadreport.h"
#include "host/db/core/store.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/dwgfile.h"
#include "tests/dwg/damage/pack_r2007.h"
#include "tests/dwg/damage/peakmemory.h"

using namespace gc::dwg;

namespace {

constexpr uint64_t kPagesAt = 0x480;
constexpr uint64_t kMegabyte = 1024 * 1024;

PackerR2007 packer(int lines) {
  GcDbDatabase database;
  GcDbBlockTableRecord* block = nullptr;
  EXPECT_EQ(gcdbOpenObject(block, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  for (int i = 0; i < lines; ++i) {
    auto* line = new GcDbLine({double(i), 0, 0}, {double(i), 1.5, 1});
    EXPECT_EQ(block->appendGcDbEntity(line), Gcad::eOk);
    ignore(line->close());
  }
  ignore(block->close());
  return packerOf(database);
}

struct Outcome {
  Gcad::ErrorStatus status = Gcad::eOk;
  size_t objects = 0;
  std::vector<std::string> told;
  uint64_t peak = 0;  // bytes
};

Outcome outcomeOf(const std::vector<uint8_t>& file) {
  Outcome outcome;
  outcome.peak = peakBytesOf([&] {
    GcDbDatabase back(false, true);
    outcome.status = read(back, {reinterpret_cast<const char*>(file.data()), file.size()});
    back.store().forEach([&](GcDbStub* stub) { outcome.objects += stub->object != nullptr ? 1 : 0; });
    for (const auto& entry : back.loadReport().entries()) outcome.told.push_back(GcDbLoadReport::describe(entry));
  });
  return outcome;
}

bool tells(const Outcome& outcome, const std::string& text) {
  for (const std::string& each : outcome.told)
    if (each.find(text) != std::string::npos) return true;
  return false;
}

void expectRefusedOrTold(const std::vector<uint8_t>& file, size_t objects, const std::string& what) {
  const Outcome outcome = outcomeOf(file);
  EXPECT_TRUE(outcome.status == Gcad::eOk || outcome.status == Gcad::eBadDwgFile) << what;
  EXPECT_TRUE(outcome.status != Gcad::eOk || outcome.objects >= objects || !outcome.told.empty())
      << what << ": " << outcome.objects << " of " << objects << " objects, and nothing is told";
  EXPECT_LT(outcome.peak, 64 * kMegabyte) << what;
}

std::vector<uint64_t> wrongWords(uint64_t right) {
  return {0,          1,          right - 1,          right + 1,          right * 2, 0x10000,
          0x7FFFFFFF, 0xFFFFFFFF, 0x7FFFFFFFFFFFFFFF, 0x8000000000000000, UINT64_MAX};
}

void putWord(std::vector<uint8_t>& bytes, uint64_t at, uint64_t word) {
  for (unsigned i = 0; i < 8 && at + i < bytes.size(); ++i) bytes[at + i] = static_cast<uint8_t>(word >> (8 * i));
}

// Every word of a part set to what cannot be; the part gets its check bytes, so that nothing else tells of it.
void setEveryWord(PackerR2007::Change PackerR2007::*part, const char* name) {
  PackerR2007 whole = packer(20);
  const size_t objects = outcomeOf(whole.file()).objects;
  std::vector<uint8_t> plain;
  whole.*part = [&](std::vector<uint8_t>& bytes) { plain = bytes; };
  static_cast<void>(whole.file());
  ASSERT_GE(plain.size(), 80u);
  size_t tried = 0;
  for (uint64_t at = 0; at < plain.size(); at += 8)
    for (const uint64_t word : wrongWords(at + 8 <= plain.size() ? u64(plain, at) : 0)) {
      whole.*part = [&](std::vector<uint8_t>& bytes) { putWord(bytes, at, word); };
      expectRefusedOrTold(whole.file(), objects, std::string(name) + " " + std::to_string(at));
      ++tried;
    }
  EXPECT_GE(tried, 100u);
}

}  // namespace

TEST(R2007, AWholeFileIsReadWithoutAWord) {
  const Outcome outcome = outcomeOf(packer(3000).file());
  EXPECT_EQ(outcome.status, Gcad::eOk);
  EXPECT_GT(outcome.objects, 3000u);
  EXPECT_TRUE(outcome.told.empty()) << outcome.told.front();
}

TEST(R2007, WrongBytesAreCorrectedAndTold) {
  const std::vector<uint8_t> whole = packer(500).file();
  const size_t objects = outcomeOf(whole).objects;
  for (size_t at = kPagesAt; at + 2 < whole.size(); at += 997) {
    std::vector<uint8_t> file = whole;
    file[at] ^= 0x55;
    file[at + 1] ^= 0xAA;
    const Outcome outcome = outcomeOf(file);
    EXPECT_EQ(outcome.status, Gcad::eOk) << at;
    EXPECT_EQ(outcome.objects, objects) << at;
    // Filling at the end of a page belongs to no block.
    for (const std::string& told : outcome.told) EXPECT_NE(told.find("corrected"), std::string::npos) << told;
  }
}

TEST(R2007, MoreDamageThanTheCodeCarriesIsTold) {
  std::vector<uint8_t> file = packer(500).file();
  for (size_t i = 0; i < 3000; ++i) file[kPagesAt + 0x1800 + i] ^= static_cast<uint8_t>(i * 7 + 1);
  const Outcome outcome = outcomeOf(file);
  EXPECT_TRUE(outcome.status == Gcad::eOk || outcome.status == Gcad::eBadDwgFile);
  EXPECT_TRUE(tells(outcome, "do not fit their check bytes"));
}

TEST(R2007, EveryWordOfTheHeader) { setEveryWord(&PackerR2007::changeHeader, "header"); }
TEST(R2007, EveryWordOfThePageMap) { setEveryWord(&PackerR2007::changePageMap, "page map"); }
TEST(R2007, EveryWordOfTheSectionMap) { setEveryWord(&PackerR2007::changeSectionMap, "section map"); }
