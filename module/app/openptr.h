// Handles of opened objects: they close the object on every way out. A handle that could not open is empty and
// tells the status.
//
//   GcDbReadPtr<GcDbCurve> curve(id);
//   if (!curve) return args.wrongType();
#pragma once

#include "module/app/host.h"

enum class Erased : bool { Refused, Allowed };

template <class T, GcDb::OpenMode kMode>
class GcDbOpenPtr {
 public:
  GcDbOpenPtr() = default;
  explicit GcDbOpenPtr(GcDbObjectId id, Erased erased = Erased::Refused)
      : m_status(gcdbOpenObject(m_object, id, kMode, erased == Erased::Allowed)) {}
  GcDbOpenPtr(const GcDbOpenPtr&) = delete;
  GcDbOpenPtr& operator=(const GcDbOpenPtr&) = delete;
  ~GcDbOpenPtr() { ignore(close()); }

  explicit operator bool() const { return m_object != nullptr; }
  [[nodiscard]] Gcad::ErrorStatus status() const { return m_status; }
  [[nodiscard]] T* get() const { return m_object; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }

  // Takes over an object that is open.
  void attach(T* open) {
    ignore(close());
    m_object = open;
    m_status = open != nullptr ? Gcad::eOk : Gcad::eNullObjectPointer;
  }
  // Gives the open object away.
  T* release() {
    T* open = m_object;
    m_object = nullptr;
    return open;
  }
  // Closes before the end of the scope. eOk when there was nothing to close.
  Gcad::ErrorStatus close() {
    T* open = release();
    return open != nullptr ? open->close() : Gcad::eOk;
  }

 private:
  T* m_object = nullptr;
  Gcad::ErrorStatus m_status = Gcad::eNullObjectPointer;
};

template <class T>
using GcDbReadPtr = GcDbOpenPtr<T, GcDb::kForRead>;
template <class T>
using GcDbWritePtr = GcDbOpenPtr<T, GcDb::kForWrite>;

// The working database; null when no drawing is open.
inline GcDbDatabase* workingDatabase() {
  const GcDbHostApplicationServices* services = gcdbHostApplicationServices();
  return services != nullptr ? services->workingDatabase() : nullptr;
}
