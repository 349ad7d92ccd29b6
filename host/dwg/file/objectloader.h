// The objects of a file: from records at the places of the object map into the database.
#pragma once

#include <vector>

#include "host/dwg/file/objectmap.h"
#include "host/dwg/file/sections.h"
#include "host/dwg/record/recordcodec.h"

namespace gc::dwg {

// What objects say of others that must be there before it can be followed.
struct LoadedLinks {
  struct Owner {
    GcDbObject* object;
    RecordLinks links;
  };
  struct Owned {
    uint64_t owner;   // handle
    uint64_t handle;  // of the entity
    uint64_t next;    // the one behind it in the chain
    GcDbObjectId id;
  };
  std::vector<Owner> owners;  // tables, blocks, polylines, inserts
  std::vector<Owned> owned;   // R13..R2000: entities but frames, in the order they were read
  size_t keptRaw = 0;         // objects of unknown classes
};

class ObjectLoader {
 public:
  ObjectLoader(const Sections& sections, RecordContext& context, GcDbLoadReport& report, LoadedLinks& links)
      : m_sections(sections), m_context(context), m_report(report), m_links(links) {}

  // Reads every object of the map. References between them are ids from the start; order matters only for the names
  // that extended data need, so those records come first.
  void loadAll(const std::vector<MapEntry>& map);

 private:
  // The record of an entry; empty when it is not in the file.
  [[nodiscard]] RecordBits cut(const MapEntry& entry) const;
  void checkSum(const MapEntry& entry, const RecordBits& bits);
  bool isBelievable(const MapEntry& entry, const RecordBegin& begin, const RecordBits& bits);
  void load(const MapEntry& entry);
  void adopt(const MapEntry& entry, ReadRecord&& record);

  const Sections& m_sections;
  RecordContext& m_context;
  GcDbLoadReport& m_report;
  LoadedLinks& m_links;
  uint64_t m_bytesRead = 0;
};

}  // namespace gc::dwg
