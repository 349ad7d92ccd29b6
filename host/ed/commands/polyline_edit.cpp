// PEDIT: polylines closed, joined, given widths, turned round; and JOIN.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "db/arc.h"
#include "db/circle.h"
#include "db/line.h"
#include "db/mesh.h"
#include "db/polyline2d.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/commands/mesh_edit.h"
#include "host/ed/commands/polyline_vertices.h"
#include "host/ed/contents.h"
#include "host/ed/editedpolyline.h"
#include "host/ed/stepundo.h"
#include "host/ed/takeplace.h"
#include "host/ed/vertexchain.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

bool chainOf(GcDbObjectId id, VertexChain& chain) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return false;
  const bool good = entity->isA() != GcDbCircle::desc() && chain.take(*entity);
  ignore(entity->close());
  return good;
}

bool isPolyline(GcDbObjectId id) {
  const GcRxClass* kind = id.objectClass();
  return kind == GcDbPolyline::desc() || kind == GcDb2dPolyline::desc() || kind == GcDb3dPolyline::desc();
}

// A polyline in the place of a line or arc; null for other things.
GcDbObjectId turnIntoPolyline(Editor& editor, GcDbObjectId id) {
  VertexChain chain;
  GcDbObjectId made;
  GcDbEntity* entity = nullptr;
  if (!chainOf(id, chain) || gcdbOpenObject(entity, id, GcDb::kForWrite) != Gcad::eOk) return made;
  auto* line = new GcDbPolyline;
  chain.put(*line);
  ignore(line->setPropertiesFrom(*entity));
  GcDbBlockTableRecord* space = nullptr;
  if (gcdbOpenObject(space, editor.currentSpace(), GcDb::kForWrite) == Gcad::eOk &&
      space->appendGcDbEntity(made, line) == Gcad::eOk) {
    ignore(line->close());
    ignore(entity->erase());
  } else {
    delete line;
  }
  if (space != nullptr) ignore(space->close());
  ignore(entity->close());
  return made;
}

template <class Kind, class Change>
bool changeOne(GcDbObjectId id, const Change& change) {
  if (id.objectClass() != Kind::desc()) return false;
  Kind* line = nullptr;
  if (gcdbOpenObject(line, id, GcDb::kForWrite) != Gcad::eOk) return false;
  change(*line);
  ignore(line->close());
  return true;
}

// A fitted curve follows.
void setClosed(GcDbObjectId id, bool closed) {
  EditedPolyline line;
  if (!line.take(id)) return;
  line.closed = closed;
  line.put();
}

void setWidth(GcDbObjectId id, double width) {
  if (changeOne<GcDbPolyline>(id, [&](GcDbPolyline& line) { ignore(line.setConstantWidth(width)); })) return;
  GcDbObjectIdArray vertices;
  static_cast<void>(changeOne<GcDb2dPolyline>(id, [&](GcDb2dPolyline& line) {
    ignore(line.setDefaultStartWidth(width));
    ignore(line.setDefaultEndWidth(width));
    line.vertexIds(vertices);
  }));
  for (const GcDbObjectId vertexId : vertices)
    static_cast<void>(changeOne<GcDb2dVertex>(vertexId, [&](GcDb2dVertex& vertex) {
      ignore(vertex.setStartWidth(width));
      ignore(vertex.setEndWidth(width));
    }));
}

void setGeneration(GcDbObjectId id, bool on) {
  if (changeOne<GcDbPolyline>(id, [&](GcDbPolyline& line) { line.setPlinegen(on); })) return;
  static_cast<void>(changeOne<GcDb2dPolyline>(id, [&](GcDb2dPolyline& line) {
    ignore(on ? line.setLinetypeGenerationOn() : line.setLinetypeGenerationOff());
  }));
}

