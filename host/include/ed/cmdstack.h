// The command stack: where a plug-in adds commands of its own. Found in the system registry under
// GCED_REGISTERED_COMMANDS. Main thread only.
#pragma once

#include "rx/gcchar.h"
#include "rx/gcstatus.h"
#include "rx/rxobject.h"

class GcEdCommandStack : public GcRxObject {
 public:
  // Names are compared without regard to case; the local name is what a person types, the global one works in
  // every language with "_" before it. `flags` are the command's own (0: not transparent).
  // Errors: eDuplicateKey when the group has the command already, eInvalidInput for an empty name.
  virtual Gcad::ErrorStatus addCommand(const GCHAR* group, const GCHAR* globalName, const GCHAR* localName, int flags,
                                       void (*function)()) = 0;
  // Errors: eKeyNotFound.
  virtual Gcad::ErrorStatus removeCmd(const GCHAR* group, const GCHAR* globalName) = 0;
};
