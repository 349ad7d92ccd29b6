#include "db/textstyle.h"

#include <iterator>

#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbTextStyleTableRecord, "AcDbTextStyleTableRecord")

const GcDbField GcDbTextStyleTableRecord::kFields[] = {
    marker("AcDbTextStyleTableRecord"),
    field<&GcDbTextStyleTableRecord::m_name>(2, "name", Is::Plain),
    field<&GcDbTextStyleTableRecord::m_flags>(70, "flags", Is::Plain),
    field<&GcDbTextStyleTableRecord::m_height>(40, "textSize", Is::Plain),
    field<&GcDbTextStyleTableRecord::m_widthFactor>(41, "widthFactor", Is::Plain).orElse(1),
    field<&GcDbTextStyleTableRecord::m_obliqueRad>(50, "oblique", Is::Plain),
    field<&GcDbTextStyleTableRecord::m_generation>(71, "generation", Is::Plain),
    field<&GcDbTextStyleTableRecord::m_priorSize>(42, "priorSize", Is::Plain),
    field<&GcDbTextStyleTableRecord::m_font>(3, "font", Is::Plain),
    field<&GcDbTextStyleTableRecord::m_bigFont>(4, "bigFont", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbTextStyleTableRecord);

void GcDbTextStyleTableRecord::look(GcGiTextStyle& style) const {
  style.fontFile = m_font;
  style.height = m_height > 0 ? m_height : m_priorSize;
  style.widthFactor = m_widthFactor;
  style.obliqueRad = m_obliqueRad;
  style.backward = (m_generation & 2) != 0;
  style.upsideDown = (m_generation & 4) != 0;
  style.vertical = isVertical();
}
