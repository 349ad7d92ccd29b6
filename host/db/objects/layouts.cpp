#include "host/db/objects/layouts.h"

#include <algorithm>
#include <string>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/viewport.h"
#include "host/db/core/loader.h"
#include "host/db/core/store.h"
#include "host/rx/view.h"

namespace {

// The paper of new sheets: A3 landscape, lengths in millimetres.
constexpr const GCHAR* kPaper = GC_T("ISO_A3_(420.00_x_297.00_MM)");
constexpr double kWidthMm = 420;
constexpr double kHeightMm = 297;
constexpr double kMarginMm = 5;
constexpr double kAroundSheet = 1.1;  // what the screen shows of a sheet: all of it and a little more
constexpr double kScreenAspect = 1920.0 / 1080.0;

// The tab behind the last one; model space has the first, 0.
int nextTab(const GcDbDatabase& database) {
  int last = 0;
  GcDbDictionary* layouts = nullptr;
  if (gcdbOpenObject(layouts, database.layoutDictionaryId(), GcDb::kForRead) != Gcad::eOk) return 1;
  for (const GcDbDictionaryEntry& entry : layouts->entries()) {
    const bool lives = entry.id.isValid() && !entry.id.isErased();
    const auto* layout = lives ? GcDbLayout::cast(entry.id.stub()->object) : nullptr;
    if (layout != nullptr) last = std::max(last, layout->getTabOrder());
  }
  ignore(layouts->close());
  return last + 1;
}

void setUpSheet(GcDbLayout& layout) {
  ignore(layout.setPaper(kPaper, kWidthMm, kHeightMm, kMarginMm));
  ignore(layout.setLimits({-kMarginMm, -kMarginMm}, {kWidthMm - kMarginMm, kHeightMm - kMarginMm}));
}

}  // namespace

GcDbObjectId gcdbAddLayout(GcDbDatabase& database, const GCHAR* name, GcDbObjectId block) {
  GcDbObjectId id;
  const bool isModel = block == database.modelSpaceId();
  const int tab = isModel ? 0 : nextTab(database);
  GcDbDictionary* layouts = nullptr;
  if (gcdbOpenObject(layouts, database.layoutDictionaryId(), GcDb::kForWrite) != Gcad::eOk) return id;
  auto* layout = new GcDbLayout;
  ignore(layout->setLayoutName(name));
  ignore(layout->setBlockTableRecordId(block));
  ignore(layout->setModelType(isModel));
  ignore(layout->setTabOrder(tab));
  if (!isModel) setUpSheet(*layout);
  const Gcad::ErrorStatus status = layouts->setAt(name, layout, id);
  layout->addPersistentReactor(layouts->objectId());
  ignore(layouts->close());
  if (status != Gcad::eOk) {
    delete layout;
    return {};
  }
  ignore(layout->close());
  GcDbBlockTableRecord* record = nullptr;
  if (gcdbOpenObject(record, block, GcDb::kForWrite) == Gcad::eOk) {
    ignore(record->setLayoutId(id));
    ignore(record->close());
  }
  return id;
}

GcDbObjectId gcdbAddPaperBlock(GcDbDatabase& database) {
  GcDbObjectId id;
  GcDbBlockTable* blocks = nullptr;
  if (database.getBlockTable(blocks, GcDb::kForWrite) != Gcad::eOk) return id;
  GcText name;
  for (int number = 0; name.empty() || blocks->has(name.c_str()); ++number) {
    name = kPaperSpaceBlock;
    for (const char digit : std::to_string(number)) name += static_cast<GCHAR>(digit);
  }
  auto* block = new GcDbBlockTableRecord;
  ignore(block->setName(name.c_str()));
  if (blocks->add(id, block) == Gcad::eOk)
    ignore(block->close());
  else
    delete block;
  ignore(blocks->close());
  GcDbLoader::completeBlock(id);
  return id;
}

void gcdbAddSheetViewport(GcDbDatabase&, const GcDbLayout& layout) {
  GcDbBlockTableRecord* block = nullptr;
  if (!layout.getViewportArray().isEmpty()) return;
  if (gcdbOpenObject(block, layout.getBlockTableRecordId(), GcDb::kForWrite) != Gcad::eOk) return;
  GcGePoint2d min, max;
  layout.getLimits(min, max);
  const double height = (max.y - min.y) * kAroundSheet;
  const GcGePoint2d middle((min.x + max.x) / 2, (min.y + max.y) / 2);
  auto* sheet = new GcDbViewport;
  sheet->makeSheet();
  ignore(sheet->setCenterPoint({middle.x, middle.y, 0}));
  ignore(sheet->setWidth(height * kScreenAspect));
  ignore(sheet->setHeight(height));
  ignore(sheet->setViewCenter(middle));
  ignore(sheet->setViewHeight(height));
  if (block->appendGcDbEntity(sheet) == Gcad::eOk) {
    ignore(sheet->setLayer(block->database()->layerZero()));
    ignore(sheet->close());
  } else {
    delete sheet;
  }
  ignore(block->close());
}

void gcdbShowPaperBlock(GcDbDatabase& database, GcDbObjectId block) {
  const GcDbObjectId former = database.paperSpaceId();
  if (block == former || !block.isValid()) return;
  if (former.isValid() && former.stub()->object != nullptr) GcDbLoader::swapNames(database, former, block);
  database.setPaperSpaceId(block);
}

void gcdbNumberViewports(const GcDbBlockTableRecord& block, bool zerosToo) {
  int16_t next = 1;
  for (const GcDbObjectId id : block.entities()) {
    if (!id.isValid() || id.isErased() || id.objectClass() != GcDbViewport::desc()) continue;
    auto& viewport = static_cast<GcDbViewport&>(*id.stub()->object);
    if (viewport.number() < (zerosToo ? 1 : 0)) viewport.completeNumber(next);
    next = static_cast<int16_t>(std::max(next, viewport.number()) + 1);
  }
}

void gcdbNumberViewports(GcDbDatabase& database) {
  if (!database.blockTableId().isValid()) return;
  const auto* blocks = GcDbBlockTable::cast(database.blockTableId().stub()->object);
  if (blocks == nullptr) return;
  for (const GcDbObjectId id : blocks->records()) {
    const auto* block = id.isValid() ? GcDbBlockTableRecord::cast(id.stub()->object) : nullptr;
    if (block != nullptr && block->isPaperSpace()) gcdbNumberViewports(*block, false);
  }
}
