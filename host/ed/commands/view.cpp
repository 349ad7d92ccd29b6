// Views: zoom, plan, regeneration, redrawing.
#include <cmath>
#include <numbers>

#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/fields/update.h"
#include "host/ed/views.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;

Task<bool> window(CommandInput& in, GcGePoint3d first) {
  const Answer second = co_await in.ask(Ask(What::Point, "\nSpecify opposite corner: ").from(first));
  if (!second.isPoint()) co_return false;
  zoomWindow(in.editor(), first, second.point);
  co_return true;
}

// "2x" times the view, "2xp" a scale of paper units to units of the model, plain numbers times the limits' view.
bool zoomByText(Editor& editor, GcView text) {
  const bool toPaper = text.size() > 2 && equalNoCase(text.substr(text.size() - 2), GC_T("xp"));
  if (toPaper) {
    double scale = 0;
    return parseFactor(text.substr(0, text.size() - 2), scale) && zoomToPaperScale(editor, scale);
  }
  const bool ofView = !text.empty() && gcLower(text.back()) == GC_T('x');
  if (ofView) text.remove_suffix(1);
  double factor = 0;
  if (!parseFactor(text, factor)) return false;
  zoomScale(editor, factor, ofView);
  return true;
}

Task<bool> zoom(CommandInput& in) {
  Editor& editor = in.editor();
  Ask ask(What::Point,
          "\nSpecify corner of window, enter a scale factor (nX or nXP), or "
          "[All/Center/Extents/Previous/Scale/Window/Object]: ");
  ask.words("All Center Dynamic Extents Previous Scale Window Object Left").anyText = true;
  const Answer answer = co_await in.ask(ask);
  if (answer.isPoint()) co_return co_await window(in, answer.point);
  if (answer.kind == Answer::Kind::Text) co_return zoomByText(editor, answer.text);
  if (answer.isKeyword("Object")) {
    zoomTo(editor, extentsOf(co_await selectObjects(in)));
  } else if (answer.isKeyword("Extents") || answer.isKeyword("All")) {
    zoomExtents(editor);
  } else if (answer.isKeyword("Previous")) {
    zoomPrevious(editor);
  } else if (answer.isKeyword("Window")) {
    const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify first corner: "));
    if (first.isPoint()) co_return co_await window(in, first.point);
  } else if (answer.isKeyword("Scale")) {
    const Answer factor = co_await in.ask(Ask(What::Word, "\nEnter a scale factor (nX or nXP): "));
    co_return zoomByText(editor, factor.text);
  } else if (answer.isKeyword("Center")) {
    const Answer center = co_await in.ask(Ask(What::Point, "\nSpecify center point: "));
    const Answer height = co_await in.ask(Ask(What::Word, "\nEnter magnification or height: "));
    if (!center.isPoint()) co_return false;
    const bool factor = !height.text.empty() && gcLower(height.text.back()) == GC_T('x');
    double value = 0;
    const GcView digits = factor ? GcView(height.text).substr(0, height.text.size() - 1) : GcView(height.text);
    if (!parseFactor(digits, value)) value = editor.view().height;
    zoomCenter(editor, center.point, factor ? editor.view().height / value : value);
  }
  co_return true;
}

// The view from above the user's or the world's plane.
Task<bool> plan(CommandInput& in) {
  const Answer which = co_await in.ask(
      Ask(What::Keyword, "\nEnter an option [Current ucs/Ucs/World] <Current>: ").words("Current Ucs World"));
  Editor& editor = in.editor();
  const GcGeMatrix3d user = ucsToWorld(editor);
  editor.earlierViews().push_back(editor.view());
  editor.view().direction = which.isKeyword("World") ? GcGeVector3d::kZAxis : user.column(2);
  editor.view().twistRad = 0;
  if (!which.isKeyword("World")) {
    const GcGeVector3d right = displayToWorld(editor).inverse() * user.column(0);
    const double angle = gc::atan2(right.y, right.x);
    editor.view().twistRad = angle > 0 ? 2 * std::numbers::pi - angle : 0 - angle;
  }
  zoomExtents(editor);
  co_return true;
}

Task<bool> nothingToDraw(CommandInput&) { co_return true; }

// Nothing is drawn, but fields that are worked out with each regeneration (a bit of FIELDEVAL) are.
Task<bool> regenerate(CommandInput& in) {
  constexpr int kWithRegeneration = 16;
  if ((integerVariable(in.editor(), "FIELDEVAL") & kWithRegeneration) != 0)
    static_cast<void>(updateFields(in.editor(), entitiesOfAllBlocks(in.database())));
  co_return true;
}

constexpr Command kCommands[] = {
    {"ZOOM", "Z", zoom},
    {"PLAN", "", plan},
    {"REGEN", "RE", regenerate},
    {"REGENALL", "REA", regenerate},
    {"REDRAW", "R", nothingToDraw},
    {"REDRAWALL", "RA", nothingToDraw},
};

}  // namespace

std::span<const Command> viewCommands() { return kCommands; }

}  // namespace ed
