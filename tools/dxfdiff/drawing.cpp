#include "tools/dxfdiff/drawing.h"

namespace gc::dxfdiff {

using dxf::ReadStatus;
using dxf::Tag;
using dxf::TagReader;

Drawing::Drawing(std::string_view file) {
  readHead(file);
  readRecords(file);
}

// The version and the code page, which say how text is encoded.
void Drawing::readHead(std::string_view file) {
  TagReader reader(file);
  Tag tag;
  std::string variable, version, page;
  while (reader.next(tag) == ReadStatus::Tag && !tag.is(0, "ENDSEC")) {
    if (tag.code == 9) variable = tag.word();
    if (tag.code == 1 && variable == "$ACADVER") version = tag.word();
    if (tag.code == 3 && variable == "$DWGCODEPAGE") page = tag.word();
  }
  m_text = DrawingText(codePageByName(page), version >= "AC1021");
}

void Drawing::begin(const Tag& tag) {
  finish();
  Record record;
  if (tag.code == 0) record.type = tag.word();
  if (record.type == "BLOCK" || record.type == "TABLE") m_group.clear();
  m_records.push_back(std::move(record));
  if (tag.code == 9) m_group = tag.word();
}

// Names and handles met in the record that is being read, which say where it and what follows stand.
void Drawing::place(const Tag& tag) {
  Record& record = m_records.back();
  const std::string& type = record.type;
  const bool isHandle = tag.code == 5 || tag.code == 105;
  const bool isDimStyle = type == "DIMSTYLE";  // its group 5 is a block name of old files
  if (isHandle && !type.empty() && record.handle == 0 && !(isDimStyle && tag.code == 5))
    (void)tag.handle(record.handle);
  if (tag.code != 2 && !(tag.code == 1 && type == "CLASS")) return;
  if (type == "SECTION") {
    m_section = tag.word();
    m_group.clear();
  } else if (type == "TABLE" || (type == "BLOCK" && m_group.empty()) || (type == "CLASS" && tag.code == 1)) {
    m_group = tag.word();
  }
}

std::string Drawing::placeKey(const Record& record) const {
  return record.place + '\n' + std::to_string(record.ordinal);
}

void Drawing::finish() {
  if (m_records.empty()) return;
  Record& record = m_records.back();
  record.place = m_section;
  if (!m_group.empty()) record.place += ' ' + m_group;
  record.ordinal = m_counts[record.place]++;
  if (record.handle != 0) m_byHandle.emplace(record.handle, m_records.size() - 1);
  m_byPlace.emplace(placeKey(record), m_records.size() - 1);
  const bool ends =
      record.type == "ENDBLK" || record.type == "ENDTAB" || record.type == "ENDSEC" || record.type == "CLASS";
  if (ends) m_group.clear();
  if (record.type == "ENDSEC") m_section.clear();
}

void Drawing::readRecords(std::string_view file) {
  TagReader reader(file);
  Tag tag;
  for (;;) {
    const ReadStatus status = reader.next(tag);
    if (status != ReadStatus::Tag) {
      if (status != ReadStatus::End) m_damage = "line " + std::to_string(reader.lineAt(reader.errorOffset()));
      break;
    }
    if (tag.code == 0 || (tag.code == 9 && m_section == "HEADER")) {
      begin(tag);
    } else if (!m_records.empty()) {
      place(tag);
      m_records.back().tags.push_back(tag);
    }
  }
  finish();
}

const Record* Drawing::match(const Record& other) const {
  if (other.handle != 0) {
    const auto found = m_byHandle.find(other.handle);
    if (found != m_byHandle.end()) return &m_records[found->second];
    // A file without handles is matched by place from either side.
    if (!m_byHandle.empty()) return nullptr;
  }
  const auto found = m_byPlace.find(placeKey(other));
  return found != m_byPlace.end() && m_records[found->second].type == other.type ? &m_records[found->second] : nullptr;
}

}  // namespace gc::dxfdiff
