// Many from one: points along curves, arrays.
#include <numbers>

#include "db/point.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/opencurve.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

// ---- DIVIDE and MEASURE: points along a curve

Task<bool> putPoints(CommandInput& in, bool byLength) {
  const Answer picked = co_await in.ask(
      Ask(What::Entity, byLength ? "\nSelect object to measure: " : "\nSelect object to divide: ").needed());
  if (picked.kind != Answer::Kind::Entity) co_return false;
  Ask question(byLength ? What::Distance : What::Integer,
               byLength ? "\nSpecify length of segment: " : "\nEnter the number of segments: ");
  const Answer answer = co_await in.ask(question.positive().needed());
  if (answer.kind != Answer::Kind::Number) co_return false;
  std::vector<GcGePoint3d> points;
  {
    const OpenCurve curve(picked.entity);
    double end = 0, length = 0;
    if (!curve || curve->getEndParam(end) != Gcad::eOk || curve->getDistAtParam(end, length) != Gcad::eOk)
      co_return false;
    const double step = byLength ? answer.number : length / answer.number;
    const double most = curve->isClosed() && !byLength ? length - step / 2 : length - step * 1e-9;
    for (int i = curve->isClosed() && !byLength ? 0 : 1; i * step < most && points.size() < 32767; ++i) {
      GcGePoint3d point;
      if (curve->getPointAtDist(i * step, point) == Gcad::eOk) points.push_back(point);
    }
  }
  for (const GcGePoint3d& point : points) appendWithDefaults(in.editor(), new GcDbPoint(point));
  co_return true;
}

Task<bool> divide(CommandInput& in) { co_return co_await putPoints(in, false); }
Task<bool> measure(CommandInput& in) { co_return co_await putPoints(in, true); }

// ---- arrays

Task<bool> rectangular(CommandInput& in, Ids ids) {
  const Answer rows = co_await in.ask(Ask(What::Integer, "\nEnter the number of rows (---) <1>: ").positive());
  const Answer columns = co_await in.ask(Ask(What::Integer, "\nEnter the number of columns (|||) <1>: ").positive());
  const int rowCount = rows.kind == Answer::Kind::Number ? static_cast<int>(rows.number) : 1;
  const int columnCount = columns.kind == Answer::Kind::Number ? static_cast<int>(columns.number) : 1;
  double up = 0, right = 0;
  if (rowCount > 1) {
    const Answer step =
        co_await in.ask(Ask(What::Distance, "\nEnter the distance between rows or specify unit cell: "));
    up = step.number;
  }
  if (columnCount > 1) {
    const Answer step = co_await in.ask(Ask(What::Distance, "\nSpecify the distance between columns: "));
    right = step.number;
  }
  const GcGeMatrix3d user = ucsToWorld(in.editor());
  for (int row = 0; row < rowCount; ++row)
    for (int column = 0; column < columnCount; ++column) {
      if (row == 0 && column == 0) continue;
      if (in.endWanted()) co_return false;
      GcGeMatrix3d shift;
      shift.setToTranslation(GcGeVector3d(column * right, row * up, 0));
      transformEntities(copyEntities(in.editor(), ids), user * shift * user.inverse());
    }
  co_return true;
}

Task<bool> polar(CommandInput& in, Ids ids) {
  const Answer center = co_await in.ask(Ask(What::Point, "\nSpecify center point of array: ").needed());
  const Answer count = co_await in.ask(Ask(What::Integer, "\nEnter the number of items in the array: ").positive());
  const Answer fill = co_await in.ask(Ask(What::Angle, "\nSpecify the angle to fill (+=ccw, -=cw) <360>: "));
  const Answer rotates =
      co_await in.ask(Ask(What::Keyword, "\nRotate arrayed objects? [Yes/No] <Y>: ").words("Yes No"));
  if (!center.isPoint() || count.kind != Answer::Kind::Number) co_return false;
  const int items = static_cast<int>(count.number);
  const double full = 2 * std::numbers::pi;
  const double angle = fill.kind == Answer::Kind::Number && fill.number != 0 ? fill.number : full;
  const bool round = std::fabs(std::fabs(angle) - full) < 1e-9;
  const double step = angle / std::max(1, round ? items : items - 1);
  const GcGeMatrix3d user = ucsToWorld(in.editor());
  const GcDbExtents box = extentsOf(ids);
  const GcGePoint3d middle = user.inverse() * (box.minPoint() + (box.maxPoint() - box.minPoint()) * 0.5);
  for (int i = 1; i < items; ++i) {
    if (in.endWanted()) co_return false;
    GcGeMatrix3d turn;
    turn.setToRotation(i * step, GcGeVector3d::kZAxis, center.point);
    GcGeMatrix3d shift;
    if (rotates.isKeyword("No")) turn = shift.setToTranslation(turn * middle - middle);
    transformEntities(copyEntities(in.editor(), ids), user * turn * user.inverse());
  }
  co_return true;
}

Task<bool> array(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Answer kind = co_await in.ask(
      Ask(What::Keyword, "\nEnter the type of array [Rectangular/Polar] <R>: ").words("Rectangular Polar"));
  if (kind.isKeyword("Polar")) co_return co_await polar(in, ids);
  co_return co_await rectangular(in, ids);
}

constexpr Command kCommands[] = {
    {"DIVIDE", "DIV", divide},
    {"MEASURE", "ME", measure},
    {"-ARRAY", "ARRAY AR -AR", array},
};

}  // namespace

std::span<const Command> arrayCommands() { return kCommands; }

}  // namespace ed
