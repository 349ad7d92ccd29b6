// The description of a whole class: its own rows and, before them, those of its bases; and where it is
// registered. Adding a class: header, rows, one line in host/db/describe/classes.inc, a golden folder.
#pragma once

#include <span>

#include "host/db/describe/field.h"
#include "rx/rxclass.h"

struct GcDbClassInfo {
  const GcDbField* const* rows = nullptr;  // all rows, bases first
  int rowCount = 0;
};

// Registers every class of the database once per process.
void gcdbRegisterClasses();

// Every class objects can be made of, in the order of registration.
std::span<GcRxClass* const> gcdbDescribedClasses();

// The rows of an object's class; null for classes that file themselves and for unknown ones.
const GcDbClassInfo* gcdbInfoOf(const GcDbObject& object);

// Defines desc(), isA() and rxInit() of a class whose registration stands in the registry's table.
#define GCDB_DEFINE_CLASS(Class, rxName)                                                           \
  GcRxClass* Class::desc() {                                                                       \
    static GcRxClass* const descriptor = (gcdbRegisterClasses(), gcrxFindGcRxClass(GC_T(rxName))); \
    return descriptor;                                                                             \
  }                                                                                                \
  GcRxClass* Class::isA() const { return desc(); }                                                 \
  void Class::rxInit() { gcdbRegisterClasses(); }

// The same with the table of its own rows (must follow the rows' definition in the file or precede it alike).
#define GCDB_FIELD_COUNT(Class) const int Class::kFieldCount = static_cast<int>(std::size(Class::kFields))
