#include "host/ed/takeplace.h"

#include "db/database.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"

namespace ed {

bool takePlace(GcDbObjectId id, GcDbEntity* made) {
  GcDbEntity* original = nullptr;
  if (gcdbOpenObject(original, id, GcDb::kForWrite) != Gcad::eOk) return false;
  GcDbObjectIdArray parts;
  original->subEntities(parts);
  if (!parts.isEmpty() || !made->objectId().isNull()) {
    ignore(original->close());
    return false;
  }
  ignore(made->setPropertiesFrom(*original, false));
  GcDbDatabase& database = *id.database();
  GcDbStub* stub = id.stub();
  database.undo().recordReplaced(*original);
  database.store().replace(stub, made);
  stub->recorded = stub->modified = true;
  ignore(made->close());
  delete original;
  return true;
}

}  // namespace ed
