// Entities of the drawing by name: stepping through them, their lists, drawing them anew.
#include "db/database.h"
#include "db/entity.h"
#include "db/groupdata.h"
#include "ed/gced.h"
#include "host/ap/docmanager.h"
#include "host/db/core/xdata.h"
#include "host/db/describe/fieldio.h"

namespace {

GcDbDatabase* currentDatabase() {
  const ap::Document* document = ap::currentDocument();
  return document == nullptr ? nullptr : document->database();
}

// An object open for read while this lives.
template <class T>
class Reading {
 public:
  explicit Reading(GcDbObjectId id) { ignore(gcdbOpenObject(m_object, id, GcDb::kForRead, true)); }
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;
  ~Reading() {
    if (m_object != nullptr) ignore(m_object->close());
  }
  explicit operator bool() const { return m_object != nullptr; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }

 private:
  T* m_object = nullptr;
};

// Where the last step through a block ended, so that a walk finds its place again at once.
struct Place {
  GcDbObjectId entity;
  int index = 0;
};
Place s_place;

int indexIn(const GcDbObjectIdArray& ids, GcDbObjectId entity) {
  if (s_place.entity == entity && s_place.index < ids.length() && ids[s_place.index] == entity) return s_place.index;
  return ids.find(entity);
}

// The first entity at the index or behind it that is not erased; null at the end.
GcDbObjectId firstFrom(const GcDbObjectIdArray& ids, int index) {
  for (; index < ids.length(); ++index) {
    if (ids[index].isErased() || !ids[index].isValid()) continue;
    s_place = {ids[index], index};
    return ids[index];
  }
  return {};
}

GcDbObjectId firstOfBlock(GcDbObjectId blockId) {
  const Reading<GcDbBlockTableRecord> block(blockId);
  return block ? firstFrom(block->entities(), 0) : GcDbObjectId();
}

GcDbObjectId firstOfDrawing(const GcDbDatabase& database) {
  const GcDbObjectId first = firstOfBlock(database.modelSpaceId());
  return first.isNull() ? firstOfBlock(database.paperSpaceId()) : first;
}

// Behind the last entity of model space comes the current layout's paper space.
GcDbObjectId nextInBlock(GcDbObjectId blockId, GcDbObjectId entity) {
  const Reading<GcDbBlockTableRecord> block(blockId);
  if (!block) return {};
  const int index = indexIn(block->entities(), entity);
  if (index < 0) return {};
  const GcDbObjectId next = firstFrom(block->entities(), index + 1);
  const GcDbDatabase* database = entity.database();
  if (!next.isNull() || blockId != database->modelSpaceId()) return next;
  return firstOfBlock(database->paperSpaceId());
}

// The entities a polyline or a block reference owns follow each other; behind the last one goes on what follows
// their owner.
GcDbObjectId nextOf(GcDbObjectId entity) {
  GcDbObjectId ownerId;
  {
    const Reading<GcDbObject> object(entity);
    if (!object) return {};
    ownerId = object->ownerId();
  }
  const Reading<GcDbObject> owner(ownerId);
  if (!owner || GcDbBlockTableRecord::cast(&*owner) != nullptr) return nextInBlock(ownerId, entity);
  GcDbObjectIdArray owned;
  owner->subOwned(owned);
  const GcDbObjectId next = firstFrom(owned, owned.find(entity) + 1);
  return next.isNull() ? nextInBlock(owner->ownerId(), ownerId) : next;
}

// Groups as the nodes of a chain.
class ChainSink final : public GcDbGroupSink {
 public:
  ~ChainSink() override { gcutRelRb(m_head); }
  void put(const GcDbGroup& group) override { append(gcdbGroupToRb(group)); }
  void append(resbuf* node) {
    if (node == nullptr) return;
    (m_tail != nullptr ? m_tail->rbnext : m_head) = node;
    for (m_tail = node; m_tail->rbnext != nullptr;) m_tail = m_tail->rbnext;
  }
  resbuf* release() {
    resbuf* chain = m_head;
    m_head = m_tail = nullptr;
    return chain;
  }

 private:
  resbuf* m_head = nullptr;
  resbuf* m_tail = nullptr;
};

void putName(ChainSink& sink, int code, const gds_name name) {
  resbuf* node = gcutNewRb(code);
  if (node == nullptr) return;
  node->resval.rlname[0] = name[0];
  node->resval.rlname[1] = name[1];
  sink.append(node);
}

}  // namespace

int gcdbEntNext(const gds_name name, gds_name result) {
  GcDbObjectId next;
  if (name == nullptr || name[0] == 0) {
    const GcDbDatabase* database = currentDatabase();
    if (database != nullptr) next = firstOfDrawing(*database);
  } else {
    GcDbObjectId id;
    if (gcdbGetObjectId(id, name) == Gcad::eOk) next = nextOf(id);
  }
  gds_name found = {};
  if (gcdbGetGdsName(found, next) != Gcad::eOk) return RTERROR;
  result[0] = found[0];
  result[1] = found[1];
  return RTNORM;
}

resbuf* gcdbEntGet(const gds_name name) { return gcdbEntGetX(name, nullptr); }

resbuf* gcdbEntGetX(const gds_name name, const resbuf* applications) {
  GcDbObjectId id;
  if (gcdbGetObjectId(id, name) != Gcad::eOk || id.isErased()) return nullptr;
  const Reading<GcDbObject> object(id);
  if (!object) return nullptr;
  ChainSink sink;
  putName(sink, -1, name);
  if (const GCHAR* type = object->isA()->dxfName()) sink.put(GcDbGroup::ofText(0, type));
  gds_name owner = {};
  if (gcdbGetGdsName(owner, object->ownerId()) == Gcad::eOk) putName(sink, 330, owner);
  GCHAR handle[20];
  if (object->handle().getIntoAsciiBuffer(handle, 20)) sink.put(GcDbGroup::ofText(5, handle));
  gcdbFieldsOut(*object, sink, GcDb::kDHL_Current);
  if (const GcDbGroupData* data = GcDbGroupData::cast(&*object)) {
    GcDbGroupList::Cursor cursor(data->groups());
    for (GcDbGroup group; cursor.next(group);) sink.put(group);
  }
  for (; applications != nullptr; applications = applications->rbnext)
    if (applications->restype == RTSTR) sink.append(object->xData(applications->resval.rstring));
  return sink.release();
}

// Whoever shows the drawing looks at its objects when it draws, so there is nothing to send.
int gcdbEntUpd(const gds_name name) {
  GcDbObjectId id;
  return gcdbGetObjectId(id, name) == Gcad::eOk && id.isValid() && !id.isErased() ? RTNORM : RTERROR;
}

int gcedUpdateDisplay() { return currentDatabase() != nullptr ? RTNORM : RTERROR; }
