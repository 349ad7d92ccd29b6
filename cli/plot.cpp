#include "cli/plot.h"

#include <cstdio>

#include "cli/drawingfile.h"
#include "cli/exitcode.h"
#include "host/plot/plot.h"

namespace cli {

namespace {

// "out.svg" and the layout "Plan 1" make "out-Plan 1.svg"; characters no file name has become underscores.
std::string pathForLayout(const std::string& path, GcView layout) {
  std::string name = toUtf8(layout);
  for (char& c : name)
    if (std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos) c = '_';
  const size_t dot = path.rfind('.');
  return path.substr(0, dot) + "-" + name + path.substr(dot);
}

// Fills in what the options say of the page; false after a complaint.
bool readRequest(const PlotOptions& options, gc::plot::PlotRequest& request) {
  if (!gc::plot::canPlotTo(options.out)) {
    complain("gcad: " + options.out + ": pictures are written as " + gc::plot::formatsToPlotTo() + "\n");
    return false;
  }
  if (!options.size.empty() && !gc::plot::parseSize(options.size, request.widthMm, request.heightMm)) {
    complain("gcad: --size " + options.size + ": a paper such as A4 or A3-landscape, or millimetres such as 420x297\n");
    return false;
  }
  if (!options.background.empty() && !gc::plot::parseBackground(options.background, request.backgroundRgb)) {
    complain("gcad: --background " + options.background + ": white, black or #rrggbb\n");
    return false;
  }
  request.layout = fromUtf8(options.layout);
  return true;
}

int plotOne(GcDbDatabase& database, const PlotOptions& options, const gc::plot::PlotRequest& request,
            const std::string& path, Terminal& terminal) {
  if (!mayWrite(path, options.force)) return kCannotWrite;
  gc::plot::PlotReport report;
  Gcad::ErrorStatus status = Gcad::eOk;
  const gc::FileStatus file = gc::plot::plotToFile(database, request, path, report, status);
  if (status == Gcad::eKeyNotFound) {
    complain("gcad: " + options.file + " has no layout " + toUtf8(request.layout) + "\n");
    return kUsage;
  }
  if (!file.ok()) {
    complain("gcad: " + file.message() + "\n");
    return kCannotWrite;
  }
  char line[160];
  std::snprintf(line, sizeof line, ": %.0f x %.0f mm, %lld primitives\n", report.widthMm, report.heightMm,
                static_cast<long long>(report.primitives));
  terminal.write(path + line);
  if (report.denseHatches > 0)
    complain("gcad: hatches too dense for their pattern, shown as fills: " + std::to_string(report.denseHatches) +
             "\n");
  return kDone;
}

}  // namespace

int plot(Terminal& terminal, const PlotOptions& options) {
  gc::plot::PlotRequest request;
  if (!readRequest(options, request)) return kUsage;
  const std::unique_ptr<GcDbDatabase> database = openDrawingFile(options.file);
  if (database == nullptr) return kCannotRead;
  if (!options.allLayouts) return plotOne(*database, options, request, options.out, terminal);
  for (const GcText& layout : gc::plot::layoutNames(*database)) {
    request.layout = layout;
    const int code = plotOne(*database, options, request, pathForLayout(options.out, layout), terminal);
    if (code != kDone) return code;
  }
  return kDone;
}

}  // namespace cli
