// Curves cut, trimmed, extended and rounded off.
#include <algorithm>
#include <memory>
#include <numbers>

#include "db/arc.h"
#include "db/line.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/coordinates.h"
#include "host/ed/opencurve.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

GcGePoint3d nearestOn(const GcDbCurve& curve, const GcGePoint3d& world) {
  GcGePoint3d at = world;
  ignore(curve.getClosestPointTo(world, at));
  return at;
}

// Puts pieces into the space of the entity they came from and erases that; the pieces that `drops` names go instead.
template <class Drops>
bool replaceByPieces(GcDbObjectId id, const GcDbVoidPtrArray& pieces, const Drops& drops) {
  GcDbEntity* original = nullptr;
  if (gcdbOpenObject(original, id, GcDb::kForWrite) != Gcad::eOk) return false;
  GcDbBlockTableRecord* space = nullptr;
  if (gcdbOpenObject(space, original->ownerId(), GcDb::kForWrite) == Gcad::eOk) {
    for (int i = 0; i < pieces.length(); ++i) {
      auto* piece = static_cast<GcDbCurve*>(pieces[i]);
      if (drops(i, *piece)) {
        delete piece;
        continue;
      }
      ignore(piece->setPropertiesFrom(*original));
      if (space->appendGcDbEntity(piece) == Gcad::eOk)
        ignore(piece->close());
      else
        delete piece;
    }
    ignore(space->close());
  }
  ignore(original->erase());
  ignore(original->close());
  return true;
}

double paramOf(const GcDbCurve& curve, const GcGePoint3d& point) {
  double param = 0;
  ignore(curve.getParamAtPoint(point, param));
  return param;
}

// The pieces of a curve between points on it; points at its ends cut nothing.
bool split(const GcDbCurve& curve, const std::vector<GcGePoint3d>& points, GcDbVoidPtrArray& pieces) {
  GcArray<double> params;
  double from = 0, to = 0;
  if (curve.getStartParam(from) != Gcad::eOk || curve.getEndParam(to) != Gcad::eOk) return false;
  std::vector<double> sorted;
  const double reach = 1e-9 * (to - from);
  for (const GcGePoint3d& point : points) {
    const double param = paramOf(curve, point);
    if (curve.isClosed() || (param > from + reach && param < to - reach)) sorted.push_back(param);
  }
  std::sort(sorted.begin(), sorted.end());
  for (const double param : sorted)
    if (params.isEmpty() || param - params.last() > reach) params.append(param);
  return !params.isEmpty() && curve.getSplitCurves(params, pieces) == Gcad::eOk && pieces.length() > 0;
}

// ---- BREAK

Task<bool> breakCommand(CommandInput& in) {
  const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect object: ").needed());
  if (picked.kind != Answer::Kind::Entity) co_return false;
  GcGePoint3d first = picked.point;
  Answer second = co_await in.ask(
      Ask(What::Point, "\nSpecify second break point or [First point]: ").from(first).words("First @").needed());
  if (second.isKeyword("First")) {
    first = (co_await in.ask(Ask(What::Point, "\nSpecify first break point: ").needed())).point;
    second = co_await in.ask(Ask(What::Point, "\nSpecify second break point: ").from(first).words("@").needed());
  }
  OpenCurve curve(picked.entity);
  if (!curve || second.kind == Answer::Kind::Cancelled) co_return false;
  const GcGePoint3d a = nearestOn(*curve.get(), in.toWorld(first));
  const GcGePoint3d b = second.isPoint() ? nearestOn(*curve.get(), in.toWorld(second.point)) : a;
  GcDbVoidPtrArray pieces;
  if (!split(*curve.get(), {a, b}, pieces)) co_return false;
  const bool apart = a.distanceTo(b) > 1e-9 * (1 + a.distanceTo(GcGePoint3d()));
  const bool closed = curve->isClosed();
  double low = paramOf(*curve.get(), a);
  double high = paramOf(*curve.get(), b);
  double middle = (low + high) / 2;
  // What goes of a closed curve runs counter-clockwise from the first point to the second.
  if (closed && low > high) {
    double end = 0;
    ignore(curve->getEndParam(end));
    middle = low + (end - low + high) / 2;
    middle = middle > end ? middle - end : middle;
  }
  GcGePoint3d gone;
  ignore(curve->getPointAtParam(middle, gone));
  std::vector<bool> drop(static_cast<size_t>(pieces.length()));
  for (int i = 0; i < pieces.length(); ++i) {
    GcGePoint3d at;
    const auto* piece = static_cast<const GcDbCurve*>(pieces[i]);
    drop[static_cast<size_t>(i)] = apart && piece->getClosestPointTo(gone, at) == Gcad::eOk &&
                                   at.distanceTo(gone) <= 1e-7 * (1 + at.distanceTo(GcGePoint3d()));
  }
  const GcDbObjectId id = picked.entity;
  curve.close();
  co_return replaceByPieces(id, pieces, [&](int i, const GcDbCurve&) { return drop[static_cast<size_t>(i)]; });
}

