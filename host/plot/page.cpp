#include "host/plot/page.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "db/database.h"
#include "db/entity.h"
#include "host/db/core/header.h"
#include "host/plot/boundscanvas.h"
#include "host/plot/worlddraw.h"

namespace gc::plot {

namespace {

constexpr double kModelSideMm = 400;  // the longer side of a page made for a drawing
constexpr double kMarginMm = 5;

// Keeps the outline of what is drawn on it.
class OutlineCanvas : public Canvas {
 public:
  Path outline;
  void stroke(const Path& path, const Pen&) override {
    if (outline.isEmpty()) outline = path;
  }
  void fill(const Path& path, uint32_t) override { stroke(path, Pen()); }
  void fill(const Path& path, const Gradient&) override { stroke(path, Pen()); }
  void pushClip(const Path&) override {}
  void popClip() override {}
};

GcGeMatrix3d unitsToPage(double scale, double left, double bottomFromTop) {
  GcGeMatrix3d m;
  m.setToScaling(GcGeScale3d(scale, -scale, scale));
  m.entry[0][3] = left;
  m.entry[1][3] = bottomFromTop;
  return m;
}

Box boundsOf(GcDbDatabase& database, GcDbObjectId block, uint32_t backgroundRgb) {
  BoundsCanvas canvas;
  Looks looks(database, backgroundRgb);
  PlotDraw draw(canvas, looks, Projection(), true);
  for (const GcDbObjectId id : drawOrderOf(block)) {
    Viewport viewport;
    if (readViewport(id, viewport)) {
      Path corners;
      corners.moveTo({viewport.center.x - viewport.width / 2, viewport.center.y - viewport.height / 2});
      corners.lineTo({viewport.center.x + viewport.width / 2, viewport.center.y + viewport.height / 2});
      canvas.stroke(corners, Pen());
    } else {
      draw.draw(id);
    }
  }
  return canvas.bounds();
}

Path rectangle(const Box& box) {
  Path path;
  path.moveTo({box.minX, box.minY});
  path.lineTo({box.maxX, box.minY});
  path.lineTo({box.maxX, box.maxY});
  path.lineTo({box.minX, box.maxY});
  path.close();
  return path;
}

Page fitPage(Box box, const PlotRequest& request) {
  if (box.isEmpty()) box = {0, 0, 1, 1};
  const double greatest = std::max(box.width(), box.height());
  // A single point or a straight line still gets a page around it.
  const double least = greatest > 0 ? greatest * 0.1 : 1;
  const double width = std::max(box.width(), least), height = std::max(box.height(), least);
  Page page;
  page.widthMm = request.widthMm;
  page.heightMm = request.heightMm;
  if (!(page.widthMm > 0) || !(page.heightMm > 0)) {
    const double scale = kModelSideMm / std::max(width, height);
    page.widthMm = std::ceil(width * scale + 2 * kMarginMm);
    page.heightMm = std::ceil(height * scale + 2 * kMarginMm);
  }
  const double margin = std::min({kMarginMm, page.widthMm / 10, page.heightMm / 10});
  page.mmPerUnit = std::min((page.widthMm - 2 * margin) / width, (page.heightMm - 2 * margin) / height);
  page.toPage = unitsToPage(page.mmPerUnit, page.widthMm / 2 - page.mmPerUnit * (box.minX + box.width() / 2),
                            page.heightMm / 2 + page.mmPerUnit * (box.minY + box.height() / 2));
  return page;
}

class PageDrawer {
 public:
  PageDrawer(GcDbDatabase& database, const Page& page, Looks& looks, Canvas& canvas, PlotReport& report)
      : m_database(database), m_page(page), m_looks(looks), m_canvas(canvas), m_report(report) {
    m_linetypeScale = database.header().real(GC_T("$LTSCALE"), 1);
    if (!(m_linetypeScale > 0)) m_linetypeScale = 1;
    m_paperDashes = database.header().integer(GC_T("$PSLTSCALE"), 1) != 0;
  }

  void drawBlock(GcDbObjectId block, bool isModel) {
    Projection projection;
    projection.toPage = m_page.toPage;
    projection.dashScale = m_linetypeScale * m_page.mmPerUnit;
    projection.visible = {0, 0, m_page.widthMm, m_page.heightMm};
    PlotDraw draw(m_canvas, m_looks, projection);
    for (const GcDbObjectId id : drawOrderOf(block)) {
      Viewport viewport;
      if (!isModel && readViewport(id, viewport)) {
        drawViewport(id, viewport);
      } else {
        draw.draw(id);
      }
    }
    m_report.primitives += draw.primitiveCount();
    m_report.denseHatches += draw.denseHatchCount();
  }

