#include "host/dxf/tags/tag_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using gc::dxf::ReadStatus;
using gc::dxf::Tag;
using gc::dxf::TagReader;
using gc::dxf::ValueKind;

using Pairs = std::vector<std::pair<int, std::string>>;

Pairs allTags(std::string_view file, ReadStatus expectedEnd = ReadStatus::End) {
  TagReader reader(file);
  Tag tag;
  Pairs pairs;
  ReadStatus status;
  while ((status = reader.next(tag)) == ReadStatus::Tag) pairs.emplace_back(tag.code, tag.text());
  EXPECT_EQ(status, expectedEnd);
  return pairs;
}

std::string binary(const std::string& tags) {
  return std::string(gc::dxf::kBinarySentinel, sizeof gc::dxf::kBinarySentinel) + tags;
}

const Pairs kLine = {{0, "LINE"}, {8, "0"}, {10, "1.5"}, {0, "EOF"}};

TEST(TagReader, LinesEndInEveryWay) {
  const std::string lf = "  0\nLINE\n  8\n0\n 10\n1.5\n  0\nEOF\n";
  std::string crlf, cr, doubled;
  for (const char c : lf) {
    crlf += c == '\n' ? "\r\n" : std::string(1, c);
    cr += c == '\n' ? '\r' : c;
    doubled += c == '\n' ? "\r\r\n" : std::string(1, c);
  }
  for (const std::string& file : {lf, crlf, cr, doubled}) {
    EXPECT_EQ(allTags(file), kLine);
    EXPECT_EQ(allTags(file.substr(0, file.find("EOF") + 3)), kLine);
    EXPECT_EQ(allTags(file + " \n\n\x1A"), kLine);
    EXPECT_EQ(allTags("\xEF\xBB\xBF" + file), kLine);
  }
}

TEST(TagReader, ValuesAreKeptAsTheyStandAndCodesMayHaveBlanks) {
  const Pairs expected = {{1, "  text \t"}, {999, "a comment"}, {1, ""}, {1071, " 7"}, {-1, "x"}};
  EXPECT_EQ(allTags("\t1 \n  text \t\n999\na comment\n1\n\n1071  \n 7\n-1\nx\n"), expected);
}

TEST(TagReader, LongLinesAndEveryLengthAreFound) {
  std::string file;
  Pairs expected;
  for (std::size_t length = 0; length < 70; ++length) {
    file += "1\n" + std::string(length, 'x') + "\n";
    expected.emplace_back(1, std::string(length, 'x'));
  }
  EXPECT_EQ(allTags(file), expected);
}

TEST(TagReader, TheCodeSaysWhatTheValueIs) {
  EXPECT_EQ(gc::dxf::valueKind(0), ValueKind::String);
  EXPECT_EQ(gc::dxf::valueKind(5), ValueKind::Handle);
  EXPECT_EQ(gc::dxf::valueKind(39), ValueKind::Real);
  EXPECT_EQ(gc::dxf::valueKind(70), ValueKind::Int16);
  EXPECT_EQ(gc::dxf::valueKind(90), ValueKind::Int32);
  EXPECT_EQ(gc::dxf::valueKind(102), ValueKind::String);
  EXPECT_EQ(gc::dxf::valueKind(105), ValueKind::Handle);
  EXPECT_EQ(gc::dxf::valueKind(160), ValueKind::Int64);
  EXPECT_EQ(gc::dxf::valueKind(290), ValueKind::Bool);
  EXPECT_EQ(gc::dxf::valueKind(310), ValueKind::Binary);
  EXPECT_EQ(gc::dxf::valueKind(369), ValueKind::Handle);
  EXPECT_EQ(gc::dxf::valueKind(370), ValueKind::Int16);
  EXPECT_EQ(gc::dxf::valueKind(480), ValueKind::Handle);
  EXPECT_EQ(gc::dxf::valueKind(1004), ValueKind::Binary);
  EXPECT_EQ(gc::dxf::valueKind(1005), ValueKind::Handle);
  EXPECT_EQ(gc::dxf::valueKind(1071), ValueKind::Int32);
  EXPECT_EQ(gc::dxf::valueKind(-5), ValueKind::String);
  EXPECT_EQ(gc::dxf::valueKind(5000), ValueKind::String);
}

