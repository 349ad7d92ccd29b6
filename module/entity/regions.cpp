// Regions from curves of the drawing.
#include <memory>
#include <vector>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/rbchain.h"
#include "module/app/results.h"
#include "module/entity/space.h"

namespace {

// Deliberate: the older 2D polylines bound no region.
bool boundsRegion(const GcDbObject& object) {
  const GcRxClass* const kinds[] = {GcDbLine::desc(),   GcDbArc::desc(),        GcDbEllipse::desc(), GcDbCircle::desc(),
                                    GcDbSpline::desc(), GcDb3dPolyline::desc(), GcDbPolyline::desc()};
  for (const GcRxClass* kind : kinds)
    if (object.isKindOf(kind)) return true;
  return false;
}

// The curves among the remaining arguments, closed again. What else they hold is passed over.
GcDbVoidPtrArray curvesOf(const ArgReader& args) {
  GcDbVoidPtrArray curves;
  for (const resbuf* rb = args.rest(); rb != nullptr; rb = rb->rbnext) {
    if (rb->restype != RTENAME) continue;
    const GcDbReadPtr<GcDbObject> object(node::objectId(*rb));
    if (object && boundsRegion(*object)) curves.append(object.get());
  }
  return curves;
}

}  // namespace

int addRegion() {
  static constexpr ArgRules kRules{msg::kNoArguments, msg::kNoArguments, msg::kTooFew, msg::kWrongType};
  ArgReader args(kRules);
  const space::Space space = space::read(args);
  if (args.failed()) return args.status();
  const GcDbVoidPtrArray curves = curvesOf(args);
  GcDbVoidPtrArray made;
  if (curves.isEmpty() || GcDbRegion::createFromCurves(curves, made) != Gcad::eOk) return ret::nilError();
  RbChain list;
  list.append(RTLB);
  for (void* each : made) {
    std::unique_ptr<GcDbEntity> region(static_cast<GcDbEntity*>(each));
    ignore(appendTo(space::blockName(space), region.get()));
    const GcDbObjectId id = region->objectId();
    if (id.isNull()) continue;  // refused: freed here
    (void)region.release();
    list.appendName(id);
  }
  list.append(RTLE);
  return ret::list(list);
}
