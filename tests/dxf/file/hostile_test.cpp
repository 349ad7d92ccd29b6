// Files made to take long: a megabyte of one thing. They are read, audited, mended and written; the test program's own
// time limit is the only clock.
#include <gtest/gtest.h>

#include "host/db/audit/audit.h"
#include "tests/dxf/file/round_trip.h"

namespace {

constexpr std::size_t kSize = 1000000;

std::string repeated(const std::string& part, std::size_t size = kSize) {
  std::string all;
  while (all.size() < size) all += part;
  return all;
}

std::string section(const std::string& name, const std::string& body) {
  return "0\nSECTION\n2\n" + name + "\n" + body + "0\nENDSEC\n";
}

void expectTaken(const std::string& body) {
  const auto database =
      gc::test::load("0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n0\nENDSEC\n" + body + "0\nEOF\n");
  ASSERT_TRUE(database);
  EXPECT_FALSE(gc::test::save(*database).empty());
  const GcDbAuditReport mended = gcdbAudit(*database, true);
  const bool isWhole = mended.mended() == static_cast<int>(mended.entries.size());
  EXPECT_TRUE(!isWhole || gcdbAudit(*database, false).isClean());
  EXPECT_FALSE(gc::test::save(*database, GcDb::kDHL_AC1009).empty());
}

TEST(Hostile, OneBlockDefinedAgainAndAgain) { expectTaken(section("BLOCKS", repeated("0\nBLOCK\n2\nA\n0\nENDBLK\n"))); }

TEST(Hostile, OneLayerAgainAndAgain) {
  expectTaken(section("TABLES", "0\nTABLE\n2\nLAYER\n" + repeated("0\nLAYER\n2\nA\n", kSize / 10) + "0\nENDTAB\n"));
}

TEST(Hostile, OneKeyAgainAndAgain) {
  expectTaken(section("OBJECTS", "0\nDICTIONARY\n5\nC\n100\nAcDbDictionary\n" + repeated("3\nA\n350\nC\n")));
}

TEST(Hostile, OneHandleAgainAndAgain) { expectTaken(section("ENTITIES", repeated("0\nLINE\n5\n1\n"))); }

TEST(Hostile, CountsOfMillionsWithoutContents) {
  expectTaken(section("ENTITIES", repeated("0\nSPLINE\n100\nAcDbSpline\n72\n2000000000\n73\n2000000000\n40\n1\n") +
                                      "0\nPOLYLINE\n100\nAcDbPolygonMesh\n70\n16\n71\n32767\n72\n32767\n0\nSEQEND\n"));
}

TEST(Hostile, BracesThatNeverEnd) { expectTaken(section("ENTITIES", "0\nLINE\n" + repeated("102\n{A\n"))); }

}  // namespace
