// Pictures of drawings: model space or a layout's page as SVG, and as PNG and PDF where cairo is installed.
// Units:  page sizes in millimetres.
// Errors: eKeyNotFound for a layout the drawing does not have; files report by gc::FileStatus.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/plot/svgcanvas.h"
#include "host/rx/file/file_status.h"
#include "host/rx/view.h"
#include "rx/gcstatus.h"

class GcDbDatabase;

namespace gc::plot {

struct PlotRequest {
  GcText layout;  // its name, without regard to case; empty or "Model": model space
  // 0: the layout's own paper; for model space a page in the shape of what is drawn, its longer side 400 mm.
  double widthMm = 0;
  double heightMm = 0;
  uint32_t backgroundRgb = 0xFFFFFF;
  double dotsPerInch = 150;  // of PNG
};

// What came of it.
struct PlotReport {
  double widthMm = 0;
  double heightMm = 0;
  double scale = 0;        // millimetres of the page for one drawing unit (of the model, or of the paper)
  int64_t primitives = 0;  // lines, curves, fills, lines of text
  int viewports = 0;
  int denseHatches = 0;  // shown as fills: their patterns have too many lines
};

// "A4", "a3-landscape", "A1-portrait", "420x297": false for anything else.
bool parseSize(std::string_view text, double& widthMm, double& heightMm);

// "white", "black", "#rrggbb": false for anything else.
bool parseBackground(std::string_view text, uint32_t& rgb);

// The drawing's layouts in the order of their tabs, "Model" first.
std::vector<GcText> layoutNames(GcDbDatabase& database);

Gcad::ErrorStatus plotToSvg(GcDbDatabase& database, const PlotRequest& request, ByteSink& sink, PlotReport& report);

// Whether this program can write the file's format, told by its extension: svg always, png and pdf with cairo.
bool canPlotTo(std::string_view path);
// The formats' names for messages: ".svg", or ".svg, .png or .pdf".
const char* formatsToPlotTo();

// Writes the file as a whole or not at all, in the format of its extension. `status` is the drawing's part of what
// happened; a format that cannot be written is FileError::Other.
FileStatus plotToFile(GcDbDatabase& database, const PlotRequest& request, const std::string& path, PlotReport& report,
                      Gcad::ErrorStatus& status);

}  // namespace gc::plot
