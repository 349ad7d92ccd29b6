#include "module/entity/commonproperty.h"

struct CommonProperty {
  const GCHAR* name;
  short valueType;
  void (*append)(RbChain& list, const GcDbEntity& entity);
  void (*put)(GcDbEntity& entity, const resbuf& value);
};

namespace {

constexpr int16_t kVisible = 1;

constexpr CommonProperty kProperties[] = {
    {GC_T("COLOR"), RTSHORT,
     [](RbChain& list, const GcDbEntity& entity) { list.appendShort(static_cast<int16_t>(entity.colorIndex())); },
     [](GcDbEntity& entity, const resbuf& value) { ignore(entity.setColorIndex(value.resval.rint, true)); }},
    {GC_T("LINETYPE"), RTSTR,
     [](RbChain& list, const GcDbEntity& entity) { list.appendString(entity.linetype().c_str()); },
     [](GcDbEntity& entity, const resbuf& value) { ignore(entity.setLinetype(value.resval.rstring, true)); }},
    {GC_T("LINETYPESCALE"), RTREAL,
     [](RbChain& list, const GcDbEntity& entity) { list.appendReal(entity.linetypeScale()); },
     [](GcDbEntity& entity, const resbuf& value) { ignore(entity.setLinetypeScale(value.resval.rreal, true)); }},
    {GC_T("VISIBILITY"), RTSHORT,
     [](RbChain& list, const GcDbEntity& entity) { list.appendShort(entity.visibility() == GcDb::kVisible ? 1 : 0); },
     [](GcDbEntity& entity, const resbuf& value) {
       ignore(entity.setVisibility(value.resval.rint == kVisible ? GcDb::kVisible : GcDb::kInvisible, true));
     }},
    {GC_T("LAYER"), RTSTR, [](RbChain& list, const GcDbEntity& entity) { list.appendString(entity.layer().c_str()); },
     [](GcDbEntity& entity, const resbuf& value) { ignore(entity.setLayer(value.resval.rstring, true, false)); }},
    {GC_T("LINEWEIGHT"), RTSHORT,
     [](RbChain& list, const GcDbEntity& entity) { list.appendShort(static_cast<int16_t>(entity.lineWeight())); },
     [](GcDbEntity& entity, const resbuf& value) {
       ignore(entity.setLineWeight(static_cast<GcDb::LineWeight>(value.resval.rint), true));
     }},
    {GC_T("PLOTSTYLENAME"), RTSTR,
     [](RbChain& list, const GcDbEntity& entity) { list.appendString(entity.plotStyleName().c_str()); },
     [](GcDbEntity& entity, const resbuf& value) { ignore(entity.setPlotStyleName(value.resval.rstring, true)); }},
};

}  // namespace

CCommonEntProperty::CCommonEntProperty() : m_properties(kProperties) {}
CCommonEntProperty::~CCommonEntProperty() = default;

namespace {

// The properties' names are plain capitals. Letters beyond ASCII are left to the host, which may have capitals for
// them that are within.
bool isCalled(const GCHAR* name, const GCHAR* capitals) {
  for (; *name != 0; ++name, ++capitals) {
    if (*name >= 0x80) return GcString(name).upper() == GcString(capitals);
    const GCHAR capital = static_cast<GCHAR>(*name >= 'a' && *name <= 'z' ? *name - 'a' + 'A' : *name);
    if (capital != *capitals) return false;
  }
  return *capitals == 0;
}

}  // namespace

const CommonProperty* CCommonEntProperty::find(const GCHAR* name) const {
  for (const CommonProperty& property : m_properties)
    if (isCalled(name, property.name)) return &property;
  return nullptr;
}

void CCommonEntProperty::appendValue(RbChain& list, const GcDbObject* object, const GCHAR* name) const {
  const GcDbEntity* entity = GcDbEntity::cast(object);
  const CommonProperty* property = entity != nullptr ? find(name) : nullptr;
  if (property != nullptr)
    property->append(list, *entity);
  else
    list.append(RTNIL);
}

bool CCommonEntProperty::put(GcDbObject* object, const GCHAR* name, const resbuf& value) const {
  GcDbEntity* entity = GcDbEntity::cast(object);
  const CommonProperty* property = entity != nullptr ? find(name) : nullptr;
  if (property == nullptr || value.restype != property->valueType) return false;
  property->put(*entity, value);
  return true;
}
