// Styles of section and detail views.
#include "host/db/objects/viewstyle.h"
#include "host/dwg/record/pass.h"

template <>
struct GcDbRecordOf<GcDbModelDocViewStyle> {
  template <class Pass>
  static void pass(Pass& pass, GcDbModelDocViewStyle& style) {
    pass.bs(style.m_docVersion);
    pass.t(style.m_description);
    pass.b(style.m_isModified);
    if (pass.version() < gc::dwg::kR2018) return;
    pass.t(style.m_displayName);
    pass.bl(style.m_viewFlags);
  }
};

template <>
struct GcDbRecordOf<GcDbSectionViewStyle> {
  template <class Pass>
  static void pass(Pass& pass, GcDbSectionViewStyle& style) {
    GcDbRecordOf<GcDbModelDocViewStyle>::pass(pass, style);
    pass.bs(style.m_version);
    pass.bl(style.m_flags);
    pass.h(5, style.m_identifierStyle);
    pass.cmc(style.m_identifierColor);
    pass.bd(style.m_identifierHeight);
    pass.h(5, style.m_startArrow);
    pass.h(5, style.m_endArrow);
    pass.cmc(style.m_arrowColor);
    pass.bd(style.m_arrowSize);
    pass.t(style.m_excludedCharacters);
    pass.bd(style.m_arrowExtension);
    pass.h(5, style.m_planeLinetype);
    pass.bl(style.m_planeWeight);
    pass.cmc(style.m_planeColor);
    pass.h(5, style.m_bendLinetype);
    pass.bl(style.m_bendWeight);
    pass.cmc(style.m_bendColor);
    pass.bd(style.m_bendLength);
    pass.bd(style.m_endLength);
    pass.h(5, style.m_labelStyle);
    pass.cmc(style.m_labelColor);
    pass.bd(style.m_labelHeight);
    pass.bl(style.m_labelAttachment);
    pass.bd(style.m_labelOffset);
    pass.bl(style.m_labelAlignment);
    pass.t(style.m_labelPattern);
    pass.cmc(style.m_hatchColor);
    pass.cmc(style.m_hatchBackground);
    pass.t(style.m_hatchPattern);
    pass.bd(style.m_hatchScale);
    pass.bl(style.m_hatchTransparency);
    pass.b(style.m_unknownFlag);
    pass.b(style.m_unknownFlag2);
    pass.bl(style.m_identifierPosition);
    pass.bd(style.m_identifierOffset);
    pass.bl(style.m_arrowPosition);
    pass.bd(style.m_endOvershoot);
    pass.list(style.m_hatchAngles, Pass::Count::BL, 2, [&](double& angle) { pass.bd(angle); });
  }
};

template <>
struct GcDbRecordOf<GcDbDetailViewStyle> {
  template <class Pass>
  static void pass(Pass& pass, GcDbDetailViewStyle& style) {
    GcDbRecordOf<GcDbModelDocViewStyle>::pass(pass, style);
    pass.bs(style.m_version);
    pass.bl(style.m_flags);
    pass.h(5, style.m_identifierStyle);
    pass.cmc(style.m_identifierColor);
    pass.bd(style.m_identifierHeight);
    pass.t(style.m_excludedCharacters);
    pass.bd(style.m_identifierOffset);
    pass.rc(style.m_identifierPlacement);
    pass.h(5, style.m_arrow);
    pass.cmc(style.m_arrowColor);
    pass.bd(style.m_arrowSize);
    pass.h(5, style.m_boundaryLinetype);
    pass.bl(style.m_boundaryWeight);
    pass.cmc(style.m_boundaryColor);
    pass.h(5, style.m_labelStyle);
    pass.cmc(style.m_labelColor);
    pass.bd(style.m_labelHeight);
    pass.bl(style.m_labelAttachment);
    pass.bd(style.m_labelOffset);
    pass.bl(style.m_labelAlignment);
    pass.t(style.m_labelPattern);
    pass.h(5, style.m_connectionLinetype);
    pass.bl(style.m_connectionWeight);
    pass.cmc(style.m_connectionColor);
    pass.h(5, style.m_borderLinetype);
    pass.bl(style.m_borderWeight);
    pass.cmc(style.m_borderColor);
    pass.rc(style.m_modelEdge);
  }
};

namespace gc::dwg::packing {

void addViewStyles(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbSectionViewStyle>::named("AcDbSectionViewStyle"));
  list.push_back(Passed<GcDbDetailViewStyle>::named("AcDbDetailViewStyle"));
}

}  // namespace gc::dwg::packing
