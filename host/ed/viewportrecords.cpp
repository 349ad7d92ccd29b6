#include "host/ed/viewportrecords.h"

#include "db/view.h"
#include "host/ed/coordinates.h"
#include "host/ed/records.h"

namespace ed {

namespace {

constexpr const GCHAR* kActive = GC_T("*Active");

Gcad::ErrorStatus makeActive(GcDbDatabase& database) {
  GcDbViewportTable* table = nullptr;
  Gcad::ErrorStatus status = database.getSymbolTable(table, GcDb::kForWrite);
  if (status != Gcad::eOk) return status;
  auto made = std::make_unique<GcDbViewportTableRecord>();
  status = made->setName(kActive);
  if (status == Gcad::eOk) status = table->add(made.get());
  if (status == Gcad::eOk) ignore(made.release()->close());
  ignore(table->close());
  return status;
}

}  // namespace

Gcad::ErrorStatus storeViewports(Editor& editor) {
  GcDbDatabase& database = editor.database();
  if (recordNamed(database.viewportTableId(), kActive).isNull()) {
    const Gcad::ErrorStatus status = makeActive(database);
    if (status != Gcad::eOk) return status;
  }
  GcDbViewportTableRecord* record = nullptr;
  const GcDbObjectId id = recordNamed(database.viewportTableId(), kActive);
  const Gcad::ErrorStatus status = gcdbOpenObject(record, id, GcDb::kForWrite);
  if (status != Gcad::eOk) return status;
  const EditorView& view = editor.view();
  record->setCenterPoint(view.center);
  record->setHeight(view.height);
  record->setWidth(view.width());
  record->setAspectRatio(view.aspect);
  record->setViewTwist(view.twistRad);
  record->setViewDirection(view.direction);
  record->setTarget(view.target);
  const GcGeMatrix3d ucs = ucsToWorld(editor);
  const GcGeVector3d origin = ucs.translation();
  ignore(record->setUcs({origin.x, origin.y, origin.z}, ucs.column(0), ucs.column(1)));
  return record->close();
}

Gcad::ErrorStatus loadViewports(Editor& editor) {
  const GcDbObjectId id = recordNamed(editor.database().viewportTableId(), kActive);
  if (id.isNull()) return Gcad::eKeyNotFound;
  GcDbViewportTableRecord* record = nullptr;
  const Gcad::ErrorStatus status = gcdbOpenObject(record, id, GcDb::kForRead);
  if (status != Gcad::eOk) return status;
  EditorView& view = editor.view();
  view.center = record->centerPoint();
  view.height = record->height();
  view.twistRad = record->viewTwist();
  view.direction = record->viewDirection();
  view.target = record->target();
  static_cast<void>(
      setUcs(editor, record->ucsOrigin(), record->ucsXAxis(), record->ucsYAxis(), nameOfRecord(record->ucsName())));
  return record->close();
}

}  // namespace ed
