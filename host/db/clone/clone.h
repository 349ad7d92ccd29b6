// Copying of objects in two phases: empty copies of everything that goes along are made first (so that every
// reference knows its counterpart), then each source's fields are filed into its copy with the references
// translated.
#pragma once

#include <vector>

#include "db/database.h"
#include "db/idmapping.h"
#include "host/rx/view.h"

class GcDbHatch;
class GcDbSortentsTable;

class GcDbCloner {
 public:
  // Deep clone within one database when `source` is `target`, wblock clone otherwise.
  GcDbCloner(GcDbDatabase& source, GcDbDatabase& target, GcDbIdMapping& map, GcDb::DuplicateRecordCloning mode)
      : m_source(source), m_target(target), m_map(map), m_mode(mode) {}

  // Makes the copy of one object that was asked for, under the owner.
  Gcad::ErrorStatus addPrimary(GcDbObjectId id, GcDbObjectId owner);
  // Files all sources into their copies. Copies are closed afterwards.
  Gcad::ErrorStatus translate();

 private:
  struct Pending {
    GcDbObjectId source;
    GcDbObjectId copy;
  };

  [[nodiscard]] bool crossing() const { return &m_source != &m_target; }
  GcDbObjectId makeCopy(GcDbObjectId source, GcDbObjectId owner, bool primary);
  void copyOwned(const GcDbObject& source, GcDbObjectId copy);
  void bringAlong(const GcDbObject& source);
  // The counterpart of an object that a copy needs in the target database; null when it stays behind.
  GcDbObjectId counterpart(GcDbObjectId source);
  GcDbObjectId counterpartRecord(const class GcDbSymbolTableRecord& record);
  GcDbObjectId counterpartEntry(GcDbObjectId source, GcDbObjectId ownerId);
  GcDbObjectId targetDictionary(GcDbObjectId sourceDictionary);
  [[nodiscard]] GcText drawingName() const;
  void addOwnedInGroups(const GcDbObject& source, GcDbObjectIdArray& owned);
  void replaceRecord(GcDbObjectId source, GcDbObjectId existing);
  void takeEnds(const GcDbBlockTableRecord& source, const GcDbBlockTableRecord& copy);
  Gcad::ErrorStatus attach(GcDbObjectId copy, GcDbObjectId source, GcDbObjectId owner);
  Gcad::ErrorStatus fill(const Pending& pending);
  void keepToCopies(GcDbHatch& copy, const GcDbHatch& source) const;
  void sortCopies(GcDbSortentsTable& copy, GcDbObjectId sourceBlock) const;
  GcDbObjectId translated(GcDbObjectId id, int kind) const;

  GcDbDatabase& m_source;
  GcDbDatabase& m_target;
  GcDbIdMapping& m_map;
  GcDb::DuplicateRecordCloning m_mode;
  std::vector<Pending> m_pending;
};
