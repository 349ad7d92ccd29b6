// Hatches: by points within areas, selected curves or points drawn; -BOUNDARY, which keeps only the outlines.
#include "db/hatch.h"

#include "db/polyline.h"
#include "host/db/curves/from_path.h"
#include "host/db/entities/hatch_edges.h"
#include "host/db/entities/planar.h"
#include "host/ed/append.h"
#include "host/ed/areas.h"
#include "host/ed/colors.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/drawingorder.h"
#include "host/ed/records.h"
#include "host/ge/curves/append.h"

namespace ed {

namespace {

using What = Ask::What;

// Flags of loops.
constexpr int kExternal = 1;
constexpr int kDerived = 4;
constexpr int kText = 8;
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
  std::vector<GcDbObjectIdArray> chains;  // along whole curves
  std::vector<Area> areas;                // around points
  std::vector<GcDbObjectId> drawn;        // made for the hatch alone
  std::vector<GcDbObjectId> among;        // the boundary set; empty for all that is visible
  [[nodiscard]] bool isEmpty() const { return chains.empty() && areas.empty(); }
};

bool appendLoop(GcDbHatch& hatch, const AreaLoop& from, int flags) {
  GcDbHatchLoop loop;
  loop.flags = flags | (hatch.associative() ? kDerived : 0) | (from.isAroundText ? kText : 0);
  if (!gchatch::appendPath(from.path, hatch.normal(), loop)) return false;
  if (hatch.associative()) loop.sources = from.sources;
  return hatch.appendLoop(loop) == Gcad::eOk;
}

// Islands as HPISLANDDETECTION says: all that lie in each other, the outermost, none.
bool appendArea(GcDbHatch& hatch, const Area& area) {
  bool good = appendLoop(hatch, area.outer, kExternal);
  if (hatch.hatchStyle() == GcDbHatch::kIgnore) return good;
  for (const AreaLoop& island : area.islands) good = good && appendLoop(hatch, island, kOutermost);
  if (hatch.hatchStyle() == GcDbHatch::kOuter) return good;
  for (const AreaLoop& island : area.nested) good = good && appendLoop(hatch, island, 0);
  return good;
}

double elevationOf(const Loops& loops, const GcGeVector3d& normal) {
  if (!loops.areas.empty()) return gcplanar::toOwn(loops.areas[0].outer.path.origin(), normal).z;
  GcDbCurve* curve = nullptr;
  GcGePoint3d at;
  if (gcdbOpenObject(curve, loops.chains[0][0], GcDb::kForRead) != Gcad::eOk) return 0;
  ignore(curve->getStartPoint(at));
  ignore(curve->close());
  return gcplanar::toOwn(at, normal).z;
}

// What the command's options say of the hatch's look.
void giveLook(Editor& editor, GcDbHatch& hatch) {
  const GcText layer = textVariable(editor, "HPLAYER"), color = textVariable(editor, "HPCOLOR");
  if (layer != GC_T(".") && !layer.empty()) ignore(hatch.setLayer(layer.c_str()));
  if (GcCmEntityColor chosen; color != GC_T(".") && parseColor(color, chosen)) ignore(hatch.setColor(chosen));
}

// HPDRAWORDER: behind or before everything. Those that go by the boundary stand behind or before all as well, which
// shows the same where nothing else lies between.
void putInOrder(Editor& editor, GcDbObjectId id) {
  const int order = integerVariable(editor, "HPDRAWORDER");
  if (order == 1) reorder(editor.currentSpace(), {id}, {}, Place::Back);
  if (order == 2) reorder(editor.currentSpace(), {id}, {}, Place::Front);
}

bool makeOne(CommandInput& in, const Pattern& pattern, const Loops& loops) {
  auto* hatch = new GcDbHatch;
  const GcGeMatrix3d user = ucsToWorld(in.editor());
  ignore(hatch->setNormal(user.column(2)));
  ignore(hatch->setElevation(elevationOf(loops, hatch->normal())));
  ignore(hatch->setAssociative(integerVariable(in.editor(), "HPASSOC") != 0 && loops.drawn.empty()));
  ignore(hatch->setHatchStyle(static_cast<GcDbHatch::HatchStyle>(integerVariable(in.editor(), "HPISLANDDETECTION"))));
  bool good = give(*hatch, pattern);
  if (!good) in.tell("\nUnknown pattern name.\n");
  for (const GcDbObjectIdArray& chain : loops.chains) good = good && hatch->appendLoop(kExternal, chain) == Gcad::eOk;
  for (const Area& area : loops.areas) good = good && appendArea(*hatch, area);
  if (!good) {
    delete hatch;
    return false;
  }
  const GcDbObjectId id = appendWithDefaults(in.editor(), hatch);
  forEach<GcDbHatch>({id}, [&](GcDbHatch& made) { giveLook(in.editor(), made); });
  putInOrder(in.editor(), id);
  return true;
}

bool make(CommandInput& in, const Pattern& pattern, const Loops& loops) {
  if (loops.isEmpty()) return false;
  bool good = true;
  if (integerVariable(in.editor(), "HPSEPARATE") == 0) {
    good = makeOne(in, pattern, loops);
  } else {
    for (const GcDbObjectIdArray& chain : loops.chains)
      good = makeOne(in, pattern, {{chain}, {}, loops.drawn, {}}) && good;
    for (const Area& area : loops.areas) good = makeOne(in, pattern, {{}, {area}, loops.drawn, {}}) && good;
  }
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
  loops.chains.push_back(loop);
  if (!keep.isKeyword("Yes")) loops.drawn.push_back(loop[0]);
  co_return true;
}

// False, with a word, when nothing encloses the point.
bool takeArea(CommandInput& in, const GcGePoint3d& point, const char* complaint, Loops& loops) {
  const AreaFinder finder(in.editor(), loops.among, point.z);
  Area area;
  if (!finder.areaAt(point, area)) {
    in.tell(complaint);
    return false;
  }
  loops.areas.push_back(std::move(area));
  return true;
}

void put(CommandInput& in, const GCHAR* name, const VariableValue& value) {
  if (setVariable(in.editor(), name, value) != VariableStatus::Done) in.tell("\nInvalid.\n");
}

Task<bool> askSwitch(CommandInput& in, const char* prompt, const GCHAR* name) {
  const Answer answer = co_await in.ask(Ask(What::Keyword, prompt).words("Yes No"));
  if (answer.kind == Answer::Kind::Keyword) put(in, name, VariableValue::of(answer.isKeyword("Yes") ? 1 : 0));
  co_return true;
}

Task<bool> askAdvanced(CommandInput& in, Loops& loops) {
  for (;;) {
    const Answer option =
        co_await in.ask(Ask(What::Keyword,
                            "\nEnter an option [Boundary set/Retain boundary/Island detection/Style/Associativity/Gap "
                            "tolerance/separate Hatches]: ")
                            .words("Boundary Retain Island Style Associativity Gap Hatches"));
    if (option.kind != Answer::Kind::Keyword) co_return true;
    if (option.isKeyword("Boundary")) {
      const Answer set =
          co_await in.ask(Ask(What::Keyword, "\nSpecify candidate set for boundary [New/Everything] <Everything>: ")
                              .words("New Everything"));
      loops.among.clear();
      if (set.isKeyword("New")) loops.among = co_await selectObjects(in);
    } else if (option.isKeyword("Island")) {
      const Answer finds =
          co_await in.ask(Ask(What::Keyword, "\nDo you want island detection? [Yes/No] <Yes>: ").words("Yes No"));
      put(in, GC_T("HPISLANDDETECTION"), VariableValue::of(finds.isKeyword("No") ? 2 : 1));
    } else if (option.isKeyword("Style")) {
      const Answer style = co_await in.ask(
          Ask(What::Keyword, "\nEnter hatching style [Ignore/Outer/Normal]: ").words("Ignore Outer Normal"));
      const int number = style.isKeyword("Ignore") ? 2 : style.isKeyword("Outer") ? 1 : 0;
      if (style.kind == Answer::Kind::Keyword) put(in, GC_T("HPISLANDDETECTION"), VariableValue::of(number));
    } else if (option.isKeyword("Associativity")) {
      static_cast<void>(co_await askSwitch(in, "\nDo you want associativity? [Yes/No]: ", GC_T("HPASSOC")));
    } else if (option.isKeyword("Hatches")) {
      static_cast<void>(co_await askSwitch(in, "\nCreate separate hatches? [Yes/No]: ", GC_T("HPSEPARATE")));
    } else if (option.isKeyword("Gap")) {
      const Answer gap = co_await in.ask(Ask(What::Distance, "\nSpecify a boundary gap tolerance value: "));
      if (gap.kind == Answer::Kind::Number) put(in, GC_T("HPGAPTOL"), VariableValue::of(gap.number));
      if (gap.number > 0) in.tell("\nOnly boundaries without gaps are found.\n");
    } else {
      const Answer keep =
          co_await in.ask(Ask(What::Keyword, "\nRetain derived boundaries? [Yes/No] <No>: ").words("Yes No"));
      if (keep.isKeyword("Yes")) in.tell("\n-BOUNDARY draws the outlines.\n");
    }
  }
}

Task<bool> askOption(CommandInput& in, const Answer& option, Loops& loops) {
  if (option.isKeyword("Advanced")) co_return co_await askAdvanced(in, loops);
  if (option.isKeyword("COlor")) {
    const Answer color = co_await in.ask(Ask(What::Word, "\nSpecify hatch color <use Current>: "));
    GcCmEntityColor parsed;
    const bool isKnown = color.text.empty() || color.text == GC_T(".") || parseColor(color.text, parsed);
    if (!isKnown) in.tell("\nInvalid color.\n");
    if (isKnown)
      put(in, GC_T("HPCOLOR"), VariableValue::of(color.text.empty() ? GcView(GC_T(".")) : GcView(color.text)));
    static_cast<void>(co_await in.ask(Ask(What::Word, "\nSpecify background color or [none] <none>: ")));
    co_return true;
  }
  if (option.isKeyword("LAyer")) {
    const Answer name = co_await in.ask(Ask(What::Line, "\nSpecify layer name <.>: "));
    const bool isKnown =
        name.text.empty() || name.text == GC_T(".") || !recordNamed(in.database().layerTableId(), name.text).isNull();
    if (!isKnown) in.tell("\nCannot find the layer.\n");
    if (isKnown) put(in, GC_T("HPLAYER"), VariableValue::of(name.text.empty() ? GcView(GC_T(".")) : GcView(name.text)));
    co_return true;
  }
  if (option.isKeyword("DRaw")) {
    const Answer order = co_await in.ask(
        Ask(What::Keyword,
            "\nEnter draw order [do Not change/send to Back/bring to Front/send beHind boundary/bring in front of "
            "bounDary] <send beHind boundary>: ")
            .words("Not Back Front beHind bounDary"));
    const int number = order.isKeyword("Not")        ? 0
                       : order.isKeyword("Back")     ? 1
                       : order.isKeyword("Front")    ? 2
                       : order.isKeyword("bounDary") ? 4
                                                     : 3;
    put(in, GC_T("HPDRAWORDER"), VariableValue::of(number));
    co_return true;
  }
  static_cast<void>(co_await in.ask(Ask(What::Word, "\nEnter new value: ")));
  in.tell("\nThis option makes no difference here.\n");
  co_return true;
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
      static_cast<void>(takeArea(in, answer.point, "\nValid hatch boundary not found.\n", loops));
    } else if (answer.isKeyword("Properties")) {
      pattern = co_await askPattern(in);
    } else if (answer.isKeyword("Select")) {
      for (const GcDbObjectIdArray& chain : closedChains(co_await selectObjects(in))) loops.chains.push_back(chain);
    } else if (answer.isKeyword("draW")) {
      static_cast<void>(co_await drawBoundary(in, loops));
    } else if (answer.kind == Answer::Kind::Keyword) {
      static_cast<void>(co_await askOption(in, answer, loops));
    } else {
      break;
    }
  }
  co_return make(in, pattern, loops);
}

