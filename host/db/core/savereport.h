// What a writer of files could not say in the version that was asked for, and what it did instead. Nothing is mapped or
// left out silently.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum class GcDbSaveAction : uint8_t { Mapped, LeftOut };

struct GcDbSaveEntry {
  GcDbSaveAction action = GcDbSaveAction::Mapped;
  uint64_t handle = 0;  // 0: of the drawing, not of one object
  std::string object;   // DXF name: "HATCH"
  std::string text;     // UTF-8: what cannot be said and what was done
};

class GcDbSaveReport {
 public:
  void add(GcDbSaveEntry entry) { m_entries.push_back(std::move(entry)); }
  [[nodiscard]] const std::vector<GcDbSaveEntry>& entries() const { return m_entries; }
  [[nodiscard]] bool isClean() const { return m_entries.empty(); }
  void clear() { m_entries.clear(); }
  // One line: "HATCH 2F: mapped: …".
  static std::string describe(const GcDbSaveEntry& entry);

 private:
  std::vector<GcDbSaveEntry> m_entries;
};
