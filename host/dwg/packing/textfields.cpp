// Fields.
#include "host/db/objects/textfield.h"
#include "host/dwg/packing/valuepass.h"

template <>
struct GcDbRecordOf<GcDbTextField> {
  template <class Pass>
  static void pass(Pass& pass, GcDbTextField& o) {
    constexpr unsigned kLeastItem = 4, kLeastId = 8;
    pass.t(o.m_evaluator);
    pass.t(o.m_code);
    pass.list(o.m_children, Pass::Count::BL, kLeastId, [&](GcDbObjectId& id) { pass.h(3, id); });
    pass.list(o.m_objects, Pass::Count::BL, kLeastId, [&](GcDbObjectId& id) { pass.h(5, id); });
    if (pass.version() < gc::dwg::kR2007) pass.t(o.m_format);
    pass.bl(o.m_options);
    pass.bl(o.m_filing);
    pass.bl(o.m_state);
    pass.bl(o.m_status);
    pass.bl(o.m_error);
    pass.t(o.m_message);
    gc::dwg::passValue(pass, o.m_value);
    pass.t(o.m_text);
    pass.bl(o.m_textLength);
    pass.list(o.m_items, Pass::Count::BL, kLeastItem, [&](GcDbFieldItem& item) {
      pass.t(item.key);
      gc::dwg::passValue(pass, item.value);
    });
  }

  static bool isWhole(const GcDbTextField& o, int version) {
    if (view(o.m_valueKey) != GcView(GC_T("ACFD_FIELD_VALUE")) || !gc::dwg::isWholeValue(o.m_value, version))
      return false;
    for (const GcDbFieldItem& item : o.m_items)
      if (!gc::dwg::isWholeValue(item.value, version)) return false;
    return true;
  }
};

namespace gc::dwg::packing {

void addTextFields(std::vector<ClassPacking>& list) { list.push_back(Passed<GcDbTextField>::named("AcDbField")); }

}  // namespace gc::dwg::packing
