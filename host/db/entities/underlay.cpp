#include "host/db/entities/underlay.h"

#include <iterator>

#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbUnderlayReference, "AcDbUnderlayReference")
GCDB_DEFINE_CLASS(GcDbPdfReference, "AcDbPdfReference")
GCDB_DEFINE_CLASS(GcDbDwfReference, "AcDbDwfReference")
GCDB_DEFINE_CLASS(GcDbDgnReference, "AcDbDgnReference")

const GcDbField GcDbUnderlayReference::kFields[] = {
    marker("AcDbUnderlayReference"),
    field<&GcDbUnderlayReference::m_definitionId>(340, "definition", Is::HardPointer),
    field<&GcDbUnderlayReference::m_position>(10, "position", Is::OcsPoint),
    field<&GcDbUnderlayReference::m_scaleX>(41, "scaleX", Is::Length),
    field<&GcDbUnderlayReference::m_scaleY>(42, "scaleY", Is::Length),
    field<&GcDbUnderlayReference::m_scaleZ>(43, "scaleZ", Is::Length),
    field<&GcDbUnderlayReference::m_rotationRad>(50, "rotation", Is::Angle),
    field<&GcDbUnderlayReference::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
    field<&GcDbUnderlayReference::m_flags>(280, "flags", Is::Plain),
    field<&GcDbUnderlayReference::m_contrast>(281, "contrast", Is::Plain),
    field<&GcDbUnderlayReference::m_fade>(282, "fade", Is::Plain),
    list<&GcDbUnderlayReference::m_clip, 11>(-1, "clip"),
    list<&GcDbUnderlayReference::m_innerClip, 12>(170, "innerClip")
        .when<&GcDbUnderlayReference::hasInnerClip>()
        .readAnyway(),
};
GCDB_FIELD_COUNT(GcDbUnderlayReference);

bool GcDbUnderlayReference::subWorldDraw(GcGiWorldDraw* draw) {
  if ((m_flags & kOn) == 0 || m_clip.length() < 2) return true;
  GcGeMatrix3d plane, turn;
  plane.setToPlaneToWorld(m_normal);
  turn.setToRotation(m_rotationRad, GcGeVector3d::kZAxis);
  const auto at = [&](double x, double y) {
    return plane * (m_position + turn * GcGeVector3d(x * m_scaleX, y * m_scaleY, 0));
  };
  GcArray<GcGePoint3d> outline;
  if (m_clip.length() == 2) {
    const GcGePoint2d &a = m_clip[0], &b = m_clip[1];
    outline.append(at(a.x, a.y));
    outline.append(at(b.x, a.y));
    outline.append(at(b.x, b.y));
    outline.append(at(a.x, b.y));
  } else {
    for (const GcGePoint2d& p : m_clip) outline.append(at(p.x, p.y));
  }
  draw->geometry().polyline(outline.length(), outline.begin(), true);
  return true;
}