TEST(TagReader, ValuesOfAsciiTags) {
  TagReader reader("10\n 1.5\n70\n    12\n70\n3.0\n70\n3.5\n5\n 1aF \n310\n0aFF\n310\n0aF\n310\nxx\n40\nnan\n");
  Tag tag;
  double real = 0.0;
  std::int64_t whole = 0;
  std::uint64_t handle = 0;
  std::string bytes = "kept";
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.real(real));
  EXPECT_EQ(real, 1.5);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.integer(whole));
  EXPECT_EQ(whole, 12);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.integer(whole));
  EXPECT_EQ(whole, 3);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_FALSE(tag.integer(whole));
  EXPECT_TRUE(tag.real(real));
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.handle(handle));
  EXPECT_EQ(handle, 0x1AFu);
  EXPECT_EQ(tag.word(), "1aF");
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.bytes(bytes));
  EXPECT_EQ(bytes, "kept\x0A\xFF");
  for (int damaged = 0; damaged < 2; ++damaged) {
    ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
    EXPECT_FALSE(tag.bytes(bytes));
  }
  EXPECT_EQ(bytes, "kept\x0A\xFF");
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_FALSE(tag.real(real));
  EXPECT_EQ(reader.next(tag), ReadStatus::End);
}

TEST(TagReader, ATagCanComeAgain) {
  TagReader reader("0\nA\n1\nB\n");
  Tag tag;
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  reader.pushBack();
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(0, "A"));
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(1, "B"));
  reader.pushBack();
  reader.pushBack();
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(1, "B"));
}

TEST(TagReader, PlacesAreOffsetsAndLines) {
  const std::string file = "  0\r\nLINE\r\n  8\r\nlayer\r\n 62\r\n7\r\n";
  TagReader reader(file);
  Tag tag;
  for (const std::size_t line : {1, 3, 5}) {
    ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
    EXPECT_EQ(reader.lineAt(tag.offset), line);
  }
  EXPECT_EQ(tag.offset, file.find(" 62"));
  EXPECT_EQ(reader.lineAt(0), 1u);
  EXPECT_EQ(reader.lineAt(1000), 7u);
  reader.moveTo(file.find("  8"));
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(8, "layer"));
}

TEST(TagReader, ACutFileSaysWhere) {
  for (const char* file : {"0\nLINE\n 10", "0\nLINE\n 10\n", "0\nLINE\n 1"}) {
    TagReader reader(file);
    Tag tag;
    ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
    EXPECT_EQ(reader.next(tag), ReadStatus::Truncated) << file;
    EXPECT_EQ(reader.next(tag), ReadStatus::Truncated) << file;
    EXPECT_EQ(reader.errorOffset(), 7u);
    EXPECT_TRUE(tag.is(0, "LINE"));
  }
  EXPECT_TRUE(TagReader("0\nEOF").lastLineIsOpen());
  EXPECT_FALSE(TagReader("0\nEOF\n").lastLineIsOpen());
  EXPECT_FALSE(TagReader("").lastLineIsOpen());
  EXPECT_TRUE(allTags("").empty());
  EXPECT_TRUE(allTags(" \r\n\n\x1A").empty());
}

TEST(TagReader, AfterADamagedCodeTheNextRecordIsFound) {
  const std::string file = "0\nLINE\n8\n0\nstray\n10\n1.0\n0\n3DFACE\n62\n0\n0\nACAD_PROXY_ENTITY\n";
  TagReader reader(file);
  Tag tag;
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  ASSERT_EQ(reader.next(tag), ReadStatus::BadCode);
  EXPECT_EQ(reader.errorOffset(), file.find("stray"));
  EXPECT_EQ(reader.lineAt(reader.errorOffset()), 5u);
  ASSERT_TRUE(reader.skipToRecord());
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(0, "3DFACE"));
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(62, "0"));
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(0, "ACAD_PROXY_ENTITY"));
  TagReader hopeless("x\ny\n0\n0\n1\n");
  EXPECT_EQ(hopeless.next(tag), ReadStatus::BadCode);
  EXPECT_FALSE(hopeless.skipToRecord());
  EXPECT_EQ(hopeless.next(tag), ReadStatus::End);
}

// What is no code where codes are read may not be a place to go on at: the reader would stand still.
TEST(TagReader, ACodeBehindACarriageReturnIsPassedOver) {
  TagReader reader("0\nLINE\n\r0\nCIRCLE\n0\nEOF\n");
  Tag tag;
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  ASSERT_EQ(reader.next(tag), ReadStatus::BadCode);
  ASSERT_TRUE(reader.skipToRecord());
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(0, "EOF"));
}

