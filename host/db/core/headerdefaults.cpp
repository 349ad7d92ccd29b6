// The settings of a new drawing: metric, in the order in which files have them.
#include <chrono>
#include <ctime>

#include "host/db/core/header.h"

namespace {

enum class Holds : uint8_t { Text, Real, Number, Point, Point2d, LocalTime, UniversalTime };

struct Setting {
  const char* name;
  Holds holds;
  int16_t code;
  double x, y, z;
  const char* text;
};

constexpr Setting text(const char* name, int16_t code, const char* value) {
  return {name, Holds::Text, code, 0, 0, 0, value};
}
constexpr Setting real(const char* name, int16_t code, double value) {
  return {name, Holds::Real, code, value, 0, 0, ""};
}
constexpr Setting number(const char* name, int16_t code, int value) {
  return {name, Holds::Number, code, static_cast<double>(value), 0, 0, ""};
}
constexpr Setting point(const char* name, double x, double y, double z) {
  return {name, Holds::Point, 10, x, y, z, ""};
}
constexpr Setting point2(const char* name, double x, double y) { return {name, Holds::Point2d, 10, x, y, 0, ""}; }
constexpr Setting localTime(const char* name) { return {name, Holds::LocalTime, 40, 0, 0, 0, ""}; }
constexpr Setting universalTime(const char* name) { return {name, Holds::UniversalTime, 40, 0, 0, 0, ""}; }

constexpr Setting kSettings[] = {
    text("$ACADVER", 1, "AC1032"),
    number("$ACADMAINTVER", 90, 0),
    text("$DWGCODEPAGE", 3, "ANSI_1252"),
    text("$LASTSAVEDBY", 1, ""),
    point("$INSBASE", 0, 0, 0),
    point("$EXTMIN", 1e20, 1e20, 1e20),
    point("$EXTMAX", -1e20, -1e20, -1e20),
    point2("$LIMMIN", 0, 0),
    point2("$LIMMAX", 420, 297),
    number("$ORTHOMODE", 70, 0),
    number("$REGENMODE", 70, 1),
    number("$FILLMODE", 70, 1),
    number("$QTEXTMODE", 70, 0),
    number("$MIRRTEXT", 70, 0),
    real("$LTSCALE", 40, 1),
    number("$ATTMODE", 70, 1),
    real("$TEXTSIZE", 40, 2.5),
    real("$TRACEWID", 40, 1),
    text("$TEXTSTYLE", 7, "Standard"),
    text("$CLAYER", 8, "0"),
    text("$CELTYPE", 6, "ByLayer"),
    number("$CECOLOR", 62, 256),
    real("$CELTSCALE", 40, 1),
    number("$DISPSILH", 70, 0),
    real("$DIMSCALE", 40, 1),
    real("$DIMASZ", 40, 2.5),
    real("$DIMEXO", 40, 0.625),
    real("$DIMDLI", 40, 3.75),
    real("$DIMRND", 40, 0),
    real("$DIMDLE", 40, 0),
    real("$DIMEXE", 40, 1.25),
    real("$DIMTP", 40, 0),
    real("$DIMTM", 40, 0),
    real("$DIMTXT", 40, 2.5),
    real("$DIMCEN", 40, 2.5),
    real("$DIMTSZ", 40, 0),
    number("$DIMTOL", 70, 0),
    number("$DIMLIM", 70, 0),
    number("$DIMTIH", 70, 0),
    number("$DIMTOH", 70, 0),
    number("$DIMSE1", 70, 0),
    number("$DIMSE2", 70, 0),
    number("$DIMTAD", 70, 1),
    number("$DIMZIN", 70, 0),
    text("$DIMBLK", 1, ""),
    number("$DIMASO", 70, 1),
    number("$DIMSHO", 70, 1),
    text("$DIMPOST", 1, ""),
    text("$DIMAPOST", 1, ""),
    number("$DIMALT", 70, 0),
    number("$DIMALTD", 70, 3),
    real("$DIMALTF", 40, 0.03937007874016),
    real("$DIMLFAC", 40, 1),
    number("$DIMTOFL", 70, 1),
    real("$DIMTVP", 40, 0),
    number("$DIMTIX", 70, 0),
    number("$DIMSOXD", 70, 0),
    number("$DIMSAH", 70, 0),
    text("$DIMBLK1", 1, ""),
    text("$DIMBLK2", 1, ""),
    text("$DIMSTYLE", 2, "Standard"),
    number("$DIMCLRD", 70, 0),
    number("$DIMCLRE", 70, 0),
    number("$DIMCLRT", 70, 0),
    real("$DIMTFAC", 40, 1),
    real("$DIMGAP", 40, 0.625),
    number("$DIMJUST", 70, 0),
    number("$DIMSD1", 70, 0),
    number("$DIMSD2", 70, 0),
    number("$DIMTOLJ", 70, 0),
    number("$DIMTZIN", 70, 0),
    number("$DIMALTZ", 70, 0),
    number("$DIMALTTZ", 70, 0),
    number("$DIMUPT", 70, 0),
    number("$DIMDEC", 70, 2),
    number("$DIMTDEC", 70, 2),
    number("$DIMALTU", 70, 2),
    number("$DIMALTTD", 70, 3),
    text("$DIMTXSTY", 7, "Standard"),
    number("$DIMAUNIT", 70, 0),
    number("$DIMADEC", 70, 0),
    real("$DIMALTRND", 40, 0),
    number("$DIMAZIN", 70, 0),
    number("$DIMDSEP", 70, 44),
    number("$DIMATFIT", 70, 3),
    number("$DIMFRAC", 70, 0),
    text("$DIMLDRBLK", 1, ""),
    number("$DIMLUNIT", 70, 2),
    number("$DIMLWD", 70, -2),
    number("$DIMLWE", 70, -2),
    number("$DIMTMOVE", 70, 0),
    real("$DIMFXL", 40, 1),
    number("$DIMFXLON", 70, 0),
    real("$DIMJOGANG", 40, 0.7853981633974483),
    number("$DIMTFILL", 70, 0),
    number("$DIMTFILLCLR", 70, 0),
    number("$DIMARCSYM", 70, 0),
    text("$DIMLTYPE", 6, ""),
    text("$DIMLTEX1", 6, ""),
    text("$DIMLTEX2", 6, ""),
    number("$DIMTXTDIRECTION", 70, 0),
    number("$LUNITS", 70, 2),
    number("$LUPREC", 70, 4),
    real("$SKETCHINC", 40, 1),
    real("$FILLETRAD", 40, 0),
    number("$AUNITS", 70, 0),
    number("$AUPREC", 70, 0),
    text("$MENU", 1, "."),
    real("$ELEVATION", 40, 0),
    real("$PELEVATION", 40, 0),
    real("$THICKNESS", 40, 0),
    number("$LIMCHECK", 70, 0),
    real("$CHAMFERA", 40, 0),
    real("$CHAMFERB", 40, 0),
    real("$CHAMFERC", 40, 0),
    real("$CHAMFERD", 40, 0),
    number("$SKPOLY", 70, 0),
    localTime("$TDCREATE"),
    universalTime("$TDUCREATE"),
    localTime("$TDUPDATE"),
    universalTime("$TDUUPDATE"),
    real("$TDINDWG", 40, 0),
    real("$TDUSRTIMER", 40, 0),
    number("$USRTIMER", 70, 1),
    real("$ANGBASE", 50, 0),
    number("$ANGDIR", 70, 0),
    number("$PDMODE", 70, 0),
    real("$PDSIZE", 40, 0),
    real("$PLINEWID", 40, 0),
    number("$SPLFRAME", 70, 0),
    number("$SPLINETYPE", 70, 6),
    number("$SPLINESEGS", 70, 8),
    number("$HANDSEED", 5, 0),
    number("$SURFTAB1", 70, 6),
    number("$SURFTAB2", 70, 6),
    number("$SURFTYPE", 70, 6),
    number("$SURFU", 70, 6),
    number("$SURFV", 70, 6),
    text("$UCSBASE", 2, ""),
    text("$UCSNAME", 2, ""),
    point("$UCSORG", 0, 0, 0),
    point("$UCSXDIR", 1, 0, 0),
    point("$UCSYDIR", 0, 1, 0),
    text("$UCSORTHOREF", 2, ""),
    number("$UCSORTHOVIEW", 70, 0),
    point("$UCSORGTOP", 0, 0, 0),
    point("$UCSORGBOTTOM", 0, 0, 0),
    point("$UCSORGLEFT", 0, 0, 0),
    point("$UCSORGRIGHT", 0, 0, 0),
    point("$UCSORGFRONT", 0, 0, 0),
    point("$UCSORGBACK", 0, 0, 0),
    text("$PUCSBASE", 2, ""),
    text("$PUCSNAME", 2, ""),
    point("$PUCSORG", 0, 0, 0),
    point("$PUCSXDIR", 1, 0, 0),
    point("$PUCSYDIR", 0, 1, 0),
    text("$PUCSORTHOREF", 2, ""),
    number("$PUCSORTHOVIEW", 70, 0),
    point("$PUCSORGTOP", 0, 0, 0),
    point("$PUCSORGBOTTOM", 0, 0, 0),
    point("$PUCSORGLEFT", 0, 0, 0),
    point("$PUCSORGRIGHT", 0, 0, 0),
    point("$PUCSORGFRONT", 0, 0, 0),
    point("$PUCSORGBACK", 0, 0, 0),
    number("$USERI1", 70, 0),
    number("$USERI2", 70, 0),
    number("$USERI3", 70, 0),
    number("$USERI4", 70, 0),
    number("$USERI5", 70, 0),
    real("$USERR1", 40, 0),
    real("$USERR2", 40, 0),
    real("$USERR3", 40, 0),
    real("$USERR4", 40, 0),
    real("$USERR5", 40, 0),
    number("$WORLDVIEW", 70, 1),
    number("$SHADEDGE", 70, 3),
    number("$SHADEDIF", 70, 70),
    number("$TILEMODE", 70, 1),
    number("$MAXACTVP", 70, 64),
    point("$PINSBASE", 0, 0, 0),
    number("$PLIMCHECK", 70, 0),
    point("$PEXTMIN", 1e20, 1e20, 1e20),
    point("$PEXTMAX", -1e20, -1e20, -1e20),
    point2("$PLIMMIN", 0, 0),
    point2("$PLIMMAX", 420, 297),
    number("$UNITMODE", 70, 0),
    number("$VISRETAIN", 70, 1),
    number("$PLINEGEN", 70, 0),
    number("$PSLTSCALE", 70, 1),
    number("$TREEDEPTH", 70, 3020),
    text("$CMLSTYLE", 2, "Standard"),
    number("$CMLJUST", 70, 0),
    real("$CMLSCALE", 40, 20),
    number("$PROXYGRAPHICS", 70, 1),
    number("$MEASUREMENT", 70, 1),
    number("$CELWEIGHT", 370, -1),
    number("$ENDCAPS", 280, 0),
    number("$JOINSTYLE", 280, 0),
    number("$LWDISPLAY", 290, 0),
    number("$INSUNITS", 70, 4),
    text("$HYPERLINKBASE", 1, ""),
    text("$STYLESHEET", 1, ""),
    number("$XEDIT", 290, 1),
    number("$CEPSNTYPE", 380, 0),
    number("$PSTYLEMODE", 290, 1),
    number("$EXTNAMES", 290, 1),
    real("$PSVPSCALE", 40, 0),
    number("$OLESTARTUP", 290, 0),
    number("$SORTENTS", 280, 127),
    number("$INDEXCTL", 280, 0),
    number("$HIDETEXT", 280, 1),
    number("$XCLIPFRAME", 280, 0),
    number("$HALOGAP", 280, 0),
    number("$OBSCOLOR", 70, 257),
    number("$OBSLTYPE", 280, 0),
    number("$INTERSECTIONDISPLAY", 280, 0),
    number("$INTERSECTIONCOLOR", 70, 257),
    number("$DIMASSOC", 280, 2),
    text("$PROJECTNAME", 1, ""),
    number("$CAMERADISPLAY", 290, 0),
    real("$LENSLENGTH", 40, 50),
    real("$CAMERAHEIGHT", 40, 0),
    real("$STEPSPERSEC", 40, 2),
    real("$STEPSIZE", 40, 6),
    real("$3DDWFPREC", 40, 2),
    real("$PSOLWIDTH", 40, 0.25),
    real("$PSOLHEIGHT", 40, 4),
    real("$LOFTANG1", 40, 1.5707963267948966),
    real("$LOFTANG2", 40, 1.5707963267948966),
    real("$LOFTMAG1", 40, 0),
    real("$LOFTMAG2", 40, 0),
    number("$LOFTPARAM", 70, 7),
    number("$LOFTNORMALS", 280, 1),
    real("$LATITUDE", 40, 0),
    real("$LONGITUDE", 40, 0),
    real("$NORTHDIRECTION", 40, 0),
    number("$TIMEZONE", 70, 0),
    number("$LIGHTGLYPHDISPLAY", 280, 1),
    number("$TILEMODELIGHTSYNCH", 280, 1),
    number("$SOLIDHIST", 280, 0),
    number("$SHOWHIST", 280, 1),
    number("$DWFFRAME", 280, 2),
    number("$DGNFRAME", 280, 0),
    number("$REALWORLDSCALE", 290, 1),
    number("$INTERFERECOLOR", 62, 1),
    number("$CSHADOW", 280, 0),
    real("$SHADOWPLANELOCATION", 40, 0),
};

// Days since noon of the first of January 4713 BC, as files count time.
double julianDays(bool local) {
  constexpr double kEpoch = 2440587.5;  // the first of January 1970, midnight
  constexpr double kSecondsADay = 86400;
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  double seconds = static_cast<double>(now);
  if (local) {
    const std::tm* broken = std::gmtime(&now);  // the same clock face read as local time tells the zone's offset
    std::tm face = *broken;
    face.tm_isdst = -1;
    seconds += std::difftime(now, std::mktime(&face));
  }
  return kEpoch + seconds / kSecondsADay;
}

GcText widened(const char* ascii) {
  GcText wide;
  while (*ascii != 0) wide.push_back(static_cast<GCHAR>(*ascii++));
  return wide;
}

}  // namespace

void GcDbHeader::setDefaults() {
  for (const Setting& setting : kSettings) {
    const GcText name = widened(setting.name);
    switch (setting.holds) {
      case Holds::Text: setText(name, widened(setting.text), setting.code); break;
      case Holds::Real: setReal(name, setting.x, setting.code); break;
      case Holds::Number: setInteger(name, static_cast<int64_t>(setting.x), setting.code); break;
      case Holds::Point: setPoint(name, {setting.x, setting.y, setting.z}); break;
      case Holds::Point2d: {
        GcDbGroupList list;
        list.put(GcDbGroup::ofPoint2d(setting.code, {setting.x, setting.y}));
        set(name, list);
        break;
      }
      case Holds::LocalTime: setReal(name, julianDays(true)); break;
      case Holds::UniversalTime: setReal(name, julianDays(false)); break;
    }
  }
}
