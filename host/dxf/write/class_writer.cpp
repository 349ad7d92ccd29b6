#include "host/dxf/write/class_writer.h"

#include <cstdint>
#include <map>
#include <string>

#include "db/database.h"
#include "db/entity.h"
#include "db/zombie.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/dxf/write/object_writer.h"

namespace gc::dxf {
namespace {

// Types of the format's own that files do not describe.
constexpr const GCHAR* kFixedTypes[] = {
    GC_T("3DFACE"),
    GC_T("3DSOLID"),
    GC_T("ACAD_PROXY_ENTITY"),
    GC_T("ACAD_PROXY_OBJECT"),
    GC_T("ARC"),
    GC_T("ATTDEF"),
    GC_T("ATTRIB"),
    GC_T("BLOCK"),
    GC_T("BODY"),
    GC_T("CIRCLE"),
    GC_T("DICTIONARY"),
    GC_T("DIMENSION"),
    GC_T("ELLIPSE"),
    GC_T("ENDBLK"),
    GC_T("GROUP"),
    GC_T("HATCH"),
    GC_T("INSERT"),
    GC_T("LAYOUT"),
    GC_T("LEADER"),
    GC_T("LINE"),
    GC_T("LWPOLYLINE"),
    GC_T("MLINE"),
    GC_T("MLINESTYLE"),
    GC_T("MTEXT"),
    GC_T("OLEFRAME"),
    GC_T("OLE2FRAME"),
    GC_T("POINT"),
    GC_T("POLYLINE"),
    GC_T("RAY"),
    GC_T("REGION"),
    GC_T("SEQEND"),
    GC_T("SHAPE"),
    GC_T("SOLID"),
    GC_T("SPLINE"),
    GC_T("TEXT"),
    GC_T("TOLERANCE"),
    GC_T("TRACE"),
    GC_T("VERTEX"),
    GC_T("VIEWPORT"),
    GC_T("XLINE"),
    GC_T("XRECORD"),
};

bool isFixed(GcView type) {
  for (const GCHAR* fixed : kFixedTypes) {
    if (type == GcView(fixed)) return true;
  }
  return false;
}

struct Counted {
  std::int32_t count = 0;
  const GcDbObject* example = nullptr;
};

using Counts = std::map<GcText, Counted>;  // in an order that does not change from run to run

// Objects by type, but for the fixed types. A drawing has few types and many objects: what a type is, is looked up
// where it was found last.
class Counter {
 public:
  Counts run(GcDbDatabase& database) {
    database.store().forEach([this](const GcDbStub* stub) {
      if (stub->object && !stub->erased) count(*stub->object);
    });
    return std::move(m_counts);
  }

 private:
  struct Known {
    const GcRxClass* descriptor = nullptr;
    GcView type;
    Counted* counted = nullptr;  // null: of a fixed type
  };

  void count(const GcDbObject& object) {
    const GcRxClass* descriptor = object.isA();
    const GcView type = typeOf(object);
    Known& known = m_known[reinterpret_cast<std::uintptr_t>(descriptor) / sizeof(GcRxClass) % std::size(m_known)];
    if (known.descriptor != descriptor || known.type != type) known = {descriptor, type, countedOf(*descriptor, type)};
    if (known.counted == nullptr) return;
    ++known.counted->count;
    known.counted->example = &object;
  }

  Counted* countedOf(const GcRxClass& descriptor, GcView type) {
    const bool isFixedType = isFixed(type) || descriptor.isDerivedFrom(GcDbSymbolTable::desc()) ||
                             descriptor.isDerivedFrom(GcDbSymbolTableRecord::desc());
    return isFixedType ? nullptr : &m_counts[GcText(type)];
  }

  Counts m_counts;
  Known m_known[64];
};

void writeRecord(GroupWriter& out, const GcDbClassRecord& record, std::int32_t count) {
  TagWriter& tags = out.tags();
  tags.writeString(0, "CLASS");
  out.putText(1, view(record.dxfName));
  out.putText(2, view(record.className));
  out.putText(3, view(record.appName));
  tags.writeInt(90, record.proxyFlags);
  if (out.version() >= GcDb::kDHL_AC1018) tags.writeInt(91, count);
  tags.writeInt(280, record.wasZombie ? 1 : 0);
  tags.writeInt(281, record.isEntity ? 1 : 0);
}

// A record for a class the drawing did not come with. Null names for a zombie: nothing is known of its class.
GcDbClassRecord recordOf(const GcDbObject& object) {
  const GcRxClass& descriptor = *object.isA();
  GcDbClassRecord record;
  record.dxfName = descriptor.dxfName();
  record.className = descriptor.name();
  record.appName = descriptor.appName() ? descriptor.appName() : GC_T("Database Classes");
  record.proxyFlags = descriptor.proxyFlags();
  record.isEntity = descriptor.isDerivedFrom(GcDbEntity::desc());
  return record;
}

}  // namespace

void writeClasses(GroupWriter& out, GcDbDatabase& database) {
  TagWriter& tags = out.tags();
  tags.writeString(0, "SECTION");
  tags.writeString(2, "CLASSES");
  const Counts counts = Counter().run(database);
  const GcDbFileParts& parts = database.fileParts();
  for (const GcDbClassRecord& record : parts.classes) {
    const auto counted = counts.find(GcText(view(record.dxfName)));
    writeRecord(out, record, counted == counts.end() ? 0 : counted->second.count);
  }
  for (const auto& [type, counted] : counts) {
    const bool isZombie = GcDbZombieObject::cast(counted.example) || GcDbZombieEntity::cast(counted.example);
    if (!isZombie && !parts.findClass(type)) writeRecord(out, recordOf(*counted.example), counted.count);
  }
  tags.writeString(0, "ENDSEC");
}

}  // namespace gc::dxf
