// Entities: the BLOCKS and ENTITIES sections. Vertices and attributes go to the entity they follow.
#pragma once

#include <unordered_map>

#include "host/dxf/read/object_reader.h"

namespace gc::dxf {

class SpaceReader {
 public:
  SpaceReader(LoadContext& context, RecordReader& records, ObjectReader& objects)
      : m_context(context), m_records(records), m_objects(objects) {}

  // Each reads its section, the SECTION record of which has just been read, and its ENDSEC.
  void readBlocks();
  void readEntities();

 private:
  void readBlock(const RawRecord& head);
  GcDbBlockTableRecord* blockOf(const RawRecord& head);
  GcDbBlockTableRecord* newBlock(GcView name);
  GcDbBlockTableRecord* blockByName(GcView name);
  void defineBlocks();
  void readEntity(const RawRecord& record, GcDbBlockTableRecord* into);
  void readPart(const RawRecord& record);
  void endSequence(std::size_t offset);
  GcDbBlockTableRecord* spaceOf(const RawRecord& record, const GcDbObject& entity);
  bool isCut(const RawRecord& record);

  LoadContext& m_context;
  RecordReader& m_records;
  ObjectReader& m_objects;
  GcDbObject* m_parent = nullptr;  // the entity that the next vertices or attributes belong to
  bool m_parentNeedsEnd = false;
  GcDbBlockTableRecord* m_modelSpace = nullptr;
  GcDbBlockTableRecord* m_paperSpace = nullptr;
  GcDbObjectId m_lastOwner;
  GcDbBlockTableRecord* m_lastSpace = nullptr;
  std::unordered_map<GcText, int> m_renamed;  // names defined more than once
};

}  // namespace gc::dxf
