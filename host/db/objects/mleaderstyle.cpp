#include "host/db/objects/mleaderstyle.h"

#include <iterator>

#include "host/db/core/extra.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbMLeaderStyle, "AcDbMLeaderStyle")

namespace {

// Three groups that are no point.
template <int Code, double GcGeScale3d::*Axis, GcGeScale3d GcDbMLeaderStyle::*Scale>
constexpr GcDbField axis(const char* name) {
  GcDbField row = field<Scale>(Code, name, Is::Plain);
  row.get = [](const void* record) {
    return GcDbGroup::ofReal(Code, (static_cast<const GcDbMLeaderStyle*>(record)->*Scale).*Axis);
  };
  row.set = [](void* record, const GcDbGroup& group) {
    (static_cast<GcDbMLeaderStyle*>(record)->*Scale).*Axis = group.asReal();
    return true;
  };
  return row;
}

}  // namespace

const GcDbField GcDbMLeaderStyle::kFields[] = {
    marker("AcDbMLeaderStyle"),
    field<&GcDbMLeaderStyle::m_version>(179, "version", Is::Plain).from(GcDb::kDHL_AC1024).orElse(2),
    field<&GcDbMLeaderStyle::m_contentType>(170, "contentType", Is::Plain),
    field<&GcDbMLeaderStyle::m_drawOrder>(171, "drawOrder", Is::Plain),
    field<&GcDbMLeaderStyle::m_leaderDrawOrder>(172, "leaderDrawOrder", Is::Plain),
    field<&GcDbMLeaderStyle::m_maxPoints>(90, "maxPoints", Is::Plain),
    field<&GcDbMLeaderStyle::m_firstAngleRad>(40, "firstAngle", Is::Plain),
    field<&GcDbMLeaderStyle::m_secondAngleRad>(41, "secondAngle", Is::Plain),
    field<&GcDbMLeaderStyle::m_leaderType>(173, "leaderType", Is::Plain),
    field<&GcDbMLeaderStyle::m_lineColor>(91, "lineColor", Is::Plain),
    field<&GcDbMLeaderStyle::m_linetype>(340, "linetype", Is::HardPointer),
    field<&GcDbMLeaderStyle::m_lineWeight>(92, "lineWeight", Is::Plain),
    field<&GcDbMLeaderStyle::m_hasLanding>(290, "hasLanding", Is::Plain),
    field<&GcDbMLeaderStyle::m_gap>(42, "gap", Is::Plain),
    field<&GcDbMLeaderStyle::m_hasDogleg>(291, "hasDogleg", Is::Plain),
    field<&GcDbMLeaderStyle::m_doglegLength>(43, "doglegLength", Is::Plain),
    field<&GcDbMLeaderStyle::m_description>(3, "description", Is::Plain),
    field<&GcDbMLeaderStyle::m_arrow>(341, "arrow", Is::HardPointer),
    field<&GcDbMLeaderStyle::m_arrowSize>(44, "arrowSize", Is::Plain),
    field<&GcDbMLeaderStyle::m_defaultText>(300, "defaultText", Is::Plain),
    field<&GcDbMLeaderStyle::m_textStyle>(342, "textStyle", Is::HardPointer),
    field<&GcDbMLeaderStyle::m_left>(174, "textLeft", Is::Plain),
    field<&GcDbMLeaderStyle::m_right>(178, "textRight", Is::Plain),
    field<&GcDbMLeaderStyle::m_angleType>(175, "angleType", Is::Plain),
    field<&GcDbMLeaderStyle::m_alignment>(176, "alignment", Is::Plain),
    field<&GcDbMLeaderStyle::m_textColor>(93, "textColor", Is::Plain),
    field<&GcDbMLeaderStyle::m_textHeight>(45, "textHeight", Is::Plain),
    field<&GcDbMLeaderStyle::m_hasFrame>(292, "hasFrame", Is::Plain),
    field<&GcDbMLeaderStyle::m_alwaysLeft>(297, "alwaysLeft", Is::Plain),
    field<&GcDbMLeaderStyle::m_alignSpace>(46, "alignSpace", Is::Plain),
    field<&GcDbMLeaderStyle::m_block>(343, "block", Is::HardPointer),
    field<&GcDbMLeaderStyle::m_blockColor>(94, "blockColor", Is::Plain),
    axis<47, &GcGeScale3d::sx, &GcDbMLeaderStyle::m_blockScale>("blockScaleX"),
    axis<49, &GcGeScale3d::sy, &GcDbMLeaderStyle::m_blockScale>("blockScaleY").echo(),
    axis<140, &GcGeScale3d::sz, &GcDbMLeaderStyle::m_blockScale>("blockScaleZ").echo(),
    field<&GcDbMLeaderStyle::m_usesBlockScale>(293, "usesBlockScale", Is::Plain),
    field<&GcDbMLeaderStyle::m_blockRotationRad>(141, "blockRotation", Is::Plain),
    field<&GcDbMLeaderStyle::m_usesBlockRotation>(294, "usesBlockRotation", Is::Plain),
    field<&GcDbMLeaderStyle::m_blockAttachment>(177, "blockAttachment", Is::Plain),
    field<&GcDbMLeaderStyle::m_scale>(142, "scale", Is::Plain),
    field<&GcDbMLeaderStyle::m_isChanged>(295, "isChanged", Is::Plain),
    field<&GcDbMLeaderStyle::m_isAnnotative>(296, "isAnnotative", Is::Plain),
    field<&GcDbMLeaderStyle::m_breakSize>(143, "breakSize", Is::Plain),
    field<&GcDbMLeaderStyle::m_attachmentDirection>(271, "attachmentDirection", Is::Plain).from(GcDb::kDHL_AC1024),
    field<&GcDbMLeaderStyle::m_bottom>(272, "bottomAttachment", Is::Plain).from(GcDb::kDHL_AC1024).orElse(9),
    field<&GcDbMLeaderStyle::m_top>(273, "topAttachment", Is::Plain).from(GcDb::kDHL_AC1024).orElse(9),
    field<&GcDbMLeaderStyle::m_extendsToText>(298, "extendsToText", Is::Plain).from(GcDb::kDHL_AC1027),
};
GCDB_FIELD_COUNT(GcDbMLeaderStyle);

namespace {

constexpr const GCHAR* kVersionApplication = GC_T("ACAD_MLEADERVER");

}  // namespace

int GcDbMLeaderStyle::formInXData() const {
  if (extra() == nullptr) return 1;
  bool inside = false;
  GcDbGroupList::Cursor cursor(extra()->xdata);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code == 1001) inside = group.text == kVersionApplication;
    if (inside && group.code == 1070) return static_cast<int>(group.asInt());
  }
  return 1;
}

void GcDbMLeaderStyle::markSecondForm() {
  constexpr int kSecond = 2;
  const bool isPlain = m_angleType == 1 && !m_alwaysLeft;  // what readers of the first form take
  if (isPlain || formInXData() >= kSecond) return;
  GcDbGroupList& xdata = needExtra().xdata;
  xdata.put(GcDbGroup::ofText(1001, kVersionApplication));
  xdata.put(GcDbGroup::ofInt(1070, kSecond));
}
