// Corners of curves rounded off or cut: FILLET and CHAMFER of lines, arcs, circles and polylines.
#include <algorithm>
#include <numbers>
#include <optional>

#include "db/arc.h"
#include "db/circle.h"
#include "db/line.h"
#include "db/polyline.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/opencurve.h"
#include "host/ed/selection.h"
#include "host/ed/stepundo.h"
#include "host/ed/vertexchain.h"
#include "host/rx/math/elementary.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

constexpr double kTurn = 2 * std::numbers::pi;

// Everything is reckoned in the plane of the user's X and Y.
struct Flat {
  double x = 0, y = 0;
};
Flat operator+(Flat a, Flat b) { return {a.x + b.x, a.y + b.y}; }
Flat operator-(Flat a, Flat b) { return {a.x - b.x, a.y - b.y}; }
Flat operator*(Flat a, double f) { return {a.x * f, a.y * f}; }
double dot(Flat a, Flat b) { return a.x * b.x + a.y * b.y; }
double cross(Flat a, Flat b) { return a.x * b.y - a.y * b.x; }
double length(Flat a) { return gc::hypot(a.x, a.y); }
Flat unit(Flat a) { return a * (1 / length(a)); }
double angleOf(Flat a) { return gc::atan2(a.y, a.x); }
double positiveTurn(double angle) { return angle - kTurn * std::floor(angle / kTurn); }

// A line, an arc or a circle that was picked.
struct Side {
  GcDbObjectId id;
  bool isRound = false;
  bool isCircle = false;
  Flat start, end;  // of a line or arc
  Flat center;      // of an arc or circle
  double radius = 0;
  Flat pick;
  bool isPicked = false;  // else the pick is yet to be found
  double z = 0;
};

std::optional<Side> sideOf(CommandInput& in, const Answer& answer) {
  if (answer.kind != Answer::Kind::Entity) return {};
  const OpenCurve curve(answer.entity);
  if (!curve) return {};
  const GcGeMatrix3d toUser = ucsToWorld(in.editor()).inverse();
  const auto flat = [&](const GcGePoint3d& world) {
    const GcGePoint3d user = toUser * world;
    return Flat{user.x, user.y};
  };
  Side side;
  side.id = answer.entity;
  side.pick = {answer.point.x, answer.point.y};
  side.isPicked = answer.objects.empty();  // else it was given by its name alone
  if (const auto* line = GcDbLine::cast(curve.get())) {
    side.start = flat(line->startPoint());
    side.end = flat(line->endPoint());
    side.z = (toUser * line->startPoint()).z;
    if (length(side.end - side.start) == 0) return {};
    return side;
  }
  side.isRound = true;
  if (const auto* circle = GcDbCircle::cast(curve.get())) {
    side.isCircle = true;
    side.center = flat(circle->center());
    side.radius = circle->radius();
    side.z = (toUser * circle->center()).z;
    return side;
  }
  const auto* arc = GcDbArc::cast(curve.get());
  if (arc == nullptr) return {};
  GcGePoint3d start, end;
  if (arc->getStartPoint(start) != Gcad::eOk || arc->getEndPoint(end) != Gcad::eOk) return {};
  side.center = flat(arc->center());
  side.radius = arc->radius();
  side.start = flat(start);
  side.end = flat(end);
  side.z = (toUser * arc->center()).z;
  return side;
}

// ---- where circles of a radius touch both sides

// Centres lie on parallels of lines and on circles about the centres of arcs.
struct Locus {
  bool isRound = false;
  Flat point, direction;
  Flat center;
  double radius = 0;
};

std::vector<Locus> lociOf(const Side& side, double radius) {
  if (side.isRound) {
    std::vector<Locus> found{{true, {}, {}, side.center, side.radius + radius}};
    if (std::fabs(side.radius - radius) > 0)
      found.push_back({true, {}, {}, side.center, std::fabs(side.radius - radius)});
    return found;
  }
  const Flat along = unit(side.end - side.start);
  const Flat across{-along.y, along.x};
  std::vector<Locus> found{{false, side.start + across * radius, along, {}, 0}};
  if (radius > 0) found.push_back({false, side.start - across * radius, along, {}, 0});
  return found;
}

