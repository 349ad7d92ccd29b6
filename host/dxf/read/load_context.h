// What the parts of a DXF reader share while one file is read.
#pragma once

#include <cstdint>
#include <string>

#include "db/database.h"
#include "host/db/core/loadreport.h"
#include "host/dxf/tags/tag_reader.h"
#include "host/rx/text/drawing_text.h"

namespace gc::dxf {

struct LoadContext {
  GcDbDatabase& database;
  TagReader& reader;
  DrawingText text;
  int version = GcDb::kDHL_AC1009;  // GcDb::GcDbDwgVersion of the file
  bool hasUnwrapped = false;        // proxies became what they stand for

  // Adds to the database's load report; `handle` 0 when there is none.
  void report(GcDbLoadAction action, std::size_t offset, std::uint64_t handle, std::string what) const;

  // Gives the object read from the record at `offset` its owner; reports when the file says another one.
  void setOwner(std::size_t offset, GcDbObject& object, GcDbObjectId owner) const;

  // A name in the file's encoding.
  [[nodiscard]] GcText decoded(std::string_view raw) const;

  // Text in the file's encoding, for messages.
  [[nodiscard]] std::string shown(std::string_view raw) const;
};

}  // namespace gc::dxf
