// A lightweight polyline that becomes one of the older kind, in its place.
#include "db/database.h"
#include "db/polyline.h"
#include "db/polyline2d.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"

Gcad::ErrorStatus GcDb2dPolyline::convertFrom(GcDbPolyline* lightweight) {
  if (lightweight == nullptr) return Gcad::eNullEntityPointer;
  if (!objectId().isNull()) return Gcad::eAlreadyInDb;
  GcDbStub* stub = lightweight->objectId().stub();
  if (stub == nullptr) return Gcad::eNotInDatabase;
  if (!stub->writing) return Gcad::eNotOpenForWrite;
  ignore(setPropertiesFrom(*lightweight, false));
  m_elevation = lightweight->elevation();
  m_thickness = lightweight->thickness();
  m_normal = lightweight->normal();
  constexpr int kClosed = 1;
  constexpr int kRunsOn = 128;
  m_flags = static_cast<int16_t>((lightweight->isClosed() ? kClosed : 0) | (lightweight->hasPlinegen() ? kRunsOn : 0));
  double width = 0;
  if (lightweight->getConstantWidth(width) == Gcad::eOk) m_startWidth = m_endWidth = width;

  GcDbDatabase& database = *lightweight->database();
  database.undo().recordReplaced(*lightweight);
  database.store().replace(stub, this);
  stub->recorded = stub->modified = true;
  for (const GcDbPolylineVertex& v : lightweight->vertices()) {
    auto* vertex = new GcDb2dVertex({v.point.x, v.point.y, m_elevation}, v.bulge, v.startWidth, v.endWidth);
    const Gcad::ErrorStatus status = appendVertex(vertex);
    if (status != Gcad::eOk) {
      delete vertex;
      return status;
    }
    ignore(vertex->close());
  }
  return Gcad::eOk;
}
