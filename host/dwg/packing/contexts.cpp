// How annotations look at their scales. All were checked with records of other programs, but for the ones of block
// references, tolerances and dimensions that are not aligned, which follow the description.
#include "host/db/objects/contextdata.h"
#include "host/dwg/record/grouppass.h"

template <>
struct GcDbRecordOf<GcDbAnnotScaleObjectContextData> {
  template <class Pass>
  static void pass(Pass& pass, GcDbAnnotScaleObjectContextData& o) {
    o.passScale(pass);
  }
};

template <>
struct GcDbRecordOf<GcDbTextObjectContextData> {
  template <class Pass>
  static void pass(Pass& pass, GcDbTextObjectContextData& o) {
    o.passText(pass);
  }
};

template <>
struct GcDbRecordOf<GcDbMTextAttributeObjectContextData> {
  template <class Pass>
  static void pass(Pass& pass, GcDbMTextAttributeObjectContextData& o) {
    o.passText(pass);
    pass.b(o.m_hasContext);
    pass.must(!o.m_hasContext);
  }
  static bool isWhole(const GcDbMTextAttributeObjectContextData& o, int) {
    return !o.m_hasContext && o.m_context.isEmpty();
  }
};

template <>
struct GcDbRecordOf<GcDbMTextObjectContextData> {
  template <class Pass>
  static void pass(Pass& pass, GcDbMTextObjectContextData& o) {
    o.passScale(pass);
    pass.bl(o.m_attachment);
    pass.bd3(o.m_direction);
    pass.bd3(o.m_position);
    pass.bd(o.m_width);
    pass.bd(o.m_height);
    pass.bd(o.m_actualWidth);
    pass.bd(o.m_actualHeight);
    pass.bl(o.m_columnType);
    if (!o.hasColumns()) return;
    pass.bl(o.m_columnCount);
    pass.bd(o.m_columnWidth);
    pass.bd(o.m_gutter);
    pass.b(o.m_hasAutoHeight);
    pass.b(o.m_isReversed);
    if (!o.hasHeights()) return;
    pass.must(o.m_columnCount >= 0);
    if (!pass.failed()) pass.sized(o.m_heights, o.m_columnCount, 2, [&](double& height) { pass.bd(height); });
  }
  static bool isWhole(const GcDbMTextObjectContextData& o, int) {
    return !o.hasHeights() || o.m_heights.length() == o.m_columnCount;
  }
};

template <>
struct GcDbRecordOf<GcDbBlkRefObjectContextData> {
  // DXF numbers the factors from 41 on, or from 42 on.
  template <class Pass>
  static void pass(Pass& pass, GcDbBlkRefObjectContextData& o) {
    o.passScale(pass);
    gc::dwg::GroupPass<Pass> groups(pass, o.m_place);
    groups.bd(50);
    groups.bd3(10);
    const int first = groups.isNext(42) ? 42 : 41;
    for (int i = 0; i < 3; ++i) groups.bd(first + i);
    groups.finish();
  }
  static bool isWhole(const GcDbBlkRefObjectContextData& o, int version) { return gc::dwg::fitsRecord(o, version); }
};

template <>
struct GcDbRecordOf<GcDbLeaderObjectContextData> {
  template <class Pass>
  static void pass(Pass& pass, GcDbLeaderObjectContextData& o) {
    o.passScale(pass);
    pass.list(o.m_points, Pass::Count::BL, 6, [&](GcGePoint3d& point) { pass.bd3(point); });
    pass.bd3(o.m_xDirection);
    pass.b(o.m_isOnXDirection);
    pass.bd3(o.m_insertionOffset);
    pass.bd3(o.m_endPointOffset);
  }
};

template <>
struct GcDbRecordOf<GcDbFcfObjectContextData> {
  template <class Pass>
  static void pass(Pass& pass, GcDbFcfObjectContextData& o) {
    o.passScale(pass);
    pass.bd3(o.m_location);
    pass.bd3(o.m_direction);
  }
};

#define GC_DIMENSION_RECORD(Class, hasSecond)                           \
  template <>                                                           \
  struct GcDbRecordOf<Class> {                                          \
    template <class Pass>                                               \
    static void pass(Pass& pass, Class& o) {                            \
      o.passDimension(pass);                                            \
      pass.bd3(o.m_first);                                              \
      if (hasSecond) pass.bd3(o.m_second);                              \
    }                                                                   \
    static bool isWhole(const Class& o, int) { return o.fitsRecord(); } \
  }
GC_DIMENSION_RECORD(GcDbAlignedDimensionObjectContextData, false);
GC_DIMENSION_RECORD(GcDbAngularDimensionObjectContextData, false);
GC_DIMENSION_RECORD(GcDbRadialDimensionObjectContextData, false);
GC_DIMENSION_RECORD(GcDbDiametricDimensionObjectContextData, true);
GC_DIMENSION_RECORD(GcDbOrdinateDimensionObjectContextData, true);
GC_DIMENSION_RECORD(GcDbRadialDimensionLargeObjectContextData, true);
#undef GC_DIMENSION_RECORD

namespace gc::dwg::packing {

void addContexts(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbAnnotScaleObjectContextData>::named("AcDbAnnotScaleObjectContextData"));
  list.push_back(Passed<GcDbTextObjectContextData>::named("AcDbTextObjectContextData"));
  list.push_back(Passed<GcDbMTextAttributeObjectContextData>::named("AcDbMTextAttributeObjectContextData"));
  list.push_back(Passed<GcDbMTextObjectContextData>::named("AcDbMTextObjectContextData"));
  list.push_back(Passed<GcDbBlkRefObjectContextData>::named("AcDbBlkRefObjectContextData"));
  list.push_back(Passed<GcDbLeaderObjectContextData>::named("AcDbLeaderObjectContextData"));
  list.push_back(Passed<GcDbFcfObjectContextData>::named("AcDbFcfObjectContextData"));
  list.push_back(Passed<GcDbAlignedDimensionObjectContextData>::named("AcDbAlignedDimensionObjectContextData"));
  list.push_back(Passed<GcDbAngularDimensionObjectContextData>::named("AcDbAngularDimensionObjectContextData"));
  list.push_back(Passed<GcDbRadialDimensionObjectContextData>::named("AcDbRadialDimensionObjectContextData"));
  list.push_back(Passed<GcDbDiametricDimensionObjectContextData>::named("AcDbDiametricDimensionObjectContextData"));
  list.push_back(Passed<GcDbOrdinateDimensionObjectContextData>::named("AcDbOrdinateDimensionObjectContextData"));
  list.push_back(Passed<GcDbRadialDimensionLargeObjectContextData>::named("AcDbRadialDimensionLargeObjectContextData"));
}

}  // namespace gc::dwg::packing