void meet(const Locus& line, Flat center, double radius, std::vector<Flat>& points) {
  const Flat offset = line.point - center;
  const double b = dot(offset, line.direction);
  const double disc = b * b - (dot(offset, offset) - radius * radius);
  if (disc < 0) return;
  for (const double sign : {-1.0, 1.0}) points.push_back(line.point + line.direction * (-b + sign * std::sqrt(disc)));
}

void meet(const Locus& a, const Locus& b, std::vector<Flat>& points) {
  if (!a.isRound && !b.isRound) {
    const double denominator = cross(a.direction, b.direction);
    if (std::fabs(denominator) < 1e-12) return;
    points.push_back(a.point + a.direction * (cross(b.point - a.point, b.direction) / denominator));
  } else if (!a.isRound) {
    meet(a, b.center, b.radius, points);
  } else if (!b.isRound) {
    meet(b, a.center, a.radius, points);
  } else {
    const Flat between = b.center - a.center;
    const double distance = length(between);
    if (distance == 0) return;
    const double along = (distance * distance + a.radius * a.radius - b.radius * b.radius) / (2 * distance);
    const double high = a.radius * a.radius - along * along;
    if (high < 0) return;
    const Flat foot = a.center + between * (along / distance);
    const Flat across = Flat{-between.y, between.x} * (std::sqrt(high) / distance);
    points.push_back(foot + across);
    points.push_back(foot - across);
  }
}

// Where a circle about `center` touches the side (drawn on where need be).
Flat touch(const Side& side, Flat center) {
  if (!side.isRound) {
    const Flat along = unit(side.end - side.start);
    return side.start + along * dot(center - side.start, along);
  }
  const Flat out = center - side.center;
  const double distance = length(out);
  // A circle that lies around the side's centre touches it on the far side.
  return distance == 0 ? side.start : side.center + out * (side.radius / distance);
}

struct Corner {
  Flat center;
  Flat onA, onB;
};

// The circle that touches nearest to the picked points.
std::optional<Corner> roundCorner(const Side& a, const Side& b, double radius) {
  std::vector<Flat> centers;
  for (const Locus& first : lociOf(a, radius))
    for (const Locus& second : lociOf(b, radius)) meet(first, second, centers);
  std::optional<Corner> best;
  double least = 0;
  for (const Flat center : centers) {
    const Corner corner{center, touch(a, center), touch(b, center)};
    const double reach = length(corner.onA - a.pick) + length(corner.onB - b.pick);
    if (best && reach >= least) continue;
    best = corner;
    least = reach;
  }
  return best;
}

// A side named without a point is kept where the most of it is: its pick is the end farther from where the sides meet.
void findPicks(Side& a, Side& b) {
  if (!a.isPicked) a.pick = a.isCircle ? a.center : a.start;
  if (!b.isPicked) b.pick = b.isCircle ? b.center : b.start;
  const std::optional<Corner> crossing = roundCorner(a, b, 0);
  for (Side* side : {&a, &b}) {
    if (side->isPicked || side->isCircle) continue;
    const Flat other = side == &a ? b.pick : a.pick;
    const Flat meeting = crossing ? crossing->onA : other;
    side->pick = length(side->end - meeting) > length(side->start - meeting) ? side->end : side->start;
  }
}

// ---- the sides cut back or drawn on

GcGePoint3d inSpace(CommandInput& in, const Side& side, Flat at) { return in.toWorld({at.x, at.y, side.z}); }

// The part of the line on the side of the pick stays, up to `to`; `corner` tells the two parts apart.
void cutLine(CommandInput& in, const Side& side, Flat corner, Flat to) {
  GcDbLine* line = nullptr;
  if (gcdbOpenObject(line, side.id, GcDb::kForWrite) != Gcad::eOk) return;
  const Flat towardsPick = side.pick - corner;
  const bool keepsEnd = dot(side.end - corner, towardsPick) > dot(side.start - corner, towardsPick);
  const GcGePoint3d at = inSpace(in, side, to);
  ignore(keepsEnd ? line->setStartPoint(at) : line->setEndPoint(at));
  ignore(line->close());
}

