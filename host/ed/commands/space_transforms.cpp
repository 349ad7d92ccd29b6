// Entities moved in space: ROTATE3D, MIRROR3D, ALIGN.
#include <numbers>
#include <optional>

#include "db/curve.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/coordinates.h"
#include "host/ed/opencurve.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

GcGeVector3d axisNamed(CommandInput& in, const Answer& word) {
  const GcGeMatrix3d user = ucsToWorld(in.editor());
  if (word.isKeyword("Xaxis") || word.isKeyword("YZ")) return user.column(0);
  if (word.isKeyword("Yaxis") || word.isKeyword("ZX")) return user.column(1);
  if (word.isKeyword("View")) return in.editor().view().direction;
  return user.column(2);
}

struct Axis {
  GcGePoint3d at;  // world
  GcGeVector3d along;
};

// ---- ROTATE3D

// The axis of an object: along a line, upright through the centre of round ones.
std::optional<Axis> axisOf(GcDbObjectId id) {
  const OpenCurve curve(id);
  GcGePoint3d start, end;
  if (!curve || curve->getStartPoint(start) != Gcad::eOk || curve->getEndPoint(end) != Gcad::eOk) return {};
  if (!curve->isClosed() && start.distanceTo(end) > 0) return Axis{start, end - start};
  GcDbExtents box;
  if (curve->getGeomExtents(box) != Gcad::eOk) return {};
  return Axis{box.minPoint() + (box.maxPoint() - box.minPoint()) * 0.5, curve->normal()};
}

Task<std::optional<Axis>> askAxis(CommandInput& in) {
  const Answer first = co_await in.ask(
      Ask(What::Point, "\nSpecify first point on axis or define axis by [Object/Last/View/Xaxis/Yaxis/Zaxis/2points]: ")
          .words("Object Last View Xaxis Yaxis Zaxis 2points"));
  if (first.isKeyword("Object")) {
    const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect a line, circle, arc or polyline: ").needed());
    co_return picked.kind == Answer::Kind::Entity ? axisOf(picked.entity) : std::nullopt;
  }
  if (first.isKeyword("View") || first.isKeyword("Xaxis") || first.isKeyword("Yaxis") || first.isKeyword("Zaxis")) {
    const Answer at = co_await in.ask(Ask(What::Point, "\nSpecify a point on the axis <0,0,0>: "));
    co_return Axis{in.toWorld(at.isPoint() ? at.point : GcGePoint3d()), axisNamed(in, first)};
  }
  const Answer a =
      first.isPoint() ? first : co_await in.ask(Ask(What::Point, "\nSpecify first point on axis: ").needed());
  const Answer b = co_await in.ask(Ask(What::Point, "\nSpecify second point on axis: ").from(a.point).needed());
  if (!a.isPoint() || !b.isPoint() || a.point.distanceTo(b.point) == 0) co_return std::nullopt;
  co_return Axis{in.toWorld(a.point), in.toWorld(b.point) - in.toWorld(a.point)};
}

Task<bool> rotate(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const std::optional<Axis> axis = co_await askAxis(in);
  if (!axis) co_return false;
  Answer angle = co_await in.ask(Ask(What::Angle, "\nSpecify rotation angle or [Reference]: ").words("Reference"));
  double reference = 0;
  if (angle.isKeyword("Reference")) {
    reference = (co_await in.ask(Ask(What::Angle, "\nSpecify the reference angle <0>: "))).number;
    angle = co_await in.ask(Ask(What::Angle, "\nSpecify the new angle: "));
  }
  if (angle.kind != Answer::Kind::Number) co_return false;
  GcGeMatrix3d turn;
  transformEntities(ids, turn.setToRotation(angle.number - reference, axis->along, axis->at));
  co_return true;
}

// ---- MIRROR3D

// Mirrors space in the plane through the point.
GcGeMatrix3d mirroring(const GcGePoint3d& at, const GcGeVector3d& normal) {
  const GcGeVector3d n = normal.normal();
  const double part[3] = {n.x, n.y, n.z};
  GcGeMatrix3d matrix;
  const double off = 2 * n.dotProduct(at.asVector());
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) matrix.entry[row][column] -= 2 * part[row] * part[column];
    matrix.entry[row][3] = off * part[row];
  }
  return matrix;
}

