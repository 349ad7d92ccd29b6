#include <gtest/gtest.h>

#include "host/plot/plot.h"

namespace gc::plot {
namespace {

TEST(PlotOptions, SizesByNameAndByMillimetres) {
  struct Row {
    const char* text;
    double width, height;
  };
  for (const Row& row :
       {Row{"A4", 297, 210}, Row{"a3", 420, 297}, Row{"A0-landscape", 1189, 841}, Row{"A3-portrait", 297, 420},
        Row{"A5", 210, 148}, Row{"420x297", 420, 297}, Row{"100.5x20", 100.5, 20}}) {
    double width = 0, height = 0;
    EXPECT_TRUE(parseSize(row.text, width, height)) << row.text;
    EXPECT_EQ(width, row.width) << row.text;
    EXPECT_EQ(height, row.height) << row.text;
  }
  for (const char* text : {"", "A", "A9", "A4-sideways", "100", "100x", "x100", "0x10", "-1x10", "10x10x", "1e9x1"}) {
    double width = 7, height = 8;
    EXPECT_FALSE(parseSize(text, width, height)) << text;
    EXPECT_EQ(width, 7) << text;
    EXPECT_EQ(height, 8) << text;
  }
}

TEST(PlotOptions, Backgrounds) {
  uint32_t rgb = 1;
  EXPECT_TRUE(parseBackground("white", rgb));
  EXPECT_EQ(rgb, 0xFFFFFFu);
  EXPECT_TRUE(parseBackground("Black", rgb));
  EXPECT_EQ(rgb, 0u);
  EXPECT_TRUE(parseBackground("#12aBc0", rgb));
  EXPECT_EQ(rgb, 0x12ABC0u);
  for (const char* text : {"", "blue", "#12", "#1234567", "#12345g", "123456"}) {
    EXPECT_FALSE(parseBackground(text, rgb)) << text;
    EXPECT_EQ(rgb, 0x12ABC0u);
  }
}

}  // namespace
}  // namespace gc::plot
