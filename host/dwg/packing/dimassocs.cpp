// Associativity of dimensions.
#include "host/db/objects/dimassoc.h"
#include "host/dwg/record/pass.h"

template <>
struct GcDbRecordOf<GcDbDimAssoc> {
  template <class Pass>
  static void pass(Pass& pass, GcDbDimAssoc& o) {
    pass.bl(o.m_associativity);
    pass.b(o.m_acrossSpaces);
    pass.rc(o.m_rotatedType);
    pass.h(4, o.m_dimension);
    // One for each of the four bits, and one behind each that has a last point besides.
    int count = 0;
    for (unsigned bit = 0; bit < 4; ++bit) count += (static_cast<uint32_t>(o.m_associativity) >> bit & 1U) != 0 ? 1 : 0;
    for (int i = 0; i < count && !pass.failed(); ++i) {
      GcDbDimAssocRef lacking;
      if constexpr (!Pass::kWriting) o.m_refs.append(lacking);
      GcDbDimAssocRef& ref = i < o.m_refs.length() ? o.m_refs[i] : lacking;
      passRef(pass, ref);
      if (ref.hasLast) ++count;
    }
  }

 private:
  template <class Pass>
  static void passRef(Pass& pass, GcDbDimAssocRef& ref) {
    pass.t(ref.className);
    pass.rc(ref.snapType);
    pass.list(ref.objects, Pass::Count::BL, 8, [&](GcDbObjectId& id) { pass.h(4, id); });
    if (ref.snapType != 0) {
      pass.bl(ref.subentityType);
      pass.bl(ref.marker);
      pass.list(ref.externalPath, Pass::Count::BL, 2, [&](GcString& name) { pass.t(name); });
    }
    pass.bd(ref.parameter);
    pass.bd3(ref.point);
    if (ref.isIntersection()) {
      pass.list(ref.crossing, Pass::Count::BL, 8, [&](GcDbObjectId& id) { pass.h(4, id); });
      pass.bl(ref.crossingType);
      pass.bl(ref.crossingMarker);
      pass.list(ref.crossingPath, Pass::Count::BL, 2, [&](GcString& name) { pass.t(name); });
    }
    pass.b(ref.hasLast);
  }
};

namespace gc::dwg::packing {

void addDimAssocs(std::vector<ClassPacking>& list) { list.push_back(Passed<GcDbDimAssoc>::named("AcDbDimAssoc")); }

}  // namespace gc::dwg::packing
