#include "module/geometry/clone.h"

#include "module/app/openptr.h"
#include "module/entity/space.h"

GcDbObjectId modelSpaceBlockId() {
  GcDbObjectId id;
  const GcDbDatabase* database = workingDatabase();
  if (database == nullptr) return id;
  const GcDbReadPtr<GcDbBlockTable> blocks(database->blockTableId());
  if (!blocks || blocks->getIdAt(space::blockName(space::Space::Model), id) != Gcad::eOk) id.setNull();
  return id;
}

GcDbObjectId cloneIntoModelSpace(GcDbObjectId source) {
  constexpr int kGrowLength = 8;
  const GcDbObjectId modelSpaceId = modelSpaceBlockId();
  if (source.isNull() || modelSpaceId.isNull()) return {};
  GcDbObjectIdArray ids(0, kGrowLength);
  ids.append(source);
  GcDbIdMapping map;
  ignore(workingDatabase()->deepCloneObjects(ids, modelSpaceId, map, false));

  // The first pair, or the one behind it when the first was not copied.
  GcDbIdMappingIter at(map);
  at.start();
  GcDbIdPair pair;
  if (at.done() || !at.getMap(pair)) return {};
  if (!pair.isCloned()) {
    at.next();
    if (!at.getMap(pair)) return {};
  }
  return pair.value();
}
