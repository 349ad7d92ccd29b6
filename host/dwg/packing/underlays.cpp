// Underlays and their definitions.
#include "host/db/entities/underlay.h"
#include "host/db/objects/underlaydef.h"
#include "host/dwg/record/pass.h"

template <>
struct GcDbRecordOf<GcDbUnderlayReference> {
  template <class Pass>
  static void pass(Pass& pass, GcDbUnderlayReference& o) {
    pass.h(5, o.m_definitionId);
    pass.bd3(o.m_normal);
    pass.bd3(o.m_position);
    pass.bd(o.m_rotationRad);
    pass.bd(o.m_scaleX);
    pass.bd(o.m_scaleY);
    pass.bd(o.m_scaleZ);
    pass.rc(o.m_flags);
    pass.rc(o.m_contrast);
    pass.rc(o.m_fade);
    const auto corner = [&](GcGePoint2d& point) { pass.rd2(point); };
    pass.list(o.m_clip, Pass::Count::BL, 128, corner);
    // Older programs end here even where the flag says that the outline is inverted.
    bool hasInner = !o.m_innerClip.isEmpty();
    if constexpr (!Pass::kWriting) hasInner = o.isInverted() && pass.io().rec.data.remaining() > 0;
    if (o.isInverted() && hasInner) pass.list(o.m_innerClip, Pass::Count::BS, 128, corner);
  }
};

namespace gc::dwg::packing {

namespace {

constinit const PackRow kDefinition[] = {section("AcDbUnderlayDefinition"), field(Op::T, 1), field(Op::T, 2)};

}  // namespace

void addUnderlays(std::vector<ClassPacking>& list) {
  for (const char* name : {"AcDbPdfReference", "AcDbDwfReference", "AcDbDgnReference"})
    list.push_back(Passed<GcDbUnderlayReference>::named(name));
  for (const char* name : {"AcDbPdfDefinition", "AcDbDwfDefinition", "AcDbDgnDefinition"})
    list.push_back(packingOf(name, kDefinition));
}

}  // namespace gc::dwg::packing
