#include "db/xrecord.h"

#include <iterator>

#include "host/db/core/xdata.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbXrecord, "AcDbXrecord")

struct GcDbXrecordFields {
  static void* groupsAt(void* record) { return static_cast<GcDbXrecord*>(record)->m_groups; }
  static constexpr GcDbField groups() {
    GcDbField row;
    row.code = -1;  // takes every group: the reader puts them in itself
    row.kind = Kind::Groups;
    row.name = "groups";
    row.at = groupsAt;
    return row;
  }
  static constexpr GcDbField merge() { return field<&GcDbXrecord::m_merge>(280, "mergeStyle", Is::Plain); }
};

const GcDbField GcDbXrecord::kFields[] = {
    marker("AcDbXrecord"),
    GcDbXrecordFields::merge(),
    GcDbXrecordFields::groups(),
};
GCDB_FIELD_COUNT(GcDbXrecord);

GcDbXrecord::GcDbXrecord() : m_groups(new GcDbGroupList) {}
GcDbXrecord::~GcDbXrecord() { delete m_groups; }

resbuf* GcDbXrecord::rbChain() const {
  assertReadEnabled();
  resbuf* head = nullptr;
  resbuf** tail = &head;
  GcDbGroupList::Cursor cursor(*m_groups);
  for (GcDbGroup group; cursor.next(group);) {
    *tail = gcdbGroupToRb(group);
    tail = &(*tail)->rbnext;
  }
  return head;
}

Gcad::ErrorStatus GcDbXrecord::setFromRbChain(const resbuf& chain) {
  GcDbGroupList fresh;
  for (const resbuf* node = &chain; node != nullptr; node = node->rbnext) {
    GcDbGroup group;
    if (node->restype < 0 || node->restype >= 1072 || !gcdbRbToGroup(*node, group)) return Gcad::eInvalidResBuf;
    fresh.put(group);
  }
  assertWriteEnabled();
  *m_groups = fresh;
  return Gcad::eOk;
}
