// Curves cut, trimmed and extended.
#include <algorithm>
#include <memory>
#include <numbers>

#include "db/arc.h"
#include "db/line.h"
#include "db/polyline.h"
#include "db/xline.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/opencurve.h"
#include "host/ed/stepundo.h"
#include "host/ed/takeplace.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

GcGePoint3d nearestOn(const GcDbCurve& curve, const GcGePoint3d& world) {
  GcGePoint3d at = world;
  ignore(curve.getClosestPointTo(world, at));
  return at;
}

void appendLike(GcDbObjectId sourceId, GcDbCurve* piece) {
  GcDbEntity* source = nullptr;
  GcDbBlockTableRecord* space = nullptr;
  bool appended = false;
  if (gcdbOpenObject(source, sourceId, GcDb::kForRead) == Gcad::eOk) {
    ignore(piece->setPropertiesFrom(*source));
    if (gcdbOpenObject(space, source->ownerId(), GcDb::kForWrite) == Gcad::eOk) {
      appended = space->appendGcDbEntity(piece) == Gcad::eOk;
      ignore(space->close());
    }
    ignore(source->close());
  }
  if (appended)
    ignore(piece->close());
  else
    delete piece;
}

// Pieces in the place of the entity they came from, but for those that `drops` names. The first one that stays is that
// entity from now on, where it may be.
template <class Drops>
bool replaceByPieces(GcDbObjectId id, const GcDbVoidPtrArray& pieces, const Drops& drops) {
  GcDbCurve* first = nullptr;
  for (int i = 0; i < pieces.length(); ++i) {
    auto* piece = static_cast<GcDbCurve*>(pieces[i]);
    if (drops(i, *piece))
      delete piece;
    else if (first == nullptr)
      first = piece;
    else
      appendLike(id, piece);
  }
  if (first != nullptr && takePlace(id, first)) return true;
  if (first != nullptr) appendLike(id, first);
  eraseEntity(id);
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

// ---- edges, and what crosses a fence

GcDb::Intersect reachOfEdges(CommandInput& in, bool extendsCurve) {
  const bool edgesGoOn = integerVariable(in.editor(), "EDGEMODE") != 0;
  if (extendsCurve) return edgesGoOn ? GcDb::kExtendBoth : GcDb::kExtendThis;
  return edgesGoOn ? GcDb::kExtendArg : GcDb::kOnBothOperands;
}

// Where the curve meets the edges.
std::vector<GcGePoint3d> meetings(const GcDbCurve& curve, GcDbObjectId self, const Ids& edges, GcDb::Intersect reach) {
  std::vector<GcGePoint3d> points;
  for (const GcDbObjectId edgeId : edges) {
    GcDbEntity* edge = nullptr;
    if (edgeId == self || gcdbOpenObject(edge, edgeId, GcDb::kForRead) != Gcad::eOk) continue;
    GcArray<GcGePoint3d> found;
    ignore(curve.intersectWith(edge, reach, found));
    ignore(edge->close());
    for (const GcGePoint3d& point : found) points.push_back(point);
  }
  return points;
}

Task<Ids> askEdges(CommandInput& in, const char* prompt) {
  const Ids edges = co_await selectObjects(in, prompt);
  co_return edges.empty() ? entitiesOf(in.editor().currentSpace()) : edges;
}

struct Pick {
  GcDbObjectId id;
  GcGePoint3d at;  // world
};

// What a line from one point to the other crosses, each where it does. User coordinates.
void addCrossed(CommandInput& in, const GcGePoint3d& from, const GcGePoint3d& to, std::vector<Pick>& picks) {
  const GcDbLine fence(in.toWorld(from), in.toWorld(to));
  for (const GcDbObjectId id : entitiesOf(in.editor().currentSpace())) {
    OpenCurve curve(id);
    GcArray<GcGePoint3d> found;
    if (!curve || curve->intersectWith(&fence, GcDb::kOnBothOperands, found) != Gcad::eOk) continue;
    for (const GcGePoint3d& at : found) picks.push_back({id, at});
  }
}

// The curves a fence crosses, each where it does.
Task<std::vector<Pick>> askFence(CommandInput& in) {
  std::vector<Pick> picks;
  std::vector<GcGePoint3d> points;
  for (;;) {
    Ask ask(What::Point, points.empty() ? "\nSpecify first fence point: " : "\nSpecify next fence point or [Undo]: ");
    if (!points.empty()) ask.from(points.back()).words("Undo");
    const Answer answer = co_await in.ask(ask);
    if (answer.isKeyword("Undo") && !points.empty()) points.pop_back();
    if (answer.isPoint())
      points.push_back(answer.point);
    else if (answer.kind != Answer::Kind::Keyword)
      break;
  }
  for (size_t i = 1; i < points.size(); ++i) addCrossed(in, points[i - 1], points[i], picks);
  co_return picks;
}

// The curves the edges of a window cross.
Task<std::vector<Pick>> askCrossing(CommandInput& in) {
  std::vector<Pick> picks;
  const Answer a = co_await in.ask(Ask(What::Point, "\nSpecify first corner: ").needed());
  const Answer b = co_await in.ask(Ask(What::Point, "\nSpecify opposite corner: ").from(a.point).needed());
  if (!a.isPoint() || !b.isPoint()) co_return picks;
  const GcGePoint3d corners[] = {a.point, {b.point.x, a.point.y, 0}, b.point, {a.point.x, b.point.y, 0}, a.point};
  for (int i = 0; i < 4; ++i) addCrossed(in, corners[i], corners[i + 1], picks);
  co_return picks;
}

// Asks for curves, one by one or by a fence, until Enter; `work` does what the command is for.
template <class Work>
Task<bool> eachPicked(CommandInput& in, const char* prompt, Work work) {
  bool any = false;
  StepUndo steps(in.database());
  for (;;) {
    const Answer picked = co_await in.ask(Ask(What::Entity, prompt).words("Fence Crossing Project Edge eRase Undo"));
    std::vector<Pick> picks;
    if (picked.isKeyword("Undo")) {
      if (!steps.back()) in.tell("\nAll has been undone.\n");
      continue;
    }
    if (picked.kind == Answer::Kind::Entity) {
      picks.push_back({picked.entity, in.toWorld(picked.point)});
    } else if (picked.isKeyword("Fence")) {
      picks = co_await askFence(in);
    } else if (picked.isKeyword("Crossing")) {
      picks = co_await askCrossing(in);
    } else if (picked.isKeyword("Edge")) {
      const Answer mode = co_await in.ask(
          Ask(What::Keyword, "\nEnter an implied edge extension mode [Extend/No extend]: ").words("Extend No"));
      if (mode.kind == Answer::Kind::Keyword)
        static_cast<void>(setVariable(in.editor(), GC_T("EDGEMODE"), VariableValue::of(mode.isKeyword("No") ? 0 : 1)));
      continue;
    } else if (picked.isKeyword("Project")) {
      static_cast<void>(co_await in.ask(
          Ask(What::Keyword, "\nEnter a projection option [None/Ucs/View] <Ucs>: ").words("None Ucs View")));
      continue;
    } else if (picked.isKeyword("eRase")) {
      const Ids gone = co_await selectObjects(in);
      steps.begin();
      for (const GcDbObjectId id : gone) eraseEntity(id);
      continue;
    } else {
      break;
    }
    steps.begin();
    bool done = false;
    for (const Pick& pick : picks) {
      const bool good = work(pick);
      if (!good) in.tell("\nObject does not intersect an edge.\n");
      done = done || good;
    }
    if (!done) steps.drop();
    any = any || done;
  }
  co_return any;
}

// ---- TRIM

// A line without ends on one or both sides, as its base and direction.
bool endlessOf(const GcDbCurve& curve, GcGePoint3d& base, GcGeVector3d& way, bool& bothWays) {
  if (const auto* xline = GcDbXline::cast(&curve)) {
    base = xline->basePoint();
    way = xline->unitDir();
    bothWays = true;
    return true;
  }
  const auto* ray = GcDbRay::cast(&curve);
  if (ray == nullptr) return false;
  base = ray->basePoint();
  way = ray->unitDir();
  bothWays = false;
  return true;
}

GcDbCurve* rayFrom(const GcGePoint3d& base, const GcGeVector3d& way) {
  auto* ray = new GcDbRay;
  ignore(ray->setBasePoint(base));
  ignore(ray->setUnitDir(way));
  return ray;
}

// What is left of such a line on both sides of the picked part: rays, and behind a ray's base a line.
bool trimEndless(const GcDbCurve& curve, const GcGePoint3d& pick, const std::vector<GcGePoint3d>& points,
                 GcDbVoidPtrArray& pieces) {
  GcGePoint3d base;
  GcGeVector3d way;
  bool bothWays = false;
  if (!endlessOf(curve, base, way, bothWays)) return false;
  const double at = (pick - base).dotProduct(way);
  double below = -1e300, above = 1e300;
  for (const GcGePoint3d& point : points) {
    const double t = (point - base).dotProduct(way);
    if (t <= at) below = std::max(below, t);
    if (t > at) above = std::min(above, t);
  }
  if (below > -1e300 && bothWays) pieces.append(rayFrom(base + way * below, -way));
  if (below > 0 && !bothWays) pieces.append(new GcDbLine(base, base + way * below));
  if (above < 1e300) pieces.append(rayFrom(base + way * above, way));
  return pieces.length() > 0;
}

// Cuts away the part of a curve under the picked point, as far as the edges reach.
bool trimAt(CommandInput& in, const Pick& pick, const Ids& edges) {
  OpenCurve curve(pick.id);
  if (!curve) return false;
  const GcGePoint3d at = nearestOn(*curve.get(), pick.at);
  GcDbVoidPtrArray pieces;
  const std::vector<GcGePoint3d> points = meetings(*curve.get(), pick.id, edges, reachOfEdges(in, false));
  if (trimEndless(*curve.get(), at, points, pieces)) {
    curve.close();
    return replaceByPieces(pick.id, pieces, [](int, const GcDbCurve&) { return false; });
  }
  if (!split(*curve.get(), points, pieces)) return false;
  int nearest = 0;
  double least = 1e300;
  for (int i = 0; i < pieces.length(); ++i) {
    const double distance = at.distanceTo(nearestOn(*static_cast<const GcDbCurve*>(pieces[i]), at));
    if (distance < least) nearest = i;
    least = std::min(least, distance);
  }
  curve.close();
  return replaceByPieces(pick.id, pieces, [&](int i, const GcDbCurve&) { return i == nearest; });
}

Task<bool> trim(CommandInput& in) {
  const Ids edges = co_await askEdges(in, "\nSelect cutting edges...\nSelect objects or <select all>: ");
  co_return co_await eachPicked(in, "\nSelect object to trim or [Fence/Crossing/Project/Edge/eRase/Undo]: ",
                                [&](const Pick& pick) { return trimAt(in, pick, edges); });
}

// ---- EXTEND: the end of a curve nearer to the pick goes on to the nearest edge

double positiveTurn(double angle) { return angle - 2 * std::numbers::pi * std::floor(angle / (2 * std::numbers::pi)); }

bool extendLine(GcDbLine& line, bool atEnd, const std::vector<GcGePoint3d>& edges) {
  const GcGePoint3d end = atEnd ? line.endPoint() : line.startPoint();
  const GcGeVector3d outward = end - (atEnd ? line.startPoint() : line.endPoint());
  const GcGePoint3d* best = nullptr;
  for (const GcGePoint3d& at : edges)
    if ((at - end).dotProduct(outward) > 1e-12 * outward.dotProduct(outward) &&
        (best == nullptr || end.distanceTo(at) < end.distanceTo(*best)))
      best = &at;
  if (best == nullptr) return false;
  return (atEnd ? line.setEndPoint(*best) : line.setStartPoint(*best)) == Gcad::eOk;
}

bool extendArc(GcDbArc& arc, bool atEnd, const std::vector<GcGePoint3d>& edges) {
  const double sweep = arc.sweepAngle();
  GcGeMatrix3d toPlane;
  toPlane.setToWorldToPlane(arc.normal());
  double best = 2 * std::numbers::pi - sweep;
  bool found = false;
  for (const GcGePoint3d& at : edges) {
    const GcGeVector3d out = toPlane * (at - arc.center());
    const double angle = gc::atan2(out.y, out.x);
    const double turn = atEnd ? positiveTurn(angle - arc.endAngle()) : positiveTurn(arc.startAngle() - angle);
    if (turn < 1e-9 || turn >= best) continue;
    best = turn;
    found = true;
  }
  if (!found) return false;
  return (atEnd ? arc.setEndAngle(arc.endAngle() + best) : arc.setStartAngle(arc.startAngle() - best)) == Gcad::eOk;
}

bool extendPiece(CommandInput& in, GcDbCurve& piece, GcDbObjectId self, bool atEnd, const Ids& edges) {
  const std::vector<GcGePoint3d> points = meetings(piece, self, edges, reachOfEdges(in, true));
  if (auto* line = GcDbLine::cast(&piece)) return extendLine(*line, atEnd, points);
  auto* arc = GcDbArc::cast(&piece);
  return arc != nullptr && extendArc(*arc, atEnd, points);
}

// The first or last segment, as a line or arc that runs the polyline's way (arcs: or the other, told by the bulge).
bool extendPolyline(CommandInput& in, GcDbPolyline& line, GcDbObjectId self, bool atEnd, const Ids& edges) {
  GcDbVoidPtrArray pieces;
  if (line.isClosed() || line.explode(pieces) != Gcad::eOk || pieces.length() == 0) return false;
  auto* piece = static_cast<GcDbCurve*>(pieces[atEnd ? pieces.length() - 1 : 0]);
  const unsigned last = line.numVerts() - 1;
  const unsigned segment = atEnd ? last - 1 : 0;
  double bulge = 0;
  ignore(line.getBulgeAt(segment, bulge));
  const bool pieceAtEnd = bulge < 0 ? !atEnd : atEnd;
  const bool good = extendPiece(in, *piece, self, pieceAtEnd, edges);
  GcGePoint3d end;
  if (good && (pieceAtEnd ? piece->getEndPoint(end) : piece->getStartPoint(end)) == Gcad::eOk) {
    GcGeMatrix3d toPlane;
    const GcGePoint3d at = toPlane.setToWorldToPlane(line.normal()) * end;
    ignore(line.setPointAt(atEnd ? last : 0, {at.x, at.y}));
    if (const auto* arc = GcDbArc::cast(piece)) {
      ignore(line.setBulgeAt(segment, std::copysign(gc::tan(arc->sweepAngle() / 4), bulge)));
    }
  }
  for (void* each : pieces) delete static_cast<GcDbEntity*>(each);
  return good;
}

bool extendAt(CommandInput& in, const Pick& pick, const Ids& edges) {
  GcDbCurve* curve = nullptr;
  if (gcdbOpenObject(curve, pick.id, GcDb::kForWrite) != Gcad::eOk) return false;
  double half = 0, at = 0;
  ignore(curve->getEndParam(half));
  ignore(curve->getDistAtParam(half, half));
  ignore(curve->getDistAtPoint(nearestOn(*curve, pick.at), at));
  const bool atEnd = at >= half / 2;
  auto* polyline = GcDbPolyline::cast(curve);
  const bool good = polyline != nullptr ? extendPolyline(in, *polyline, pick.id, atEnd, edges)
                                        : extendPiece(in, *curve, pick.id, atEnd, edges);
  ignore(curve->close());
  return good;
}

Task<bool> extend(CommandInput& in) {
  const Ids edges = co_await askEdges(in, "\nSelect boundary edges...\nSelect objects or <select all>: ");
  co_return co_await eachPicked(in, "\nSelect object to extend or [Fence/Crossing/Project/Edge/Undo]: ",
                                [&](const Pick& pick) { return extendAt(in, pick, edges); });
}

constexpr Command kCommands[] = {
    {"BREAK", "BR", breakCommand},
    {"TRIM", "TR", trim},
    {"EXTEND", "EX", extend},
};

}  // namespace

std::span<const Command> modifyCommands() { return kCommands; }

}  // namespace ed
