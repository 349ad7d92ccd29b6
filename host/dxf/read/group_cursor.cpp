#include "host/dxf/read/group_cursor.h"

#include "host/db/core/store.h"
#include "host/dxf/angles.h"

namespace gc::dxf {
namespace {

constexpr int kToNextCoordinate = 10;

}  // namespace

void GroupCursor::damaged(const Tag& tag, const char* what, GcDbLoadAction action) const {
  m_context.report(action, tag.offset, m_handle,
                   "group " + std::to_string(tag.code) + ": " + m_context.shown(tag.raw) + what);
}

double GroupCursor::realOf(const Tag& tag) const {
  double value = 0.0;
  if (!tag.real(value)) damaged(tag, " is no number: 0 taken");
  return value;
}

std::int64_t GroupCursor::integerOf(const Tag& tag) const {
  std::int64_t value = 0;
  double real = 0.0;
  if (tag.integer(value)) return value;
  if (tag.real(real) && real > -1e15 && real < 1e15) {
    damaged(tag, " is no integer: rounded");
    return static_cast<std::int64_t>(real < 0.0 ? real - 0.5 : real + 0.5);
  }
  damaged(tag, " is no number: 0 taken");
  return value;
}

// The groups of the other coordinates follow at once; without them the group is a plain real.
void GroupCursor::readPoint(const Tag& tag, GcDbGroup& group) {
  group.real = group.point.x = realOf(tag);
  const auto follows = [&](int code) { return m_at < m_tags.size() && m_tags[m_at].code == code; };
  if (!follows(tag.code + kToNextCoordinate)) {
    group.kind = GcDbGroupKind::Real;
    return;
  }
  group.point.y = realOf(m_tags[m_at++]);
  if (!follows(tag.code + 2 * kToNextCoordinate)) {
    group.kind = GcDbGroupKind::Point2d;
    return;
  }
  group.point.z = realOf(m_tags[m_at++]);
}

void GroupCursor::readText(const Tag& tag, GcDbGroup& group) {
  if (!m_context.text.decode(tag.raw, m_text)) damaged(tag, " is not in the drawing's encoding: bytes kept");
  group.kind = GcDbGroupKind::Text;
  group.text = m_text;
}

std::uint64_t GroupCursor::handleOf(const Tag& tag, GcDbGroup& group) {
  std::uint64_t handle = 0;
  const bool isName = m_nameInGroup5 && tag.code == 5;
  if (isName || !tag.handle(handle)) {
    if (!isName) damaged(tag, " is no handle: kept as a text", GcDbLoadAction::Noted);
    readText(tag, group);
  }
  return handle;
}

bool GroupCursor::next(GcDbGroup& group) {
  if (m_at == m_tags.size()) return false;
  const Tag& tag = m_tags[m_at++];
  group = GcDbGroup();
  group.code = static_cast<std::int16_t>(tag.code);
  group.kind = gcdbKindOfCode(tag.code);
  switch (group.kind) {
    case GcDbGroupKind::Text: readText(tag, group); break;
    case GcDbGroupKind::Real:
      group.real = group.point.x = realOf(tag);
      if (isAngleCode(tag.code)) {
        group.real = radiansOf(group.real);
        group.isAngle = true;
      }
      break;
    case GcDbGroupKind::Point2d:
    case GcDbGroupKind::Point3d: readPoint(tag, group); break;
    case GcDbGroupKind::Id: {
      const std::uint64_t handle = handleOf(tag, group);
      if (handle != 0) group.id = GcDbObjectId(m_context.database.store().need(handle));
      break;
    }
    case GcDbGroupKind::Handle: group.integer = static_cast<std::int64_t>(handleOf(tag, group)); break;
    case GcDbGroupKind::Binary:
      m_bytes.clear();
      if (!tag.bytes(m_bytes)) damaged(tag, " is no binary data: none taken");
      group.bytes = {reinterpret_cast<const std::uint8_t*>(m_bytes.data()), m_bytes.size()};
      break;
    default: group.integer = integerOf(tag);
  }
  return true;
}

}  // namespace gc::dxf
