#include "host/ed/command/select.h"

#include <algorithm>

#include "host/ed/groups.h"
#include "host/ed/pick.h"
#include "host/ed/selection.h"

namespace ed {

namespace {

using Ids = std::vector<GcDbObjectId>;

constexpr const char* kWords =
    "Window Last Crossing ALL Fence WPolygon CPolygon Add Remove Previous Undo AUto SIngle BOX Group Multiple";

class Chosen {
 public:
  Chosen(Editor& editor, bool lockedToo) : m_editor(editor), m_lockedToo(lockedToo) {}
  void apply(const Ids& ids, SelectionOrigin origin = {}) {
    Ids added;
    for (const GcDbObjectId id : ids) {
      if (!id.isValid() || id.isErased() || !isInSpace(id, m_editor.currentSpace())) continue;
      if (m_removing)
        m_set.remove(id);
      else if (m_lockedToo || !isOnLockedLayer(id))
        added.push_back(id);
    }
    m_set.add(added, std::move(origin));
  }
  void apply(const Region& region) { apply(entitiesIn(m_editor, region), originOf(m_editor, region)); }
  void setRemoving(bool removing) { m_removing = removing; }
  [[nodiscard]] const Ids& ids() const { return m_set.ids(); }
  [[nodiscard]] const SelectionSet& set() const { return m_set; }

 private:
  Editor& m_editor;
  SelectionSet m_set;
  bool m_lockedToo = false;
  bool m_removing = false;
};

// The points of a region, asked for one by one.
Task<Region> askRegion(CommandInput& in, Region::Kind kind, std::vector<GcGePoint3d> begun) {
  Region region;
  region.kind = kind;
  region.points = std::move(begun);
  const bool box = kind == Region::Kind::Window || kind == Region::Kind::Crossing;
  const size_t most = box ? 2 : SIZE_MAX;
  while (region.points.size() < most) {
    Ask ask(Ask::What::Point, box && region.points.size() == 1 ? "\nSpecify opposite corner: " : "\nSpecify point: ");
    if (!region.points.empty()) ask.from(region.points.back());
    const Answer answer = co_await in.ask(ask);
    if (!answer.isPoint()) break;
    region.points.push_back(answer.point);
  }
  co_return region;
}

bool regionOf(const Answer& answer, Region::Kind& kind) {
  using Kind = Region::Kind;
  constexpr struct {
    const char* word;
    Kind kind;
  } kKinds[] = {{"Window", Kind::Window},          {"Crossing", Kind::Crossing},        {"BOX", Kind::Crossing},
                {"WPolygon", Kind::WindowPolygon}, {"CPolygon", Kind::CrossingPolygon}, {"Fence", Kind::Fence}};
  for (const auto& each : kKinds) {
    if (!answer.isKeyword(each.word)) continue;
    kind = each.kind;
    return true;
  }
  return false;
}

Ids worded(Editor& editor, const Answer& answer) {
  if (answer.isKeyword("ALL")) return visibleEntities(editor);
  if (answer.isKeyword("Last")) return {lastEntity(editor)};
  if (answer.isKeyword("Previous") && editor.previousSet().set() != nullptr) return editor.previousSet().set()->ids();
  return {};
}

}  // namespace

namespace {

// What one answer chooses: false when the selection is at its end.
Task<bool> applyAnswer(CommandInput& in, const Answer& answer, Chosen& chosen) {
  Editor& editor = in.editor();
  Region::Kind kind{};
  if (answer.kind == Answer::Kind::Objects) {
    chosen.apply(answer.objects);
  } else if (answer.isPoint()) {
    const GcDbObjectId picked = entityAt(editor, answer.point);
    if (!picked.isNull()) {
      chosen.apply({picked}, originOfPick(editor, answer.point));
      co_return true;
    }
    const Answer corner = co_await in.ask(Ask(Ask::What::Point, "\nSpecify opposite corner: ").from(answer.point));
    if (!corner.isPoint()) co_return true;
    // To the right a window, to the left a crossing.
    kind = corner.point.x >= answer.point.x ? Region::Kind::Window : Region::Kind::Crossing;
    chosen.apply(Region{kind, {answer.point, corner.point}});
  } else if (answer.isKeyword("Remove") || answer.isKeyword("Add")) {
    chosen.setRemoving(answer.isKeyword("Remove"));
  } else if (regionOf(answer, kind)) {
    const Region region = co_await askRegion(in, kind, {});
    if (region.points.size() >= 2) chosen.apply(region);
  } else if (answer.isKeyword("Group")) {
    const Answer name = co_await in.ask(Ask(Ask::What::Line, "\nEnter group name: "));
    const GcDbObjectId group = groupNamed(editor.database(), name.text);
    if (group.isNull()) in.tell("\nCannot find the group.\n");
    chosen.apply(groupMembers(group));
  } else if (answer.kind == Answer::Kind::Keyword) {
    chosen.apply(worded(editor, answer));
  } else {
    co_return false;
  }
  co_return true;
}

Task<Ids> select(CommandInput& in, const char* prompt, bool once) {
  Editor& editor = in.editor();
  Chosen chosen(editor, false);
  for (;;) {
    const Answer answer = co_await in.ask(Ask(Ask::What::Objects, prompt).words(kWords));
    if (!co_await applyAnswer(in, answer, chosen)) break;
    if (once && answer.kind == Answer::Kind::Objects) break;
  }
  if (!chosen.ids().empty()) {
    const SetNumber number = editor.sets().make(chosen.ids());
    editor.previousSet().reset(number);
    editor.sets().release(number);
  }
  co_return chosen.ids();
}

}  // namespace

void selectByPerson(Editor& editor, PersonSelection& how) {
  constexpr Command kSelecting{"SELECT", "", nullptr};
  Chosen chosen(editor, true);
  const auto body = [&](CommandInput& in) -> Task<bool> {
    for (;;) {
      const Answer answer = co_await in.ask(Ask(Ask::What::Objects, "\nSelect objects: ").words(kWords));
      how.cancelled = answer.kind == Answer::Kind::Cancelled;
      const bool misses = how.single && answer.isPoint() && entityAt(editor, answer.point).isNull();
      editor.errorNumber = misses ? Editor::kMissedPick : answer.isNone() ? Editor::kEnterPressed : 0;
      if (misses) co_return true;  // a single pick opens no window
      if (!co_await applyAnswer(in, answer, chosen) || how.single) co_return true;
    }
  };
  CommandRun run(editor, kSelecting, body);
  run.start();
  while (!run.done()) run.feed(InputItem::of(InputItem::Kind::Pause));
  if (!how.cancelled) how.chosen = chosen.set();
}

Task<Ids> selectObjects(CommandInput& in, const char* prompt) { co_return co_await select(in, prompt, false); }

// Deliberate: programs write (command "_.EXPLODE" e) without an Enter behind it, and count on it.
Task<Ids> selectOnce(CommandInput& in, const char* prompt) {
  const bool once = (integerVariable(in.editor(), "QAFLAGS") & 1) == 0;
  co_return co_await select(in, prompt, once);
}

}  // namespace ed
