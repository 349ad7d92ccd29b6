// The modeller's data of regions, solids, bodies and surfaces, whichever of them an object is.
#pragma once

#include "db/region.h"
#include "host/db/entities/solid3d.h"

// Where the object keeps what files have.
struct GcDbModelerParts {
  GcArray<GcDbModelerLine>& lines;
  GcArray<uint8_t>& bytes;
  GcArray<uint8_t>& picture;
  GcString& revisionId;
  bool& hasRevision;
  GcArray<uint8_t>* second;  // null where there is none

  static GcDbModelerParts of(GcDbRegion& region);
  static GcDbModelerParts of(GcDbModelerGeometry& body);
};

namespace gcmodeler {

[[nodiscard]] bool hasBody(const GcDbObject& object);
[[nodiscard]] bool hasText(const GcDbObject& object);
// The form of files from 2013 on. Errors: eNotApplicable where there are none, and none can be made of the text.
Gcad::ErrorStatus getBytes(const GcDbObject& object, GcArray<uint8_t>& bytes);
// Errors: eNotApplicable for a region that is no plane area; its bytes are kept, and are all there is.
Gcad::ErrorStatus setBytes(GcDbObject& object, const GcArray<uint8_t>& bytes);

// Both forms of a body moved; false, and nothing is to be used, where one of them cannot be.
[[nodiscard]] bool moveBody(GcArray<GcDbModelerLine>& lines, GcArray<uint8_t>& bytes, const GcGeMatrix3d& transform);
// The same for bytes alone; none are no trouble.
[[nodiscard]] bool moveBytes(GcArray<uint8_t>& bytes, const GcGeMatrix3d& transform);

inline std::string_view viewOf(const GcArray<uint8_t>& bytes) {
  return {reinterpret_cast<const char*>(bytes.begin()), static_cast<size_t>(bytes.length())};
}

}  // namespace gcmodeler
