// Named values of LISP programs: the five functions. The first argument chooses the place: a string names a
// dictionary, an entity name means the entity's own values.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"
#include "module/ldata/place.h"
#include "module/ldata/transaction.h"
#include "module/log/modulelog.h"

namespace {

constexpr ArgRules kRules{msg::kNoArguments, msg::kWrongTypeOfValue, msg::kNoArguments, msg::kWrongTypeOfValue};

// The first argument: a dictionary's name or an entity.
struct Place {
  explicit Place(ArgReader& args) : isGlobal(args.nextType() == RTSTR) {
    if (isGlobal)
      dictionary = args.string();
    else
      entity = args.entityName();
  }
  bool isGlobal;
  const GCHAR* dictionary = nullptr;
  GcDbObjectId entity;
};

int answer(Stored stored, const GCHAR* value) {
  if (stored == Stored::Yes) return ret::string(value);
  return stored == Stored::No ? ret::nil() : ret::nilError();
}

// The list of (key value) sublists; nil when it is empty.
int answerList(RbChain& entries) {
  if (entries.isEmpty()) return ret::nil();
  entries.enclose();
  return ret::list(entries);
}

}  // namespace

int ldataPut() {
  modulelog::debug(GC_T("CVrkLDATAApp::gds_kel_ldata_put"));
  ArgReader args(kRules);
  const Place place(args);
  const GCHAR* key = args.string();
  const GCHAR* value = args.string();
  if (args.failed()) return args.status();
  if (!place.isGlobal) return answer(entityvalues::put(place.entity, key, value), value);
  return globalvalues::put(place.dictionary, key, value) ? ret::string(value) : ret::nil();
}

int ldataGet() {
  modulelog::debug(GC_T("CVrkLDATAApp::gds_kel_ldata_get"));
  ArgReader args(kRules);
  const Place place(args);
  const GCHAR* key = args.string();
  if (args.failed()) return args.status();
  GcString value;
  if (!place.isGlobal) {
    const Stored stored = entityvalues::get(place.entity, key, value);
    return answer(stored, value.c_str());
  }
  value = globalvalues::get(place.dictionary, key);
  return value.isEmpty() ? ret::nil() : ret::string(value.c_str());
}

int ldataDelete() {
  modulelog::debug(GC_T("CVrkLDATAApp::gds_kel_ldata_delete"));
  ArgReader args(kRules);
  const Place place(args);
  const GCHAR* key = args.string();
  if (args.failed()) return args.status();
  if (place.isGlobal) return ret::truth(globalvalues::erase(place.dictionary, key));
  const Stored erased = entityvalues::erase(place.entity, key);
  return erased == Stored::NoEntity ? ret::nilError() : ret::truth(erased == Stored::Yes);
}

int ldataList() {
  modulelog::debug(GC_T("CVrkLDATAApp::gds_kel_ldata_list"));
  ArgReader args(kRules);
  const Place place(args);
  if (args.failed()) return args.status();
  RbChain entries;
  if (place.isGlobal)
    globalvalues::list(place.dictionary, entries);
  else if (entityvalues::list(place.entity, entries) == Stored::NoEntity)
    return ret::nilError();
  return answerList(entries);
}

// Deliberate: the entity is not closed afterwards, and whether it could be opened is not looked at.
int ldataListNoClose() {
  modulelog::debug(GC_T("CVrkLDATAApp::gds_kel_ldata_list_no_close"));
  ArgReader args(kRules);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  GcDbObject* entity = nullptr;
  ignore(gcdbOpenObject(entity, id, GcDb::kForRead, true));
  if (entity == nullptr) return ret::nil();
  DocumentTransaction transaction;
  RbChain entries;
  if (const auto* dictionary = transaction.get<GcDbDictionary>(entity->extensionDictionary(), GcDb::kForRead))
    appendValues(*dictionary, entries);
  transaction.commit();
  return answerList(entries);
}
