// Block definitions of other drawing files: their names, and bringing one of them here.
#include <memory>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/rbchain.h"
#include "module/app/results.h"
#include "module/geometry/sidedatabase.h"

namespace {

using Gcad::ErrorStatus;

// The step that failed, with the host's status. The text has places for the status (%u) and a line end (%s).
int complain(const GCHAR* text, ErrorStatus status) {
  gcutPrintf(text, static_cast<unsigned>(status), GC_T("\n"));
  return RTERROR;
}

bool areStrings(const resbuf* chain, int count) {
  for (; chain != nullptr && count > 0; chain = chain->rbnext, --count)
    if (chain->restype != RTSTR) return false;
  return chain == nullptr && count == 0;
}

constexpr const GCHAR* kListUsage = GC_T("\nBłąd!!Wywołania!!\n-->>(kel_dbx_get_list_block_dwg \"scieżka\"\n");
constexpr const GCHAR* kCopyUsage = GC_T("\nBłąd!!Wywołania!!\n-->>(kel_dbx_copy_blok \"scieżka\" \"nazwa_bloku\"\n");

int refuse(const GCHAR* usage) {
  gcutPrintf(GC_T("%s"), usage);
  return ret::nilError();
}

}  // namespace

// Anonymous blocks and external references are listed, the blocks of layouts are not.
int dbxGetListBlockDwg() {
  const resbuf* args = gcedGetArgs();
  if (!areStrings(args, 1)) return refuse(kListUsage);
  SideDatabase drawing;
  ErrorStatus status = drawing.read(node::text(*args));
  if (status != Gcad::eOk) return complain(GC_T("\nBłąd kel_dbx_get_list_block_dwg: readDwgFile nr: %u %s"), status);
  const GcDbReadPtr<GcDbBlockTable> blocks(drawing->blockTableId());
  if (!blocks) return complain(GC_T("\nBłąd kel_dbx_get_list_block_dwg: getSymbolTable nr: %u %s"), blocks.status());
  GcDbSymbolTableIterator* made = nullptr;
  status = blocks->newIterator(made);
  if (status != Gcad::eOk) return complain(GC_T("\nBłąd kel_dbx_get_list_block_dwg: newIterator nr: %u %s"), status);
  RbChain names;
  for (const std::unique_ptr<GcDbSymbolTableIterator> at(made); !at->done(); at->step()) {
    GcDbObjectId id;
    status = at->getRecordId(id);
    if (status != Gcad::eOk) return complain(GC_T("\nBłąd kel_dbx_get_list_block_dwg: getRecord nr: %u %s"), status);
    const GcDbReadPtr<GcDbBlockTableRecord> block(id);
    if (block && !block->isLayout()) names.appendString(block->getName().c_str());
  }
  return ret::list(names);
}

// A block of the same name here is replaced.
int dbxCopyBlok() {
  const resbuf* args = gcedGetArgs();
  if (!areStrings(args, 2)) return refuse(kCopyUsage);
  SideDatabase drawing;
  ErrorStatus status = drawing.read(node::text(*args));
  if (status != Gcad::eOk) return complain(GC_T("\nBłąd!! kel_dbx_copy_blok: readDwgFile nr: %u %s"), status);
  GcDbObjectId id;
  {
    const GcDbReadPtr<GcDbBlockTable> blocks(drawing->blockTableId());
    if (!blocks) return complain(GC_T("\nBłąd!! kel_dbx_copy_blok: getSymbolTable nr: %u %s"), blocks.status());
    status = blocks->getAt(node::text(*args->rbnext), id);
  }
  if (status != Gcad::eOk) return complain(GC_T("\nBłąd!! kel_dbx_copy_blok: getAt nr: %u %s"), status);
  GcDbObjectIdArray ids;
  ids.append(id);
  GcDbIdMapping map;
  const GcDbDatabase* here = workingDatabase();
  status = here != nullptr ? drawing->wblockCloneObjects(ids, here->blockTableId(), map, GcDb::kDrcReplace, false)
                           : Gcad::eNoDatabase;
  if (status != Gcad::eOk) return complain(GC_T("\nBłąd!! kel_dbx_copy_blok: wblockCloneObjects nr: %u %s"), status);
  return ret::nothing();
}
