// Commands that erase, copy, or only select.
#include <algorithm>

#include "db/curve.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/selection.h"
#include "host/ed/stepundo.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

Task<bool> erase(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  for (const GcDbObjectId id : ids) eraseEntity(id);
  if (!ids.empty()) in.editor().lastErased = ids;
  co_return !ids.empty();
}

Task<bool> select(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  co_return !ids.empty();
}

// Parallel curves of one entity on the side of a point.
bool offsetTowards(CommandInput& in, GcDbObjectId id, double distance, const GcGePoint3d& side) {
  GcDbCurve* curve = nullptr;
  if (gcdbOpenObject(curve, id, GcDb::kForRead) != Gcad::eOk) return false;
  GcGePoint3d nearest;
  GcGeVector3d along;
  const GcGePoint3d at = in.toWorld(side);
  GcDbVoidPtrArray results;
  bool good = curve->getClosestPointTo(at, nearest) == Gcad::eOk && curve->getFirstDeriv(nearest, along) == Gcad::eOk;
  if (good) {
    // A positive distance lies to the right of the direction.
    const bool left = along.crossProduct(at - nearest).dotProduct(curve->normal()) > 0;
    good = curve->getOffsetCurves(left ? -distance : distance, results) == Gcad::eOk;
  }
  ignore(curve->close());
  for (void* result : results) {
    auto* made = static_cast<GcDbEntity*>(result);
    GcDbBlockTableRecord* space = nullptr;
    if (gcdbOpenObject(space, in.editor().currentSpace(), GcDb::kForWrite) != Gcad::eOk) continue;
    if (space->appendGcDbEntity(made) == Gcad::eOk)
      ignore(made->close());
    else
      delete made;
    ignore(space->close());
  }
  return good;
}

// How OFFSET goes on from one object to the next.
struct OffsetWay {
  bool through = false;
  double distance = 0;
  bool erases = false;
  bool onCurrentLayer = false;
};

// Settings until a distance, Through or Enter; false when cancelled.
Task<bool> askOffsetWay(CommandInput& in, OffsetWay& way) {
  for (;;) {
    const Answer answer = co_await in.ask(Ask(What::Distance, "\nSpecify offset distance or [Through/Erase/Layer]: ")
                                              .words("Through Erase Layer")
                                              .positive());
    if (answer.isKeyword("Erase")) {
      const Answer erases = co_await in.ask(
          Ask(What::Keyword, "\nErase source object after offsetting? [Yes/No] <No>: ").words("Yes No"));
      way.erases = erases.isKeyword("Yes");
    } else if (answer.isKeyword("Layer")) {
      const Answer layer =
          co_await in.ask(Ask(What::Keyword, "\nEnter layer option for offset objects [Current/Source] <Source>: ")
                              .words("Current Source"));
      way.onCurrentLayer = layer.isKeyword("Current");
    } else {
      way.through = answer.isKeyword("Through") || (answer.isNone() && way.distance <= 0);
      if (answer.kind == Answer::Kind::Number) way.distance = answer.number;
      co_return answer.kind != Answer::Kind::Cancelled;
    }
  }
}

// The distance of the object from the point, when it goes through that.
double reachOf(CommandInput& in, const OffsetWay& way, GcDbObjectId id, const GcGePoint3d& point) {
  GcDbCurve* curve = nullptr;
  if (!way.through || gcdbOpenObject(curve, id, GcDb::kForRead) != Gcad::eOk) return way.distance;
  GcGePoint3d nearest;
  const GcGePoint3d at = in.toWorld(point);
  const bool found = curve->getClosestPointTo(at, nearest, true) == Gcad::eOk;
  ignore(curve->close());
  return found ? at.distanceTo(nearest) : 0;
}

// One parallel; the newest entity is it then.
bool offsetOnce(CommandInput& in, const OffsetWay& way, GcDbObjectId id, const GcGePoint3d& side) {
  const size_t before = entitiesOf(in.editor().currentSpace()).size();
  if (!offsetTowards(in, id, reachOf(in, way, id, side), side)) {
    in.tell("\nCannot offset that object.\n");
    return false;
  }
  Ids made = entitiesOf(in.editor().currentSpace());
  made.erase(made.begin(), made.begin() + static_cast<std::ptrdiff_t>(std::min(before, made.size())));
  if (way.onCurrentLayer)
    forEach<GcDbEntity>(made, [&](GcDbEntity& entity) { ignore(entity.setLayer(in.database().clayer())); });
  if (way.erases) eraseEntity(id);
  return true;
}

// One parallel after the other of the newest, each on the side of a point.
Task<bool> offsetSeveral(CommandInput& in, OffsetWay way, GcDbObjectId id, StepUndo& steps) {
  for (;;) {
    const Answer side = co_await in.ask(
        Ask(What::Point, way.through ? "\nSpecify through point or [Exit/Undo] <next object>: "
                                     : "\nSpecify point on side to offset or [Exit/Undo] <next object>: ")
            .words("Exit Undo"));
    if (side.isKeyword("Undo")) {
      if (!steps.back()) in.tell("\nAll has been undone.\n");
      continue;
    }
    if (!side.isPoint()) co_return side.isNone();
    steps.begin();
    if (offsetOnce(in, way, id, side.point)) id = lastEntity(in.editor());
  }
}

Task<bool> offset(CommandInput& in) {
  OffsetWay way;
  way.distance = realVariable(in.editor(), "OFFSETDIST");
  if (!co_await askOffsetWay(in, way)) co_return false;
  static_cast<void>(setVariable(in.editor(), GC_T("OFFSETDIST"), VariableValue::of(way.through ? -1.0 : way.distance)));
  StepUndo steps(in.database());
  for (;;) {
    const Answer picked =
        co_await in.ask(Ask(What::Entity, "\nSelect object to offset or [Exit/Undo] <Exit>: ").words("Exit Undo"));
    if (picked.isKeyword("Undo")) {
      if (!steps.back()) in.tell("\nAll has been undone.\n");
      continue;
    }
    if (picked.kind != Answer::Kind::Entity) co_return true;
    const Answer side =
        co_await in.ask(Ask(What::Point, way.through ? "\nSpecify through point or [Exit/Multiple/Undo]: "
                                                     : "\nSpecify point on side to offset or [Exit/Multiple/Undo]: ")
                            .words("Exit Multiple Undo"));
    if (side.isKeyword("Multiple")) {
      if (!co_await offsetSeveral(in, way, picked.entity, steps)) co_return true;
      continue;
    }
    if (!side.isPoint()) co_return true;
    steps.begin();
    static_cast<void>(offsetOnce(in, way, picked.entity, side.point));
  }
}

constexpr Command kCommands[] = {
    {"ERASE", "E", erase},
    {"SELECT", "PSELECT", select},
    {"OFFSET", "O", offset},
};

}  // namespace

std::span<const Command> editCommands() { return kCommands; }

}  // namespace ed