// ---- TRIM

// Cuts away the part of a curve under the picked point, as far as the edges reach.
bool trimAt(CommandInput& in, GcDbObjectId id, const GcGePoint3d& picked, const Ids& edges) {
  OpenCurve curve(id);
  if (!curve) return false;
  GcArray<GcGePoint3d> cuts;
  for (const GcDbObjectId edgeId : edges) {
    GcDbEntity* edge = nullptr;
    if (edgeId == id || gcdbOpenObject(edge, edgeId, GcDb::kForRead) != Gcad::eOk) continue;
    ignore(curve->intersectWith(edge, GcDb::kOnBothOperands, cuts));
    ignore(edge->close());
  }
  std::vector<GcGePoint3d> points;
  for (const GcGePoint3d& cut : cuts) points.push_back(cut);
  const GcGePoint3d at = nearestOn(*curve.get(), in.toWorld(picked));
  GcDbVoidPtrArray pieces;
  if (!split(*curve.get(), points, pieces)) return false;
  int nearest = 0;
  double least = 1e300;
  for (int i = 0; i < pieces.length(); ++i) {
    const double distance = at.distanceTo(nearestOn(*static_cast<const GcDbCurve*>(pieces[i]), at));
    if (distance < least) nearest = i;
    least = std::min(least, distance);
  }
  curve.close();
  return replaceByPieces(id, pieces, [&](int i, const GcDbCurve&) { return i == nearest; });
}

Task<Ids> askEdges(CommandInput& in, const char* prompt) {
  Ids edges = co_await selectObjects(in, prompt);
  if (edges.empty()) {
    GcDbBlockTableRecord* space = nullptr;
    if (gcdbOpenObject(space, in.editor().currentSpace(), GcDb::kForRead) != Gcad::eOk) co_return edges;
    for (const GcDbObjectId id : space->entities())
      if (id.isValid() && !id.isErased()) edges.push_back(id);
    ignore(space->close());
  }
  co_return edges;
}

Task<bool> trim(CommandInput& in) {
  const Ids edges = co_await askEdges(in, "\nSelect cutting edges...\nSelect objects or <select all>: ");
  for (;;) {
    const Answer picked =
        co_await in.ask(Ask(What::Entity, "\nSelect object to trim or [Fence/Crossing/Project/Edge/eRase/Undo]: ")
                            .words("Fence Crossing Project Edge eRase Undo"));
    if (picked.kind != Answer::Kind::Entity) break;
    if (!trimAt(in, picked.entity, picked.point, edges)) in.tell("\nObject does not intersect an edge.\n");
  }
  co_return true;
}

// ---- EXTEND: the end of a line or arc nearer to the pick goes on to the nearest edge.

bool extendAt(CommandInput& in, GcDbObjectId id, const GcGePoint3d& picked, const Ids& edges) {
  GcDbLine* line = nullptr;
  if (id.objectClass() != GcDbLine::desc() || gcdbOpenObject(line, id, GcDb::kForWrite) != Gcad::eOk) return false;
  const GcGePoint3d at = in.toWorld(picked);
  const bool atEnd = at.distanceTo(line->endPoint()) <= at.distanceTo(line->startPoint());
  const GcGePoint3d end = atEnd ? line->endPoint() : line->startPoint();
  const GcGeVector3d outward = end - (atEnd ? line->startPoint() : line->endPoint());
  GcArray<GcGePoint3d> meets;
  for (const GcDbObjectId edgeId : edges) {
    GcDbEntity* edge = nullptr;
    if (edgeId == id || gcdbOpenObject(edge, edgeId, GcDb::kForRead) != Gcad::eOk) continue;
    ignore(line->intersectWith(edge, GcDb::kExtendThis, meets));
    ignore(edge->close());
  }
  const GcGePoint3d* best = nullptr;
  for (const GcGePoint3d& meet : meets)
    if ((meet - end).dotProduct(outward) > 0 && (best == nullptr || end.distanceTo(meet) < end.distanceTo(*best)))
      best = &meet;
  if (best != nullptr) ignore(atEnd ? line->setEndPoint(*best) : line->setStartPoint(*best));
  ignore(line->close());
  return best != nullptr;
}

Task<bool> extend(CommandInput& in) {
  const Ids edges = co_await askEdges(in, "\nSelect boundary edges...\nSelect objects or <select all>: ");
  for (;;) {
    const Answer picked =
        co_await in.ask(Ask(What::Entity, "\nSelect object to extend or [Fence/Crossing/Project/Edge/Undo]: ")
                            .words("Fence Crossing Project Edge Undo"));
    if (picked.kind != Answer::Kind::Entity) break;
    if (!extendAt(in, picked.entity, picked.point, edges)) in.tell("\nObject does not intersect an edge.\n");
  }
  co_return true;
}

// ---- FILLET of two lines

