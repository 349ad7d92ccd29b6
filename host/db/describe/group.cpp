#include "host/db/describe/group.h"

#include <cstring>

namespace {

bool in(int code, int first, int last) { return code >= first && code <= last; }

template <class T>
void appendValue(GcArray<uint8_t>& bytes, const T& value) {
  const int at = bytes.length();
  bytes.setLogicalLength(at + static_cast<int>(sizeof value));
  std::memcpy(&bytes[at], static_cast<const void*>(&value), sizeof value);
}

void growFor(GcArray<uint8_t>& bytes, int more) {
  const int needed = bytes.length() + more;
  if (needed > bytes.physicalLength()) bytes.reserve(needed + (bytes.length() > 64 ? needed / 2 : 0));
}

void appendBytes(GcArray<uint8_t>& bytes, const void* data, size_t size) {
  const int at = bytes.length();
  bytes.setLogicalLength(at + static_cast<int>(size));
  if (size > 0) std::memcpy(&bytes[at], data, size);
}

template <class T>
T readValue(const GcArray<uint8_t>& bytes, int& at) {
  T value{};
  std::memcpy(static_cast<void*>(&value), bytes.begin() + at, sizeof value);
  at += static_cast<int>(sizeof value);
  return value;
}

int integerSize(GcDbGroupKind kind) {
  switch (kind) {
    case GcDbGroupKind::Bool: return 1;
    case GcDbGroupKind::Int16: return 2;
    case GcDbGroupKind::Int32: return 4;
    default: return 8;
  }
}

}  // namespace

GcDbGroupKind gcdbKindOfCode(int code) {
  if (code == 5 || code == 105 || code == 1005 || in(code, 320, 329)) return GcDbGroupKind::Handle;
  if (in(code, 0, 9)) return GcDbGroupKind::Text;
  if (in(code, 10, 18) || in(code, 110, 119) || in(code, 210, 219) || in(code, 1010, 1013))
    return GcDbGroupKind::Point3d;
  if (in(code, 19, 59) || in(code, 120, 149) || in(code, 220, 239) || in(code, 460, 469) || in(code, 1014, 1059))
    return GcDbGroupKind::Real;
  if (in(code, 60, 79) || in(code, 170, 179) || in(code, 270, 289) || in(code, 370, 389) || in(code, 400, 409) ||
      in(code, 1060, 1070))
    return GcDbGroupKind::Int16;
  if (in(code, 90, 99) || in(code, 420, 429) || in(code, 440, 459) || code == 1071) return GcDbGroupKind::Int32;
  if (in(code, 160, 169)) return GcDbGroupKind::Int64;
  if (in(code, 290, 299)) return GcDbGroupKind::Bool;
  if (in(code, 310, 319) || code == 1004) return GcDbGroupKind::Binary;
  if (in(code, 330, 369) || in(code, 390, 399) || in(code, 480, 481)) return GcDbGroupKind::Id;
  return GcDbGroupKind::Text;
}

GcDbGroup GcDbGroup::ofText(int code, GcView text) {
  GcDbGroup group;
  group.code = static_cast<int16_t>(code);
  group.text = text;
  return group;
}

GcDbGroup GcDbGroup::ofReal(int code, double value) {
  GcDbGroup group;
  group.code = static_cast<int16_t>(code);
  group.kind = GcDbGroupKind::Real;
  group.real = value;
  return group;
}

GcDbGroup GcDbGroup::ofPoint(int code, const GcGePoint3d& value) {
  GcDbGroup group;
  group.code = static_cast<int16_t>(code);
  group.kind = GcDbGroupKind::Point3d;
  group.point = value;
  return group;
}

GcDbGroup GcDbGroup::ofPoint2d(int code, const GcGePoint2d& value) {
  GcDbGroup group = ofPoint(code, {value.x, value.y, 0});
  group.kind = GcDbGroupKind::Point2d;
  return group;
}

GcDbGroup GcDbGroup::ofInt(int code, int64_t value) {
  GcDbGroup group;
  group.code = static_cast<int16_t>(code);
  group.kind = gcdbKindOfCode(code);
  group.integer = value;
  return group;
}

GcDbGroup GcDbGroup::ofId(int code, GcDbObjectId id) {
  GcDbGroup group;
  group.code = static_cast<int16_t>(code);
  group.kind = GcDbGroupKind::Id;
  group.id = id;
  return group;
}

GcDbGroup GcDbGroup::ofBinary(int code, std::span<const uint8_t> bytes) {
  GcDbGroup group;
  group.code = static_cast<int16_t>(code);
  group.kind = GcDbGroupKind::Binary;
  group.bytes = bytes;
  return group;
}

