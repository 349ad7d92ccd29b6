#include "db/viewport.h"

#include <cmath>
#include <iterator>

#include "db/database.h"
#include "host/db/core/store.h"
#include "host/db/core/viewspace.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbViewport, "AcDbViewport")

namespace {
constexpr int kR2000 = GcDb::kDHL_AC1015;
constexpr int kR2004 = GcDb::kDHL_AC1018;
constexpr int kR2007 = GcDb::kDHL_AC1021;
}  // namespace

const GcDbField GcDbViewport::kFields[] = {
    marker("AcDbViewport"),
    field<&GcDbViewport::m_center>(10, "center", Is::WcsPoint),
    field<&GcDbViewport::m_width>(40, "width", Is::Length),
    field<&GcDbViewport::m_height>(41, "height", Is::Length),
    field<&GcDbViewport::m_status>(68, "status", Is::Plain),
    field<&GcDbViewport::m_number>(69, "number", Is::Plain),
    field<&GcDbViewport::m_viewCenter>(12, "viewCenter", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_snapBase>(13, "snapBase", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_snapSpacing>(14, "snapSpacing", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_gridSpacing>(15, "gridSpacing", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_direction>(16, "direction", Is::Plain).orAxis(2).from(kR2000),
    field<&GcDbViewport::m_target>(17, "target", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_lensLength>(42, "lensLength", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_frontClip>(43, "frontClip", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_backClip>(44, "backClip", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_viewHeight>(45, "viewHeight", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_snapAngleRad>(50, "snapAngle", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_twistRad>(51, "twist", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_circleSides>(72, "circleSides", Is::Plain).from(kR2000),
    list<&GcDbViewport::m_frozenLayers, 331, Is::SoftPointer>(-1, "frozenLayers").from(kR2000),
    field<&GcDbViewport::m_flags>(90, "flags", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_clipId>(340, "clipEntity", Is::HardPointer, Write::UnlessDefault).from(kR2000),
    field<&GcDbViewport::m_styleSheet>(1, "styleSheet", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_renderMode>(281, "renderMode", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_hasUcs>(71, "hasUcs", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_ucsAtOrigin>(74, "ucsIconAtOrigin", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_ucsOrigin>(110, "ucsOrigin", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_ucsXAxis>(111, "ucsXAxis", Is::Plain).orAxis(0).from(kR2000),
    field<&GcDbViewport::m_ucsYAxis>(112, "ucsYAxis", Is::Plain).orAxis(1).from(kR2000),
    field<&GcDbViewport::m_ucsId>(345, "ucs", Is::HardPointer, Write::UnlessDefault).from(kR2000),
    field<&GcDbViewport::m_ucsBaseId>(346, "ucsBase", Is::HardPointer, Write::UnlessDefault).from(kR2000),
    field<&GcDbViewport::m_ucsOrthoView>(79, "ucsOrthoView", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_ucsElevation>(146, "ucsElevation", Is::Plain).from(kR2000),
    field<&GcDbViewport::m_shadePlot>(170, "shadePlot", Is::Plain).from(kR2004),
    field<&GcDbViewport::m_gridMajor>(61, "gridMajor", Is::Plain).from(kR2007),
    field<&GcDbViewport::m_backgroundId>(332, "background", Is::SoftPointer, Write::UnlessDefault).from(kR2007),
    field<&GcDbViewport::m_shadePlotId>(333, "shadePlotObject", Is::SoftPointer, Write::UnlessDefault).from(kR2007),
    field<&GcDbViewport::m_visualStyleId>(348, "visualStyle", Is::HardPointer, Write::UnlessDefault).from(kR2007),
    field<&GcDbViewport::m_defaultLighting>(292, "defaultLighting", Is::Plain).from(kR2007),
    field<&GcDbViewport::m_lightingType>(282, "lightingType", Is::Plain).from(kR2007),
    field<&GcDbViewport::m_brightness>(141, "brightness", Is::Plain).from(kR2007),
    field<&GcDbViewport::m_contrast>(142, "contrast", Is::Plain).from(kR2007),
    field<&GcDbViewport::m_ambientColor>(63, "ambientColor", Is::Color).from(kR2007),
    field<&GcDbViewport::m_ambientColor>(421, "ambientTrueColor", Is::TrueColor, Write::UnlessDefault)
        .from(kR2007)
        .echo(),
    field<&GcDbViewport::m_sunId>(361, "sun", Is::HardOwner, Write::UnlessDefault).from(kR2007),
};
GCDB_FIELD_COUNT(GcDbViewport);

Gcad::ErrorStatus GcDbViewport::setWidth(double width) {
  return width > 0 && std::isfinite(width) ? assign(m_width, width) : Gcad::eInvalidInput;
}

// The scale stays: the height of the view follows.
Gcad::ErrorStatus GcDbViewport::setHeight(double height) {
  if (!(height > 0) || !std::isfinite(height)) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_viewHeight *= height / m_height;
  m_height = height;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbViewport::setViewHeight(double height) {
  return height > 0 && std::isfinite(height) ? assign(m_viewHeight, height) : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbViewport::setViewDirection(const GcGeVector3d& direction) {
  return direction.isZeroLength() ? Gcad::eInvalidInput : assign(m_direction, direction);
}

Gcad::ErrorStatus GcDbViewport::setOn() {
  assertWriteEnabled();
  m_flags &= ~kOff;
  if (m_status == 0) m_status = m_number > 0 ? m_number : int16_t{1};
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbViewport::setOff() {
  assertWriteEnabled();
  m_flags |= kOff;
  m_status = 0;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbViewport::setNonRectClipEntityId(GcDbObjectId id) {
  assertWriteEnabled();
  m_clipId = id;
  return setFlag(kClipped, !id.isNull());
}

Gcad::ErrorStatus GcDbViewport::freezeLayersInViewport(const GcDbObjectIdArray& layers) {
  assertWriteEnabled();
  for (const GcDbObjectId layer : layers)
    if (!m_frozenLayers.contains(layer)) m_frozenLayers.append(layer);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbViewport::thawLayersInViewport(const GcDbObjectIdArray& layers) {
  assertWriteEnabled();
  for (const GcDbObjectId layer : layers)
    if (const int at = m_frozenLayers.find(layer); at >= 0) m_frozenLayers.removeAt(at);
  return Gcad::eOk;
}

// ---- scales ----------------------------------------------------------------------------------------------

namespace {

// By number, from k1_1 on.
constexpr double kScales[] = {
    1.0,       1.0 / 2,  1.0 / 4,  1.0 / 5,  1.0 / 8,  1.0 / 10, 1.0 / 16,   1.0 / 20,  1.0 / 30,  1.0 / 40,  1.0 / 50,
    1.0 / 100, 2.0,      4.0,      8.0,      10.0,     100.0,    1.0 / 1536, 1.0 / 768, 1.0 / 384, 1.0 / 192, 1.0 / 128,
    1.0 / 96,  1.0 / 64, 1.0 / 48, 1.0 / 32, 1.0 / 24, 1.0 / 16, 1.0 / 12,   1.0 / 4,   1.0 / 2,   1.0,
};
static_assert(std::size(kScales) == GcDbViewport::k1ft_1ft - GcDbViewport::k1_1 + 1);

}  // namespace

Gcad::ErrorStatus GcDbViewport::setCustomScale(double scale) {
  if (!(scale > 0) || !std::isfinite(scale)) return Gcad::eInvalidInput;
  return assign(m_viewHeight, m_height / scale);
}

GcDbViewport::StandardScaleType GcDbViewport::standardScale() const {
  constexpr double kSame = 1e-9;
  const double scale = customScale();
  for (size_t i = 0; i < std::size(kScales); ++i)
    if (std::fabs(scale - kScales[i]) <= kSame * kScales[i])
      return static_cast<StandardScaleType>(k1_1 + static_cast<int>(i));
  return kCustomScale;
}

Gcad::ErrorStatus GcDbViewport::setStandardScale(int number) {
  if (number < kScaleToFit || number > k1ft_1ft) return Gcad::eInvalidInput;
  return setStandardScale(static_cast<StandardScaleType>(number));
}

Gcad::ErrorStatus GcDbViewport::setStandardScale(StandardScaleType scale) {
  if (scale == kCustomScale) return Gcad::eOk;
  if (scale != kScaleToFit) return setCustomScale(kScales[scale - k1_1]);
  const GcDbExtents model = database() == nullptr ? GcDbExtents() : gcdbExtentsOf(database()->modelSpaceId());
  if (model.isEmpty()) return Gcad::eOk;
  const GcGeMatrix3d toDisplay = gcdbDisplayToWorld(m_target, m_direction, m_twistRad).inverse();
  GcDbExtents seen;
  for (int corner = 0; corner < 8; ++corner)
    seen.addPoint(toDisplay * GcGePoint3d((corner & 1) != 0 ? model.max.x : model.min.x,
                                          (corner & 2) != 0 ? model.max.y : model.min.y,
                                          (corner & 4) != 0 ? model.max.z : model.min.z));
  const double needed = std::fmax(seen.max.y - seen.min.y, (seen.max.x - seen.min.x) * m_height / m_width);
  assertWriteEnabled();
  m_viewCenter = {(seen.min.x + seen.max.x) / 2, (seen.min.y + seen.max.y) / 2};
  if (needed > 0) m_viewHeight = needed;
  return Gcad::eOk;
}

// ---- as an entity ----------------------------------------------------------------------------------------

// Its frame; a sheet has none, and an outline that clips is an entity of its own.
bool GcDbViewport::subWorldDraw(GcGiWorldDraw* draw) {
  if (isSheet() || isNonRectClipOn()) return true;
  const double x = m_width / 2, y = m_height / 2;
  const GcGePoint3d corners[4] = {{m_center.x - x, m_center.y - y, m_center.z},
                                  {m_center.x + x, m_center.y - y, m_center.z},
                                  {m_center.x + x, m_center.y + y, m_center.z},
                                  {m_center.x - x, m_center.y + y, m_center.z}};
  draw->geometry().polyline(4, corners, true);
  return true;
}

// A new viewport gets the number behind the greatest of its layout; 1 is kept for the sheet.
void GcDbViewport::subAppended() {
  if (m_number != 0) return;
  int16_t greatest = 1;
  const auto* block = GcDbBlockTableRecord::cast(ownerId().isNull() ? nullptr : ownerId().stub()->object);
  if (block == nullptr) return;
  for (const GcDbObjectId id : block->entities()) {
    if (!id.isValid() || id.isErased() || id.objectClass() != desc()) continue;
    const int16_t number = static_cast<const GcDbViewport*>(id.stub()->object)->m_number;
    if (number > greatest) greatest = number;
  }
  m_number = static_cast<int16_t>(greatest + 1);
}

void GcDbViewport::completeNumber(int16_t number) {
  m_number = number;
  m_status = (m_flags & kOff) != 0 ? int16_t{0} : number;
}
