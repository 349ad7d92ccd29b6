// ssget: selections by mode, place and filter.
#include "host/ed/command/select.h"
#include "host/ed/pick.h"
#include "host/ed/selection.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/filterlist.h"
#include "host/lisp/lib/names.h"

using lisp::LispValue;
using lisplib::hostOf;
using Ids = std::vector<GcDbObjectId>;

LISP_GROUP("Selection sets")

namespace {

// A mode word taken apart: "_+.:E:S:L" is a single pick, everything on locked layers left out.
struct Mode {
  lisp::Text word;  // upper case: X A ALL P L I W C WP CP F BOX, or empty: the person is asked
  bool single = false;
  bool unlockedOnly = false;
};

Mode parseMode(lisp::TextView text) {
  Mode mode;
  lisp::Text upper = lisp::upperCase(text);
  if (!upper.empty() && upper[0] == GC_T('_')) upper.erase(0, 1);
  for (size_t i = 0; i < upper.size(); ++i) {
    if (upper[i] == GC_T(':') && i + 1 < upper.size()) {
      ++i;
      mode.single = mode.single || upper[i] == GC_T('S') || upper[i] == GC_T('E');
      mode.unlockedOnly = mode.unlockedOnly || upper[i] == GC_T('L');
    } else if (upper[i] == GC_T('+') || upper[i] == GC_T('.') || upper[i] == GC_T('-')) {
      if (upper[i] == GC_T('.')) mode.single = true;
    } else {
      mode.word.push_back(upper[i]);
    }
  }
  return mode;
}

GcGePoint3d pointOf(LispValue value) {
  double at[3];
  if (lisp::pointOf(value, at) == 0) lisp::fail("bad SSGET mode string");
  return {at[0], at[1], at[2]};
}

bool isPoint(LispValue value) {
  double at[3];
  return lisp::pointOf(value, at) != 0;
}

ed::SelectionSet named(const Ids& ids) {
  ed::SelectionSet set;
  set.add(ids, {});
  return set;
}

// What one point means: the entity there.
ed::SelectionSet at(ed::Editor& editor, const GcGePoint3d& point) {
  ed::SelectionSet set;
  if (const GcDbObjectId id = ed::entityAt(editor, point); !id.isNull()) set.add({id}, ed::originOfPick(editor, point));
  return set;
}

// "Select objects:" answered by the person: points, windows, words, until Enter.
ed::SelectionSet asked(lisp::Args& args, ed::Editor& editor, bool single) {
  args.vm().flush();
  ed::PersonSelection how;
  how.single = single;
  ed::selectByPerson(editor, how);
  if (how.cancelled) lisp::fail("Function cancelled");
  return std::move(how.chosen);
}

bool regionKind(const lisp::Text& word, ed::Region::Kind& kind) {
  using Kind = ed::Region::Kind;
  constexpr struct {
    const GCHAR* word;
    Kind kind;
  } kKinds[] = {{GC_T("W"), Kind::Window},         {GC_T("C"), Kind::Crossing},         {GC_T("BOX"), Kind::Crossing},
                {GC_T("WP"), Kind::WindowPolygon}, {GC_T("CP"), Kind::CrossingPolygon}, {GC_T("F"), Kind::Fence}};
  for (const auto& each : kKinds) {
    if (word != each.word) continue;
    kind = each.kind;
    return true;
  }
  return false;
}

// Points behind the mode: two corners of a box, or one list of points.
std::vector<GcGePoint3d> regionPoints(lisp::Args& args, ed::Region::Kind kind) {
  if (kind == ed::Region::Kind::Window || kind == ed::Region::Kind::Crossing) {
    const GcGePoint3d corner = pointOf(args.any());
    return {corner, pointOf(args.any())};
  }
  std::vector<GcGePoint3d> points;
  for (LispValue list = args.list(); list.isPair(); list = list.tail()) points.push_back(pointOf(list.head()));
  if (points.size() < 2) lisp::fail("bad SSGET mode string");
  return points;
}

ed::SelectionSet byMode(lisp::Args& args, ed::Editor& editor, const Mode& mode) {
  ed::Region region;
  const auto copyOf = [](const ed::HeldSet& held) { return held.set() == nullptr ? ed::SelectionSet() : *held.set(); };
  if (mode.word == GC_T("X")) return named(ed::wholeDrawing(editor));
  if (mode.word == GC_T("A") || mode.word == GC_T("ALL")) return named(ed::visibleEntities(editor));
  if (mode.word == GC_T("L")) return named({ed::lastEntity(editor)});
  if (mode.word == GC_T("P")) return copyOf(editor.previousSet());
  if (mode.word == GC_T("I")) return copyOf(editor.pickedSet());
  if (regionKind(mode.word, region.kind)) {
    region.points = regionPoints(args, region.kind);
    ed::SelectionSet set;
    set.add(ed::entitiesIn(editor, region), ed::originOf(editor, region));
    return set;
  }
  if (!mode.word.empty() && mode.word != GC_T("N")) lisp::fail("bad SSGET mode string");
  if (args.more() && isPoint(args.peek())) return at(editor, pointOf(args.any()));
  return asked(args, editor, mode.single);
}

// The set of what was found; nil for nothing. A selection is what Previous means from then on.
LispValue setOf(lisp::Args& args, ed::Editor& editor, const ed::SelectionSet& found, const Ids& ids) {
  if (ids.empty()) return LispValue::nil();
  const ed::SetNumber number = editor.sets().make();
  editor.sets().find(number)->addFrom(found, ids);
  editor.previousSet().reset(number);
  return lisplib::adoptSet(args.vm(), number);
}

}  // namespace

LISP_BUILTIN(
    "ssget", "(ssget [mode] [point] [point] [filter]) -> set | nil",
    "Selects objects: X whole drawing, A all thawed, L last, P previous, I chosen before, W C WP CP F by place, a "
    "point, or asked for; then those that pass the filter.") {
  ed::Editor& editor = hostOf(args.vm()).editor();
  Mode mode;
  if (args.more() && args[0].isString()) mode = parseMode(args.string());
  const bool filterFirst = args.more() && !isPoint(args.peek()) && !args.peek().isString();
  const ed::SelectionSet found =
      filterFirst && mode.word.empty() ? asked(args, editor, mode.single) : byMode(args, editor, mode);
  Ids ids = found.ids();
  std::erase_if(ids, [](GcDbObjectId id) { return !id.isValid() || id.isErased(); });
  if (mode.unlockedOnly) std::erase_if(ids, [](GcDbObjectId id) { return ed::isOnLockedLayer(id); });
  if (args.moreNotNil()) ids = lisplib::filterOf(args.vm(), args.list()).passing(ids);
  return setOf(args, editor, found, ids);
}
