#include "host/dxf/write/r12/r12_header.h"

#include <algorithm>

#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/db/core/names.h"
#include "host/dxf/write/header_writer.h"

namespace gc::dxf {
namespace {

// Source: the published DXF reference of the version.
constexpr const GCHAR* kKnown[] = {
    GC_T("$ACADVER"),     GC_T("$ANGBASE"),   GC_T("$ANGDIR"),     GC_T("$ATTDIA"),     GC_T("$ATTMODE"),
    GC_T("$ATTREQ"),      GC_T("$AUNITS"),    GC_T("$AUPREC"),     GC_T("$AXISMODE"),   GC_T("$AXISUNIT"),
    GC_T("$BLIPMODE"),    GC_T("$CECOLOR"),   GC_T("$CELTYPE"),    GC_T("$CHAMFERA"),   GC_T("$CHAMFERB"),
    GC_T("$CLAYER"),      GC_T("$COORDS"),    GC_T("$DIMALT"),     GC_T("$DIMALTD"),    GC_T("$DIMALTF"),
    GC_T("$DIMAPOST"),    GC_T("$DIMASO"),    GC_T("$DIMASZ"),     GC_T("$DIMBLK"),     GC_T("$DIMBLK1"),
    GC_T("$DIMBLK2"),     GC_T("$DIMCEN"),    GC_T("$DIMCLRD"),    GC_T("$DIMCLRE"),    GC_T("$DIMCLRT"),
    GC_T("$DIMDLE"),      GC_T("$DIMDLI"),    GC_T("$DIMEXE"),     GC_T("$DIMEXO"),     GC_T("$DIMGAP"),
    GC_T("$DIMLFAC"),     GC_T("$DIMLIM"),    GC_T("$DIMPOST"),    GC_T("$DIMRND"),     GC_T("$DIMSAH"),
    GC_T("$DIMSCALE"),    GC_T("$DIMSE1"),    GC_T("$DIMSE2"),     GC_T("$DIMSHO"),     GC_T("$DIMSOXD"),
    GC_T("$DIMSTYLE"),    GC_T("$DIMTAD"),    GC_T("$DIMTFAC"),    GC_T("$DIMTIH"),     GC_T("$DIMTIX"),
    GC_T("$DIMTM"),       GC_T("$DIMTOFL"),   GC_T("$DIMTOH"),     GC_T("$DIMTOL"),     GC_T("$DIMTP"),
    GC_T("$DIMTSZ"),      GC_T("$DIMTVP"),    GC_T("$DIMTXT"),     GC_T("$DIMZIN"),     GC_T("$DRAGMODE"),
    GC_T("$DWGCODEPAGE"), GC_T("$ELEVATION"), GC_T("$EXTMAX"),     GC_T("$EXTMIN"),     GC_T("$FILLETRAD"),
    GC_T("$FILLMODE"),    GC_T("$HANDLING"),  GC_T("$HANDSEED"),   GC_T("$INSBASE"),    GC_T("$LIMCHECK"),
    GC_T("$LIMMAX"),      GC_T("$LIMMIN"),    GC_T("$LTSCALE"),    GC_T("$LUNITS"),     GC_T("$LUPREC"),
    GC_T("$MAXACTVP"),    GC_T("$MENU"),      GC_T("$MIRRTEXT"),   GC_T("$ORTHOMODE"),  GC_T("$OSMODE"),
    GC_T("$PDMODE"),      GC_T("$PDSIZE"),    GC_T("$PELEVATION"), GC_T("$PEXTMAX"),    GC_T("$PEXTMIN"),
    GC_T("$PINSBASE"),    GC_T("$PLIMCHECK"), GC_T("$PLIMMAX"),    GC_T("$PLIMMIN"),    GC_T("$PLINEGEN"),
    GC_T("$PLINEWID"),    GC_T("$PSLTSCALE"), GC_T("$PUCSNAME"),   GC_T("$PUCSORG"),    GC_T("$PUCSXDIR"),
    GC_T("$PUCSYDIR"),    GC_T("$QTEXTMODE"), GC_T("$REGENMODE"),  GC_T("$SHADEDGE"),   GC_T("$SHADEDIF"),
    GC_T("$SKETCHINC"),   GC_T("$SKPOLY"),    GC_T("$SPLFRAME"),   GC_T("$SPLINESEGS"), GC_T("$SPLINETYPE"),
    GC_T("$SURFTAB1"),    GC_T("$SURFTAB2"),  GC_T("$SURFTYPE"),   GC_T("$SURFU"),      GC_T("$SURFV"),
    GC_T("$TDCREATE"),    GC_T("$TDINDWG"),   GC_T("$TDUPDATE"),   GC_T("$TDUSRTIMER"), GC_T("$TEXTSIZE"),
    GC_T("$TEXTSTYLE"),   GC_T("$THICKNESS"), GC_T("$TILEMODE"),   GC_T("$TRACEWID"),   GC_T("$UCSNAME"),
    GC_T("$UCSORG"),      GC_T("$UCSXDIR"),   GC_T("$UCSYDIR"),    GC_T("$UNITMODE"),   GC_T("$USERI1"),
    GC_T("$USERI2"),      GC_T("$USERI3"),    GC_T("$USERI4"),     GC_T("$USERI5"),     GC_T("$USERR1"),
    GC_T("$USERR2"),      GC_T("$USERR3"),    GC_T("$USERR4"),     GC_T("$USERR5"),     GC_T("$USRTIMER"),
    GC_T("$VISRETAIN"),   GC_T("$WORLDVIEW"),
};

constexpr const GCHAR* kAlways[] = {GC_T("$ACADVER"), GC_T("$DWGCODEPAGE"), GC_T("$CLAYER"),
                                    GC_T("$CELTYPE"), GC_T("$TEXTSTYLE"),   GC_T("$DIMSTYLE"),
                                    GC_T("$CECOLOR"), GC_T("$HANDLING"),    GC_T("$HANDSEED")};

bool isKnown(GcView name) {
  return std::any_of(std::begin(kKnown), std::end(kKnown), [&](const GCHAR* known) { return name == GcView(known); });
}

// The table whose record a variable names; -1 for others.
int tableOf(GcView name) {
  if (name == GC_T("$CLAYER")) return GcDbDatabase::kLayers;
  if (name == GC_T("$CELTYPE")) return GcDbDatabase::kLinetypes;
  if (name == GC_T("$TEXTSTYLE")) return GcDbDatabase::kTextStyles;
  if (name == GC_T("$DIMSTYLE")) return GcDbDatabase::kDimStyles;
  if (name == GC_T("$UCSNAME") || name == GC_T("$PUCSNAME")) return GcDbDatabase::kUcss;
  if (name == GC_T("$DIMBLK") || name == GC_T("$DIMBLK1") || name == GC_T("$DIMBLK2")) return GcDbDatabase::kBlocks;
  return -1;
}

GcText currentRecord(const GcDbDatabase& database, GcView name) {
  // A dimension style that is no record: settings that have not been given a name.
  const GcText read = database.header().text(name);
  if (name == GC_T("$DIMSTYLE") && equalNoCase(read, GC_T("*UNNAMED"))) return read;
  if (name == GC_T("$CLAYER")) return GcText(gcdbNameOfRecord(database.clayer()));
  if (name == GC_T("$CELTYPE")) return GcText(gcdbNameOfRecord(database.celtype()));
  if (name == GC_T("$TEXTSTYLE")) return GcText(gcdbNameOfRecord(database.textstyle()));
  if (name == GC_T("$DIMSTYLE")) return GcText(gcdbNameOfRecord(database.dimstyle()));
  return read;
}

int codeOf(GcView name) {
  if (name == GC_T("$CLAYER")) return 8;
  if (name == GC_T("$CELTYPE")) return 6;
  if (name == GC_T("$TEXTSTYLE")) return 7;
  return name == GC_T("$DIMBLK") || name == GC_T("$DIMBLK1") || name == GC_T("$DIMBLK2") ? 1 : 2;
}

}  // namespace

void writeR12Header(GroupWriter& out, const GcDbDatabase& database, const R12Names& names, const char* codePage,
                    std::uint64_t handseed, SaveNotes& notes) {
  TagWriter& tags = out.tags();
  const auto put = [&](GcView name, const GcDbGroupList* groups) {
    out.putText(9, name);
    if (name == GC_T("$HANDSEED")) {
      tags.writeHandle(5, handseed);
    } else if (name == GC_T("$HANDLING")) {
      tags.writeInt(70, 1);
    } else if (const int table = tableOf(name); table >= 0) {
      const GcText record = currentRecord(database, name);
      const bool isRecord = !record.empty() && record[0] != '*';
      out.putText(codeOf(name), isRecord ? names.of(table, record) : record);
    } else if (!putKeptVariable(out, database, name, codePage) && groups) {
      out.put(*groups);
    }
  };
  tags.writeString(0, "SECTION");
  tags.writeString(2, "HEADER");
  const bool keepsAll =
      database.originalFileVersion() != GcDb::kDHL_Unknown && database.originalFileVersion() < GcDb::kDHL_AC1012;
  for (const GCHAR* name : kAlways) {
    if (!database.header().find(name)) put(name, nullptr);
  }
  std::string young;
  for (const GcDbHeader::Variable& variable : database.header().variables()) {
    if (keepsAll || isKnown(variable.name)) {
      put(variable.name, &variable.groups);
    } else {
      young += (young.empty() ? "" : ", ") + toUtf8(GcView(variable.name));
    }
  }
  if (!young.empty()) notes.ofDrawing(GcDbSaveAction::LeftOut, "settings younger than R12: " + young);
  for (const GcDbCustomProperty& property : database.fileParts().customProperties)
    notes.ofDrawing(GcDbSaveAction::LeftOut, "property of the drawing: " + toUtf8(view(property.name)));
  tags.writeString(0, "ENDSEC");
}

}  // namespace gc::dxf
