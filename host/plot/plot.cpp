#include "host/plot/plot.h"

#include <algorithm>

#include "db/database.h"
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

Gcad::ErrorStatus plotToSvg(GcDbDatabase& database, const PlotRequest& request, ByteSink& sink, PlotReport& report) {
  const std::vector<Layout> layouts = layoutsOf(database);
  const auto layout = std::find_if(layouts.begin(), layouts.end(), [&](const Layout& each) {
    return request.layout.empty() ? each.isModel : equalNoCase(each.name, request.layout);
  });
  if (layout == layouts.end()) return Gcad::eKeyNotFound;
  report = PlotReport();
  const Page page = setUpPage(database, *layout, request);
  SvgCanvas canvas(sink, page.widthMm, page.heightMm, request.backgroundRgb, toUtf8(layout->name));
  drawPage(database, *layout, page, request.backgroundRgb, canvas, report);
  canvas.finish();
  return Gcad::eOk;
}

FileStatus plotToSvgFile(GcDbDatabase& database, const PlotRequest& request, const std::string& path,
                         PlotReport& report, Gcad::ErrorStatus& status) {
  FileSink sink;
  if (FileStatus opened = sink.open(path); !opened.ok()) return opened;
  status = plotToSvg(database, request, sink, report);
  if (status != Gcad::eOk) return {};
  return sink.commit();
}

}  // namespace gc::plot
