#include "host/db/clone/copyname.h"

#include <string>

#include "host/db/core/names.h"

bool gcdbStandsInEveryDrawing(GcView name) {
  for (const GCHAR* each : {GC_T("0"), GC_T("ByLayer"), GC_T("ByBlock"), GC_T("Continuous"), GC_T("Standard"),
                            GC_T("ACAD"), GC_T("*Active"), GC_T("Defpoints"), GC_T("Global"), GC_T("Normal"),
                            GC_T("Model"), GC_T("*Model_Space"), GC_T("*Paper_Space")})
    if (equalNoCase(name, each)) return true;
  return false;
}

bool gcdbIsAnonymousName(GcView name) {
  return name.size() > 1 && name[0] == '*' && name.find(GC_T("_Space")) == GcView::npos &&
         !gcdbStandsInEveryDrawing(name);
}

GcText gcdbUnmangled(GcView name) {
  const size_t first = name.find(GC_T('$'));
  if (first == GcView::npos) return GcText(name);
  size_t at = first + 1;
  while (at < name.size() && name[at] >= '0' && name[at] <= '9') ++at;
  const bool isMangled = at > first + 1 && at + 1 < name.size() && name[at] == '$';
  return GcText(isMangled ? name.substr(at + 1) : name);
}

GcText gcdbNumbered(GcView before, int number, GcView after) {
  GcText text(before);
  for (const char digit : std::to_string(number)) text.push_back(static_cast<GCHAR>(digit));
  return text.append(after);
}
