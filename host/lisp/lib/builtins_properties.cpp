// Properties of objects by name: what entity lists hold under group codes, measures of curves, values of attributes.
#include <cmath>
#include <numbers>

#include "db/arc.h"
#include "db/attribute.h"
#include "db/blockreference.h"
#include "db/circle.h"
#include "db/curve.h"
#include "host/db/core/handletext.h"
#include "host/db/entlist/entitylist.h"
#include "host/db/entlist/entitymake.h"
#include "host/ed/records.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/groupvalues.h"
#include "host/lisp/lib/names.h"
#include "host/rx/math/elementary.h"

using lisp::LispValue;
using lisplib::hostOf;

LISP_GROUP("Entities")

namespace {

// Where a property is kept: the first group of the code behind a subclass marker. A bit of it when `bit` is not 0.
struct Row {
  lisp::TextView subclass;
  lisp::TextView name;
  int code;
  int bit = 0;
  lisp::TextView table = {};  // of record names: the property is the record itself
  double absent = 0;          // what lists leave out
};

constexpr lisp::TextView kEntity = GC_T("AcDbEntity");

constexpr Row kRows[] = {
    {kEntity, GC_T("Color"), 62, 0, {}, 256},
    {kEntity, GC_T("LayerId"), 8, 0, GC_T("LAYER")},
    {kEntity, GC_T("LinetypeId"), 6, 0, GC_T("LTYPE")},
    {kEntity, GC_T("LinetypeScale"), 48, 0, {}, 1},
    {kEntity, GC_T("LineWeight"), 370, 0, {}, -1},
    {kEntity, GC_T("Invisible"), 60},
    {GC_T("AcDbLine"), GC_T("StartPoint"), 10},
    {GC_T("AcDbLine"), GC_T("EndPoint"), 11},
    {GC_T("AcDbLine"), GC_T("Thickness"), 39},
    {GC_T("AcDbLine"), GC_T("Normal"), 210},
    {GC_T("AcDbCircle"), GC_T("Center"), 10},
    {GC_T("AcDbCircle"), GC_T("Radius"), 40},
    {GC_T("AcDbCircle"), GC_T("Thickness"), 39},
    {GC_T("AcDbCircle"), GC_T("Normal"), 210},
    {GC_T("AcDbArc"), GC_T("StartAngle"), 50},
    {GC_T("AcDbArc"), GC_T("EndAngle"), 51},
    {GC_T("AcDbEllipse"), GC_T("Center"), 10},
    {GC_T("AcDbEllipse"), GC_T("MajorAxis"), 11},
    {GC_T("AcDbEllipse"), GC_T("RadiusRatio"), 40},
    {GC_T("AcDbEllipse"), GC_T("StartParam"), 41},
    {GC_T("AcDbEllipse"), GC_T("EndParam"), 42},
    {GC_T("AcDbPoint"), GC_T("Position"), 10},
    {GC_T("AcDbPolyline"), GC_T("Closed"), 70, 1},
    {GC_T("AcDbPolyline"), GC_T("HasPlinegen"), 70, 128},
    {GC_T("AcDbPolyline"), GC_T("Elevation"), 38},
    {GC_T("AcDbPolyline"), GC_T("Thickness"), 39},
    {GC_T("AcDbPolyline"), GC_T("ConstantWidth"), 43},
    {GC_T("AcDbPolyline"), GC_T("NumberOfVertices"), 90},
    {GC_T("AcDb2dPolyline"), GC_T("Closed"), 70, 1},
    {GC_T("AcDb3dPolyline"), GC_T("Closed"), 70, 1},
    {GC_T("AcDbSpline"), GC_T("Degree"), 71},
    {GC_T("AcDbSpline"), GC_T("Closed"), 70, 1},
    {GC_T("AcDbText"), GC_T("TextString"), 1},
    {GC_T("AcDbText"), GC_T("Position"), 10},
    {GC_T("AcDbText"), GC_T("AlignmentPoint"), 11},
    {GC_T("AcDbText"), GC_T("Height"), 40},
    {GC_T("AcDbText"), GC_T("Rotation"), 50},
    {GC_T("AcDbText"), GC_T("WidthFactor"), 41},
    {GC_T("AcDbText"), GC_T("Oblique"), 51},
    {GC_T("AcDbText"), GC_T("TextStyleId"), 7, 0, GC_T("STYLE")},
    {GC_T("AcDbAttribute"), GC_T("Tag"), 2},
    {GC_T("AcDbAttributeDefinition"), GC_T("Tag"), 2},
    {GC_T("AcDbAttributeDefinition"), GC_T("Prompt"), 3},
    {GC_T("AcDbMText"), GC_T("Contents"), 1},
    {GC_T("AcDbMText"), GC_T("Location"), 10},
    {GC_T("AcDbMText"), GC_T("TextHeight"), 40},
    {GC_T("AcDbMText"), GC_T("Width"), 41},
    {GC_T("AcDbMText"), GC_T("Attachment"), 71},
    {GC_T("AcDbMText"), GC_T("Rotation"), 50},
    {GC_T("AcDbMText"), GC_T("TextStyleId"), 7, 0, GC_T("STYLE")},
    {GC_T("AcDbBlockReference"), GC_T("BlockTableRecord"), 2, 0, GC_T("BLOCK")},
    {GC_T("AcDbBlockReference"), GC_T("Position"), 10},
    {GC_T("AcDbBlockReference"), GC_T("Rotation"), 50},
    {GC_T("AcDbBlockReference"), GC_T("ScaleFactors/X"), 41, 0, {}, 1},
    {GC_T("AcDbBlockReference"), GC_T("ScaleFactors/Y"), 42, 0, {}, 1},
    {GC_T("AcDbBlockReference"), GC_T("ScaleFactors/Z"), 43, 0, {}, 1},
    {GC_T("AcDbDimension"), GC_T("DimensionText"), 1},
    {GC_T("AcDbDimension"), GC_T("TextPosition"), 11},
    {GC_T("AcDbDimension"), GC_T("DimensionStyle"), 3, 0, GC_T("DIMSTYLE")},
    {GC_T("AcDbDimension"), GC_T("Measurement"), 42},
    {GC_T("AcDbHatch"), GC_T("PatternName"), 2},
    {GC_T("AcDbHatch"), GC_T("PatternScale"), 41},
    {GC_T("AcDbHatch"), GC_T("PatternAngle"), 52},
    {GC_T("AcDbHatch"), GC_T("Associative"), 71, 1},
    {GC_T("AcDbViewport"), GC_T("CenterPoint"), 10},
    {GC_T("AcDbViewport"), GC_T("Width"), 40},
    {GC_T("AcDbViewport"), GC_T("Height"), 41},
    {GC_T("AcDbLayerTableRecord"), GC_T("Name"), 2},
    {GC_T("AcDbLayerTableRecord"), GC_T("IsFrozen"), 70, 1},
    {GC_T("AcDbLayerTableRecord"), GC_T("IsLocked"), 70, 4},
    {GC_T("AcDbLayerTableRecord"), GC_T("Color"), 62},
    {GC_T("AcDbLayerTableRecord"), GC_T("LinetypeObjectId"), 6, 0, GC_T("LTYPE")},
    {GC_T("AcDbLayerTableRecord"), GC_T("LineWeight"), 370, 0, {}, -3},
    {GC_T("AcDbLayerTableRecord"), GC_T("IsPlottable"), 290, 0, {}, 1},
    {GC_T("AcDbTextStyleTableRecord"), GC_T("Name"), 2},
    {GC_T("AcDbTextStyleTableRecord"), GC_T("FileName"), 3},
    {GC_T("AcDbTextStyleTableRecord"), GC_T("TextSize"), 40},
    {GC_T("AcDbTextStyleTableRecord"), GC_T("XScale"), 41},
    {GC_T("AcDbTextStyleTableRecord"), GC_T("ObliquingAngle"), 50},
    {GC_T("AcDbLinetypeTableRecord"), GC_T("Name"), 2},
    {GC_T("AcDbLinetypeTableRecord"), GC_T("Comments"), 3},
    {GC_T("AcDbBlockTableRecord"), GC_T("Name"), 2},
    {GC_T("AcDbDimStyleTableRecord"), GC_T("Name"), 2},
};

// ---- what is computed

double lengthOf(const GcDbCurve& curve) {
  double end = 0, length = NAN;
  if (curve.getEndParam(end) == Gcad::eOk) ignore(curve.getDistAtParam(end, length));
  return length;
}
double areaOf(const GcDbCurve& curve) {
  double area = NAN;
  ignore(curve.getArea(area));
  return area;
}
double radiusOf(const GcDbCurve& curve) {
  if (const auto* circle = GcDbCircle::cast(&curve)) return circle->radius();
  const auto* arc = GcDbArc::cast(&curve);
  return arc != nullptr ? arc->radius() : NAN;
}
double diameterOf(const GcDbCurve& curve) { return 2 * radiusOf(curve); }
double totalAngleOf(const GcDbCurve& curve) {
  const auto* arc = GcDbArc::cast(&curve);
  return arc != nullptr ? arc->sweepAngle() : NAN;
}
double directionOf(const GcDbCurve& curve) {
  GcGePoint3d a, b;
  if (curve.getStartPoint(a) != Gcad::eOk || curve.getEndPoint(b) != Gcad::eOk) return NAN;
  const double angle = gc::atan2(b.y - a.y, b.x - a.x);
  return angle < 0 ? angle + 2 * std::numbers::pi : angle;
}

// Not a number where the curve has no such measure.
struct Measure {
  lisp::TextView classes;  // that have it, each behind a blank; empty: all curves
  lisp::TextView name;
  double (*of)(const GcDbCurve& curve);
};
constexpr Measure kMeasures[] = {
    {GC_T(" AcDbLine AcDbPolyline AcDb2dPolyline AcDb3dPolyline AcDbSpline "), GC_T("Length"), lengthOf},
    {GC_T(" AcDbLine "), GC_T("Angle"), directionOf},
    {GC_T(" AcDbArc "), GC_T("ArcLength"), lengthOf},
    {GC_T(" AcDbArc "), GC_T("TotalAngle"), totalAngleOf},
    {GC_T(" AcDbCircle "), GC_T("Circumference"), lengthOf},
    {GC_T(" AcDbCircle "), GC_T("Diameter"), diameterOf},
    {{}, GC_T("Area"), areaOf},
};

bool hasMeasure(const GcDbCurve& curve, const Measure& measure) {
  const lisp::Text word = lisp::Text(GC_T(" ")) + curve.isA()->name() + GC_T(" ");
  return measure.classes.empty() || measure.classes.find(word) != lisp::TextView::npos;
}

bool measured(GcDbObjectId id, lisp::TextView name, double& value) {
  GcDbCurve* curve = nullptr;
  if (gcdbOpenObject(curve, id, GcDb::kForRead) != Gcad::eOk) return false;
  value = NAN;
  for (const Measure& measure : kMeasures)
    if (equalNoCase(measure.name, name) && hasMeasure(*curve, measure)) value = measure.of(*curve);
  ignore(curve->close());
  return !std::isnan(value);
}

// ---- what lists hold

LispValue entityList(lisp::Vm& vm, GcDbObjectId id) {
  lisplib::GroupValues values(vm);
  return gcdbEntityList(id, nullptr, values) ? values.list() : LispValue::nil();
}

bool isCode(LispValue pair, int code) {
  return pair.isPair() && pair.head().isInteger() && pair.head().asInteger() == code;
}

// The list from the marker of the subclass on; nil when the object is of another kind.
LispValue section(LispValue list, lisp::TextView subclass) {
  for (; list.isPair(); list = list.tail())
    if (isCode(list.head(), 100) && list.head().tail().isString() && list.head().tail().asString()->view() == subclass)
      return list.tail();
  return LispValue::nil();
}

// The value of a code before the next marker; false when it is left out.
bool valueIn(LispValue rest, int code, LispValue& value) {
  for (; rest.isPair() && !isCode(rest.head(), 100); rest = rest.tail())
    if (isCode(rest.head(), code)) {
      value = rest.head().tail();
      return true;
    }
  return false;
}

struct Found {
  const Row* row = nullptr;
  LispValue value;
  int coordinate = -1;      // behind the name: /X, /Y, /Z
  lisp::TextView ofRecord;  // behind the name of a record: the property of that record
};

bool splitName(lisp::TextView typed, const Row& row, Found& found) {
  if (equalNoCase(typed, row.name)) return true;
  const size_t slash = row.name.size();
  if (typed.size() <= slash + 1 || typed[slash] != GC_T('/') || !equalNoCase(typed.substr(0, slash), row.name))
    return false;
  const lisp::TextView rest = typed.substr(slash + 1);
  if (!row.table.empty()) {
    found.ofRecord = rest;
    return true;
  }
  const GCHAR axis = gcUpper(rest[0]);
  found.coordinate = axis - GC_T('X');
  return rest.size() == 1 && axis >= GC_T('X') && axis <= GC_T('Z');
}

bool find(LispValue list, lisp::TextView typed, Found& found) {
  for (const Row& row : kRows) {
    Found at;
    if (!splitName(typed, row, at)) continue;
    const LispValue from = section(list, row.subclass);
    if (from.isNil()) continue;
    at.row = &row;
    const bool isText = row.code < 10 && row.table.empty();
    if (!valueIn(from, row.code, at.value)) {
      if (isText) continue;
      // Names of records are left out for "by layer".
      const bool whole = row.code == 62 || row.code == 370 || row.code == 60 || row.code == 290 || row.bit != 0;
      at.value = whole ? LispValue::integer(static_cast<int32_t>(row.absent)) : LispValue::real(row.absent);
    }
    found = at;
    return true;
  }
  return false;
}

GcDbObjectId recordOf(lisp::Vm& vm, const Found& found) {
  GcDbDatabase& database = hostOf(vm).database();
  const lisp::TextView name = found.value.isString() ? found.value.asString()->view() : lisp::TextView(GC_T("ByLayer"));
  return ed::recordNamed(ed::tableOfKind(database, found.row->table), name);
}

// ---- values of attributes, by tag

GcDbObjectId attributeTagged(GcDbObjectId id, lisp::TextView tag) {
  GcDbBlockReference* reference = nullptr;
  GcDbObjectIdArray ids;
  if (gcdbOpenObject(reference, id, GcDb::kForRead) != Gcad::eOk) return {};
  reference->attributeIds(ids);
  ignore(reference->close());
  for (const GcDbObjectId each : ids) {
    GcDbAttribute* attribute = nullptr;
    if (gcdbOpenObject(attribute, each, GcDb::kForRead) != Gcad::eOk) continue;
    const bool hit = equalNoCase(view(attribute->tag()), tag);
    ignore(attribute->close());
    if (hit) return each;
  }
  return {};
}

LispValue attributeText(lisp::Vm& vm, GcDbObjectId id) {
  LispValue value;
  valueIn(section(entityList(vm, id), GC_T("AcDbText")), 1, value);
  return value;
}

// ---- both ways

bool property(lisp::Vm& vm, GcDbObjectId id, lisp::TextView name, LispValue& value) {
  double number = 0;
  Found found;
  if (equalNoCase(name, GC_T("Handle"))) {
    value = vm.heap().string(gcdbHandleText(id.handle()));
  } else if (equalNoCase(name, GC_T("ClassName"))) {
    value = vm.heap().string(GcText(id.objectClass()->name()));
  } else if (find(entityList(vm, id), name, found)) {
    value = found.value;
    if (found.row->bit != 0) value = LispValue::integer(value.isInteger() && (value.asInteger() & found.row->bit) != 0);
    if (!found.row->table.empty()) value = lisplib::makeName(vm, recordOf(vm, found));
    if (!found.ofRecord.empty()) return property(vm, recordOf(vm, found), found.ofRecord, value);
    for (int i = 0; i < found.coordinate && value.isPair(); ++i) value = value.tail();
    if (found.coordinate >= 0) value = value.isPair() ? value.head() : LispValue::real(0);
  } else if (measured(id, name, number)) {
    value = LispValue::real(number);
  } else {
    const GcDbObjectId attribute = attributeTagged(id, name);
    if (attribute.isNull()) return false;
    value = attributeText(vm, attribute);
  }
  return true;
}

LispValue pairOf(lisp::Vm& vm, int code, LispValue value) { return vm.heap().cons(LispValue::integer(code), value); }

// The name of the record a value names: an entity name or a text.
bool recordName(lisp::Vm& vm, LispValue value, LispValue& name) {
  GcDbObjectId id;
  name = value;
  if (value.isString()) return true;
  if (!lisplib::idOf(value, id)) return false;
  name = vm.heap().string(ed::nameOfRecord(id));
  return true;
}

LispValue withCoordinate(lisp::Vm& vm, LispValue point, int coordinate, LispValue value) {
  if (!point.isPair()) return point;
  return coordinate == 0 ? vm.heap().cons(value, point.tail())
                         : vm.heap().cons(point.head(), withCoordinate(vm, point.tail(), coordinate - 1, value));
}

bool setGroup(lisp::Vm& vm, GcDbObjectId id, lisp::TextView subclass, int code, LispValue value) {
  LispValue list = vm.heap().cons(pairOf(vm, code, value), LispValue::nil());
  list = vm.heap().cons(pairOf(vm, 100, vm.heap().string(subclass)), list);
  list = vm.heap().cons(pairOf(vm, -1, lisplib::makeName(vm, id)), list);
  return gcdbEntityModify(lisplib::groupsOf(vm, list)) == Gcad::eOk;
}

// False for what is computed, and for values of a wrong kind.
bool setProperty(lisp::Vm& vm, GcDbObjectId id, lisp::TextView name, LispValue value) {
  Found found;
  if (!find(entityList(vm, id), name, found)) {
    const GcDbObjectId attribute = attributeTagged(id, name);
    return !attribute.isNull() && value.isString() && setGroup(vm, attribute, GC_T("AcDbText"), 1, value);
  }
  const Row& row = *found.row;
  if (!found.ofRecord.empty()) return setProperty(vm, recordOf(vm, found), found.ofRecord, value);
  if (!row.table.empty() && !recordName(vm, value, value)) return false;
  if (found.coordinate >= 0) value = withCoordinate(vm, found.value, found.coordinate, value);
  if (row.bit != 0) {
    if (!value.isInteger() || !found.value.isInteger()) return false;
    const int32_t others = found.value.asInteger() & ~row.bit;
    value = LispValue::integer(value.asInteger() != 0 ? others | row.bit : others);
  }
  return setGroup(vm, id, row.subclass, row.code, value);
}

GcDbObjectId objectArgument(lisp::Args& args) {
  const GcDbObjectId id = lisplib::idOfWord(args.entityName());
  if (!id.isValid() || id.isErased()) lisp::fail("the object is erased");
  return id;
}

[[noreturn]] void failProperty(lisp::TextView name, const char* what) {
  lisp::fail(std::string(what) + ": " + lisp::toUtf8(name));
}

}  // namespace

