// Inserting a block, which may come from a drawing file.
#include <memory>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"
#include "module/entity/space.h"
#include "module/geometry/filename.h"
#include "module/geometry/sidedatabase.h"

namespace {

// The block of the name, brought in first when the name is the path of a drawing file: a file that can be read
// becomes the block of its own name, or redefines it. Null when there is no such block.
GcDbObjectId findOrDefine(const GCHAR* nameOrPath) {
  GcDbDatabase* database = workingDatabase();
  if (database == nullptr) return {};
  GcString name(nameOrPath);
  SideDatabase drawing;
  ignore(drawing.read(nameOrPath));
  if (drawing.isRead()) {
    name = blockNameOfFile(nameOrPath);
    ignore(database->insert(name.c_str(), drawing.get(), true));
  }
  const GcDbReadPtr<GcDbBlockTable> blocks(database->blockTableId());
  GcDbObjectId id;
  if (!blocks || blocks->getAt(name.c_str(), id) != Gcad::eOk) id.setNull();
  return id;
}

// The Z axis of the current user coordinate system in world coordinates.
GcGeVector3d userZAxis() {
  constexpr int16_t kWorld = 0;
  constexpr int16_t kUser = 1;
  resbuf from{};
  from.restype = RTSHORT;
  from.resval.rint = kUser;
  resbuf to{};
  to.restype = RTSHORT;
  to.resval.rint = kWorld;
  const gds_point z = {0, 0, 1};
  gds_point world = {0, 0, 1};
  gcedTrans(z, &from, &to, 1, world);
  return {world[0], world[1], world[2]};
}

// An attribute for every definition that is not constant.
void addAttributes(GcDbBlockReference& reference, GcDbObjectId blockId) {
  const GcDbReadPtr<GcDbBlockTableRecord> block(blockId);
  GcDbBlockTableRecordIterator* made = nullptr;
  if (!block || block->newIterator(made) != Gcad::eOk) return;
  for (const std::unique_ptr<GcDbBlockTableRecordIterator> at(made); !at->done(); at->step()) {
    GcDbObjectId id;
    if (at->getEntityId(id) != Gcad::eOk) continue;
    const GcDbReadPtr<GcDbAttributeDefinition> definition(id);
    if (!definition || definition->isConstant()) continue;
    auto attribute = std::make_unique<GcDbAttribute>();
    ignore(attribute->setAttributeFromBlock(definition.get(), reference.blockTransform()));
    if (reference.appendAttribute(attribute.get()) == Gcad::eOk) ignore(attribute.release()->close());
  }
}

GcDbObjectId ownerId(const GCHAR* spaceName) {
  const bool model = space::normalised(spaceName) == space::Space::Model;
  const GcDbReadPtr<GcDbBlockTable> blocks(workingDatabase()->blockTableId());
  GcDbObjectId id;
  const GCHAR* name = space::blockName(model ? space::Space::Model : space::Space::Paper);
  if (!blocks || blocks->getAt(name, id) != Gcad::eOk) id.setNull();
  return id;
}

}  // namespace

// Any spelling of model space goes there; every other name means paper space.
int insertBlock() {
  ArgReader args(rules::kTextFirst);
  const GCHAR* spaceName = args.string();
  const GcGePoint3d position = args.point();
  const GCHAR* nameOrPath = args.string();
  const double xScale = args.number();
  const double yScale = args.number();
  const double zScale = args.number();
  const double rotationRad = args.number();
  if (args.failed()) return args.status();

  const GcDbObjectId blockId = findOrDefine(nameOrPath);
  if (blockId.isNull()) return ret::nil();
  auto made = std::make_unique<GcDbBlockReference>();
  ignore(made->setBlockTableRecord(blockId));
  ignore(made->setPosition(position));
  ignore(made->setRotation(rotationRad));
  ignore(made->setNormal(userZAxis()));
  ignore(made->setScaleFactors(GcGeScale3d(xScale, yScale, zScale)));

  const GcDbWritePtr<GcDbBlockTableRecord> owner(ownerId(spaceName));
  if (!owner || owner->appendGcDbEntity(made.get()) != Gcad::eOk) return ret::nil();
  GcDbWritePtr<GcDbBlockReference> reference;
  reference.attach(made.release());
  addAttributes(*reference, blockId);
  return ret::name(reference->objectId());
}