// The end of the arc that is farther from the pick, counted along it, moves to `to`.
void cutArc(const Side& side, Flat to) {
  GcDbArc* arc = nullptr;
  if (gcdbOpenObject(arc, side.id, GcDb::kForWrite) != Gcad::eOk) return;
  const double start = angleOf(side.start - side.center);
  const double pick = positiveTurn(angleOf(side.pick - side.center) - start);
  const double at = positiveTurn(angleOf(to - side.center) - start);
  const double sweep = positiveTurn(angleOf(side.end - side.center) - start);
  // Beyond the arc the nearer end is drawn on to the point.
  const bool beyond = at > sweep;
  const bool movesEnd = beyond ? at - sweep < kTurn - at : at > pick;
  const double turned = movesEnd ? at - sweep : beyond ? at - kTurn : at;
  const double angle = (movesEnd ? arc->endAngle() : arc->startAngle()) + turned;
  ignore(movesEnd ? arc->setEndAngle(angle) : arc->setStartAngle(angle));
  ignore(arc->close());
}

void cut(CommandInput& in, const Side& side, Flat corner, Flat to) {
  if (side.isCircle) return;
  side.isRound ? cutArc(side, to) : cutLine(in, side, corner, to);
}

void likeSource(GcDbObjectId made, GcDbObjectId source) {
  GcDbEntity* from = nullptr;
  GcDbEntity* to = nullptr;
  if (gcdbOpenObject(from, source, GcDb::kForRead) != Gcad::eOk) return;
  if (gcdbOpenObject(to, made, GcDb::kForWrite) == Gcad::eOk) {
    ignore(to->setPropertiesFrom(*from));
    ignore(to->close());
  }
  ignore(from->close());
}

bool filletSides(CommandInput& in, const Side& a, const Side& b, double radius, bool trims) {
  const std::optional<Corner> corner = roundCorner(a, b, radius);
  if (!corner) return false;
  if (radius > 0) {
    double start = angleOf(corner->onA - corner->center);
    double end = angleOf(corner->onB - corner->center);
    if (positiveTurn(end - start) > std::numbers::pi) std::swap(start, end);
    const GcDbObjectId made = appendFromUser(in.editor(), new GcDbArc({corner->center.x, corner->center.y, a.z}, radius,
                                                                      positiveTurn(start), positiveTurn(end)));
    if (a.id.isValid()) likeSource(made, a.id);
  }
  if (!trims) return true;
  // What tells the two parts of a side apart is where the sides meet.
  const std::optional<Corner> crossing = roundCorner(a, b, 0);
  cut(in, a, crossing ? crossing->onA : corner->onA, corner->onA);
  cut(in, b, crossing ? crossing->onB : corner->onB, corner->onB);
  return true;
}

// Parallel lines are joined by a half circle between them, at the end of the first nearer to its pick.
bool filletParallel(CommandInput& in, const Side& a, const Side& b, bool trims) {
  const Flat along = unit(a.end - a.start);
  const bool atEnd = length(a.pick - a.end) <= length(a.pick - a.start);
  const Flat from = atEnd ? a.end : a.start;
  const Flat to = b.start + along * dot(from - b.start, along);
  const double radius = length(to - from) / 2;
  if (radius == 0) return false;
  const Flat center = (from + to) * 0.5;
  const Flat outward = along * (atEnd ? 1.0 : -1.0);
  const bool leftTurn = cross(outward, to - from) > 0;
  const double start = angleOf((leftTurn ? from : to) - center);
  const GcDbObjectId made =
      appendFromUser(in.editor(), new GcDbArc({center.x, center.y, a.z}, radius, start, start + std::numbers::pi));
  likeSource(made, a.id);
  if (trims) cutLine(in, b, to, to);
  return true;
}

bool areParallel(const Side& a, const Side& b) {
  return !a.isRound && !b.isRound && std::fabs(cross(unit(a.end - a.start), unit(b.end - b.start))) < 1e-9;
}

// ---- polylines: all corners between straight segments at once

struct Cut {
  double before = 0;  // how far before the corner the new piece begins
  double after = 0;   // and how far behind it ends
  double bulge = 0;
};

