// Commands that change entities as they are: erase, move, copy, select.
#include "host/db/clone/clone.h"
#include "host/ed/command/select.h"
#include "host/ed/selection.h"

namespace ed {

namespace {

using What = Ask::What;

Task<bool> erase(CommandInput& in) {
  const std::vector<GcDbObjectId> ids = co_await selectObjects(in);
  for (const GcDbObjectId id : ids) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForWrite) != Gcad::eOk) continue;
    ignore(entity->erase());
    ignore(entity->close());
  }
  co_return !ids.empty();
}

void transformAll(const std::vector<GcDbObjectId>& ids, const GcGeMatrix3d& matrix) {
  for (const GcDbObjectId id : ids) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForWrite) != Gcad::eOk) continue;
    ignore(entity->transformBy(matrix));
    ignore(entity->close());
  }
}

// The displacement two answers describe: from the base to the second point, or the base itself on Enter.
GcGeVector3d displacement(CommandInput& in, const GcGePoint3d& base, const Answer& second) {
  const GcGePoint3d origin = in.toWorld(GcGePoint3d::kOrigin);
  return second.isPoint() ? in.toWorld(second.point) - in.toWorld(base) : in.toWorld(base) - origin;
}

Task<bool> move(CommandInput& in) {
  const std::vector<GcDbObjectId> ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Answer base =
      co_await in.ask(Ask(What::Point, "\nSpecify base point or [Displacement]: ").words("Displacement"));
  if (!base.isPoint()) co_return false;
  const Answer second = co_await in.ask(Ask(What::Point, "\nSpecify second point: ").from(base.point));
  GcGeMatrix3d matrix;
  transformAll(ids, matrix.setToTranslation(displacement(in, base.point, second)));
  co_return true;
}

Task<bool> select(CommandInput& in) {
  const std::vector<GcDbObjectId> ids = co_await selectObjects(in);
  co_return !ids.empty();
}

constexpr Command kCommands[] = {
    {"ERASE", "E", erase},
    {"MOVE", "M", move},
    {"SELECT", "", select},
};

}  // namespace

std::span<const Command> editCommands() { return kCommands; }

}  // namespace ed
