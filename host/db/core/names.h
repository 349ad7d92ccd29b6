// Names of records: looking them up, checking them, and the index tables keep of them.
#pragma once

#include <unordered_map>

#include "db/objectid.h"
#include "host/db/describe/field.h"
#include "host/rx/view.h"

// The record a file means by its name in a row of the kind (layer, linetype, text style, dimension style,
// block). A missing one is created, so that nothing that refers to it is lost; an empty name gives null.
GcDbObjectId gcdbRecordByName(GcDbDatabase* database, Is kind, GcView name);

// The name of a symbol table record, erased ones included; empty for a null id. Valid until it is renamed.
GcView gcdbNameOfRecord(GcDbObjectId id);

// True for a name a record may have: not empty, none of < > / \ " : ; ? * | , = ` (an asterisk or a bar may
// stand where anonymous and dependent names have them), no control characters.
bool gcdbIsValidRecordName(GcView name, bool allowSpecial);

// Name to id without regard to case; several records may share a name ("*Active" viewports). Looking up
// allocates nothing.
struct GcDbNameIndex {
  struct Hash {
    using is_transparent = void;
    size_t operator()(GcView name) const { return static_cast<size_t>(hashNoCase(name)); }
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(GcView a, GcView b) const { return equalNoCase(a, b); }
  };
  std::unordered_multimap<GcText, GcDbObjectId, Hash, Equal> map;

  void add(GcView name, GcDbObjectId id) { map.emplace(GcText(name), id); }
  void remove(GcView name, GcDbObjectId id);
  // The first one that is not erased; an erased one when there is no other and `erased` is set.
  [[nodiscard]] GcDbObjectId find(GcView name, bool erased) const;
};
