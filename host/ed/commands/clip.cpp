// XCLIP: block references and external references shown within an outline only.
#include "db/blockreference.h"
#include "db/polyline.h"
#include "host/db/objects/filters.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/dictionaries.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;
using Outline = std::vector<GcGePoint3d>;  // user coordinates

constexpr const GCHAR* kFilters = GC_T("ACAD_FILTER");
constexpr const GCHAR* kSpatial = GC_T("SPATIAL");

GcDbObjectId filterOf(GcDbObjectId reference) {
  return entryNamed(subdictionary(extensionOf(reference), kFilters), kSpatial);
}

Ids referencesAmong(const Ids& chosen) {
  Ids found;
  for (const GcDbObjectId id : chosen)
    if (id.objectClass() != nullptr && id.objectClass()->isDerivedFrom(GcDbBlockReference::desc())) found.push_back(id);
  return found;
}

Task<Outline> askRectangle(CommandInput& in) {
  Outline corners;
  const Answer a = co_await in.ask(Ask(What::Point, "\nSpecify first corner: ").needed());
  if (!a.isPoint()) co_return corners;
  const Answer b = co_await in.ask(Ask(What::Point, "\nSpecify opposite corner: ").from(a.point).needed());
  if (b.isPoint() && a.point.x != b.point.x && a.point.y != b.point.y) corners = {a.point, b.point};
  co_return corners;
}

Task<Outline> askPolygon(CommandInput& in) {
  Outline corners;
  for (;;) {
    Ask ask(What::Point, corners.empty() ? "\nSpecify first point: " : "\nSpecify next point or [Undo]: ");
    if (!corners.empty()) ask.from(corners.back()).words("Undo");
    const Answer next = co_await in.ask(ask);
    if (next.isKeyword("Undo") && !corners.empty()) corners.pop_back();
    if (next.isPoint())
      corners.push_back(next.point);
    else if (!next.isKeyword("Undo"))
      break;
  }
  if (corners.size() < 3) corners.clear();
  co_return corners;
}

Task<Outline> askPolyline(CommandInput& in) {
  Outline corners;
  const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect polyline: ").needed());
  GcDbPolyline* line = nullptr;
  if (picked.kind != Answer::Kind::Entity || gcdbOpenObject(line, picked.entity, GcDb::kForRead) != Gcad::eOk) {
    in.tell("\nThe outline has to be a polyline of straight segments.\n");
    co_return corners;
  }
  const GcGeMatrix3d toUser = ucsToWorld(in.editor()).inverse();
  for (unsigned i = 0; i < line->numVerts(); ++i) {
    GcGePoint3d at;
    ignore(line->getPointAt(i, at));
    corners.push_back(toUser * at);
  }
  if (line->hasBulges() || corners.size() < 3) {
    in.tell("\nThe outline has to be a polyline of straight segments.\n");
    corners.clear();
  }
  ignore(line->close());
  co_return corners;
}

void clip(Editor& editor, GcDbObjectId id, const Outline& corners) {
  GcDbBlockReference* reference = nullptr;
  if (gcdbOpenObject(reference, id, GcDb::kForRead) != Gcad::eOk) return;
  const GcGeMatrix3d placed = reference->blockTransform();
  ignore(reference->close());
  auto* filter = new GcDbSpatialFilter;
  GcArray<GcGePoint2d> outline;
  for (const GcGePoint3d& corner : corners) outline.append(GcGePoint2d(corner.x, corner.y));
  ignore(filter->setClip(outline, ucsToWorld(editor), placed));
  putEntry(subdictionary(extensionOf(id, true), kFilters, true), kSpatial, filter);
}

Task<bool> newBoundary(CommandInput& in, const Ids& references) {
  bool hasClip = false;
  for (const GcDbObjectId id : references) hasClip = hasClip || !filterOf(id).isNull();
  if (hasClip) {
    const Answer yes =
        co_await in.ask(Ask(What::Keyword, "\nDelete old boundary(s)? [Yes/No] <Yes>: ").words("Yes No"));
    if (yes.isKeyword("No")) co_return false;
  }
  Answer how;
  do {
    how = co_await in.ask(
        Ask(What::Keyword,
            "\nSpecify clipping boundary:\n[Select polyline/Polygonal/Rectangular/Invert clip] <Rectangular>: ")
            .words("Select Polygonal Rectangular Invert"));
    if (how.isKeyword("Invert")) in.tell("\nOnly what lies within an outline can be shown.\n");
  } while (how.isKeyword("Invert"));
  Outline corners;
  if (how.isKeyword("Select"))
    corners = co_await askPolyline(in);
  else if (how.isKeyword("Polygonal"))
    corners = co_await askPolygon(in);
  else
    corners = co_await askRectangle(in);
  if (corners.empty()) co_return false;
  for (const GcDbObjectId id : references) clip(in.editor(), id, corners);
  co_return true;
}

