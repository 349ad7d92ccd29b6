// Coordinate systems and geometry of the drawing.
#include "host/ed/snap.h"
#include "host/ed/systems.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/names.h"

using lisp::LispValue;
using lisplib::hostOf;

LISP_GROUP("Geometry of the drawing")

namespace {

// 0 world, 1 user, 2 display, 3 paper; an entity's own system; the plane of a normal.
GcGeMatrix3d systemArgument(lisp::Args& args) {
  const LispValue value = args.any();
  GcGeMatrix3d matrix;
  GcDbObjectId id;
  double normal[3];
  if (value.isInteger() && value.asInteger() >= 0 && value.asInteger() <= 3)
    return ed::systemToWorld(hostOf(args.vm()).editor(), static_cast<ed::System>(value.asInteger()));
  if (lisplib::idOf(value, id) && ed::entitySystem(id, matrix)) return matrix;
  if (lisp::pointOf(value, normal) == 3) {
    const GcGeVector3d direction(normal[0], normal[1], normal[2]);
    if (!direction.isZeroLength()) return matrix.setToPlaneToWorld(direction.normal());
  }
  lisp::failType(args.vm(), "coordinate system", value);
}

}  // namespace

LISP_BUILTIN("trans", "(trans point from to [displacement]) -> point",
             "A point or displacement from one coordinate system to another: 0 world, 1 user, 2 display, 3 paper, an "
             "entity's own, or that of a normal.") {
  double at[3];
  args.point(at);
  const GcGeMatrix3d from = systemArgument(args);
  const GcGeMatrix3d to = systemArgument(args);
  const GcGePoint3d moved = ed::transformed({at[0], at[1], at[2]}, from, to, args.moreNotNil());
  const double result[] = {moved.x, moved.y, moved.z};
  return args.newPoint(result, 3);
}

LISP_BUILTIN("osnap", "(osnap point modes) -> point | nil",
             "The point that object snap finds near a point: \"_end,_mid,_cen,_nod,_qua,_int,_ins,_per,_tan,_nea\".") {
  double at[3];
  args.point(at);
  GcGePoint3d snapped;
  if (!ed::snapPoint(hostOf(args.vm()).editor(), {at[0], at[1], at[2]}, args.string(), snapped))
    return LispValue::nil();
  const double result[] = {snapped.x, snapped.y, snapped.z};
  return args.newPoint(result, 3);
}
