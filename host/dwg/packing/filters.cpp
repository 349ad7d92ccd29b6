// Filters and sets of references.
#include "host/db/objects/filters.h"
#include "host/dwg/record/pass.h"

template <>
struct GcDbRecordOf<GcDbSpatialFilter> {
  template <class Pass>
  static void pass(Pass& pass, GcDbSpatialFilter& o) {
    pass.list(o.m_clip, Pass::Count::BS, 128, [&](GcGePoint2d& point) { pass.rd2(point); });
    pass.bd3(o.m_normal);
    pass.bd3(o.m_origin);
    pass.bs(o.m_isShown);
    pass.bs(o.m_hasFront);
    if (o.clipsFront()) pass.bd(o.m_front);
    pass.bs(o.m_hasBack);
    if (o.clipsBack()) pass.bd(o.m_back);
    constexpr int kTwoMatrices = 24;
    pass.sized(o.m_matrices, kTwoMatrices, 2, [&](double& entry) { pass.bd(entry); });
  }
};

template <>
struct GcDbRecordOf<GcDbFieldList> {
  template <class Pass>
  static void pass(Pass& pass, GcDbFieldList& o) {
    const int count = pass.passCount(o.m_fields.length(), Pass::Count::BL, 8);
    bool hasFields = count > 0;
    pass.b(hasFields);
    pass.sized(o.m_fields, count, 8, [&](GcDbObjectId& id) { pass.h(4, id); });
  }
};

template <>
struct GcDbRecordOf<GcDbLayerFilter> {
  template <class Pass>
  static void pass(Pass& pass, GcDbLayerFilter& o) {
    pass.list(o.m_names, Pass::Count::BL, 2, [&](GcString& name) { pass.t(name); });
  }
};

template <>
struct GcDbRecordOf<GcDbIdBuffer> {
  template <class Pass>
  static void pass(Pass& pass, GcDbIdBuffer& o) {
    uint8_t version = 0;
    pass.rc(version);
    pass.must(version == 0);
    pass.list(o.m_ids, Pass::Count::BL, 8, [&](GcDbObjectId& id) { pass.h(4, id); });
  }
};

namespace gc::dwg::packing {

void addFilters(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbSpatialFilter>::named("AcDbSpatialFilter"));
  list.push_back(Passed<GcDbFieldList>::named("AcDbFieldList"));
  list.push_back(Passed<GcDbLayerFilter>::named("AcDbLayerFilter"));
  list.push_back(Passed<GcDbIdBuffer>::named("AcDbIdBuffer"));
}

}  // namespace gc::dwg::packing
