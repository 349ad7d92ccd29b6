// The geometry of a curve while a query runs, kept between queries where that pays.
//
// Kept paths live in a small table outside the objects (an entity that is never asked costs nothing). An object in a
// database carries one bit, "its path is kept", which every write and undo clears: a kept path is used only while that
// bit stands and nobody has the object open for write. Objects outside databases and objects whose shape depends on others (vertices of
// their own) are read anew each time.
#pragma once

#include <memory>

#include "db/curve.h"
#include "host/ge/curves/path.h"

class GcDbCurvePath {
 public:
  // Errors: eDegenerateGeometry, eInvalidInput (a coordinate that is no number).
  explicit GcDbCurvePath(const GcDbCurve& curve);

  [[nodiscard]] Gcad::ErrorStatus status() const { return m_status; }
  const GcGePath& operator*() const { return *m_path; }
  const GcGePath* operator->() const { return m_path.get(); }

 private:
  std::shared_ptr<const GcGePath> m_path;
  Gcad::ErrorStatus m_status = Gcad::eOk;
};