template <class HowToCut>
int cutVertices(GcDbPolyline& line, const HowToCut& howToCut) {
  const GcArray<GcDbPolylineVertex> old = line.vertices();
  const int count = old.length();
  const bool closed = line.isClosed();
  std::vector<GcDbPolylineVertex> made;
  std::vector<std::optional<Cut>> cuts(static_cast<size_t>(count));
  const auto point = [&](int i) { return Flat{old[(i + count) % count].point.x, old[(i + count) % count].point.y}; };
  int done = 0;
  for (int i = closed ? 0 : 1; i < (closed ? count : count - 1); ++i) {
    if (old[(i + count - 1) % count].bulge != 0 || old[i].bulge != 0) continue;
    cuts[static_cast<size_t>(i)] = howToCut(point(i - 1), point(i), point(i + 1));
  }
  // A segment must be long enough for what is cut from both its ends. A corner that goes leaves room for others, which
  // are not asked again.
  for (int i = 0; i < (closed ? count : count - 1); ++i) {
    const auto next = static_cast<size_t>((i + 1) % count);
    const auto here = static_cast<size_t>(i);
    const double room = length(point(i + 1) - point(i)) * (1 + 1e-12);
    const double after = cuts[here] ? cuts[here]->after : 0;
    if (after > room) cuts[here].reset();
    if (cuts[next] && cuts[next]->before + (after > room ? 0 : after) > room) cuts[next].reset();
  }
  for (int i = 0; i < count; ++i) {
    GcDbPolylineVertex vertex = old[i];
    const std::optional<Cut>& each = cuts[static_cast<size_t>(i)];
    if (!each) {
      made.push_back(vertex);
      continue;
    }
    ++done;
    const Flat before = point(i) + unit(point(i - 1) - point(i)) * each->before;
    const Flat after = point(i) + unit(point(i + 1) - point(i)) * each->after;
    vertex.point = {before.x, before.y};
    vertex.bulge = each->bulge;
    made.push_back(vertex);
    vertex.point = {after.x, after.y};
    vertex.bulge = 0;
    made.push_back(vertex);
  }
  if (done == 0) return 0;
  while (line.numVerts() > 0) ignore(line.removeVertexAt(line.numVerts() - 1));
  for (const GcDbPolylineVertex& vertex : made)
    ignore(line.addVertexAt(line.numVerts(), vertex.point, vertex.bulge, vertex.startWidth, vertex.endWidth));
  return done;
}

std::optional<Cut> roundVertex(Flat before, Flat at, Flat after, double radius) {
  if (length(before - at) == 0 || length(after - at) == 0) return {};
  const Flat u = unit(before - at);
  const Flat v = unit(after - at);
  const double inside = gc::acos(std::clamp(dot(u, v), -1.0, 1.0));
  if (inside < 1e-9 || inside > std::numbers::pi - 1e-9) return {};
  const double back = radius / gc::tan(inside / 2);
  const double sweep = std::numbers::pi - inside;
  return Cut{back, back, gc::tan(sweep / 4) * (cross(u, v) < 0 ? 1 : -1)};
}

Task<bool> cutPolyline(CommandInput& in, bool rounds) {
  const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect 2D polyline: ").needed());
  GcDbPolyline* line = nullptr;
  if (picked.kind != Answer::Kind::Entity || gcdbOpenObject(line, picked.entity, GcDb::kForWrite) != Gcad::eOk) {
    in.tell("\nThat is no lightweight polyline.\n");
    co_return false;
  }
  Editor& editor = in.editor();
  const double radius = realVariable(editor, "FILLETRAD");
  const double first = realVariable(editor, "CHAMFERA");
  const double second = realVariable(editor, "CHAMFERB");
  const int done = cutVertices(*line, [&](Flat before, Flat at, Flat after) -> std::optional<Cut> {
    if (rounds) return radius > 0 ? roundVertex(before, at, after, radius) : std::nullopt;
    if (std::fabs(cross(before - at, after - at)) == 0 || first + second <= 0) return {};
    return Cut{first, second, 0};
  });
  ignore(line->close());
  const std::string count = std::to_string(done);
  in.tell(
      ("\n" + count + (done == 1 ? " line was " : " lines were ") + (rounds ? "filleted.\n" : "chamfered.\n")).c_str());
  co_return done > 0;
}

