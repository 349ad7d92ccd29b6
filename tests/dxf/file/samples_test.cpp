// The sample drawings: read, written in their own version, compared group by group, read again.
#include <gtest/gtest.h>

#include <algorithm>

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

// Differences in objects that the load report does not say were repaired.
std::vector<std::string> unreported(const std::vector<std::string>& differences, GcDbDatabase& database) {
  std::vector<std::string> rest;
  for (const std::string& line : differences) {
    bool reported = false;
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
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    gc::FileView file;
    ASSERT_TRUE(file.open(path).ok());
    const auto database = load(file.bytes());
    ASSERT_TRUE(database);
    if (database->originalFileVersion() < GcDb::kDHL_AC1015) continue;
    const std::string copy = save(*database, database->originalFileVersion());
    const auto lost = unreported(losses(file.bytes(), copy), *database);
    EXPECT_TRUE(lost.empty()) << joined(lost) << "report:\n" << joined(gc::test::reportOf(*database));
    const auto again = load(copy);
    ASSERT_TRUE(again);
    EXPECT_TRUE(save(*again, database->originalFileVersion()) == copy) << "a second save differs";
  }
}

}  // namespace