 private:
  void drawViewport(GcDbObjectId id, const Viewport& viewport) {
    Box box;
    for (const double side : {-0.5, 0.5}) {
      const GcGePoint3d corner = m_page.toPage * GcGePoint3d(viewport.center.x + side * viewport.width,
                                                             viewport.center.y + side * viewport.height, 0);
      box.add({corner.x, corner.y});
    }
    if (viewport.isOn) {
      m_canvas.pushClip(clipOf(viewport, box));
      drawModel(viewport, box);
      m_canvas.popClip();
      ++m_report.viewports;
    }
    drawBorder(id, box);
  }
  void drawModel(const Viewport& viewport, const Box& box) {
    Projection projection;
    projection.toPage = m_page.toPage * viewport.toPaper;
    projection.dashScale = m_linetypeScale * m_page.mmPerUnit * (m_paperDashes ? 1 : viewport.scale);
    projection.visible = box;
    m_looks.freezeAlso(viewport.frozenLayers);
    PlotDraw draw(m_canvas, m_looks, projection);
    for (const GcDbObjectId id : drawOrderOf(m_database.modelSpaceId())) draw.draw(id);
    m_report.primitives += draw.primitiveCount();
    m_report.denseHatches += draw.denseHatchCount();
    m_looks.freezeAlso({});
  }
  Path clipOf(const Viewport& viewport, const Box& box) {
    OutlineCanvas canvas;
    if (!viewport.clipEntity.isNull()) {
      Projection projection;
      projection.toPage = m_page.toPage;
      PlotDraw(canvas, m_looks, projection).draw(viewport.clipEntity);
    }
    return canvas.outline.isEmpty() ? rectangle(box) : canvas.outline;
  }
  // The frame of a viewport is drawn like any entity of its layer.
  void drawBorder(GcDbObjectId id, const Box& box) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return;
    Traits traits;
    traits.color = entity->color();
    traits.layer = entity->layerId();
    traits.lineWeight = entity->lineWeight();
    const bool visible = entity->visibility() == GcDb::kVisible;
    ignore(entity->close());
    const Look look = m_looks.resolve(traits, m_looks.outermost());
    if (!visible || m_looks.isFrozen(look.layer) || !m_looks.isShown(look.layer)) return;
    m_canvas.stroke(rectangle(box), Pen{look.rgb, look.widthMm, {}});
  }

  GcDbDatabase& m_database;
  const Page& m_page;
  Looks& m_looks;
  Canvas& m_canvas;
  PlotReport& m_report;
  double m_linetypeScale = 1;
  bool m_paperDashes = true;
};

}  // namespace

Page setUpPage(GcDbDatabase& database, const Layout& layout, const PlotRequest& request) {
  if (layout.isModel || !(layout.paperWidthMm > 0) || !(layout.paperHeightMm > 0)) {
    return fitPage(boundsOf(database, layout.block, request.backgroundRgb), request);
  }
  Page page;
  page.widthMm = layout.paperWidthMm;
  page.heightMm = layout.paperHeightMm;
  double factor = 1;
  if (request.widthMm > 0 && request.heightMm > 0) {
    factor = std::min(request.widthMm / page.widthMm, request.heightMm / page.heightMm);
    page.widthMm = request.widthMm;
    page.heightMm = request.heightMm;
  }
  page.mmPerUnit = layout.mmPerUnit * factor;
  const double left = (page.widthMm - layout.paperWidthMm * factor) / 2;
  const double bottom = (page.heightMm - layout.paperHeightMm * factor) / 2;
  page.toPage = unitsToPage(page.mmPerUnit, left + layout.marginLeftMm * factor,
                            page.heightMm - bottom - layout.marginBottomMm * factor);
  return page;
}

void drawPage(GcDbDatabase& database, const Layout& layout, const Page& page, uint32_t backgroundRgb, Canvas& canvas,
              PlotReport& report) {
  report.widthMm = page.widthMm;
  report.heightMm = page.heightMm;
  report.scale = page.mmPerUnit;
  Looks looks(database, backgroundRgb);
  PageDrawer(database, page, looks, canvas, report).drawBlock(layout.block, layout.isModel);
}

}  // namespace gc::plot
