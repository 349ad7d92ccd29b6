#include "host/db/core/newdrawing.h"

#include "db/blockbegin.h"
#include "db/database.h"
#include "db/dictionary.h"
#include "host/db/core/header.h"
#include "host/db/core/loader.h"
#include "host/db/core/loadreport.h"
#include "host/db/core/store.h"
#include "host/rx/view.h"

namespace {

constexpr const GCHAR* kTableClasses[GcDbDatabase::kTableCount] = {
    GC_T("AcDbBlockTable"),    GC_T("AcDbLayerTable"),  GC_T("AcDbTextStyleTable"),
    GC_T("AcDbLinetypeTable"), GC_T("AcDbViewTable"),   GC_T("AcDbUCSTable"),
    GC_T("AcDbViewportTable"), GC_T("AcDbRegAppTable"), GC_T("AcDbDimStyleTable"),
};

GcDbObjectId addTable(GcDbDatabase& database, int which) {
  auto* table = static_cast<GcDbSymbolTable*>(gcdbTableClass(which)->create());
  GcDbObjectId id;
  ignore(database.addGcDbObject(id, table));
  ignore(table->close());
  database.setTableId(which, id);
  return id;
}

// The record of the name, made when the table lacks it. False in `made` when it was there.
GcDbObjectId needRecord(GcDbObjectId tableId, const GCHAR* name, bool& made) {
  GcDbSymbolTable* table = nullptr;
  GcDbObjectId id;
  made = false;
  if (gcdbOpenObject(table, tableId, GcDb::kForWrite) != Gcad::eOk) return id;
  if (table->getAt(name, id) != Gcad::eOk) {
    auto* record = static_cast<GcDbSymbolTableRecord*>(table->recordClass()->create());
    made = record->setName(name) == Gcad::eOk && table->add(id, record) == Gcad::eOk;
    if (made)
      ignore(record->close());
    else
      delete record;
  }
  ignore(table->close());
  return id;
}

}  // namespace

GcRxClass* gcdbTableClass(int table) { return gcrxFindGcRxClass(kTableClasses[table]); }

void gcdbAddMissingTables(GcDbDatabase& database) {
  for (int which = 0; which < GcDbDatabase::kTableCount; ++which) gcdbAddMissingTable(database, which);
}

void gcdbAddMissingTable(GcDbDatabase& database, int table) {
  if (!database.tableId(table).isValid()) addTable(database, table);
}

void gcdbAddStandardRecords(GcDbDatabase& database, int table) {
  const GcDbObjectId id = database.tableId(table);
  bool made = false;
  switch (table) {
    case GcDbDatabase::kLinetypes:
      for (const GCHAR* name : {GC_T("ByBlock"), GC_T("ByLayer"), GC_T("Continuous")}) needRecord(id, name, made);
      break;
    case GcDbDatabase::kLayers: {
      const GcDbObjectId layerId = needRecord(id, GC_T("0"), made);
      GcDbLayerTableRecord* layer = nullptr;
      if (!made || gcdbOpenObject(layer, layerId, GcDb::kForWrite) != Gcad::eOk) break;
      ignore(layer->setLinetypeObjectId(needRecord(database.linetypeTableId(), GC_T("Continuous"), made)));
      ignore(layer->close());
      break;
    }
    case GcDbDatabase::kRegApps: needRecord(id, GC_T("ACAD"), made); break;
    case GcDbDatabase::kTextStyles:
    case GcDbDatabase::kDimStyles: needRecord(id, GC_T("Standard"), made); break;
    default: break;
  }
}

void GcDbDatabase::completeAfterLoad() {
  gcdbAddMissingTables(*this);
  if (!m_namedObjectsId.isValid()) {
    auto* root = new GcDbDictionary;
    ignore(addGcDbObject(m_namedObjectsId, root));
    ignore(root->close());
  }
  for (const int table : {kLinetypes, kLayers, kRegApps}) gcdbAddStandardRecords(*this, table);
  bool made = false;
  m_known.byBlock = needRecord(m_tables[kLinetypes], GC_T("ByBlock"), made);
  m_known.byLayer = needRecord(m_tables[kLinetypes], GC_T("ByLayer"), made);
  m_known.continuous = needRecord(m_tables[kLinetypes], GC_T("Continuous"), made);
  m_known.layerZero = needRecord(m_tables[kLayers], GC_T("0"), made);
  m_known.modelSpace = needRecord(m_tables[kBlocks], GC_T("*Model_Space"), made);
  m_known.paperSpace = needRecord(m_tables[kBlocks], GC_T("*Paper_Space"), made);
  const GcDbObjectId textStandard = needRecord(m_tables[kTextStyles], GC_T("Standard"), made);
  const GcDbObjectId dimStandard = needRecord(m_tables[kDimStyles], GC_T("Standard"), made);
  if (!m_current.layer.isValid()) m_current.layer = m_known.layerZero;
  if (!m_current.linetype.isValid()) m_current.linetype = m_known.byLayer;
  if (!m_current.textStyle.isValid()) m_current.textStyle = textStandard;
  if (!m_current.dimStyle.isValid()) m_current.dimStyle = dimStandard;

  GcDbSymbolTable* blocks = nullptr;
  if (gcdbOpenObject(blocks, m_tables[kBlocks], GcDb::kForRead) != Gcad::eOk) return;
  const GcDbObjectIdArray records = blocks->records();
  ignore(blocks->close());
  for (const GcDbObjectId id : records) GcDbLoader::completeBlock(*this, id);
}

void gcdbBuildNewDrawing(GcDbDatabase& database) { database.completeAfterLoad(); }
