#include "host/ed/records.h"

namespace ed {

GcDbObjectId recordNamed(GcDbObjectId table, GcView name) {
  GcDbObjectId id;
  GcDbSymbolTable* open = nullptr;
  if (gcdbOpenObject(open, table, GcDb::kForRead) != Gcad::eOk) return id;
  ignore(open->getAt(GcText(name).c_str(), id));
  ignore(open->close());
  return id;
}

GcText nameOfRecord(GcDbObjectId record) {
  GcDbSymbolTableRecord* open = nullptr;
  if (gcdbOpenObject(open, record, GcDb::kForRead, true) != Gcad::eOk) return {};
  const GcText name(view(open->getName()));
  ignore(open->close());
  return name;
}

GcDbObjectId tableOfKind(GcDbDatabase& database, GcView kind) {
  struct Kind {
    const GCHAR* name;
    GcDbObjectId id;
  };
  const Kind kinds[] = {{GC_T("LAYER"), database.layerTableId()},       {GC_T("BLOCK"), database.blockTableId()},
                        {GC_T("LTYPE"), database.linetypeTableId()},    {GC_T("STYLE"), database.textStyleTableId()},
                        {GC_T("DIMSTYLE"), database.dimStyleTableId()}, {GC_T("APPID"), database.regAppTableId()},
                        {GC_T("VIEW"), database.viewTableId()},         {GC_T("UCS"), database.UCSTableId()},
                        {GC_T("VPORT"), database.viewportTableId()}};
  for (const Kind& each : kinds)
    if (equalNoCase(kind, each.name)) return each.id;
  return {};
}

GcDbObjectId needLayer(GcDbDatabase& database, GcView name) {
  GcDbObjectId id = recordNamed(database.layerTableId(), name);
  if (!id.isNull()) return id;
  GcDbLayerTable* layers = nullptr;
  if (database.getSymbolTable(layers, GcDb::kForWrite) != Gcad::eOk) return id;
  auto* layer = new GcDbLayerTableRecord;
  const bool made = layer->setName(GcText(name).c_str()) == Gcad::eOk &&
                    layer->setLinetypeObjectId(database.continuousLinetype()) == Gcad::eOk &&
                    layers->add(id, layer) == Gcad::eOk;
  if (made)
    ignore(layer->close());
  else
    delete layer;
  ignore(layers->close());
  return made ? id : GcDbObjectId();
}

}  // namespace ed
