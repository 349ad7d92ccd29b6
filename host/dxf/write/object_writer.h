// One object as a record of a file: type, handle, dictionary, reactors, owner, fields by its class's description with
// the groups kept beside them, extended data.
#pragma once

#include "db/entity.h"
#include "host/db/core/extra.h"
#include "host/dxf/write/group_writer.h"

class GcDbBlockTableRecord;
class GcDbDictionary;

struct GcDbZombieData;

namespace gc::dxf {

class ObjectWriter {
 public:
  explicit ObjectWriter(GroupWriter& out) : m_out(out) {}

  // An object or a table record.
  void write(const GcDbObject& object);
  // An entity without its parts. `block`: the block it is in, directly or as a part.
  void writeEntity(const GcDbEntity& entity, const GcDbBlockTableRecord& block);
  // A BLOCK: the entity that begins the block, with what the block tells of itself.
  void writeBlockBegin(const GcDbEntity& begin, const GcDbBlockTableRecord& block);
  // The beginning of a TABLE up to its records.
  void writeTableHead(const GcDbObject& table, const char* name, int count);

 private:
  class Sections;

  void writeHead(const GcDbObject& object, GcView type);
  void writeIdentity(const GcDbObject& object, int handleCode);
  void writeFields(const GcDbObject& object, const GcDbBlockTableRecord* block, const GcDbBlockTableRecord* told);
  void writeDictionaryEntries(const GcDbDictionary& dictionary);
  void writeTail(const GcDbObject& object);
  void writeProxied(const GcDbObject& object, const GcDbZombieData& data);

  GroupWriter& m_out;
};

// The record type of an object in files; empty for objects that are not filed.
[[nodiscard]] GcView typeOf(const GcDbObject& object);

}  // namespace gc::dxf
