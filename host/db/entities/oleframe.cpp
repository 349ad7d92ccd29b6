#include "host/db/entities/oleframe.h"

#include <cmath>
#include <cstring>
#include <iterator>

#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbOleFrame, "AcDbOleFrame")
GCDB_DEFINE_CLASS(GcDbOle2Frame, "AcDbOle2Frame")

namespace {

constexpr int kSizeCode = 90, kEndCode = 1;

}  // namespace

struct GcDbOleFiling {
  // Of records alone: copies in memory have it, groups have not.
  static constexpr GcDbField inMemory(GcDbField row) {
    row.write = Write::Never;
    return row;
  }
  template <class Class>
  static GcDbGroup size(const void* record) {
    return GcDbGroup::ofInt(kSizeCode, static_cast<const Class*>(record)->m_bytes.length());
  }
  // Files say how many bytes follow, which is not needed.
  template <class Class>
  static constexpr GcDbField sizeRow() {
    GcDbField row = fixed<kSizeCode, 0>("size");
    row.get = size<Class>;
    return row;
  }
  static constexpr GcDbField endRow() {
    GcDbField row = fixed<kEndCode, 0>("end");
    row.get = [](const void*) { return GcDbGroup::ofText(kEndCode, GC_T("OLE")); };
    return row;
  }
};

const GcDbField GcDbOleFrame::kFields[] = {
    marker("AcDbOleFrame"),
    field<&GcDbOleFrame::m_version>(70, "version", Is::Plain),
    GcDbOleFiling::sizeRow<GcDbOleFrame>(),
    field<&GcDbOleFrame::m_bytes>(310, "bytes", Is::Plain),
    GcDbOleFiling::endRow(),
    GcDbOleFiling::inMemory(field<&GcDbOleFrame::m_mode>(72, "mode", Is::Plain)),
};
GCDB_FIELD_COUNT(GcDbOleFrame);

const GcDbField GcDbOle2Frame::kFields[] = {
    marker("AcDbOle2Frame"),
    field<&GcDbOle2Frame::m_version>(70, "version", Is::Plain),
    field<&GcDbOle2Frame::m_description>(3, "description", Is::Plain),
    field<&GcDbOle2Frame::m_upperLeft>(10, "upperLeft", Is::WcsPoint),
    field<&GcDbOle2Frame::m_lowerRight>(11, "lowerRight", Is::WcsPoint),
    field<&GcDbOle2Frame::m_type>(71, "type", Is::Plain),
    field<&GcDbOle2Frame::m_mode>(72, "mode", Is::Plain),
    field<&GcDbOle2Frame::m_lockAspect>(73, "lockAspect", Is::Plain).orElse(1),
    GcDbOleFiling::sizeRow<GcDbOle2Frame>(),
    field<&GcDbOle2Frame::m_bytes>(310, "bytes", Is::Plain),
    GcDbOleFiling::endRow(),
};
GCDB_FIELD_COUNT(GcDbOle2Frame);

Gcad::ErrorStatus GcDbOleFrame::subTransformBy(const GcGeMatrix3d&) { return Gcad::eNotApplicable; }

// Bytes begin with a mark and four points of three reals, from the upper left corner to the right.
namespace {

constexpr int kMark = 2, kPointSize = 3 * sizeof(double);

GcGePoint3d pointAt(const uint8_t* from) {
  double xyz[3];
  std::memcpy(xyz, from, kPointSize);
  return {xyz[0], xyz[1], xyz[2]};
}

void putPoint(const GcGePoint3d& point, uint8_t* to) {
  const double xyz[3] = {point.x, point.y, point.z};
  std::memcpy(to, xyz, kPointSize);
}

}  // namespace

bool GcDbOle2Frame::bytesHaveCorners() const {
  if (m_bytes.length() < kMark + kCorners * kPointSize || m_bytes[0] != 0x80 || m_bytes[1] != 0x55) return false;
  for (int i = 0; i < kCorners; ++i) {
    const GcGePoint3d point = pointAt(m_bytes.begin() + kMark + i * kPointSize);
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) return false;
  }
  return true;
}

// Those of the bytes, unless the object has been given others.
void GcDbOle2Frame::corners(GcGePoint3d (&points)[kCorners]) const {
  const bool inBytes = bytesHaveCorners();
  if (inBytes)
    for (int i = 0; i < kCorners; ++i) points[i] = pointAt(m_bytes.begin() + kMark + i * kPointSize);
  if (inBytes && points[0] == m_upperLeft && points[2] == m_lowerRight) return;
  points[0] = m_upperLeft;
  points[1] = {m_lowerRight.x, m_upperLeft.y, m_upperLeft.z};
  points[2] = m_lowerRight;
  points[3] = {m_upperLeft.x, m_lowerRight.y, m_lowerRight.z};
}

void GcDbOle2Frame::putCorners(GcArray<uint8_t>& bytes, const GcGePoint3d (&points)[kCorners]) const {
  for (int i = 0; i < kCorners; ++i) putPoint(points[i], bytes.begin() + kMark + i * kPointSize);
}

GcArray<uint8_t> GcDbOle2Frame::bytesInRecords() const {
  GcArray<uint8_t> bytes = m_bytes;
  if (!bytesHaveCorners()) return bytes;
  GcGePoint3d points[kCorners];
  corners(points);
  putCorners(bytes, points);
  return bytes;
}

void GcDbOle2Frame::setBytes(const GcArray<uint8_t>& bytes) {
  assertWriteEnabled();
  m_bytes = bytes;
  if (!bytesHaveCorners()) return;
  m_upperLeft = pointAt(m_bytes.begin() + kMark);
  m_lowerRight = pointAt(m_bytes.begin() + kMark + 2 * kPointSize);
}

Gcad::ErrorStatus GcDbOle2Frame::subTransformBy(const GcGeMatrix3d& transform) {
  const GcGeVector3d x = transform * GcGeVector3d::kXAxis, y = transform * GcGeVector3d::kYAxis;
  const bool keepsAxes = x.y == 0 && x.z == 0 && y.x == 0 && y.z == 0;
  const bool inBytes = bytesHaveCorners();
  if (!inBytes && !keepsAxes) return Gcad::eNotApplicable;
  GcGePoint3d points[kCorners];
  corners(points);
  for (GcGePoint3d& point : points) point = transform * point;
  m_upperLeft = points[0];
  m_lowerRight = points[2];
  if (inBytes) putCorners(m_bytes, points);
  return Gcad::eOk;
}

bool GcDbOle2Frame::subWorldDraw(GcGiWorldDraw* draw) {
  GcGePoint3d points[kCorners];
  corners(points);
  draw->geometry().polyline(kCorners, points, true);
  return true;
}