// Two neighbouring straight segments of one polyline.
bool cutPolylineAt(CommandInput& in, const Answer& first, const Answer& second, bool rounds) {
  GcDbPolyline* line = nullptr;
  if (first.entity != second.entity || gcdbOpenObject(line, first.entity, GcDb::kForWrite) != Gcad::eOk) return false;
  const int count = static_cast<int>(line->numVerts());
  const auto segmentAt = [&](const GcGePoint3d& user) {
    GcGePoint3d at;
    double param = 0;
    if (line->getClosestPointTo(in.toWorld(user), at) != Gcad::eOk || line->getParamAtPoint(at, param) != Gcad::eOk)
      return -1;
    return static_cast<int>(param) % count;
  };
  const int a = segmentAt(first.point);
  const int b = segmentAt(second.point);
  const int corner = (a + 1) % count == b ? b : (b + 1) % count == a ? a : -1;
  int done = 0;
  if (corner >= 0) {
    const double radius = realVariable(in.editor(), "FILLETRAD");
    // The distance of the picked first segment is the first one.
    const bool forwards = corner == b;
    const double before = realVariable(in.editor(), forwards ? "CHAMFERA" : "CHAMFERB");
    const double after = realVariable(in.editor(), forwards ? "CHAMFERB" : "CHAMFERA");
    GcGePoint2d at;
    ignore(line->getPointAt(static_cast<unsigned>(corner), at));
    done = cutVertices(*line, [&](Flat previous, Flat here, Flat next) -> std::optional<Cut> {
      if (here.x != at.x || here.y != at.y) return {};
      if (rounds) return roundVertex(previous, here, next, radius);
      return Cut{before, after, 0};
    });
  }
  ignore(line->close());
  return done > 0;
}

// ---- polylines with something else

// A picked thing by itself: of an open polyline the picked segment, as an entity for as long as it takes.
struct Loose {
  Answer pick;        // leads to the segment or the thing itself
  VertexChain chain;  // the whole polyline
  int segment = -1;   // of it; -1 for other things
  GcDbObjectId polyline;
};

Loose loosen(CommandInput& in, const Answer& picked) {
  Loose loose{picked, {}, -1, {}};
  GcDbVoidPtrArray pieces;
  GcGePoint3d at;
  double param = 0;
  {
    const OpenCurve curve(picked.entity);
    const auto* line = curve ? GcDbPolyline::cast(curve.get()) : nullptr;
    if (line == nullptr || line->isClosed() || !loose.chain.take(*line) ||
        line->getClosestPointTo(in.toWorld(picked.point), at) != Gcad::eOk ||
        line->getParamAtPoint(at, param) != Gcad::eOk || line->explode(pieces) != Gcad::eOk)
      return loose;
  }
  loose.segment = std::clamp(static_cast<int>(param), 0, pieces.length() - 1);
  loose.polyline = picked.entity;
  for (int i = 0; i < pieces.length(); ++i) {
    auto* piece = static_cast<GcDbEntity*>(pieces[i]);
    if (i == loose.segment)
      loose.pick.entity = appendWithDefaults(in.editor(), piece);
    else
      delete piece;
  }
  return loose;
}

bool takeRun(GcDbObjectId id, VertexChain& chain) {
  const OpenCurve curve(id);
  return curve && chain.take(*curve.get());
}

// What is left of the polyline with its cut segment: the segments on the side of the end the segment has kept.
bool runOf(const Loose& loose, VertexChain& run) {
  if (!takeRun(loose.pick.entity, run)) return false;
  if (loose.segment < 0) return true;
  const auto& old = loose.chain.vertices;
  const auto i = static_cast<size_t>(loose.segment);
  const auto touches = [&](const GcGePoint2d& at) {
    const auto near = [&](const GcGePoint2d& end) {
      return gc::hypot(end.x - at.x, end.y - at.y) <= 1e-9 * (1 + std::fabs(at.x) + std::fabs(at.y));
    };
    return near(run.vertices.front().point) || near(run.vertices.back().point);
  };
  const bool keepsStart = touches(old[i].point);
  VertexChain rest = loose.chain;
  if (keepsStart)
    rest.vertices.resize(i + 1);
  else
    rest.vertices.erase(rest.vertices.begin(), rest.vertices.begin() + static_cast<std::ptrdiff_t>(i) + 1);
  if (rest.vertices.size() < 2) return true;
  if (!rest.join(run, 0)) return false;
  run = rest;
  return true;
}

