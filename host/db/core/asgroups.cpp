#include "host/db/core/asgroups.h"

#include "db/object.h"
#include "host/db/core/extra.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/view.h"

namespace {

constexpr int kMarkerCode = 100;
constexpr GcView kEntityMarker = GC_T("AcDbEntity");

// Keeps what comes behind the common section, and at the end of each section the foreign groups that stood there.
class Keeper final : public GcDbGroupSink {
 public:
  Keeper(const GcDbObject& object, GcDbGroupList& kept) : m_object(object), m_kept(kept) {}

  void put(const GcDbGroup& group) override {
    if (group.code == kMarkerCode) {
      endSection();
      m_section = GcText(group.text);
      m_isCommon = group.text == kEntityMarker;
    }
    if (!m_isCommon) m_kept.put(group);
  }

  void finish() {
    endSection();
    if (m_object.extra() == nullptr) return;
    for (const GcDbForeignGroups& groups : m_object.extra()->foreign) {
      if (!groups.ownMarker) continue;
      m_kept.put(GcDbGroup::ofText(kMarkerCode, view(groups.section)));
      putAll(groups.groups);
    }
  }

 private:
  void endSection() {
    if (m_isCommon || m_object.extra() == nullptr || m_section.empty()) return;
    for (const GcDbForeignGroups& groups : m_object.extra()->foreign)
      if (!groups.ownMarker && view(groups.section) == GcView(m_section)) putAll(groups.groups);
  }
  void putAll(const GcDbGroupList& groups) {
    GcDbGroupList::Cursor cursor(groups);
    for (GcDbGroup group; cursor.next(group);) m_kept.put(group);
  }

  const GcDbObject& m_object;
  GcDbGroupList& m_kept;
  GcText m_section;
  bool m_isCommon = false;
};

}  // namespace

GcDbZombieData gcdbAsGroups(const GcDbObject& object) {
  GcDbZombieData data;
  data.dxfName = object.isA()->dxfName();
  Keeper keeper(object, data.groups);
  gcdbFieldsOut(object, keeper, GcDb::kDHL_Current, For::Whole);
  keeper.finish();
  return data;
}

bool gcdbFromGroups(GcDbObject& object, const GcDbGroupList& groups) {
  GcDbFieldReader reader(object, GcDb::kDHL_Current);
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);)
    if (!reader.take(group)) return false;
  return true;
}
