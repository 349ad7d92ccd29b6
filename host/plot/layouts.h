// What pictures need to know of layouts, their paper and their viewports.
#pragma once

#include <vector>

#include "db/objectid.h"
#include "ge/matrix3d.h"
#include "host/rx/view.h"

class GcDbDatabase;

namespace gc::plot {

struct Layout {
  GcText name;
  int tabOrder = 0;
  bool isModel = false;
  GcDbObjectId block;
  // Paper, in millimetres; 0 when the layout does not say. The drawing's origin lies at the lower left corner of
  // what can be printed: margins from the paper's edges.
  double paperWidthMm = 0, paperHeightMm = 0;
  double marginLeftMm = 0, marginBottomMm = 0;
  double mmPerUnit = 1;
  GcGePoint3d limitsMin, limitsMax;
};

// All layouts of the drawing, model space first, then by tab. A drawing without layouts (older files) has its model
// space and, when there is anything in it, its paper space.
std::vector<Layout> layoutsOf(GcDbDatabase& database);

// A window from a sheet of paper into the model.
struct Viewport {
  GcGePoint3d center;  // on the paper
  double width = 0, height = 0;
  GcGeMatrix3d toPaper;  // from the world of the model to the paper's drawing units
  double scale = 1;      // paper units for one unit of the model
  std::vector<GcDbObjectId> frozenLayers;
  GcDbObjectId clipEntity;  // null: the rectangle
  bool isOn = false;
};

// False for the entity that stands for the sheet itself and for anything that is no viewport.
bool readViewport(GcDbObjectId id, Viewport& viewport);

// The entities of a block in the order in which they are drawn.
std::vector<GcDbObjectId> drawOrderOf(GcDbObjectId block);

}  // namespace gc::plot
