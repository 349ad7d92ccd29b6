// Entity names of LISP: one word made of the object's place in memory and the serial number of its database, so that
// two names are the same exactly when they name the same object.
#pragma once

#include "db/objectid.h"
#include "host/lisp/core/interpreter.h"

namespace lisplib {

// A null id gives 0.
uint64_t nameWord(GcDbObjectId id);
// A null id for a name whose database is gone.
GcDbObjectId idOfWord(uint64_t word);

// A heap value; a null id gives a null entity name.
lisp::LispValue makeName(lisp::Vm& vm, GcDbObjectId id);
// False when the value is no entity name (or names nothing any more).
bool idOf(lisp::LispValue value, GcDbObjectId& id);

void wordToGds(uint64_t word, gds_name& name);
uint64_t wordOfGds(const gds_name name);

}  // namespace lisplib
