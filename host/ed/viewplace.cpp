#include "host/ed/viewplace.h"

#include "db/layout.h"
#include "db/layoutmanager.h"
#include "host/db/core/store.h"
#include "host/ed/records.h"

namespace ed {

namespace {

constexpr int kSheetNumber = 1;
constexpr const GCHAR* kActiveTile = GC_T("*Active");

template <class T>
T* lookingAt(GcDbObjectId id) {
  return id.isValid() && !id.isErased() ? T::cast(id.stub()->object) : nullptr;
}

const GcDbLayout* shownLayout(const Editor& editor) {
  const GcDbLayoutManager& manager = *gcdbHostApplicationServices()->layoutManager();
  return lookingAt<GcDbLayout>(manager.findActiveLayout(true, &editor.database()));
}

GcDbObjectIdArray viewportsOf(const Editor& editor) {
  const GcDbLayout* layout = shownLayout(editor);
  return layout == nullptr ? GcDbObjectIdArray() : layout->getViewportArray();
}

GcDbObjectId sheetOf(const Editor& editor) {
  for (const GcDbObjectId id : viewportsOf(editor))
    if (lookingAt<GcDbViewport>(id)->isSheet()) return id;
  return {};
}

GcDbObjectId tileOf(const Editor& editor) { return recordNamed(editor.database().viewportTableId(), kActiveTile); }

// The viewport whose view the editor has; null for a tile.
GcDbObjectId viewportOfView(const Editor& editor) {
  if (!editor.inPaperLayout()) return {};
  const int number = editor.viewportNumber();
  return number == kSheetNumber ? sheetOf(editor) : viewportNumbered(editor, number);
}

}  // namespace

Changing::Changing(GcDbObjectId id) {
  if (!id.isValid() || id.isErased()) return;
  if (id.stub()->writing)
    m_object = id.stub()->object;
  else
    m_opened = gcdbOpenGcDbObject(m_object, id, GcDb::kForWrite) == Gcad::eOk;
}

Changing::~Changing() {
  if (m_opened) ignore(m_object->close());
}

GcDbObjectId viewportNumbered(const Editor& editor, int number) {
  for (const GcDbObjectId id : viewportsOf(editor)) {
    const auto* viewport = lookingAt<GcDbViewport>(id);
    if (viewport->number() == number && viewport->isOn()) return id;
  }
  return {};
}

GcDbObjectId viewportToWorkIn(const Editor& editor) {
  const GcDbLayout* layout = shownLayout(editor);
  if (layout == nullptr) return {};
  const auto isGood = [](GcDbObjectId id) {
    const auto* viewport = lookingAt<GcDbViewport>(id);
    return viewport != nullptr && !viewport->isSheet() && viewport->isOn();
  };
  if (isGood(layout->lastActiveViewport())) return layout->lastActiveViewport();
  for (const GcDbObjectId id : layout->getViewportArray())
    if (isGood(id)) return id;
  return {};
}

GcGeMatrix3d displayToPaper(const GcDbViewport& viewport) {
  const double factor = viewport.customScale() > 0 ? viewport.customScale() : 1;
  const GcGePoint2d seen = viewport.viewCenter();
  const GcGePoint3d window = viewport.centerPoint();
  GcGeMatrix3d scale, place;
  scale.setToScaling(factor);
  place.setToTranslation(GcGeVector3d(window.x - seen.x * factor, window.y - seen.y * factor, 0));
  return place * scale;
}

void takeView(Editor& editor) {
  EditorView& view = editor.view();
  if (!editor.inPaperLayout()) {
    const auto* tile = lookingAt<GcDbViewportTableRecord>(tileOf(editor));
    if (tile == nullptr || !(tile->height() > 0)) return;
    view.center = tile->centerPoint();
    view.height = tile->height();
    if (tile->aspectRatio() > 0) view.aspect = tile->aspectRatio();
    view.twistRad = tile->viewTwist();
    view.direction = tile->viewDirection();
    view.target = tile->target();
    return;
  }
  const auto* viewport = lookingAt<GcDbViewport>(viewportOfView(editor));
  if (viewport == nullptr || !(viewport->viewHeight() > 0)) return;
  view.center = viewport->viewCenter();
  view.height = viewport->viewHeight();
  if (viewport->height() > 0 && viewport->width() > 0) view.aspect = viewport->width() / viewport->height();
  view.twistRad = viewport->twistAngle();
  view.direction = viewport->viewDirection();
  view.target = viewport->viewTarget();
}

void putView(Editor& editor) {
  const EditorView& view = editor.view();
  if (!editor.inPaperLayout()) {
    const Changing changing(tileOf(editor));
    auto* tile = changing ? changing.as<GcDbViewportTableRecord>() : nullptr;
    if (tile == nullptr) return;
    tile->setCenterPoint(view.center);
    tile->setHeight(view.height);
    tile->setWidth(view.width());
    tile->setViewTwist(view.twistRad);
    tile->setViewDirection(view.direction);
    tile->setTarget(view.target);
    return;
  }
  const GcDbObjectId id = viewportOfView(editor);
  const Changing changing(id);
  auto* viewport = changing ? changing.as<GcDbViewport>() : nullptr;
  if (viewport == nullptr) return;
  ignore(viewport->setViewCenter(view.center));
  ignore(viewport->setViewHeight(view.height));
  ignore(viewport->setTwistAngle(view.twistRad));
  ignore(viewport->setViewDirection(view.direction));
  ignore(viewport->setViewTarget(view.target));
  if (!viewport->isSheet()) return;
  // The rectangle of a sheet's viewport is what the screen shows of the paper.
  ignore(viewport->setCenterPoint({view.center.x, view.center.y, 0}));
  ignore(viewport->setWidth(view.width()));
  ignore(viewport->setHeight(view.height));
  ignore(viewport->setViewHeight(view.height));
}

namespace {

const GcDbViewport* workedIn(const Editor& editor) {
  if (!editor.inPaperLayout() || editor.viewportNumber() == kSheetNumber) return nullptr;
  return lookingAt<GcDbViewport>(viewportNumbered(editor, editor.viewportNumber()));
}

}  // namespace

bool isViewLocked(const Editor& editor) {
  const GcDbViewport* window = workedIn(editor);
  return window != nullptr && window->isLocked();
}

void moveSheetInstead(const Editor& editor, const GcGePoint2d& center, double height) {
  const GcDbViewport* window = workedIn(editor);
  const Changing changing(sheetOf(editor));
  auto* sheet = changing ? changing.as<GcDbViewport>() : nullptr;
  if (window == nullptr || sheet == nullptr || !(window->viewHeight() > 0)) return;
  const double scale = window->customScale();
  const GcGePoint2d onSheet(window->centerPoint().x + (center.x - window->viewCenter().x) * scale,
                            window->centerPoint().y + (center.y - window->viewCenter().y) * scale);
  const double factor = height / window->viewHeight();
  ignore(sheet->setViewCenter(onSheet));
  ignore(sheet->setCenterPoint({onSheet.x, onSheet.y, 0}));
  ignore(sheet->setWidth(sheet->width() * factor));
  ignore(sheet->setHeight(sheet->height() * factor));  // the height of its view follows
}

bool viewHeightAtScale(const Editor& editor, double scale, double& height) {
  const GcDbViewport* window = workedIn(editor);
  if (window == nullptr || !(scale > 0)) return false;
  height = window->height() / scale;
  return true;
}

}  // namespace ed
