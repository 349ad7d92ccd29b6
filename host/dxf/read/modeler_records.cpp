#include "host/dxf/read/modeler_records.h"

#include <algorithm>

#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/db/entities/modeler_body.h"
#include "host/dxf/modeler_section.h"

namespace gc::dxf {
namespace {

struct Body {
  std::uint64_t handle = 0;
  GcArray<std::uint8_t> bytes;
};

// False for records of other values.
bool bodyOf(const GcDbFileRecord& record, Body& body) {
  if (view(record.type) != modeler::kRecord) return false;
  bool hasBytes = false;
  GcDbGroupList::Cursor cursor(record.groups);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code == modeler::kHandle) body.handle = static_cast<std::uint64_t>(group.integer);
    if (group.code == modeler::kValueName && group.text == modeler::kBytesName) hasBytes = true;
    if (group.code != modeler::kBytes || !hasBytes) continue;
    const int length = body.bytes.length();
    body.bytes.setLogicalLength(length + static_cast<int>(group.bytes.size()));
    std::copy(group.bytes.begin(), group.bytes.end(), body.bytes.begin() + length);
  }
  return hasBytes && !body.bytes.isEmpty();
}

// True when the record's bytes are the object's now.
bool give(const LoadContext& context, const Body& body) {
  GcDbStub* stub = context.database.store().find(body.handle);
  if (stub == nullptr || !stub->object || !gcmodeler::hasBody(*stub->object)) return false;
  stub->writing = true;
  const Gcad::ErrorStatus status = gcmodeler::setBytes(*stub->object, body.bytes);
  stub->writing = stub->recorded = stub->modified = false;
  if (status != Gcad::eOk)
    context.report(GcDbLoadAction::Noted, 0, body.handle, "its body is no plane area: kept, not measured");
  return true;
}

GcDbGroupList withoutBytes(const GcDbGroupList& groups) {
  GcDbGroupList rest;
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);)
    if (group.code != modeler::kBytes && group.code != modeler::kSize) rest.put(group);
  return rest;
}

}  // namespace

void takeModelerRecords(const LoadContext& context) {
  for (GcDbFileSection& section : context.database.fileParts().sections) {
    if (view(section.name) != modeler::kSection) continue;
    for (GcDbFileRecord& record : section.records) {
      Body body;
      if (bodyOf(record, body) && give(context, body)) record.groups = withoutBytes(record.groups);
    }
  }
}

}  // namespace gc::dxf
