#include "host/dxf/write/header_writer.h"

#include "db/database.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/db/core/names.h"
#include "host/dxf/read/head.h"

namespace gc::dxf {
namespace {

struct Since {
  const GCHAR* name;
  int version;
};

// Variables that are younger than R2000. Source: the published references of the versions.
constexpr Since kYoungVariables[] = {
    {GC_T("$SORTENTS"), GcDb::kDHL_AC1018},
    {GC_T("$INDEXCTL"), GcDb::kDHL_AC1018},
    {GC_T("$HIDETEXT"), GcDb::kDHL_AC1018},
    {GC_T("$XCLIPFRAME"), GcDb::kDHL_AC1018},
    {GC_T("$HALOGAP"), GcDb::kDHL_AC1018},
    {GC_T("$OBSCOLOR"), GcDb::kDHL_AC1018},
    {GC_T("$OBSLTYPE"), GcDb::kDHL_AC1018},
    {GC_T("$INTERSECTIONDISPLAY"), GcDb::kDHL_AC1018},
    {GC_T("$INTERSECTIONCOLOR"), GcDb::kDHL_AC1018},
    {GC_T("$DIMASSOC"), GcDb::kDHL_AC1018},
    {GC_T("$PROJECTNAME"), GcDb::kDHL_AC1018},
    {GC_T("$LASTSAVEDBY"), GcDb::kDHL_AC1018},
    {GC_T("$CAMERADISPLAY"), GcDb::kDHL_AC1021},
    {GC_T("$LENSLENGTH"), GcDb::kDHL_AC1021},
    {GC_T("$CAMERAHEIGHT"), GcDb::kDHL_AC1021},
    {GC_T("$STEPSPERSEC"), GcDb::kDHL_AC1021},
    {GC_T("$STEPSIZE"), GcDb::kDHL_AC1021},
    {GC_T("$3DDWFPREC"), GcDb::kDHL_AC1021},
    {GC_T("$PSOLWIDTH"), GcDb::kDHL_AC1021},
    {GC_T("$PSOLHEIGHT"), GcDb::kDHL_AC1021},
    {GC_T("$LOFTANG1"), GcDb::kDHL_AC1021},
    {GC_T("$LOFTANG2"), GcDb::kDHL_AC1021},
    {GC_T("$LOFTMAG1"), GcDb::kDHL_AC1021},
    {GC_T("$LOFTMAG2"), GcDb::kDHL_AC1021},
    {GC_T("$LOFTPARAM"), GcDb::kDHL_AC1021},
    {GC_T("$LOFTNORMALS"), GcDb::kDHL_AC1021},
    {GC_T("$LATITUDE"), GcDb::kDHL_AC1021},
    {GC_T("$LONGITUDE"), GcDb::kDHL_AC1021},
    {GC_T("$NORTHDIRECTION"), GcDb::kDHL_AC1021},
    {GC_T("$TIMEZONE"), GcDb::kDHL_AC1021},
    {GC_T("$LIGHTGLYPHDISPLAY"), GcDb::kDHL_AC1021},
    {GC_T("$TILEMODELIGHTSYNCH"), GcDb::kDHL_AC1021},
    {GC_T("$CMATERIAL"), GcDb::kDHL_AC1021},
    {GC_T("$SOLIDHIST"), GcDb::kDHL_AC1021},
    {GC_T("$SHOWHIST"), GcDb::kDHL_AC1021},
    {GC_T("$DWFFRAME"), GcDb::kDHL_AC1021},
    {GC_T("$DGNFRAME"), GcDb::kDHL_AC1021},
    {GC_T("$REALWORLDSCALE"), GcDb::kDHL_AC1021},
    {GC_T("$INTERFERECOLOR"), GcDb::kDHL_AC1021},
    {GC_T("$INTERFEREOBJVS"), GcDb::kDHL_AC1021},
    {GC_T("$INTERFEREVPVS"), GcDb::kDHL_AC1021},
    {GC_T("$DRAGVS"), GcDb::kDHL_AC1021},
    {GC_T("$CSHADOW"), GcDb::kDHL_AC1021},
    {GC_T("$SHADOWPLANELOCATION"), GcDb::kDHL_AC1021},
    {GC_T("$DIMFXL"), GcDb::kDHL_AC1021},
    {GC_T("$DIMFXLON"), GcDb::kDHL_AC1021},
    {GC_T("$DIMJOGANG"), GcDb::kDHL_AC1021},
    {GC_T("$DIMTFILL"), GcDb::kDHL_AC1021},
    {GC_T("$DIMTFILLCLR"), GcDb::kDHL_AC1021},
    {GC_T("$DIMARCSYM"), GcDb::kDHL_AC1021},
    {GC_T("$DIMLTYPE"), GcDb::kDHL_AC1021},
    {GC_T("$DIMLTEX1"), GcDb::kDHL_AC1021},
    {GC_T("$DIMLTEX2"), GcDb::kDHL_AC1021},
    {GC_T("$DIMTXTDIRECTION"), GcDb::kDHL_AC1024},
    {GC_T("$DIMALTMZF"), GcDb::kDHL_AC1024},
    {GC_T("$DIMALTMZS"), GcDb::kDHL_AC1024},
    {GC_T("$DIMMZF"), GcDb::kDHL_AC1024},
    {GC_T("$DIMMZS"), GcDb::kDHL_AC1024},
    {GC_T("$REQUIREDVERSIONS"), GcDb::kDHL_AC1027},
};

}  // namespace

std::string codePageNameFor(const GcDbDatabase& database, const DrawingText& text) {
  const GcView read = view(database.fileParts().codePage);
  return codePageByName(read) == text.page() ? toUtf8(read) : codePageName(text.page());
}

bool putKeptVariable(GroupWriter& out, const GcDbDatabase& database, GcView name, const char* codePage) {
  TagWriter& tags = out.tags();
  if (name == GC_T("$ACADVER")) {
    tags.writeString(1, versionText(out.version()));
  } else if (name == GC_T("$DWGCODEPAGE")) {
    tags.writeString(3, codePage);
  } else if (name == GC_T("$HANDSEED")) {
    tags.writeHandle(5, database.handseed());
  } else if (name == GC_T("$CLAYER")) {
    out.putText(8, gcdbNameOfRecord(database.clayer()));
  } else if (name == GC_T("$CELTYPE")) {
    out.putText(6, gcdbNameOfRecord(database.celtype()));
  } else if (name == GC_T("$TEXTSTYLE")) {
    out.putText(7, gcdbNameOfRecord(database.textstyle()));
  } else if (name == GC_T("$DIMSTYLE")) {
    out.putText(2, gcdbNameOfRecord(database.dimstyle()));
  } else if (name == GC_T("$CECOLOR")) {
    tags.writeInt(62, database.cecolor().colorIndex());
  } else if (name == GC_T("$CELTSCALE")) {
    tags.writeReal(40, database.celtscale());
  } else if (name == GC_T("$CELWEIGHT")) {
    tags.writeInt(370, database.celweight());
  } else if (name == GC_T("$XCLIPFRAME")) {
    constexpr int kSwitch = 290, kChoice = 280;  // on and off until R2007, three choices since
    tags.writeInt(out.version() < GcDb::kDHL_AC1024 ? kSwitch : kChoice, database.header().integer(name));
  } else {
    return false;
  }
  return true;
}

int variableSince(GcView name) {
  for (const Since& row : kYoungVariables) {
    if (name == GcView(row.name)) return row.version;
  }
  return 0;
}

void writeHeader(GroupWriter& out, const GcDbDatabase& database, const char* codePage, SaveNotes& notes) {
  TagWriter& tags = out.tags();
  tags.writeString(0, "SECTION");
  tags.writeString(2, "HEADER");
  const GcDbHeader& header = database.header();
  for (const GCHAR* name :
       {GC_T("$ACADVER"), GC_T("$DWGCODEPAGE"), GC_T("$CLAYER"), GC_T("$CELTYPE"), GC_T("$TEXTSTYLE"),
        GC_T("$DIMSTYLE"), GC_T("$CECOLOR"), GC_T("$CELTSCALE"), GC_T("$CELWEIGHT"), GC_T("$HANDSEED")}) {
    if (header.find(name)) continue;  // written where it came
    out.putText(9, name);
    putKeptVariable(out, database, name, codePage);
  }
  std::string young;
  for (const GcDbHeader::Variable& variable : header.variables()) {
    if (variableSince(variable.name) > out.version()) {
      young += (young.empty() ? "" : ", ") + toUtf8(GcView(variable.name));
      continue;
    }
    out.putText(9, variable.name);
    if (!putKeptVariable(out, database, variable.name, codePage)) out.put(variable.groups);
  }
  if (!young.empty())
    notes.ofDrawing(GcDbSaveAction::Mapped, "settings younger than the version, kept for later ones: " + young);
  const auto& properties = database.fileParts().customProperties;
  if (out.version() < GcDb::kDHL_AC1018) {
    for (const GcDbCustomProperty& property : properties)
      notes.ofDrawing(GcDbSaveAction::Mapped,
                      "property of the drawing, kept for later versions: " + toUtf8(view(property.name)));
  } else {
    for (const GcDbCustomProperty& property : properties) {
      tags.writeString(9, "$CUSTOMPROPERTYTAG");
      out.putText(1, view(property.name));
      tags.writeString(9, "$CUSTOMPROPERTY");
      out.putText(1, view(property.value));
    }
  }
  tags.writeString(0, "ENDSEC");
}

}  // namespace gc::dxf
