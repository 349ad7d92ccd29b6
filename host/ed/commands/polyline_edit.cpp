// PEDIT: polylines closed, joined, given widths, turned round; and JOIN.
#include <algorithm>

#include "db/circle.h"
#include "db/polyline2d.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
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

void setClosed(GcDbObjectId id, bool closed) {
  if (changeOne<GcDbPolyline>(id, [&](GcDbPolyline& line) { line.setClosed(closed); })) return;
  const auto change = [&](auto& line) { ignore(closed ? line.makeClosed() : line.makeOpen()); };
  if (!changeOne<GcDb2dPolyline>(id, change)) static_cast<void>(changeOne<GcDb3dPolyline>(id, change));
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

// A 2D polyline in the place of a lightweight one, under the same id, which a fitted curve needs.
bool needVertices(GcDbObjectId id) {
  if (id.objectClass() != GcDbPolyline::desc()) return id.objectClass() == GcDb2dPolyline::desc();
  GcDbPolyline* light = nullptr;
  if (gcdbOpenObject(light, id, GcDb::kForWrite) != Gcad::eOk) return false;
  auto* made = new GcDb2dPolyline;
  if (made->convertFrom(light) != Gcad::eOk) {
    delete made;
    ignore(light->close());
    return false;
  }
  ignore(made->close());
  delete light;
  return true;
}

// Fit: arcs through the vertices. Spline: as SPLINETYPE says. Simple: back to straight segments.
void setCurve(Editor& editor, GcDbObjectId id, const Answer& option) {
  constexpr int kQuadratic = 5;
  const bool quadratic = integerVariable(editor, "SPLINETYPE") == kQuadratic;
  const GcDb::Poly2dType type = option.isKeyword("Fit")       ? GcDb::k2dFitCurvePoly
                                : option.isKeyword("Decurve") ? GcDb::k2dSimplePoly
                                : quadratic                   ? GcDb::k2dQuadSplinePoly
                                                              : GcDb::k2dCubicSplinePoly;
  VertexChain chain;
  if (type == GcDb::k2dSimplePoly && id.objectClass() == GcDbPolyline::desc() && chainOf(id, chain)) {
    for (GcDbPolylineVertex& vertex : chain.vertices) vertex.bulge = 0;
    static_cast<void>(changeOne<GcDbPolyline>(id, [&](GcDbPolyline& line) { chain.put(line); }));
    return;
  }
  if (needVertices(id))
    static_cast<void>(
        changeOne<GcDb2dPolyline>(id, [&](GcDb2dPolyline& line) { ignore(line.convertToPolyType(type)); }));
}

// Puts on to the polyline all others that meet its ends, one after the other; those go from the drawing.
int joinTo(GcDbObjectId id, Ids& others, double tolerance) {
  VertexChain whole;
  if (id.objectClass() != GcDbPolyline::desc() || !chainOf(id, whole)) return 0;
  int joined = 0;
  for (bool grew = true; grew;) {
    grew = false;
    for (GcDbObjectId& other : others) {
      VertexChain part;
      if (other.isNull() || other == id || other.isErased() || !chainOf(other, part)) continue;
      if (!whole.join(std::move(part), tolerance)) continue;
      eraseEntity(other);
      other.setNull();
      grew = true;
      ++joined;
    }
  }
  if (joined > 0) static_cast<void>(changeOne<GcDbPolyline>(id, [&](GcDbPolyline& line) { whole.put(line); }));
  return joined;
}

void reverse(GcDbObjectId id) {
  VertexChain chain;
  if (!chainOf(id, chain)) return;
  chain.reverse();
  // An open run has no segment behind its last vertex.
  static_cast<void>(changeOne<GcDbPolyline>(id, [&](GcDbPolyline& line) { chain.put(line); }));
}

// ---- vertices, one after the other

Task<bool> editVertices(CommandInput& in, GcDbObjectId id) {
  VertexChain chain;
  if (!chainOf(id, chain)) co_return false;
  const GcGeMatrix3d toPlane = GcGeMatrix3d().setToPlaneToWorld(chain.normal).inverse();
  size_t at = 0;
  for (;;) {
    const Answer option = co_await in.ask(
        Ask(What::Keyword, "\nEnter a vertex editing option\n[Next/Previous/Insert/Move/Regen/Width/eXit] <N>: ")
            .words("Next Previous Insert Move Regen Width eXit"));
    if (option.isKeyword("eXit") || option.kind == Answer::Kind::Cancelled) break;
    if (option.isKeyword("Previous")) {
      at = at == 0 ? 0 : at - 1;
    } else if (option.isKeyword("Insert") || option.isKeyword("Move")) {
      const Answer point = co_await in.ask(Ask(What::Point, "\nSpecify location for vertex: "));
      if (!point.isPoint()) continue;
      const GcGePoint3d own = toPlane * in.toWorld(point.point);
      if (option.isKeyword("Move"))
        chain.vertices[at].point = {own.x, own.y};
      else
        chain.vertices.insert(chain.vertices.begin() + static_cast<std::ptrdiff_t>(at) + 1, {{own.x, own.y}});
    } else if (option.isKeyword("Width")) {
      const Answer start = co_await in.ask(Ask(What::Distance, "\nSpecify starting width for next segment: "));
      const Answer end = co_await in.ask(Ask(What::Distance, "\nSpecify ending width for next segment: "));
      chain.vertices[at].startWidth = start.number;
      chain.vertices[at].endWidth = end.kind == Answer::Kind::Number ? end.number : start.number;
    } else {
      at = std::min(at + 1, chain.vertices.size() - 1);
    }
    static_cast<void>(changeOne<GcDbPolyline>(id, [&](GcDbPolyline& line) { chain.put(line); }));
  }
  co_return true;
}

// ---- the command

Task<bool> join(CommandInput& in, const Ids& lines, bool several) {
  Ids others = lines;
  double tolerance = 0;
  if (several) {
    const Answer fuzz =
        co_await in.ask(Ask(What::Distance, "\nEnter fuzz distance or [Jointype] <0.0000>: ").words("Jointype"));
    if (fuzz.isKeyword("Jointype")) {
      static_cast<void>(co_await in.ask(
          Ask(What::Keyword, "\nEnter join type [Extend/Add/Both] <Extend>: ").words("Extend Add Both")));
      tolerance = (co_await in.ask(Ask(What::Distance, "\nEnter fuzz distance <0.0000>: "))).number;
    } else {
      tolerance = fuzz.number;
    }
  } else {
    others = co_await selectObjects(in);
  }
  int joined = 0;
  for (const GcDbObjectId id : lines)
    if (id.isValid() && !id.isErased()) joined += joinTo(id, others, tolerance);
  in.tell(("\n" + std::to_string(joined) + " segments added to polyline\n").c_str());
  co_return joined > 0;
}

Task<bool> askOptions(CommandInput& in, Ids lines, bool several) {
  for (;;) {
    const Answer option = co_await in.ask(
        Ask(What::Keyword,
            "\nEnter an option [Close/Open/Join/Width/Edit vertex/Fit/Spline/Decurve/Ltype gen/Reverse/Undo]: ")
            .words("Close Open Join Width Edit Fit Spline Decurve Ltype Reverse Undo eXit"));
    if (option.kind != Answer::Kind::Keyword || option.isKeyword("eXit")) break;
    if (option.isKeyword("Join")) {
      static_cast<void>(co_await join(in, lines, several));
      std::erase_if(lines, [](GcDbObjectId id) { return !id.isValid() || id.isErased(); });
    } else if (option.isKeyword("Width")) {
      const Answer width = co_await in.ask(Ask(What::Distance, "\nSpecify new width for all segments: "));
      if (width.kind == Answer::Kind::Number && width.number >= 0)
        for (const GcDbObjectId id : lines) setWidth(id, width.number);
    } else if (option.isKeyword("Ltype")) {
      const Answer on =
          co_await in.ask(Ask(What::Keyword, "\nEnter polyline linetype generation option [ON/OFF]: ").words("ON OFF"));
      for (const GcDbObjectId id : lines) setGeneration(id, on.isKeyword("ON"));
    } else if (option.isKeyword("Edit") && lines.size() == 1) {
      static_cast<void>(co_await editVertices(in, lines[0]));
    } else {
      for (const GcDbObjectId id : lines) {
        if (option.isKeyword("Close") || option.isKeyword("Open")) setClosed(id, option.isKeyword("Close"));
        if (option.isKeyword("Reverse")) reverse(id);
        if (option.isKeyword("Fit") || option.isKeyword("Spline") || option.isKeyword("Decurve"))
          setCurve(in.editor(), id, option);
      }
    }
  }
  co_return true;
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

// Lines, arcs and polylines become one polyline where they meet.
Task<bool> joinCommand(CommandInput& in) {
  Ids ids = co_await selectObjects(in, "\nSelect source object or multiple objects to join at once: ");
  if (ids.size() == 1) {
    const Ids more = co_await selectObjects(in, "\nSelect objects to join: ");
    ids.insert(ids.end(), more.begin(), more.end());
  }
  int joined = 0;
  for (GcDbObjectId& id : ids) {
    if (id.isNull() || id.isErased()) continue;
    VertexChain chain;
    VertexChain part;
    const bool meets = chainOf(id, chain) && std::any_of(ids.begin(), ids.end(), [&](GcDbObjectId other) {
                         return other != id && !other.isNull() && !other.isErased() && chainOf(other, part) &&
                                VertexChain(chain).join(part, 0);
                       });
    if (!meets) continue;
    const GcDbObjectId line = id.objectClass() == GcDbPolyline::desc() ? id : turnIntoPolyline(in.editor(), id);
    id.setNull();
    joined += joinTo(line, ids, 0);
  }
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