LISP_BUILTIN(
    "getpropertyvalue", "(getpropertyvalue object name) -> value",
    "A property of an object by name: \"Radius\", \"Center/X\", \"LayerId/Name\", or the tag of an attribute.") {
  const GcDbObjectId id = objectArgument(args);
  const lisp::TextView name = args.string();
  LispValue value;
  if (!property(args.vm(), id, name, value)) failProperty(name, "unknown property");
  return value;
}

LISP_BUILTIN("setpropertyvalue", "(setpropertyvalue object name value) -> nil",
             "Gives a property of an object, or the attribute of a tag, another value.") {
  const GcDbObjectId id = objectArgument(args);
  const lisp::TextView name = args.string();
  LispValue former;
  if (!property(args.vm(), id, name, former)) failProperty(name, "unknown property");
  if (!setProperty(args.vm(), id, name, args.any())) failProperty(name, "property cannot be set so");
  return lisplib::settled(args, LispValue::nil());
}

LISP_BUILTIN("ispropertyreadonly", "(ispropertyreadonly object name) -> 0 | 1",
             "1 for a property that is computed, 0 for one that can be set.") {
  const GcDbObjectId id = objectArgument(args);
  const lisp::TextView name = args.string();
  LispValue value;
  if (!property(args.vm(), id, name, value)) failProperty(name, "unknown property");
  Found found;
  const bool kept = find(entityList(args.vm(), id), name, found) || !attributeTagged(id, name).isNull();
  const bool fixed = kept && found.row != nullptr &&
                     (found.row->name == GC_T("NumberOfVertices") || found.row->name == GC_T("Measurement"));
  return LispValue::integer(kept && !fixed ? 0 : 1);
}

LISP_BUILTIN("dumpallproperties", "(dumpallproperties object) -> nil", "Prints the properties of an object by name.") {
  const GcDbObjectId id = objectArgument(args);
  lisp::Vm& vm = args.vm();
  const auto print = [&](lisp::TextView name) {
    LispValue value;
    if (!property(vm, id, name, value)) return;
    vm.write(lisp::Text(GC_T("\n")) + lisp::Text(name) + GC_T(" = ") + vm.print(value, lisp::PrintStyle::Quoted));
  };
  print(GC_T("ClassName"));
  print(GC_T("Handle"));
  const LispValue list = entityList(vm, id);
  for (const Row& row : kRows)
    if (!section(list, row.subclass).isNil()) print(row.name);
  for (const Measure& measure : kMeasures) print(measure.name);
  return LispValue::nil();
}
