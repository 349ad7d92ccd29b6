// The picture of an entity for programs that do not know its class.
#include <gtest/gtest.h>

#include "tests/dxf/file/round_trip.h"

namespace {

TEST(ProxyGraphics, TheLookOfAnEntityIsKept) {
  const std::string file =
      "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1032\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
      "0\nTHING\n5\n2F\n100\nAcDbEntity\n8\n0\n160\n3\n310\nABCDEF\n100\nTheThing\n40\n1.0\n"
      "0\nCIRCLE\n5\n30\n100\nAcDbEntity\n8\n0\n160\n2\n310\nAB\n310\nCD\n100\nAcDbCircle\n10\n0.0\n20\n0.0\n30\n0."
      "0\n40\n"
      "1.0\n0\nENDSEC\n0\nEOF\n";
  const auto database = gc::test::load(file);
  ASSERT_TRUE(database);
  EXPECT_TRUE(gc::test::losses(file, gc::test::save(*database)).empty());
  const std::string old = gc::test::save(*database, GcDb::kDHL_AC1015);
  EXPECT_NE(old.find(" 92\n3\n310\nABCDEF\n"), std::string::npos);
  EXPECT_NE(old.find(" 92\n2\n310\nABCD\n"), std::string::npos);
}

}  // namespace
