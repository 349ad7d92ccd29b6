#include "tools/dxfdiff/compare.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/dxf/tags/tag_writer.h"

namespace {

using gc::dxfdiff::compare;
using gc::dxfdiff::describe;

using Lines = std::vector<std::string>;

Lines differences(const std::string& first, const std::string& second, const gc::dxfdiff::Options& options = {}) {
  Lines lines;
  for (const auto& difference : compare(first, second, options)) lines.push_back(describe(difference));
  return lines;
}

std::string file(const std::string& variables, const std::string& entities, const std::string& version = "AC1015") {
  return "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\n" + version + "\n9\n$DWGCODEPAGE\n3\nANSI_1250\n" + variables +
         "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n" + entities + "0\nENDSEC\n0\nEOF\n";
}

const std::string kLine = "0\nLINE\n5\n2F\n8\n0\n10\n1.5\n20\n0.0\n";

TEST(DxfDiff, TheSameInAnotherSpellingIsTheSame) {
  const std::string a = file("9\n$LTSCALE\n40\n1.0\n", "0\nLINE\n5\n2F\n62\n3\n10\n1.5\n310\n0AFF\n310\n7A\n");
  const std::string b =
      file("9\n$LTSCALE\n 40\n1\n", "  0\r\nLINE\r\n  5\r\n002f\r\n 62\r\n     3\r\n10\n1.50E0\n310\n0aFf7a\n");
  EXPECT_EQ(differences(a, a), Lines());
  std::string lf;
  for (const char c : b) {
    if (c != '\r') lf += c;
  }
  EXPECT_EQ(differences(a, lf), Lines());
}

TEST(DxfDiff, TextIsComparedDecoded) {
  const std::string old = file("", "0\nTEXT\n5\n1\n1\n\xB3\\U+00B2\n");
  const std::string utf8 = file("", "0\nTEXT\n5\n1\n1\nł²\n", "AC1021");
  EXPECT_EQ(differences(old, utf8), Lines({"changed\tHEADER $ACADVER\t1: AC1015 -> AC1021"}));
}

TEST(DxfDiff, ABinaryFileHoldsTheSame) {
  const std::string ascii = file("9\n$LTSCALE\n40\n1.0\n", kLine);
  gc::dxf::StringSink sink;
  gc::dxf::TagWriter writer(sink, gc::dxf::FileForm::Binary16);
  gc::dxf::TagReader reader(ascii);
  gc::dxf::Tag tag;
  while (reader.next(tag) == gc::dxf::ReadStatus::Tag) ASSERT_TRUE(writer.writeTag(tag));
  ASSERT_TRUE(writer.finish());
  EXPECT_EQ(differences(ascii, sink.text()), Lines());
}

TEST(DxfDiff, LostChangedAddedAndMovedAreTold) {
  const std::string other = "0\nCIRCLE\n5\n30\n40\n1.0\n";
  EXPECT_EQ(differences(file("", kLine + other), file("", kLine)), Lines({"lost\tENTITIES CIRCLE 30"}));
  EXPECT_EQ(differences(file("", kLine), file("", other + kLine)), Lines({"added\tENTITIES CIRCLE 30"}));
  EXPECT_EQ(differences(file("", kLine), file("", "0\nLINE\n5\n2F\n10\n1.25\n20\n0.0\n39\n2.0\n")),
            Lines({"lost\tENTITIES LINE 2F\t8: 0", "changed\tENTITIES LINE 2F\t10: 1.5 -> 1.25",
                   "added\tENTITIES LINE 2F\t39: 2.0"}));
  EXPECT_EQ(differences(file("", kLine), file("", "0\nLINE\n5\n2F\n10\n1.5\n20\n0.0\n8\n0\n")),
            Lines({"moved\tENTITIES LINE 2F"}));
  EXPECT_EQ(differences(file("", kLine), file("", "0\nARC\n5\n2F\n")),
            Lines({"changed\tENTITIES LINE 2F\tbecame ARC"}));
}

TEST(DxfDiff, RecordsWithoutHandlesAreMatchedByPlace) {
  const std::string bare = "0\nLINE\n8\n0\n0\nLINE\n8\n1\n";
  const std::string handled = "0\nLINE\n5\n1\n8\n0\n0\nLINE\n5\n2\n8\n2\n";
  EXPECT_EQ(differences(file("", bare), file("", handled)),
            Lines({"added\tENTITIES LINE #1\t5: 1", "changed\tENTITIES LINE #2\t8: 1 -> 2",
                   "added\tENTITIES LINE #2\t5: 2"}));
}

TEST(DxfDiff, VariablesMayBeIgnoredAndLossesAreKnownFromTheRest) {
  const std::string a = file("9\n$TDUPDATE\n40\n1.0\n", kLine), b = file("9\n$TDUPDATE\n40\n2.0\n", kLine);
  EXPECT_EQ(differences(a, b), Lines({"changed\tHEADER $TDUPDATE\t40: 1.0 -> 2.0"}));
  EXPECT_EQ(differences(a, b, {{"$TDUPDATE"}}), Lines());
  EXPECT_TRUE(gc::dxfdiff::hasLosses(compare(a, b)));
  EXPECT_FALSE(gc::dxfdiff::hasLosses(compare(file("", ""), file("", kLine))));
}

TEST(DxfDiff, DamageIsALoss) {
  const std::string whole = file("", kLine), cut = whole.substr(0, whole.find("20\n0.0") + 3);
  const Lines lines = differences(whole, cut);
  EXPECT_EQ(lines, Lines({"lost\tENTITIES LINE 2F\t20: 0.0", "lost\tline 27\tthe file is damaged here"}));
}

}  // namespace