// Fit: arcs through the vertices. Spline: as SPLINETYPE says. Simple: back to straight segments.
void setCurve(Editor& editor, GcDbObjectId id, const Answer& option) {
  constexpr int kQuadratic = 5;
  const bool quadratic = integerVariable(editor, "SPLINETYPE") == kQuadratic;
  if (id.objectClass() == GcDb3dPolyline::desc()) {
    if (!option.isKeyword("Fit"))
      setSpaceCurve(id, option.isKeyword("Decurve") ? GcDb::k3dSimplePoly
                        : quadratic                 ? GcDb::k3dQuadSplinePoly
                                                    : GcDb::k3dCubicSplinePoly);
    return;
  }
  const GcDb::Poly2dType type = option.isKeyword("Fit")       ? GcDb::k2dFitCurvePoly
                                : option.isKeyword("Decurve") ? GcDb::k2dSimplePoly
                                : quadratic                   ? GcDb::k2dQuadSplinePoly
                                                              : GcDb::k2dCubicSplinePoly;
  EditedPolyline line;
  bool simple = true;
  static_cast<void>(
      changeOne<GcDb2dPolyline>(id, [&](GcDb2dPolyline& old) { simple = old.polyType() == GcDb::k2dSimplePoly; }));
  if (type == GcDb::k2dSimplePoly && simple && line.take(id)) {
    for (EditedVertex& vertex : line.vertices) {
      vertex.flat.bulge = 0;
      vertex.hasTangent = false;
    }
    line.put();
    return;
  }
  if (needOwnVertices(id))
    static_cast<void>(changeOne<GcDb2dPolyline>(id, [&](GcDb2dPolyline& old) { ignore(old.convertToPolyType(type)); }));
}

// Gives a plane polyline the run.
void putChain(GcDbObjectId id, const VertexChain& chain) {
  EditedPolyline line;
  if (!line.take(id)) return;
  const double z = line.vertices[0].z;
  line.vertices.clear();
  for (const GcDbPolylineVertex& vertex : chain.vertices) line.vertices.push_back({vertex, z});
  line.closed = chain.closed;
  line.put();
}

// The points of a straight run in space: a polyline or a line.
bool pointsOf(GcDbObjectId id, std::vector<GcGePoint3d>& points) {
  points.clear();
  EditedPolyline run;
  if (id.objectClass() == GcDb3dPolyline::desc() && run.take(id) && !run.closed)
    for (size_t i = 0; i < run.vertices.size(); ++i) points.push_back(run.worldAt(i));
  static_cast<void>(changeOne<GcDbLine>(id, [&](GcDbLine& line) { points = {line.startPoint(), line.endPoint()}; }));
  return points.size() > 1;
}

// Puts the other points on to either end of these where they meet.
bool joinPoints(std::vector<GcGePoint3d>& points, std::vector<GcGePoint3d> other, double tolerance) {
  const auto near = [&](const GcGePoint3d& a, const GcGePoint3d& b) {
    return a.distanceTo(b) <= std::max(tolerance, 1e-8 * (1 + std::fabs(a.x) + std::fabs(a.y) + std::fabs(a.z)));
  };
  const bool atStart = near(points.front(), other.front()) || near(points.front(), other.back());
  const bool atEnd = near(points.back(), other.front()) || near(points.back(), other.back());
  if (!atStart && !atEnd) return false;
  if (!atEnd) std::reverse(points.begin(), points.end());
  if (!near(points.back(), other.front())) std::reverse(other.begin(), other.end());
  points.insert(points.end(), other.begin() + 1, other.end());
  if (!atEnd) std::reverse(points.begin(), points.end());
  return true;
}

// Takes all others one after the other with `take`, again and again as long as one more is taken; those go from the
// drawing. The number taken.
template <class Take>
int takeAll(GcDbObjectId id, Ids& others, const Take& take) {
  int joined = 0;
  for (bool grew = true; grew;) {
    grew = false;
    for (GcDbObjectId& other : others) {
      if (other.isNull() || other == id || other.isErased() || !take(other)) continue;
      eraseEntity(other);
      other.setNull();
      grew = true;
      ++joined;
    }
  }
  return joined;
}

int joinInSpace(GcDbObjectId id, Ids& others, double tolerance) {
  std::vector<GcGePoint3d> points, more;
  if (!pointsOf(id, points)) return 0;
  const int joined = takeAll(
      id, others, [&](GcDbObjectId other) { return pointsOf(other, more) && joinPoints(points, more, tolerance); });
  EditedPolyline line;
  if (joined == 0 || !line.take(id)) return joined;
  if (points.size() > 3 && points.front().distanceTo(points.back()) <= std::max(tolerance, 1e-8)) {
    points.pop_back();
    line.closed = true;
  }
  line.vertices.clear();
  for (const GcGePoint3d& point : points) line.vertices.push_back({{{point.x, point.y}}, point.z});
  line.put();
  return joined;
}

struct HowToJoin {
  double tolerance = 0;
  VertexChain::Gap gap = VertexChain::Gap::Extend;
};