// A polyline along each outline, where it is now.
bool drawOutlines(CommandInput& in, const Ids& references) {
  bool any = false;
  for (const GcDbObjectId id : references) {
    GcDbBlockReference* reference = nullptr;
    GcDbSpatialFilter* filter = nullptr;
    if (gcdbOpenObject(filter, filterOf(id), GcDb::kForRead) != Gcad::eOk) continue;
    GcArray<GcGePoint2d> corners = filter->outline();
    GcGeMatrix3d toWorld = filter->outlineToBlock();
    ignore(filter->close());
    if (gcdbOpenObject(reference, id, GcDb::kForRead) != Gcad::eOk) continue;
    toWorld = reference->blockTransform() * toWorld;
    ignore(reference->close());
    if (corners.length() == 2) {
      const GcGePoint2d a = corners[0], b = corners[1];
      corners.clear();
      for (const GcGePoint2d& corner : {a, GcGePoint2d(b.x, a.y), b, GcGePoint2d(a.x, b.y)}) corners.append(corner);
    }
    auto* line = new GcDbPolyline;
    for (int i = 0; i < corners.length(); ++i) ignore(line->addVertexAt(static_cast<unsigned>(i), corners[i]));
    line->setClosed(true);
    ignore(line->transformBy(toWorld));
    any = !appendWithDefaults(in.editor(), line).isNull() || any;
  }
  return any;
}

Task<bool> setDepth(CommandInput& in, const Ids& filters) {
  const Answer front = co_await in.ask(
      Ask(What::Distance, "\nSpecify front clip point or [Distance/Remove]: ").words("Distance Remove"));
  double depths[2] = {front.number, 0};
  bool has[2] = {front.kind == Answer::Kind::Number, false};
  if (front.isKeyword("Distance")) {
    const char* prompts[] = {"\nSpecify distance from boundary to front: ",
                             "\nSpecify distance from boundary to back: "};
    for (int i = 0; i < 2; ++i) {
      const Answer depth = co_await in.ask(Ask(What::Distance, prompts[i]));
      has[i] = depth.kind == Answer::Kind::Number;
      depths[i] = depth.number;
    }
  }
  forEach<GcDbSpatialFilter>(
      filters, [&](GcDbSpatialFilter& filter) { ignore(filter.setDepth(has[0], depths[0], has[1], depths[1])); });
  co_return true;
}

Task<bool> xclip(CommandInput& in) {
  const Ids references = referencesAmong(co_await selectObjects(in));
  if (references.empty()) {
    in.tell("\nNo blocks or external references selected.\n");
    co_return false;
  }
  const Answer option = co_await in.ask(
      Ask(What::Keyword, "\nEnter clipping option\n[ON/OFF/Clipdepth/Delete/generate Polyline/New boundary] <New>: ")
          .words("ON OFF Clipdepth Delete Polyline New"));
  if (option.kind == Answer::Kind::Cancelled) co_return false;
  if (option.isNone() || option.isKeyword("New")) co_return co_await newBoundary(in, references);
  Ids filters;
  for (const GcDbObjectId id : references)
    if (const GcDbObjectId filter = filterOf(id); !filter.isNull()) filters.push_back(filter);
  if (filters.empty()) {
    in.tell("\nNo clipping boundary found.\n");
    co_return false;
  }
  if (option.isKeyword("Polyline")) co_return drawOutlines(in, references);
  if (option.isKeyword("Clipdepth")) co_return co_await setDepth(in, filters);
  if (option.isKeyword("Delete"))
    for (const GcDbObjectId id : filters) eraseObject(id);
  else
    forEach<GcDbSpatialFilter>(filters, [&](GcDbSpatialFilter& each) { ignore(each.setOn(option.isKeyword("ON"))); });
  co_return true;
}

constexpr Command kCommands[] = {
    {"XCLIP", "XC CLIP", xclip},
};

}  // namespace

std::span<const Command> clipCommands() { return kCommands; }

}  // namespace ed
