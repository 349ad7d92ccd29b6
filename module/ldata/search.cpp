// Where named values lie in the drawing: in which dictionaries and with which entities.
#include <memory>

#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/rbchain.h"
#include "module/app/results.h"
#include "module/ldata/ldatatext.h"

namespace {

enum class Owner : uint8_t { Other, Own, Foreign };

// Whose value an entry is. `zombiesCount`: an object whose class is not loaded counts as foreign.
Owner ownerOf(GcDbObjectId id, bool zombiesCount) {
  const GcDbReadPtr<GcDbObject> entry(id);
  if (!entry) return Owner::Other;
  const LDataKind kind = ldataKind(*entry);
  if (kind == LDataKind::Own) return Owner::Own;
  const bool zombie = zombiesCount && GcString(entry->isA()->name()) == GcString(GC_T("AcDbZombieObject"));
  return kind == LDataKind::Foreign || zombie ? Owner::Foreign : Owner::Other;
}

std::unique_ptr<GcDbDictionaryIterator> entriesOf(const GcDbDictionary& dictionary) {
  return std::unique_ptr<GcDbDictionaryIterator>(dictionary.newIterator());
}

// Deliberate: a dictionary's name once for every matching entry in it.
void appendDictionaries(RbChain& list, Owner wanted, bool zombiesCount) {
  const GcDbDatabase* database = workingDatabase();
  if (database == nullptr) return;
  const GcDbReadPtr<GcDbDictionary> root(database->namedObjectsDictionaryId());
  if (!root) return;
  for (const auto at = entriesOf(*root); !at->done(); at->next()) {
    const GcDbReadPtr<GcDbDictionary> dictionary(at->objectId());
    if (!dictionary) continue;
    for (const auto entry = entriesOf(*dictionary); !entry->done(); entry->next())
      if (ownerOf(entry->objectId(), zombiesCount) == wanted) list.appendString(at->name());
  }
}

// The first entry that is anyone's value decides.
Owner decidingOwner(GcDbObjectId extensionDictionary, bool zombiesCount) {
  const GcDbReadPtr<GcDbDictionary> dictionary(extensionDictionary);
  if (!dictionary) return Owner::Other;
  for (const auto at = entriesOf(*dictionary); !at->done(); at->next()) {
    const Owner owner = ownerOf(at->objectId(), zombiesCount);
    if (owner != Owner::Other) return owner;
  }
  return Owner::Other;
}

void appendEntities(RbChain& list, Owner wanted, bool zombiesCount) {
  gds_name name = {};
  for (int status = gcdbEntNext(nullptr, name); status == RTNORM;) {
    GcDbObjectId id;
    ignore(gcdbGetObjectId(id, name));
    if (const GcDbReadPtr<GcDbObject> entity(id); entity)
      if (decidingOwner(entity->extensionDictionary(), zombiesCount) == wanted) list.appendName(id);
    const gds_name last = {name[0], name[1]};
    status = gcdbEntNext(last, name);
  }
}

int search(Owner wanted, bool zombiesCount) {
  gcedGetArgs();
  RbChain list;
  list.append(RTLB);
  appendDictionaries(list, wanted, zombiesCount);
  appendEntities(list, wanted, zombiesCount);
  list.append(RTLE);
  return ret::list(list);
}

}  // namespace

int searchDictKel() { return search(Owner::Own, false); }
int searchDictVlax() { return search(Owner::Foreign, true); }
