#include "host/db/core/xdata.h"

#include <cstring>
#include <vector>

#include "db/database.h"
#include "db/filer.h"
#include "host/db/core/handletext.h"
#include "rx/gcheap.h"

namespace {

constexpr int kAppName = 1001;
constexpr int kControl = 1002;
constexpr size_t kMostBytes = 16383;

bool isXDataCode(int code) {
  return (code >= 1000 && code <= 1005) || (code >= 1010 && code <= 1013) || (code >= 1040 && code <= 1042) ||
         code == 1070 || code == 1071;
}

// Bytes a group takes by the rule of the format (codes and values as drawings store them).
size_t xdataSize(const GcDbGroup& group) {
  switch (group.kind) {
    case GcDbGroupKind::Text: return 4 + group.text.size();
    case GcDbGroupKind::Binary: return 2 + group.bytes.size();
    case GcDbGroupKind::Real: return 9;
    case GcDbGroupKind::Point3d: return 25;
    default: return 9;
  }
}

bool registered(GcDbDatabase* database, GcView name) {
  if (database == nullptr) return true;  // checked when the object joins a database
  GcDbRegAppTable* table = nullptr;
  if (database->getSymbolTable(table) != Gcad::eOk) return false;
  const bool has = table->has(GcText(name).c_str());
  ignore(table->close());
  return has;
}

struct AppData {
  GcText name;
  GcDbGroupList values;
};

// Splits packed extended data by application.
std::vector<AppData> split(const GcDbGroupList& xdata) {
  std::vector<AppData> apps;
  GcDbGroupList::Cursor cursor(xdata);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code == kAppName)
      apps.push_back({GcText(group.text), {}});
    else if (!apps.empty())
      apps.back().values.put(group);
  }
  return apps;
}

Gcad::ErrorStatus splitChain(const resbuf* chain, GcDbDatabase* database, std::vector<AppData>& apps) {
  int depth = 0;
  size_t bytes = 0;
  for (const resbuf* node = chain; node != nullptr; node = node->rbnext) {
    GcDbGroup group;
    if (node->restype == -3) continue;  // the marker entity lists put before extended data
    if (!isXDataCode(node->restype) || !gcdbRbToGroup(*node, group)) return Gcad::eInvalidResBuf;
    bytes += xdataSize(group);
    if (group.code == kAppName) {
      if (depth != 0) return Gcad::eInvalidResBuf;
      if (!registered(database, group.text)) return Gcad::eRegappIdNotFound;
      apps.push_back({GcText(group.text), {}});
      continue;
    }
    if (apps.empty()) return Gcad::eInvalidResBuf;
    if (group.code == kControl) depth += group.text == GC_T("{") ? 1 : group.text == GC_T("}") ? -1 : 0;
    if (depth < 0) return Gcad::eInvalidResBuf;
    apps.back().values.put(group);
  }
  if (depth != 0) return Gcad::eInvalidResBuf;
  return bytes > kMostBytes ? Gcad::eInvalidInput : Gcad::eOk;
}

void putApp(const AppData& app, GcDbGroupList& out) {
  if (app.values.isEmpty()) return;
  out.put(GcDbGroup::ofText(kAppName, app.name));
  GcDbGroupList::Cursor cursor(app.values);
  for (GcDbGroup group; cursor.next(group);) out.put(group);
}

}  // namespace

resbuf* gcdbGroupToRb(const GcDbGroup& group) {
  resbuf* node = gcutNewRb(group.code);
  switch (group.kind) {
    case GcDbGroupKind::Text: gcutSetRbString(node, GcText(group.text).c_str()); break;
    case GcDbGroupKind::Handle:
      gcutSetRbString(node, gcdbHandleText(static_cast<uint64_t>(group.integer)).c_str());
      break;
    case GcDbGroupKind::Real: node->resval.rreal = group.real; break;
    case GcDbGroupKind::Point2d:
    case GcDbGroupKind::Point3d:
      node->resval.rpoint[0] = group.point.x;
      node->resval.rpoint[1] = group.point.y;
      node->resval.rpoint[2] = group.point.z;
      break;
    case GcDbGroupKind::Bool:
    case GcDbGroupKind::Int16: node->resval.rint = static_cast<short>(group.integer); break;
    case GcDbGroupKind::Int32: node->resval.rlong = static_cast<int32_t>(group.integer); break;
    case GcDbGroupKind::Int64: node->resval.mnInt64 = group.integer; break;
    case GcDbGroupKind::Id: ignore(gcdbGetGdsName(node->resval.rlname, group.id)); break;
    case GcDbGroupKind::Binary: {
      auto* copy = static_cast<char*>(gcHeapAlloc(group.bytes.size()));
      std::memcpy(copy, group.bytes.data(), group.bytes.size());
      node->resval.rbinary = {static_cast<short>(group.bytes.size()), copy};
      break;
    }
  }
  return node;
}

