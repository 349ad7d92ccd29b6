#include "host/plot/svgcanvas.h"

#include <cmath>
#include <numbers>

namespace gc::plot {

namespace {

constexpr std::size_t kFlushAt = 1 << 16;
constexpr std::size_t kLongestElement = 1 << 13;  // path data of one element; viewers grow slow on long ones
constexpr double kGreatest = 1e9;                 // mm; beyond it a coordinate is cut to it
constexpr int kDecimals = 4;
constexpr double kUnit = 1e4;

void appendNumber(std::string& out, double value) {
  if (!(std::fabs(value) <= kGreatest)) value = std::isnan(value) ? 0 : std::copysign(kGreatest, value);
  long long scaled = std::llround(value * kUnit);
  if (scaled < 0) {
    out += '-';
    scaled = -scaled;
  }
  char digits[24];
  char* end = digits + sizeof digits;
  char* at = end;
  int decimals = kDecimals;
  while (decimals > 0 && scaled % 10 == 0) {
    scaled /= 10;
    --decimals;
  }
  const bool fraction = decimals > 0;
  do {
    *--at = static_cast<char>('0' + scaled % 10);
    scaled /= 10;
    if (fraction && --decimals == 0) *--at = '.';
  } while (scaled > 0 || decimals > 0);
  if (*at == '.') *--at = '0';
  out.append(at, end);
}

void appendEscaped(std::string& out, const std::string& text) {
  for (const char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      default:
        if (static_cast<unsigned char>(c) >= 0x20) out += c;
    }
  }
}

void appendColor(std::string& out, uint32_t rgb) {
  static constexpr char kDigits[] = "0123456789abcdef";
  out += '#';
  for (int shift = 20; shift >= 0; shift -= 4) out += kDigits[(rgb >> shift) & 15];
}

}  // namespace

