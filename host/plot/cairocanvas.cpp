#include "host/plot/cairocanvas.h"

#ifdef GC_HAVE_CAIRO

#include <cairo-pdf.h>
#include <cairo.h>

#include <cmath>
#include <vector>

#include "host/rx/math/elementary.h"

namespace gc::plot {

namespace {

constexpr double kPointsPerMm = 72 / 25.4;
constexpr double kMmPerInch = 25.4;

cairo_status_t appendBytes(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

class Page : public CairoPage, private Canvas {
 public:
  Page(CairoFormat format, double widthMm, double heightMm, double dotsPerInch, uint32_t backgroundRgb)
      : m_format(format) {
    double scale = kPointsPerMm;
    if (format == CairoFormat::Pdf) {
      m_surface = cairo_pdf_surface_create_for_stream(appendBytes, &m_bytes, widthMm * scale, heightMm * scale);
      // The same drawing gives the same file.
      cairo_pdf_surface_set_metadata(m_surface, CAIRO_PDF_METADATA_CREATE_DATE, "2000-01-01T00:00:00Z");
    } else {
      scale = dotsPerInch / kMmPerInch;
      m_surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(std::lround(widthMm * scale)),
                                             static_cast<int>(std::lround(heightMm * scale)));
    }
    m_cairo = cairo_create(m_surface);
    cairo_scale(m_cairo, scale, scale);
    setColor(backgroundRgb);
    cairo_paint(m_cairo);
    cairo_set_line_join(m_cairo, CAIRO_LINE_JOIN_ROUND);
    cairo_set_fill_rule(m_cairo, CAIRO_FILL_RULE_EVEN_ODD);
  }
  ~Page() override {
    cairo_destroy(m_cairo);
    cairo_surface_destroy(m_surface);
  }
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;

  Canvas& canvas() override { return *this; }

  FileStatus finish(std::string& bytes) override {
    cairo_status_t status = cairo_status(m_cairo);
    if (m_format == CairoFormat::Pdf) {
      cairo_show_page(m_cairo);
      cairo_surface_finish(m_surface);
      if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(m_surface);
    } else if (status == CAIRO_STATUS_SUCCESS) {
      status = cairo_surface_write_to_png_stream(m_surface, appendBytes, &m_bytes);
    }
    if (status != CAIRO_STATUS_SUCCESS) {
      return {FileError::Other, std::string("cannot draw the picture: ") + cairo_status_to_string(status)};
    }
    bytes.swap(m_bytes);
    return {};
  }

 private:
  void setColor(uint32_t rgb) {
    cairo_set_source_rgb(m_cairo, ((rgb >> 16) & 255) / 255.0, ((rgb >> 8) & 255) / 255.0, (rgb & 255) / 255.0);
  }

  void arc(Point from, const PathStep& step) {
    // The arc on the unit circle of its own axes: where its ends lie there gives centre and angles.
    const double c = gc::cos(step.turnRad), s = gc::sin(step.turnRad);
    const auto toUnit = [&](Point p) {
      return Point{(c * p.x + s * p.y) / step.radiusX, (-s * p.x + c * p.y) / step.radiusY};
    };
    const Point a = toUnit(from), b = toUnit(step.to);
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double half = gc::hypot(dx, dy) / 2;
    if (!(half > 0)) return;
    const double away = half < 1 ? std::sqrt(1 - half * half) / half : 0;
    const double side = step.growing ? 1 : -1;
    const Point center{(a.x + b.x) / 2 - side * away * dy / 2, (a.y + b.y) / 2 + side * away * dx / 2};
    cairo_save(m_cairo);
    cairo_rotate(m_cairo, step.turnRad);
    cairo_scale(m_cairo, step.radiusX, step.radiusY);
    const double start = gc::atan2(a.y - center.y, a.x - center.x), end = gc::atan2(b.y - center.y, b.x - center.x);
    if (step.growing) {
      cairo_arc(m_cairo, center.x, center.y, 1, start, end);
    } else {
      cairo_arc_negative(m_cairo, center.x, center.y, 1, start, end);
    }
    cairo_restore(m_cairo);
  }

  void trace(const Path& path) {
    cairo_new_path(m_cairo);
    Point at, start;
    for (const PathStep& step : path.steps()) {
      switch (step.kind) {
        case PathStep::kMove:
          cairo_move_to(m_cairo, step.to.x, step.to.y);
          start = step.to;
          break;
        case PathStep::kLine: cairo_line_to(m_cairo, step.to.x, step.to.y); break;
        case PathStep::kQuad: {
          const Point& q = step.control1;
          cairo_curve_to(m_cairo, at.x + (q.x - at.x) * 2 / 3, at.y + (q.y - at.y) * 2 / 3,
                         step.to.x + (q.x - step.to.x) * 2 / 3, step.to.y + (q.y - step.to.y) * 2 / 3, step.to.x,
                         step.to.y);
          break;
        }
        case PathStep::kCubic:
          cairo_curve_to(m_cairo, step.control1.x, step.control1.y, step.control2.x, step.control2.y, step.to.x,
                         step.to.y);
          break;
        case PathStep::kArc: arc(at, step); break;
        case PathStep::kClose: cairo_close_path(m_cairo); break;
      }
      at = step.kind == PathStep::kClose ? start : step.to;
    }
    const bool isDot = path.steps().size() == 1;
    if (isDot) cairo_line_to(m_cairo, at.x, at.y);
  }

  void stroke(const Path& path, const Pen& pen) override {
    if (path.isEmpty()) return;
    trace(path);
    setColor(pen.rgb);
    cairo_set_line_width(m_cairo, pen.widthMm);
    std::vector<double> dashes(pen.dashes.begin(), pen.dashes.end());
    for (double& each : dashes) each = each > 0 ? each : pen.widthMm;
    cairo_set_line_cap(m_cairo, dashes.empty() ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
    cairo_set_dash(m_cairo, dashes.data(), static_cast<int>(dashes.size()), 0);
    cairo_stroke(m_cairo);
  }
  void fill(const Path& path, uint32_t rgb) override {
    trace(path);
    setColor(rgb);
    cairo_fill(m_cairo);
  }
  void fill(const Path& path, const Gradient& gradient) override {
    trace(path);
    cairo_pattern_t* pattern =
        cairo_pattern_create_linear(gradient.from.x, gradient.from.y, gradient.to.x, gradient.to.y);
    const auto stop = [&](double offset, uint32_t rgb) {
      cairo_pattern_add_color_stop_rgb(pattern, offset, ((rgb >> 16) & 255) / 255.0, ((rgb >> 8) & 255) / 255.0,
                                       (rgb & 255) / 255.0);
    };
    stop(0, gradient.rgbFrom);
    stop(gradient.mirrored ? 0.5 : 1, gradient.rgbTo);
    if (gradient.mirrored) stop(1, gradient.rgbFrom);
    cairo_set_source(m_cairo, pattern);
    cairo_fill(m_cairo);
    cairo_pattern_destroy(pattern);
  }
  void pushClip(const Path& path) override {
    cairo_save(m_cairo);
    trace(path);
    cairo_clip(m_cairo);
  }
  void popClip() override { cairo_restore(m_cairo); }

  CairoFormat m_format;
  std::string m_bytes;
  cairo_surface_t* m_surface = nullptr;
  cairo_t* m_cairo = nullptr;
};

}  // namespace

std::unique_ptr<CairoPage> makeCairoPage(CairoFormat format, double widthMm, double heightMm, double dotsPerInch,
                                         uint32_t backgroundRgb) {
  return std::make_unique<Page>(format, widthMm, heightMm, dotsPerInch, backgroundRgb);
}

bool hasCairo() { return true; }

}  // namespace gc::plot

#else

namespace gc::plot {

std::unique_ptr<CairoPage> makeCairoPage(CairoFormat, double, double, double, uint32_t) { return nullptr; }

bool hasCairo() { return false; }

}  // namespace gc::plot

#endif
