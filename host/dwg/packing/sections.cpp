// Section planes and their settings.
#include "host/db/entities/section.h"
#include "host/db/objects/sectionsettings.h"
#include "host/dwg/record/pass.h"

template <>
struct GcDbRecordOf<GcDbSection> {
  template <class Pass>
  static void pass(Pass& pass, GcDbSection& o) {
    pass.bl(o.m_state);
    pass.bl(o.m_flags);
    pass.t(o.m_name);
    pass.bd3(o.m_vertical);
    pass.bd(o.m_topHeight);
    pass.bd(o.m_bottomHeight);
    pass.bs(o.m_transparency);
    pass.cmc(o.m_indicatorColor);
    pass.list(o.m_vertices, Pass::Count::BL, 6, [&](GcGePoint3d& point) { pass.bd3(point); });
    pass.list(o.m_backVertices, Pass::Count::BL, 6, [&](GcGePoint3d& point) { pass.bd3(point); });
    pass.h(3, o.m_settings);
  }
};

template <>
struct GcDbRecordOf<GcDbSectionManager> {
  template <class Pass>
  static void pass(Pass& pass, GcDbSectionManager& o) {
    pass.b(o.m_isLive);
    pass.list(o.m_sections, Pass::Count::BS, 8, [&](GcDbObjectId& id) { pass.h(4, id); });
  }
};

template <>
struct GcDbRecordOf<GcDbSectionSettings> {
  template <class Pass>
  static void pass(Pass& pass, GcDbSectionSettings& o) {
    pass.bl(o.m_currentType);
    pass.list(o.m_types, Pass::Count::BL, 10, [&](GcDbSectionType& type) {
      pass.bl(type.type);
      pass.bl(type.generation);
      pass.list(type.sources, Pass::Count::BL, 8, [&](GcDbObjectId& id) { pass.h(4, id); });
      pass.h(4, type.destinationBlock);
      pass.t(type.destinationFile);
      pass.list(type.geometry, Pass::Count::BL, 16, [&](GcDbSectionGeometry& each) {
        pass.bl(each.count);
        pass.bl(each.kind);
        pass.bl(each.flags);
        pass.cmc(each.color);
        pass.t(each.layer);
        pass.t(each.linetype);
        pass.bd(each.linetypeScale);
        pass.t(each.plotStyle);
        pass.bl(each.lineWeight);
        pass.bs(each.faceTransparency);
        pass.bs(each.edgeTransparency);
        pass.bs(each.hatchType);
        pass.t(each.hatchPattern);
        pass.bd(each.hatchAngleRad);
        pass.bd(each.hatchSpacing);
        pass.bd(each.hatchScale);
      });
    });
  }
};

namespace gc::dwg::packing {

void addSections(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbSection>::named("AcDbSection"));
  list.push_back(Passed<GcDbSectionManager>::named("AcDbSectionManager"));
  list.push_back(Passed<GcDbSectionSettings>::named("AcDbSectionSettings"));
}

}  // namespace gc::dwg::packing
