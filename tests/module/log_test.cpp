// Loggers, their levels and their registry; what a file appender writes.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "module/log/fileappender.h"
#include "module/log/logger.h"
#include "tests/module/listappender.h"
#include "tests/scratch.h"

namespace {

// Standard output between construction and text().
class CapturedOutput {
 public:
  CapturedOutput() { testing::internal::CaptureStdout(); }
  static std::string text() { return testing::internal::GetCapturedStdout(); }
};

class LogTest : public testing::Test {
 protected:
  void SetUp() override { forgetAll(); }
  void TearDown() override { forgetAll(); }
  static void forgetAll() {
    const CapturedOutput quiet;
    Logger::destroyAll();
    CapturedOutput::text();
  }
  static Logger& quietly(const GCHAR* name) {
    const CapturedOutput quiet;
    Logger& logger = Logger::get(name);
    CapturedOutput::text();
    return logger;
  }
  static std::vector<GcString> linesAtLevel(int level) {
    std::vector<GcString> lines;
    Logger& logger = quietly(GC_T("levels"));
    logger.setAppender(std::make_unique<ListAppender>(lines));
    logger.setLevel(level);
    logger.error(GC_T("e"));
    logger.debug(GC_T("d"));
    logger.info(GC_T("i"));
    logger.setAppender(nullptr);
    return lines;
  }
};

std::string bytesOf(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

struct TemporaryFile {
  gc::test::ScratchFolder folder;
  std::filesystem::path path = folder.path() / "module.log";
  [[nodiscard]] GcString name() const { return GcString::fromUtf8(path.string().c_str(), path.string().size()); }
};

TEST_F(LogTest, TheSameNameIsTheSameLoggerAndIsAnnouncedOnce) {
  const CapturedOutput output;
  Logger& first = Logger::get(GC_T("one"));
  Logger& second = Logger::get(GC_T("one"));
  EXPECT_EQ(CapturedOutput::text(), "Konstruktor Logger\n");
  EXPECT_EQ(&first, &second);
}

TEST_F(LogTest, NamesAreComparedExactly) { EXPECT_NE(&quietly(GC_T("one")), &quietly(GC_T("One"))); }

TEST_F(LogTest, TheDefaultLoggerHasItsName) {
  Logger& byName = quietly(GC_T("DefaultLogger"));
  EXPECT_EQ(&Logger::defaultLogger(), &byName);
}

TEST_F(LogTest, ANewLoggerIsEnabledTalkativeAndHasNoAppender) {
  const Logger& logger = quietly(GC_T("new"));
  EXPECT_EQ(logger.level(), 2);
  EXPECT_TRUE(logger.isEnabled());
  EXPECT_EQ(logger.appender(), nullptr);
}

TEST_F(LogTest, WithoutAnAppenderNothingIsPrinted) {
  Logger& logger = quietly(GC_T("mute"));
  const CapturedOutput output;
  logger.error(GC_T("e"));
  logger.debug(GC_T("d"));
  logger.info(GC_T("i"));
  EXPECT_EQ(CapturedOutput::text(), "");
}

TEST_F(LogTest, InformationNeedsTheHighestLevelAndErrorsTheLowest) {
  using Lines = std::vector<GcString>;
  EXPECT_EQ(linesAtLevel(2), (Lines{GC_T("ERROR: e"), GC_T("DEBUG: d"), GC_T("INFO: i")}));
  EXPECT_EQ(linesAtLevel(1), (Lines{GC_T("ERROR: e"), GC_T("DEBUG: d")}));
  EXPECT_EQ(linesAtLevel(0), (Lines{GC_T("ERROR: e")}));
  EXPECT_EQ(linesAtLevel(-1), Lines{});
}

TEST_F(LogTest, ADisabledLoggerWritesNothing) {
  std::vector<GcString> lines;
  Logger& logger = quietly(GC_T("off"));
  logger.setAppender(std::make_unique<ListAppender>(lines));
  logger.setEnabled(false);
  logger.error(GC_T("e"));
  EXPECT_TRUE(lines.empty());
}

TEST_F(LogTest, DestroyingAllClosesAppendersAndIsSilentTheSecondTime) {
  std::vector<GcString> lines;
  int closed = 0;
  quietly(GC_T("a")).setAppender(std::make_unique<ListAppender>(lines, &closed));
  quietly(GC_T("b"));
  const CapturedOutput output;
  Logger::destroyAll();
  Logger::destroyAll();
  EXPECT_EQ(CapturedOutput::text(), "Destruktor Logger\nDestruktor Logger\n");
  EXPECT_EQ(closed, 1);
}

TEST_F(LogTest, ALoggerMadeAnewAfterwardsHasNoAppender) {
  std::vector<GcString> lines;
  quietly(GC_T("again")).setAppender(std::make_unique<ListAppender>(lines));
  forgetAll();
  EXPECT_EQ(quietly(GC_T("again")).appender(), nullptr);
}

TEST_F(LogTest, AFileLineIsStampedAndEndsInLineFeedCarriageReturn) {
  const TemporaryFile file;
  FileAppender appender(file.name());
  appender.open();
  appender.writeLine(GcString(GC_T("DEBUG: text")));
  appender.close();
  const std::regex kLine("[0-9]{2}\\.[0-9]{2}\\.[0-9]{2} [0-9]{2}:[0-9]{2}\\.[0-9]{2} DEBUG: text\n\r");
  EXPECT_TRUE(std::regex_match(bytesOf(file.path), kLine)) << bytesOf(file.path);
}

TEST_F(LogTest, AFileKeepsTheLowByteOfEachUnit) {
  const TemporaryFile file;
  FileAppender appender(file.name());
  appender.open();
  appender.writeLine(GC_T("\u0105A\u4142"));  // a with ogonek 0x0105, A, 0x4142
  appender.close();
  const std::string bytes = bytesOf(file.path);
  ASSERT_GE(bytes.size(), 5u);
  EXPECT_EQ(bytes.substr(bytes.size() - 5),
            "\x05"
            "AB\n\r");
}

TEST_F(LogTest, ANullLineAndAClosedFileWriteNothing) {
  const TemporaryFile file;
  FileAppender appender(file.name());
  appender.writeLine(GC_T("before opening"));
  appender.open();
  appender.writeLine(static_cast<const GCHAR*>(nullptr));
  appender.close();
  appender.close();
  appender.writeLine(GC_T("after closing"));
  EXPECT_EQ(bytesOf(file.path), "");
}

TEST_F(LogTest, OpeningAgainAppends) {
  const TemporaryFile file;
  for (int i = 0; i < 2; ++i) {
    FileAppender appender(file.name());
    appender.open();
    appender.writeLine(GC_T("x"));
    appender.close();
  }
  const std::string bytes = bytesOf(file.path);
  EXPECT_EQ(bytes.size() % 2, 0u);
  EXPECT_EQ(bytes.substr(bytes.size() / 2).substr(bytes.size() / 2 - 3), "x\n\r");
}

}  // namespace
