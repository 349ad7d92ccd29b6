#include "host/db/core/loadreport.h"

#include <cstdio>

void GcDbLoadReport::add(GcDbLoadEntry entry) {
  ++m_total;
  if (m_entries.size() < kMostKept) m_entries.push_back(std::move(entry));
}

void GcDbLoadReport::clear() {
  m_entries.clear();
  m_total = 0;
}

std::string GcDbLoadReport::describe(const GcDbLoadEntry& entry) {
  static constexpr const char* kActions[] = {"note", "repaired", "skipped", "missing"};
  std::string out;
  char buffer[64];
  if (entry.line != 0) {
    std::snprintf(buffer, sizeof buffer, "line %llu, ", static_cast<unsigned long long>(entry.line));
    out += buffer;
  } else if (entry.offset != 0) {
    std::snprintf(buffer, sizeof buffer, "offset %llu, ", static_cast<unsigned long long>(entry.offset));
    out += buffer;
  }
  if (entry.handle != 0) {
    std::snprintf(buffer, sizeof buffer, "handle %llX, ", static_cast<unsigned long long>(entry.handle));
    out += buffer;
  }
  out += kActions[static_cast<int>(entry.action)];
  out += ": ";
  return out + entry.text;
}
