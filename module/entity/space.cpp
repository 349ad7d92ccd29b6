#include "module/entity/space.h"

#include <string_view>

namespace {

using View = std::basic_string_view<GCHAR>;

constexpr const GCHAR* kModelSpace = GC_T("ModelSpace");
constexpr const GCHAR* kPaperSpace = GC_T("PaperSpace");
constexpr const GCHAR* kModelSpaceUpper = GC_T("MODELSPACE");
constexpr const GCHAR* kPaperSpaceUpper = GC_T("PAPERSPACE");
constexpr const GCHAR* kModelSpaceBlock = GC_T("*Model_Space");
constexpr const GCHAR* kPaperSpaceBlock = GC_T("*Paper_Space");

}  // namespace

space::Space space::exact(const GCHAR* name) {
  const View view(name);
  if (view == kModelSpace) return Space::Model;
  return view == kPaperSpace ? Space::Paper : Space::Neither;
}

space::Space space::normalised(const GCHAR* name) {
  GcString kept;
  for (; *name != 0; ++name)
    if (*name != GC_T('*') && *name != GC_T('_')) kept += *name;
  const GcString upper = kept.upper();
  if (upper == GcString(kModelSpaceUpper)) return Space::Model;
  return upper == GcString(kPaperSpaceUpper) ? Space::Paper : Space::Neither;
}

space::Space space::read(ArgReader& args) {
  const GCHAR* name = args.string();
  if (args.failed()) return Space::Neither;
  const Space found = exact(name);
  if (found == Space::Neither) args.wrongType();
  return found;
}

const GCHAR* space::blockName(Space space) {
  if (space == Space::Neither) return nullptr;
  return space == Space::Model ? kModelSpaceBlock : kPaperSpaceBlock;
}

Gcad::ErrorStatus appendTo(const GCHAR* blockName, GcDbEntity* entity) {
  const GcDbDatabase* database = workingDatabase();
  if (database == nullptr) return Gcad::eNoDatabase;
  GcDbReadPtr<GcDbBlockTable> blocks(database->blockTableId());
  if (!blocks) return blocks.status();
  GcDbObjectId id;
  Gcad::ErrorStatus status = blocks->getAt(blockName, id);
  GcDbBlockTableRecord* record = nullptr;
  if (status == Gcad::eOk) status = gcdbOpenObject(record, id, GcDb::kForWrite);
  if (status != Gcad::eOk) {
    (void)blocks.release();  // Deliberate: the table stays open when its block is not there or cannot be opened
    return status;
  }
  ignore(blocks.close());
  GcDbWritePtr<GcDbBlockTableRecord> block;
  block.attach(record);
  status = block->appendGcDbEntity(entity);
  if (status != Gcad::eOk) return status;
  ignore(block.close());
  return entity->close();
}

int appendAndAnswer(space::Space space, std::unique_ptr<GcDbEntity> entity) {
  const Gcad::ErrorStatus status = appendTo(space::blockName(space), entity.get());
  const GcDbObjectId id = entity->objectId();
  if (!id.isNull()) (void)entity.release();  // the database has it
  return status == Gcad::eOk ? ret::name(id) : ret::nilError();
}
