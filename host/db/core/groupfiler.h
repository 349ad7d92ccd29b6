// DXF filers over a list of groups: how classes that file themselves meet groups that are already in memory
// (zombies coming to life and going back, entity lists).
#pragma once

#include <string>

#include "db/filer.h"
#include "host/db/describe/group.h"

class GcDbGroupFiler : public GcDbDxfFiler {
 public:
  // Reads from `list` and, for the writing calls, puts into it.
  explicit GcDbGroupFiler(GcDbGroupList& list, GcDb::FilerType type = GcDb::kFileFiler);

  // The message of the last setError, UTF-8; empty when there was none.
  [[nodiscard]] const std::string& errorText() const { return m_errorText; }
  // Everything has been read.
  [[nodiscard]] bool atEnd() const;

  [[nodiscard]] Gcad::ErrorStatus filerStatus() const override { return m_status; }
  [[nodiscard]] GcDb::FilerType filerType() const override { return m_type; }
  [[nodiscard]] GcDb::GcDbDwgVersion dwgVersion() const override { return GcDb::kDHL_Current; }
  void resetFilerStatus() override { m_status = Gcad::eOk; }
  Gcad::ErrorStatus setError(Gcad::ErrorStatus status, const GCHAR* format, ...) override;
  Gcad::ErrorStatus readResBuf(resbuf* item) override;
  Gcad::ErrorStatus pushBackItem() override;
  bool atSubclassData(const GCHAR* subclassName) override;
  Gcad::ErrorStatus writeString(int code, const GCHAR* text) override;
  Gcad::ErrorStatus writeInt16(int code, int16_t value) override;
  Gcad::ErrorStatus writeInt32(int code, int32_t value) override;
  Gcad::ErrorStatus writeUInt32(int code, uint32_t value) override;
  Gcad::ErrorStatus writeInt64(int code, int64_t value) override;
  Gcad::ErrorStatus writeBool(int code, bool value) override;
  Gcad::ErrorStatus writeDouble(int code, double value) override;
  Gcad::ErrorStatus writePoint3d(int code, const GcGePoint3d& value) override;
  Gcad::ErrorStatus writeObjectId(int code, const GcDbObjectId& id) override;
  Gcad::ErrorStatus writeBinary(int code, const void* bytes, int count) override;

 private:
  Gcad::ErrorStatus write(const GcDbGroup& group);

  GcDbGroupList& m_list;
  GcDbGroupList::Cursor m_cursor;
  GcDbGroupList::Cursor m_before;  // where the last group read began
  Gcad::ErrorStatus m_status = Gcad::eOk;
  GcDb::FilerType m_type;
  std::string m_errorText;
};
