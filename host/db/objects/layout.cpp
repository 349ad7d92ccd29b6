#include "db/layout.h"

#include <iterator>

#include "db/database.h"
#include "db/viewport.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"

#include "host/db/describe/fieldio.h"
#include "host/rx/view.h"

GCDB_DEFINE_CLASS(GcDbPlotSettings, "AcDbPlotSettings")
GCDB_DEFINE_CLASS(GcDbLayout, "AcDbLayout")

namespace {

constexpr int kR2007 = GcDb::kDHL_AC1021;
}  // namespace

const GcDbField GcDbPlotSettings::kFields[] = {
    marker("AcDbPlotSettings"),
    field<&GcDbPlotSettings::m_pageSetup>(1, "pageSetup", Is::Plain),
    field<&GcDbPlotSettings::m_device>(2, "device", Is::Plain),
    field<&GcDbPlotSettings::m_paperName>(4, "paper", Is::Plain),
    field<&GcDbPlotSettings::m_viewName>(6, "plotView", Is::Plain),
    field<&GcDbPlotSettings::m_leftMm>(40, "leftMargin", Is::Plain),
    field<&GcDbPlotSettings::m_bottomMm>(41, "bottomMargin", Is::Plain),
    field<&GcDbPlotSettings::m_rightMm>(42, "rightMargin", Is::Plain),
    field<&GcDbPlotSettings::m_topMm>(43, "topMargin", Is::Plain),
    field<&GcDbPlotSettings::m_paperWidthMm>(44, "paperWidth", Is::Plain),
    field<&GcDbPlotSettings::m_paperHeightMm>(45, "paperHeight", Is::Plain),
    field<&GcDbPlotSettings::m_originX>(46, "originX", Is::Plain),
    field<&GcDbPlotSettings::m_originY>(47, "originY", Is::Plain),
    field<&GcDbPlotSettings::m_windowLeft>(48, "windowLeft", Is::Plain),
    field<&GcDbPlotSettings::m_windowBottom>(49, "windowBottom", Is::Plain),
    field<&GcDbPlotSettings::m_windowRight>(140, "windowRight", Is::Plain),
    field<&GcDbPlotSettings::m_windowTop>(141, "windowTop", Is::Plain),
    field<&GcDbPlotSettings::m_paperUnit>(142, "scaleNumerator", Is::Plain),
    field<&GcDbPlotSettings::m_drawingUnits>(143, "scaleDenominator", Is::Plain),
    field<&GcDbPlotSettings::m_plotFlags>(70, "plotFlags", Is::Plain),
    field<&GcDbPlotSettings::m_paperUnits>(72, "paperUnits", Is::Plain),
    field<&GcDbPlotSettings::m_rotation>(73, "rotation", Is::Plain),
    field<&GcDbPlotSettings::m_plotType>(74, "plotType", Is::Plain),
    field<&GcDbPlotSettings::m_styleSheet>(7, "styleSheet", Is::Plain),
    field<&GcDbPlotSettings::m_scaleType>(75, "scaleType", Is::Plain),
    field<&GcDbPlotSettings::m_scaleFactor>(147, "scaleFactor", Is::Plain),
    field<&GcDbPlotSettings::m_shadePlot>(76, "shadePlot", Is::Plain),
    field<&GcDbPlotSettings::m_shadeResolution>(77, "shadeResolution", Is::Plain),
    field<&GcDbPlotSettings::m_shadeDpi>(78, "shadeDpi", Is::Plain),
    field<&GcDbPlotSettings::m_imageX>(148, "imageX", Is::Plain),
    field<&GcDbPlotSettings::m_imageY>(149, "imageY", Is::Plain),
    field<&GcDbPlotSettings::m_shadePlotId>(333, "shadePlotObject", Is::SoftPointer, Write::UnlessDefault).from(kR2007),
    field<&GcDbPlotSettings::m_viewId>(-1, "plotViewRecord", Is::SoftPointer),
};
GCDB_FIELD_COUNT(GcDbPlotSettings);

