// An object of the drawing, open for as long as the variable lives: an error on its way out closes it too.
#pragma once

#include "db/object.h"
#include "db/objectid.h"

namespace lisplib {

template <class T>
class OpenObject {
 public:
  // Null when it cannot be opened so or is of another class.
  OpenObject(GcDbObjectId id, GcDb::OpenMode mode) {
    if (gcdbOpenObject(m_object, id, mode) != Gcad::eOk) m_object = nullptr;
  }
  // Takes over an object that is open.
  explicit OpenObject(T* open) : m_object(open) {}
  OpenObject(const OpenObject&) = delete;
  OpenObject& operator=(const OpenObject&) = delete;
  ~OpenObject() {
    if (m_object != nullptr) ignore(m_object->close());
  }

  [[nodiscard]] T* get() const { return m_object; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }
  explicit operator bool() const { return m_object != nullptr; }

 private:
  T* m_object = nullptr;
};

}  // namespace lisplib