// Two segments of one polyline, or a polyline and a line, an arc or another polyline, which become one.
bool filletRuns(CommandInput& in, const Answer& first, const Answer& second, bool trims) {
  if (first.entity == second.entity) return cutPolylineAt(in, first, second, true);
  Loose one = loosen(in, first);
  Loose other = loosen(in, second);
  const auto drop = [](const Loose& loose) {
    if (loose.segment >= 0) eraseEntity(loose.pick.entity);
  };
  std::optional<Side> a = sideOf(in, one.pick);
  std::optional<Side> b = sideOf(in, other.pick);
  const double radius = realVariable(in.editor(), "FILLETRAD");
  bool good = a && b && (one.segment >= 0 || other.segment >= 0) && !a->isCircle && !b->isCircle;
  if (good) {
    findPicks(*a, *b);
    good = !areParallel(*a, *b) && filletSides(in, *a, *b, radius, trims);
  }
  VertexChain whole, end, arc;
  const GcDbObjectId arcId = radius > 0 && good ? lastEntity(in.editor()) : GcDbObjectId();
  if (good && trims) {
    good = runOf(one, whole) && runOf(other, end) && (arcId.isNull() || (takeRun(arcId, arc) && whole.join(arc, 0))) &&
           whole.join(end, 0);
    const GcDbObjectId kept = one.segment >= 0 ? one.polyline : other.polyline;
    const GcDbObjectId gone = one.segment >= 0 ? second.entity : first.entity;
    if (good) {
      forEach<GcDbPolyline>({kept}, [&](GcDbPolyline& line) { whole.put(line); });
      eraseEntity(gone);
      if (!arcId.isNull()) eraseEntity(arcId);
    }
  }
  drop(one);
  drop(other);
  return good;
}

// ---- FILLET

Task<bool> askTrim(CommandInput& in, const char* name) {
  const Answer mode = co_await in.ask(Ask(What::Keyword, "\nEnter Trim mode option [Trim/No trim]: ").words("Trim No"));
  if (mode.kind == Answer::Kind::Keyword)
    static_cast<void>(setVariable(in.editor(), gc::fromUtf8(name), VariableValue::of(mode.isKeyword("No") ? 0 : 1)));
  co_return true;
}

Task<bool> fillet(CommandInput& in) {
  bool any = false;
  bool multiple = false;
  StepUndo steps(in.database());
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
      static_cast<void>(co_await askTrim(in, "TRIMMODE"));
      continue;
    }
    if (first.isKeyword("Polyline")) co_return co_await cutPolyline(in, true);
    multiple = multiple || first.isKeyword("Multiple");
    if (first.isKeyword("Undo") && !steps.back()) in.tell("\nAll has been undone.\n");
    if (first.isKeyword("Multiple") || first.isKeyword("Undo")) continue;
    if (first.kind != Answer::Kind::Entity) co_return any;
    const Answer second = co_await in.ask(
        Ask(What::Entity, "\nSelect second object or shift-select to apply corner: ").words("Radius").needed());
    if (second.kind != Answer::Kind::Entity) co_return any;
    std::optional<Side> a = sideOf(in, first);
    std::optional<Side> b = sideOf(in, second);
    if (a && b) findPicks(*a, *b);
    const bool trims = integerVariable(in.editor(), "TRIMMODE") != 0;
    steps.begin();
    const bool good = !a || !b ? filletRuns(in, first, second, trims)
                      : a && b ? areParallel(*a, *b)
                                     ? filletParallel(in, *a, *b, trims)
                                     : filletSides(in, *a, *b, realVariable(in.editor(), "FILLETRAD"), trims)
                               : false;
    if (!good) {
      static_cast<void>(steps.back());
      in.tell("\nThese objects cannot be filleted.\n");
    }
    any = any || good;
    if (!multiple) co_return good;
  }
}

// ---- CHAMFER

bool chamferLines(CommandInput& in, const Side& a, const Side& b, double first, double second, bool trims) {
  const std::optional<Corner> crossing = a.isRound || b.isRound ? std::nullopt : roundCorner(a, b, 0);
  if (!crossing) return false;
  const Flat corner = crossing->onA;
  const auto back = [&](const Side& side, double distance) {
    const Flat along = unit(side.end - side.start);
    return corner + along * (dot(side.pick - corner, along) < 0 ? -distance : distance);
  };
  const Flat onA = back(a, first);
  const Flat onB = back(b, second);
  if (first > 0 || second > 0)
    likeSource(appendFromUser(in.editor(), new GcDbLine({onA.x, onA.y, a.z}, {onB.x, onB.y, b.z})), a.id);
  if (!trims) return true;
  cutLine(in, a, corner, onA);
  cutLine(in, b, corner, onB);
  return true;
}