// Puts on to the polyline all others that meet its ends, one after the other.
int joinTo(GcDbObjectId id, Ids& others, const HowToJoin& how) {
  if (id.objectClass() == GcDb3dPolyline::desc()) return joinInSpace(id, others, how.tolerance);
  VertexChain whole;
  if (!isPolyline(id) || !chainOf(id, whole)) return 0;
  const int joined = takeAll(id, others, [&](GcDbObjectId other) {
    VertexChain part;
    return chainOf(other, part) && whole.join(std::move(part), how.tolerance, how.gap);
  });
  if (joined > 0) putChain(id, whole);
  return joined;
}

void reverse(GcDbObjectId id) {
  EditedPolyline line;
  if (!line.take(id)) return;
  line.reverse();
  line.put();
}

// ---- the command

// Several lines are joined among themselves, a single one with what is selected then.
Task<bool> join(CommandInput& in, const Ids& lines, bool several) {
  Ids others = lines;
  HowToJoin how;
  if (several) {
    Answer fuzz =
        co_await in.ask(Ask(What::Distance, "\nEnter fuzz distance or [Jointype] <0.0000>: ").words("Jointype"));
    while (fuzz.isKeyword("Jointype")) {
      const Answer type = co_await in.ask(
          Ask(What::Keyword, "\nEnter join type [Extend/Add/Both] <Extend>: ").words("Extend Add Both"));
      how.gap = type.isKeyword("Add")    ? VertexChain::Gap::Add
                : type.isKeyword("Both") ? VertexChain::Gap::Both
                                         : VertexChain::Gap::Extend;
      fuzz = co_await in.ask(Ask(What::Distance, "\nEnter fuzz distance or [Jointype] <0.0000>: ").words("Jointype"));
    }
    how.tolerance = fuzz.number;
  } else {
    others = co_await selectObjects(in);
  }
  int joined = 0;
  for (const GcDbObjectId id : lines)
    if (id.isValid() && !id.isErased()) joined += joinTo(id, others, how);
  in.tell(("\n" + std::to_string(joined) + " segments added to polyline\n").c_str());
  co_return joined > 0;
}

// Close and Open, Fit, Spline and the like: of each line by itself.
void applyToEach(Editor& editor, const Ids& lines, const Answer& option) {
  for (const GcDbObjectId id : lines) {
    if (option.isKeyword("Close") || option.isKeyword("Open")) setClosed(id, option.isKeyword("Close"));
    if (option.isKeyword("Reverse")) reverse(id);
    if (option.isKeyword("Fit") || option.isKeyword("Spline") || option.isKeyword("Decurve"))
      setCurve(editor, id, option);
  }
}

Task<bool> askWidth(CommandInput& in, const Ids& lines) {
  const Answer width = co_await in.ask(Ask(What::Distance, "\nSpecify new width for all segments: "));
  if (width.kind == Answer::Kind::Number && width.number >= 0)
    for (const GcDbObjectId id : lines) setWidth(id, width.number);
  co_return true;
}

Task<bool> askGeneration(CommandInput& in, const Ids& lines) {
  const Answer on =
      co_await in.ask(Ask(What::Keyword, "\nEnter polyline linetype generation option [ON/OFF]: ").words("ON OFF"));
  if (on.kind == Answer::Kind::Keyword)
    for (const GcDbObjectId id : lines) setGeneration(id, on.isKeyword("ON"));
  co_return true;
}

Task<bool> carryOut(CommandInput& in, const Ids& lines, const Answer& option, bool several) {
  if (option.isKeyword("Join")) co_return co_await join(in, lines, several);
  if (option.isKeyword("Width")) co_return co_await askWidth(in, lines);
  if (option.isKeyword("Ltype")) co_return co_await askGeneration(in, lines);
  if (option.isKeyword("Edit")) co_return co_await editPolylineVertices(in, lines[0]);
  applyToEach(in.editor(), lines, option);
  co_return true;
}

// What the options are called for a single plane polyline, one in space, and several.
struct Menu {
  const char* prompt;
  const char* words;
};

Menu menuOf(const Ids& lines, bool several) {
  if (several)
    return {"\nEnter an option [Close/Open/Join/Width/Fit/Spline/Decurve/Ltype gen/Reverse/Undo]: ",
            "Close Open Join Width Fit Spline Decurve Ltype Reverse Undo eXit"};
  if (lines[0].objectClass() == GcDb3dPolyline::desc())
    return {"\nEnter an option [Close/Open/Join/Edit vertex/Spline curve/Decurve/Reverse/Undo]: ",
            "Close Open Join Edit Spline Decurve Reverse Undo eXit"};
  return {"\nEnter an option [Close/Open/Join/Width/Edit vertex/Fit/Spline/Decurve/Ltype gen/Reverse/Undo]: ",
          "Close Open Join Width Edit Fit Spline Decurve Ltype Reverse Undo eXit"};
}

