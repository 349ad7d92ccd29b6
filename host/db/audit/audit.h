// The audit of a drawing: what is wrong with its objects, and mending it. docs/audit.md is the catalogue.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class GcDbDatabase;

enum class GcDbDefect : uint8_t {
  MissingRecord,        // a table, a space or a record that every drawing has
  BlockWithoutEnds,     // a definition without its BLOCK or ENDBLK entity
  HandleSeed,           // the next handle to be given is taken
  RecordName,           // a table record without a name or with one it may not have
  DuplicateName,        // two records of a table by one name
  OwnerCycle,           // an object that owns itself through others
  WrongOwner,           // an entry, a part or an entity that names another owner than the one that holds it
  NoOwner,              // an entity in no block
  EntityTwice,          // an entity listed twice, or by two blocks
  NotListed,            // an entity whose block does not list it
  BlockInItself,        // a definition that refers to itself, directly or through others
  NoBlock,              // a block reference without its definition
  DanglingReference,    // a reference to nothing
  DanglingReactor,      // a reactor that is not there
  ExtensionDictionary,  // one that is not there or is none
  DictionaryEntry,      // an entry without an object
  DictionaryKey,        // an empty key, or one that is there twice
  SequenceEnd,          // vertices or attributes without their end
  NotFinite,            // a number that is none, an infinity
  Direction,            // a normal or direction without length, or of another length than 1
  Color,                // an index outside 0 to 256
  LineWeight,           // a weight the format does not have
  LinetypeScale,        // not above zero
  Size,                 // a radius, a text height that is not above zero
  Counts,               // knots, weights and control points that do not fit each other; a mesh of other sizes
  Application,          // extended data of an application that is not registered
  DataBraces,           // extended data whose braces do not match
  Count                 // how many there are
};

struct GcDbDefectKind {
  GcDbDefect defect;
  const char* code;   // "A01", for scripts
  const char* found;  // what is wrong
  const char* done;   // what mending does; null: it cannot be mended
};

[[nodiscard]] const GcDbDefectKind& gcdbKindOfDefect(GcDbDefect defect);

struct GcDbAuditEntry {
  GcDbDefect defect;
  uint64_t handle = 0;
  std::string object;  // DXF name
  std::string detail;
  bool mended = false;
};

struct GcDbAuditReport {
  std::vector<GcDbAuditEntry> entries;

  [[nodiscard]] bool isClean() const { return entries.empty(); }
  [[nodiscard]] int mended() const;
  // One line: "A13 LINE 2F: refers to nothing: layer: taken off".
  static std::string describe(const GcDbAuditEntry& entry);
};

// Checks all objects that are not erased; with `mend` it mends what it finds. Nothing may be open.
[[nodiscard]] GcDbAuditReport gcdbAudit(GcDbDatabase& database, bool mend);