const GcDbField GcDbLayout::kFields[] = {
    marker("AcDbLayout"),
    field<&GcDbLayout::m_name>(1, "name", Is::Plain),
    field<&GcDbLayout::m_flags>(70, "flags", Is::Plain),
    field<&GcDbLayout::m_tabOrder>(71, "tabOrder", Is::Plain),
    field<&GcDbLayout::m_limitsMin>(10, "limitsMin", Is::Plain),
    field<&GcDbLayout::m_limitsMax>(11, "limitsMax", Is::Plain),
    field<&GcDbLayout::m_insertionBase>(12, "insertionBase", Is::Plain),
    field<&GcDbLayout::m_extentsMin>(14, "extentsMin", Is::Plain),
    field<&GcDbLayout::m_extentsMax>(15, "extentsMax", Is::Plain),
    field<&GcDbLayout::m_ucsElevation>(146, "ucsElevation", Is::Plain),
    field<&GcDbLayout::m_ucsOrigin>(13, "ucsOrigin", Is::Plain),
    field<&GcDbLayout::m_ucsXAxis>(16, "ucsXAxis", Is::Plain).orAxis(0),
    field<&GcDbLayout::m_ucsYAxis>(17, "ucsYAxis", Is::Plain).orAxis(1),
    field<&GcDbLayout::m_ucsOrthoView>(76, "ucsOrthoView", Is::Plain),
    field<&GcDbLayout::m_blockId>(330, "block", Is::SoftPointer),
    field<&GcDbLayout::m_lastViewportId>(331, "lastActiveViewport", Is::SoftPointer, Write::UnlessDefault),
    field<&GcDbLayout::m_ucsId>(345, "ucs", Is::HardPointer, Write::UnlessDefault),
    field<&GcDbLayout::m_ucsBaseId>(346, "ucsBase", Is::HardPointer, Write::UnlessDefault),
};
GCDB_FIELD_COUNT(GcDbLayout);

// ---- plot settings ---------------------------------------------------------------------------------------

void GcDbPlotSettings::getPlotPaperMargins(double& left, double& bottom, double& right, double& top) const {
  left = m_leftMm;
  bottom = m_bottomMm;
  right = m_rightMm;
  top = m_topMm;
}

void GcDbPlotSettings::getCustomPrintScale(double& paperUnits, double& drawingUnits) const {
  paperUnits = m_paperUnit;
  drawingUnits = m_drawingUnits;
}

Gcad::ErrorStatus GcDbPlotSettings::setPaper(const GCHAR* name, double widthMm, double heightMm, double marginMm) {
  if (!(widthMm > 2 * marginMm) || !(heightMm > 2 * marginMm) || !(marginMm >= 0)) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_paperName = name;
  m_paperWidthMm = widthMm;
  m_paperHeightMm = heightMm;
  m_leftMm = m_bottomMm = m_rightMm = m_topMm = marginMm;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbPlotSettings::setModelType(bool model) {
  assertWriteEnabled();
  m_plotFlags = static_cast<int16_t>(model ? m_plotFlags | kModelType : m_plotFlags & ~kModelType);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbPlotSettings::copyFrom(const GcDbPlotSettings& other) {
  assertWriteEnabled();
  other.assertReadEnabled();
  const GcString name = m_pageSetup;
  for (const GcDbField& row : kFields) {
    if (row.is == Is::Marker) continue;
    if (row.kind == Kind::Id)
      *static_cast<GcDbObjectId*>(row.at(this)) = *static_cast<const GcDbObjectId*>(row.value(&other));
    else
      gcdbSetValue(row, row.at(this), gcdbGetValue(row, row.value(&other), database()), database());
  }
  m_pageSetup = name;
  return Gcad::eOk;
}

void GcDbPlotSettings::subLoaded() {
  if (m_viewName.isEmpty() && m_viewId.isValid()) m_viewName = toGcString(gcdbNameOfRecord(m_viewId));
}

// ---- layouts ---------------------------------------------------------------------------------------------

Gcad::ErrorStatus GcDbLayout::getLayoutName(GcString& name) const {
  assertReadEnabled();
  name = m_name;
  return Gcad::eOk;
}

void GcDbLayout::getLimits(GcGePoint2d& min, GcGePoint2d& max) const {
  min = m_limitsMin;
  max = m_limitsMax;
}

Gcad::ErrorStatus GcDbLayout::setLimits(const GcGePoint2d& min, const GcGePoint2d& max) {
  assertWriteEnabled();
  m_limitsMin = min;
  m_limitsMax = max;
  return Gcad::eOk;
}

void GcDbLayout::getExtents(GcGePoint3d& min, GcGePoint3d& max) const {
  min = m_extentsMin;
  max = m_extentsMax;
}

GcDbObjectIdArray GcDbLayout::getViewportArray() const {
  GcDbObjectIdArray viewports;
  if (!m_blockId.isValid()) return viewports;
  const auto* block = GcDbBlockTableRecord::cast(m_blockId.stub()->object);
  if (block == nullptr || block->isModelSpace()) return viewports;
  for (const GcDbObjectId id : block->entities())
    if (id.isValid() && !id.isErased() && id.objectClass() == GcDbViewport::desc()) viewports.append(id);
  return viewports;
}
