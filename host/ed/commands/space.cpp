// Model space and paper space, layouts, viewports of layouts.
#include <cmath>

#include "db/layout.h"
#include "db/layoutmanager.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/viewplace.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

constexpr int kSheet = 1;
constexpr const char* kNotInModelTab = "\n** Command not allowed in Model Tab **\n";

GcDbLayoutManager& manager() { return *gcdbHostApplicationServices()->layoutManager(); }

Task<bool> mspace(CommandInput& in) {
  Editor& editor = in.editor();
  if (!editor.inPaperLayout()) {
    in.tell(kNotInModelTab);
    co_return false;
  }
  if (!editor.inPaperSpace()) {
    in.tell("\nAlready in model space.\n");
    co_return true;
  }
  const GcDbObjectId id = viewportToWorkIn(editor);
  if (id.isNull()) {
    in.tell("\nThere are no active Model space viewports.\n");
    co_return false;
  }
  co_return editor.workIn(id);
}

Task<bool> pspace(CommandInput& in) {
  Editor& editor = in.editor();
  if (!editor.inPaperLayout()) {
    in.tell(kNotInModelTab);
    co_return false;
  }
  if (editor.inPaperSpace()) in.tell("\nAlready in paper space.\n");
  co_return editor.setViewportNumber(kSheet);
}

// ---- layouts

Task<bool> newLayout(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter name of new layout: "));
  const GcString made = name.text.empty() ? manager().getNextNewLayoutName(&in.database()) : toGcString(name.text);
  GcDbObjectId layout, block;
  co_return manager().createLayout(made.c_str(), layout, block, &in.database()) == Gcad::eOk;
}

Task<bool> layout(CommandInput& in) {
  Editor& editor = in.editor();
  const Answer option = co_await in.ask(
      Ask(What::Keyword, "\nEnter layout option [Delete/New/Rename/Set/?] <set>: ").words("Delete New Rename Set ?"));
  if (option.isKeyword("New")) co_return co_await newLayout(in);
  if (option.isKeyword("?")) {
    for (const GcText& name : editor.layoutNames()) in.tell(("\n" + gc::toUtf8(name)).c_str());
    co_return true;
  }
  if (option.isKeyword("Rename")) {
    const Answer former = co_await in.ask(Ask(What::Line, "\nEnter layout to rename: "));
    const Answer wanted = co_await in.ask(Ask(What::Line, "\nEnter new layout name: "));
    co_return manager().renameLayout(former.text.c_str(), wanted.text.c_str(), &in.database()) == Gcad::eOk;
  }
  if (option.isKeyword("Delete")) {
    const Answer name = co_await in.ask(Ask(What::Line, "\nEnter name of layout to delete: "));
    co_return manager().deleteLayout(name.text.c_str(), &in.database()) == Gcad::eOk;
  }
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter layout to make current: "));
  co_return editor.setLayout(name.text);
}

// ---- viewports

using Change = Gcad::ErrorStatus (GcDbViewport::*)();

Task<bool> changeViewports(CommandInput& in, Change change) {
  const std::vector<GcDbObjectId> chosen = co_await selectObjects(in);
  for (const GcDbObjectId id : chosen) {
    const Changing changing(id);
    auto* viewport = changing ? changing.as<GcDbViewport>() : nullptr;
    if (viewport != nullptr && !viewport->isSheet()) ignore((viewport->*change)());
  }
  co_return true;
}

bool addViewport(CommandInput& in, const GcGePoint3d& a, const GcGePoint3d& b) {
  auto* made = new GcDbViewport;
  ignore(made->setCenterPoint({(a.x + b.x) / 2, (a.y + b.y) / 2, 0}));
  const bool hasArea =
      made->setWidth(std::fabs(b.x - a.x)) == Gcad::eOk && made->setHeight(std::fabs(b.y - a.y)) == Gcad::eOk;
  if (!hasArea) {
    delete made;
    return false;
  }
  const GcDbObjectId id = appendFromUser(in.editor(), made);
  const Changing changing(id);
  auto* viewport = changing ? changing.as<GcDbViewport>() : nullptr;
  if (viewport == nullptr) return false;
  ignore(viewport->setOn());
  return viewport->setStandardScale(GcDbViewport::kScaleToFit) == Gcad::eOk;
}

// All of the paper that can be printed.
bool addFitting(CommandInput& in) {
  GcDbLayout* layout = nullptr;
  if (gcdbOpenObject(layout, manager().findActiveLayout(true, &in.database()), GcDb::kForRead) != Gcad::eOk)
    return false;
  double left = 0, bottom = 0, right = 0, top = 0;
  layout->getPlotPaperMargins(left, bottom, right, top);
  const GcGePoint2d paper = layout->plotPaperSize();
  ignore(layout->close());
  return addViewport(in, {}, {paper.x - left - right, paper.y - bottom - top, 0});
}

Task<bool> lockViewports(CommandInput& in) {
  const Answer on = co_await in.ask(Ask(What::Keyword, "\nViewport View Locking [ON/OFF]: ").words("ON OFF"));
  co_return co_await changeViewports(in, on.isKeyword("OFF") ? &GcDbViewport::setUnlocked : &GcDbViewport::setLocked);
}

Task<bool> mview(CommandInput& in) {
  if (!in.editor().inPaperLayout()) {
    in.tell(kNotInModelTab);
    co_return false;
  }
  static_cast<void>(in.editor().setViewportNumber(kSheet));
  const Answer answer = co_await in.ask(
      Ask(What::Point, "\nSpecify corner of viewport or [ON/OFF/Fit/Lock] <Fit>: ").words("ON OFF Fit Lock"));
  if (answer.isKeyword("ON")) co_return co_await changeViewports(in, &GcDbViewport::setOn);
  if (answer.isKeyword("OFF")) co_return co_await changeViewports(in, &GcDbViewport::setOff);
  if (answer.isKeyword("Lock")) co_return co_await lockViewports(in);
  if (!answer.isPoint()) co_return addFitting(in);
  const Answer second = co_await in.ask(Ask(What::Point, "\nSpecify opposite corner: ").from(answer.point));
  co_return second.isPoint() && addViewport(in, answer.point, second.point);
}

constexpr Command kCommands[] = {
    {"MSPACE", "MS", mspace},
    {"PSPACE", "PS", pspace},
    {"LAYOUT", "LO", layout},
    {"MVIEW", "MV -VPORTS", mview},
};

}  // namespace

std::span<const Command> spaceCommands() { return kCommands; }

}  // namespace ed
