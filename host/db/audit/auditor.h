// What the checks of an audit share.
#pragma once

#include <string>

#include "db/database.h"
#include "db/entity.h"
#include "host/db/audit/audit.h"
#include "host/db/core/store.h"

class GcDbAuditor {
 public:
  GcDbAuditor(GcDbDatabase& database, bool mend, GcDbAuditReport& report)
      : m_database(database), m_mend(mend), m_report(report) {}

  [[nodiscard]] GcDbDatabase& database() const { return m_database; }

  // Notes a defect; true when it is to be mended. `object` null: of the drawing.
  bool found(GcDbDefect defect, const GcDbObject* object, const std::string& detail = {});

  // Calls f(object) for every object that is not erased.
  template <class F>
  void forEach(const F& f) const {
    m_database.store().forEach([&](GcDbStub* stub) {
      if (stub->object != nullptr && !stub->erased) f(*stub->object);
    });
  }

 private:
  GcDbDatabase& m_database;
  bool m_mend;
  GcDbAuditReport& m_report;
};

// An object open for write as long as this lives, without undo records: a drawing is mended as a whole.
class GcDbMending {
 public:
  explicit GcDbMending(GcDbObject& object) : m_stub(*object.objectId().stub()) { m_stub.writing = true; }
  ~GcDbMending() { m_stub.writing = m_stub.recorded = m_stub.modified = m_stub.pathKept = false; }
  GcDbMending(const GcDbMending&) = delete;
  GcDbMending& operator=(const GcDbMending&) = delete;

 private:
  GcDbStub& m_stub;
};

[[nodiscard]] inline bool gcdbIsLive(GcDbObjectId id) { return id.isValid() && !id.isErased(); }

// The object of an id; null when there is none or it is erased.
template <class T>
[[nodiscard]] T* gcdbLive(GcDbObjectId id) {
  return gcdbIsLive(id) ? T::cast(id.stub()->object) : nullptr;
}

void gcdbAuditFrame(GcDbAuditor& auditor);       // tables, spaces, ends of blocks, the seed of handles
void gcdbAuditNames(GcDbAuditor& auditor);       // names of records
void gcdbAuditOwners(GcDbAuditor& auditor);      // owners of objects, lists of entities, sequences
void gcdbAuditReferences(GcDbAuditor& auditor);  // references, reactors, dictionaries
void gcdbAuditBlocks(GcDbAuditor& auditor);      // blocks in themselves
void gcdbAuditValues(GcDbAuditor& auditor);      // numbers, directions, colours, sizes, counts
void gcdbAuditData(GcDbAuditor& auditor);        // extended data
