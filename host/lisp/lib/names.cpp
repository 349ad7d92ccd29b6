#include "host/lisp/lib/names.h"

#include "db/database.h"
#include "host/ap/docmanager.h"
#include "host/db/core/store.h"

namespace lisplib {

namespace {

constexpr int kSerialShift = 48;
constexpr uint64_t kPlaceMask = (uint64_t{1} << kSerialShift) - 1;

// The living database whose serial number ends in these 16 bits; null when there is none.
GcDbDatabase* databaseOfSerial(uint64_t low) {
  if (const ap::Document* document = ap::currentDocument())
    if ((document->database()->serial() & 0xFFFF) == low) return document->database();
  for (uint16_t index = 0; index < 0xFFFF; ++index) {
    GcDbDatabase* database = GcDbStore::databaseAt(index);
    if (database == nullptr && index > 64) return nullptr;
    if (database != nullptr && (database->serial() & 0xFFFF) == low) return database;
  }
  return nullptr;
}

}  // namespace

uint64_t nameWord(GcDbObjectId id) {
  if (id.isNull()) return 0;
  const uint64_t place = reinterpret_cast<uintptr_t>(id.stub());
  return place | uint64_t{id.database()->serial()} << kSerialShift;
}

GcDbObjectId idOfWord(uint64_t word) {
  if (word == 0 || databaseOfSerial(word >> kSerialShift) == nullptr) return {};
  return GcDbObjectId(reinterpret_cast<GcDbStub*>(static_cast<uintptr_t>(word & kPlaceMask)));
}

lisp::LispValue makeName(lisp::Vm& vm, GcDbObjectId id) {
  auto* name = vm.heap().create<lisp::EntityName>(lisp::ObjectType::EntityName);
  name->id = nameWord(id);
  return lisp::LispValue::of(static_cast<lisp::Object*>(name));
}

bool idOf(lisp::LispValue value, GcDbObjectId& id) {
  const auto* name = lisp::objectOf<lisp::EntityName>(value, lisp::ObjectType::EntityName);
  id = name == nullptr ? GcDbObjectId() : idOfWord(name->id);
  return !id.isNull();
}

void wordToGds(uint64_t word, gds_name& name) {
  name[0] = static_cast<int64_t>(word & kPlaceMask);
  name[1] = 0;
  if (word == 0) return;
  if (const GcDbDatabase* database = databaseOfSerial(word >> kSerialShift)) name[1] = database->serial();
}

uint64_t wordOfGds(const gds_name name) {
  return static_cast<uint64_t>(name[0]) | (name[0] == 0 ? 0 : static_cast<uint64_t>(name[1]) << kSerialShift);
}

}  // namespace lisplib
