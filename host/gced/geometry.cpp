// Geometry at the screen.
#include "ed/gced.h"
#include "host/ed/screen.h"
#include "host/ed/systems.h"

namespace {

bool systemOf(const resbuf* node, GcGeMatrix3d& toWorld) {
  if (node == nullptr) return false;
  GcDbObjectId entity;
  switch (node->restype) {
    case RTSHORT:
      if (node->resval.rint < 0 || node->resval.rint > 3) return false;
      toWorld = ed::systemToWorld(ed::currentEditor(), static_cast<ed::System>(node->resval.rint));
      return true;
    case RTENAME: return gcdbGetObjectId(entity, node->resval.rlname) == Gcad::eOk && ed::entitySystem(entity, toWorld);
    case RT3DPOINT: {
      const GcGeVector3d normal(node->resval.rpoint[0], node->resval.rpoint[1], node->resval.rpoint[2]);
      if (normal.isZeroLength()) return false;
      toWorld.setToPlaneToWorld(normal.normal());
      return true;
    }
    default: return false;
  }
}

GcGePoint3d toPoint(const gds_point point) { return {point[0], point[1], point[2]}; }

}  // namespace

int gcedTrans(const gds_point point, const resbuf* from, const resbuf* to, int displacement, gds_point result) {
  GcGeMatrix3d source;
  GcGeMatrix3d target;
  if (!systemOf(from, source) || !systemOf(to, target)) return RTERROR;
  const GcGePoint3d at = ed::transformed(toPoint(point), source, target, displacement != 0);
  result[0] = at.x;
  result[1] = at.y;
  result[2] = at.z;
  return RTNORM;
}

int gcedGrDraw(const gds_point from, const gds_point to, int color, int highlight) {
  ed::screen().line(toPoint(from), toPoint(to), color, highlight != 0);
  return RTNORM;
}

double gcutAngle(const gds_point from, const gds_point to) {
  return GcGeVector2d(to[0] - from[0], to[1] - from[1]).angle();
}

double gcutDistance(const gds_point from, const gds_point to) { return toPoint(from).distanceTo(toPoint(to)); }

int gcedGetInput(GcString& keyword) {
  const GcText& typed = ed::currentEditor().lastKeyword;
  if (typed.empty()) return RTERROR;
  keyword = toGcString(typed);
  return RTNORM;
}
