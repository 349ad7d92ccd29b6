#include <unordered_set>

#include "host/db/audit/auditor.h"
#include "host/db/core/extra.h"
#include "host/rx/view.h"

namespace {

constexpr int kApplication = 1001, kBrace = 1002;

GcText upper(GcView name) {
  GcText text(name);
  for (GCHAR& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<GCHAR>(c - 'a' + 'A');
  return text;
}

class Data {
 public:
  explicit Data(GcDbAuditor& auditor) : m_auditor(auditor) {
    if (const auto* table = gcdbLive<GcDbSymbolTable>(auditor.database().regAppTableId()))
      for (const GcDbObjectId id : table->records())
        if (const auto* record = gcdbLive<GcDbSymbolTableRecord>(id)) m_known.insert(upper(view(record->getName())));
  }

  void check(GcDbObject& object) {
    GcDbGroupList& xdata = object.extra()->xdata;
    GcDbGroupList kept, part;
    GcText application;
    int depth = 0;
    bool isEven = true, changed = false;
    const auto endPart = [&] {
      const bool matches = isEven && depth == 0;
      const bool drop = !matches && m_auditor.found(GcDbDefect::DataBraces, &object, toUtf8(GcView(application)));
      changed |= drop;
      GcDbGroupList::Cursor cursor(part);
      for (GcDbGroup group; !drop && cursor.next(group);) kept.put(group);
      part.clear();
      depth = 0;
      isEven = true;
    };
    GcDbGroupList::Cursor cursor(xdata);
    for (GcDbGroup group; cursor.next(group);) {
      if (group.code == kApplication) {
        endPart();
        application = GcText(group.text);
        need(object, application);
      } else if (group.code == kBrace) {
        depth += group.text == GC_T("{") ? 1 : -1;
        isEven = isEven && depth >= 0;
      }
      part.put(group);
    }
    endPart();
    if (changed) xdata = kept;
  }

 private:
  void need(const GcDbObject& object, const GcText& name) {
    if (m_known.contains(upper(name))) return;
    if (!m_auditor.found(GcDbDefect::Application, &object, toUtf8(GcView(name)))) return;
    GcDbSymbolTable* table = nullptr;
    if (gcdbOpenObject(table, m_auditor.database().regAppTableId(), GcDb::kForWrite) != Gcad::eOk) return;
    auto* record = static_cast<GcDbSymbolTableRecord*>(table->recordClass()->create());
    GcDbObjectId id;
    if (record->setName(name.c_str()) == Gcad::eOk && table->add(id, record) == Gcad::eOk) {
      ignore(record->close());
      m_known.insert(upper(name));
    } else {
      delete record;
    }
    ignore(table->close());
  }

  GcDbAuditor& m_auditor;
  std::unordered_set<GcText> m_known;
};

}  // namespace

void gcdbAuditData(GcDbAuditor& auditor) {
  Data data(auditor);
  auditor.forEach([&](GcDbObject& object) {
    if (object.extra() != nullptr && !object.extra()->xdata.isEmpty()) data.check(object);
  });
}
