// A filer into memory: how objects are copied (clone) and remembered (undo). Ids stay ids, so the copy is
// only good within this process. Where each reference lies in the bytes is remembered, so that a clone can
// follow references and translate them whatever the class is.
#pragma once

#include <cstdint>
#include <vector>

#include "db/filer.h"
#include "db/object.h"

enum class GcDbReferenceKind : uint8_t { SoftPointer, HardPointer, SoftOwnership, HardOwnership };

struct GcDbReferencePlace {
  size_t offset;
  GcDbReferenceKind kind;
};

class GcDbMemoryFiler : public GcDbDwgFiler {
 public:
  explicit GcDbMemoryFiler(GcDb::FilerType type) : m_type(type) {}
  GcDbMemoryFiler(GcDb::FilerType type, std::vector<uint8_t> bytes) : m_bytes(std::move(bytes)), m_type(type) {}

  [[nodiscard]] const std::vector<uint8_t>& bytes() const { return m_bytes; }
  std::vector<uint8_t> takeBytes() { return std::move(m_bytes); }
  [[nodiscard]] const std::vector<GcDbReferencePlace>& references() const { return m_references; }
  [[nodiscard]] GcDbObjectId referenceAt(const GcDbReferencePlace& place) const;
  void setReferenceAt(const GcDbReferencePlace& place, GcDbObjectId id);
  void rewind() { m_at = 0; }
  [[nodiscard]] bool atEnd() const { return m_at == m_bytes.size(); }

  [[nodiscard]] Gcad::ErrorStatus filerStatus() const override { return m_status; }
  [[nodiscard]] GcDb::FilerType filerType() const override { return m_type; }
  [[nodiscard]] GcDb::GcDbDwgVersion dwgVersion() const override { return GcDb::kDHL_Current; }
  void setFilerStatus(Gcad::ErrorStatus status) override { m_status = status; }
  void resetFilerStatus() override { m_status = Gcad::eOk; }

  Gcad::ErrorStatus readString(GCHAR** text) override;
  Gcad::ErrorStatus writeString(const GCHAR* text) override;
  Gcad::ErrorStatus readString(GcString& text) override;
  Gcad::ErrorStatus writeString(const GcString& text) override;
  Gcad::ErrorStatus readBytes(void* bytes, uint64_t count) override;
  Gcad::ErrorStatus writeBytes(const void* bytes, uint64_t count) override;
#define GC_MEMORY_VALUE(Name, Type)                                                              \
  Gcad::ErrorStatus read##Name(Type* value) override { return readBytes(value, sizeof *value); } \
  Gcad::ErrorStatus write##Name(Type value) override { return writeBytes(&value, sizeof value); }
  GC_MEMORY_VALUE(Bool, bool)
  GC_MEMORY_VALUE(UInt8, uint8_t)
  GC_MEMORY_VALUE(Int16, int16_t)
  GC_MEMORY_VALUE(Int32, int32_t)
  GC_MEMORY_VALUE(UInt32, uint32_t)
  GC_MEMORY_VALUE(Int64, int64_t)
  GC_MEMORY_VALUE(Double, double)
#undef GC_MEMORY_VALUE
#define GC_MEMORY_STRUCT(Name, Type)                                                                                 \
  Gcad::ErrorStatus read##Name(Type* value) override { return readBytes(static_cast<void*>(value), sizeof *value); } \
  Gcad::ErrorStatus write##Name(const Type& value) override { return writeBytes(&value, sizeof value); }
  GC_MEMORY_STRUCT(Point2d, GcGePoint2d)
  GC_MEMORY_STRUCT(Point3d, GcGePoint3d)
  GC_MEMORY_STRUCT(Vector3d, GcGeVector3d)
#undef GC_MEMORY_STRUCT
#define GC_MEMORY_REFERENCE(Name)                                      \
  Gcad::ErrorStatus read##Name##Id(GcDbObjectId* id) override {        \
    return readBytes(static_cast<void*>(id), sizeof *id);              \
  }                                                                    \
  Gcad::ErrorStatus write##Name##Id(const GcDbObjectId& id) override { \
    m_references.push_back({m_bytes.size(), GcDbReferenceKind::Name}); \
    return writeBytes(&id, sizeof id);                                 \
  }
  GC_MEMORY_REFERENCE(SoftPointer)
  GC_MEMORY_REFERENCE(HardPointer)
  GC_MEMORY_REFERENCE(SoftOwnership)
  GC_MEMORY_REFERENCE(HardOwnership)
#undef GC_MEMORY_REFERENCE

 private:
  std::vector<uint8_t> m_bytes;
  std::vector<GcDbReferencePlace> m_references;
  size_t m_at = 0;
  Gcad::ErrorStatus m_status = Gcad::eOk;
  GcDb::FilerType m_type;
};

// Everything an object is, its rare parts included, as bytes; and back into an object of the same class.
void gcdbImageOut(const GcDbObject& object, GcDbMemoryFiler& filer);
Gcad::ErrorStatus gcdbImageIn(GcDbObject& object, GcDbMemoryFiler& filer);
std::vector<uint8_t> gcdbImageOf(const GcDbObject& object, GcDb::FilerType type);
Gcad::ErrorStatus gcdbImageInto(GcDbObject& object, const std::vector<uint8_t>& image, GcDb::FilerType type);
