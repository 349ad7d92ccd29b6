// Questions to one entity that need no knowledge of its kind.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"
#include "module/entity/markedxdata.h"

int erasedP() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  return ret::truth(id.isErased());
}

int updateEntity() {
  ArgReader args(rules::kEntityFirst);
  const resbuf* entity = args.entityNode();
  if (args.failed()) return args.status();
  gcdbEntUpd(entity->resval.rlname);
  gcedUpdateDisplay();
  return ret::t();
}

int xdataList() {
  ArgReader args(rules::kEntityReported);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbObject> object(id, Erased::Allowed);
  if (!object) return args.wrongType();
  RbChain list(markedXData(object->xData()));
  if (list.isEmpty()) return ret::nil();
  list.enclose();  // one application alone is a list of one sublist too
  return ret::list(list);
}
