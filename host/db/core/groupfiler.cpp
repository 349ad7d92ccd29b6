#include "host/db/core/groupfiler.h"

#include <cstdarg>

#include "host/db/core/xdata.h"
#include "host/rx/text/format.h"
#include "rx/gcheap.h"

GcDbGroupFiler::GcDbGroupFiler(GcDbGroupList& list, GcDb::FilerType type)
    : m_list(list), m_cursor(list), m_before(list), m_type(type) {}

bool GcDbGroupFiler::atEnd() const { return m_cursor.offset() >= m_list.bytes().length(); }

Gcad::ErrorStatus GcDbGroupFiler::setError(Gcad::ErrorStatus status, const GCHAR* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  GcText text;
  gc::appendFormatted(text, format, arguments);
  va_end(arguments);
  m_errorText = toUtf8(text);
  return m_status = status;
}

Gcad::ErrorStatus GcDbGroupFiler::readResBuf(resbuf* item) {
  m_before = m_cursor;
  GcDbGroup group;
  if (!m_cursor.next(group)) return Gcad::eEndOfFile;  // no failure: the status stays
  resbuf* node = gcdbGroupToRb(group);
  if (node == nullptr) return m_status = Gcad::eOutOfMemory;
  item->restype = node->restype;
  item->resval = node->resval;
  node->restype = RTNIL;  // the value has moved
  gcutRelRb(node);
  return m_status = Gcad::eOk;
}

Gcad::ErrorStatus GcDbGroupFiler::pushBackItem() {
  m_cursor = m_before;
  return Gcad::eOk;
}

bool GcDbGroupFiler::atSubclassData(const GCHAR* subclassName) {
  GcDbGroupList::Cursor ahead = m_cursor;
  GcDbGroup group;
  if (!ahead.next(group) || group.code != 100 || group.text != view(subclassName)) return false;
  m_cursor = ahead;
  return true;
}

Gcad::ErrorStatus GcDbGroupFiler::write(const GcDbGroup& group) {
  m_list.put(group);
  return m_status;
}

Gcad::ErrorStatus GcDbGroupFiler::writeString(int code, const GCHAR* text) {
  return write(GcDbGroup::ofText(code, view(text)));
}
Gcad::ErrorStatus GcDbGroupFiler::writeInt16(int code, int16_t value) { return write(GcDbGroup::ofInt(code, value)); }
Gcad::ErrorStatus GcDbGroupFiler::writeInt32(int code, int32_t value) { return write(GcDbGroup::ofInt(code, value)); }
Gcad::ErrorStatus GcDbGroupFiler::writeUInt32(int code, uint32_t value) {
  return write(GcDbGroup::ofInt(code, static_cast<int32_t>(value)));
}
Gcad::ErrorStatus GcDbGroupFiler::writeInt64(int code, int64_t value) { return write(GcDbGroup::ofInt(code, value)); }
Gcad::ErrorStatus GcDbGroupFiler::writeBool(int code, bool value) {
  return write(GcDbGroup::ofInt(code, value ? 1 : 0));
}
Gcad::ErrorStatus GcDbGroupFiler::writeDouble(int code, double value) { return write(GcDbGroup::ofReal(code, value)); }
Gcad::ErrorStatus GcDbGroupFiler::writePoint3d(int code, const GcGePoint3d& value) {
  return write(GcDbGroup::ofPoint(code, value));
}
Gcad::ErrorStatus GcDbGroupFiler::writeObjectId(int code, const GcDbObjectId& id) {
  return write(GcDbGroup::ofId(code, id));
}
Gcad::ErrorStatus GcDbGroupFiler::writeBinary(int code, const void* bytes, int count) {
  return write(GcDbGroup::ofBinary(code, {static_cast<const uint8_t*>(bytes), static_cast<size_t>(count)}));
}
