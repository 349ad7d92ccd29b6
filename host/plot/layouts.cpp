#include "host/plot/layouts.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "db/database.h"
#include "db/dictionary.h"
#include "host/plot/objectgroups.h"

namespace gc::plot {

namespace {

constexpr double kMmPerInch = 25.4;

Layout readLayout(const ObjectGroups& groups) {
  constexpr const char* kSettings = "AcDbPlotSettings";
  constexpr const char* kLayout = "AcDbLayout";
  Layout layout;
  layout.name = groups.text(1, kLayout);
  layout.tabOrder = static_cast<int>(groups.integer(71, 0, kLayout));
  layout.block = groups.id(330, kLayout);
  layout.limitsMin = groups.point(10, {}, kLayout);
  layout.limitsMax = groups.point(11, {}, kLayout);

  double width = groups.real(44, 0, kSettings), height = groups.real(45, 0, kSettings);
  // Left, bottom, right, top of the unturned paper.
  const double margins[4] = {groups.real(40, 0, kSettings), groups.real(41, 0, kSettings),
                             groups.real(42, 0, kSettings), groups.real(43, 0, kSettings)};
  const int quarterTurns = static_cast<int>(groups.integer(73, 0, kSettings)) & 3;  // counter-clockwise
  layout.marginLeftMm = margins[quarterTurns == 0 ? 0 : quarterTurns == 1 ? 3 : quarterTurns == 2 ? 2 : 1];
  layout.marginBottomMm = margins[quarterTurns == 0 ? 1 : quarterTurns == 1 ? 0 : quarterTurns == 2 ? 3 : 2];
  if (quarterTurns % 2 == 1) std::swap(width, height);
  layout.paperWidthMm = width;
  layout.paperHeightMm = height;
  const double unit = groups.integer(72, 1, kSettings) == 0 ? kMmPerInch : 1;
  const double paper = groups.real(142, 1, kSettings), drawing = groups.real(143, 1, kSettings);
  if (paper > 0 && drawing > 0) layout.mmPerUnit = unit * paper / drawing;
  return layout;
}

// The axes of a view: x to the right, z towards the viewer.
GcGeMatrix3d worldToView(const GcGeVector3d& direction, const GcGePoint3d& target, double twistRad) {
  const GcGeVector3d z = direction.isZeroLength() ? GcGeVector3d::kZAxis : direction.normal();
  const bool vertical = std::fabs(z.x) < 1e-9 && std::fabs(z.y) < 1e-9;
  const GcGeVector3d x = vertical ? GcGeVector3d::kXAxis : GcGeVector3d::kZAxis.crossProduct(z).normal();
  const GcGeVector3d y = z.crossProduct(x);
  GcGeMatrix3d view;
  view.setCoordSystem(target, x, y, z);
  GcGeMatrix3d turn;
  turn.setToRotation(twistRad, GcGeVector3d::kZAxis);
  return turn * view.inverse();
}

}  // namespace

std::vector<Layout> layoutsOf(GcDbDatabase& database) {
  std::vector<Layout> layouts;
  GcDbDictionary* dictionary = nullptr;
  if (gcdbOpenObject(dictionary, database.layoutDictionaryId(), GcDb::kForRead) == Gcad::eOk) {
    for (const GcDbDictionaryEntry& entry : dictionary->entries()) {
      const ObjectGroups groups(entry.id);
      if (groups.isEmpty()) continue;
      Layout layout = readLayout(groups);
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

bool readViewport(GcDbObjectId id, Viewport& viewport) {
  const GcRxClass* itsClass = id.objectClass();
  if (itsClass == nullptr || view(itsClass->name()) != GcView(GC_T("AcDbViewport"))) return false;
  const ObjectGroups groups(id);
  constexpr const char* kViewport = "AcDbViewport";
  if (groups.integer(69, 2, kViewport) == 1) return false;
  viewport = Viewport();
  viewport.center = groups.point(10, {}, kViewport);
  viewport.width = groups.real(40, 0, kViewport);
  viewport.height = groups.real(41, 0, kViewport);
  const int64_t flags = groups.integer(90, 0, kViewport);
  constexpr int64_t kOff = 0x20000;
  viewport.isOn = groups.integer(68, 1, kViewport) != 0 && (flags & kOff) == 0;
  viewport.clipEntity = groups.id(340, kViewport);
  for (int i = 0, count = groups.count(331, kViewport); i < count; ++i) {
    viewport.frozenLayers.push_back(groups.id(331, kViewport, i));
  }
  const double viewHeight = groups.real(45, 0, kViewport);
  if (!(viewport.width > 0) || !(viewport.height > 0) || !(viewHeight > 0)) return false;
  viewport.scale = viewport.height / viewHeight;
  const GcGePoint3d direction = groups.point(16, {0, 0, 1}, kViewport);
  const GcGePoint3d viewCenter = groups.point(12, {}, kViewport);
  GcGeMatrix3d scale, place;
  scale.setToScaling(viewport.scale);
  place.setToTranslation(GcGeVector3d(viewport.center.x, viewport.center.y, 0) -
                         GcGeVector3d(viewCenter.x, viewCenter.y, 0) * viewport.scale);
  viewport.toPaper =
      place * scale * worldToView(direction.asVector(), groups.point(17, {}, kViewport), groups.real(51, 0, kViewport));
  return true;
}

std::vector<GcDbObjectId> drawOrderOf(GcDbObjectId block) {
  std::vector<GcDbObjectId> order;
  GcDbBlockTableRecord* record = nullptr;
  if (gcdbOpenObject(record, block, GcDb::kForRead) != Gcad::eOk) return order;
  for (const GcDbObjectId id : record->entities()) {
    if (id.isValid() && !id.isErased()) order.push_back(id);
  }
  const GcDbObjectId extension = record->extensionDictionary();
  ignore(record->close());

  GcDbDictionary* dictionary = nullptr;
  GcDbObjectId table;
  if (extension.isNull() || gcdbOpenObject(dictionary, extension, GcDb::kForRead) != Gcad::eOk) return order;
  ignore(dictionary->getAt(GC_T("ACAD_SORTENTS"), table));
  ignore(dictionary->close());
  if (table.isNull()) return order;
  // Pairs of an entity and the handle it is sorted by; the others are sorted by their own.
  const ObjectGroups groups(table);
  std::unordered_map<uint64_t, uint64_t> sortHandles;
  for (int i = 0, count = std::min(groups.count(331), groups.count(5)); i < count; ++i) {
    const GcDbObjectId entity = groups.id(331, nullptr, i);
    if (!entity.isNull()) sortHandles[entity.handle()] = static_cast<uint64_t>(groups.integer(5, 0, nullptr, i));
  }
  const auto key = [&](GcDbObjectId id) {
    const auto at = sortHandles.find(id.handle());
    return at == sortHandles.end() ? static_cast<uint64_t>(id.handle()) : at->second;
  };
  std::stable_sort(order.begin(), order.end(), [&](GcDbObjectId a, GcDbObjectId b) { return key(a) < key(b); });
  return order;
}

}  // namespace gc::plot