double GcDbGroup::asReal() const { return kind == GcDbGroupKind::Real ? real : static_cast<double>(asInt()); }

int64_t GcDbGroup::asInt() const {
  switch (kind) {
    case GcDbGroupKind::Bool:
    case GcDbGroupKind::Int16:
    case GcDbGroupKind::Int32:
    case GcDbGroupKind::Int64:
    case GcDbGroupKind::Handle: return integer;
    case GcDbGroupKind::Real: return real >= -9.2e18 && real <= 9.2e18 ? static_cast<int64_t>(real) : 0;
    default: return 0;
  }
}

// Layout of a kept group: code (2), kind (1), value padded to an even size; texts and bytes have a 4-byte
// length first. Groups begin at even offsets and texts lie at even offsets, so that views may point at them.
void GcDbGroupList::put(const GcDbGroup& group) {
  growFor(m_bytes, 32);
  appendValue(m_bytes, group.code);
  const uint8_t kind = static_cast<uint8_t>(static_cast<uint8_t>(group.kind) | (group.isAngle ? 0x80 : 0));
  appendValue(m_bytes, kind);
  appendValue(m_bytes, uint8_t{0});
  switch (group.kind) {
    case GcDbGroupKind::Text: {
      const auto units = static_cast<uint32_t>(group.text.size());
      growFor(m_bytes, static_cast<int>(units) * 2 + 6);
      appendValue(m_bytes, units);
      appendBytes(m_bytes, group.text.data(), units * sizeof(GCHAR));
      break;
    }
    case GcDbGroupKind::Binary:
      appendValue(m_bytes, static_cast<uint32_t>(group.bytes.size()));
      appendBytes(m_bytes, group.bytes.data(), group.bytes.size());
      break;
    case GcDbGroupKind::Real: appendValue(m_bytes, group.real); break;
    case GcDbGroupKind::Point2d:
    case GcDbGroupKind::Point3d: appendValue(m_bytes, group.point); break;
    case GcDbGroupKind::Id: appendValue(m_bytes, group.id); break;
    default: appendBytes(m_bytes, &group.integer, static_cast<size_t>(integerSize(group.kind)));  // little endian
  }
  if (m_bytes.length() % 2 != 0) appendValue(m_bytes, uint8_t{0});
}

bool GcDbGroupList::Cursor::next(GcDbGroup& group) {
  const GcArray<uint8_t>& bytes = m_list->m_bytes;
  if (m_at >= bytes.length()) return false;
  group = GcDbGroup();
  group.code = readValue<int16_t>(bytes, m_at);
  const auto kind = readValue<uint8_t>(bytes, m_at);
  ++m_at;
  group.kind = static_cast<GcDbGroupKind>(kind & 0x7F);
  group.isAngle = (kind & 0x80) != 0;
  switch (group.kind) {
    case GcDbGroupKind::Text: {
      const auto units = readValue<uint32_t>(bytes, m_at);
      group.text = GcView(reinterpret_cast<const GCHAR*>(bytes.begin() + m_at), units);
      m_at += static_cast<int>(units * sizeof(GCHAR));
      break;
    }
    case GcDbGroupKind::Binary: {
      const auto size = readValue<uint32_t>(bytes, m_at);
      group.bytes = {bytes.begin() + m_at, size};
      m_at += static_cast<int>(size);
      break;
    }
    case GcDbGroupKind::Real: group.real = readValue<double>(bytes, m_at); break;
    case GcDbGroupKind::Point2d:
    case GcDbGroupKind::Point3d: group.point = readValue<GcGePoint3d>(bytes, m_at); break;
    case GcDbGroupKind::Id: group.id = readValue<GcDbObjectId>(bytes, m_at); break;
    case GcDbGroupKind::Bool: group.integer = readValue<int8_t>(bytes, m_at); break;
    case GcDbGroupKind::Int16: group.integer = readValue<int16_t>(bytes, m_at); break;
    case GcDbGroupKind::Int32: group.integer = readValue<int32_t>(bytes, m_at); break;
    default: group.integer = readValue<int64_t>(bytes, m_at);
  }
  m_at += m_at % 2;
  return true;
}

void* GcDbGroupList::valueAt(int offset, GcDbGroupKind kind, int& next) {
  Cursor cursor(*this);
  cursor.m_at = offset;
  GcDbGroup group;
  cursor.next(group);
  next = cursor.m_at;
  constexpr int kHead = 4;  // code, kind, padding
  return group.kind == kind ? m_bytes.begin() + offset + kHead : nullptr;
}
