// Commands that erase, copy, or only select.
#include "db/curve.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"

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

Task<bool> offset(CommandInput& in) {
  const Answer distance = co_await in.ask(Ask(What::Distance, "\nSpecify offset distance or [Through/Erase/Layer]: ")
                                              .words("Through Erase Layer")
                                              .positive());
  const bool through = distance.isKeyword("Through");
  const double fixed =
      distance.kind == Answer::Kind::Number ? distance.number : realVariable(in.editor(), "OFFSETDIST");
  if (!through) static_cast<void>(setVariable(in.editor(), GC_T("OFFSETDIST"), VariableValue::of(fixed)));
  for (;;) {
    const Answer picked =
        co_await in.ask(Ask(What::Entity, "\nSelect object to offset or [Exit/Undo]: ").words("Exit Undo"));
    if (picked.kind != Answer::Kind::Entity) break;
    const Answer side =
        co_await in.ask(Ask(What::Point, through ? "\nSpecify through point: "
                                                 : "\nSpecify point on side to offset or [Exit/Multiple/Undo]: ")
                            .words("Exit Multiple Undo"));
    if (!side.isPoint()) break;
    double reach = fixed;
    GcDbCurve* curve = nullptr;
    if (through && gcdbOpenObject(curve, picked.entity, GcDb::kForRead) == Gcad::eOk) {
      GcGePoint3d nearest;
      const GcGePoint3d at = in.toWorld(side.point);
      if (curve->getClosestPointTo(at, nearest, true) == Gcad::eOk) reach = at.distanceTo(nearest);
      ignore(curve->close());
    }
    if (!offsetTowards(in, picked.entity, reach, side.point)) in.tell("\nCannot offset that object.\n");
  }
  co_return true;
}

constexpr Command kCommands[] = {
    {"ERASE", "E", erase},
    {"SELECT", "PSELECT", select},
    {"OFFSET", "O", offset},
};

}  // namespace

std::span<const Command> editCommands() { return kCommands; }

}  // namespace ed
