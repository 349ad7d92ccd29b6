// Dimension styles: the settings of dimensions, under the names the drawing's variables have.
#pragma once

#include "db/symboltablerecord.h"

// Lengths in drawing units before the overall scale; colours as palette indexes (0 by block, 256 by layer); widths
// of lines in hundredths of a millimetre; blocks of arrowheads null for the closed filled arrow.
class GcDbDimStyleTableRecord : public GcDbSymbolTableRecord {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDimStyleTableRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbDimStyleTableRecord() = default;

  [[nodiscard]] const GcString& dimpost() const { return m_post; }
  Gcad::ErrorStatus setDimpost(const GCHAR* value) { return assign(m_post, GcString(value)); }
  [[nodiscard]] const GcString& dimapost() const { return m_apost; }
  Gcad::ErrorStatus setDimapost(const GCHAR* value) { return assign(m_apost, GcString(value)); }
  [[nodiscard]] double dimscale() const { return m_scale; }
  Gcad::ErrorStatus setDimscale(double value) { return assign(m_scale, value); }
  [[nodiscard]] double dimasz() const { return m_asz; }
  Gcad::ErrorStatus setDimasz(double value) { return assign(m_asz, value); }
  [[nodiscard]] double dimexo() const { return m_exo; }
  Gcad::ErrorStatus setDimexo(double value) { return assign(m_exo, value); }
  [[nodiscard]] double dimdli() const { return m_dli; }
  Gcad::ErrorStatus setDimdli(double value) { return assign(m_dli, value); }
  [[nodiscard]] double dimexe() const { return m_exe; }
  Gcad::ErrorStatus setDimexe(double value) { return assign(m_exe, value); }
  [[nodiscard]] double dimrnd() const { return m_rnd; }
  Gcad::ErrorStatus setDimrnd(double value) { return assign(m_rnd, value); }
  [[nodiscard]] double dimdle() const { return m_dle; }
  Gcad::ErrorStatus setDimdle(double value) { return assign(m_dle, value); }
  [[nodiscard]] double dimtp() const { return m_tp; }
  Gcad::ErrorStatus setDimtp(double value) { return assign(m_tp, value); }
  [[nodiscard]] double dimtm() const { return m_tm; }
  Gcad::ErrorStatus setDimtm(double value) { return assign(m_tm, value); }
  [[nodiscard]] double dimfxl() const { return m_fxl; }
  Gcad::ErrorStatus setDimfxl(double value) { return assign(m_fxl, value); }
  [[nodiscard]] double dimjogang() const { return m_jogang; }
  Gcad::ErrorStatus setDimjogang(double value) { return assign(m_jogang, value); }
  [[nodiscard]] int dimtfill() const { return m_tfill; }
  Gcad::ErrorStatus setDimtfill(int value) { return assign(m_tfill, static_cast<int16_t>(value)); }
  [[nodiscard]] double dimtxt() const { return m_txt; }
  Gcad::ErrorStatus setDimtxt(double value) { return assign(m_txt, value); }
  [[nodiscard]] double dimcen() const { return m_cen; }
  Gcad::ErrorStatus setDimcen(double value) { return assign(m_cen, value); }
  [[nodiscard]] double dimtsz() const { return m_tsz; }
  Gcad::ErrorStatus setDimtsz(double value) { return assign(m_tsz, value); }
  [[nodiscard]] double dimaltf() const { return m_altf; }
  Gcad::ErrorStatus setDimaltf(double value) { return assign(m_altf, value); }
  [[nodiscard]] double dimlfac() const { return m_lfac; }
  Gcad::ErrorStatus setDimlfac(double value) { return assign(m_lfac, value); }
  [[nodiscard]] double dimtvp() const { return m_tvp; }
  Gcad::ErrorStatus setDimtvp(double value) { return assign(m_tvp, value); }
  [[nodiscard]] double dimtfac() const { return m_tfac; }
  Gcad::ErrorStatus setDimtfac(double value) { return assign(m_tfac, value); }
  [[nodiscard]] double dimgap() const { return m_gap; }
  Gcad::ErrorStatus setDimgap(double value) { return assign(m_gap, value); }
  [[nodiscard]] double dimaltrnd() const { return m_altrnd; }
  Gcad::ErrorStatus setDimaltrnd(double value) { return assign(m_altrnd, value); }
  [[nodiscard]] int dimtol() const { return m_tol; }
  Gcad::ErrorStatus setDimtol(int value) { return assign(m_tol, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimlim() const { return m_lim; }
  Gcad::ErrorStatus setDimlim(int value) { return assign(m_lim, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimtih() const { return m_tih; }
  Gcad::ErrorStatus setDimtih(int value) { return assign(m_tih, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimtoh() const { return m_toh; }
  Gcad::ErrorStatus setDimtoh(int value) { return assign(m_toh, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimse1() const { return m_se1; }
  Gcad::ErrorStatus setDimse1(int value) { return assign(m_se1, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimse2() const { return m_se2; }
  Gcad::ErrorStatus setDimse2(int value) { return assign(m_se2, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimtad() const { return m_tad; }
  Gcad::ErrorStatus setDimtad(int value) { return assign(m_tad, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimzin() const { return m_zin; }
  Gcad::ErrorStatus setDimzin(int value) { return assign(m_zin, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimazin() const { return m_azin; }
  Gcad::ErrorStatus setDimazin(int value) { return assign(m_azin, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimarcsym() const { return m_arcsym; }
  Gcad::ErrorStatus setDimarcsym(int value) { return assign(m_arcsym, static_cast<int32_t>(value)); }
  [[nodiscard]] int dimalt() const { return m_alt; }
  Gcad::ErrorStatus setDimalt(int value) { return assign(m_alt, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimaltd() const { return m_altd; }
  Gcad::ErrorStatus setDimaltd(int value) { return assign(m_altd, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimtofl() const { return m_tofl; }
  Gcad::ErrorStatus setDimtofl(int value) { return assign(m_tofl, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimsah() const { return m_sah; }
  Gcad::ErrorStatus setDimsah(int value) { return assign(m_sah, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimtix() const { return m_tix; }
  Gcad::ErrorStatus setDimtix(int value) { return assign(m_tix, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimsoxd() const { return m_soxd; }
  Gcad::ErrorStatus setDimsoxd(int value) { return assign(m_soxd, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimclrd() const { return m_clrd; }
  Gcad::ErrorStatus setDimclrd(int value) { return assign(m_clrd, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimclre() const { return m_clre; }
  Gcad::ErrorStatus setDimclre(int value) { return assign(m_clre, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimclrt() const { return m_clrt; }
  Gcad::ErrorStatus setDimclrt(int value) { return assign(m_clrt, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimadec() const { return m_adec; }
  Gcad::ErrorStatus setDimadec(int value) { return assign(m_adec, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimunit() const { return m_unit; }
  Gcad::ErrorStatus setDimunit(int value) { return assign(m_unit, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimdec() const { return m_dec; }
  Gcad::ErrorStatus setDimdec(int value) { return assign(m_dec, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimtdec() const { return m_tdec; }
  Gcad::ErrorStatus setDimtdec(int value) { return assign(m_tdec, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimaltu() const { return m_altu; }
  Gcad::ErrorStatus setDimaltu(int value) { return assign(m_altu, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimalttd() const { return m_alttd; }
  Gcad::ErrorStatus setDimalttd(int value) { return assign(m_alttd, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimaunit() const { return m_aunit; }
  Gcad::ErrorStatus setDimaunit(int value) { return assign(m_aunit, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimfrac() const { return m_frac; }
  Gcad::ErrorStatus setDimfrac(int value) { return assign(m_frac, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimlunit() const { return m_lunit; }
  Gcad::ErrorStatus setDimlunit(int value) { return assign(m_lunit, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimdsep() const { return m_dsep; }
  Gcad::ErrorStatus setDimdsep(int value) { return assign(m_dsep, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimtmove() const { return m_tmove; }
  Gcad::ErrorStatus setDimtmove(int value) { return assign(m_tmove, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimjust() const { return m_just; }
  Gcad::ErrorStatus setDimjust(int value) { return assign(m_just, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimsd1() const { return m_sd1; }
  Gcad::ErrorStatus setDimsd1(int value) { return assign(m_sd1, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimsd2() const { return m_sd2; }
  Gcad::ErrorStatus setDimsd2(int value) { return assign(m_sd2, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimtolj() const { return m_tolj; }
  Gcad::ErrorStatus setDimtolj(int value) { return assign(m_tolj, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimtzin() const { return m_tzin; }
  Gcad::ErrorStatus setDimtzin(int value) { return assign(m_tzin, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimaltz() const { return m_altz; }
  Gcad::ErrorStatus setDimaltz(int value) { return assign(m_altz, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimalttz() const { return m_alttz; }
  Gcad::ErrorStatus setDimalttz(int value) { return assign(m_alttz, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimfit() const { return m_fit; }
  Gcad::ErrorStatus setDimfit(int value) { return assign(m_fit, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimupt() const { return m_upt; }
  Gcad::ErrorStatus setDimupt(int value) { return assign(m_upt, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimatfit() const { return m_atfit; }
  Gcad::ErrorStatus setDimatfit(int value) { return assign(m_atfit, static_cast<int16_t>(value)); }
  [[nodiscard]] bool dimfxlon() const { return m_fxlon; }
  Gcad::ErrorStatus setDimfxlon(bool value) { return assign(m_fxlon, value); }
  [[nodiscard]] bool dimtxtdirection() const { return m_txtdirection; }
  Gcad::ErrorStatus setDimtxtdirection(bool value) { return assign(m_txtdirection, value); }
  [[nodiscard]] GcDbObjectId dimtxsty() const { return m_txsty; }
  Gcad::ErrorStatus setDimtxsty(GcDbObjectId id) { return assign(m_txsty, id); }
  [[nodiscard]] GcDbObjectId dimldrblk() const { return m_ldrblk; }
  Gcad::ErrorStatus setDimldrblk(GcDbObjectId id) { return assign(m_ldrblk, id); }
  [[nodiscard]] GcDbObjectId dimblk() const { return m_blk; }
  Gcad::ErrorStatus setDimblk(GcDbObjectId id) { return assign(m_blk, id); }
  [[nodiscard]] GcDbObjectId dimblk1() const { return m_blk1; }
  Gcad::ErrorStatus setDimblk1(GcDbObjectId id) { return assign(m_blk1, id); }
  [[nodiscard]] GcDbObjectId dimblk2() const { return m_blk2; }
  Gcad::ErrorStatus setDimblk2(GcDbObjectId id) { return assign(m_blk2, id); }
  [[nodiscard]] GcDbObjectId dimltype() const { return m_ltype; }
  Gcad::ErrorStatus setDimltype(GcDbObjectId id) { return assign(m_ltype, id); }
  [[nodiscard]] GcDbObjectId dimltex1() const { return m_ltex1; }
  Gcad::ErrorStatus setDimltex1(GcDbObjectId id) { return assign(m_ltex1, id); }
  [[nodiscard]] GcDbObjectId dimltex2() const { return m_ltex2; }
  Gcad::ErrorStatus setDimltex2(GcDbObjectId id) { return assign(m_ltex2, id); }
  [[nodiscard]] int dimlwd() const { return m_lwd; }
  Gcad::ErrorStatus setDimlwd(int value) { return assign(m_lwd, static_cast<int16_t>(value)); }
  [[nodiscard]] int dimlwe() const { return m_lwe; }
  Gcad::ErrorStatus setDimlwe(int value) { return assign(m_lwe, static_cast<int16_t>(value)); }
  // The metric settings of a new drawing.
  void setMetric();

 private:
  double m_scale = 1;
  double m_asz = 0.18;
  double m_exo = 0.0625;
  double m_dli = 0.38;
  double m_exe = 0.18;
  double m_rnd = 0;
  double m_dle = 0;
  double m_tp = 0;
  double m_tm = 0;
  double m_fxl = 1;
  double m_jogang = 0.78539816339744828;
  double m_txt = 0.18;
  double m_cen = 0.09;
  double m_tsz = 0;
  double m_altf = 25.4;
  double m_lfac = 1;
  double m_tvp = 0;
  double m_tfac = 1;
  double m_gap = 0.09;
  double m_altrnd = 0;
  GcString m_post;
  GcString m_apost;
  GcDbObjectId m_txsty;
  GcDbObjectId m_ldrblk;
  GcDbObjectId m_blk;
  GcDbObjectId m_blk1;
  GcDbObjectId m_blk2;
  GcDbObjectId m_ltype;
  GcDbObjectId m_ltex1;
  GcDbObjectId m_ltex2;
  int32_t m_arcsym = 0;
  int16_t m_tfill = 0;
  int16_t m_tfillclr = 0;
  int16_t m_tol = 0;
  int16_t m_lim = 0;
  int16_t m_tih = 1;
  int16_t m_toh = 1;
  int16_t m_se1 = 0;
  int16_t m_se2 = 0;
  int16_t m_tad = 0;
  int16_t m_zin = 0;
  int16_t m_azin = 0;
  int16_t m_alt = 0;
  int16_t m_altd = 2;
  int16_t m_tofl = 0;
  int16_t m_sah = 0;
  int16_t m_tix = 0;
  int16_t m_soxd = 0;
  int16_t m_clrd = 0;
  int16_t m_clre = 0;
  int16_t m_clrt = 0;
  int16_t m_adec = 0;
  int16_t m_unit = 2;
  int16_t m_dec = 4;
  int16_t m_tdec = 4;
  int16_t m_altu = 2;
  int16_t m_alttd = 2;
  int16_t m_aunit = 0;
  int16_t m_frac = 0;
  int16_t m_lunit = 2;
  int16_t m_dsep = 46;
  int16_t m_tmove = 0;
  int16_t m_just = 0;
  int16_t m_sd1 = 0;
  int16_t m_sd2 = 0;
  int16_t m_tolj = 1;
  int16_t m_tzin = 0;
  int16_t m_altz = 0;
  int16_t m_alttz = 0;
  int16_t m_fit = 3;
  int16_t m_upt = 0;
  int16_t m_atfit = 3;
  int16_t m_lwd = -2;
  int16_t m_lwe = -2;
  bool m_fxlon = false;
  bool m_txtdirection = false;
  // Arrowheads by name, as files before 2000 have them.
  GcString m_oldBlk, m_oldBlk1, m_oldBlk2;
};
