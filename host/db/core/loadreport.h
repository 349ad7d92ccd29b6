// What a reader of files found wrong and what it did about it. Nothing is repaired or skipped silently.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum class GcDbLoadAction : uint8_t { Noted, Repaired, Skipped, Missing };

struct GcDbLoadEntry {
  GcDbLoadAction action = GcDbLoadAction::Noted;
  uint64_t line = 0;    // DXF: line, 1-based; 0 when not known
  uint64_t offset = 0;  // byte offset in the file
  uint64_t handle = 0;  // 0 when not known
  std::string text;     // UTF-8: what is wrong and what was done
};

class GcDbLoadReport {
 public:
  void add(GcDbLoadEntry entry);
  [[nodiscard]] const std::vector<GcDbLoadEntry>& entries() const { return m_entries; }
  // Entries beyond the most that are kept are only counted.
  [[nodiscard]] uint64_t total() const { return m_total; }
  [[nodiscard]] bool isClean() const { return m_total == 0; }
  void clear();
  // One line: "line 120, handle 2F: skipped: …".
  static std::string describe(const GcDbLoadEntry& entry);

 private:
  static constexpr size_t kMostKept = 10000;
  std::vector<GcDbLoadEntry> m_entries;
  uint64_t m_total = 0;
};
