// Object ids: small values that stay valid for the life of their database, erased objects included.
#pragma once

#include <cstdint>

#include "db/dbdefs.h"
#include "rx/gcarray.h"

class GcDbDatabase;
class GcDbObject;
class GcDbStub;
class GcRxClass;

class GcDbObjectId {
 public:
  constexpr GcDbObjectId() = default;
  explicit constexpr GcDbObjectId(GcDbStub* stub) : m_stub(stub) {}
  static const GcDbObjectId kNull;

  [[nodiscard]] constexpr bool isNull() const { return m_stub == nullptr; }
  [[nodiscard]] bool isValid() const;   // names an object that exists, erased or not
  [[nodiscard]] bool isErased() const;  // false for a null id
  constexpr void setNull() { m_stub = nullptr; }
  [[nodiscard]] GcDbHandle handle() const;       // 0 for a null id
  [[nodiscard]] GcDbDatabase* database() const;  // null for a null id
  [[nodiscard]] GcRxClass* objectClass() const;  // null when there is no object
  [[nodiscard]] constexpr GcDbStub* stub() const { return m_stub; }

  friend constexpr bool operator==(GcDbObjectId a, GcDbObjectId b) = default;
  friend bool operator<(GcDbObjectId a, GcDbObjectId b) { return a.m_stub < b.m_stub; }

 private:
  GcDbStub* m_stub = nullptr;
};

inline constexpr GcDbObjectId GcDbObjectId::kNull{};

using GcDbObjectIdArray = GcArray<GcDbObjectId>;
using GcDbVoidPtrArray = GcArray<void*>;

// Entity names of LISP are two words made from an id; both calls check that the database still lives.
// Errors: eNullObjectId for a null name, eInvalidInput for one whose database is gone.
Gcad::ErrorStatus gcdbGetObjectId(GcDbObjectId& id, const gds_name name);
Gcad::ErrorStatus gcdbGetGdsName(gds_name& name, GcDbObjectId id);

// Opens an object; close it on every path. Many readers or one writer.
// Errors: eNullObjectId, eUnknownHandle (nothing there), eWasErased, eWasOpenForRead, eWasOpenForWrite.
Gcad::ErrorStatus gcdbOpenGcDbObject(GcDbObject*& object, GcDbObjectId id, GcDb::OpenMode mode,
                                     bool openErased = false);

// The same with a class test: eNotThatKindOfClass leaves nothing open.
template <class T>
Gcad::ErrorStatus gcdbOpenObject(T*& object, GcDbObjectId id, GcDb::OpenMode mode, bool openErased = false);
