#include "host/db/objects/sun.h"

#include <iterator>

#include "host/db/describe/colorrows.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbSun, "AcDbSun")

const GcDbField GcDbSun::kFields[] = {
    marker("AcDbSun"),
    field<&GcDbSun::m_version>(90, "version", Is::Plain),
    field<&GcDbSun::m_isOn>(290, "isOn", Is::Plain),
    colorIndexRow<&GcDbSun::m_color>(63, "color"),
    colorRgbRow<&GcDbSun::m_color>(421, "trueColor"),
    field<&GcDbSun::m_intensity>(40, "intensity", Is::Plain),
    field<&GcDbSun::m_hasShadow>(291, "hasShadow", Is::Plain),
    field<&GcDbSun::m_julianDay>(91, "julianDay", Is::Plain),
    field<&GcDbSun::m_milliseconds>(92, "milliseconds", Is::Plain),
    field<&GcDbSun::m_isDaylightSaving>(292, "isDaylightSaving", Is::Plain),
    field<&GcDbSun::m_shadowType>(70, "shadowType", Is::Plain),
    field<&GcDbSun::m_shadowMapSize>(71, "shadowMapSize", Is::Plain),
    field<&GcDbSun::m_shadowSoftness>(280, "shadowSoftness", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbSun);
