// Where a drawing lies on the earth, and lists of layers.
//
// The place, since R2010 (versions 2 and 3 of the object; version 1 is older, and goes as a proxy of its groups):
//   BL version │ H block │ BS kind of coordinates │ 3BD, 3BD design and reference point │ BD, BL │ BD, BL units, across
//   and up │ 3BD up │ 2RD north │ BL, BD scale │ B, BD sea level │ BD radius │ T system │ T, T, T, T tags │ BL points:
//   2RD, 2RD … │ BL faces: 3 BL …
#include "host/db/objects/geodata.h"
#include "host/dwg/record/grouppass.h"

template <>
struct GcDbRecordOf<GcDbGeoData> {
  template <class Pass>
  static void pass(Pass& pass, GcDbGeoData& o) {
    constexpr int kPiece = 303, kSystem = 301;
    gc::dwg::GroupPass<Pass> g(pass, o.m_data);
    const int version = g.bl(90);
    pass.must(version == 2 || version == 3);
    g.h(330, 4);
    g.bs(70);
    g.bd3(10);
    g.bd3(11);
    g.bd(40);
    g.bl(91);
    g.bd(41);
    g.bl(92);
    g.bd3(210);
    g.rd2(12);
    g.bl(95);
    g.bd(141);
    g.b(294);
    g.bd(142);
    g.bd(143);
    g.longText(kPiece, kSystem);
    for (const int tag : {302, 305, 306, 307}) g.t(tag);
    for (int i = g.count(93, 256); i > 0 && !g.failed(); --i) {
      g.rd2(13);
      g.rd2(14);
    }
    for (int i = g.count(96, 6); i > 0 && !g.failed(); --i)
      for (const int corner : {97, 98, 99}) g.bl(corner);
    g.finish();
  }
  static bool isWhole(const GcDbGeoData& o, int version) {
    return version >= gc::dwg::kR2010 && (o.version() == 2 || o.version() == 3) && gc::dwg::fitsRecord(o, version);
  }
};

template <>
struct GcDbRecordOf<GcDbLayerIndex> {
  template <class Pass>
  static void pass(Pass& pass, GcDbLayerIndex& o) {
    pass.bl(o.m_day);
    pass.bl(o.m_milliseconds);
    pass.list(o.m_entries, Pass::Count::BL, 4, [&](GcDbLayerIndexEntry& entry) {
      pass.bl(entry.count);
      pass.t(entry.layer);
    });
    for (GcDbLayerIndexEntry& entry : o.m_entries) pass.h(3, entry.entities);
  }
};

namespace gc::dwg::packing {

void addGeoData(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbGeoData>::named("AcDbGeoData"));
  list.push_back(Passed<GcDbLayerIndex>::named("AcDbLayerIndex"));
}

}  // namespace gc::dwg::packing
