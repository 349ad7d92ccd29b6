#include "host/dxf/read/class_finder.h"

#include "host/db/core/fileparts.h"

namespace gc::dxf {
namespace {

// One DXF name for several classes.
bool isAmbiguous(std::string_view dxfName) {
  return dxfName == "POLYLINE" || dxfName == "VERTEX" || dxfName == "INSERT" || dxfName == "DIMENSION";
}

GcRxClass* classNamed(const char* name) { return gcrxFindGcRxClass(fromUtf8(name).c_str()); }

std::int64_t integerOf(const RawRecord& record, int code) {
  std::int64_t value = 0;
  const Tag* tag = record.find(code);
  if (tag) (void)tag->integer(value);
  return value;
}

// Files before R13 have no markers. The flags' bits are those of the format's reference.
GcRxClass* classByFlags(const RawRecord& record) {
  const std::int64_t flags = integerOf(record, 70);
  if (record.type == "INSERT") {
    const bool many = flags > 1 || integerOf(record, 71) > 1;
    return classNamed(many ? "AcDbMInsertBlock" : "AcDbBlockReference");
  }
  if (record.type == "POLYLINE") {
    return classNamed(flags & 64   ? "AcDbPolyFaceMesh"
                      : flags & 16 ? "AcDbPolygonMesh"
                      : flags & 8  ? "AcDb3dPolyline"
                                   : "AcDb2dPolyline");
  }
  if (record.type == "VERTEX") {
    return classNamed((flags & 192) == 192 ? "AcDbPolyFaceMeshVertex"
                      : flags & 128        ? "AcDbFaceRecord"
                      : flags & 64         ? "AcDbPolygonMeshVertex"
                      : flags & 32         ? "AcDb3dPolylineVertex"
                                           : "AcDb2dVertex");
  }
  constexpr const char* kDimensions[] = {"AcDbRotatedDimension",   "AcDbAlignedDimension", "AcDb2LineAngularDimension",
                                         "AcDbDiametricDimension", "AcDbRadialDimension",  "AcDb3PointAngularDimension",
                                         "AcDbOrdinateDimension"};
  const std::int64_t kind = flags & 7;
  return kind < 7 ? classNamed(kDimensions[kind]) : nullptr;
}

}  // namespace

ClassFinder::Known& ClassFinder::known(std::string_view dxfName) {
  if (m_last < m_known.size() && m_known[m_last].dxfName == dxfName) return m_known[m_last];
  for (m_last = 0; m_last < m_known.size(); ++m_last) {
    if (m_known[m_last].dxfName == dxfName) return m_known[m_last];
  }
  // Lines of R10 that have a height of their own at each end are lines like others since.
  const GcText name = m_context.decoded(dxfName == "3DLINE" ? "LINE" : dxfName);
  GcRxClass* found = gcrxFindGcRxClassByDxf(name.c_str());
  if (!found) {
    const GcDbClassRecord* record = m_context.database.fileParts().findClass(name);
    if (record) found = gcrxFindGcRxClass(record->className.c_str());
  }
  m_known.push_back({std::string(dxfName), found, isAmbiguous(dxfName), {}, nullptr});
  return m_known.back();
}

// The most derived class the markers name that goes by the record's DXF name. Records of one class mostly follow each
// other.
GcRxClass* ClassFinder::byMarkers(const RawRecord& record, Known& entry) {
  for (std::size_t i = record.tags.size(); i-- > 0;) {
    const Tag& tag = record.tags[i];
    if (tag.code != 100) continue;
    const std::string_view marker = tag.word();
    if (entry.lastOfMarker && entry.lastMarker == marker) return entry.lastOfMarker;
    GcRxClass* found = gcrxFindGcRxClass(fromUtf8(marker).c_str());
    if (!found || !found->dxfName() || view(found->dxfName()) != fromUtf8(record.type)) continue;
    entry.lastMarker = marker;
    entry.lastOfMarker = found;
    return found;
  }
  return nullptr;
}

GcRxClass* ClassFinder::find(const RawRecord& record) {
  Known& entry = known(record.type);
  if (!entry.ambiguous) return entry.found;
  GcRxClass* found = byMarkers(record, entry);
  return found ? found : classByFlags(record);
}

}  // namespace gc::dxf
