#include "host/db/core/newdrawing.h"

#include "db/blockbegin.h"
#include "db/database.h"
#include "db/dictionary.h"
#include "host/db/core/header.h"
#include "host/db/core/loader.h"
#include "host/db/core/loadreport.h"
#include "host/db/core/store.h"
#include "host/db/objects/layouts.h"
#include "host/db/objects/mlinestyle.h"
#include "host/db/objects/standard.h"
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
  for (const GcDbObjectId id : records) GcDbLoader::completeBlock(id);
  gcdbNumberViewports(*this);
}

// ---- a new drawing ---------------------------------------------------------------------------------------

namespace {

GcDbObjectId addEntry(GcDbObjectId dictionaryId, const GCHAR* key, GcDbObject* object) {
  GcDbObjectId id;
  GcDbDictionary* dictionary = nullptr;
  if (gcdbOpenObject(dictionary, dictionaryId, GcDb::kForWrite) != Gcad::eOk) {
    delete object;
    return id;
  }
  if (dictionary->setAt(key, object, id) == Gcad::eOk) {
    object->addPersistentReactor(dictionaryId);
    ignore(object->close());
  } else {
    delete object;
  }
  ignore(dictionary->close());
  return id;
}

// The dictionaries that readers of drawings look for. Plot styles by name have one that every layer refers to.
void addDictionaries(GcDbDatabase& database) {
  const GcDbObjectId root = database.namedObjectsDictionaryId();
  for (const GCHAR* key :
       {GC_T("ACAD_COLOR"), GC_T("ACAD_GROUP"), GC_T("ACAD_LAYOUT"), GC_T("ACAD_MATERIAL"), GC_T("ACAD_MLEADERSTYLE")})
    addEntry(root, key, new GcDbDictionary);
  const GcDbObjectId mlineStyles = addEntry(root, GC_T("ACAD_MLINESTYLE"), new GcDbDictionary);
  auto* standard = new GcDbMlineStyle;
  standard->setStandard(database.byLayerLinetype());
  addEntry(mlineStyles, GC_T("Standard"), standard);
  addEntry(root, GC_T("ACAD_PLOTSETTINGS"), new GcDbDictionary);
  const GcDbObjectId plotStyles = addEntry(root, GC_T("ACAD_PLOTSTYLENAME"), new GcDbDictionaryWithDefault);
  const GcDbObjectId normal = addEntry(plotStyles, GC_T("Normal"), new GcDbPlaceHolder);
  GcDbDictionaryWithDefault* styles = nullptr;
  if (gcdbOpenObject(styles, plotStyles, GcDb::kForWrite) == Gcad::eOk) {
    ignore(styles->setDefaultId(normal));
    ignore(styles->close());
  }
  const GcDbObjectId scales = addEntry(root, GC_T("ACAD_SCALELIST"), new GcDbDictionary);
  gcdbAddStandardScales(scales);
  for (const GCHAR* key : {GC_T("ACAD_TABLESTYLE"), GC_T("ACAD_VISUALSTYLE")}) addEntry(root, key, new GcDbDictionary);
}

// What a tile shows of a new drawing: its limits.
void addActiveViewport(GcDbDatabase& database) {
  GcDbViewportTable* table = nullptr;
  if (database.getSymbolTable(table, GcDb::kForWrite) != Gcad::eOk) return;
  constexpr double kScreenAspect = 1920.0 / 1080.0;
  const GcGePoint3d limits = database.header().point(GC_T("$LIMMAX"));
  auto* active = new GcDbViewportTableRecord;
  ignore(active->setName(GC_T("*Active")));
  active->setCenterPoint({limits.x / 2, limits.y / 2});
  active->setHeight(limits.y);
  active->setAspectRatio(kScreenAspect);
  active->setWidth(limits.y * kScreenAspect);
  if (table->add(active) == Gcad::eOk)
    ignore(active->close());
  else
    delete active;
  ignore(table->close());
}

}  // namespace

void gcdbAddStandardScales(GcDbObjectId dictionary) {
  struct Offered {
    const GCHAR *key, *name;
    double paper, drawing;
  };
  constexpr Offered kOffered[] = {
      {GC_T("A0"), GC_T("1:1"), 1, 1},     {GC_T("A1"), GC_T("1:2"), 1, 2},   {GC_T("A2"), GC_T("1:5"), 1, 5},
      {GC_T("A3"), GC_T("1:10"), 1, 10},   {GC_T("A4"), GC_T("1:20"), 1, 20}, {GC_T("A5"), GC_T("1:50"), 1, 50},
      {GC_T("A6"), GC_T("1:100"), 1, 100}, {GC_T("A7"), GC_T("2:1"), 2, 1},   {GC_T("A8"), GC_T("10:1"), 10, 1},
  };
  for (const Offered& each : kOffered)
    addEntry(dictionary, each.key, new GcDbScale(each.name, each.paper, each.drawing, each.paper == each.drawing));
}

GcDbObjectId gcdbDefaultPlotStyle(const GcDbDatabase& database) {
  GcDbObjectId id;
  GcDbDictionary* root = nullptr;
  if (gcdbOpenObject(root, database.namedObjectsDictionaryId(), GcDb::kForRead) != Gcad::eOk) return id;
  ignore(root->getAt(GC_T("ACAD_PLOTSTYLENAME"), id));
  ignore(root->close());
  GcDbDictionaryWithDefault* styles = nullptr;
  if (gcdbOpenObject(styles, id, GcDb::kForRead) != Gcad::eOk) return {};
  id = styles->defaultId();
  ignore(styles->close());
  return id;
}

void gcdbBuildNewDrawing(GcDbDatabase& database) {
  database.header().setDefaults();
  database.completeAfterLoad();
  addDictionaries(database);
  GcDbLayerTableRecord* layerZero = nullptr;
  if (gcdbOpenObject(layerZero, database.layerZero(), GcDb::kForWrite) == Gcad::eOk) {
    layerZero->subJoined();  // once more: now there are plot styles
    ignore(layerZero->close());
  }
  addActiveViewport(database);
  const GcDbObjectId second = gcdbAddPaperBlock(database);
  gcdbAddLayout(database, GC_T("Layout1"), database.paperSpaceId());
  gcdbAddLayout(database, GC_T("Layout2"), second);
  gcdbAddLayout(database, kModelLayout, database.modelSpaceId());
}
