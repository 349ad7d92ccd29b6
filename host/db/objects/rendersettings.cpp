#include "host/db/objects/rendersettings.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"

GCDB_DEFINE_CLASS(GcDbRenderSettings, "AcDbRenderSettings")

const GcDbField GcDbRenderSettings::kFields[] = {
    marker("AcDbRenderSettings"),
    rest<&GcDbRenderSettings::m_settings>("settings"),
};
GCDB_FIELD_COUNT(GcDbRenderSettings);

#define GC_RENDER_SETTINGS(Class, name) \
  GCDB_DEFINE_CLASS(Class, name)        \
  const GcDbField Class::kFields[] = {  \
      marker(name),                     \
      rest<&Class::m_own>("own"),       \
  };                                    \
  GCDB_FIELD_COUNT(Class)
GC_RENDER_SETTINGS(GcDbMentalRayRenderSettings, "AcDbMentalRayRenderSettings");
GC_RENDER_SETTINGS(GcDbRapidRTRenderSettings, "AcDbRapidRTRenderSettings");
#undef GC_RENDER_SETTINGS

#define GC_RENDER_OBJECT(Class, name)  \
  GCDB_DEFINE_CLASS(Class, name)       \
  const GcDbField Class::kFields[] = { \
      marker(name),                    \
      rest<&Class::m_data>("data"),    \
  };                                   \
  GCDB_FIELD_COUNT(Class)
GC_RENDER_OBJECT(GcDbRenderGlobal, "AcDbRenderGlobal");
GC_RENDER_OBJECT(GcDbRenderEnvironment, "AcDbRenderEnvironment");
#undef GC_RENDER_OBJECT
