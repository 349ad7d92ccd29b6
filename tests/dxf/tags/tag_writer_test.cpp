#include "host/dxf/tags/tag_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "host/rx/file/file_view.h"
#include "tests/dxf/tags/drawings.h"

namespace {

using gc::dxf::FileForm;
using gc::dxf::ReadStatus;
using gc::dxf::StringSink;
using gc::dxf::Tag;
using gc::dxf::TagReader;
using gc::dxf::TagWriter;
using gc::dxf::ValueKind;

TEST(TagWriter, AsciiLooksAsDrawingsDo) {
  StringSink sink;
  TagWriter writer(sink, FileForm::Ascii);
  writer.writeString(0, "LINE");
  writer.writeHandle(5, 0x1AF);
  writer.writePoint(10, 1.0, -2.5, 0.0);
  writer.writePoint(11, 0.5, 3.0);
  writer.writeInt(70, -3);
  writer.writeInt(160, std::numeric_limits<std::int64_t>::max());
  writer.writeBool(290, true);
  writer.writeBinary(310, "\x0A\xFFz");
  writer.writeString(1071, "7");
  ASSERT_TRUE(writer.finish());
  EXPECT_TRUE(writer.isWellFormed());
  EXPECT_EQ(sink.text(),
            "  0\nLINE\n  5\n1AF\n 10\n1.0\n 20\n-2.5\n 30\n0.0\n 11\n0.5\n 21\n3.0\n 70\n-3\n160\n"
            "9223372036854775807\n290\n1\n310\n0AFF7A\n1071\n7\n");
  EXPECT_EQ(writer.bytesWritten(), sink.text().size());
}

TEST(TagWriter, LineEndsMayBeTheOthers) {
  StringSink sink;
  TagWriter writer(sink, FileForm::Ascii, "\r\n");
  writer.writeString(0, "EOF");
  ASSERT_TRUE(writer.finish());
  EXPECT_EQ(sink.text(), "  0\r\nEOF\r\n");
}

TEST(TagWriter, LongBinaryDataIsCutIntoTags) {
  const std::string data(300, '\x5A');
  for (const FileForm form : {FileForm::Ascii, FileForm::Binary16}) {
    StringSink sink;
    TagWriter writer(sink, form);
    writer.writeString(0, "A");
    writer.writeBinary(310, data);
    writer.writeBinary(310, "");
    ASSERT_TRUE(writer.finish());
    TagReader reader(sink.text());
    Tag tag;
    std::string back;
    int chunks = 0;
    while (reader.next(tag) == ReadStatus::Tag) {
      chunks += tag.code == 310 && tag.bytes(back);
    }
    EXPECT_EQ(chunks, 3);
    EXPECT_EQ(back, data);
  }
}

TEST(TagWriter, ABinaryFileTakesNoValueOfAnotherKind) {
  StringSink sink;
  TagWriter writer(sink, FileForm::Binary16);
  const std::uint64_t empty = writer.bytesWritten();
  writer.writeReal(70, 1.0);
  writer.writeString(10, "x");
  writer.writeInt(1, 1);
  writer.writeHandle(70, 1);
  writer.writeInt(20000, 1);
  writer.writeChunk(310, std::string(256, 'x'));
  EXPECT_EQ(writer.bytesWritten(), empty);
  EXPECT_FALSE(writer.isWellFormed());
}

TEST(TagWriter, InfinitiesAreNotWritten) {
  StringSink sink;
  TagWriter writer(sink, FileForm::Ascii);
  writer.writeReal(40, std::numeric_limits<double>::infinity());
  ASSERT_TRUE(writer.finish());
  EXPECT_EQ(sink.text(), " 40\n0.0\n");
  EXPECT_FALSE(writer.isWellFormed());
}

class FailingSink final : public gc::dxf::ByteSink {
 public:
  bool write(const char*, std::size_t) override { return ++calls < 2; }
  int calls = 0;
};

TEST(TagWriter, AFailedSinkIsToldAtTheEndAndNotAskedAgain) {
  FailingSink sink;
  TagWriter writer(sink, FileForm::Ascii);
  const std::string text(200'000, 'x');
  for (int i = 0; i < 10; ++i) writer.writeString(1, text);
  EXPECT_FALSE(writer.finish());
  EXPECT_EQ(sink.calls, 2);
}

TEST(TagWriter, AValueLargerThanTheBufferIsWrittenWhole) {
  StringSink sink;
  TagWriter writer(sink, FileForm::Ascii);
  const std::string text(3'000'000, 'x');
  writer.writeString(1, "before");
  writer.writeString(1, text);
  writer.writeString(1, "after");
  ASSERT_TRUE(writer.finish());
  EXPECT_TRUE(sink.text() == "  1\nbefore\n  1\n" + text + "\n  1\nafter\n");
}

// Whether two tags say the same, however their files spell it.
testing::AssertionResult sameValue(const Tag& a, const Tag& b) {
  if (a.code != b.code) return testing::AssertionFailure() << a.code << " became " << b.code;
  bool same = false;
  double realA = 0.0, realB = 0.0;
  std::int64_t wholeA = 0, wholeB = 0;
  std::string bytesA, bytesB;
  switch (a.kind) {
    case ValueKind::String:
    case ValueKind::Handle: same = a.text() == b.text(); break;
    case ValueKind::Real: same = a.real(realA) && b.real(realB) && realA == realB; break;
    case ValueKind::Binary: same = a.bytes(bytesA) && b.bytes(bytesB) && bytesA == bytesB; break;
    default: same = a.integer(wholeA) && b.integer(wholeB) && wholeA == wholeB;
  }
  if (same) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "code " << a.code << ": " << a.text() << " became " << b.text();
}

std::string rewritten(std::string_view file, FileForm form, bool& complete) {
  StringSink sink;
  TagWriter writer(sink, form);
  TagReader reader(file);
  Tag tag;
  complete = true;
  ReadStatus status;
  while ((status = reader.next(tag)) == ReadStatus::Tag) complete &= writer.writeTag(tag);
  complete &= status == ReadStatus::End && writer.finish();
  return std::move(sink.text());
}

void expectSameTags(std::string_view a, std::string_view b) {
  TagReader first(a), second(b);
  Tag tagA, tagB;
  for (;;) {
    const ReadStatus status = first.next(tagA);
    ASSERT_EQ(second.next(tagB), status);
    if (status != ReadStatus::Tag) return;
    ASSERT_TRUE(sameValue(tagA, tagB)) << "at " << tagA.offset;
  }
}

TEST(TagWriter, EverySampleDrawingIsWrittenBackTagByTag) {
  const auto files = gc::test::drawings(".dxf");
  if (files.empty()) GTEST_SKIP() << "no sample drawings";
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    gc::FileView file;
    ASSERT_TRUE(file.open(path).ok());
    for (const FileForm form : {FileForm::Ascii, FileForm::Binary16, FileForm::Binary8}) {
      bool complete = false;
      const std::string copy = rewritten(file.bytes(), form, complete);
      EXPECT_TRUE(complete) << static_cast<int>(form);
      expectSameTags(file.bytes(), copy);
      if (HasFailure()) return;
    }
  }
}

TEST(TagWriter, RandomTagsGoFromFormToForm) {
  const char* wanted = std::getenv("GC_SEED");
  const auto seed = wanted ? static_cast<unsigned>(std::strtoul(wanted, nullptr, 10)) : std::random_device{}();
  SCOPED_TRACE("GC_SEED=" + std::to_string(seed));
  std::mt19937 random(seed);
  StringSink sink;
  TagWriter writer(sink, FileForm::Ascii);
  writer.writeString(0, "SECTION");
  for (int i = 0; i < 20'000; ++i) {
    const int code = static_cast<int>(random() % (gc::dxf::kLastGroupCode + 1));
    const std::string text(random() % 40, static_cast<char>('a' + random() % 26));
    const auto whole = static_cast<std::int64_t>(random());
    switch (gc::dxf::valueKind(code)) {
      case ValueKind::String: writer.writeString(code, text); break;
      case ValueKind::Handle: writer.writeHandle(code, random()); break;
      case ValueKind::Real: writer.writeReal(code, static_cast<double>(whole) / 977.0 - 1e6); break;
      case ValueKind::Int16: writer.writeInt(code, static_cast<std::int16_t>(whole)); break;
      case ValueKind::Int32: writer.writeInt(code, static_cast<std::int32_t>(whole)); break;
      case ValueKind::Int64: writer.writeInt(code, (whole - (1LL << 31)) * whole); break;
      case ValueKind::Bool: writer.writeBool(code, whole & 1); break;
      case ValueKind::Binary: writer.writeBinary(code, text); break;
    }
  }
  ASSERT_TRUE(writer.finish() && writer.isWellFormed());
  std::string last = sink.text();
  for (const FileForm form : {FileForm::Binary16, FileForm::Binary8, FileForm::Binary16, FileForm::Ascii}) {
    bool complete = false;
    last = rewritten(last, form, complete);
    ASSERT_TRUE(complete);
    expectSameTags(sink.text(), last);
  }
  const std::size_t same = static_cast<std::size_t>(
      std::mismatch(last.begin(), last.end(), sink.text().begin(), sink.text().end()).first - last.begin());
  EXPECT_TRUE(last == sink.text()) << "from byte " << same << ": " << last.substr(same < 40 ? 0 : same - 40, 80)
                                   << "\nnot: " << sink.text().substr(same < 40 ? 0 : same - 40, 80);
}

}  // namespace
