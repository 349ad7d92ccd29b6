// Entries of the drawing's dictionaries by name.
#pragma once

#include "db/dictionary.h"
#include "host/ed/editor.h"

namespace ed {

// The dictionary of a name in the root of named objects; null when there is none and it is not to be made.
[[nodiscard]] GcDbObjectId dictionaryNamed(GcDbDatabase& database, const GCHAR* name, bool make = false);
// The dictionary of a name in another one.
[[nodiscard]] GcDbObjectId subdictionary(GcDbObjectId dictionary, const GCHAR* name, bool make = false);
// The object of a name in a dictionary; null when there is none.
[[nodiscard]] GcDbObjectId entryNamed(GcDbObjectId dictionary, GcView name);
// All entries that live, in their order.
[[nodiscard]] std::vector<GcDbDictionaryEntry> entriesOf(GcDbObjectId dictionary);
// Puts a new object in, in place of what had the name. Takes the object over. A null id when it cannot.
GcDbObjectId putEntry(GcDbObjectId dictionary, GcView name, GcDbObject* object);

// The extension dictionary of an object; null when there is none and it is not to be made.
[[nodiscard]] GcDbObjectId extensionOf(GcDbObjectId object, bool make = false);

void eraseObject(GcDbObjectId id);

}  // namespace ed
