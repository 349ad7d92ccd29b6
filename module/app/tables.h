// The module's three tables, which the application object walks: LISP functions, custom classes, commands.
#pragma once

#include <cstdint>
#include <span>

#include "module/app/host.h"

struct LispFunction {
  const GCHAR* name;   // null: the string resource `resourceId` holds the name
  int (*function)();   // the body; null: no entry stands here
  int32_t regFunc;     // 1: the host calls the body directly (gcedRegFunc)
  int32_t funcNumber;  // not used: codes are counted at load
  uint32_t resourceId;
  [[nodiscard]] bool isPresent() const { return function != nullptr; }
};

struct CustomClass {
  GcRxClass* (*desc)();
  void (*rxInit)();
  bool registered;
};

struct CommandEntry {
  const GCHAR* group;
  const GCHAR* globalName;
  const GCHAR* localName;  // null: the string resource `resourceId` holds the name
  int32_t flags;
  void (*function)();
  void* uiContext;
  uint32_t resourceId;
};

// Functions in the order of their codes. Positions of entries that are not present are not counted.
std::span<const LispFunction> lispFunctions();
std::span<CustomClass> customClasses();
std::span<const CommandEntry> commands();  // empty: the module has none

// The entry of a function code, that is the code-th present one; null when there is none. Constant time: the
// present entries are counted once.
const LispFunction* lispFunctionAt(int code);

// Bodies whose work is done elsewhere.
int placeholder();  // takes any arguments, yields nil: the name is reserved for LISP code that mentions it
int notBuilt();     // yields nil; marks the functions that are still to be written