Task<bool> askOptions(CommandInput& in, Ids lines, bool several) {
  StepUndo steps(in.database());
  for (;;) {
    Ids living = lines;  // Undo brings back what Join has taken
    std::erase_if(living, [](GcDbObjectId id) { return !id.isValid() || id.isErased(); });
    const Menu menu = menuOf(lines, several);
    const Answer option = co_await in.ask(Ask(What::Keyword, menu.prompt).words(menu.words));
    if (option.kind != Answer::Kind::Keyword || option.isKeyword("eXit")) co_return true;
    if (option.isKeyword("Undo")) {
      if (!steps.back()) in.tell("\nAll changes of the polyline have been undone.\n");
      continue;
    }
    if (living.empty()) continue;
    steps.begin();
    static_cast<void>(co_await carryOut(in, living, option, several));
  }
}

Task<bool> pedit(CommandInput& in) {
  Editor& editor = in.editor();
  const bool accepts = integerVariable(editor, "PEDITACCEPT") != 0;
  const Answer picked =
      co_await in.ask(Ask(What::Entity, "\nSelect polyline or [Multiple]: ").words("Multiple").needed());
  Ids lines;
  if (picked.isKeyword("Multiple")) {
    lines = co_await selectObjects(in);
    const auto foreign = std::partition(lines.begin(), lines.end(), isPolyline);
    if (foreign != lines.end()) {
      bool turn = accepts;
      if (!accepts) {
        const Answer yes = co_await in.ask(
            Ask(What::Keyword, "\nConvert Lines, Arcs and Splines to polylines [Yes/No]? <Y> ").words("Yes No"));
        turn = !yes.isKeyword("No");
      }
      for (auto each = foreign; each != lines.end(); ++each)
        *each = turn ? turnIntoPolyline(editor, *each) : GcDbObjectId();
      std::erase_if(lines, [](GcDbObjectId id) { return id.isNull(); });
    }
    if (lines.empty()) co_return false;
    co_return co_await askOptions(in, std::move(lines), true);
  }
  if (picked.kind != Answer::Kind::Entity) co_return false;
  GcDbObjectId id = picked.entity;
  if (id.objectClass() == GcDbPolygonMesh::desc()) co_return co_await editMesh(in, id);
  if (!isPolyline(id)) {
    VertexChain chain;
    if (!chainOf(id, chain)) {
      in.tell("\nObject selected is not a polyline\n");
      co_return false;
    }
    if (!accepts) {
      in.tell("\nObject selected is not a polyline");
      const Answer yes = co_await in.ask(Ask(What::Keyword, "\nDo you want to turn it into one? <Y> ").words("Yes No"));
      if (yes.isKeyword("No")) co_return false;
    }
    id = turnIntoPolyline(editor, id);
  }
  lines.push_back(id);
  co_return co_await askOptions(in, std::move(lines), false);
}

// ---- JOIN

// A line takes in others that lie on the same straight line, gaps or not.
int joinLines(GcDbObjectId id, Ids& others) {
  GcGePoint3d start, end;
  bool isLine = false;
  forEach<GcDbLine>({id}, [&](GcDbLine& line) {
    start = line.startPoint();
    end = line.endPoint();
    isLine = start.distanceTo(end) > 0;
  });
  if (!isLine) return 0;
  const GcGeVector3d way = (end - start).normal();
  const double tolerance = 1e-8 * (1 + end.distanceTo(start) + start.distanceTo(GcGePoint3d()));
  double low = 0, high = (end - start).dotProduct(way);
  const int joined = takeAll(id, others, [&](GcDbObjectId other) {
    bool lies = false;
    forEach<GcDbLine>({other}, [&](GcDbLine& line) {
      const GcGeVector3d a = line.startPoint() - start, b = line.endPoint() - start;
      lies = (a - way * a.dotProduct(way)).length() <= tolerance && (b - way * b.dotProduct(way)).length() <= tolerance;
      if (!lies) return;
      low = std::min({low, a.dotProduct(way), b.dotProduct(way)});
      high = std::max({high, a.dotProduct(way), b.dotProduct(way)});
    });
    return lies;
  });
  forEach<GcDbLine>({id}, [&](GcDbLine& line) {
    ignore(line.setStartPoint(start + way * low));
    ignore(line.setEndPoint(start + way * high));
  });
  return joined;
}

