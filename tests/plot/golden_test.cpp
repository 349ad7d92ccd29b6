// Every drawing in tests/plot/golden is plotted, each layout of it, and compared with the picture beside it:
// NAME.dxf with NAME.svg for model space and NAME.LAYOUT.svg for the others that have a picture.
// With GC_ACCEPT set, the pictures are rewritten instead; look at them before they are kept.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "db/database.h"
#include "host/plot/plot.h"

namespace {

namespace fs = std::filesystem;

const fs::path kFolder = fs::path(GC_SOURCE_DIR) / "tests" / "plot" / "golden";

struct Memory : gc::plot::ByteSink {
  std::string bytes;
  void write(const char* chars, std::size_t count) override { bytes.append(chars, count); }
};

std::string contentOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string pictureOf(GcDbDatabase& database, const GcText& layout) {
  gc::plot::PlotRequest request;
  request.layout = layout;
  Memory sink;
  gc::plot::PlotReport report;
  EXPECT_EQ(gc::plot::plotToSvg(database, request, sink, report), Gcad::eOk);
  return sink.bytes;
}

class GoldenPicture : public testing::TestWithParam<std::string> {};

TEST_P(GoldenPicture, IsDrawnAsBefore) {
  const fs::path drawing = kFolder / (GetParam() + ".dxf");
  GcDbDatabase database(false, true);
  ASSERT_EQ(database.readDwgFile(fromUtf8(drawing.string()).c_str()), Gcad::eOk);
  const bool accept = std::getenv("GC_ACCEPT") != nullptr;
  int compared = 0;
  for (const GcText& layout : gc::plot::layoutNames(database)) {
    const bool isModel = layout == GcText(GC_T("Model"));
    const fs::path picture = kFolder / (GetParam() + (isModel ? "" : "." + toUtf8(layout)) + ".svg");
    if (!isModel && !fs::exists(picture)) continue;
    const std::string drawn = pictureOf(database, layout);
    if (accept) {
      std::ofstream(picture, std::ios::binary) << drawn;
    } else {
      EXPECT_TRUE(drawn == contentOf(picture)) << picture.string() << " is drawn differently: "
                                               << "GC_ACCEPT=1 takes it over";
    }
    ++compared;
  }
  EXPECT_GT(compared, 0);
}

std::vector<std::string> drawings() {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(kFolder)) {
    if (entry.path().extension() == ".dxf") names.push_back(entry.path().stem().string());
  }
  return names;
}

INSTANTIATE_TEST_SUITE_P(All, GoldenPicture, testing::ValuesIn(drawings()),
                         [](const testing::TestParamInfo<std::string>& each) { return each.param; });

}  // namespace
