// The TABLES section. Tables are read in the order in which they refer to each other by name, whatever order the file
// has them in.
#pragma once

#include "host/dxf/read/object_reader.h"

namespace gc::dxf {

class TableReader {
 public:
  TableReader(LoadContext& context, RecordReader& records, ObjectReader& objects)
      : m_context(context), m_records(records), m_objects(objects) {}

  // Reads the section, the SECTION record of which has just been read, and its ENDSEC.
  void readSection();

  // Makes the tables the file does not have, and the records every drawing has in them.
  void completeTables();

 private:
  void completeTable(int which);
  struct Span {
    std::string name;
    std::size_t offset;
    bool hasHead;  // false: records of the kind that stand in no table
  };
  std::vector<Span> findTables(std::size_t& end) const;
  void readTable(const Span& span);
  GcDbSymbolTable* needTable(const RawRecord& head, int which, bool hasHead);
  void readRecord(const RawRecord& record, GcDbSymbolTable& table);

  LoadContext& m_context;
  RecordReader& m_records;
  ObjectReader& m_objects;
};

}  // namespace gc::dxf
