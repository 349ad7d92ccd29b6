// Filers that fail where a test wants them to.
#pragma once

#include <cstdarg>
#include <string>
#include <vector>

#include "db/filer.h"
#include "host/db/core/memoryfiler.h"
#include "rx/resbuf.h"

// A memory filer whose nth reading or writing (from 0) fails with `status`, which the filer keeps.
class FailingDwgFiler : public GcDbMemoryFiler {
 public:
  FailingDwgFiler() : GcDbMemoryFiler(GcDb::kFileFiler) {}
  FailingDwgFiler(const std::vector<uint8_t>& bytes) : GcDbMemoryFiler(GcDb::kFileFiler, bytes) {}
  void failAt(int call, Gcad::ErrorStatus status) {
    m_left = call;
    m_failure = status;
  }
  Gcad::ErrorStatus readBytes(void* bytes, uint64_t count) override {
    return fails() ? m_failure : GcDbMemoryFiler::readBytes(bytes, count);
  }
  Gcad::ErrorStatus writeBytes(const void* bytes, uint64_t count) override {
    return fails() ? m_failure : GcDbMemoryFiler::writeBytes(bytes, count);
  }
  Gcad::ErrorStatus readString(GCHAR** text) override {
    return fails() ? m_failure : GcDbMemoryFiler::readString(text);
  }

 private:
  bool fails() {
    if (m_left < 0 || m_left-- > 0) return false;
    setFilerStatus(m_failure);
    return true;
  }
  int m_left = -1;
  Gcad::ErrorStatus m_failure = Gcad::eOk;
};

// The groups of one object, written by it or given to it.
class GroupListFiler : public GcDbDxfFiler {
 public:
  struct Group {
    int code;
    GcString text;
    int64_t integer;
  };
  std::vector<Group> groups;
  GcString message;  // of setError
  int values = 0;    // what setError's format was given

  void failAt(int call, Gcad::ErrorStatus status) {
    m_left = call;
    m_failure = status;
  }
  [[nodiscard]] Gcad::ErrorStatus filerStatus() const override { return m_status; }
  [[nodiscard]] GcDb::FilerType filerType() const override { return GcDb::kFileFiler; }
  [[nodiscard]] GcDb::GcDbDwgVersion dwgVersion() const override { return GcDb::kDHL_Current; }
  void resetFilerStatus() override { m_status = Gcad::eOk; }
  void setStatus(Gcad::ErrorStatus status) { m_status = status; }
  Gcad::ErrorStatus setError(Gcad::ErrorStatus status, const GCHAR* format, ...) override {
    va_list arguments;
    va_start(arguments, format);
    values = va_arg(arguments, int);
    va_end(arguments);
    message = format;
    return m_status = status;
  }

  [[nodiscard]] size_t position() const { return m_at; }
  Gcad::ErrorStatus readResBuf(resbuf* item) override {
    if (fails()) return m_failure;
    if (m_at >= groups.size()) return Gcad::eEndOfFile;
    const Group& group = groups[m_at++];
    item->restype = static_cast<short>(group.code);
    if (gcutRbKind(group.code) == GcRbKind::String) {
      gcutSetRbString(item, group.text.c_str());
    } else {
      item->resval.rlong = static_cast<int32_t>(group.integer);
    }
    return Gcad::eOk;
  }
  Gcad::ErrorStatus pushBackItem() override {
    --m_at;
    return Gcad::eOk;
  }
  bool atSubclassData(const GCHAR* subclassName) override {
    if (m_at >= groups.size() || groups[m_at].code != 100 || groups[m_at].text != GcString(subclassName)) return false;
    ++m_at;
    return true;
  }

  Gcad::ErrorStatus writeString(int code, const GCHAR* text) override { return add({code, GcString(text), 0}); }
  Gcad::ErrorStatus writeInt16(int code, int16_t value) override { return add({code, GcString(), value}); }
  Gcad::ErrorStatus writeInt32(int code, int32_t value) override { return add({code, GcString(), value}); }
  Gcad::ErrorStatus writeUInt32(int code, uint32_t value) override { return add({code, GcString(), value}); }
  Gcad::ErrorStatus writeInt64(int code, int64_t value) override { return add({code, GcString(), value}); }
  Gcad::ErrorStatus writeBool(int code, bool value) override { return add({code, GcString(), value ? 1 : 0}); }
  // Values that no object of these tests has.
  Gcad::ErrorStatus writeDouble(int, double) override { return Gcad::eInvalidInput; }
  Gcad::ErrorStatus writePoint3d(int, const GcGePoint3d&) override { return Gcad::eInvalidInput; }
  Gcad::ErrorStatus writeObjectId(int, const GcDbObjectId&) override { return Gcad::eInvalidInput; }
  Gcad::ErrorStatus writeBinary(int, const void*, int) override { return Gcad::eInvalidInput; }

 private:
  bool fails() {
    if (m_left < 0 || m_left-- > 0) return false;
    m_status = m_failure;
    return true;
  }
  Gcad::ErrorStatus add(Group group) {
    if (fails()) return m_failure;
    groups.push_back(std::move(group));
    return Gcad::eOk;
  }
  size_t m_at = 0;
  int m_left = -1;
  Gcad::ErrorStatus m_failure = Gcad::eOk;
  Gcad::ErrorStatus m_status = Gcad::eOk;
};