// ---- -BOUNDARY

// A closed polyline along the loop, or whatever curve can follow it; the object's kind in `kind`.
bool drawOutline(Editor& editor, const GcGePath& path, const GcGeVector3d& normal) {
  GcGePath outline = path;
  if (path.spans().size() == 1 && path.spans()[0].kind == GcGeSpan::Kind::Arc) {
    // A bulge describes less than a turn: two half circles.
    const double middle = (path.startParam() + path.endParam()) / 2;
    outline = GcGePath(path.origin());
    gcgeAppend(path.trimmed(path.startParam(), middle), outline);
    gcgeAppend(path.trimmed(middle, path.endParam()), outline);
    outline.setClosed(true, true);
  }
  GcDbCurve* made = gcdbPolylineFromPath(outline, normal);
  if (made == nullptr) made = gcdbCurveFromPath(path, normal);
  return made != nullptr && !appendWithDefaults(editor, made).isNull();
}

Task<bool> boundaryCommand(CommandInput& in) {
  Loops loops;
  for (;;) {
    const Answer answer =
        co_await in.ask(Ask(What::Point, "\nSpecify internal point or [Advanced options]: ").words("Advanced"));
    if (answer.isKeyword("Advanced"))
      static_cast<void>(co_await askAdvanced(in, loops));
    else if (answer.isPoint())
      static_cast<void>(takeArea(in, answer.point, "\nValid boundary not found.\n", loops));
    else
      break;
  }
  const GcGeVector3d normal = ucsToWorld(in.editor()).column(2).normal();
  int made = 0;
  for (const Area& area : loops.areas) {
    made += drawOutline(in.editor(), area.outer.path, normal) ? 1 : 0;
    if (integerVariable(in.editor(), "HPISLANDDETECTION") == GcDbHatch::kIgnore) continue;
    for (const AreaLoop& island : area.islands) made += drawOutline(in.editor(), island.path, normal) ? 1 : 0;
  }
  if (made > 0)
    in.tell(("\nBOUNDARY created " + std::to_string(made) + (made == 1 ? " polyline\n" : " polylines\n")).c_str());
  co_return made > 0;
}

