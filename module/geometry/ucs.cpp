// Named user coordinate systems: defining, listing, and three ways of making one current.
#include <memory>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/rbchain.h"
#include "module/app/results.h"

namespace {

constexpr const GCHAR* kNoTable = GC_T("Błąd otwierania tablicy symboli!\n");
constexpr const GCHAR* kNoUcs = GC_T("Błąd nie udało się odnaleźć UCSa!\n");
constexpr const GCHAR* kNotSet = GC_T("Błąd nie udało się ustawić UCSa!\n");
constexpr const GCHAR* kNoViewports = GC_T("Błąd ładowania vport!\n");
constexpr const GCHAR* kNoViewportTable = GC_T("Błąd ładowania tabeli vport!\n");
constexpr const GCHAR* kNoViewportRecord = GC_T("Błąd ładowania rekordu tabeli vport!\n");
// Deliberate: the text lacks its first letter.
constexpr const GCHAR* kNoViewportName = GC_T("łąd pobrania nazwy tabeli vport!\n");

GcDbObjectId ucsTableId() {
  const GcDbDatabase* database = workingDatabase();
  return database != nullptr ? database->UCSTableId() : GcDbObjectId::kNull;
}

// Deliberate: the X axis has the length it was given with, the Y axis comes from it alone, and the third point of
// the group plays no part.
void fill(GcDbUCSTableRecord& ucs, const GcGePoint3d& origin, const GcGePoint3d& onXAxis) {
  constexpr int kFrontView = 3;
  const GcGeVector3d xAxis = onXAxis - origin;
  ucs.setOrigin(origin);
  ignore(ucs.setUcsBaseOrigin(origin, kFrontView));
  ucs.setXAxis(xAxis);
  ucs.setYAxis(xAxis.perpVector());
}

// Makes the system of the name, or changes the one that has it.
void define(const GCHAR* name, const GcGePoint3d& origin, const GcGePoint3d& onXAxis) {
  const GcDbWritePtr<GcDbUCSTable> table(ucsTableId());
  if (!table) return;
  GcDbObjectId id;
  if (table->getAt(name, id) == Gcad::eOk) {
    if (const GcDbWritePtr<GcDbUCSTableRecord> ucs(id); ucs) fill(*ucs, origin, onXAxis);
    return;
  }
  auto made = std::make_unique<GcDbUCSTableRecord>();
  ignore(made->setName(name));
  fill(*made, origin, onXAxis);
  if (table->add(made.get()) == Gcad::eOk) ignore(made.release()->close());
}

}  // namespace

// Groups of a name and three points. Groups before a faulty one stay defined.
int addUces() {
  const resbuf* rb = gcedGetArgs();
  if (rb == nullptr) return RTNORM;
  for (; rb != nullptr; rb = rb->rbnext) {
    const resbuf* name = rb;
    bool good = name->restype == RTSTR;
    const resbuf* points[3] = {};
    for (const resbuf*& point : points) {
      rb = good ? rb->rbnext : rb;
      good = good && rb != nullptr && node::isPoint(*rb);
      point = rb;
    }
    if (!good) return gcdbFail(msg::kWrongType), RTERROR;
    define(node::text(*name), node::point(*points[0]), node::point(*points[1]));
  }
  return RTNORM;
}

int getUserCoordinateSystems() {
  gcedGetArgs();
  const GcDbReadPtr<GcDbUCSTable> table(ucsTableId());
  GcDbSymbolTableIterator* made = nullptr;
  if (!table || table->newIterator(made) != Gcad::eOk) return ret::nil();
  RbChain list;
  list.append(RTLB);
  for (const std::unique_ptr<GcDbSymbolTableIterator> at(made); !at->done(); at->step()) {
    GcDbObjectId id;
    ignore(at->getRecordId(id));
    const GcDbReadPtr<GcDbUCSTableRecord> ucs(id);
    GcString name;
    if (ucs) ignore(ucs->getName(name));
    list.appendString(name.c_str());
  }
  list.append(RTLE);
  return ret::list(list);
}

namespace {

// Sets the named system as the drawing's base. The text of what failed, null when all is well.
const GCHAR* setBase(const GCHAR* name, GcDbObjectId& id) {
  {
    const GcDbReadPtr<GcDbUCSTable> table(ucsTableId());
    if (!table) return kNoTable;
    if (table->getAt(name, id) != Gcad::eOk) return kNoUcs;
    const GcDbReadPtr<GcDbUCSTableRecord> ucs(id);
    if (!ucs) return kNoUcs;
  }
  return workingDatabase()->setUcsBase(id) == Gcad::eOk ? nullptr : kNotSet;
}

// Gives every active viewport record the system.
const GCHAR* setInActiveViewports(GcDbObjectId ucsId) {
  if (gcedVports2VportTableRecords() != Gcad::eOk) return kNoViewports;
  const GcDbReadPtr<GcDbViewportTable> table(workingDatabase()->viewportTableId());
  GcDbSymbolTableIterator* made = nullptr;
  if (!table || table->newIterator(made) != Gcad::eOk) return kNoViewportTable;
  for (const std::unique_ptr<GcDbSymbolTableIterator> at(made); !at->done(); at->step()) {
    GcDbObjectId id;
    ignore(at->getRecordId(id));
    const GcDbWritePtr<GcDbViewportTableRecord> viewport(id);
    if (!viewport) return kNoViewportRecord;
    GcString name;
    if (viewport->getName(name) != Gcad::eOk) return kNoViewportName;
    if (name.upper() == GcString(GC_T("*ACTIVE"))) ignore(viewport->setUcs(ucsId));
  }
  return nullptr;
}

}  // namespace

int putActiveUcs() {
  ArgReader args(rules::kCounted);
  const GCHAR* name = args.onlyString();
  if (args.failed()) return args.status();
  GcDbObjectId id;
  const GCHAR* fault = setBase(name, id);
  if (fault == nullptr) fault = setInActiveViewports(id);
  if (fault != nullptr) return args.refuse(fault);
  ignore(gcedVportTableRecords2Vports());
  return ret::nothing();
}

int putActiveUcs2() {
  ArgReader args(rules::kCounted);
  const GCHAR* name = args.onlyString();
  if (args.failed()) return args.status();
  GcDbObjectId id;
  const GCHAR* fault = setBase(name, id);
  return fault != nullptr ? args.refuse(fault) : ret::nothing();
}

int putActiveUcs3() {
  ArgReader args(rules::kCounted);
  const GCHAR* name = args.onlyString();
  if (args.failed()) return args.status();
  gcedCommandS(RTSTR, GC_T("_ucs"), RTSTR, GC_T("_na"), RTSTR, GC_T("_r"), RTSTR, name, RTNONE);
  return ret::nothing();
}
