#include "host/plot/objectgroups.h"

#include "db/object.h"
#include "host/db/describe/fieldio.h"

namespace gc::plot {

class ObjectGroups::Collector : public GcDbGroupSink {
 public:
  explicit Collector(std::vector<Value>& values) : m_values(values) {}
  void put(const GcDbGroup& group) override {
    if (group.code == 100) m_section = GcText(group.text);
    m_values.push_back({group, GcText(group.text), m_section});
  }

 private:
  std::vector<Value>& m_values;
  GcText m_section;
};

ObjectGroups::ObjectGroups(GcDbObjectId id) {
  GcDbObject* object = nullptr;
  if (gcdbOpenGcDbObject(object, id, GcDb::kForRead) != Gcad::eOk) return;
  Collector collector(m_values);
  if (gcdbInfoOf(*object) != nullptr) gcdbFieldsOut(*object, collector, GcDb::kDHL_Current);
  ignore(object->close());
}

const ObjectGroups::Value* ObjectGroups::find(int code, const char* subclass, int index) const {
  const GcText section = subclass == nullptr ? GcText() : fromUtf8(subclass);
  for (const Value& value : m_values) {
    if (value.group.code == code && (subclass == nullptr || value.section == section) && index-- == 0) return &value;
  }
  return nullptr;
}

double ObjectGroups::real(int code, double otherwise, const char* subclass, int index) const {
  const Value* value = find(code, subclass, index);
  return value == nullptr ? otherwise : value->group.asReal();
}

int64_t ObjectGroups::integer(int code, int64_t otherwise, const char* subclass, int index) const {
  const Value* value = find(code, subclass, index);
  return value == nullptr ? otherwise : value->group.asInt();
}

GcText ObjectGroups::text(int code, const char* subclass, int index) const {
  const Value* value = find(code, subclass, index);
  return value == nullptr ? GcText() : value->text;
}

GcGePoint3d ObjectGroups::point(int code, const GcGePoint3d& otherwise, const char* subclass) const {
  const Value* value = find(code, subclass, 0);
  return value == nullptr ? otherwise : value->group.point;
}

GcDbObjectId ObjectGroups::id(int code, const char* subclass, int index) const {
  const Value* value = find(code, subclass, index);
  return value == nullptr ? GcDbObjectId() : value->group.id;
}

int ObjectGroups::count(int code, const char* subclass) const {
  int found = 0;
  while (find(code, subclass, found) != nullptr) ++found;
  return found;
}

}  // namespace gc::plot
