#include "host/db/objects/sectionsettings.h"

#include <iterator>

#include "host/db/describe/braces.h"
#include "host/db/describe/colorrows.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbSectionManager, "AcDbSectionManager")
GCDB_DEFINE_CLASS(GcDbSectionSettings, "AcDbSectionSettings")

namespace {

constexpr GCHAR kTypeBegin[] = GC_T("SectionTypeSettings");
constexpr GCHAR kTypeEnd[] = GC_T("SectionTypeSettingsEnd");
constexpr GCHAR kGeometryBegin[] = GC_T("SectionGeometrySettings");
constexpr GCHAR kGeometryEnd[] = GC_T("SectionGeometrySettingsEnd");

constexpr GcDbField kGeometryFields[] = {
    word<2, kGeometryBegin>("begin"),
    field<&GcDbSectionGeometry::count>(90, "count", Is::Plain),
    field<&GcDbSectionGeometry::kind>(91, "kind", Is::Plain),
    field<&GcDbSectionGeometry::flags>(92, "flags", Is::Plain),
    colorIndexRow<&GcDbSectionGeometry::color>(62, "color"),
    colorRgbRow<&GcDbSectionGeometry::color>(420, "colorRgb"),
    field<&GcDbSectionGeometry::layer>(8, "layer", Is::Plain),
    field<&GcDbSectionGeometry::linetype>(6, "linetype", Is::Plain),
    field<&GcDbSectionGeometry::linetypeScale>(40, "linetypeScale", Is::Plain),
    field<&GcDbSectionGeometry::plotStyle>(1, "plotStyle", Is::Plain),
    field<&GcDbSectionGeometry::lineWeight>(370, "lineWeight", Is::Plain),
    field<&GcDbSectionGeometry::faceTransparency>(70, "faceTransparency", Is::Plain),
    field<&GcDbSectionGeometry::edgeTransparency>(71, "edgeTransparency", Is::Plain),
    field<&GcDbSectionGeometry::hatchType>(72, "hatchType", Is::Plain),
    field<&GcDbSectionGeometry::hatchPattern>(2, "hatchPattern", Is::Plain),
    field<&GcDbSectionGeometry::hatchAngleRad>(41, "hatchAngleRad", Is::Plain),
    field<&GcDbSectionGeometry::hatchSpacing>(42, "hatchSpacing", Is::Plain),
    field<&GcDbSectionGeometry::hatchScale>(43, "hatchScale", Is::Plain),
    word<3, kGeometryEnd>("end"),
};

constexpr GcDbField kTypeFields[] = {
    word<1, kTypeBegin>("begin"),
    field<&GcDbSectionType::type>(90, "type", Is::Plain),
    field<&GcDbSectionType::generation>(91, "generation", Is::Plain),
    list<&GcDbSectionType::sources, 330, Is::SoftPointer>(92, "sources"),
    field<&GcDbSectionType::destinationBlock>(331, "destinationBlock", Is::SoftPointer),
    field<&GcDbSectionType::destinationFile>(1, "destinationFile", Is::Plain),
    each<&GcDbSectionType::geometry>(93, "geometry", kGeometryFields),
    word<3, kTypeEnd>("end"),
};

}  // namespace

const GcDbField GcDbSectionManager::kFields[] = {
    marker("AcDbSectionManager"),
    field<&GcDbSectionManager::m_isLive>(70, "isLive", Is::Plain),
    list<&GcDbSectionManager::m_sections, 330, Is::SoftPointer>(90, "sections"),
};
GCDB_FIELD_COUNT(GcDbSectionManager);

const GcDbField GcDbSectionSettings::kFields[] = {
    marker("AcDbSectionSettings"),
    field<&GcDbSectionSettings::m_currentType>(90, "currentType", Is::Plain),
    each<&GcDbSectionSettings::m_types>(91, "types", kTypeFields),
};
GCDB_FIELD_COUNT(GcDbSectionSettings);
