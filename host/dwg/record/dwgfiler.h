// The abstract filer over a record, for classes that file themselves.
#pragma once

#include "db/filer.h"
#include "host/dwg/record/recordio.h"

namespace gc::dwg {

// Values and their codes: booleans B, bytes RC, 16-bit BS, 32-bit BL, 64-bit RLL, reals BD, points in the plane 2RD,
// points and vectors 3BD, texts T, raw bytes as they are, references in the reference stream.
template <class Record>
class RecordFiler : public GcDbDwgFiler {
 public:
  explicit RecordFiler(Record& record) : m_record(record) {}
  [[nodiscard]] Gcad::ErrorStatus filerStatus() const override {
    return m_record.failed() ? Gcad::eEndOfFile : m_status;
  }
  [[nodiscard]] GcDb::FilerType filerType() const override { return GcDb::kFileFiler; }
  [[nodiscard]] GcDb::GcDbDwgVersion dwgVersion() const override {
    return static_cast<GcDb::GcDbDwgVersion>(m_record.version());
  }
  void setFilerStatus(Gcad::ErrorStatus status) override { m_status = status; }
  void resetFilerStatus() override { m_status = Gcad::eOk; }

  Gcad::ErrorStatus readString(GCHAR** text) override;
  Gcad::ErrorStatus writeString(const GCHAR* text) override;
  Gcad::ErrorStatus readString(GcString& text) override;
  Gcad::ErrorStatus writeString(const GcString& text) override;
  Gcad::ErrorStatus readBytes(void* bytes, uint64_t count) override;
  Gcad::ErrorStatus writeBytes(const void* bytes, uint64_t count) override;

  // One line per kind of value: the call of the record that passes it.
#define GC_DWG_VALUE(Name, Type, take, put)            \
  Gcad::ErrorStatus read##Name(Type* value) override { \
    return pass([&] { *value = take; });               \
  }                                                    \
  Gcad::ErrorStatus write##Name(Type value) override { \
    return pass([&] { put; });                         \
  }
  GC_DWG_VALUE(Bool, bool, m_record.b(false), m_record.b(value))
  GC_DWG_VALUE(UInt8, uint8_t, static_cast<uint8_t>(m_record.rc(0)), m_record.rc(value))
  GC_DWG_VALUE(Int16, int16_t, static_cast<int16_t>(m_record.bs(0)), m_record.bs(value))
  GC_DWG_VALUE(Int32, int32_t, m_record.bl(0), m_record.bl(value))
  GC_DWG_VALUE(UInt32, uint32_t, static_cast<uint32_t>(m_record.bl(0)), m_record.bl(static_cast<int32_t>(value)))
  GC_DWG_VALUE(Int64, int64_t, static_cast<int64_t>(m_record.rll(0)), m_record.rll(static_cast<uint64_t>(value)))
  GC_DWG_VALUE(Double, double, m_record.bd(0), m_record.bd(value))
#undef GC_DWG_VALUE
#define GC_DWG_STRUCT(Name, Type, take, put)                  \
  Gcad::ErrorStatus read##Name(Type* value) override {        \
    return pass([&] { *value = take; });                      \
  }                                                           \
  Gcad::ErrorStatus write##Name(const Type& value) override { \
    return pass([&] { put; });                                \
  }
  GC_DWG_STRUCT(Point2d, GcGePoint2d, m_record.rd2({}), m_record.rd2(value))
  GC_DWG_STRUCT(Point3d, GcGePoint3d, m_record.bd3({}), m_record.bd3(value))
  GC_DWG_STRUCT(Vector3d, GcGeVector3d, vectorOf(m_record.bd3({})), m_record.bd3({value.x, value.y, value.z}))
  GC_DWG_STRUCT(SoftPointerId, GcDbObjectId, m_record.h(4, {}), m_record.h(4, value))
  GC_DWG_STRUCT(HardPointerId, GcDbObjectId, m_record.h(5, {}), m_record.h(5, value))
  GC_DWG_STRUCT(SoftOwnershipId, GcDbObjectId, m_record.h(2, {}), m_record.h(2, value))
  GC_DWG_STRUCT(HardOwnershipId, GcDbObjectId, m_record.h(3, {}), m_record.h(3, value))
#undef GC_DWG_STRUCT

 private:
  static GcGeVector3d vectorOf(const GcGePoint3d& p) { return {p.x, p.y, p.z}; }
  template <class F>
  Gcad::ErrorStatus pass(const F& f) {
    if (m_status == Gcad::eOk) f();
    return filerStatus();
  }
  Record& m_record;
  Gcad::ErrorStatus m_status = Gcad::eOk;
};

class FilerIn : public RecordFiler<RecordIn> {
 public:
  using RecordFiler<RecordIn>::RecordFiler;
};

class FilerOut : public RecordFiler<RecordOut> {
 public:
  using RecordFiler<RecordOut>::RecordFiler;
};

}  // namespace gc::dwg
