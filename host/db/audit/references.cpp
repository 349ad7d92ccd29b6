#include <unordered_map>

#include "db/blockreference.h"
#include "db/dictionary.h"
#include "db/zombie.h"
#include "host/db/audit/auditor.h"
#include "host/db/core/extra.h"
#include "host/db/core/names.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/text/number.h"

namespace {

// What stands in for a reference to nothing.
GcDbObjectId standIn(GcDbDatabase& database, Is kind) {
  switch (kind) {
    case Is::LayerName: return database.layerZero();
    case Is::TextStyleName:
    case Is::DimStyleName: return gcdbRecordByName(&database, kind, GC_T("Standard"));
    default: return {};
  }
}

const char* nameOf(Is kind) {
  switch (kind) {
    case Is::LayerName: return "layer ";
    case Is::LinetypeName: return "linetype ";
    case Is::TextStyleName: return "text style ";
    case Is::DimStyleName: return "dimension style ";
    case Is::BlockName: return "block ";
    default: return "";
  }
}

// True for an id that names something which is not there. An object that was erased may be meant to come back, but
// files leave it out.
bool leadsNowhere(GcDbObjectId id) { return !id.isNull() && !gcdbIsLive(id); }

class References final : public GcDbReferenceVisitor {
 public:
  References(GcDbAuditor& auditor, GcDbObject& object) : m_auditor(auditor), m_object(object) {}

  void reference(GcDbObjectId& id, Is kind) override {
    const bool isNeeded = kind == Is::LayerName && GcDbEntity::cast(&m_object) != nullptr;
    const bool isOwnBlock = kind == Is::BlockName && GcDbBlockReference::cast(&m_object) != nullptr;
    if (isOwnBlock) return;  // a defect of its own
    if (!leadsNowhere(id) && !(isNeeded && id.isNull())) return;
    const std::string detail = nameOf(kind) + (id.isNull() ? std::string("none") : gc::hexText(id.handle()));
    if (m_auditor.found(GcDbDefect::DanglingReference, &m_object, detail)) id = standIn(m_auditor.database(), kind);
  }

 private:
  GcDbAuditor& m_auditor;
  GcDbObject& m_object;
};

void auditRareParts(GcDbAuditor& auditor, GcDbObject& object) {
  GcDbObjectExtra* extra = object.extra();
  if (extra == nullptr) return;
  for (int i = extra->reactors.length(); i-- > 0;) {
    const GcDbObjectId reactor = extra->reactors[i];
    if (!leadsNowhere(reactor)) continue;
    if (auditor.found(GcDbDefect::DanglingReactor, &object, gc::hexText(reactor.handle()))) extra->reactors.removeAt(i);
  }
  const GcDbObjectId own = extra->extensionDictionary;
  const bool isWrong =
      !own.isNull() &&
      (!gcdbIsLive(own) || (gcdbLive<GcDbDictionary>(own) == nullptr && gcdbLive<GcDbZombieObject>(own) == nullptr));
  if (isWrong && auditor.found(GcDbDefect::ExtensionDictionary, &object, gc::hexText(own.handle())))
    extra->extensionDictionary = GcDbObjectId();
}

void auditDictionary(GcDbAuditor& auditor, GcDbDictionary& dictionary) {
  GcDbNameIndex seen, all;
  std::unordered_map<GcText, int> counts;  // where the counting stopped for a key
  GcArray<GcDbDictionaryEntry> entries = dictionary.entries();
  for (const GcDbDictionaryEntry& entry : entries)
    if (all.map.find(view(entry.key)) == all.map.end()) all.add(view(entry.key), entry.id);
  bool changed = false;
  for (int i = 0; i < entries.length(); ++i) {
    GcDbDictionaryEntry& entry = entries[i];
    const std::string key = toUtf8(view(entry.key));
    if (!gcdbIsLive(entry.id)) {
      const bool mend = auditor.found(GcDbDefect::DictionaryEntry, &dictionary, '"' + key + '"');
      if (mend) entry.id = GcDbObjectId();
      changed |= mend;
      continue;
    }
    if (entry.key.isEmpty() || seen.find(view(entry.key), true).isValid()) {
      const bool mend = auditor.found(GcDbDefect::DictionaryKey, &dictionary, '"' + key + '"');
      const GcText first(entry.key.isEmpty() ? GcView(GC_T("unnamed")) : view(entry.key));
      GcText made = first;
      for (int& n = counts[first]; mend && all.find(made, true).isValid();)
        made = first + fromUtf8("$" + std::to_string(++n));
      if (mend) all.add(made, entry.id);
      if (mend) entry.key = toGcString(made);
      changed |= mend;
    }
    if (seen.map.find(view(entry.key)) == seen.map.end()) seen.add(view(entry.key), entry.id);
  }
  if (changed) dictionary.replaceEntries(entries);
}

}  // namespace

void gcdbAuditReferences(GcDbAuditor& auditor) {
  auditor.forEach([&](GcDbObject& object) {
    if (auto* reference = GcDbBlockReference::cast(&object)) {
      if (!gcdbIsLive(reference->blockTableRecord()) && auditor.found(GcDbDefect::NoBlock, reference)) {
        object.objectId().stub()->erased = true;
        return;
      }
    }
    auditRareParts(auditor, object);
    if (auto* dictionary = GcDbDictionary::cast(&object)) {
      const GcDbMending mending(object);
      auditDictionary(auditor, *dictionary);
      return;
    }
    if (GcDbSymbolTable::cast(&object) != nullptr) return;
    const GcDbMending mending(object);
    References references(auditor, object);
    gcdbVisitReferences(object, references);
  });
}
