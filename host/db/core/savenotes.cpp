#include "host/db/core/savenotes.h"

#include "db/database.h"
#include "db/entity.h"
#include "host/db/entities/modeler_body.h"
#include "host/db/entities/shape.h"
#include "host/rx/text/number.h"

namespace gc {
namespace {

struct Since {
  const GCHAR* dxfName;
  int version;
};

// Classes that are younger than R2000. Source: the published references of the versions.
constexpr Since kYoungClasses[] = {
    {GC_T("ARC_DIMENSION"), GcDb::kDHL_AC1018},
    {GC_T("LARGE_RADIAL_DIMENSION"), GcDb::kDHL_AC1018},
    {GC_T("ACAD_TABLE"), GcDb::kDHL_AC1018},
    {GC_T("TABLESTYLE"), GcDb::kDHL_AC1018},
    {GC_T("TABLECONTENT"), GcDb::kDHL_AC1021},
    {GC_T("TABLEGEOMETRY"), GcDb::kDHL_AC1021},
    {GC_T("CELLSTYLEMAP"), GcDb::kDHL_AC1021},
    {GC_T("FIELD"), GcDb::kDHL_AC1018},
    {GC_T("FIELDLIST"), GcDb::kDHL_AC1018},
    {GC_T("SCALE"), GcDb::kDHL_AC1021},
    {GC_T("MATERIAL"), GcDb::kDHL_AC1021},
    {GC_T("VISUALSTYLE"), GcDb::kDHL_AC1021},
    {GC_T("MULTILEADER"), GcDb::kDHL_AC1021},
    {GC_T("MLEADERSTYLE"), GcDb::kDHL_AC1021},
    {GC_T("HELIX"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_ANNOTSCALEOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_TEXTOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_MTEXTATTRIBUTEOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_MTEXTOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_BLKREFOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_LEADEROBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_FCFOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_ALDIMOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_ANGDIMOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_RADIMOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_DMDIMOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_ORDDIMOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("ACDB_RADIMLGOBJECTCONTEXTDATA_CLASS"), GcDb::kDHL_AC1021},
    {GC_T("LIGHT"), GcDb::kDHL_AC1021},
    {GC_T("SUN"), GcDb::kDHL_AC1021},
    {GC_T("CAMERA"), GcDb::kDHL_AC1021},
    {GC_T("SECTIONOBJECT"), GcDb::kDHL_AC1021},
    {GC_T("SECTION"), GcDb::kDHL_AC1021},
    {GC_T("SURFACE"), GcDb::kDHL_AC1021},
    {GC_T("PLANESURFACE"), GcDb::kDHL_AC1021},
    {GC_T("EXTRUDEDSURFACE"), GcDb::kDHL_AC1021},
    {GC_T("LOFTEDSURFACE"), GcDb::kDHL_AC1021},
    {GC_T("REVOLVEDSURFACE"), GcDb::kDHL_AC1021},
    {GC_T("SWEPTSURFACE"), GcDb::kDHL_AC1021},
    {GC_T("DWFUNDERLAY"), GcDb::kDHL_AC1021},
    {GC_T("DWFDEFINITION"), GcDb::kDHL_AC1021},
    {GC_T("DGNUNDERLAY"), GcDb::kDHL_AC1021},
    {GC_T("DGNDEFINITION"), GcDb::kDHL_AC1021},
    {GC_T("PDFUNDERLAY"), GcDb::kDHL_AC1024},
    {GC_T("PDFDEFINITION"), GcDb::kDHL_AC1024},
    {GC_T("MESH"), GcDb::kDHL_AC1024},
    {GC_T("NURBSURFACE"), GcDb::kDHL_AC1024},
    {GC_T("GEODATA"), GcDb::kDHL_AC1024},
    {GC_T("ACDBDETAILVIEWSTYLE"), GcDb::kDHL_AC1027},
    {GC_T("ACDBSECTIONVIEWSTYLE"), GcDb::kDHL_AC1027},
    {GC_T("ACDBPOINTCLOUDEX"), GcDb::kDHL_AC1027},
};

bool isProxy(GcView type) { return type == GC_T("ACAD_PROXY_ENTITY") || type == GC_T("ACAD_PROXY_OBJECT"); }

}  // namespace

const char* releaseName(int version) {
  switch (version) {
    case GcDb::kDHL_AC1009: return "R12";
    case GcDb::kDHL_AC1012: return "R13";
    case GcDb::kDHL_AC1014: return "R14";
    case GcDb::kDHL_AC1015: return "R2000";
    case GcDb::kDHL_AC1018: return "R2004";
    case GcDb::kDHL_AC1021: return "R2007";
    case GcDb::kDHL_AC1024: return "R2010";
    case GcDb::kDHL_AC1027: return "R2013";
    default: return "R2018";
  }
}

int classSince(GcView dxfName) {
  for (const Since& row : kYoungClasses) {
    if (dxfName == GcView(row.dxfName)) return row.version;
  }
  return 0;
}

SaveNotes::SaveNotes(GcDbSaveReport* report, int version, TypeOf typeOf)
    : m_report(report), m_version(version), m_typeOf(typeOf) {
  const bool mayLose = report && version < GcDb::kDHL_Current;
  const bool hasObjects = version >= GcDb::kDHL_AC1012;  // before, those that are referred to are told themselves
  if (mayLose)
    m_losses = std::make_unique<GcDbLossFinder>(version, hasObjects ? GcDbLossOf::Everything : GcDbLossOf::ValuesOnly);
}

void SaveNotes::add(GcDbSaveAction action, const GcDbObject& object, const std::string& text) {
  if (m_report) m_report->add({action, object.handle(), toUtf8(m_typeOf(object)), text});
}

void SaveNotes::ofDrawing(GcDbSaveAction action, const std::string& text) {
  if (m_report) m_report->add({action, 0, {}, text});
}

void SaveNotes::tellLost(const GcDbObject& object, const std::string& lost) {
  if (!lost.empty()) mapped(object, std::string(releaseName(m_version)) + " has no " + lost);
}

void SaveNotes::lookAtCommon(const GcDbObject& entity) {
  if (m_losses) tellLost(entity, m_losses->findCommon(entity));
}

// Bodies have been bytes in a section of their own since R2013, and were text before.
void SaveNotes::lookAtBody(const GcDbObject& object) {
  if (!m_report || m_version < GcDb::kDHL_AC1012 || !gcmodeler::hasBody(object)) return;
  GcArray<uint8_t> bytes;
  const bool isBytesOnly = !gcmodeler::hasText(object) && gcmodeler::getBytes(object, bytes) == Gcad::eOk;
  if (isBytesOnly && m_version < GcDb::kDHL_AC1027)
    together(GcDbSaveAction::LeftOut, object,
             std::string("its body is known as bytes, which DXF has since R2013 only: ") + releaseName(m_version) +
                 " has the object without it");
  const auto* body = GcDbModelerGeometry::cast(&object);
  if (body != nullptr && body->hasSecond())
    together(GcDbSaveAction::LeftOut, object, "a second body behind its picture, which DXF has not");
}

void SaveNotes::lookInGroups(const GcDbObject& object) {
  lookAtBody(object);
  const auto* shape = m_report ? GcDbShape::cast(&object) : nullptr;
  if (shape != nullptr && shape->isKnownByNumberOnly())
    together(GcDbSaveAction::Mapped, object, "the file of its shape is not there: number and file stand for the name");
  look(object);
}

void SaveNotes::look(const GcDbObject& object) {
  if (!m_report) return;
  const GcView type = m_typeOf(object);
  if (m_version >= GcDb::kDHL_AC1012 && isProxy(type))
    together(GcDbSaveAction::Mapped, object, "known by the bits of a DWG record alone: a proxy that keeps them");
  if (!m_losses) return;
  tellLost(object, m_losses->find(object));
  if (m_version < GcDb::kDHL_AC1012) return;
  const auto [known, isNew] = m_since.try_emplace(type.data(), 0);
  if (isNew) known->second = classSince(type);
  if (known->second <= m_version) return;
  const std::string text = std::string("younger than ") + releaseName(m_version) +
                           ": kept as an object of its class, which programs of that version do not show";
  if (GcDbEntity::cast(&object)) {
    mapped(object, text);
  } else {
    together(GcDbSaveAction::Mapped, object, text);
  }
}

void SaveNotes::together(GcDbSaveAction action, const GcDbObject& object, const std::string& text) {
  if (!m_report) return;
  Group& group = m_groups[{toUtf8(m_typeOf(object)), text}];
  group.action = action;
  group.only = object.handle();
  group.handles += (group.count++ == 0 ? "" : ", ") + hexText(object.handle());
}

void SaveNotes::finish() {
  for (const auto& [key, group] : m_groups) {
    const bool isOne = group.count == 1;
    m_report->add(
        {group.action, isOne ? group.only : 0, key.first, isOne ? key.second : key.second + ": " + group.handles});
  }
  m_groups.clear();
}

}  // namespace gc
