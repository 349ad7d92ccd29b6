// REGION: areas from closed curves; UNION, SUBTRACT, INTERSECT: areas of one plane put together.
#include "db/region.h"

#include "db/curve.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"

namespace ed {

namespace {

using Ids = std::vector<GcDbObjectId>;
using Operation = GcDbRegion::BoolOperType;

// Regions in the place of closed curves (DELOBJ says whether those go).
int makeRegions(Editor& editor, const Ids& ids) {
  GcDbVoidPtrArray curves;
  Ids sources;
  for (const GcDbObjectId id : ids) {
    GcDbCurve* curve = nullptr;
    if (gcdbOpenObject(curve, id, GcDb::kForRead) != Gcad::eOk) continue;
    curves.append(curve);
    sources.push_back(id);
  }
  GcDbVoidPtrArray regions;
  ignore(GcDbRegion::createFromCurves(curves, regions));
  for (void* curve : curves) ignore(static_cast<GcDbCurve*>(curve)->close());
  for (void* region : regions) appendWithDefaults(editor, static_cast<GcDbRegion*>(region));
  if (regions.length() > 0 && integerVariable(editor, "DELOBJ") != 0)
    for (const GcDbObjectId id : sources) eraseEntity(id);
  return regions.length();
}

Task<bool> region(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  const int made = makeRegions(in.editor(), ids);
  const std::string count = std::to_string(made);
  in.tell(("\n" + count + " loop" + (made == 1 ? "" : "s") + " extracted.\n" + count + " Region" +
           (made == 1 ? "" : "s") + " created.\n")
              .c_str());
  co_return made > 0;
}

// ---- UNION, SUBTRACT, INTERSECT

bool isSolid(GcDbObjectId id) {
  const GcText kind = id.objectClass() == nullptr ? GcText() : GcText(id.objectClass()->name());
  return kind.find(GC_T("3dSolid")) != GcText::npos || kind.find(GC_T("Surface")) != GcText::npos ||
         kind.find(GC_T("Body")) != GcText::npos;
}

Ids regionsAmong(CommandInput& in, const Ids& chosen) {
  Ids regions;
  bool hasSolids = false;
  for (const GcDbObjectId id : chosen) {
    if (id.objectClass() == GcDbRegion::desc()) regions.push_back(id);
    hasSolids = hasSolids || isSolid(id);
  }
  if (hasSolids) in.tell("\nSolids and surfaces cannot be put together here; regions can.\n");
  return regions;
}

// The region becomes what it is together with another one, which goes. False when they lie in different planes.
bool combine(GcDbObjectId id, GcDbObjectId otherId, Operation operation) {
  GcDbRegion *own = nullptr, *other = nullptr;
  if (gcdbOpenObject(own, id, GcDb::kForWrite) != Gcad::eOk) return false;
  bool good = gcdbOpenObject(other, otherId, GcDb::kForRead) == Gcad::eOk;
  if (good && own->isNull()) {
    good = operation != GcDbRegion::kBoolUnite;  // nothing stays nothing
  } else if (good) {
    good = own->booleanOper(operation, *other) == Gcad::eOk;
  }
  if (other != nullptr) ignore(other->close());
  ignore(own->close());
  if (good) eraseEntity(otherId);
  return good;
}

// A region that has become nothing goes, with a word.
void eraseIfNull(CommandInput& in, GcDbObjectId id) {
  GcDbRegion* region = nullptr;
  if (gcdbOpenObject(region, id, GcDb::kForRead) != Gcad::eOk) return;
  const bool isNull = region->isNull();
  ignore(region->close());
  if (!isNull) return;
  eraseEntity(id);
  in.tell("\nNull region created - deleted.\n");
}

// Regions of one plane are put together with each other, plane by plane.
bool combineAll(CommandInput& in, Ids regions, Operation operation) {
  bool any = false;
  while (!regions.empty()) {
    const GcDbObjectId first = regions.front();
    Ids others;
    for (size_t i = 1; i < regions.size(); ++i) {
      if (combine(first, regions[i], operation))
        any = true;
      else
        others.push_back(regions[i]);
    }
    eraseIfNull(in, first);
    regions = others;
  }
  return any;
}

Task<bool> combineChosen(CommandInput& in, Operation operation) {
  const Ids chosen = co_await selectObjects(in);
  const Ids regions = regionsAmong(in, chosen);
  if (regions.size() < 2 || !combineAll(in, regions, operation)) {
    in.tell("\nAt least 2 coplanar regions must be selected.\n");
    co_return false;
  }
  co_return true;
}

Task<bool> unite(CommandInput& in) { co_return co_await combineChosen(in, GcDbRegion::kBoolUnite); }
Task<bool> intersect(CommandInput& in) { co_return co_await combineChosen(in, GcDbRegion::kBoolIntersect); }

Task<bool> subtract(CommandInput& in) {
  in.tell("\nSelect solids, surfaces, and regions to subtract from ..\n");
  const Ids kept = regionsAmong(in, co_await selectObjects(in));
  if (kept.empty()) {
    in.tell("\nNo regions selected.\n");
    co_return false;
  }
  in.tell("\nSelect solids, surfaces, and regions to subtract ..\n");
  Ids taken = regionsAmong(in, co_await selectObjects(in));
  // What is subtracted from is one area first.
  if (kept.size() > 1) combineAll(in, kept, GcDbRegion::kBoolUnite);
  bool any = false;
  for (const GcDbObjectId id : kept) {
    if (!id.isValid() || id.isErased()) continue;
    for (const GcDbObjectId other : taken)
      if (other != id && other.isValid() && !other.isErased())
        any = combine(id, other, GcDbRegion::kBoolSubtract) || any;
    eraseIfNull(in, id);
  }
  if (!any) in.tell("\nNothing of the second selection lies in the plane of the first.\n");
  co_return any;
}

constexpr Command kCommands[] = {
    {"REGION", "REG", region},
    {"UNION", "UNI", unite},
    {"SUBTRACT", "SU", subtract},
    {"INTERSECT", "IN", intersect},
};

}  // namespace

std::span<const Command> regionCommands() { return kCommands; }

}  // namespace ed
