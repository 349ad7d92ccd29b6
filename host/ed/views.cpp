#include "host/ed/views.h"

#include <algorithm>

#include "host/ed/coordinates.h"
#include "host/ed/input/parse.h"
#include "host/ed/screen.h"
#include "host/ed/viewplace.h"

namespace ed {

namespace {

constexpr size_t kMostRemembered = 10;

void show(Editor& editor, const GcGePoint2d& center, double height) {
  if (isViewLocked(editor)) {
    moveSheetInstead(editor, center, height);
    return;
  }
  EditorView view = editor.view();
  view.center = center;
  view.height = height;
  showView(editor, view);
}

// A box in display coordinates, with the margin a zoom to it has.
void showBox(Editor& editor, const GcGePoint3d& low, const GcGePoint3d& high, double margin) {
  const double width = high.x - low.x;
  const double height = high.y - low.y;
  const double needed = std::max(height, width / editor.view().aspect) * margin;
  show(editor, {(low.x + high.x) / 2, (low.y + high.y) / 2}, needed > 0 ? needed : editor.view().height);
}

GcDbExtents onDisplay(const Editor& editor, const GcDbExtents& world) {
  const GcGeMatrix3d toDisplay = displayToWorld(editor).inverse();
  GcDbExtents box;
  for (int corner = 0; corner < 8; ++corner)
    box.addPoint(toDisplay * GcGePoint3d((corner & 1) != 0 ? world.max.x : world.min.x,
                                         (corner & 2) != 0 ? world.max.y : world.min.y,
                                         (corner & 4) != 0 ? world.max.z : world.min.z));
  return box;
}

GcDbExtents limits(Editor& editor) {
  GcDbExtents box;
  VariableValue value;
  for (const GCHAR* name : {GC_T("LIMMIN"), GC_T("LIMMAX")})
    if (getVariable(editor, name, value)) box.addPoint({value.point[0], value.point[1], 0});
  return box;
}

}  // namespace

void zoomWindow(Editor& editor, const GcGePoint3d& a, const GcGePoint3d& b) {
  const GcGeMatrix3d toDisplay = displayToWorld(editor).inverse() * ucsToWorld(editor);
  GcDbExtents box;
  box.addPoint(toDisplay * a);
  box.addPoint(toDisplay * b);
  showBox(editor, box.min, box.max, 1.0);
}

void zoomCenter(Editor& editor, const GcGePoint3d& center, double height) {
  const GcGePoint3d at = displayToWorld(editor).inverse() * (ucsToWorld(editor) * center);
  show(editor, {at.x, at.y}, height > 0 ? height : editor.view().height);
}

void zoomExtents(Editor& editor) {
  const GcDbExtents world = editor.spaceExtents();
  const GcDbExtents box = onDisplay(editor, world.isEmpty() ? limits(editor) : world);
  showBox(editor, box.min, box.max, 1.02);
}

void zoomTo(Editor& editor, const GcDbExtents& world) {
  if (world.isEmpty()) return;
  const GcDbExtents box = onDisplay(editor, world);
  showBox(editor, box.min, box.max, 1.02);
}

void zoomScale(Editor& editor, double factor, bool ofView) {
  const GcDbExtents all = limits(editor);
  const double whole = std::max(all.max.y - all.min.y, (all.max.x - all.min.x) / editor.view().aspect);
  show(editor, editor.view().center, (ofView || !(whole > 0) ? editor.view().height : whole) / factor);
}

void zoomPrevious(Editor& editor) {
  if (editor.earlierViews().empty()) return;
  editor.view() = editor.earlierViews().back();
  editor.earlierViews().pop_back();
  screen().viewChanged(editor.view().center, editor.view().height);
  putView(editor);
}

void panTo(Editor& editor, const GcGePoint2d& center) { show(editor, center, editor.view().height); }

void showView(Editor& editor, const EditorView& view) {
  std::vector<EditorView>& earlier = editor.earlierViews();
  if (earlier.size() == kMostRemembered) earlier.erase(earlier.begin());
  earlier.push_back(editor.view());
  editor.view() = view;
  screen().viewChanged(view.center, view.height);
  putView(editor);
}

bool zoomToPaperScale(Editor& editor, double scale) {
  double height = 0;
  if (!viewHeightAtScale(editor, scale, height)) return false;
  show(editor, editor.view().center, height);
  return true;
}

bool parseFactor(GcView text, double& factor) { return parseLength(text, factor) && factor > 0; }

}  // namespace ed