TEST(TagReader, CodesOutOfAllBoundsAreDamage) {
  for (const char* file : {"99999\nx\n", "99999999999999999999\nx\n", "1.5\nx\n", "-\nx\n", "0x\nx\n", "\n0\nEOF\n"}) {
    EXPECT_TRUE(allTags(file, ReadStatus::BadCode).empty()) << file;
  }
}

TEST(TagReader, BinaryFilesWithOneByteCodes) {
  using namespace std::string_literals;
  const std::string file = binary("\0SECTION\0\x0A\0\0\0\0\0\0\xF8\x3F\x46\xFE\xFF\x05"s +
                                  "1A\0\xFF\xEC\x03\x02\0\x41"s + "\xFF\x2F\x04\xFE\xFF\xFF\xFF\0EOF\0"s);
  ASSERT_EQ(gc::dxf::formOf(file), gc::dxf::FileForm::Binary8);
  TagReader reader(file);
  Tag tag;
  double real = 0.0;
  std::int64_t whole = 0;
  std::uint64_t handle = 0;
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(0, "SECTION"));
  EXPECT_EQ(tag.offset, sizeof gc::dxf::kBinarySentinel);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.real(real));
  EXPECT_EQ(real, 1.5);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.integer(whole));
  EXPECT_EQ(whole, -2);
  EXPECT_TRUE(tag.real(real));
  EXPECT_EQ(real, -2.0);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.handle(handle));
  EXPECT_EQ(handle, 0x1Au);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_EQ(tag.code, 1004);
  EXPECT_EQ(tag.text(), "\0\x41"s);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_EQ(tag.code, 1071);
  EXPECT_TRUE(tag.integer(whole));
  EXPECT_EQ(whole, -2);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(0, "EOF"));
  EXPECT_EQ(reader.next(tag), ReadStatus::End);
  EXPECT_EQ(reader.lineAt(30), 0u);
}

TEST(TagReader, BinaryFilesWithTwoByteCodes) {
  using namespace std::string_literals;
  const std::string file = binary("\0\0HEADER\0\x5A\0\1\0\0\x80\xA0\0\2\0\0\0\0\0\0\x40\x22\1\x01\x36\1\3abc"s);
  ASSERT_EQ(gc::dxf::formOf(file), gc::dxf::FileForm::Binary16);
  TagReader reader(file);
  Tag tag;
  std::int64_t whole = 0;
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.integer(whole));
  EXPECT_EQ(whole, -2147483647);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.integer(whole));
  EXPECT_EQ(whole, 0x4000000000000002);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_EQ(tag.kind, ValueKind::Bool);
  EXPECT_TRUE(tag.integer(whole));
  EXPECT_EQ(whole, 1);
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_EQ(tag.text(), "abc");
  EXPECT_EQ(reader.next(tag), ReadStatus::End);
  // Cut anywhere within a tag, the file is cut; between tags it ends.
  int whole_files = 0;
  for (std::size_t size = sizeof gc::dxf::kBinarySentinel + 9; size <= file.size(); ++size) {
    TagReader cut(std::string_view(file).substr(0, size));
    ReadStatus status;
    while ((status = cut.next(tag)) == ReadStatus::Tag) {
    }
    EXPECT_TRUE(status == ReadStatus::End || status == ReadStatus::Truncated);
    whole_files += status == ReadStatus::End;
  }
  EXPECT_EQ(whole_files, 5);
}

TEST(TagReader, ADamagedBinaryFileGoesOnAtTheNextRecord) {
  using namespace std::string_literals;
  const std::string file = binary("\0\0LINE\0\x77\x77\x01\x02\0\0LWPOLYLINE\0\0\0EOF\0"s);
  TagReader reader(file);
  Tag tag;
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  ASSERT_EQ(reader.next(tag), ReadStatus::BadCode);
  ASSERT_TRUE(reader.skipToRecord());
  ASSERT_EQ(reader.next(tag), ReadStatus::Tag);
  EXPECT_TRUE(tag.is(0, "LWPOLYLINE"));
}

TEST(TagReader, InfinitiesInBinaryFilesAreRefused) {
  using namespace std::string_literals;
  const std::string file = binary("\0\0A\0\x0A\0\0\0\0\0\0\0\xF0\x7F\x0A\0\1\0\0\0\0\0\xF8\x7F"s);
  TagReader infinite(file);
  Tag tag;
  double real = 7.0;
  ASSERT_EQ(infinite.next(tag), ReadStatus::Tag);
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(infinite.next(tag), ReadStatus::Tag);
    EXPECT_FALSE(tag.real(real));
  }
  EXPECT_EQ(real, 7.0);
}

}  // namespace
