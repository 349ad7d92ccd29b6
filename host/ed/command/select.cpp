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
  Chosen(Editor& editor) : m_editor(editor) {}
  void apply(const Ids& ids) {
    for (const GcDbObjectId id : ids) {
      if (!id.isValid() || id.isErased() || !isInSpace(id, m_editor.currentSpace())) continue;
      if (m_removing)
        m_set.remove(id);
      else if (!isOnLockedLayer(id))
        m_set.add(id);
    }
  }
  void setRemoving(bool removing) { m_removing = removing; }
  [[nodiscard]] const Ids& ids() const { return m_set.ids(); }

 private:
  Editor& m_editor;
  SelectionSet m_set;
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

Task<Ids> select(CommandInput& in, const char* prompt, bool once) {
  Editor& editor = in.editor();
  Chosen chosen(editor);
  for (;;) {
    const Answer answer = co_await in.ask(Ask(Ask::What::Objects, prompt).words(kWords));
    if (answer.isNone() || answer.kind == Answer::Kind::Cancelled) break;
    Region::Kind kind{};
    if (answer.kind == Answer::Kind::Objects) {
      chosen.apply(answer.objects);
      if (once) break;
    } else if (answer.isPoint()) {
      const GcDbObjectId picked = entityAt(editor, answer.point);
      if (!picked.isNull()) {
        chosen.apply({picked});
        continue;
      }
      const Answer corner = co_await in.ask(Ask(Ask::What::Point, "\nSpecify opposite corner: ").from(answer.point));
      if (!corner.isPoint()) continue;
      // To the right a window, to the left a crossing.
      kind = corner.point.x >= answer.point.x ? Region::Kind::Window : Region::Kind::Crossing;
      chosen.apply(entitiesIn(editor, {kind, {answer.point, corner.point}}));
    } else if (answer.isKeyword("Remove") || answer.isKeyword("Add")) {
      chosen.setRemoving(answer.isKeyword("Remove"));
    } else if (regionOf(answer, kind)) {
      const Region region = co_await askRegion(in, kind, {});
      if (region.points.size() >= 2) chosen.apply(entitiesIn(editor, region));
    } else if (answer.isKeyword("Group")) {
      const Answer name = co_await in.ask(Ask(Ask::What::Line, "\nEnter group name: "));
      const GcDbObjectId group = groupNamed(editor.database(), name.text);
      if (group.isNull()) in.tell("\nCannot find the group.\n");
      chosen.apply(groupMembers(group));
    } else {
      chosen.apply(worded(editor, answer));
    }
  }
  if (!chosen.ids().empty()) {
    const SetNumber number = editor.sets().make(chosen.ids());
    editor.previousSet().reset(number);
    editor.sets().release(number);
  }
  co_return chosen.ids();
}

}  // namespace

Task<Ids> selectObjects(CommandInput& in, const char* prompt) { co_return co_await select(in, prompt, false); }

// Deliberate: programs write (command "_.EXPLODE" e) without an Enter behind it, and count on it.
Task<Ids> selectOnce(CommandInput& in, const char* prompt) {
  const bool once = (integerVariable(in.editor(), "QAFLAGS") & 1) == 0;
  co_return co_await select(in, prompt, once);
}

}  // namespace ed