// An arc goes on counter-clockwise from its start to the ends of others of the same circle.
int joinArcs(GcDbObjectId id, Ids& others) {
  GcGePoint3d center;
  GcGeVector3d normal;
  double radius = 0, start = 0, sweep = 0;
  forEach<GcDbArc>({id}, [&](GcDbArc& arc) {
    center = arc.center();
    normal = arc.normal();
    radius = arc.radius();
    start = arc.startAngle();
    sweep = arc.sweepAngle();
  });
  if (radius == 0) return 0;
  const int joined = takeAll(id, others, [&](GcDbObjectId other) {
    bool lies = false;
    forEach<GcDbArc>({other}, [&](GcDbArc& arc) {
      const double tolerance = 1e-8 * (1 + radius);
      lies = arc.center().distanceTo(center) <= tolerance && std::fabs(arc.radius() - radius) <= tolerance &&
             arc.normal().dotProduct(normal) > 1 - 1e-9;
      const double turn = arc.endAngle() - start;
      const double whole = 2 * std::numbers::pi;
      if (lies) sweep = std::max(sweep, turn - whole * std::floor(turn / whole));
    });
    return lies;
  });
  forEach<GcDbArc>({id},
                   [&](GcDbArc& arc) { ignore(arc.setEndAngle(std::fmod(start + sweep, 2 * std::numbers::pi))); });
  return joined;
}

// An arc goes all round.
bool closeArc(GcDbObjectId id) {
  GcDbCircle* circle = nullptr;
  forEach<GcDbArc>({id}, [&](GcDbArc& arc) { circle = new GcDbCircle(arc.center(), arc.normal(), arc.radius()); });
  if (circle == nullptr) return false;
  if (takePlace(id, circle)) return true;
  delete circle;
  return false;
}

// Lines, arcs and polylines become one polyline where they meet.
int joinRuns(Editor& editor, Ids& ids) {
  int joined = 0;
  for (GcDbObjectId& id : ids) {
    if (id.isNull() || id.isErased()) continue;
    VertexChain chain;
    VertexChain part;
    const bool space = id.objectClass() == GcDb3dPolyline::desc();
    const bool meets = space || (chainOf(id, chain) && std::any_of(ids.begin(), ids.end(), [&](GcDbObjectId other) {
                                   return other != id && !other.isNull() && !other.isErased() && chainOf(other, part) &&
                                          VertexChain(chain).join(part, 0);
                                 }));
    if (!meets) continue;
    const GcDbObjectId line = isPolyline(id) ? id : turnIntoPolyline(editor, id);
    id.setNull();
    joined += joinTo(line, ids, {});
  }
  return joined;
}

// The first object takes in the others; an arc alone may be closed.
Task<bool> joinCommand(CommandInput& in) {
  Ids ids = co_await selectObjects(in, "\nSelect source object or multiple objects to join at once: ");
  bool closes = false;
  if (ids.size() == 1) {
    const bool isArc = ids[0].objectClass() == GcDbArc::desc();
    Ask question(What::Objects,
                 isArc ? "\nSelect arcs to join to source or [cLose]: " : "\nSelect objects to join to source: ");
    question.words(isArc ? "cLose" : "");
    for (bool more = true; more && !closes;) {
      const Answer answer = co_await in.ask(question);
      closes = answer.isKeyword("cLose");
      more = answer.kind == Answer::Kind::Objects;
      ids.insert(ids.end(), answer.objects.begin(), answer.objects.end());
    }
  }
  if (closes) co_return closeArc(ids[0]);
  if (ids.empty()) co_return false;
  int joined = joinLines(ids[0], ids) + joinArcs(ids[0], ids);
  std::erase_if(ids, [](GcDbObjectId id) { return id.isNull() || id.isErased(); });
  joined += joinRuns(in.editor(), ids);
  in.tell(("\n" + std::to_string(joined) + " objects joined\n").c_str());
  co_return joined > 0;
}

constexpr Command kCommands[] = {
    {"PEDIT", "PE", pedit},
    {"JOIN", "J", joinCommand},
};

}  // namespace

std::span<const Command> polylineEditCommands() { return kCommands; }

}  // namespace ed
