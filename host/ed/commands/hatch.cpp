// Hatches: by points within areas, selected curves or points drawn; -BOUNDARY, which keeps only the outline.
#include "db/hatch.h"

#include "db/polyline.h"
#include "db/region.h"
#include "host/ed/append.h"
#include "host/ed/boundary.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/coordinates.h"
#include "host/ed/vertexchain.h"

namespace ed {

namespace {

using What = Ask::What;

// Flags of loops.
constexpr int kExternal = 1;
constexpr int kOutermost = 16;

struct Pattern {
  GcText name;
  double scale = 1;
  double angleRad = 0;
  bool isDouble = false;
  [[nodiscard]] bool isUser() const { return equalNoCase(name, GC_T("U")); }
};

Pattern currentPattern(Editor& editor) {
  return {textVariable(editor, "HPNAME"), realVariable(editor, "HPSCALE"), realVariable(editor, "HPANG"),
          integerVariable(editor, "HPDOUBLE") != 0};
}

void remember(Editor& editor, const Pattern& pattern) {
  static_cast<void>(setVariable(editor, GC_T("HPNAME"), VariableValue::of(GcView(pattern.name))));
  static_cast<void>(
      setVariable(editor, pattern.isUser() ? GC_T("HPSPACE") : GC_T("HPSCALE"), VariableValue::of(pattern.scale)));
  static_cast<void>(setVariable(editor, GC_T("HPANG"), VariableValue::of(pattern.angleRad)));
}

// Name, then scale and angle unless it is solid; for lines of one's own angle, spacing and whether they cross.
Task<Pattern> askPattern(CommandInput& in) {
  Pattern pattern = currentPattern(in.editor());
  const Answer name = co_await in.ask(Ask(What::Word, "\nEnter a pattern name or [?/Solid/User defined]: "));
  if (!name.text.empty()) pattern.name = name.text[0] == GC_T('_') ? name.text.substr(1) : name.text;
  if (equalNoCase(pattern.name, GC_T("S"))) pattern.name = GC_T("SOLID");
  if (equalNoCase(pattern.name, GC_T("SOLID"))) co_return pattern;
  if (pattern.isUser()) {
    const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify angle for crosshatch lines <0>: "));
    const Answer space = co_await in.ask(Ask(What::Distance, "\nSpecify spacing between the lines: ").positive());
    const Answer both = co_await in.ask(Ask(What::Keyword, "\nDouble hatch area? [Yes/No] <N>: ").words("Yes No"));
    pattern.angleRad = angle.kind == Answer::Kind::Number ? angle.number : 0;
    pattern.scale = space.kind == Answer::Kind::Number ? space.number : realVariable(in.editor(), "HPSPACE");
    pattern.isDouble = both.isKeyword("Yes");
  } else {
    const Answer scale = co_await in.ask(Ask(What::Real, "\nSpecify a scale for the pattern: ").positive());
    const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify an angle for the pattern: "));
    if (scale.kind == Answer::Kind::Number) pattern.scale = scale.number;
    if (angle.kind == Answer::Kind::Number) pattern.angleRad = angle.number;
  }
  remember(in.editor(), pattern);
  co_return pattern;
}

bool give(GcDbHatch& hatch, const Pattern& pattern) {
  ignore(hatch.setPatternAngle(pattern.angleRad));
  ignore(hatch.setPatternScale(pattern.scale));
  ignore(hatch.setPatternDouble(pattern.isDouble));
  const auto type = pattern.isUser() ? GcDbHatch::kUserDefined : GcDbHatch::kPreDefined;
  if (hatch.setPattern(type, pattern.isUser() ? GC_T("USER") : pattern.name.c_str()) == Gcad::eOk) return true;
  return !pattern.isUser() && hatch.setPattern(GcDbHatch::kCustomDefined, pattern.name.c_str()) == Gcad::eOk;
}

// The loops of one hatch, collected while the command runs.
struct Loops {
  std::vector<GcDbObjectIdArray> outer;
  std::vector<GcDbObjectIdArray> inner;
  std::vector<GcDbObjectId> drawn;  // made for the hatch alone
};

bool make(CommandInput& in, const Pattern& pattern, const Loops& loops) {
  if (loops.outer.empty()) return false;
  auto* hatch = new GcDbHatch;
  const GcGeMatrix3d user = ucsToWorld(in.editor());
  ignore(hatch->setNormal(GcGeVector3d(user.entry[0][2], user.entry[1][2], user.entry[2][2])));
  ignore(hatch->setAssociative(integerVariable(in.editor(), "HPASSOC") != 0 && loops.drawn.empty()));
  bool good = give(*hatch, pattern);
  if (!good) in.tell("\nUnknown pattern name.\n");
  for (const GcDbObjectIdArray& loop : loops.outer) good = good && hatch->appendLoop(kExternal, loop) == Gcad::eOk;
  for (const GcDbObjectIdArray& loop : loops.inner) good = good && hatch->appendLoop(kOutermost, loop) == Gcad::eOk;
  if (good)
    appendWithDefaults(in.editor(), hatch);
  else
    delete hatch;
  for (const GcDbObjectId id : loops.drawn) eraseEntity(id);
  return good;
}

// A closed polyline through points, which goes once the hatch is made unless it is to stay.
Task<bool> drawBoundary(CommandInput& in, Loops& loops) {
  const Answer keep = co_await in.ask(Ask(What::Keyword, "\nRetain polyline boundary? [Yes/No] <N>: ").words("Yes No"));
  std::vector<GcGePoint3d> points;
  for (;;) {
    Ask ask(What::Point, points.empty() ? "\nSpecify start point: " : "\nSpecify next point or [Arc/Close/Undo]: ");
    if (!points.empty()) ask.from(points.back()).words("Arc Close Undo");
    const Answer answer = co_await in.ask(ask);
    if (answer.isKeyword("Undo") && !points.empty()) points.pop_back();
    if (answer.isPoint())
      points.push_back(answer.point);
    else if (!answer.isKeyword("Undo"))
      break;
  }
  if (points.size() < 3) co_return false;
  auto* outline = new GcDbPolyline(static_cast<unsigned>(points.size()));
  for (size_t i = 0; i < points.size(); ++i)
    ignore(outline->addVertexAt(static_cast<unsigned>(i), {points[i].x, points[i].y}));
  ignore(outline->setElevation(points[0].z));
  outline->setClosed(true);
  GcDbObjectIdArray loop;
  loop.append(appendFromUser(in.editor(), outline));
  loops.outer.push_back(loop);
  if (!keep.isKeyword("Yes")) loops.drawn.push_back(loop[0]);
  co_return true;
}

void takeArea(CommandInput& in, const GcGePoint3d& point, Loops& loops) {
  Boundary boundary;
  if (!boundaryAt(in.editor(), point, {}, boundary)) {
    in.tell("\nValid hatch boundary not found.\n");
    return;
  }
  loops.outer.push_back(boundary.outer);
  loops.inner.insert(loops.inner.end(), boundary.islands.begin(), boundary.islands.end());
}

// Advanced options and the like: settings that make no difference here are taken and passed over.
Task<bool> passOver(CommandInput& in, const Answer& option) {
  if (option.isKeyword("Origin") || option.isKeyword("DRaw") || option.isKeyword("LAyer") ||
      option.isKeyword("COlor") || option.isKeyword("Transparency")) {
    static_cast<void>(co_await in.ask(Ask(What::Word, "\nEnter new value: ")));
    co_return true;
  }
  for (;;) {
    const Answer advanced =
        co_await in.ask(Ask(What::Keyword,
                            "\nEnter an option [Boundary set/Retain boundary/Island detection/Style/Associativity/Gap "
                            "tolerance/separate Hatches]: ")
                            .words("Boundary Retain Island Style Associativity Gap Hatches"));
    if (advanced.kind != Answer::Kind::Keyword) co_return true;
    const Answer value = co_await in.ask(Ask(What::Word, "\nEnter new value: "));
    const bool no = !value.text.empty() && gcUpper(value.text[value.text[0] == GC_T('_') ? 1 : 0]) == GC_T('N');
    if (advanced.isKeyword("Associativity"))
      static_cast<void>(setVariable(in.editor(), GC_T("HPASSOC"), VariableValue::of(no ? 0 : 1)));
  }
}

Task<bool> hatch(CommandInput& in) {
  Pattern pattern = currentPattern(in.editor());
  Loops loops;
  for (;;) {
    const Answer answer = co_await in.ask(
        Ask(What::Point,
            "\nSpecify internal point or [Properties/Select objects/draW boundary/remove "
            "Boundaries/Advanced/DRaw order/Origin/ANnotative/hatch COlor/LAyer/Transparency]: ")
            .words("Properties Select draW Boundaries Advanced DRaw Origin ANnotative COlor LAyer Transparency"));
    if (answer.isPoint()) {
      takeArea(in, answer.point, loops);
    } else if (answer.isKeyword("Properties")) {
      pattern = co_await askPattern(in);
    } else if (answer.isKeyword("Select")) {
      for (const GcDbObjectIdArray& chain : closedChains(co_await selectObjects(in))) loops.outer.push_back(chain);
    } else if (answer.isKeyword("draW")) {
      static_cast<void>(co_await drawBoundary(in, loops));
    } else if (answer.kind == Answer::Kind::Keyword) {
      static_cast<void>(co_await passOver(in, answer));
    } else {
      break;
    }
  }
  co_return make(in, pattern, loops);
}

// A closed polyline along a chain of lines, arcs, circles and polylines.
bool drawOutline(Editor& editor, const GcDbObjectIdArray& curves) {
  VertexChain outline;
  for (const GcDbObjectId id : curves) {
    GcDbEntity* entity = nullptr;
    VertexChain part;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return false;
    bool good = part.take(*entity);
    ignore(entity->close());
    if (outline.vertices.empty())
      outline = std::move(part);
    else
      good = good && outline.join(std::move(part), 0);
    if (!good) return false;
  }
  if (!outline.closed) return false;
  auto* made = new GcDbPolyline;
  outline.put(*made);
  return !appendWithDefaults(editor, made).isNull();
}

// A closed polyline around the area a point lies in (of straight and circular curves), islands too.
Task<bool> boundaryCommand(CommandInput& in) {
  bool any = false;
  for (;;) {
    const Answer answer =
        co_await in.ask(Ask(What::Point, "\nSpecify internal point or [Advanced options]: ").words("Advanced"));
    if (answer.isKeyword("Advanced")) {
      static_cast<void>(co_await passOver(in, answer));
      continue;
    }
    if (!answer.isPoint()) break;
    Boundary boundary;
    if (!boundaryAt(in.editor(), answer.point, {}, boundary)) {
      in.tell("\nValid boundary not found.\n");
      continue;
    }
    any = drawOutline(in.editor(), boundary.outer) || any;
    for (const GcDbObjectIdArray& island : boundary.islands) any = drawOutline(in.editor(), island) || any;
  }
  co_return any;
}

constexpr Command kCommands[] = {
    {"-HATCH", "HATCH BHATCH H -H -BHATCH", hatch},
    {"-BOUNDARY", "BOUNDARY BO -BO", boundaryCommand},
};

}  // namespace

std::span<const Command> hatchCommands() { return kCommands; }

}  // namespace ed
