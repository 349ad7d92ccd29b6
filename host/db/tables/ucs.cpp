#include "db/ucs.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbUCSTableRecord, "AcDbUCSTableRecord")

namespace {

constexpr GcDbField kOriginFields[] = {
    field<&GcDbUCSOrthoOrigin::view>(71, "view", Is::Plain),
    field<&GcDbUCSOrthoOrigin::origin>(13, "origin", Is::WcsPoint),
};

}  // namespace

const GcDbField GcDbUCSTableRecord::kFields[] = {
    marker("AcDbUCSTableRecord"),
    field<&GcDbUCSTableRecord::m_name>(2, "name", Is::Plain),
    field<&GcDbUCSTableRecord::m_flags>(70, "flags", Is::Plain),
    field<&GcDbUCSTableRecord::m_origin>(10, "origin", Is::WcsPoint),
    field<&GcDbUCSTableRecord::m_xAxis>(11, "xAxis", Is::Direction).orAxis(0),
    field<&GcDbUCSTableRecord::m_yAxis>(12, "yAxis", Is::Direction).orAxis(1),
    field<&GcDbUCSTableRecord::m_orthoView>(79, "orthoView", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbUCSTableRecord::m_elevation>(146, "elevation", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbUCSTableRecord::m_baseId>(346, "base", Is::HardPointer, Write::UnlessDefault).from(GcDb::kDHL_AC1015),
    each<&GcDbUCSTableRecord::m_orthoOrigins>(-1, "orthoOrigins", kOriginFields).from(GcDb::kDHL_AC1015),
};
GCDB_FIELD_COUNT(GcDbUCSTableRecord);

Gcad::ErrorStatus GcDbUCSTableRecord::setUcsBaseOrigin(const GcGePoint3d& origin, int view) {
  constexpr int kFirstView = 1;
  constexpr int kLastView = 6;
  if (view < kFirstView || view > kLastView) return Gcad::eInvalidInput;
  assertWriteEnabled();
  for (GcDbUCSOrthoOrigin& each : m_orthoOrigins) {
    if (each.view != view) continue;
    each.origin = origin;
    return Gcad::eOk;
  }
  m_orthoOrigins.append(GcDbUCSOrthoOrigin{static_cast<int16_t>(view), origin});
  return Gcad::eOk;
}

GcGePoint3d GcDbUCSTableRecord::ucsBaseOrigin(int view) const {
  for (const GcDbUCSOrthoOrigin& each : m_orthoOrigins)
    if (each.view == view) return each.origin;
  return m_origin;
}