Task<std::optional<Axis>> askPlane(CommandInput& in) {
  const Answer first = co_await in.ask(
      Ask(What::Point,
          "\nSpecify first point of mirror plane (3 points) or [Object/Last/Zaxis/View/XY/YZ/ZX/3points] <3points>: ")
          .words("Object Last Zaxis View XY YZ ZX 3points"));
  if (first.isKeyword("View") || first.isKeyword("XY") || first.isKeyword("YZ") || first.isKeyword("ZX")) {
    const Answer at = co_await in.ask(Ask(What::Point, "\nSpecify point on plane <0,0,0>: "));
    co_return Axis{in.toWorld(at.isPoint() ? at.point : GcGePoint3d()), axisNamed(in, first)};
  }
  if (first.isKeyword("Object")) {
    const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect a circle, arc or 2D polyline: ").needed());
    const OpenCurve curve(picked.entity);
    GcGePoint3d at;
    if (!curve || curve->getStartPoint(at) != Gcad::eOk) co_return std::nullopt;
    co_return Axis{at, curve->normal()};
  }
  const Answer a =
      first.isPoint() ? first : co_await in.ask(Ask(What::Point, "\nSpecify first point on plane: ").needed());
  const Answer b = co_await in.ask(Ask(What::Point, "\nSpecify second point on plane: ").from(a.point).needed());
  if (!a.isPoint() || !b.isPoint()) co_return std::nullopt;
  const GcGePoint3d at = in.toWorld(a.point);
  GcGeVector3d normal = in.toWorld(b.point) - at;  // of a plane given by its Z axis
  if (!first.isKeyword("Zaxis")) {
    const Answer c = co_await in.ask(Ask(What::Point, "\nSpecify third point on plane: ").from(b.point).needed());
    if (!c.isPoint()) co_return std::nullopt;
    normal = normal.crossProduct(in.toWorld(c.point) - at);
  }
  if (normal.isZeroLength()) co_return std::nullopt;
  co_return Axis{at, normal};
}

Task<bool> mirror(CommandInput& in) {
  Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const std::optional<Axis> plane = co_await askPlane(in);
  if (!plane) {
    in.tell("\nThe points do not span a plane.\n");
    co_return false;
  }
  const Answer erase = co_await in.ask(Ask(What::Keyword, "\nDelete source objects? [Yes/No] <N>: ").words("Yes No"));
  if (!erase.isKeyword("Yes")) ids = copyEntities(in.editor(), ids);
  transformEntities(ids, mirroring(plane->at, plane->along));
  co_return true;
}

// ---- ALIGN

struct Pairs {
  std::vector<GcGePoint3d> from, to;  // world
};

Task<Pairs> askPairs(CommandInput& in) {
  constexpr const char* kFrom[] = {"\nSpecify first source point: ", "\nSpecify second source point: ",
                                   "\nSpecify third source point or <continue>: "};
  constexpr const char* kTo[] = {"\nSpecify first destination point: ", "\nSpecify second destination point: ",
                                 "\nSpecify third destination point: "};
  Pairs pairs;
  for (int i = 0; i < 3; ++i) {
    const Answer from = co_await in.ask(Ask(What::Point, kFrom[i]));
    if (!from.isPoint()) break;
    const Answer to = co_await in.ask(Ask(What::Point, kTo[i]).from(from.point).needed());
    if (!to.isPoint()) break;
    pairs.from.push_back(in.toWorld(from.point));
    pairs.to.push_back(in.toWorld(to.point));
  }
  co_return pairs;
}

// A right-handed system from the first point: X towards the second, the third (or `up`) tells the side of Y or Z.
std::optional<GcGeMatrix3d> systemOf(const std::vector<GcGePoint3d>& points, const GcGeVector3d& up) {
  const GcGeVector3d x = points[1] - points[0];
  const GcGeVector3d z = points.size() > 2 ? x.crossProduct(points[2] - points[0]) : x.crossProduct(up).crossProduct(x);
  if (x.isZeroLength() || z.isZeroLength()) return {};
  GcGeMatrix3d system;
  const GcGeVector3d upright = z.normal();
  return system.setCoordSystem(points[0], x.normal(), upright.crossProduct(x.normal()), upright);
}

Task<bool> align(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Pairs pairs = co_await askPairs(in);
  if (pairs.to.empty()) co_return false;
  GcGeMatrix3d matrix;
  if (pairs.to.size() == 1) {
    transformEntities(ids, matrix.setToTranslation(pairs.to[0] - pairs.from[0]));
    co_return true;
  }
  const GcGeVector3d up = ucsToWorld(in.editor()).column(2);
  const std::optional<GcGeMatrix3d> from = systemOf(pairs.from, up);
  const std::optional<GcGeMatrix3d> to = systemOf(pairs.to, up);
  if (!from || !to) {
    in.tell("\nThe points coincide or lie on one line.\n");
    co_return false;
  }
  matrix = *to * from->inverse();
  if (pairs.to.size() == 2) {
    const Answer scale = co_await in.ask(
        Ask(What::Keyword, "\nScale objects based on alignment points? [Yes/No] <N>: ").words("Yes No"));
    GcGeMatrix3d scaling;
    if (scale.isKeyword("Yes"))
      matrix = scaling.setToScaling(pairs.to[0].distanceTo(pairs.to[1]) / pairs.from[0].distanceTo(pairs.from[1]),
                                    pairs.to[0]) *
               matrix;
  }
  transformEntities(ids, matrix);
  co_return true;
}

constexpr Command kCommands[] = {
    {"ROTATE3D", "3DROTATE", rotate},
    {"MIRROR3D", "3DMIRROR", mirror},
    {"ALIGN", "AL", align},
};

}  // namespace

std::span<const Command> spaceTransformCommands() { return kCommands; }

}  // namespace ed