struct PickedLine {
  GcDbObjectId id;
  GcGePoint3d start, end, pick;  // world
};

bool lineOf(CommandInput& in, const Answer& answer, PickedLine& line) {
  GcDbLine* opened = nullptr;
  if (answer.kind != Answer::Kind::Entity || answer.entity.objectClass() != GcDbLine::desc() ||
      gcdbOpenObject(opened, answer.entity, GcDb::kForRead) != Gcad::eOk)
    return false;
  line = {answer.entity, opened->startPoint(), opened->endPoint(), in.toWorld(answer.point)};
  ignore(opened->close());
  return true;
}

// The part of the line on the side of the pick stays, up to `to`.
void cutBack(const PickedLine& line, const GcGePoint3d& corner, const GcGePoint3d& to) {
  GcDbLine* opened = nullptr;
  if (gcdbOpenObject(opened, line.id, GcDb::kForWrite) != Gcad::eOk) return;
  const GcGeVector3d towardsPick = line.pick - corner;
  const bool keepsEnd = (line.end - corner).dotProduct(towardsPick) > (line.start - corner).dotProduct(towardsPick);
  ignore(keepsEnd ? opened->setStartPoint(to) : opened->setEndPoint(to));
  ignore(opened->close());
}

bool filletLines(CommandInput& in, const PickedLine& a, const PickedLine& b, double radius, bool trims) {
  const GcDbLine first(a.start, a.end);
  const GcDbLine second(b.start, b.end);
  GcArray<GcGePoint3d> meets;
  if (first.intersectWith(&second, GcDb::kExtendBoth, meets) != Gcad::eOk || meets.isEmpty()) return false;
  const GcGePoint3d corner = meets[0];
  const auto direction = [&](const PickedLine& line) {
    const GcGeVector3d along = (line.end - line.start).normal();
    return along * ((line.pick - corner).dotProduct(along) < 0 ? -1.0 : 1.0);
  };
  const GcGeVector3d u = direction(a);
  const GcGeVector3d v = direction(b);
  const double half = std::acos(std::clamp(u.dotProduct(v), -1.0, 1.0)) / 2;
  if (half <= 0 || half >= std::numbers::pi / 2) return false;
  const double back = radius / std::tan(half);
  const GcGePoint3d fromA = corner + u * back;
  const GcGePoint3d fromB = corner + v * back;
  if (radius > 0) {
    const GcGePoint3d center = corner + (u + v).normal() * (radius / std::sin(half));
    const GcGePoint3d centerUser = ucsToWorld(in.editor()).inverse() * center;
    const auto angle = [&](const GcGePoint3d& world) {
      const GcGePoint3d at = ucsToWorld(in.editor()).inverse() * world;
      return GcGeVector2d(at.x - centerUser.x, at.y - centerUser.y).angle();
    };
    double start = angle(fromA);
    double end = angle(fromB);
    if (std::fmod(end - start + 4 * std::numbers::pi, 2 * std::numbers::pi) > std::numbers::pi) std::swap(start, end);
    appendFromUser(in.editor(), new GcDbArc(centerUser, radius, start, end));
  }
  if (!trims) return true;
  cutBack(a, corner, fromA);
  cutBack(b, corner, fromB);
  return true;
}

Task<bool> fillet(CommandInput& in) {
  bool trims = integerVariable(in.editor(), "TRIMMODE") != 0;
  for (;;) {
    const Answer first =
        co_await in.ask(Ask(What::Entity, "\nSelect first object or [Undo/Polyline/Radius/Trim/Multiple]: ")
                            .words("Undo Polyline Radius Trim Multiple"));
    if (first.isKeyword("Radius")) {
      const Answer radius = co_await in.ask(Ask(What::Distance, "\nSpecify fillet radius: "));
      if (radius.kind == Answer::Kind::Number)
        static_cast<void>(setVariable(in.editor(), GC_T("FILLETRAD"), VariableValue::of(radius.number)));
      continue;
    }
    if (first.isKeyword("Trim")) {
      const Answer mode =
          co_await in.ask(Ask(What::Keyword, "\nEnter Trim mode option [Trim/No trim]: ").words("Trim No"));
      trims = !mode.isKeyword("No");
      continue;
    }
    PickedLine a, b;
    if (first.kind != Answer::Kind::Entity) co_return false;
    const Answer second = co_await in.ask(Ask(What::Entity, "\nSelect second object: ").needed());
    const bool good = lineOf(in, first, a) && lineOf(in, second, b) &&
                      filletLines(in, a, b, realVariable(in.editor(), "FILLETRAD"), trims);
    if (!good) in.tell("\nThese objects cannot be filleted.\n");
    co_return good;
  }
}

constexpr Command kCommands[] = {
    {"BREAK", "BR", breakCommand},
    {"TRIM", "TR", trim},
    {"EXTEND", "EX", extend},
    {"FILLET", "F", fillet},
};

}  // namespace

std::span<const Command> modifyCommands() { return kCommands; }

}  // namespace ed
