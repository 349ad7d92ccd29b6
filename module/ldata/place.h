// The two places where named values live, and what can be done with one value there:
//   global: a dictionary of that name in the drawing's named objects dictionary,
//   entity: the entity's extension dictionary.
// Keys and names go to the dictionaries as they are. Nothing stays open.
#pragma once

#include "module/app/rbchain.h"

enum class Stored : uint8_t { No, Yes, NoEntity };  // NoEntity: the entity could not be opened

namespace globalvalues {

bool put(const GCHAR* dictionary, const GCHAR* key, const GCHAR* value);
GcString get(const GCHAR* dictionary, const GCHAR* key);
bool erase(const GCHAR* dictionary, const GCHAR* key);
void list(const GCHAR* dictionary, RbChain& entries);

}  // namespace globalvalues

namespace entityvalues {

Stored put(GcDbObjectId entity, const GCHAR* key, const GCHAR* value);
Stored get(GcDbObjectId entity, const GCHAR* key, GcString& value);
Stored erase(GcDbObjectId entity, const GCHAR* key);
// Erased entities too.
Stored list(GcDbObjectId entity, RbChain& entries);

}  // namespace entityvalues

// Appends one (key value) sublist for every value of the dictionary that has a text; a foreign value always has one.
// [dictionary open for read]
void appendValues(const GcDbDictionary& dictionary, RbChain& entries);
