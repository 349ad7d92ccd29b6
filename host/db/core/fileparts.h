// What a drawing file holds beside its objects and header settings, kept so that saving gives it back.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "db/objectid.h"
#include "host/db/describe/group.h"
#include "rx/gcstring.h"

class GcDbExternals;

// A class of objects that is not one of the format's fixed kinds, as the CLASSES section describes it.
struct GcDbClassRecord {
  GcString dxfName;    // "ACDBPLACEHOLDER"
  GcString className;  // C++ class
  GcString appName;
  int32_t proxyFlags = 0;
  int32_t instanceCount = 0;
  bool wasZombie = false;  // the class was not loaded when the file was written
  bool isEntity = false;
  int32_t dwgVersion = 0;  // DWG files only
  int32_t maintenanceVersion = 0;
  int32_t number = 0;  // DWG files only: the object type of its records
};

// A record (or the head) of a section that holds no objects of the database.
struct GcDbFileRecord {
  GcString type;  // group 0; empty for the head of a section
  GcDbGroupList groups;
};

struct GcDbFileSection {
  GcString name;  // "ACDSDATA"
  std::vector<GcDbFileRecord> records;
};

// A section of a DWG file that holds no objects, kept as it is: preview, summary, history ...
struct GcDbDwgSection {
  std::string name;  // "AcDb:SummaryInfo"
  std::vector<uint8_t> bytes;
  int version = 0;  // of its file, GcDb::GcDbDwgVersion
};

// A property of the drawing that its author named ($CUSTOMPROPERTYTAG and $CUSTOMPROPERTY of the header).
struct GcDbCustomProperty {
  GcString name;
  GcString value;
};

struct GcDbFileParts {
  GcString codePage;  // as the file names it; empty for a new drawing
  std::vector<GcString> comments;
  std::vector<GcDbCustomProperty> customProperties;
  std::vector<GcDbClassRecord> classes;
  std::vector<GcDbFileSection> sections;
  std::vector<GcDbDwgSection> dwgSections;

  std::shared_ptr<GcDbExternals> externals;  // the drawings its blocks refer to, as far as they have been looked for
  GcDbObjectId referringBlock;               // of the drawing that refers to this one; null for one opened by itself

  // The class of a DXF name; null when the file described none.
  [[nodiscard]] const GcDbClassRecord* findClass(GcView dxfName) const {
    for (const GcDbClassRecord& record : classes)
      if (view(record.dxfName) == dxfName) return &record;
    return nullptr;
  }
};
