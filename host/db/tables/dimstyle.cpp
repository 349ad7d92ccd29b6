#include "db/dimstyle.h"

#include <iterator>

#include "host/db/core/names.h"
#include "host/db/describe/fieldio.h"

namespace {

// Files before R2000 name the arrowhead's block; one that the drawing lacks is the text that was read.
GcDbGroup arrowName(int code, GcDbObjectId block, const GcString& read) {
  return GcDbGroup::ofText(code, block.isNull() ? view(read) : gcdbNameOfRecord(block));
}

}  // namespace

GCDB_DEFINE_CLASS(GcDbDimStyleTableRecord, "AcDbDimStyleTableRecord")

// Every setting is written: readers differ in what they assume for those a file leaves out.
const GcDbField GcDbDimStyleTableRecord::kFields[] = {
    marker("AcDbDimStyleTableRecord"),
    field<&GcDbDimStyleTableRecord::m_name>(2, "name", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_flags>(70, "flags", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_post>(3, "dimpost", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_apost>(4, "dimapost", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_oldBlk>(5, "oldDimblk", Is::Plain)
        .filedAs(
            [](const void* record) {
              const auto& style = *static_cast<const GcDbDimStyleTableRecord*>(record);
              return arrowName(5, style.m_blk, style.m_oldBlk);
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDbDimStyleTableRecord*>(record)->m_oldBlk = toGcString(group.text);
              return true;
            })
        .until(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_oldBlk1>(6, "oldDimblk1", Is::Plain)
        .filedAs(
            [](const void* record) {
              const auto& style = *static_cast<const GcDbDimStyleTableRecord*>(record);
              return arrowName(6, style.m_blk1, style.m_oldBlk1);
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDbDimStyleTableRecord*>(record)->m_oldBlk1 = toGcString(group.text);
              return true;
            })
        .until(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_oldBlk2>(7, "oldDimblk2", Is::Plain)
        .filedAs(
            [](const void* record) {
              const auto& style = *static_cast<const GcDbDimStyleTableRecord*>(record);
              return arrowName(7, style.m_blk2, style.m_oldBlk2);
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDbDimStyleTableRecord*>(record)->m_oldBlk2 = toGcString(group.text);
              return true;
            })
        .until(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_scale>(40, "dimscale", Is::Plain).orElse(1),
    field<&GcDbDimStyleTableRecord::m_asz>(41, "dimasz", Is::Plain).orElse(0.18),
    field<&GcDbDimStyleTableRecord::m_exo>(42, "dimexo", Is::Plain).orElse(0.0625),
    field<&GcDbDimStyleTableRecord::m_dli>(43, "dimdli", Is::Plain).orElse(0.38),
    field<&GcDbDimStyleTableRecord::m_exe>(44, "dimexe", Is::Plain).orElse(0.18),
    field<&GcDbDimStyleTableRecord::m_rnd>(45, "dimrnd", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_dle>(46, "dimdle", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_tp>(47, "dimtp", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_tm>(48, "dimtm", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_fxl>(49, "dimfxl", Is::Plain).orElse(1).from(GcDb::kDHL_AC1021),
    field<&GcDbDimStyleTableRecord::m_jogang>(50, "dimjogang", Is::Plain)
        .orElse(0.78539816339744828)
        .from(GcDb::kDHL_AC1021),
    field<&GcDbDimStyleTableRecord::m_tfill>(69, "dimtfill", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbDimStyleTableRecord::m_tfillclr>(70, "dimtfillclr", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbDimStyleTableRecord::m_txt>(140, "dimtxt", Is::Plain).orElse(0.18),
    field<&GcDbDimStyleTableRecord::m_cen>(141, "dimcen", Is::Plain).orElse(0.09),
    field<&GcDbDimStyleTableRecord::m_tsz>(142, "dimtsz", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_altf>(143, "dimaltf", Is::Plain).orElse(25.4),
    field<&GcDbDimStyleTableRecord::m_lfac>(144, "dimlfac", Is::Plain).orElse(1),
    field<&GcDbDimStyleTableRecord::m_tvp>(145, "dimtvp", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_tfac>(146, "dimtfac", Is::Plain).orElse(1),
    field<&GcDbDimStyleTableRecord::m_gap>(147, "dimgap", Is::Plain).orElse(0.09),
    field<&GcDbDimStyleTableRecord::m_altrnd>(148, "dimaltrnd", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_tol>(71, "dimtol", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_lim>(72, "dimlim", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_tih>(73, "dimtih", Is::Plain).orElse(1),
    field<&GcDbDimStyleTableRecord::m_toh>(74, "dimtoh", Is::Plain).orElse(1),
    field<&GcDbDimStyleTableRecord::m_se1>(75, "dimse1", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_se2>(76, "dimse2", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_tad>(77, "dimtad", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_zin>(78, "dimzin", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_azin>(79, "dimazin", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_arcsym>(90, "dimarcsym", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbDimStyleTableRecord::m_alt>(170, "dimalt", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_altd>(171, "dimaltd", Is::Plain).orElse(2),
    field<&GcDbDimStyleTableRecord::m_tofl>(172, "dimtofl", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_sah>(173, "dimsah", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_tix>(174, "dimtix", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_soxd>(175, "dimsoxd", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_clrd>(176, "dimclrd", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_clre>(177, "dimclre", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_clrt>(178, "dimclrt", Is::Plain),
    field<&GcDbDimStyleTableRecord::m_adec>(179, "dimadec", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_unit>(270, "dimunit", Is::Plain)
        .orElse(2)
        .until(GcDb::kDHL_AC1015)
        .from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_dec>(271, "dimdec", Is::Plain).orElse(4).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_tdec>(272, "dimtdec", Is::Plain).orElse(4).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_altu>(273, "dimaltu", Is::Plain).orElse(2).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_alttd>(274, "dimalttd", Is::Plain).orElse(2).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_aunit>(275, "dimaunit", Is::Plain).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_frac>(276, "dimfrac", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_lunit>(277, "dimlunit", Is::Plain).orElse(2).from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_dsep>(278, "dimdsep", Is::Plain).orElse(46).from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_tmove>(279, "dimtmove", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_just>(280, "dimjust", Is::Plain).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_sd1>(281, "dimsd1", Is::Plain).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_sd2>(282, "dimsd2", Is::Plain).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_tolj>(283, "dimtolj", Is::Plain).orElse(1).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_tzin>(284, "dimtzin", Is::Plain).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_altz>(285, "dimaltz", Is::Plain).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_alttz>(286, "dimalttz", Is::Plain).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_fit>(287, "dimfit", Is::Plain)
        .orElse(3)
        .until(GcDb::kDHL_AC1015)
        .from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_upt>(288, "dimupt", Is::Plain).from(GcDb::kDHL_AC1012),
    field<&GcDbDimStyleTableRecord::m_atfit>(289, "dimatfit", Is::Plain).orElse(3).from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_fxlon>(290, "dimfxlon", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&GcDbDimStyleTableRecord::m_txtdirection>(294, "dimtxtdirection", Is::Plain).from(GcDb::kDHL_AC1024),
    field<&GcDbDimStyleTableRecord::m_txsty>(340, "dimtxsty", Is::HardPointer, Write::FilesUnlessDefault),
    field<&GcDbDimStyleTableRecord::m_ldrblk>(341, "dimldrblk", Is::HardPointer, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_blk>(342, "dimblk", Is::HardPointer, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_blk1>(343, "dimblk1", Is::HardPointer, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_blk2>(344, "dimblk2", Is::HardPointer, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_ltype>(345, "dimltype", Is::HardPointer, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1021),
    field<&GcDbDimStyleTableRecord::m_ltex1>(346, "dimltex1", Is::HardPointer, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1021),
    field<&GcDbDimStyleTableRecord::m_ltex2>(347, "dimltex2", Is::HardPointer, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1021),
    field<&GcDbDimStyleTableRecord::m_lwd>(371, "dimlwd", Is::Plain).orElse(-2).from(GcDb::kDHL_AC1015),
    field<&GcDbDimStyleTableRecord::m_lwe>(372, "dimlwe", Is::Plain).orElse(-2).from(GcDb::kDHL_AC1015),
};
GCDB_FIELD_COUNT(GcDbDimStyleTableRecord);

void GcDbDimStyleTableRecord::setMetric() {
  assertWriteEnabled();
  m_asz = m_txt = m_cen = 2.5;
  m_exo = m_gap = 0.625;
  m_dli = 3.75;
  m_exe = 1.25;
  m_altf = 0.03937007874;
  m_tih = m_toh = 0;
  m_tad = 1;
  m_zin = m_tzin = 8;
  m_altd = m_alttd = 3;
  m_tofl = 1;
  m_dec = m_tdec = 2;
  m_dsep = ',';
  m_tolj = 0;
}