Task<bool> askDistance(CommandInput& in, const char* prompt, const GCHAR* name) {
  const Answer answer = co_await in.ask(Ask(What::Distance, prompt));
  if (answer.kind == Answer::Kind::Number)
    static_cast<void>(setVariable(in.editor(), name, VariableValue::of(answer.number)));
  co_return answer.kind == Answer::Kind::Number;
}

// A length on the first line and the angle of the cut give the second length once the lines are known.
struct AngleCut {
  bool given = false;
  double lengthOnFirst = 0;
  double angleRad = 0;
};

double secondLength(const Side& a, const Side& b, const AngleCut& cut) {
  const double between = std::fabs(angleOf(a.end - a.start) - angleOf(b.end - b.start));
  const double inside = std::fmod(between, std::numbers::pi);
  const double third = std::numbers::pi - inside - cut.angleRad;
  return gc::sin(third) == 0 ? 0 : std::fabs(cut.lengthOnFirst * gc::sin(cut.angleRad) / gc::sin(third));
}

Task<bool> chamfer(CommandInput& in) {
  Editor& editor = in.editor();
  AngleCut byAngle;
  bool any = false;
  bool multiple = false;
  StepUndo steps(in.database());
  for (;;) {
    const Answer first = co_await in.ask(
        Ask(What::Entity, "\nSelect first line or [Undo/Polyline/Distance/Angle/Trim/mEthod/Multiple]: ")
            .words("Undo Polyline Distance Angle Trim mEthod Multiple"));
    if (first.isKeyword("Distance")) {
      if (co_await askDistance(in, "\nSpecify first chamfer distance: ", GC_T("CHAMFERA")) &&
          !co_await askDistance(in, "\nSpecify second chamfer distance: ", GC_T("CHAMFERB")))
        static_cast<void>(setVariable(editor, GC_T("CHAMFERB"), VariableValue::of(realVariable(editor, "CHAMFERA"))));
      byAngle.given = false;
      continue;
    }
    if (first.isKeyword("Angle")) {
      static_cast<void>(co_await askDistance(in, "\nSpecify chamfer length on the first line: ", GC_T("CHAMFERC")));
      const Answer angle = co_await in.ask(Ask(What::Angle, "\nSpecify chamfer angle from the first line: "));
      byAngle = {true, realVariable(editor, "CHAMFERC"), angle.number};
      continue;
    }
    if (first.isKeyword("Trim")) {
      static_cast<void>(co_await askTrim(in, "TRIMMODE"));
      continue;
    }
    if (first.isKeyword("mEthod")) {
      const Answer way = co_await in.ask(
          Ask(What::Keyword, "\nEnter trim method [Distance/Angle] <Distance>: ").words("Distance Angle"));
      byAngle.given = way.isKeyword("Angle");
      continue;
    }
    if (first.isKeyword("Polyline")) co_return co_await cutPolyline(in, false);
    multiple = multiple || first.isKeyword("Multiple");
    if (first.isKeyword("Undo") && !steps.back()) in.tell("\nAll has been undone.\n");
    if (first.isKeyword("Multiple") || first.isKeyword("Undo")) continue;
    if (first.kind != Answer::Kind::Entity) co_return any;
    const Answer second = co_await in.ask(Ask(What::Entity, "\nSelect second line: ").needed());
    if (second.kind != Answer::Kind::Entity) co_return any;
    std::optional<Side> a = sideOf(in, first);
    std::optional<Side> b = sideOf(in, second);
    if (a && b) findPicks(*a, *b);
    const bool trims = integerVariable(editor, "TRIMMODE") != 0;
    const double onFirst = byAngle.given ? byAngle.lengthOnFirst : realVariable(editor, "CHAMFERA");
    bool good = false;
    steps.begin();
    if (a && b && !a->isRound && !b->isRound)
      good = chamferLines(in, *a, *b, onFirst,
                          byAngle.given ? secondLength(*a, *b, byAngle) : realVariable(editor, "CHAMFERB"), trims);
    else
      good = cutPolylineAt(in, first, second, false);
    if (!good) in.tell("\nThese objects cannot be chamfered.\n");
    any = any || good;
    if (!multiple) co_return good;
  }
}

constexpr Command kCommands[] = {
    {"FILLET", "F", fillet},
    {"CHAMFER", "CHA", chamfer},
};

}  // namespace

std::span<const Command> cornerCommands() { return kCommands; }

}  // namespace ed
