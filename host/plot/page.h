// Drawing one page: model space fitted onto it, or a layout with its viewports.
#pragma once

#include "host/plot/canvas.h"
#include "host/plot/layouts.h"
#include "host/plot/plot.h"

namespace gc::plot {

// What goes where on the page.
struct Page {
  double widthMm = 0, heightMm = 0;
  GcGeMatrix3d toPage;  // from the block's drawing units to the page
  double mmPerUnit = 1;
};

// Measures what has to be measured and settles size and scale.
Page setUpPage(GcDbDatabase& database, const Layout& layout, const PlotRequest& request);

void drawPage(GcDbDatabase& database, const Layout& layout, const Page& page, uint32_t backgroundRgb, Canvas& canvas,
              PlotReport& report);

}  // namespace gc::plot
