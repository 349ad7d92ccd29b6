// Where classes that file themselves write their groups.
#pragma once

#include "db/filer.h"
#include "host/dxf/write/group_writer.h"

namespace gc::dxf {

class OutFiler final : public GcDbDxfFiler {
 public:
  explicit OutFiler(GroupWriter& out) : m_out(out) {}

  [[nodiscard]] Gcad::ErrorStatus filerStatus() const override { return m_status; }
  [[nodiscard]] GcDb::FilerType filerType() const override { return GcDb::kFileFiler; }
  [[nodiscard]] GcDb::GcDbDwgVersion dwgVersion() const override {
    return static_cast<GcDb::GcDbDwgVersion>(m_out.version());
  }
  void resetFilerStatus() override { m_status = Gcad::eOk; }
  Gcad::ErrorStatus setError(Gcad::ErrorStatus status, const GCHAR*, ...) override { return m_status = status; }

  // It writes only.
  Gcad::ErrorStatus readResBuf(resbuf*) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus pushBackItem() override { return Gcad::eFilerError; }
  bool atSubclassData(const GCHAR*) override { return false; }

  Gcad::ErrorStatus writeString(int code, const GCHAR* text) override {
    return put(GcDbGroup::ofText(code, text ? GcView(text) : GcView()));
  }
  Gcad::ErrorStatus writeInt16(int code, int16_t value) override { return put(GcDbGroup::ofInt(code, value)); }
  Gcad::ErrorStatus writeInt32(int code, int32_t value) override { return put(GcDbGroup::ofInt(code, value)); }
  Gcad::ErrorStatus writeUInt32(int code, uint32_t value) override { return put(GcDbGroup::ofInt(code, value)); }
  Gcad::ErrorStatus writeInt64(int code, int64_t value) override { return put(GcDbGroup::ofInt(code, value)); }
  Gcad::ErrorStatus writeBool(int code, bool value) override { return put(GcDbGroup::ofInt(code, value)); }
  Gcad::ErrorStatus writeDouble(int code, double value) override { return put(GcDbGroup::ofReal(code, value)); }
  Gcad::ErrorStatus writePoint3d(int code, const GcGePoint3d& value) override {
    return put(GcDbGroup::ofPoint(code, value));
  }
  Gcad::ErrorStatus writeObjectId(int code, const GcDbObjectId& id) override { return put(GcDbGroup::ofId(code, id)); }
  Gcad::ErrorStatus writeBinary(int code, const void* bytes, int count) override {
    m_out.tags().writeBinary(code, {static_cast<const char*>(bytes), static_cast<std::size_t>(count)});
    return m_status;
  }

 private:
  Gcad::ErrorStatus put(const GcDbGroup& group) {
    if (m_status == Gcad::eOk) m_out.put(group);
    return m_status;
  }

  GroupWriter& m_out;
  Gcad::ErrorStatus m_status = Gcad::eOk;
};

}  // namespace gc::dxf
