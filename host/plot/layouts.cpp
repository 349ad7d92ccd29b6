#include "host/plot/layouts.h"

#include <algorithm>
#include <cmath>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/layout.h"
#include "db/viewport.h"
#include "host/db/core/viewspace.h"
#include "host/db/objects/draworder.h"

namespace gc::plot {

namespace {

constexpr double kMmPerInch = 25.4;

Layout readLayout(const GcDbLayout& from) {
  Layout layout;
  layout.tabOrder = from.getTabOrder();
  layout.block = from.getBlockTableRecordId();
  GcGePoint2d min, max;
  from.getLimits(min, max);
  layout.limitsMin = {min.x, min.y, 0};
  layout.limitsMax = {max.x, max.y, 0};

  double width = from.plotPaperSize().x, height = from.plotPaperSize().y;
  double margins[4];  // left, bottom, right, top of the unturned paper
  from.getPlotPaperMargins(margins[0], margins[1], margins[2], margins[3]);
  const int quarterTurns = from.plotRotation();  // counter-clockwise
  layout.marginLeftMm = margins[quarterTurns == 0 ? 0 : quarterTurns == 1 ? 3 : quarterTurns == 2 ? 2 : 1];
  layout.marginBottomMm = margins[quarterTurns == 0 ? 1 : quarterTurns == 1 ? 0 : quarterTurns == 2 ? 3 : 2];
  if (quarterTurns % 2 == 1) std::swap(width, height);
  layout.paperWidthMm = width;
  layout.paperHeightMm = height;
  const double unit = from.plotPaperUnits() == GcDbPlotSettings::kInches ? kMmPerInch : 1;
  double paper = 0, drawing = 0;
  from.getCustomPrintScale(paper, drawing);
  if (paper > 0 && drawing > 0) layout.mmPerUnit = unit * paper / drawing;
  return layout;
}

}  // namespace

std::vector<Layout> layoutsOf(GcDbDatabase& database) {
  std::vector<Layout> layouts;
  GcDbDictionary* dictionary = nullptr;
  if (gcdbOpenObject(dictionary, database.layoutDictionaryId(), GcDb::kForRead) == Gcad::eOk) {
    for (const GcDbDictionaryEntry& entry : dictionary->entries()) {
      GcDbLayout* object = nullptr;
      if (gcdbOpenObject(object, entry.id, GcDb::kForRead) != Gcad::eOk) continue;
      Layout layout = readLayout(*object);
      ignore(object->close());
      layout.name = GcText(view(entry.key));
      layout.isModel = layout.block == database.modelSpaceId();
      layouts.push_back(layout);
    }
    ignore(dictionary->close());
  }
  const auto has = [&](GcDbObjectId block) {
    return std::any_of(layouts.begin(), layouts.end(), [&](const Layout& each) { return each.block == block; });
  };
  if (!has(database.modelSpaceId())) {
    layouts.push_back({});
    layouts.back().name = GC_T("Model");
    layouts.back().isModel = true;
    layouts.back().block = database.modelSpaceId();
  }
  if (!has(database.paperSpaceId()) && !drawOrderOf(database.paperSpaceId()).empty()) {
    layouts.push_back({});
    layouts.back().name = GC_T("Layout1");
    layouts.back().tabOrder = 1;
    layouts.back().block = database.paperSpaceId();
  }
  std::stable_sort(layouts.begin(), layouts.end(), [](const Layout& a, const Layout& b) {
    return a.isModel != b.isModel ? a.isModel : a.tabOrder < b.tabOrder;
  });
  return layouts;
}

namespace {

// Files leave the numbers of viewports at 0 while their layout is not shown: the first of a block is the sheet then.
bool isSheet(const GcDbViewport& viewport) {
  if (viewport.number() != 0) return viewport.isSheet();
  GcDbBlockTableRecord* block = nullptr;
  if (gcdbOpenObject(block, viewport.ownerId(), GcDb::kForRead) != Gcad::eOk) return false;
  GcDbObjectId first;
  for (const GcDbObjectId id : block->entities()) {
    if (!first.isNull() || !id.isValid() || id.isErased() || id.objectClass() != GcDbViewport::desc()) continue;
    first = id;
  }
  ignore(block->close());
  return first == viewport.objectId();
}

void fill(const GcDbViewport& from, Viewport& viewport) {
  viewport.center = from.centerPoint();
  viewport.width = from.width();
  viewport.height = from.height();
  viewport.isOn = from.number() == 0 ? !from.isSwitchedOff() : from.isOn();
  if (from.isNonRectClipOn()) viewport.clipEntity = from.nonRectClipEntityId();
  for (const GcDbObjectId layer : from.frozenLayers()) viewport.frozenLayers.push_back(layer);
  viewport.scale = from.customScale();
  const GcGePoint2d seen = from.viewCenter();
  GcGeMatrix3d scale, place;
  scale.setToScaling(viewport.scale);
  place.setToTranslation(GcGeVector3d(viewport.center.x, viewport.center.y, 0) -
                         GcGeVector3d(seen.x, seen.y, 0) * viewport.scale);
  viewport.toPaper =
      place * scale * gcdbDisplayToWorld(from.viewTarget(), from.viewDirection(), from.twistAngle()).inverse();
}

}  // namespace

bool readViewport(GcDbObjectId id, Viewport& viewport) {
  GcDbViewport* open = nullptr;
  if (gcdbOpenObject(open, id, GcDb::kForRead) != Gcad::eOk) return false;
  viewport = Viewport();
  const bool isWindow = !isSheet(*open) && open->width() > 0 && open->height() > 0 && open->viewHeight() > 0;
  if (isWindow) fill(*open, viewport);
  ignore(open->close());
  return isWindow;
}

std::vector<GcDbObjectId> drawOrderOf(GcDbObjectId block) {
  std::vector<GcDbObjectId> order;
  for (const GcDbSortPair& each : gcdbDrawingOrder(block)) order.push_back(each.entity);
  return order;
}

}  // namespace gc::plot
