// Steps through objects that belong to an entity (vertices, attributes). The caller deletes it.
#pragma once

#include "db/objectid.h"

class GcDbObjectIterator {
 public:
  explicit GcDbObjectIterator(const GcDbObjectIdArray& ids) : m_ids(ids) { start(); }
  void start() {
    m_at = 0;
    skipErased();
  }
  [[nodiscard]] bool done() const { return m_at >= m_ids.length(); }
  bool step() {
    if (!done()) ++m_at;
    skipErased();
    return !done();
  }
  [[nodiscard]] GcDbObjectId objectId() const { return done() ? GcDbObjectId() : m_ids[m_at]; }

 private:
  void skipErased() {
    while (!done() && m_ids[m_at].isErased()) ++m_at;
  }
  GcDbObjectIdArray m_ids;  // a copy: objects may come and go while it walks
  int m_at = 0;
};
