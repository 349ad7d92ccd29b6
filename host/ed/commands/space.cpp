// Model space and paper space, layouts, viewports of layouts.
#include <cmath>

#include "db/curve.h"
#include "db/idmapping.h"
#include "db/layout.h"
#include "db/layoutmanager.h"
#include "db/region.h"
#include "host/db/objects/draworder.h"
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

// What a layout refused; true when it did not.
bool done(CommandInput& in, Gcad::ErrorStatus status, GcView name) {
  if (status == Gcad::eOk) return true;
  const std::string quoted = "\"" + gc::toUtf8(name) + "\"";
  std::string told = "\nNo layout can be called " + quoted + ".\n";
  if (status == Gcad::eKeyNotFound) told = "\nThere is no layout " + quoted + ".\n";
  if (status == Gcad::eDuplicateRecordName) told = "\nThere is a layout " + quoted + " already.\n";
  if (status == Gcad::eCannotBeErasedByCaller) told = "\nLayout " + quoted + " cannot be deleted.\n";
  in.tell(told.c_str());
  return false;
}

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
  co_return done(in, manager().createLayout(made.c_str(), layout, block, &in.database()), ::view(made));
}

// A new layout with the plot settings, the limits and copies of the entities of another.
Gcad::ErrorStatus copyLayout(GcDbDatabase& database, GcDbObjectId source, const GCHAR* name) {
  GcDbObjectId id, blockId;
  Gcad::ErrorStatus status = manager().createLayout(name, id, blockId, &database);
  GcDbLayout* from = nullptr;
  if (status == Gcad::eOk) status = gcdbOpenObject(from, source, GcDb::kForRead);
  if (status != Gcad::eOk) return status;
  if (const Changing changing(id); changing) {
    auto* to = changing.as<GcDbLayout>();
    ignore(to->copyFrom(*from));
    GcGePoint2d min, max;
    from->getLimits(min, max);
    ignore(to->setLimits(min, max));
  }
  const GcDbObjectId fromBlock = from->getBlockTableRecordId();
  ignore(from->close());
  GcDbIdMapping map;
  GcDbObjectIdArray entities;
  for (const GcDbSortPair& each : gcdbDrawingOrder(fromBlock)) entities.append(each.entity);
  return entities.isEmpty() ? Gcad::eOk : database.deepCloneObjects(entities, blockId, map, false);
}

Task<bool> copyOfLayout(CommandInput& in) {
  const Answer from = co_await in.ask(Ask(What::Line, "\nEnter name of layout to copy: "));
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter layout name for copy: "));
  const GcString current = manager().getActiveLayoutName(true, &in.database());
  const GcString source = from.text.empty() ? current : toGcString(from.text);
  const GcDbObjectId id = manager().findLayoutNamed(source.c_str(), &in.database());
  if (equalNoCase(::view(source), GC_T("Model"))) {
    in.tell("\nModel space cannot be copied.\n");
    co_return false;
  }
  if (id.isNull()) co_return done(in, Gcad::eKeyNotFound, ::view(source));
  const GcString made = name.text.empty() ? manager().getNextNewLayoutName(&in.database()) : toGcString(name.text);
  co_return done(in, copyLayout(in.database(), id, made.c_str()), ::view(made));
}

Task<bool> layout(CommandInput& in) {
  Editor& editor = in.editor();
  const Answer option =
      co_await in.ask(Ask(What::Keyword, "\nEnter layout option [Copy/Delete/New/Rename/Set/?] <set>: ")
                          .words("Copy Delete New Rename Set ?"));
  if (option.isKeyword("Copy")) co_return co_await copyOfLayout(in);
  if (option.isKeyword("New")) co_return co_await newLayout(in);
  if (option.isKeyword("?")) {
    for (const GcText& name : editor.layoutNames()) in.tell(("\n" + gc::toUtf8(name)).c_str());
    co_return true;
  }
  if (option.isKeyword("Rename")) {
    const Answer former = co_await in.ask(Ask(What::Line, "\nEnter layout to rename: "));
    const Answer wanted = co_await in.ask(Ask(What::Line, "\nEnter new layout name: "));
    const Gcad::ErrorStatus status = manager().renameLayout(former.text.c_str(), wanted.text.c_str(), &in.database());
    co_return done(in, status, status == Gcad::eKeyNotFound ? former.text : wanted.text);
  }
  if (option.isKeyword("Delete")) {
    const Answer name = co_await in.ask(Ask(What::Line, "\nEnter name of layout to delete: "));
    co_return done(in, manager().deleteLayout(name.text.c_str(), &in.database()), name.text);
  }
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter layout to make current: "));
  co_return done(in, editor.setLayout(name.text) ? Gcad::eOk : Gcad::eKeyNotFound, name.text);
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

// The part of model space that is seen fits; `clip` is null or the entity whose outline is the window's.
bool addViewport(CommandInput& in, const GcGePoint3d& a, const GcGePoint3d& b, GcDbObjectId clip = {}) {
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
  if (!clip.isNull()) ignore(viewport->setNonRectClipEntityId(clip));
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

bool isClosed(const GcDbEntity& entity) {
  const auto* curve = GcDbCurve::cast(&entity);
  return GcDbRegion::cast(&entity) != nullptr || (curve != nullptr && curve->isClosed());
}

Task<bool> addClipped(CommandInput& in) {
  const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect object to clip viewport: ").needed());
  GcDbEntity* outline = nullptr;
  if (picked.kind != Answer::Kind::Entity || gcdbOpenObject(outline, picked.entity, GcDb::kForRead) != Gcad::eOk)
    co_return false;
  GcDbExtents box;
  const bool isOutline = isClosed(*outline) && outline->ownerId() == in.database().paperSpaceId() &&
                         outline->getGeomExtents(box) == Gcad::eOk;
  ignore(outline->close());
  if (!isOutline) {
    in.tell("\nOnly a closed curve or region of this layout can clip a viewport.\n");
    co_return false;
  }
  co_return addViewport(in, box.min, box.max, picked.entity);
}

Task<bool> mview(CommandInput& in) {
  if (!in.editor().inPaperLayout()) {
    in.tell(kNotInModelTab);
    co_return false;
  }
  static_cast<void>(in.editor().setViewportNumber(kSheet));
  const Answer answer =
      co_await in.ask(Ask(What::Point, "\nSpecify corner of viewport or [ON/OFF/Fit/Lock/Object] <Fit>: ")
                          .words("ON OFF Fit Lock Object"));
  if (answer.isKeyword("ON")) co_return co_await changeViewports(in, &GcDbViewport::setOn);
  if (answer.isKeyword("OFF")) co_return co_await changeViewports(in, &GcDbViewport::setOff);
  if (answer.isKeyword("Lock")) co_return co_await lockViewports(in);
  if (answer.isKeyword("Object")) co_return co_await addClipped(in);
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
