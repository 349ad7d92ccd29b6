// Sample drawings cut off and scrambled: nothing crashes, what is intact is kept, what is not is told.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "host/db/core/loadreport.h"
#include "host/rx/file/file_view.h"
#include "host/rx/text/number.h"
#include "tests/dxf/file/round_trip.h"
#include "tests/dxf/tags/drawings.h"

namespace {

using gc::test::load;
using gc::test::losses;
using gc::test::save;

unsigned seedOfThisRun() {
  const char* wanted = std::getenv("GC_SEED");
  return wanted ? static_cast<unsigned>(std::strtoul(wanted, nullptr, 10)) : std::random_device{}();
}

// The file up to the last record that begins before `size`.
std::string_view wholeRecords(std::string_view file, std::size_t size) {
  gc::dxf::TagReader reader(file.substr(0, size));
  gc::dxf::Tag tag;
  std::size_t last = 0;
  while (reader.next(tag) == gc::dxf::ReadStatus::Tag) {
    if (tag.code == 0) last = tag.offset;
  }
  return file.substr(0, last);
}

bool isReported(const std::string& line, GcDbDatabase& database) {
  for (const GcDbLoadEntry& entry : database.loadReport().entries()) {
    if (entry.handle != 0 && line.find(' ' + gc::hexText(entry.handle) + '\t') != std::string::npos) return true;
  }
  return false;
}

TEST(Damage, ACutFileKeepsAllItsWholeRecords) {
  const auto files = gc::test::drawings(".dxf");
  if (files.empty()) GTEST_SKIP() << "no sample drawings";
  const unsigned seed = seedOfThisRun();
  SCOPED_TRACE("GC_SEED=" + std::to_string(seed));
  std::mt19937 random(seed);
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    gc::FileView file;
    ASSERT_TRUE(file.open(path).ok());
    for (int round = 0; round < 4; ++round) {
      const std::size_t size = random() % file.bytes().size();
      const std::string_view cut = file.bytes().substr(0, size), whole = wholeRecords(file.bytes(), size);
      const auto database = load(cut);
      if (!database) {
        EXPECT_LT(size, 64u);
        continue;
      }
      // Without the line end behind EOF nothing is missing.
      EXPECT_TRUE(cut.ends_with("EOF") || !database->loadReport().isClean()) << size;
      if (database->originalFileVersion() < GcDb::kDHL_AC1015) continue;
      for (const std::string& line : losses(whole, save(*database, database->originalFileVersion()))) {
        if (!isReported(line, *database)) ADD_FAILURE() << size << ": " << line;
      }
    }
  }
}

TEST(Damage, ScrambledFilesAreReadToTheirEnd) {
  const auto files = gc::test::drawings(".dxf");
  if (files.empty()) GTEST_SKIP() << "no sample drawings";
  const unsigned seed = seedOfThisRun();
  SCOPED_TRACE("GC_SEED=" + std::to_string(seed));
  std::mt19937 random(seed);
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    gc::FileView file;
    ASSERT_TRUE(file.open(path).ok());
    std::string bytes(file.bytes());
    for (int change = 0; change < 30; ++change) {
      const std::size_t at = 64 + random() % (bytes.size() - 64);
      switch (random() % 4) {
        case 0: bytes[at] = static_cast<char>(random()); break;
        case 1: bytes.erase(at, random() % 20); break;
        case 2: bytes.insert(at, bytes.substr(random() % bytes.size(), random() % 200)); break;
        default: bytes[at] = '\n';
      }
    }
    const auto database = load(bytes);
    if (!database) continue;
    const std::string saved = save(*database, GcDb::kDHL_AC1032);
    EXPECT_FALSE(saved.empty());
    EXPECT_TRUE(load(saved));
  }
}

}  // namespace
