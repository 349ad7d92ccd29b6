#include "host/plot/svgcanvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <span>

namespace gc::plot {
namespace {

struct Memory : ByteSink {
  std::string bytes;
  void write(const char* chars, std::size_t count) override { bytes.append(chars, count); }
};

// The elements drawn, without the picture's head and tail.
template <class Draw>
std::string drawn(const Draw& draw) {
  Memory sink;
  SvgCanvas canvas(sink, 100, 50, 0xFFFFFF, "");
  draw(canvas);
  canvas.finish();
  const std::size_t begin = sink.bytes.find("\"round\">\n") + 9;
  return sink.bytes.substr(begin, sink.bytes.find("</g>\n</svg>") - begin);
}

Path line(double x1, double y1, double x2, double y2) {
  Path path;
  path.moveTo({x1, y1});
  path.lineTo({x2, y2});
  return path;
}

TEST(SvgCanvas, HeadNamesSizeAndTitle) {
  Memory sink;
  SvgCanvas canvas(sink, 420, 297.5, 0x102030, "A<B & C");
  canvas.finish();
  EXPECT_NE(sink.bytes.find("width=\"420mm\" height=\"297.5mm\" viewBox=\"0 0 420 297.5\""), std::string::npos);
  EXPECT_NE(sink.bytes.find("<title>A&lt;B &amp; C</title>"), std::string::npos);
  EXPECT_NE(sink.bytes.find("fill=\"#102030\""), std::string::npos);
}

TEST(SvgCanvas, NumbersHaveUpToFourDecimals) {
  EXPECT_EQ(drawn([](Canvas& c) { c.stroke(line(0.05, -0.00004, 12, 1234.56789), Pen()); }),
            "<path stroke=\"#000000\" stroke-width=\"0.25\" d=\"M0.05 0L12 1234.5679\"/>\n");
  EXPECT_EQ(drawn([](Canvas& c) { c.stroke(line(-0.5, 10, 1e-4, -1.0001), Pen()); }),
            "<path stroke=\"#000000\" stroke-width=\"0.25\" d=\"M-0.5 10L0.0001 -1.0001\"/>\n");
}

TEST(SvgCanvas, NumbersThatAreNoneDoNotReachTheFile) {
  const std::string text = drawn([](Canvas& c) {
    c.stroke(line(std::numeric_limits<double>::quiet_NaN(), 1, std::numeric_limits<double>::infinity(), 1e300), Pen());
  });
  EXPECT_NE(text.find("M0 1L1000000000 1000000000"), std::string::npos);
}

TEST(SvgCanvas, StrokesOfOnePenAreOneElement) {
  EXPECT_EQ(drawn([](Canvas& c) {
              c.stroke(line(0, 0, 1, 1), Pen{0xFF0000, 0.5, {}});
              c.stroke(line(2, 2, 3, 3), Pen{0xFF0000, 0.5, {}});
              c.stroke(line(4, 4, 5, 5), Pen{0x00FF00, 0.5, {}});
            }),
            "<path stroke=\"#ff0000\" stroke-width=\"0.5\" d=\"M0 0L1 1M2 2L3 3\"/>\n"
            "<path stroke=\"#00ff00\" stroke-width=\"0.5\" d=\"M4 4L5 5\"/>\n");
}

TEST(SvgCanvas, SegmentsThatMeetAreJoinedUnlessDashed) {
  const auto corner = [](std::span<const double> dashes) {
    return drawn([&](Canvas& c) {
      c.stroke(line(0, 0, 1, 0), Pen{0, 0.5, dashes});
      c.stroke(line(1, 0, 1, 1), Pen{0, 0.5, dashes});
      Path dot;
      dot.moveTo({1, 1});
      c.stroke(dot, Pen{0, 0.5, dashes});
    });
  };
  EXPECT_NE(corner({}).find("M0 0L1 0L1 1M1 1h0"), std::string::npos);
  const double dashes[] = {3, 1};
  EXPECT_NE(corner(dashes).find("M0 0L1 0M1 0L1 1M1 1h0"), std::string::npos);
}

TEST(SvgCanvas, DotsDashesAndCurves) {
  EXPECT_EQ(drawn([](Canvas& c) {
              Path dot;
              dot.moveTo({1, 1});
              c.stroke(dot, Pen());
            }),
            "<path stroke=\"#000000\" stroke-width=\"0.25\" d=\"M1 1h0\"/>\n");
  const double dashes[] = {3, 1, 0, 1};
  EXPECT_EQ(drawn([&](Canvas& c) {
              c.stroke(line(0, 0, 9, 0), Pen{0, 0.2, dashes});
            }),
            "<path stroke=\"#000000\" stroke-width=\"0.2\" stroke-linecap=\"butt\" stroke-dasharray=\"3 1 0.2 1\" "
            "d=\"M0 0L9 0\"/>\n");
  EXPECT_EQ(drawn([](Canvas& c) {
              Path path;
              path.moveTo({0, 0});
              path.quadTo({1, 0}, {1, 1});
              path.cubicTo({2, 1}, {3, 1}, {3, 2});
              path.arcTo(2, 1, 1.5707963267948966, true, {4, 3});
              path.close();
              c.fill(path, 0x123456);
            }),
            "<path fill-rule=\"evenodd\" fill=\"#123456\" d=\"M0 0Q1 0 1 1C2 1 3 1 3 2A2 1 90 0 1 4 3Z\"/>\n");
}

TEST(SvgCanvas, ClipsNest) {
  EXPECT_EQ(drawn([](Canvas& c) {
              c.pushClip(line(0, 0, 1, 1));
              c.stroke(line(0, 0, 1, 1), Pen());
              c.popClip();
            }),
            "<clipPath id=\"c0\"><path clip-rule=\"evenodd\" d=\"M0 0L1 1\"/></clipPath>\n<g clip-path=\"url(#c0)\">\n"
            "<path stroke=\"#000000\" stroke-width=\"0.25\" d=\"M0 0L1 1\"/>\n</g>\n");
}

TEST(SvgCanvas, LongPathsAreSplit) {
  const std::string text = drawn([](Canvas& c) {
    for (int i = 0; i < 5000; ++i) c.stroke(line(i, 0, i, 1), Pen());
  });
  std::size_t elements = 0;
  for (std::size_t at = text.find("<path"); at != std::string::npos; at = text.find("<path", at + 1)) ++elements;
  EXPECT_GT(elements, 5u);
  EXPECT_LT(elements, 50u);
}

}  // namespace
}  // namespace gc::plot
