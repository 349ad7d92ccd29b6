// The root of everything that lives in a drawing.
#pragma once

#include "db/objectid.h"
#include "gi/drawable.h"
#include "rx/rxclass.h"

class GcDbDwgFiler;
class GcDbDxfFiler;
struct GcDbObjectExtra;

// Life: made with new, handed to a container that appends it to a database (which then owns it), closed.
// After that: open for read or write by id, close. Objects outside a database may be read and written freely.
class GcDbObject : public GcGiDrawable {
 public:
  GCRX_DECLARE_MEMBERS(GcDbObject);
  ~GcDbObject() override;
  GcDbObject(const GcDbObject&) = delete;
  GcDbObject& operator=(const GcDbObject&) = delete;

  // Memory of database objects is the host's. The second form returns null when it is exhausted.
  static void* operator new(std::size_t size);
  static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
  static void operator delete(void* memory, std::size_t size) noexcept;
  static void operator delete(void* memory, const std::nothrow_t&) noexcept;

  [[nodiscard]] GcDbObjectId objectId() const { return m_id; }
  [[nodiscard]] GcDbObjectId id() const { return m_id; }
  [[nodiscard]] GcDbObjectId ownerId() const { return m_ownerId; }
  Gcad::ErrorStatus setOwnerId(GcDbObjectId owner);
  [[nodiscard]] GcDbHandle handle() const { return m_id.handle(); }
  void getGcDbHandle(GcDbHandle& handle) const { handle = m_id.handle(); }
  [[nodiscard]] GcDbDatabase* database() const { return m_id.database(); }

  Gcad::ErrorStatus close();
  Gcad::ErrorStatus upgradeOpen();  // read to write; eWasOpenForRead with other readers
  Gcad::ErrorStatus downgradeOpen();
  Gcad::ErrorStatus erase(bool erasing = true);  // open for write
  [[nodiscard]] bool isErased() const { return m_id.isErased(); }
  [[nodiscard]] bool isReadEnabled() const;
  [[nodiscard]] bool isWriteEnabled() const;
  [[nodiscard]] bool isNewObject() const;

  // What members call before they read or change fields. A call on an object that is not open so is a
  // mistake of the caller and ends the process. The first write of an open records the state for undo.
  void assertReadEnabled() const;
  void assertWriteEnabled(bool autoUndo = true, bool recordModified = true);

  // Extended data: a chain of groups (1001 application name, then its values, and so on), of one
  // application or, for null, of all; to be released by the caller; null when there is none.
  [[nodiscard]] resbuf* xData(const GCHAR* applicationName = nullptr) const;
  // Replaces the data of every application named in the chain; an application without values loses its data.
  // Errors: eRegappIdNotFound, eInvalidResBuf (bad code or order), eInvalidInput (over 16 kB).
  Gcad::ErrorStatus setXData(const resbuf* chain);

  [[nodiscard]] GcDbObjectId extensionDictionary() const;  // null when there is none or it is erased
  Gcad::ErrorStatus createExtensionDictionary();           // eOk too when it exists
  Gcad::ErrorStatus releaseExtensionDictionary();          // only when it is empty

  // Objects to be told of changes, kept in the drawing.
  void addPersistentReactor(GcDbObjectId id);
  void removePersistentReactor(GcDbObjectId id);
  [[nodiscard]] const GcDbObjectIdArray& persistentReactors() const;

  // The fields. Classes described by a table leave these alone; others override all four and call these first.
  virtual Gcad::ErrorStatus dwgInFields(GcDbDwgFiler* filer);
  virtual Gcad::ErrorStatus dwgOutFields(GcDbDwgFiler* filer) const;
  virtual Gcad::ErrorStatus dxfInFields(GcDbDxfFiler* filer);
  virtual Gcad::ErrorStatus dxfOutFields(GcDbDxfFiler* filer) const;

  // Called when the object is about to be erased or restored; a status other than eOk refuses.
  virtual Gcad::ErrorStatus subErase(bool erasing);
  // Called after reading from a file and after cloning, when all references can be followed.
  virtual void subLoaded();
  // The objects this one owns besides extension dictionary and what its fields say; the default: its parts
  // (vertices, attributes) as files have them.
  virtual void subOwned(GcDbObjectIdArray& ids) const;
  // Gives a clone the copies of what its source's subOwned lists, in the same order (null for what was not
  // copied). Only for owners whose fields do not hold these ids themselves.
  virtual void subSetOwned(const GcDbObjectIdArray& ids);

  // For the host's own use: the rarely needed parts, null when the object has none.
  [[nodiscard]] GcDbObjectExtra* extra() const { return m_extra; }
  GcDbObjectExtra& needExtra();

 protected:
  GcDbObject() = default;

  // What a plain setter does: the object must be open for write.
  template <class T>
  Gcad::ErrorStatus assign(T& member, const T& value) {
    assertWriteEnabled();
    member = value;
    return Gcad::eOk;
  }

 private:
  friend class GcDbDatabase;
  friend class GcDbLoader;
  friend class GcDbStore;

  GcDbObjectId m_id;
  GcDbObjectId m_ownerId;
  GcDbObjectExtra* m_extra = nullptr;
};

template <class T>
Gcad::ErrorStatus gcdbOpenObject(T*& object, GcDbObjectId id, GcDb::OpenMode mode, bool openErased) {
  object = nullptr;
  GcDbObject* any = nullptr;
  const Gcad::ErrorStatus status = gcdbOpenGcDbObject(any, id, mode, openErased);
  if (status != Gcad::eOk) return status;
  object = T::cast(any);
  if (object != nullptr) return Gcad::eOk;
  ignore(any->close());
  return Gcad::eNotThatKindOfClass;
}
