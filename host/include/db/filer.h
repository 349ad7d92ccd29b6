// Filers: where an object's fields go and come from. A filer knows values; a class knows its fields.
#pragma once

#include <cstdint>

#include "db/objectid.h"
#include "ge/point.h"
#include "rx/gcstring.h"

namespace GcDb {
enum FilerType : uint8_t {
  kFileFiler = 0,
  kCopyFiler = 1,
  kUndoFiler = 2,
  kIdXlateFiler = 4,
  kDeepCloneFiler = 6,
  kWblockCloneFiler = 8,
  kDocumentationFiler = 12
};
}

// Binary fields in fixed order, as DWG records and memory copies have them. After a failing call the
// filer keeps its status and later calls do nothing.
class GcDbDwgFiler {
 public:
  virtual ~GcDbDwgFiler() = default;
  [[nodiscard]] virtual Gcad::ErrorStatus filerStatus() const = 0;
  [[nodiscard]] virtual GcDb::FilerType filerType() const = 0;
  [[nodiscard]] virtual GcDb::GcDbDwgVersion dwgVersion() const = 0;
  virtual void setFilerStatus(Gcad::ErrorStatus status) = 0;
  virtual void resetFilerStatus() = 0;

  // A string read is allocated with gcutNewString; the caller frees it with gcutDelBuffer.
  virtual Gcad::ErrorStatus readString(GCHAR** text) = 0;
  virtual Gcad::ErrorStatus writeString(const GCHAR* text) = 0;
  virtual Gcad::ErrorStatus readString(GcString& text) = 0;
  virtual Gcad::ErrorStatus writeString(const GcString& text) = 0;
  virtual Gcad::ErrorStatus readBytes(void* bytes, uint64_t count) = 0;
  virtual Gcad::ErrorStatus writeBytes(const void* bytes, uint64_t count) = 0;
  virtual Gcad::ErrorStatus readBool(bool* value) = 0;
  virtual Gcad::ErrorStatus writeBool(bool value) = 0;
  virtual Gcad::ErrorStatus readUInt8(uint8_t* value) = 0;
  virtual Gcad::ErrorStatus writeUInt8(uint8_t value) = 0;
  virtual Gcad::ErrorStatus readInt16(int16_t* value) = 0;
  virtual Gcad::ErrorStatus writeInt16(int16_t value) = 0;
  virtual Gcad::ErrorStatus readInt32(int32_t* value) = 0;
  virtual Gcad::ErrorStatus writeInt32(int32_t value) = 0;
  virtual Gcad::ErrorStatus readUInt32(uint32_t* value) = 0;
  virtual Gcad::ErrorStatus writeUInt32(uint32_t value) = 0;
  virtual Gcad::ErrorStatus readInt64(int64_t* value) = 0;
  virtual Gcad::ErrorStatus writeInt64(int64_t value) = 0;
  virtual Gcad::ErrorStatus readDouble(double* value) = 0;
  virtual Gcad::ErrorStatus writeDouble(double value) = 0;
  virtual Gcad::ErrorStatus readPoint2d(GcGePoint2d* value) = 0;
  virtual Gcad::ErrorStatus writePoint2d(const GcGePoint2d& value) = 0;
  virtual Gcad::ErrorStatus readPoint3d(GcGePoint3d* value) = 0;
  virtual Gcad::ErrorStatus writePoint3d(const GcGePoint3d& value) = 0;
  virtual Gcad::ErrorStatus readVector3d(GcGeVector3d* value) = 0;
  virtual Gcad::ErrorStatus writeVector3d(const GcGeVector3d& value) = 0;
  virtual Gcad::ErrorStatus readSoftPointerId(GcDbObjectId* id) = 0;
  virtual Gcad::ErrorStatus writeSoftPointerId(const GcDbObjectId& id) = 0;
  virtual Gcad::ErrorStatus readHardPointerId(GcDbObjectId* id) = 0;
  virtual Gcad::ErrorStatus writeHardPointerId(const GcDbObjectId& id) = 0;
  virtual Gcad::ErrorStatus readSoftOwnershipId(GcDbObjectId* id) = 0;
  virtual Gcad::ErrorStatus writeSoftOwnershipId(const GcDbObjectId& id) = 0;
  virtual Gcad::ErrorStatus readHardOwnershipId(GcDbObjectId* id) = 0;
  virtual Gcad::ErrorStatus writeHardOwnershipId(const GcDbObjectId& id) = 0;
};

// Groups of code and value, as DXF and entity lists have them.
class GcDbDxfFiler {
 public:
  virtual ~GcDbDxfFiler() = default;
  [[nodiscard]] virtual Gcad::ErrorStatus filerStatus() const = 0;
  [[nodiscard]] virtual GcDb::FilerType filerType() const = 0;
  [[nodiscard]] virtual GcDb::GcDbDwgVersion dwgVersion() const = 0;
  virtual void resetFilerStatus() = 0;
  // Keeps a status with a message (printf-like, for the load report) and returns it.
  virtual Gcad::ErrorStatus setError(Gcad::ErrorStatus status, const GCHAR* format, ...) = 0;

  // The next group of the object into *item, strings allocated with gcutNewString (release the value's
  // memory with gcutRelRb or keep it). At the end of the object's groups: eEndOfFile.
  virtual Gcad::ErrorStatus readResBuf(resbuf* item) = 0;
  // Gives the last read group back: the next read gives it again.
  virtual Gcad::ErrorStatus pushBackItem() = 0;
  // Reads the subclass marker when the next group is the wanted one; else leaves everything as it is.
  virtual bool atSubclassData(const GCHAR* subclassName) = 0;

  virtual Gcad::ErrorStatus writeString(int code, const GCHAR* text) = 0;
  virtual Gcad::ErrorStatus writeInt16(int code, int16_t value) = 0;
  virtual Gcad::ErrorStatus writeInt32(int code, int32_t value) = 0;
  virtual Gcad::ErrorStatus writeUInt32(int code, uint32_t value) = 0;
  virtual Gcad::ErrorStatus writeInt64(int code, int64_t value) = 0;
  virtual Gcad::ErrorStatus writeBool(int code, bool value) = 0;
  virtual Gcad::ErrorStatus writeDouble(int code, double value) = 0;
  virtual Gcad::ErrorStatus writePoint3d(int code, const GcGePoint3d& value) = 0;
  virtual Gcad::ErrorStatus writeObjectId(int code, const GcDbObjectId& id) = 0;
  virtual Gcad::ErrorStatus writeBinary(int code, const void* bytes, int count) = 0;
};
