#include "host/db/entities/light.h"

#include <iterator>

#include "gi/drawable.h"
#include "host/db/describe/colorrows.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbLight, "AcDbLight")

const GcDbField GcDbLight::kFields[] = {
    marker("AcDbLight"),
    field<&GcDbLight::m_version>(90, "version", Is::Plain),
    field<&GcDbLight::m_name>(1, "name", Is::Plain),
    field<&GcDbLight::m_type>(70, "type", Is::Plain),
    field<&GcDbLight::m_isOn>(290, "isOn", Is::Plain),
    colorIndexRow<&GcDbLight::m_lightColor>(63, "lightColor"),
    colorRgbRow<&GcDbLight::m_lightColor>(421, "lightRgb"),
    field<&GcDbLight::m_isPlotted>(291, "isPlotted", Is::Plain),
    field<&GcDbLight::m_intensity>(40, "intensity", Is::Plain),
    field<&GcDbLight::m_position>(10, "position", Is::WcsPoint),
    field<&GcDbLight::m_target>(11, "target", Is::WcsPoint),
    field<&GcDbLight::m_attenuation>(72, "attenuation", Is::Plain),
    field<&GcDbLight::m_hasLimits>(292, "hasLimits", Is::Plain),
    field<&GcDbLight::m_startLimit>(41, "startLimit", Is::Plain),
    field<&GcDbLight::m_endLimit>(42, "endLimit", Is::Plain),
    field<&GcDbLight::m_hotspotRad>(50, "hotspot", Is::Plain),
    field<&GcDbLight::m_falloffRad>(51, "falloff", Is::Plain),
    field<&GcDbLight::m_castsShadows>(293, "castsShadows", Is::Plain),
    field<&GcDbLight::m_shadowType>(73, "shadowType", Is::Plain),
    field<&GcDbLight::m_shadowMapSize>(91, "shadowMapSize", Is::Plain),
    field<&GcDbLight::m_shadowSoftness>(280, "shadowSoftness", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbLight);

bool GcDbLight::subWorldDraw(GcGiWorldDraw* draw) {
  const GcGePoint3d ends[2] = {m_position, m_target};
  if (m_isPlotted) draw->geometry().polyline(2, ends);
  return true;
}
