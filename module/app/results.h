// How a body answers LISP. Each call sets the result and gives RTNORM, so that a body ends with `return ret::…`.
// The last result call of a body wins; a body without one answers nil.
// [main thread] [during an invoke message]
#pragma once

#include "module/app/host.h"

namespace ret {

inline int nothing() { return RTNORM; }
inline int t() { return gcedRetT(), RTNORM; }
inline int nil() { return gcedRetNil(), RTNORM; }
// nil as the result of something that went wrong.
inline int nilError() { return gcedRetNil(), RTERROR; }
inline int truth(bool value) { return value ? t() : nil(); }
inline int real(double value) { return gcedRetReal(value), RTNORM; }
inline int string(const GCHAR* text) { return gcedRetStr(text), RTNORM; }
inline int point(double x, double y, double z) {
  const gds_point at = {x + 0.0, y + 0.0, z + 0.0};  // no negative zeros
  return gcedRetPoint(at), RTNORM;
}
inline int point(const GcGePoint3d& at) { return point(at.x, at.y, at.z); }
inline int vector(const GcGeVector3d& v) { return point(v.x, v.y, v.z); }
// The object's entity name; nil when it has none.
inline int name(GcDbObjectId id) {
  gds_name entity = {};
  if (gcdbGetGdsName(entity, id) != Gcad::eOk) return nil();
  return gcedRetName(entity, RTENAME), RTNORM;
}

}  // namespace ret
