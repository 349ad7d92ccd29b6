// The rarely needed parts of an object, kept beside it so that plain objects stay small.
#pragma once

#include "cm/color.h"
#include "db/objectid.h"
#include "host/db/describe/group.h"
#include "rx/gcstring.h"

// Groups of a file that no description knows, kept with the subclass section they stood in.
struct GcDbForeignGroups {
  GcString section;        // "AcDbLine"; empty for groups before the first marker
  bool ownMarker = false;  // the whole section is foreign: its marker is written too
  GcDbGroupList groups;
};

struct GcDbObjectExtra {
  GcDbObjectId extensionDictionary;
  GcDbObjectIdArray reactors;
  GcDbGroupList xdata;  // 1001 application name, its values, and so on
  GcArray<GcDbForeignGroups> foreign;
  // Entities only.
  GcDbObjectIdArray parts;       // vertices, attributes: entities of their own that follow this one in files
  GcDbObjectId sequenceEnd;      // ends them
  GcDbObjectId plotStyle;        // 390
  GcDbObjectId material;         // 347
  GcDbObjectId visualStyles[3];  // 348 full, face, edge
  GcString colorBook;            // 430
  int32_t transparency = 0;      // 440; 0: none given
  int8_t plotStyleFlags = 0;     // 380; 1: by block
  int8_t materialFlags = 0;
  int8_t shadowFlags = 0;          // 284
  GcArray<uint8_t> proxyGraphics;  // 310 with 92/160
};
