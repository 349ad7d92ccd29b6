// All groups from a row on to the end of its section, kept as they came: for parts of classes that nothing here
// needs to understand.
#pragma once

#include "host/db/describe/field.h"

template <auto Member>
constexpr GcDbField rest(const char* name) {
  return field<Member>(-1, name, Is::Plain);
}
