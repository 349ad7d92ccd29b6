// A DXF file cut into records for comparison.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/dxf/tags/tag_reader.h"
#include "host/rx/text/drawing_text.h"

namespace gc::dxfdiff {

struct Record {
  std::string place;  // "ENTITIES", "BLOCKS *Model_Space", "TABLES LAYER", "HEADER $LTSCALE"
  std::string type;   // "LINE"; empty for header variables
  std::uint64_t handle = 0;
  std::size_t ordinal = 0;     // among the records of the same place
  std::vector<dxf::Tag> tags;  // without the group 0 or 9 that began it
};

class Drawing {
 public:
  // The bytes must outlive the drawing.
  explicit Drawing(std::string_view file);

  [[nodiscard]] const std::vector<Record>& records() const { return m_records; }
  [[nodiscard]] const DrawingText& text() const { return m_text; }
  // "" when the file was read to its end.
  [[nodiscard]] const std::string& damage() const { return m_damage; }

  // The record that corresponds to one of another drawing; null when there is none.
  [[nodiscard]] const Record* match(const Record& other) const;

 private:
  void readHead(std::string_view file);
  void readRecords(std::string_view file);
  void begin(const dxf::Tag& tag);
  void place(const dxf::Tag& tag);
  void finish();
  std::string placeKey(const Record& record) const;

  std::vector<Record> m_records;
  std::unordered_map<std::uint64_t, std::size_t> m_byHandle;
  std::unordered_map<std::string, std::size_t> m_byPlace;
  std::unordered_map<std::string, std::size_t> m_counts;
  DrawingText m_text;
  std::string m_section, m_group;  // the group: table, block or class the reader is in
  std::string m_damage;
};

}  // namespace gc::dxfdiff
