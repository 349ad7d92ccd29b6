// Multilines.
#include "host/db/entities/mline.h"
#include "host/dwg/record/pass.h"

template <>
struct GcDbRecordOf<GcDbMline> {
  template <class Pass>
  static void pass(Pass& pass, GcDbMline& mline) {
    pass.bd(mline.m_scale);
    pass.rc(mline.m_justification);
    pass.bd3(mline.m_startPoint);
    pass.bd3(mline.m_normal);
    pass.bs(mline.m_flags);
    pass.rc(mline.m_lineCount);
    const auto cuts = [&](GcArray<double>& values) {
      pass.list(values, Pass::Count::BS, 2, [&](double& value) { pass.bd(value); });
    };
    pass.list(mline.m_vertices, Pass::Count::BS, 18, [&](GcDbMlineVertex& vertex) {
      pass.bd3(vertex.point);
      pass.bd3(vertex.direction);
      pass.bd3(vertex.miter);
      pass.sized(vertex.lines, mline.m_lineCount, 4, [&](GcDbMlineSegment& line) {
        cuts(line.cuts);
        cuts(line.fillCuts);
      });
    });
    pass.h(5, mline.m_styleId);
  }
};

namespace gc::dwg::packing {

void addMlines(std::vector<ClassPacking>& list) { list.push_back(Passed<GcDbMline>::named("AcDbMline")); }

}  // namespace gc::dwg::packing
