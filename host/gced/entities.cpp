// Entities by name: stepping through them, their lists, drawing them anew.
#include <utility>

#include "ed/gced.h"
#include "host/ap/docmanager.h"
#include "host/db/core/xdata.h"
#include "host/db/entlist/entitylist.h"
#include "host/ed/entitywalk.h"
#include "host/ed/patterns.h"
#include "host/ed/screen.h"

namespace {

// Groups as the nodes of a chain.
class ChainSink final : public GcDbGroupSink {
 public:
  ~ChainSink() override { gcutRelRb(m_head); }
  void put(const GcDbGroup& group) override {
    resbuf* node = group.code == -3 ? gcutNewRb(-3) : gcdbGroupToRb(group);
    if (node == nullptr) return;
    *m_tail = node;
    m_tail = &node->rbnext;
  }
  resbuf* release() { return std::exchange(m_head, nullptr); }

 private:
  resbuf* m_head = nullptr;
  resbuf** m_tail = &m_head;
};

// The applications of a chain of strings, patterns allowed.
class ChainFilter final : public GcDbApplicationFilter {
 public:
  explicit ChainFilter(const resbuf* chain) : m_chain(chain) {}
  [[nodiscard]] bool takes(GcView name) const override {
    for (const resbuf* node = m_chain; node != nullptr; node = node->rbnext)
      if (node->restype == RTSTR && ed::matchesName(name, view(node->resval.rstring))) return true;
    return false;
  }

 private:
  const resbuf* m_chain;
};

}  // namespace

int gcdbEntNext(const gds_name name, gds_name result) {
  if (result == nullptr || ap::currentDocument() == nullptr) return RTERROR;
  GcDbObjectId after;
  if (name != nullptr && name[0] != 0 && gcdbGetObjectId(after, name) != Gcad::eOk) return RTERROR;
  const GcDbObjectId next = ed::nextEntity(ed::currentEditor(), after);
  if (next.isNull()) return RTERROR;
  gds_name found;
  ignore(gcdbGetGdsName(found, next));
  result[0] = found[0];
  result[1] = found[1];
  return RTNORM;
}

resbuf* gcdbEntGet(const gds_name name) { return gcdbEntGetX(name, nullptr); }

resbuf* gcdbEntGetX(const gds_name name, const resbuf* applications) {
  GcDbObjectId id;
  if (name == nullptr || gcdbGetObjectId(id, name) != Gcad::eOk) return nullptr;
  const ChainFilter filter(applications);
  ChainSink sink;
  return gcdbEntityList(id, applications == nullptr ? nullptr : &filter, sink) ? sink.release() : nullptr;
}

int gcdbEntUpd(const gds_name name) {
  GcDbObjectId id;
  if (gcdbGetObjectId(id, name) != Gcad::eOk || !id.isValid() || id.isErased()) return RTERROR;
  ed::screen().entityChanged(id);
  return RTNORM;
}

int gcedUpdateDisplay() {
  ed::screen().update();
  return RTNORM;
}
