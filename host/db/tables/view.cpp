#include "db/view.h"

#include <iterator>

#include "db/ucs.h"

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbViewTableRecord, "AcDbViewTableRecord")
GCDB_DEFINE_CLASS(GcDbViewportTableRecord, "AcDbViewportTableRecord")

const GcDbField GcDbViewTableRecord::kFields[] = {
    marker("AcDbViewTableRecord"),
    field<&GcDbViewTableRecord::m_name>(2, "name", Is::Plain),
    field<&GcDbViewTableRecord::m_flags>(70, "flags", Is::Plain),
    field<&GcDbViewTableRecord::m_height>(40, "height", Is::Plain),
    field<&GcDbViewTableRecord::m_center>(10, "center", Is::Plain),
    field<&GcDbViewTableRecord::m_width>(41, "width", Is::Plain),
    field<&GcDbViewTableRecord::m_direction>(11, "direction", Is::WcsVector).orAxis(2),
    field<&GcDbViewTableRecord::m_target>(12, "target", Is::WcsPoint),
    field<&GcDbViewTableRecord::m_lensLength>(42, "lensLength", Is::Plain),
    field<&GcDbViewTableRecord::m_frontClip>(43, "frontClip", Is::Plain),
    field<&GcDbViewTableRecord::m_backClip>(44, "backClip", Is::Plain),
    field<&GcDbViewTableRecord::m_twistRad>(50, "twist", Is::Plain),
    field<&GcDbViewTableRecord::m_viewMode>(71, "viewMode", Is::Plain),
    field<&GcDbViewTableRecord::m_renderMode>(281, "renderMode", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbViewTableRecord::m_hasUcs>(72, "hasUcs", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbViewTableRecord::m_ucsOrigin>(110, "ucsOrigin", Is::WcsPoint)
        .when<&GcDbViewTableRecord::isUcsAssociated>()
        .from(GcDb::kDHL_AC1015),
    field<&GcDbViewTableRecord::m_ucsXAxis>(111, "ucsXAxis", Is::Direction)
        .orAxis(0)
        .when<&GcDbViewTableRecord::isUcsAssociated>()
        .from(GcDb::kDHL_AC1015),
    field<&GcDbViewTableRecord::m_ucsYAxis>(112, "ucsYAxis", Is::Direction)
        .orAxis(1)
        .when<&GcDbViewTableRecord::isUcsAssociated>()
        .from(GcDb::kDHL_AC1015),
    field<&GcDbViewTableRecord::m_ucsOrthoView>(79, "ucsOrthoView", Is::Plain)
        .when<&GcDbViewTableRecord::isUcsAssociated>()
        .from(GcDb::kDHL_AC1015),
    field<&GcDbViewTableRecord::m_ucsElevation>(146, "ucsElevation", Is::Plain)
        .when<&GcDbViewTableRecord::isUcsAssociated>()
        .from(GcDb::kDHL_AC1015),
    field<&GcDbViewTableRecord::m_ucsId>(345, "ucs", Is::HardPointer, Write::UnlessDefault).from(GcDb::kDHL_AC1015),
    field<&GcDbViewTableRecord::m_ucsBaseId>(346, "ucsBase", Is::HardPointer, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1015),
    field<&GcDbViewTableRecord::m_plottable>(73, "plottable", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbViewTableRecord::m_backgroundId>(332, "background", Is::SoftPointer, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1021),
    field<&GcDbViewTableRecord::m_liveSectionId>(334, "liveSection", Is::SoftPointer, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1021),
    field<&GcDbViewTableRecord::m_visualStyleId>(348, "visualStyle", Is::HardPointer, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1021),
    field<&GcDbViewTableRecord::m_sunId>(361, "sun", Is::HardOwner, Write::UnlessDefault).from(GcDb::kDHL_AC1021),
};
GCDB_FIELD_COUNT(GcDbViewTableRecord);

const GcDbField GcDbViewportTableRecord::kFields[] = {
    marker("AcDbViewportTableRecord"),
    field<&GcDbViewportTableRecord::m_name>(2, "name", Is::Plain),
    field<&GcDbViewportTableRecord::m_flags>(70, "flags", Is::Plain),
    field<&GcDbViewportTableRecord::m_lowerLeft>(10, "lowerLeft", Is::Plain),
    field<&GcDbViewportTableRecord::m_upperRight>(11, "upperRight", Is::Plain).orElse(1),
    field<&GcDbViewportTableRecord::m_center>(12, "center", Is::Plain),
    field<&GcDbViewportTableRecord::m_snapBase>(13, "snapBase", Is::Plain),
    field<&GcDbViewportTableRecord::m_snapSpacing>(14, "snapSpacing", Is::Plain),
    field<&GcDbViewportTableRecord::m_gridSpacing>(15, "gridSpacing", Is::Plain),
    field<&GcDbViewportTableRecord::m_direction>(16, "direction", Is::WcsVector).orAxis(2),
    field<&GcDbViewportTableRecord::m_target>(17, "target", Is::WcsPoint),
    field<&GcDbViewportTableRecord::m_height>(40, "height", Is::Plain),
    field<&GcDbViewportTableRecord::m_aspect>(41, "aspect", Is::Plain),
    field<&GcDbViewportTableRecord::m_lensLength>(42, "lensLength", Is::Plain),
    field<&GcDbViewportTableRecord::m_frontClip>(43, "frontClip", Is::Plain),
    field<&GcDbViewportTableRecord::m_backClip>(44, "backClip", Is::Plain),
    field<&GcDbViewportTableRecord::m_snapAngleRad>(50, "snapAngle", Is::Plain),
    field<&GcDbViewportTableRecord::m_twistRad>(51, "twist", Is::Plain),
    field<&GcDbViewportTableRecord::m_viewMode>(71, "viewMode", Is::Plain),
    field<&GcDbViewportTableRecord::m_circleSides>(72, "circleSides", Is::Plain),
    field<&GcDbViewportTableRecord::m_fastZoom>(73, "fastZoom", Is::Plain),
    field<&GcDbViewportTableRecord::m_ucsIcon>(74, "ucsIcon", Is::Plain),
    field<&GcDbViewportTableRecord::m_snapOn>(75, "snapOn", Is::Plain),
    field<&GcDbViewportTableRecord::m_gridOn>(76, "gridOn", Is::Plain),
    field<&GcDbViewportTableRecord::m_snapStyle>(77, "snapStyle", Is::Plain),
    field<&GcDbViewportTableRecord::m_snapIsoPair>(78, "snapIsoPair", Is::Plain),
    field<&GcDbViewportTableRecord::m_renderMode>(281, "renderMode", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbViewportTableRecord::m_hasUcs>(65, "hasUcs", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbViewportTableRecord::m_ucsOrigin>(110, "ucsOrigin", Is::WcsPoint).from(GcDb::kDHL_AC1015),
    field<&GcDbViewportTableRecord::m_ucsXAxis>(111, "ucsXAxis", Is::Direction).orAxis(0).from(GcDb::kDHL_AC1015),
    field<&GcDbViewportTableRecord::m_ucsYAxis>(112, "ucsYAxis", Is::Direction).orAxis(1).from(GcDb::kDHL_AC1015),
    field<&GcDbViewportTableRecord::m_ucsOrthoView>(79, "ucsOrthoView", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbViewportTableRecord::m_ucsElevation>(146, "ucsElevation", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbViewportTableRecord::m_ucsId>(345, "ucs", Is::HardPointer, Write::UnlessDefault).from(GcDb::kDHL_AC1015),
    field<&GcDbViewportTableRecord::m_ucsBaseId>(346, "ucsBase", Is::HardPointer, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1015),
    field<&GcDbViewportTableRecord::m_backgroundId>(332, "background", Is::SoftPointer, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1021),
    field<&GcDbViewportTableRecord::m_visualStyleId>(348, "visualStyle", Is::HardPointer, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1021),
    field<&GcDbViewportTableRecord::m_gridFlags>(60, "gridFlags", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbViewportTableRecord::m_gridMajor>(61, "gridMajor", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbViewportTableRecord::m_defaultLighting>(292, "defaultLighting", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbViewportTableRecord::m_lightingType>(282, "lightingType", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbViewportTableRecord::m_brightness>(141, "brightness", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbViewportTableRecord::m_contrast>(142, "contrast", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbViewportTableRecord::m_ambientColor>(63, "ambientColor", Is::Color).from(GcDb::kDHL_AC1021),
    field<&GcDbViewportTableRecord::m_ambientColor>(421, "ambientTrueColor", Is::TrueColor, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1021)
        .echo(),
    field<&GcDbViewportTableRecord::m_sunId>(361, "sun", Is::HardOwner, Write::UnlessDefault).from(GcDb::kDHL_AC1021),
};
GCDB_FIELD_COUNT(GcDbViewportTableRecord);

Gcad::ErrorStatus GcDbAbstractViewTableRecord::setUcs(const GcGePoint3d& origin, const GcGeVector3d& xAxis,
                                                      const GcGeVector3d& yAxis) {
  if (xAxis.isZeroLength() || yAxis.isZeroLength()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_ucsOrigin = origin;
  m_ucsXAxis = xAxis.normal();
  m_ucsYAxis = yAxis.normal();
  m_ucsId.setNull();
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbAbstractViewTableRecord::setUcs(GcDbObjectId namedUcs) {
  GcDbUCSTableRecord* ucs = nullptr;
  Gcad::ErrorStatus status = gcdbOpenObject(ucs, namedUcs, GcDb::kForRead);
  if (status != Gcad::eOk) return status;
  status = setUcs(ucs->origin(), ucs->xAxis(), ucs->yAxis());
  if (status == Gcad::eOk) m_ucsId = namedUcs;
  ignore(ucs->close());
  return status;
}
