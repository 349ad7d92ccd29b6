// A DXF file as a sequence of records: a group 0 and the groups up to the next one. Damage between tags is reported and
// passed over; a record the file ends in or that is broken by damage says so.
#pragma once

#include <string_view>
#include <vector>

#include "host/dxf/read/load_context.h"

namespace gc::dxf {

struct RawRecord {
  std::string_view type;  // the word of the group 0: "LINE"
  std::size_t offset = 0;
  std::vector<Tag> tags;  // without the group 0
  bool isCut = false;     // the file ends within it, or it is followed by damage

  // The first group of the code before the first subclass marker or extended data; null when there is none.
  [[nodiscard]] const Tag* findHead(int code) const;
  // The first group of the code anywhere; null when there is none.
  [[nodiscard]] const Tag* find(int code) const;
};

class RecordReader {
 public:
  explicit RecordReader(LoadContext& context) : m_context(context) {}

  // Reads the next record, using its memory again. False at the end of the file. Comments between records go to the
  // database's file parts.
  bool next(RawRecord& record);

  // Goes on reading at the group 0 at `offset`.
  void seek(std::size_t offset) { m_context.reader.moveTo(offset); }

 private:
  bool findStart(RawRecord& record);
  void readTags(RawRecord& record);
  bool passLine();
  void keepComment(const Tag& tag);

  LoadContext& m_context;
};

}  // namespace gc::dxf
