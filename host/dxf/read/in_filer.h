// The groups of one object for classes that read themselves.
#pragma once

#include "db/filer.h"
#include "host/dxf/read/group_cursor.h"

namespace gc::dxf {

class InFiler final : public GcDbDxfFiler {
 public:
  InFiler(const LoadContext& context, GroupCursor& cursor, std::uint64_t handle)
      : m_context(context), m_cursor(cursor), m_handle(handle) {}

  [[nodiscard]] Gcad::ErrorStatus filerStatus() const override { return m_status; }
  [[nodiscard]] GcDb::FilerType filerType() const override { return GcDb::kFileFiler; }
  [[nodiscard]] GcDb::GcDbDwgVersion dwgVersion() const override {
    return static_cast<GcDb::GcDbDwgVersion>(m_context.version);
  }
  void resetFilerStatus() override { m_status = Gcad::eOk; }
  Gcad::ErrorStatus setError(Gcad::ErrorStatus status, const GCHAR* format, ...) override;

  Gcad::ErrorStatus readResBuf(resbuf* item) override;
  Gcad::ErrorStatus pushBackItem() override;
  bool atSubclassData(const GCHAR* subclassName) override;

  // It reads only.
  Gcad::ErrorStatus writeString(int, const GCHAR*) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus writeInt16(int, int16_t) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus writeInt32(int, int32_t) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus writeUInt32(int, uint32_t) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus writeInt64(int, int64_t) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus writeBool(int, bool) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus writeDouble(int, double) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus writePoint3d(int, const GcGePoint3d&) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus writeObjectId(int, const GcDbObjectId&) override { return Gcad::eFilerError; }
  Gcad::ErrorStatus writeBinary(int, const void*, int) override { return Gcad::eFilerError; }

 private:
  const LoadContext& m_context;
  GroupCursor& m_cursor;
  std::uint64_t m_handle;
  std::size_t m_before = 0;  // where the last read group began
  bool m_hasRead = false;
  Gcad::ErrorStatus m_status = Gcad::eOk;
};

}  // namespace gc::dxf
