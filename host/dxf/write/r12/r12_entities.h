// Entities as R12 has them: those it knows with the groups it knows, the others replaced.
#pragma once

#include <unordered_map>

#include "host/db/core/store.h"
#include "host/dxf/write/r12/r12_draw.h"

namespace gc::dxf {

class R12Entities {
 public:
  R12Entities(GroupWriter& out, const R12Names& names, const GcDbDatabase& database, SaveNotes& notes,
              std::uint64_t firstHandle);

  // A block for every hatch that is replaced by one; before all other blocks, since these may refer to them.
  void writeHatchBlocks();
  // An entity with its vertices or attributes.
  void write(const GcDbEntity& entity, const GcDbBlockTableRecord& block);
  // BLOCK and ENDBLK of a definition.
  void writeBlockBegin(const GcDbEntity& begin, const GcDbBlockTableRecord& block);
  void writeBlockEnd(const GcDbEntity& end, const GcDbBlockTableRecord& block);

  // The next handle that has not been given.
  [[nodiscard]] std::uint64_t nextHandle() const { return m_nextHandle; }

 private:
  void writeHead(const GcDbEntity& entity, std::string_view type, const GcDbBlockTableRecord& block);
  void writeNative(const GcDbEntity& entity, std::string_view type, const GcDbBlockTableRecord& block);
  void writeForeign(const GcDbEntity& entity, R12Groups& groups);
  void writeParts(const GcDbEntity& entity, const GcDbBlockTableRecord& block);
  void replace(const GcDbEntity& entity, const GcDbBlockTableRecord& block);
  bool replaceByInsert(const GcDbEntity& entity);
  void drawInto(const GcDbEntity& entity);
  void tellLosses(const GcDbEntity& entity, const std::string& dropped);
  void writeHatchBlock(const GcDbEntity& hatch);
  void findReach();

  GroupWriter& m_out;
  const R12Names& m_names;
  const GcDbDatabase& m_database;
  SaveNotes& m_notes;
  bool m_keepsUnknown;
  std::uint64_t m_nextHandle;
  R12Emitter m_emitter;
  double m_reach = 1e6;
  struct HatchBlock {
    GcText name;
    bool isEmpty = true;
  };
  std::unordered_map<const GcDbObject*, HatchBlock> m_hatchBlocks;
};

}  // namespace gc::dxf
