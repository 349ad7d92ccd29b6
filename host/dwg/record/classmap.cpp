#include "host/dwg/record/classmap.h"

#include <iterator>

#include "db/entity.h"
#include "db/symboltable.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/record/bound.h"

namespace gc::dwg {

namespace {

struct Fixed {
  const char* className;
  const char* dxfName;
  bool isEntity;
};

// By number, from 1 on. Empty places are types no drawing uses.
constexpr Fixed kFixed[] = {
    {"AcDbText", "TEXT", true},
    {"AcDbAttribute", "ATTRIB", true},
    {"AcDbAttributeDefinition", "ATTDEF", true},
    {"AcDbBlockBegin", "BLOCK", true},
    {"AcDbBlockEnd", "ENDBLK", true},
    {"AcDbSequenceEnd", "SEQEND", true},
    {"AcDbBlockReference", "INSERT", true},
    {"AcDbMInsertBlock", "INSERT", true},
    {nullptr, nullptr, false},
    {"AcDb2dVertex", "VERTEX", true},
    {"AcDb3dPolylineVertex", "VERTEX", true},
    {"AcDbPolygonMeshVertex", "VERTEX", true},
    {"AcDbPolyFaceMeshVertex", "VERTEX", true},
    {"AcDbFaceRecord", "VERTEX", true},
    {"AcDb2dPolyline", "POLYLINE", true},
    {"AcDb3dPolyline", "POLYLINE", true},
    {"AcDbArc", "ARC", true},
    {"AcDbCircle", "CIRCLE", true},
    {"AcDbLine", "LINE", true},
    {"AcDbOrdinateDimension", "DIMENSION", true},
    {"AcDbRotatedDimension", "DIMENSION", true},
    {"AcDbAlignedDimension", "DIMENSION", true},
    {"AcDb3PointAngularDimension", "DIMENSION", true},
    {"AcDb2LineAngularDimension", "DIMENSION", true},
    {"AcDbRadialDimension", "DIMENSION", true},
    {"AcDbDiametricDimension", "DIMENSION", true},
    {"AcDbPoint", "POINT", true},
    {"AcDbFace", "3DFACE", true},
    {"AcDbPolyFaceMesh", "POLYLINE", true},
    {"AcDbPolygonMesh", "POLYLINE", true},
    {"AcDbSolid", "SOLID", true},
    {"AcDbTrace", "TRACE", true},
    {"AcDbShape", "SHAPE", true},
    {"AcDbViewport", "VIEWPORT", true},
    {"AcDbEllipse", "ELLIPSE", true},
    {"AcDbSpline", "SPLINE", true},
    {"AcDbRegion", "REGION", true},
    {"AcDb3dSolid", "3DSOLID", true},
    {"AcDbBody", "BODY", true},
    {"AcDbRay", "RAY", true},
    {"AcDbXline", "XLINE", true},
    {"AcDbDictionary", "DICTIONARY", false},
    {"AcDbOleFrame", "OLEFRAME", true},
    {"AcDbMText", "MTEXT", true},
    {"AcDbLeader", "LEADER", true},
    {"AcDbFcf", "TOLERANCE", true},
    {"AcDbMline", "MLINE", true},
    {"AcDbBlockTable", "BLOCK_CONTROL", false},
    {"AcDbBlockTableRecord", "BLOCK_RECORD", false},
    {"AcDbLayerTable", "LAYER_CONTROL", false},
    {"AcDbLayerTableRecord", "LAYER", false},
    {"AcDbTextStyleTable", "STYLE_CONTROL", false},
    {"AcDbTextStyleTableRecord", "STYLE", false},
    {nullptr, nullptr, false},
    {nullptr, nullptr, false},
    {"AcDbLinetypeTable", "LTYPE_CONTROL", false},
    {"AcDbLinetypeTableRecord", "LTYPE", false},
    {nullptr, nullptr, false},
    {nullptr, nullptr, false},
    {"AcDbViewTable", "VIEW_CONTROL", false},
    {"AcDbViewTableRecord", "VIEW", false},
    {"AcDbUCSTable", "UCS_CONTROL", false},
    {"AcDbUCSTableRecord", "UCS", false},
    {"AcDbViewportTable", "VPORT_CONTROL", false},
    {"AcDbViewportTableRecord", "VPORT", false},
    {"AcDbRegAppTable", "APPID_CONTROL", false},
    {"AcDbRegAppTableRecord", "APPID", false},
    {"AcDbDimStyleTable", "DIMSTYLE_CONTROL", false},
    {"AcDbDimStyleTableRecord", "DIMSTYLE", false},
    {"AcDbVXTable", "VX_CONTROL", false},
    {"AcDbVXTableRecord", "VX", false},
    {"AcDbGroup", "GROUP", false},
    {"AcDbMlineStyle", "MLINESTYLE", false},
    {"AcDbOle2Frame", "OLE2FRAME", true},
    {nullptr, "DUMMY", false},
    {nullptr, "LONG_TRANSACTION", false},
    {"AcDbPolyline", "LWPOLYLINE", true},
    {"AcDbHatch", "HATCH", true},
    {"AcDbXrecord", "XRECORD", false},
    {"AcDbPlaceHolder", "ACDBPLACEHOLDER", false},
    {"AcDbVbaProject", "VBA_PROJECT", false},
    {"AcDbLayout", "LAYOUT", false},
};
static_assert(std::size(kFixed) == 0x52);

GcText widen(const char* ascii) {
  GcText text;
  while (*ascii != 0) text.push_back(static_cast<GCHAR>(*ascii++));
  return text;
}

bool same(const char* ascii, GcView text) {
  size_t i = 0;
  for (; ascii[i] != 0; ++i)
    if (i >= text.size() || text[i] != static_cast<GCHAR>(ascii[i])) return false;
  return i == text.size();
}

const Fixed* fixedAt(uint32_t number) {
  return number >= 1 && number <= std::size(kFixed) ? &kFixed[number - 1] : nullptr;
}

}  // namespace

void ClassMap::add(FileClass fileClass) {
  const size_t place = m_fileClasses.size();
  m_byNumber.try_emplace(fileClass.number, place);
  if (findByDxfName(fileClass.dxfName) == nullptr) m_byName.emplace(hashNoCase(fileClass.dxfName), place);
  m_fileClasses.push_back(std::move(fileClass));
  m_types.clear();
}

const ClassMap::FileClass* ClassMap::fileClass(uint32_t number) const {
  const auto at = m_byNumber.find(number);
  return at == m_byNumber.end() ? nullptr : &m_fileClasses[at->second];
}

ClassMap::FileClass* ClassMap::findByDxfName(GcView name) {
  const auto [from, to] = m_byName.equal_range(hashNoCase(name));
  for (auto at = from; at != to; ++at)
    if (equalNoCase(m_fileClasses[at->second].dxfName, name)) return &m_fileClasses[at->second];
  return nullptr;
}

uint32_t ClassMap::numberFor(const GcDbZombieData& data) {
  if (data.recordType != 0) return data.recordType;
  const FileClass* described = findByDxfName(view(data.dxfName));
  return described == nullptr ? 0 : described->number;
}

const TypeInfo& ClassMap::typeOf(uint32_t number) const {
  const auto at = m_types.find(number);
  if (at != m_types.end()) return at->second;
  TypeInfo info = lookUp(number);
  if (info.rxClass != nullptr) {
    info.isMade = info.rxClass->isDerivedFrom(GcDbObject::desc()) &&
                  info.rxClass->isDerivedFrom(GcDbEntity::desc()) == info.isEntity;
    info.packing = boundTableOf(*info.rxClass);
    info.isTable = info.rxClass->isDerivedFrom(GcDbSymbolTable::desc());
    info.filesItself = info.rxClass->info() == nullptr;
  }
  return m_types.emplace(number, std::move(info)).first->second;
}

TypeInfo ClassMap::lookUp(uint32_t number) const {
  TypeInfo info;
  if (number == kProxyEntity || number == kProxyObject) {
    info.isEntity = number == kProxyEntity;
    info.isKnown = true;
    info.dxfName = widen(info.isEntity ? "ACAD_PROXY_ENTITY" : "ACAD_PROXY_OBJECT");
    info.rxClass = gcrxFindGcRxClass(info.isEntity ? GC_T("AcDbProxyEntity") : GC_T("AcDbProxyObject"));
    return info;
  }
  if (const Fixed* fixed = fixedAt(number)) {
    info.isKnown = fixed->dxfName != nullptr;
    info.isEntity = fixed->isEntity;
    if (info.isKnown) info.dxfName = widen(fixed->dxfName);
    if (fixed->className != nullptr) info.rxClass = gcrxFindGcRxClass(widen(fixed->className).c_str());
    return info;
  }
  const FileClass* described = fileClass(number);
  if (described == nullptr) return info;
  info.isKnown = true;
  info.isEntity = described->isEntity;
  info.dxfName = described->dxfName;
  info.rxClass = gcrxFindGcRxClass(described->className.c_str());
  if (info.rxClass == nullptr) info.rxClass = gcrxFindGcRxClassByDxf(described->dxfName.c_str());
  return info;
}

uint32_t ClassMap::fixedTypeOf(GcView className) {
  for (uint32_t i = 0; i < std::size(kFixed); ++i)
    if (kFixed[i].className != nullptr && same(kFixed[i].className, className)) return i + 1;
  return 0;
}

const char* ClassMap::fixedClassName(uint32_t number) {
  const Fixed* fixed = fixedAt(number);
  return fixed == nullptr ? nullptr : fixed->className;
}

bool ClassMap::isFixedEntity(uint32_t number) {
  const Fixed* fixed = fixedAt(number);
  return number == kProxyEntity || (fixed != nullptr && fixed->isEntity);
}

}  // namespace gc::dwg
