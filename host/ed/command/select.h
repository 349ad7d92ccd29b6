// "Select objects:" as commands ask it.
#pragma once

#include "host/ed/command/command.h"
#include "host/ed/selectionsets.h"

namespace ed {

// Entities named one by one, sets, picks, and the words All, Last, Previous, Window, Crossing, Fence, WPolygon, CPolygon,
// Add, Remove, Group, SIngle … until Enter. Locked layers are kept out. The result becomes the previous set.
Task<std::vector<GcDbObjectId>> selectObjects(CommandInput& in, const char* prompt = "\nSelect objects: ");

// The same for the commands that end with the first entity or set a program gives them, without an Enter, unless
// QAFLAGS has bit 1. A person's selection goes on until Enter.
Task<std::vector<GcDbObjectId>> selectOnce(CommandInput& in, const char* prompt = "\nSelect objects: ");

// How a program has the person select (ssget).
struct PersonSelection {
  bool single = false;     // the first answer is all
  bool cancelled = false;  // by the person; the result is empty then
  SelectionSet chosen;     // with what each was selected by
};
// Locked layers are not kept out, and the previous set stays.
void selectByPerson(Editor& editor, PersonSelection& how);

}  // namespace ed
