// The drawings that blocks refer to. Each is a database of its own beside the one that refers to it, read when it is
// first asked for; its entities are drawn where the block is inserted, and nothing of it is saved with the other.
#pragma once

#include <map>
#include <memory>

#include "db/database.h"
#include "host/rx/view.h"

struct GcDbExternal {
  enum class Status : uint8_t { Loaded, Unloaded, NotFound, Unreadable, Circular, Hidden };
  Status status = Status::Unloaded;
  std::unique_ptr<GcDbDatabase> database;  // when loaded
  GcString file;                           // full name, when found
  std::string message;                     // when unreadable
};

class GcDbExternals {
 public:
  std::map<uint64_t, GcDbExternal> byBlock;  // by the block's handle
};

[[nodiscard]] bool gcdbIsExternal(GcDbObjectId block);
// What stands behind a block that is an external reference; the first call looks for it. The file is looked for
// as named, beside the drawing and along the support path. A drawing that refers to itself, over others too, is
// circular; overlays of a drawing that is itself referred to stay hidden.
const GcDbExternal& gcdbNeedExternal(GcDbObjectId block);
// The next call of gcdbNeedExternal looks anew.
void gcdbForgetExternal(GcDbObjectId block);
void gcdbUnloadExternal(GcDbObjectId block);

// The name a record of an external drawing has in the drawing that refers to it: "PLAN|WALLS".
[[nodiscard]] GcText gcdbDependentName(GcView reference, GcView record);
// The record of `host` that stands for one of a drawing it refers to, over several if need be: layer 0, the usual
// linetypes, dependent records by name. A record of the host stands for itself; null when there is none.
[[nodiscard]] GcDbObjectId gcdbHostRecord(const GcDbDatabase& host, GcDbObjectId record);
