#include "module/entity/marked.h"

#include "module/app/rbchain.h"

bool isMarkName(const GCHAR* applicationName) {
  const GcString upper = GcString(applicationName).upper();
  const bool st = upper[0] == GC_T('S') && upper[1] == GC_T('T');
  const bool zb = upper[0] == GC_T('Z') && upper[1] == GC_T('B');
  return (st || zb) && upper[2] == GC_T('_');
}

bool isMarked(const GcDbEntity& entity) {
  constexpr int kApplicationName = 1001;
  const RbChain data(entity.xData());
  for (const resbuf* rb = data.head(); rb != nullptr; rb = rb->rbnext)
    if (rb->restype == kApplicationName && rb->resval.rstring != nullptr && isMarkName(rb->resval.rstring)) return true;
  return false;
}
