// One object from its record and back. docs/dwg.md draws the record.
//
// A class is read by its packing (host/dwg/packing) or, when it files itself, through the abstract filer. A record must
// end exactly where its streams end: one that does not, and one of a class nobody knows, is kept as it is (a zombie
// with its bits and its references), so that nothing is lost and nothing is guessed.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/dwg/record/recordio.h"

struct GcDbZombieData;

namespace gc::dwg {

struct ReadRecord {
  std::unique_ptr<GcDbObject> object;  // not yet in the database; null when the record cannot be read at all
  uint64_t handle = 0;
  uint32_t type = 0;
  GcDbObjectId owner;
  RecordLinks links;
  bool keptRaw = false;  // a zombie
  std::string trouble;   // what was wrong; empty when nothing was
};

// `body`: the record behind its size (and, from AC1024 on, behind the size of its references), without the checksum.
// `handleBits`: the size of the references, from AC1024 on.
ReadRecord readRecord(RecordContext& context, std::span<const uint8_t> body, uint64_t handleBits);

// The type of a record without reading it; 0 when it is too short.
uint32_t typeOfRecord(int version, std::span<const uint8_t> body);

// The same in two steps, so that a caller can look at the beginning first.
struct RecordBits {
  std::span<const uint8_t> body;
  uint64_t handleBits = 0;
  size_t behind = 0;  // bytes behind the body that may be touched
};
struct RecordBegin {
  uint32_t type = 0;
  uint64_t handle = 0;
  bool ok = false;  // the sizes are possible
};
RecordBegin beginRecord(RecordIn& record, const RecordBits& bits);
ReadRecord readRecord(RecordIn& record, const RecordBegin& begin, const RecordBits& bits);

// The fields of an object from the bits a zombie kept of its record; the parts all objects have are not among them.
// False when the bits do not end where the fields do. The codec gives this to the database when the program starts.
bool readKeptBits(const GcDbZombieData& data, GcDbObject& object);

struct WrittenRecord {
  std::vector<uint8_t> body;
  uint64_t handleBits = 0;
};

// The same in the memory of a record that is written over and over: valid until the next one.
struct RecordView {
  std::span<const uint8_t> body;
  uint64_t handleBits = 0;
};
// What writing asks of an object's class, the same for all its objects.
struct ObjectKind {
  const BoundTable* packing = nullptr;
  bool isEntity = false;
  bool isTable = false;
  bool isZombie = false;
  bool filesItself = false;

  // Whether objects of the class are written in records of their own class.
  [[nodiscard]] bool isWritten() const { return isZombie || isTable || packing != nullptr || filesItself; }
};
ObjectKind classKind(const GcDbObject& object);
// The same of the single object: without a packing when its class's record does not say all of it.
ObjectKind objectKind(const GcDbObject& object, int version);

RecordView writeRecord(RecordOut& record, const GcDbObject& object, const ObjectKind& kind, uint32_t type,
                       const EntityLinks& links);

// `type`: the number of the object's class in the file. `links`: mode, neighbours.
WrittenRecord writeRecord(RecordContext& context, const GcDbObject& object, uint32_t type, const EntityLinks& links);

// Whether the object can be written in records of their own class.
bool hasPacking(const GcDbObject& object, int version);

}  // namespace gc::dwg
