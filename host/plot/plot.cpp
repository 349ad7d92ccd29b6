#include "host/plot/plot.h"

#include <memory>

#include "db/database.h"
#include "host/plot/cairocanvas.h"
#include "host/plot/layouts.h"
#include "host/plot/page.h"
#include "host/rx/file/atomic_file.h"

namespace gc::plot {

namespace {

class FileSink : public ByteSink {
 public:
  FileStatus open(const std::string& path) { return m_status = m_file.open(path); }
  void write(const char* bytes, std::size_t count) override {
    if (m_status.ok()) m_status = m_file.write(bytes, count);
  }
  FileStatus commit() { return m_status.ok() ? m_file.commit() : m_status; }

 private:
  AtomicFile m_file;
  FileStatus m_status;
};

}  // namespace

std::vector<GcText> layoutNames(GcDbDatabase& database) {
  std::vector<GcText> names;
  for (Layout& layout : layoutsOf(database)) names.push_back(std::move(layout.name));
  return names;
}

namespace {

enum class Format { None, Svg, Png, Pdf };

Format formatOf(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return Format::None;
  std::string extension(path.substr(dot + 1));
  for (char& c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  if (extension == "svg") return Format::Svg;
  return extension == "png" ? Format::Png : extension == "pdf" ? Format::Pdf : Format::None;
}

bool findLayout(GcDbDatabase& database, const GcText& name, Layout& found) {
  for (Layout& each : layoutsOf(database)) {
    if (!(name.empty() ? each.isModel : equalNoCase(each.name, name))) continue;
    found = std::move(each);
    return true;
  }
  return false;
}

FileStatus plotToCairoFile(GcDbDatabase& database, const PlotRequest& request, CairoFormat format,
                           const std::string& path, PlotReport& report, Gcad::ErrorStatus& status) {
  Layout layout;
  if (!findLayout(database, request.layout, layout)) {
    status = Gcad::eKeyNotFound;
    return {};
  }
  report = PlotReport();
  const Page page = setUpPage(database, layout, request);
  const std::unique_ptr<CairoPage> paper =
      makeCairoPage(format, page.widthMm, page.heightMm, request.dotsPerInch, request.backgroundRgb);
  drawPage(database, layout, page, request.backgroundRgb, paper->canvas(), report);
  status = Gcad::eOk;
  std::string bytes;
  if (FileStatus drawn = paper->finish(bytes); !drawn.ok()) return drawn;
  return writeFileAtomically(path, bytes.data(), bytes.size());
}

}  // namespace

bool canPlotTo(std::string_view path) {
  const Format format = formatOf(path);
  return format == Format::Svg || (format != Format::None && hasCairo());
}

const char* formatsToPlotTo() { return hasCairo() ? ".svg, .png or .pdf" : ".svg"; }

Gcad::ErrorStatus plotToSvg(GcDbDatabase& database, const PlotRequest& request, ByteSink& sink, PlotReport& report) {
  Layout layout;
  if (!findLayout(database, request.layout, layout)) return Gcad::eKeyNotFound;
  report = PlotReport();
  const Page page = setUpPage(database, layout, request);
  SvgCanvas canvas(sink, page.widthMm, page.heightMm, request.backgroundRgb, toUtf8(layout.name));
  drawPage(database, layout, page, request.backgroundRgb, canvas, report);
  canvas.finish();
  return Gcad::eOk;
}

FileStatus plotToFile(GcDbDatabase& database, const PlotRequest& request, const std::string& path, PlotReport& report,
                      Gcad::ErrorStatus& status) {
  status = Gcad::eOk;
  if (!canPlotTo(path)) return {FileError::Other, "cannot write pictures of this kind: " + path};
  const Format format = formatOf(path);
  if (format != Format::Svg) {
    const CairoFormat kind = format == Format::Png ? CairoFormat::Png : CairoFormat::Pdf;
    return plotToCairoFile(database, request, kind, path, report, status);
  }
  FileSink sink;
  if (FileStatus opened = sink.open(path); !opened.ok()) return opened;
  status = plotToSvg(database, request, sink, report);
  if (status != Gcad::eOk) return {};
  return sink.commit();
}

}  // namespace gc::plot
