// Every class of the database, one line each: run-time name, parent, DXF name, constructor, rows.
#include <deque>
#include <vector>

#include "db/arc.h"
#include "db/attribute.h"
#include "db/blockbegin.h"
#include "db/blockreference.h"
#include "db/circle.h"
#include "db/curve.h"
#include "db/database.h"
#include "db/dictionary.h"
#include "db/dimension.h"
#include "db/ellipse.h"
#include "db/face.h"
#include "db/groupdata.h"
#include "db/hatch.h"
#include "db/layout.h"
#include "db/leader.h"
#include "db/line.h"
#include "db/mesh.h"
#include "db/mtext.h"
#include "db/point.h"
#include "db/polyline.h"
#include "db/polyline2d.h"
#include "db/region.h"
#include "db/solid.h"
#include "db/spline.h"
#include "db/text.h"
#include "db/tolerance.h"
#include "db/vertex.h"
#include "db/viewport.h"
#include "db/xline.h"
#include "db/xrecord.h"
#include "db/zombie.h"
#include "host/db/describe/classinfo.h"
#include "host/db/entities/helix.h"
#include "host/db/entities/light.h"
#include "host/db/entities/mleader.h"
#include "host/db/entities/mline.h"
#include "host/db/entities/oleframe.h"
#include "host/db/entities/rasterimage.h"
#include "host/db/entities/section.h"
#include "host/db/entities/shape.h"
#include "host/db/entities/solid3d.h"
#include "host/db/entities/subdmesh.h"
#include "host/db/entities/table.h"
#include "host/db/entities/underlay.h"
#include "host/db/objects/contextdata.h"
#include "host/db/objects/dimassoc.h"
#include "host/db/objects/filters.h"
#include "host/db/objects/geodata.h"
#include "host/db/objects/imagedef.h"
#include "host/db/objects/material.h"
#include "host/db/objects/mleaderstyle.h"
#include "host/db/objects/mlinestyle.h"
#include "host/db/objects/rendersettings.h"
#include "host/db/objects/sectionsettings.h"
#include "host/db/objects/standard.h"
#include "host/db/objects/sun.h"
#include "host/db/objects/tablestyle.h"
#include "host/db/objects/textfield.h"
#include "host/db/objects/underlaydef.h"
#include "host/db/objects/viewstyle.h"
#include "host/db/objects/visualstyle.h"
#include "host/rx/view.h"
#include "rx/gcassert.h"

namespace {

template <class T>
GcRxObject* make() {
  return new (std::nothrow) T;
}

struct Row {
  const GCHAR* name;
  const GCHAR* parent;
  const GCHAR* dxfName;
  GcRxPseudoConstructor create;
  const GcDbField* fields;
  int fieldCount;
  bool replacesParents = false;  // the rows stand in place of the parent's
  const GCHAR* appName = nullptr;
  int proxyFlags = 0;
};

// The same row with the application that brought the class.
Row from(const GCHAR* appName, int proxyFlags, Row row) {
  row.appName = appName;
  row.proxyFlags = proxyFlags;
  return row;
}

#define GC_FROM(app, flags, ...) from(GC_T(app), flags, Row __VA_ARGS__)
#define GC_ABSTRACT(Class, name, parent) \
  { GC_T(name), GC_T(parent), nullptr, nullptr, nullptr, 0 }
#define GC_BASE(Class, name, parent) \
  { GC_T(name), GC_T(parent), nullptr, nullptr, Class::kFields, Class::kFieldCount }
#define GC_CLASS(Class, name, parent, dxf) \
  { GC_T(name), GC_T(parent), GC_T(dxf), make<Class>, Class::kFields, Class::kFieldCount }
#define GC_PLAIN(Class, name, parent, dxf) \
  { GC_T(name), GC_T(parent), GC_T(dxf), make<Class>, nullptr, 0 }
#define GC_SELF(Class, name, parent, dxf) \
  { GC_T(name), GC_T(parent), GC_T(dxf), make<Class>, nullptr, -1 }
#define GC_WHOLE(Class, name, parent, dxf) \
  { GC_T(name), GC_T(parent), GC_T(dxf), make<Class>, Class::kFields, Class::kFieldCount, true }
#define GC_UNNAMED(Class, name, parent) \
  { GC_T(name), GC_T(parent), nullptr, make<Class>, Class::kFields, Class::kFieldCount }

const Row* classRows(int& count) {
  static const Row rows[] = {
#include "host/db/describe/classes.inc"
  };
  count = static_cast<int>(std::size(rows));
  return rows;
}

// Flattened rows: those of the bases first. The lists live as long as the process.
struct Flat {
  std::vector<const GcDbField*> rows;
  GcDbClassInfo info;
};

const Row* rowNamed(const Row* rows, int count, const GCHAR* name) {
  for (int i = 0; i < count; ++i)
    if (view(rows[i].name) == view(name)) return &rows[i];
  return nullptr;
}

void appendRows(const Row* rows, int count, const GCHAR* name, std::vector<const GcDbField*>& out) {
  const Row* row = rowNamed(rows, count, name);
  if (row == nullptr) return;
  const Row* parent = rowNamed(rows, count, row->parent);
  if (parent != nullptr) appendRows(rows, count, row->replacesParents ? parent->parent : parent->name, out);
  for (int f = 0; f < row->fieldCount; ++f) out.push_back(&row->fields[f]);
}

std::vector<GcRxClass*>& described() {
  static auto* const classes = new std::vector<GcRxClass*>;
  return *classes;
}

std::vector<GcText>& leftOut() {
  static auto* const names = new std::vector<GcText>;
  return *names;
}

bool isLeftOut(GcView name) {
  for (const GcText& each : leftOut())
    if (each == name) return true;
  return false;
}

void registerAll() {
  static auto* const flats = new std::deque<Flat>;
  ignore(GcRxObject::desc() != nullptr ? Gcad::eOk : Gcad::eOutOfMemory);
  int count = 0;
  const Row* rows = classRows(count);
  for (int i = 0; i < count; ++i) {
    if (isLeftOut(view(rows[i].name))) continue;
    GcRxClass* made = newGcRxClass(rows[i].name, rows[i].parent, 0, 0, rows[i].proxyFlags, rows[i].create,
                                   rows[i].dxfName, rows[i].appName);
    GC_ASSERT(made != nullptr, "a class is registered twice");
    if (rows[i].create == nullptr || rows[i].fieldCount < 0) continue;  // abstract, or files itself
    Flat& flat = flats->emplace_back();
    appendRows(rows, count, rows[i].name, flat.rows);
    flat.info = {flat.rows.data(), static_cast<int>(flat.rows.size())};
    made->setInfo(&flat.info);
    described().push_back(made);
  }
}

}  // namespace

void gcdbLeaveClassOut(const GCHAR* name) { leftOut().emplace_back(name); }

void gcdbRegisterClasses() {
  static const bool once = (registerAll(), true);
  static_cast<void>(once);
}

std::span<GcRxClass* const> gcdbDescribedClasses() {
  gcdbRegisterClasses();
  return described();
}
