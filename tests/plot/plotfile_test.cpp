#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "db/database.h"
#include "host/plot/plot.h"
#include "tests/scratch.h"

namespace gc::plot {
namespace {

namespace fs = std::filesystem;

std::string startOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  return bytes.substr(0, 8);
}

class PlotFile : public testing::Test {
 protected:
  void SetUp() override {
    const fs::path drawing = fs::path(GC_SOURCE_DIR) / "tests/plot/golden/blocks.dxf";
    ASSERT_EQ(m_database.readDwgFile(fromUtf8(drawing.string()).c_str()), Gcad::eOk);
  }

  FileStatus plotTo(const std::string& name, const PlotRequest& request = {}) {
    return plotToFile(m_database, request, (m_folder / name).string(), m_report, m_status);
  }

  GcDbDatabase m_database{false, true};
  gc::test::ScratchFolder m_scratch;
  const fs::path& m_folder = m_scratch.path();
  PlotReport m_report;
  Gcad::ErrorStatus m_status = Gcad::eOk;
};

TEST_F(PlotFile, SvgIsWrittenWhole) {
  ASSERT_TRUE(plotTo("a.svg").ok());
  EXPECT_EQ(startOf(m_folder / "a.svg"), "<?xml ve");
  EXPECT_GT(m_report.primitives, 10);
}

TEST_F(PlotFile, PngAndPdfWhereTheyCanBeWritten) {
  if (!canPlotTo("a.png")) {
    EXPECT_FALSE(plotTo("a.png").ok());
    GTEST_SKIP() << "built without cairo";
  }
  ASSERT_TRUE(plotTo("a.png").ok());
  EXPECT_EQ(startOf(m_folder / "a.png"), "\x89PNG\r\n\x1A\n");
  ASSERT_TRUE(plotTo("a.PDF").ok());
  EXPECT_EQ(startOf(m_folder / "a.PDF").substr(0, 5), "%PDF-");
}

TEST_F(PlotFile, WhatCannotBeDoneLeavesNoFile) {
  EXPECT_FALSE(plotTo("a.bmp").ok());
  EXPECT_FALSE(plotTo("missing/a.svg").ok());
  PlotRequest request;
  request.layout = fromUtf8("no such layout");
  EXPECT_TRUE(plotTo("b.svg", request).ok());
  EXPECT_EQ(m_status, Gcad::eKeyNotFound);
  EXPECT_TRUE(fs::is_empty(m_folder));
}

TEST_F(PlotFile, TheSizeIsTheOneAskedFor) {
  PlotRequest request;
  request.widthMm = 297;
  request.heightMm = 210;
  ASSERT_TRUE(plotTo("a.svg", request).ok());
  EXPECT_EQ(m_report.widthMm, 297);
  EXPECT_EQ(m_report.heightMm, 210);
}

}  // namespace
}  // namespace gc::plot
