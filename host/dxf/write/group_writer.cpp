#include "host/dxf/write/group_writer.h"

#include "host/dxf/angles.h"

namespace gc::dxf {

void GroupWriter::putText(int code, GcView text) {
  m_encoded.clear();
  m_text.encode(text, m_encoded);
  m_tags.writeString(code, m_encoded);
}

void GroupWriter::putHandle(int code, GcDbObjectId id) {
  m_tags.writeHandle(code, id.isErased() ? 0 : static_cast<std::uint64_t>(id.handle()));
}

void GroupWriter::put(const GcDbGroup& group) {
  const int code = group.code;
  if (code < 0) return;  // fields that files do not have
  switch (group.kind) {
    case GcDbGroupKind::Text: putText(code, group.text); break;
    case GcDbGroupKind::Real: m_tags.writeReal(code, isAngleCode(code) ? degreesOf(group.real) : group.real); break;
    case GcDbGroupKind::Point2d: m_tags.writePoint(code, group.point.x, group.point.y); break;
    case GcDbGroupKind::Point3d: m_tags.writePoint(code, group.point.x, group.point.y, group.point.z); break;
    case GcDbGroupKind::Id: putHandle(code, group.id); break;
    case GcDbGroupKind::Handle: m_tags.writeHandle(code, static_cast<std::uint64_t>(group.integer)); break;
    case GcDbGroupKind::Binary: {
      const std::string_view bytes(reinterpret_cast<const char*>(group.bytes.data()), group.bytes.size());
      if (bytes.size() <= kMaxBinaryChunk) {
        m_tags.writeChunk(code, bytes);
      } else {
        m_tags.writeBinary(code, bytes);
      }
      break;
    }
    default: m_tags.writeInt(code, group.integer);
  }
}

void GroupWriter::put(const GcDbGroupList& groups) {
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) put(group);
}

}  // namespace gc::dxf
