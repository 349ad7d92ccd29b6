#include "host/ed/entitylist.h"

#include "db/entity.h"
#include "db/groupdata.h"
#include "host/db/core/xdata.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/view.h"
#include "rx/rxclass.h"

namespace ed {

namespace {

class ChainSink final : public GcDbGroupSink {
 public:
  void put(const GcDbGroup& group) override { append(gcdbGroupToRb(group)); }
  void append(resbuf* nodes) {
    while (nodes != nullptr) {
      *m_tail = nodes;
      m_tail = &nodes->rbnext;
      nodes = nodes->rbnext;
    }
  }
  [[nodiscard]] resbuf* chain() const { return m_head; }

 private:
  resbuf* m_head = nullptr;
  resbuf** m_tail = &m_head;
};

void putText(ChainSink& sink, int code, GcView text) { sink.put(GcDbGroup::ofText(code, text)); }

void putHandle(ChainSink& sink, uint64_t handle) {
  GCHAR digits[20];
  static_cast<void>(GcDbHandle(handle).getIntoAsciiBuffer(digits, 20));
  resbuf* node = gcutNewRb(5);
  gcutSetRbString(node, digits);
  sink.append(node);
}

void putExtendedData(ChainSink& sink, const GcDbObject& object, const resbuf* applications) {
  bool begun = false;
  for (const resbuf* each = applications; each != nullptr; each = each->rbnext) {
    if (each->restype != RTSTR) continue;
    const bool all = view(each->resval.rstring) == GC_T("*");
    resbuf* data = object.xData(all ? nullptr : each->resval.rstring);
    if (data != nullptr && !begun) sink.append(gcutNewRb(-3));
    begun = begun || data != nullptr;
    sink.append(data);
  }
}

}  // namespace

resbuf* entityList(GcDbObjectId id, const resbuf* applications) {
  GcDbObject* object = nullptr;
  if (gcdbOpenGcDbObject(object, id, GcDb::kForRead) != Gcad::eOk) return nullptr;
  ChainSink sink;
  sink.put(GcDbGroup::ofId(-1, id));
  putText(sink, 0, view(object->isA()->dxfName()));
  sink.put(GcDbGroup::ofId(330, object->ownerId()));
  putHandle(sink, id.handle());
  gcdbFieldsOut(*object, sink, GcDb::kDHL_Current, For::List);
  if (const GcDbGroupData* data = GcDbGroupData::cast(object)) {
    GcDbGroupList::Cursor cursor(data->groups());
    for (GcDbGroup group; cursor.next(group);) sink.put(group);
  }
  putExtendedData(sink, *object, applications);
  ignore(object->close());
  return sink.chain();
}

}  // namespace ed
