// CHSPACE: objects moved between the sheet and the model, at the size and place at which they are seen.
#include "db/idmapping.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/coordinates.h"
#include "host/ed/viewplace.h"
#include "host/rx/text/number.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

constexpr int kSheet = 1;

// From the model to the paper, as the viewport shows it; false when it shows nothing.
bool modelToPaper(const Editor& editor, GcDbObjectId viewportId, GcGeMatrix3d& matrix, double& scale) {
  GcDbViewport* viewport = nullptr;
  if (gcdbOpenObject(viewport, viewportId, GcDb::kForRead) != Gcad::eOk) return false;
  scale = viewport->customScale();
  matrix = displayToPaper(*viewport) * displayToWorld(editor).inverse();
  ignore(viewport->close());
  return scale > 0;
}

// Viewports stay on their sheet.
Ids movable(const Ids& chosen) {
  Ids ids;
  for (const GcDbObjectId id : chosen)
    if (id.objectClass() != GcDbViewport::desc()) ids.push_back(id);
  return ids;
}

int moveTo(GcDbDatabase& database, const Ids& ids, GcDbObjectId block, const GcGeMatrix3d& matrix) {
  GcDbObjectIdArray sources;
  for (const GcDbObjectId id : ids) sources.append(id);
  GcDbIdMapping map;
  if (sources.isEmpty() || database.deepCloneObjects(sources, block, map) != Gcad::eOk) return 0;
  int moved = 0;
  for (const GcDbObjectId id : ids) {
    GcDbEntity* copy = nullptr;
    if (gcdbOpenObject(copy, map.valueOf(id), GcDb::kForWrite) != Gcad::eOk) continue;
    const bool good = copy->transformBy(matrix) == Gcad::eOk;
    if (!good) ignore(copy->erase());
    ignore(copy->close());
    if (!good) continue;
    eraseEntity(id);
    ++moved;
  }
  return moved;
}

Task<bool> changeSpace(CommandInput& in) {
  Editor& editor = in.editor();
  if (!editor.inPaperLayout()) {
    in.tell("\n** Command not allowed in Model Tab **\n");
    co_return false;
  }
  const bool fromPaper = editor.inPaperSpace();
  const Ids ids = movable(co_await selectObjects(in));
  if (ids.empty()) co_return false;
  if (fromPaper) {
    const GcDbObjectId target = viewportToWorkIn(editor);
    if (target.isNull() || !editor.workIn(target)) {
      in.tell("\nThere are no active Model space viewports.\n");
      co_return false;
    }
    static_cast<void>(
        co_await in.ask(Ask(What::Keyword, "\nSet the TARGET viewport active and press ENTER to continue: ")));
  }
  GcGeMatrix3d matrix;
  double scale = 1;
  const GcDbObjectId viewport = viewportNumbered(editor, editor.viewportNumber());
  const GcDbObjectId target = fromPaper ? in.database().modelSpaceId() : in.database().paperSpaceId();
  if (!modelToPaper(editor, viewport, matrix, scale)) co_return false;
  if (fromPaper) {
    matrix = matrix.inverse();
    scale = 1 / scale;
  }
  const int moved = moveTo(in.database(), ids, target, matrix);
  if (!fromPaper) static_cast<void>(editor.setViewportNumber(kSheet));
  in.tell(("\n" + std::to_string(moved) + " object(s) changed from " +
           (fromPaper ? "PAPER space to MODEL space.\n" : "MODEL space to PAPER space.\n") +
           "Objects were scaled by a factor of " + gc::realText(scale) + " to maintain visual appearance.\n")
              .c_str());
  co_return moved > 0;
}

constexpr Command kCommands[] = {
    {"CHSPACE", "", changeSpace},
};

}  // namespace

std::span<const Command> changeSpaceCommands() { return kCommands; }

}  // namespace ed