SvgCanvas::SvgCanvas(ByteSink& sink, double widthMm, double heightMm, uint32_t backgroundRgb, const std::string& title)
    : m_sink(sink) {
  text("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"");
  number(widthMm);
  text("mm\" height=\"");
  number(heightMm);
  text("mm\" viewBox=\"0 0 ");
  number(widthMm);
  text(" ");
  number(heightMm);
  text("\">\n");
  if (!title.empty()) {
    text("<title>");
    appendEscaped(m_out, title);
    text("</title>\n");
  }
  text("<rect width=\"100%\" height=\"100%\" fill=\"");
  color(backgroundRgb);
  text("\"/>\n<g fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\">\n");
}

void SvgCanvas::finish() {
  closeElement();
  text("</g>\n</svg>\n");
  m_sink.write(m_out.data(), m_out.size());
  m_out.clear();
}

void SvgCanvas::number(double value) { appendNumber(m_out, value); }

void SvgCanvas::point(Point p) {
  number(p.x);
  m_out += ' ';
  number(p.y);
}

void SvgCanvas::color(uint32_t rgb) { appendColor(m_out, rgb); }

void SvgCanvas::data(const Path& path, const Point* from) {
  bool moved = false;  // a move without a line after it: a dot
  const auto dot = [&] {
    if (moved) text("h0");
    moved = false;
  };
  for (const PathStep& step : path.steps()) {
    const bool joins = from != nullptr && step.kind == PathStep::kMove && step.to == *from && path.steps().size() > 1;
    from = nullptr;
    if (joins) continue;
    if (step.kind == PathStep::kMove) dot();
    moved = step.kind == PathStep::kMove;
    switch (step.kind) {
      case PathStep::kMove: m_out += 'M'; break;
      case PathStep::kLine: m_out += 'L'; break;
      case PathStep::kQuad:
        m_out += 'Q';
        point(step.control1);
        m_out += ' ';
        break;
      case PathStep::kCubic:
        m_out += 'C';
        point(step.control1);
        m_out += ' ';
        point(step.control2);
        m_out += ' ';
        break;
      case PathStep::kArc:
        m_out += 'A';
        number(step.radiusX);
        m_out += ' ';
        number(step.radiusY);
        m_out += ' ';
        number(step.turnRad * 180 / std::numbers::pi);
        text(step.growing ? " 0 1 " : " 0 0 ");
        break;
      case PathStep::kClose: m_out += 'Z'; continue;
    }
    point(step.to);
  }
  dot();
}

void SvgCanvas::stroke(const Path& path, const Pen& pen) {
  if (path.isEmpty()) return;
  std::string head = "<path stroke=\"";
  appendColor(head, pen.rgb);
  head += "\" stroke-width=\"";
  appendNumber(head, pen.widthMm);
  if (!pen.dashes.empty()) {
    // Without round ends, or they would fill the gaps; a dot is then as long as the pen is wide.
    head += "\" stroke-linecap=\"butt\" stroke-dasharray=\"";
    for (std::size_t i = 0; i < pen.dashes.size(); ++i) {
      if (i > 0) head += ' ';
      appendNumber(head, i % 2 == 0 && pen.dashes[i] <= 0 ? pen.widthMm : pen.dashes[i]);
    }
  }
  head += "\" d=\"";
  bool continues = m_open && pen.dashes.empty();
  if (!m_open || head != m_openHead || m_out.size() - m_openData > kLongestElement) {
    continues = false;
    closeElement();
    m_out += head;
    m_openHead.swap(head);
    m_openData = m_out.size();
    m_open = true;
  }
  data(path, continues ? &m_penAt : nullptr);
  const PathStep& last = path.steps().back();
  m_penAt = last.kind == PathStep::kClose ? Point{NAN, NAN} : last.to;
}

void SvgCanvas::fill(const Path& path, uint32_t rgb) {
  if (path.isEmpty()) return;
  closeElement();
  text("<path fill-rule=\"evenodd\" fill=\"");
  color(rgb);
  text("\" d=\"");
  data(path);
  text("\"/>\n");
  flushIfLarge();
}

void SvgCanvas::fill(const Path& path, const Gradient& gradient) {
  if (path.isEmpty()) return;
  closeElement();
  const std::string id = "g" + std::to_string(m_nextId++);
  m_out += "<linearGradient id=\"" + id + "\" gradientUnits=\"userSpaceOnUse\" x1=\"";
  number(gradient.from.x);
  text("\" y1=\"");
  number(gradient.from.y);
  text("\" x2=\"");
  number(gradient.to.x);
  text("\" y2=\"");
  number(gradient.to.y);
  text("\">");
  const auto stop = [&](const char* offset, uint32_t rgb) {
    text("<stop offset=\"");
    text(offset);
    text("\" stop-color=\"");
    color(rgb);
    text("\"/>");
  };
  stop("0", gradient.rgbFrom);
  stop(gradient.mirrored ? "0.5" : "1", gradient.rgbTo);
  if (gradient.mirrored) stop("1", gradient.rgbFrom);
  m_out += "</linearGradient>\n<path fill-rule=\"evenodd\" fill=\"url(#" + id + ")\" d=\"";
  data(path);
  text("\"/>\n");
  flushIfLarge();
}

void SvgCanvas::pushClip(const Path& path) {
  closeElement();
  const std::string id = "c" + std::to_string(m_nextId++);
  m_out += "<clipPath id=\"" + id + "\"><path clip-rule=\"evenodd\" d=\"";
  data(path);
  m_out += "\"/></clipPath>\n<g clip-path=\"url(#" + id + ")\">\n";
}

void SvgCanvas::popClip() {
  closeElement();
  text("</g>\n");
}

void SvgCanvas::closeElement() {
  if (m_open) text("\"/>\n");
  m_open = false;
  flushIfLarge();
}

void SvgCanvas::flushIfLarge() {
  if (m_open || m_out.size() < kFlushAt) return;
  m_sink.write(m_out.data(), m_out.size());
  m_out.clear();
}

}  // namespace gc::plot
