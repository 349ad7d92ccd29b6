// The names under which records and entries of another drawing come into this one.
#pragma once

#include "db/dbdefs.h"
#include "host/rx/view.h"

// What every drawing has under the same name: it is never renamed, the target's own stands for it.
[[nodiscard]] bool gcdbStandsInEveryDrawing(GcView name);

// "*U12" and its like.
[[nodiscard]] bool gcdbIsAnonymousName(GcView name);

// The name of a copy as the mode has it; the same name when the target's own of that name is to be used or replaced.
//   XrefMangleName  DRAWING$0$NAME, always        MangleName  $0$NAME when NAME is taken
//   UnmangleName    NAME of DRAWING$0$NAME        anonymous names get a fresh number when they are taken
// Numbers rise until the name is free. `taken(name)` tells whether the target has a name.
template <class Taken>
[[nodiscard]] GcText gcdbNameOfCopy(GcDb::DuplicateRecordCloning mode, GcView name, GcView drawing, const Taken& taken);

// The parts of the above that do not ask.
[[nodiscard]] GcText gcdbUnmangled(GcView name);
[[nodiscard]] GcText gcdbNumbered(GcView before, int number, GcView after);

template <class Taken>
GcText gcdbNameOfCopy(GcDb::DuplicateRecordCloning mode, GcView name, GcView drawing, const Taken& taken) {
  const auto firstFree = [&](GcView before, int from, GcView after) {
    GcText candidate = gcdbNumbered(before, from, after);
    for (int n = from + 1; taken(candidate); ++n) candidate = gcdbNumbered(before, n, after);
    return candidate;
  };
  if (gcdbIsAnonymousName(name)) {
    if (!taken(name)) return GcText(name);
    GcView stem = name;
    while (stem.back() >= '0' && stem.back() <= '9') stem.remove_suffix(1);
    return firstFree(stem, 1, {});
  }
  if (gcdbStandsInEveryDrawing(name)) return GcText(name);
  const GcText behind = GcText(GC_T("$")).append(name);
  if (mode == GcDb::kDrcXrefMangleName) return firstFree(GcText(drawing).append(GC_T("$")), 0, behind);
  if (mode == GcDb::kDrcMangleName && taken(name)) return firstFree(GC_T("$"), 0, behind);
  return mode == GcDb::kDrcUnmangleName ? gcdbUnmangled(name) : GcText(name);
}
