// The sample drawings: read, written in their own version, compared group by group, read again.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

#include "host/db/core/loadreport.h"
#include "host/rx/file/file_view.h"
#include "host/rx/text/number.h"
#include "tests/dxf/file/round_trip.h"
#include "tests/dxf/tags/drawings.h"

namespace {

using gc::test::load;
using gc::test::losses;
using gc::test::save;

std::string joined(const std::vector<std::string>& lines) {
  std::string all;
  for (std::size_t i = 0; i < lines.size() && i < 40; ++i) all += lines[i] + '\n';
  return all + (lines.size() > 40 ? "... " + std::to_string(lines.size()) + " in all\n" : "");
}

bool saysItsVersion(std::string_view file) { return file.find("$ACADVER") != std::string_view::npos; }

// What R12 says in one way only: handles are always on, linetypes ByLayer and ByBlock are no records, the block entities
// repeat their block's name.
bool isSaidOtherwise(const std::string& line) {
  for (const char* part : {"HEADER $HANDLING", "TABLES LTYPE LTYPE 24", "TABLES LTYPE LTYPE 25", "BLOCK #0\t3: *D ->",
                           "BLOCK 18\t3: $Model_Space", "BLOCK 1C\t3: $Paper_Space"}) {
    if (line.find(part) != std::string::npos) return true;
  }
  return false;
}

// Differences in objects that the load report does not say were repaired.
std::vector<std::string> unreported(const std::vector<std::string>& differences, GcDbDatabase& database) {
  std::vector<std::string> rest;
  for (const std::string& line : differences) {
    bool reported = database.originalFileVersion() < GcDb::kDHL_AC1012 && isSaidOtherwise(line);
    for (const GcDbLoadEntry& entry : database.loadReport().entries()) {
      const std::string handle = ' ' + gc::hexText(entry.handle) + '\t';
      reported |=
          entry.action == GcDbLoadAction::Repaired && entry.handle != 0 && line.find(handle) != std::string::npos;
    }
    if (!reported) rest.push_back(line);
  }
  return rest;
}

TEST(Samples, ComeBackWithoutLossInTheirOwnVersion) {
  const auto files = gc::test::drawings(".dxf");
  if (files.empty()) GTEST_SKIP() << "no sample drawings";
  int compared = 0, whole = 0;
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    gc::FileView file;
    ASSERT_TRUE(file.open(path).ok());
    const auto database = load(file.bytes());
    ASSERT_TRUE(database);
    // A file that does not say its version counts as R12 and may hold what R12 has not; that is told when it is saved.
    const bool isWritten = gc::dxf::isWritable(database->originalFileVersion());
    if (!isWritten || !saysItsVersion(file.bytes())) continue;
    const std::string copy = save(*database, database->originalFileVersion());
    const auto lost = unreported(losses(file.bytes(), copy), *database);
    EXPECT_TRUE(lost.empty()) << joined(lost) << "report:\n" << joined(gc::test::reportOf(*database));
    ++compared;
    if (lost.empty()) ++whole;
    const auto again = load(copy);
    ASSERT_TRUE(again);
    const std::string second = save(*again, database->originalFileVersion());
    // R12 keeps no handles of block records: they get new ones, and the seed rises.
    const bool isR12 = database->originalFileVersion() < GcDb::kDHL_AC1012;
    EXPECT_TRUE(isR12 ? losses(copy, second).empty() && losses(second, copy).empty() : second == copy)
        << "a second save differs";
  }
  std::cout << whole << " of " << compared << " sample drawings come back without any loss\n";
}

}  // namespace