// ---- HATCHEDIT

void changePattern(GcDbHatch& hatch, const Pattern& pattern, CommandInput& in) {
  if (!give(hatch, pattern)) in.tell("\nUnknown pattern name.\n");
}

// Curves along the loops; the hatch can go by them from then on.
int recreateBoundary(CommandInput& in, GcDbObjectId id) {
  std::vector<GcGePath> paths;
  GcGeVector3d normal;
  forEach<GcDbHatch>({id}, [&](GcDbHatch& hatch) {
    normal = hatch.normal();
    GcGeMatrix3d toWorld, lift;
    lift.setToTranslation({0, 0, hatch.elevation()});
    toWorld.setToPlaneToWorld(normal);
    for (const GcDbHatchLoop& loop : hatch.loops()) {
      GcGePath path = gchatch::pathOf(loop);
      path.setClosed(true, true);
      paths.push_back(path.transformed(toWorld * lift));
    }
  });
  int made = 0;
  for (GcGePath& path : paths) {
    path.setClosed(true, true);
    made += !path.isEmpty() && drawOutline(in.editor(), path, normal) ? 1 : 0;
  }
  return made;
}

Task<bool> editHatch(CommandInput& in) {
  const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect hatch object: ").needed());
  if (picked.kind != Answer::Kind::Entity || picked.entity.objectClass() != GcDbHatch::desc()) {
    in.tell("\nThe object is no hatch.\n");
    co_return false;
  }
  const std::vector<GcDbObjectId> one{picked.entity};
  const Answer option = co_await in.ask(
      Ask(What::Keyword,
          "\nEnter hatch option [DIsassociate/Style/Properties/DRaw order/recreate Boundary/ASsociate/hatch "
          "COlor/LAyer] <Properties>: ")
          .words("DIsassociate Style Properties DRaw Boundary ASsociate COlor LAyer"));
  if (option.kind == Answer::Kind::Cancelled) co_return false;
  if (option.isKeyword("DIsassociate")) {
    forEach<GcDbHatch>(one, [](GcDbHatch& hatch) { ignore(hatch.setAssociative(false)); });
  } else if (option.isKeyword("Style")) {
    const Answer style = co_await in.ask(
        Ask(What::Keyword, "\nEnter hatching style [Ignore/Outer/Normal] <Normal>: ").words("Ignore Outer Normal"));
    const auto number = style.isKeyword("Ignore")  ? GcDbHatch::kIgnore
                        : style.isKeyword("Outer") ? GcDbHatch::kOuter
                                                   : GcDbHatch::kNormal;
    forEach<GcDbHatch>(one, [&](GcDbHatch& hatch) { ignore(hatch.setHatchStyle(number)); });
  } else if (option.isKeyword("Boundary")) {
    const int made = recreateBoundary(in, picked.entity);
    in.tell(("\n" + std::to_string(made) + " boundary curve(s) created.\n").c_str());
    co_return made > 0;
  } else if (option.isKeyword("ASsociate")) {
    const std::vector<GcDbObjectIdArray> chains = closedChains(co_await selectObjects(in));
    if (chains.empty()) co_return false;
    forEach<GcDbHatch>(one, [&](GcDbHatch& hatch) {
      ignore(hatch.setAssociative(true));
      const int former = hatch.numLoops();
      bool good = true;
      for (const GcDbObjectIdArray& chain : chains) good = good && hatch.appendLoop(kExternal, chain) == Gcad::eOk;
      for (int i = 0; good && i < former; ++i) ignore(hatch.removeLoopAt(0));
    });
  } else if (option.isKeyword("DRaw") || option.isKeyword("COlor") || option.isKeyword("LAyer")) {
    Loops none;
    static_cast<void>(co_await askOption(in, option, none));
    if (option.isKeyword("DRaw")) putInOrder(in.editor(), picked.entity);
    forEach<GcDbHatch>(one, [&](GcDbHatch& hatch) { giveLook(in.editor(), hatch); });
  } else {
    const Pattern pattern = co_await askPattern(in);
    forEach<GcDbHatch>(one, [&](GcDbHatch& hatch) { changePattern(hatch, pattern, in); });
  }
  co_return true;
}

constexpr Command kCommands[] = {
    {"-HATCH", "HATCH BHATCH H -H -BHATCH", hatch},
    {"-BOUNDARY", "BOUNDARY BO -BO", boundaryCommand},
    {"-HATCHEDIT", "HATCHEDIT HE -HE", editHatch},
};

}  // namespace

std::span<const Command> hatchCommands() { return kCommands; }

}  // namespace ed
