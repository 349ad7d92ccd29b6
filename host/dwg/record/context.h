// What records need to know of the file they stand in.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "db/database.h"
#include "host/db/core/store.h"
#include "host/dwg/record/classmap.h"
#include "host/dwg/record/packrow.h"
#include "host/rx/text/drawing_text.h"

namespace gc::dwg {

struct RecordContext {
  explicit RecordContext(GcDbDatabase& db) : database(db) {}

  GcDbDatabase& database;
  int version = kR2000;
  DrawingText text{CodePage::Ansi1252, false, Carets::Plain};  // before AC1021
  int codePageNumber = 30;                                     // of `text`, as extended data names it
  ClassMap classes;
  // Records that entities refer to without a handle.
  GcDbObjectId byLayer, byBlock, continuous, modelSpace, paperSpace;
  // Names of application and layer records by handle, for extended data; what is not known yet is asked for.
  std::unordered_map<uint64_t, GcText> names;
  // Names of blocks by the handle of their begin entity: the record itself has anonymous names without their number.
  std::unordered_map<uint64_t, GcText> blockNames;

  // From R2013 on: objects of which the file's data section holds more (bodies of solids, pictures of blocks), by handle.
  std::unordered_set<uint64_t> inDataSection;
  // Objects that the version cannot hold and that are left out of the file, by handle.
  std::unordered_set<uint64_t> omitted;

  // Whether the file that is written has the object: it is there, not erased and not left out.
  [[nodiscard]] bool isWritten(GcDbObjectId id) const {
    const GcDbStub* stub = id.stub();
    return stub != nullptr && stub->object != nullptr && !stub->erased &&
           (omitted.empty() || omitted.count(stub->handle) == 0);
  }

  [[nodiscard]] GcDbObjectId idOf(uint64_t handle) const;
  // The name of a table record, empty when there is none.
  [[nodiscard]] GcText nameOf(uint64_t handle) const;
  // The handle of an application's record, 0 when it has none.
  [[nodiscard]] uint64_t handleOfApplication(GcView name) const;
  [[nodiscard]] uint64_t handleOfLayer(GcView name) const;
};

// How an entity stands among those of its owner.
struct EntityLinks {
  enum class Mode : uint8_t { Owner = 0, PaperSpace = 1, ModelSpace = 2 };
  Mode mode = Mode::Owner;  // whether the owner is given or is one of the two spaces
  bool consecutive = true;  // R13..R2000: the neighbours have the handles before and after this one
  uint64_t previous = 0;    // R13..R2000
  uint64_t next = 0;
};

// Links of an object to others that are no fields of its class.
struct RecordLinks : EntityLinks {
  uint64_t firstPart = 0;  // R13..R2000: ends of the chain of owned entities
  uint64_t lastPart = 0;
  GcDbObjectIdArray parts;  // from AC1018 on: the owned entities themselves
  GcDbObjectId sequenceEnd;
  bool hasParts = false;
  bool bodyIsApart = false;  // the file's data section holds more of the object
};

}  // namespace gc::dwg
