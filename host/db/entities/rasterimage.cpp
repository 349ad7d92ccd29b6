#include "host/db/entities/rasterimage.h"

#include <iterator>

#include "db/database.h"
#include "db/dictionary.h"
#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"
#include "host/db/objects/imagedef.h"

GCDB_DEFINE_CLASS(GcDbRasterImage, "AcDbRasterImage")
GCDB_DEFINE_CLASS(GcDbWipeout, "AcDbWipeout")

#define IMAGE_ROWS(Class)                                                                                              \
  field<&Class::m_version>(90, "version", Is::Plain), field<&Class::m_corner>(10, "corner", Is::WcsPoint),             \
      field<&Class::m_u>(11, "u", Is::WcsVector), field<&Class::m_v>(12, "v", Is::WcsVector),                          \
      field<&Class::m_size>(13, "size", Is::Plain), field<&Class::m_imageDefId>(340, "image", Is::HardPointer),        \
      field<&Class::m_display>(70, "display", Is::Plain), field<&Class::m_isClipped>(280, "isClipped", Is::Plain),     \
      field<&Class::m_brightness>(281, "brightness", Is::Plain),                                                       \
      field<&Class::m_contrast>(282, "contrast", Is::Plain), field<&Class::m_fade>(283, "fade", Is::Plain),            \
      field<&Class::m_reactorId>(360, "reactor", Is::HardOwner), field<&Class::m_clipType>(71, "clipType", Is::Plain), \
      list<&Class::m_clip, 14>(91, "clip"),                                                                            \
      field<&Class::m_isInverted>(290, "isInverted", Is::Plain).from(GcDb::kDHL_AC1024)

const GcDbField GcDbRasterImage::kFields[] = {marker("AcDbRasterImage"), IMAGE_ROWS(GcDbRasterImage)};
GCDB_FIELD_COUNT(GcDbRasterImage);

const GcDbField GcDbWipeout::kFields[] = {marker("AcDbWipeout"), IMAGE_ROWS(GcDbWipeout)};
GCDB_FIELD_COUNT(GcDbWipeout);

#undef IMAGE_ROWS

GcGeVector3d GcDbRasterImage::normal() const {
  const GcGeVector3d normal = m_u.crossProduct(m_v);
  return normal.isZeroLength() ? GcGeVector3d::kZAxis : normal.normal();
}

GcArray<GcGePoint3d> GcDbRasterImage::boundary() const {
  // From the lower left corner: pixels are counted from the middle of the upper left one.
  const auto at = [&](double x, double y) { return m_corner + m_u * (x + 0.5) + m_v * (m_size.y - y - 0.5); };
  GcArray<GcGePoint3d> points;
  const bool isClipped = m_isClipped && !m_isInverted && m_clip.length() > 1;
  if (isClipped && m_clip.length() > 2) {
    const bool repeatsFirst = m_clip[0] == m_clip.last();
    for (int i = 0; i < m_clip.length() - (repeatsFirst ? 1 : 0); ++i) points.append(at(m_clip[i].x, m_clip[i].y));
    return points;
  }
  const GcGePoint2d a = isClipped ? m_clip[0] : GcGePoint2d(-0.5, -0.5);
  const GcGePoint2d b = isClipped ? m_clip[1] : GcGePoint2d(m_size.x - 0.5, m_size.y - 0.5);
  points.append(at(a.x, a.y));
  points.append(at(b.x, a.y));
  points.append(at(b.x, b.y));
  points.append(at(a.x, b.y));
  return points;
}

bool GcDbRasterImage::hasFrame(const GCHAR* dictionaryKey) const {
  if (database() == nullptr) return true;
  GcDbDictionary* root = nullptr;
  GcDbObjectId id;
  if (gcdbOpenObject(root, database()->namedObjectsDictionaryId(), GcDb::kForRead) != Gcad::eOk) return true;
  const bool isThere = root->getAt(dictionaryKey, id) == Gcad::eOk;
  ignore(root->close());
  GcDbObject* variables = nullptr;
  if (!isThere || gcdbOpenGcDbObject(variables, id, GcDb::kForRead) != Gcad::eOk) return true;
  bool has = true;
  if (const auto* raster = GcDbRasterVariables::cast(variables)) has = raster->frame() != 0;
  if (const auto* wipeout = GcDbWipeoutVariables::cast(variables)) has = wipeout->frame() != 0;
  ignore(variables->close());
  return has;
}

bool GcDbRasterImage::subWorldDraw(GcGiWorldDraw* draw) {
  if ((m_display & kShow) != 0 && !hasFrame(GC_T("ACAD_IMAGE_VARS"))) return true;
  const GcArray<GcGePoint3d> points = boundary();
  draw->geometry().polyline(points.length(), points.begin(), true);
  return true;
}

bool GcDbWipeout::subWorldDraw(GcGiWorldDraw* draw) {
  const GcArray<GcGePoint3d> points = boundary();
  draw->subEntityTraits().setColor(GcCmEntityColor::fromRgb(255, 255, 255));
  draw->subEntityTraits().setFill(true);
  draw->geometry().polygon(points.length(), points.begin());
  draw->subEntityTraits().setFill(false);
  if (!hasFrame(GC_T("ACAD_WIPEOUT_VARS"))) return true;
  draw->subEntityTraits().setColor(color());
  draw->geometry().polyline(points.length(), points.begin(), true);
  return true;
}
