// Objects made and changed from lists of groups (entmake, entmod), by the same descriptions that files are read by.
#pragma once

#include <memory>
#include <string>

#include "db/database.h"
#include "host/db/describe/group.h"

// Changes the object that group -1 names to what the list says; groups that are missing stay as they are; kind,
// handle and owner cannot change. Extended data behind a group -3 replaces that of the named applications.
// Errors: eInvalidInput (no object in the list), eWasErased, eOnLockedLayer, eInvalidDxfCode (a group the kind does
// not have), eRegappIdNotFound, eDuplicateRecordName …; the object is then as it was.
Gcad::ErrorStatus gcdbEntityModify(const GcDbGroupList& list);

// Makes objects from lists, one after the other: entities into the current space (or the block being defined),
// table records into their tables, other objects without an owner. Lists of BLOCK … ENDBLK and of POLYLINE or
// INSERT (66 . 1) … SEQEND follow each other; what they define appears with the last one.
class GcDbEntityMaker {
 public:
  explicit GcDbEntityMaker(GcDbDatabase& database);
  ~GcDbEntityMaker();
  GcDbEntityMaker(const GcDbEntityMaker&) = delete;
  GcDbEntityMaker& operator=(const GcDbEntityMaker&) = delete;

  // What came of a list. A layer that is named but not there is made with it; a linetype, style or block is not, and
  // the list fails (eKeyNotFound).
  struct Made {
    Gcad::ErrorStatus status = Gcad::eOk;
    GcDbObjectId id;   // null for a list that only begins or continues something
    GcText blockName;  // of ENDBLK
  };
  Made make(const GcDbGroupList& list, GcDbObjectId space);
  // Drops what has been begun and not ended.
  void cancel();

 private:
  Made makeOne(const GcDbGroupList& list, GcDbObjectId space);
  Made beginBlock(const GcDbGroupList& list);
  Made endBlock();
  Made makeEntity(const GcDbGroupList& list, GcRxClass* kind, GcDbObjectId space);
  Made makePart(const GcDbGroupList& list, GcRxClass* kind);
  Made makeRecord(const GcDbGroupList& list, GcRxClass* kind);
  Made makeObject(const GcDbGroupList& list, GcRxClass* kind);

  GcDbDatabase& m_database;
  GcDbObjectId m_block;     // being defined
  GcDbObjectId m_sequence;  // entity whose parts follow
};
