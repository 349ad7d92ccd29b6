#include "host/db/entities/section.h"

#include <iterator>

#include "gi/drawable.h"
#include "host/db/describe/colorrows.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbSection, "AcDbSection")

const GcDbField GcDbSection::kFields[] = {
    marker("AcDbSection"),
    field<&GcDbSection::m_state>(90, "state", Is::Plain),
    field<&GcDbSection::m_flags>(91, "flags", Is::Plain),
    field<&GcDbSection::m_name>(1, "name", Is::Plain),
    field<&GcDbSection::m_vertical>(10, "vertical", Is::Direction),
    field<&GcDbSection::m_topHeight>(40, "topHeight", Is::Length),
    field<&GcDbSection::m_bottomHeight>(41, "bottomHeight", Is::Length),
    field<&GcDbSection::m_transparency>(70, "indicatorTransparency", Is::Plain),
    colorIndexRow<&GcDbSection::m_indicatorColor>(62, "indicatorColor"),
    colorRgbRow<&GcDbSection::m_indicatorColor>(420, "indicatorColorRgb"),
    list<&GcDbSection::m_vertices, 11, Is::WcsPoint>(92, "vertices"),
    list<&GcDbSection::m_backVertices, 12, Is::WcsPoint>(93, "backVertices"),
    field<&GcDbSection::m_settings>(360, "settings", Is::HardOwner),
};
GCDB_FIELD_COUNT(GcDbSection);

bool GcDbSection::subWorldDraw(GcGiWorldDraw* draw) {
  if (m_vertices.length() > 1) draw->geometry().polyline(m_vertices.length(), m_vertices.begin());
  return true;
}
