// A page written as SVG while it is drawn: nothing of it is kept in memory.
// Numbers are written with up to four decimals (a ten-thousandth of a millimetre), the same on every machine.
#pragma once

#include <string>

#include "host/plot/canvas.h"

namespace gc::plot {

// Where the text goes.
class ByteSink {
 public:
  virtual ~ByteSink() = default;
  virtual void write(const char* bytes, std::size_t count) = 0;
};

class SvgCanvas : public Canvas {
 public:
  // Begins the picture; `title` (UTF-8) is what viewers show for it. The sink must outlive the canvas.
  SvgCanvas(ByteSink& sink, double widthMm, double heightMm, uint32_t backgroundRgb, const std::string& title);
  SvgCanvas(const SvgCanvas&) = delete;
  SvgCanvas& operator=(const SvgCanvas&) = delete;

  // Ends the picture and hands the last bytes to the sink; nothing may be drawn afterwards.
  void finish();

  void stroke(const Path& path, const Pen& pen) override;
  void fill(const Path& path, uint32_t rgb) override;
  void fill(const Path& path, const Gradient& gradient) override;
  void pushClip(const Path& path) override;
  void popClip() override;

 private:
  void text(const char* chars) { m_out += chars; }
  void number(double value);
  void point(Point p);
  void color(uint32_t rgb);
  // Path data. A move to `from`, where the pen already is, is left out, so that segments join.
  void data(const Path& path, const Point* from = nullptr);
  void closeElement();
  void flushIfLarge();

  ByteSink& m_sink;
  std::string m_out;
  // Strokes that follow each other with the same pen become one element: the head of the open one, and where its
  // data began.
  std::string m_openHead;
  std::size_t m_openData = 0;
  bool m_open = false;
  Point m_penAt;  // where the open element's data ends; meaningful when it is open and solid
  int m_nextId = 0;
};

}  // namespace gc::plot
