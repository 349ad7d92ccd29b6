#include "module/entity/markedxdata.h"

#include "module/entity/marked.h"

namespace {

constexpr int kString = 1000;
constexpr int kApplicationName = 1001;
constexpr int kControlString = 1002;
constexpr int kFirstPoint = 1010;
constexpr int kLastPoint = 1033;
constexpr int kFirstTakenAsReal = 1042;

// "{" and "}" become list brackets; only the first character counts.
void retypeControl(resbuf& rb) {
  const GCHAR first = rb.resval.rstring != nullptr ? rb.resval.rstring[0] : GCHAR{0};
  if (first != GC_T('{') && first != GC_T('}')) return;
  gcutDelBuffer(rb.resval.rstring);
  rb.resval = {};
  rb.restype = first == GC_T('{') ? RTLB : RTLE;
}

// Deliberate: 1070 and 1071 are taken as reals too. Their number is kept, as a real.
void retypeReal(resbuf& rb) {
  const GcRbKind kind = gcutRbKind(rb.restype);
  if (kind == GcRbKind::Short)
    rb.resval.rreal = rb.resval.rint;
  else if (kind == GcRbKind::Long)
    rb.resval.rreal = rb.resval.rlong;
  rb.restype = RTREAL;
}

void retype(resbuf& rb) {
  const int code = rb.restype;
  if (code == kString)
    rb.restype = RTSTR;
  else if (code == kControlString)
    retypeControl(rb);
  else if (code >= kFirstTakenAsReal)
    retypeReal(rb);
  else if (code >= kFirstPoint && code <= kLastPoint)
    rb.restype = RT3DPOINT;
}

bool isGroupStart(const resbuf& rb) { return rb.restype == kApplicationName; }

// Cuts the chain behind its first group; gives the rest.
resbuf* cutGroup(resbuf* group) {
  resbuf* last = group;
  while (last->rbnext != nullptr && !isGroupStart(*last->rbnext)) last = last->rbnext;
  resbuf* rest = last->rbnext;
  last->rbnext = nullptr;
  return rest;
}

bool isMarkedGroup(const resbuf& group) {
  return isGroupStart(group) && group.resval.rstring != nullptr && isMarkName(group.resval.rstring);
}

}  // namespace

resbuf* markedXData(resbuf* data) {
  resbuf* list = nullptr;
  resbuf** end = &list;
  for (resbuf *group = data, *rest = nullptr; group != nullptr; group = rest) {
    rest = cutGroup(group);
    resbuf* open = isMarkedGroup(*group) ? gcutNewRb(RTLB) : nullptr;
    resbuf* close = open != nullptr ? gcutNewRb(RTLE) : nullptr;
    if (close == nullptr) {
      gcutRelRb(open);
      gcutRelRb(group);
      continue;
    }
    group->restype = RTSTR;
    *end = open;
    open->rbnext = group;
    resbuf* last = group;
    while (last->rbnext != nullptr) {
      last = last->rbnext;
      retype(*last);
    }
    last->rbnext = close;
    end = &close->rbnext;
  }
  return list;
}
