// Arrowheads of leaders and dimensions, by the name of a block or by number.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"

namespace {

// By number, from 1 on.
constexpr const GCHAR* kArrowheads[] = {
    GC_T("_DOT"),         GC_T("_DOTSMALL"),   GC_T("_DOTBLANK"),  GC_T("_ORIGIN"),   GC_T("_ORIGIN2"),
    GC_T("_OPEN"),        GC_T("_OPEN90"),     GC_T("_OPEN30"),    GC_T("_CLOSED"),   GC_T("_SMALL"),
    GC_T("_NONE"),        GC_T("_OBLIQUE"),    GC_T("_BOXFILLED"), GC_T("_BOXBLANK"), GC_T("_CLOSEDBLANK"),
    GC_T("_DATUMFILLED"), GC_T("_DATUMBLANK"), GC_T("_INTEGRAL"),  GC_T("_ARCHTICK"),
};

// Deliberate: any other number is the empty name, the closed filled arrow.
const GCHAR* arrowheadName(int16_t type) {
  constexpr int kCount = sizeof kArrowheads / sizeof *kArrowheads;
  return type >= 1 && type <= kCount ? kArrowheads[type - 1] : GC_T("");
}

using SetOfDimension = Gcad::ErrorStatus (GcDbDimension::*)(const GCHAR*);

// Deliberate: an entity that has no arrowheads is left as it is, without a message.
int setArrowhead(GcDbObjectId id, const GCHAR* block, SetOfDimension setOfDimension) {
  const GcDbWritePtr<GcDbObject> object(id);
  if (GcDbLeader* leader = GcDbLeader::cast(object.get()))
    ignore(leader->setDimldrblk(block));
  else if (GcDbDimension* dimension = GcDbDimension::cast(object.get()))
    ignore((dimension->*setOfDimension)(block));
  return ret::nothing();
}

}  // namespace

// Deliberate: on a dimension the number sets the arrowhead of both ends, the block's name that of the first end; on a
// leader both set the same.
int putArrowheadType() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t type = args.integer();
  if (args.failed()) return args.status();
  return setArrowhead(id, arrowheadName(type), &GcDbDimension::setDimblk);
}

int putArrowheadBlock() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const GCHAR* block = args.string();
  if (args.failed()) return args.status();
  return setArrowhead(id, block, &GcDbDimension::setDimblk1);
}