bool gcdbRbToGroup(const resbuf& node, GcDbGroup& group) {
  const int code = node.restype;
  group = GcDbGroup();
  group.code = node.restype;
  group.kind = gcdbKindOfCode(code);
  switch (gcutRbKind(code)) {
    case GcRbKind::Real:
      group.kind = GcDbGroupKind::Real;
      group.real = node.resval.rreal;
      return true;
    case GcRbKind::Point:
      group.point = {node.resval.rpoint[0], node.resval.rpoint[1], node.resval.rpoint[2]};
      group.kind = GcDbGroupKind::Point3d;
      return true;
    case GcRbKind::Short: group.integer = node.resval.rint; return true;
    case GcRbKind::Long: group.integer = node.resval.rlong; return true;
    case GcRbKind::Int64: group.integer = node.resval.mnInt64; return true;
    case GcRbKind::String:
    case GcRbKind::Handle:
      if (group.kind == GcDbGroupKind::Handle) {
        group.integer = static_cast<int64_t>(gcdbHandleValue(view(node.resval.rstring)));
      } else {
        group.kind = GcDbGroupKind::Text;
        group.text = view(node.resval.rstring);
      }
      return true;
    case GcRbKind::Name:
      group.kind = GcDbGroupKind::Id;
      ignore(gcdbGetObjectId(group.id, node.resval.rlname));
      return true;
    case GcRbKind::Binary:
      group.bytes = {reinterpret_cast<const uint8_t*>(node.resval.rbinary.buf),
                     static_cast<size_t>(node.resval.rbinary.clen)};
      return true;
    case GcRbKind::Nothing: return false;
  }
  return false;
}

Gcad::ErrorStatus gcdbWriteGroup(GcDbDxfFiler& filer, const GcDbGroup& group) {
  switch (group.kind) {
    case GcDbGroupKind::Text: return filer.writeString(group.code, GcText(group.text).c_str());
    case GcDbGroupKind::Handle:
      return filer.writeString(group.code, gcdbHandleText(static_cast<uint64_t>(group.integer)).c_str());
    case GcDbGroupKind::Real: return filer.writeDouble(group.code, group.real);
    case GcDbGroupKind::Point2d:
    case GcDbGroupKind::Point3d: return filer.writePoint3d(group.code, group.point);
    case GcDbGroupKind::Bool: return filer.writeBool(group.code, group.integer != 0);
    case GcDbGroupKind::Int16: return filer.writeInt16(group.code, static_cast<int16_t>(group.integer));
    case GcDbGroupKind::Int32: return filer.writeInt32(group.code, static_cast<int32_t>(group.integer));
    case GcDbGroupKind::Int64: return filer.writeInt64(group.code, group.integer);
    case GcDbGroupKind::Id: return filer.writeObjectId(group.code, group.id);
    case GcDbGroupKind::Binary:
      return filer.writeBinary(group.code, group.bytes.data(), static_cast<int>(group.bytes.size()));
  }
  return Gcad::eInvalidDxfCode;
}

resbuf* gcdbXDataChain(const GcDbGroupList& xdata, GcView applicationName) {
  resbuf* head = nullptr;
  resbuf** tail = &head;
  bool wanted = applicationName.empty();
  GcDbGroupList::Cursor cursor(xdata);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code == kAppName) wanted = applicationName.empty() || equalNoCase(group.text, applicationName);
    if (!wanted) continue;
    *tail = gcdbGroupToRb(group);
    tail = &(*tail)->rbnext;
  }
  return head;
}

Gcad::ErrorStatus gcdbMergeXData(const GcDbGroupList& former, const resbuf* chain, GcDbDatabase* database,
                                 GcDbGroupList& merged) {
  std::vector<AppData> news;
  const Gcad::ErrorStatus status = splitChain(chain, database, news);
  if (status != Gcad::eOk) return status;
  const auto replaced = [&](const AppData& old) {
    for (AppData& fresh : news)
      if (equalNoCase(fresh.name, old.name)) return true;
    return false;
  };
  for (const AppData& old : split(former))
    if (!replaced(old)) putApp(old, merged);
  for (const AppData& fresh : news) putApp(fresh, merged);
  return Gcad::eOk;
}
