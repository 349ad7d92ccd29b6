// How readers of files put objects into tables, blocks and sequences: as the file has them, without the checks, the
// notifications and the undo records of the interface.
#pragma once

#include "db/database.h"
#include "db/symboltable.h"

class GcDbLoader {
 public:
  // The record has its id; it goes to the end of the table.
  static void appendRecord(GcDbSymbolTable& table, const GcDbSymbolTableRecord& record);
  // The entity has its id and the block as its owner.
  static void appendEntity(GcDbBlockTableRecord& block, GcDbObjectId entity);
  // For mending: the list as it should be.
  static void setEntities(GcDbBlockTableRecord& block, const GcDbObjectIdArray& entities);
  static void setBlockBegin(GcDbBlockTableRecord& block, GcDbObjectId begin);
  static void setBlockEnd(GcDbBlockTableRecord& block, GcDbObjectId end);
  // Gives a block the begin and end entities it lacks.
  static void completeBlock(GcDbObjectId block);
  static void completeBlock(GcDbBlockTableRecord& record);  // which is open for write
  static void setOwner(GcDbObject& object, GcDbObjectId owner);
  // The file's name of a record, whatever it is.
  static void setName(GcDbSymbolTableRecord& record, const GcString& name);
  // Gives two blocks each other's name.
  static void swapNames(GcDbDatabase& database, GcDbObjectId first, GcDbObjectId second);
};
