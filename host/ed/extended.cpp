#include "host/ed/extended.h"

#include "db/database.h"
#include "host/db/entlist/entitylist.h"
#include "host/db/entlist/entitymake.h"
#include "host/ed/records.h"

namespace ed {

namespace {

constexpr int kBeginsExtended = -3;
constexpr int kApplication = 1001;

void registerApplication(GcDbDatabase& database, const GCHAR* name) {
  GcDbRegAppTable* table = nullptr;
  if (!recordNamed(database.regAppTableId(), name).isNull() ||
      database.getSymbolTable(table, GcDb::kForWrite) != Gcad::eOk)
    return;
  auto* record = new GcDbRegAppTableRecord;
  GcDbObjectId id;
  if (record->setName(name) == Gcad::eOk && table->add(id, record) == Gcad::eOk)
    ignore(record->close());
  else
    delete record;
  ignore(table->close());
}

class OneApplication final : public GcDbApplicationFilter {
 public:
  explicit OneApplication(GcView name) : m_name(name) {}
  [[nodiscard]] bool takes(GcView application) const override { return equalNoCase(application, m_name); }

 private:
  GcView m_name;
};

class ValueSink final : public GcDbGroupSink {
 public:
  void put(const GcDbGroup& group) override {
    if (group.code == 1000) found.texts.emplace_back(group.text);
    if (group.code == 1070 || group.code == 1071) found.numbers.push_back(group.asInt());
  }
  ExtendedValues found;
};

}  // namespace

bool setExtended(GcDbObjectId id, const GCHAR* application, std::initializer_list<GcDbGroup> groups) {
  if (!id.isValid()) return false;
  registerApplication(*id.database(), application);
  GcDbGroupList list;
  list.put(GcDbGroup::ofId(-1, id));
  list.put(GcDbGroup::ofText(kBeginsExtended, {}));
  list.put(GcDbGroup::ofText(kApplication, application));
  for (const GcDbGroup& group : groups) list.put(group);
  return gcdbEntityModify(list) == Gcad::eOk;
}

ExtendedValues extendedOf(GcDbObjectId id, const GCHAR* application) {
  const OneApplication filter{GcView(application)};
  ValueSink sink;
  static_cast<void>(gcdbEntityList(id, &filter, sink));
  return std::move(sink.found);
}

}  // namespace ed
