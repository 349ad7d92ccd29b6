// Measures of entities and what is constructed from them: area, crossings, parallel curves.
#include <memory>
#include <string>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/rbchain.h"
#include "module/app/results.h"
#include "module/entity/space.h"

namespace {

struct ExtendMode {
  const GCHAR* name;
  GcDb::Intersect mode;
};

// Which of the two is taken as going on beyond its ends.
constexpr ExtendMode kExtendModes[] = {
    {GC_T("ACEXTENDNONE"), GcDb::kOnBothOperands},
    {GC_T("ACEXTENDTHISENTITY"), GcDb::kExtendThis},
    {GC_T("ACEXTENDOTHERENTITY"), GcDb::kExtendArg},
    {GC_T("ACEXTENDBOTH"), GcDb::kExtendBoth},
};

const ExtendMode* findExtendMode(const GCHAR* name) {
  const GcString upper = GcString(name).upper();
  for (const ExtendMode& each : kExtendModes)
    if (upper == GcString(each.name)) return &each;
  return nullptr;
}

}  // namespace

int getArea() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  if (!curve) return args.wrongType();
  double area = 0;
  ignore(curve->getArea(area));
  return ret::real(area);
}

// Deliberate: only the first of several parallel curves is kept; the others are neither appended nor deleted.
int offsetCurve() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const double distance = args.real();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  if (!curve) return args.wrongType();
  GcDbVoidPtrArray parallels;
  if (curve->getOffsetCurves(distance, parallels) != Gcad::eOk || parallels.isEmpty()) return ret::nilError();
  std::unique_ptr<GcDbEntity> first(static_cast<GcDbEntity*>(parallels[0]));
  return appendAndAnswer(space::Space::Model, std::move(first));
}

// The second argument is taken as an entity name whatever it is.
int intersectWith() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const GcDbObjectId otherId = args.anyEntity();
  const GCHAR* modeName = args.string();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbEntity> entity(id);
  const GcDbReadPtr<GcDbEntity> other(otherId);
  const ExtendMode* extend = findExtendMode(modeName);
  if (!entity || !other || extend == nullptr) return args.wrongType();
  GcArray<GcGePoint3d> points;
  ignore(entity->intersectWith(other.get(), extend->mode, points, 0, 0));
  RbChain list;
  list.append(RTLB);
  for (const GcGePoint3d& at : points) list.appendPoint(at.x, at.y, at.z);
  list.append(RTLE);
  return ret::list(list);
}
