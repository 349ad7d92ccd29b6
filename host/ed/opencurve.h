// A curve of the drawing, open for read as long as this lives.
#pragma once

#include "db/curve.h"

namespace ed {

// False when the id names no curve that can be opened.
class OpenCurve {
 public:
  explicit OpenCurve(GcDbObjectId id) { ignore(gcdbOpenObject(m_curve, id, GcDb::kForRead)); }
  ~OpenCurve() { close(); }
  OpenCurve(const OpenCurve&) = delete;
  OpenCurve& operator=(const OpenCurve&) = delete;
  explicit operator bool() const { return m_curve != nullptr; }
  const GcDbCurve* operator->() const { return m_curve; }
  const GcDbCurve* get() const { return m_curve; }
  void close() {
    if (m_curve != nullptr) ignore(m_curve->close());
    m_curve = nullptr;
  }

 private:
  GcDbCurve* m_curve = nullptr;
};

}  // namespace ed
