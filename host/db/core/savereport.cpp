#include "host/db/core/savereport.h"

#include "host/rx/text/number.h"

std::string GcDbSaveReport::describe(const GcDbSaveEntry& entry) {
  std::string line = entry.object.empty() ? "drawing" : entry.object;
  if (entry.handle != 0) line += ' ' + gc::hexText(entry.handle);
  line += entry.action == GcDbSaveAction::Mapped ? ": mapped: " : ": left out: ";
  return line + entry.text;
}
