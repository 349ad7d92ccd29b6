#include "host/ed/fields/properties.h"

#include <cmath>
#include <iterator>
#include <numbers>
#include <string_view>

#include "db/arc.h"
#include "db/attribute.h"
#include "db/blockreference.h"
#include "db/circle.h"
#include "db/curve.h"
#include "db/dimension.h"
#include "db/ellipse.h"
#include "db/hatch.h"
#include "db/line.h"
#include "db/mtext.h"
#include "db/polyline.h"
#include "db/region.h"
#include "db/text.h"
#include "host/db/core/handletext.h"
#include "host/db/core/names.h"
#include "host/db/describe/classinfo.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/math/elementary.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

constexpr double kPi = std::numbers::pi;

// Not a number where the object has no such measure.
double lengthOf(const GcDbEntity& entity) {
  const auto* curve = GcDbCurve::cast(&entity);
  double end = 0, length = NAN;
  if (curve != nullptr && curve->getEndParam(end) == Gcad::eOk) ignore(curve->getDistAtParam(end, length));
  return length;
}

double areaOf(const GcDbEntity& entity) {
  double area = NAN;
  if (const auto* curve = GcDbCurve::cast(&entity)) ignore(curve->getArea(area));
  if (const auto* region = GcDbRegion::cast(&entity)) ignore(region->getArea(area));
  return area;
}

double perimeterOf(const GcDbEntity& entity) {
  double length = NAN;
  if (const auto* region = GcDbRegion::cast(&entity)) ignore(region->getPerimeter(length));
  return std::isnan(length) ? lengthOf(entity) : length;
}

double radiusOf(const GcDbEntity& entity) {
  if (const auto* circle = GcDbCircle::cast(&entity)) return circle->radius();
  const auto* arc = GcDbArc::cast(&entity);
  return arc != nullptr ? arc->radius() : NAN;
}
double diameterOf(const GcDbEntity& entity) { return 2 * radiusOf(entity); }
double majorRadiusOf(const GcDbEntity& entity) {
  const auto* ellipse = GcDbEllipse::cast(&entity);
  return ellipse != nullptr ? ellipse->majorAxis().length() : NAN;
}
double minorRadiusOf(const GcDbEntity& entity) {
  const auto* ellipse = GcDbEllipse::cast(&entity);
  return ellipse != nullptr ? ellipse->majorAxis().length() * ellipse->radiusRatio() : NAN;
}
double measurementOf(const GcDbEntity& entity) {
  const auto* dimension = GcDbDimension::cast(&entity);
  double measured = NAN;
  if (dimension != nullptr) ignore(dimension->measurement(measured));
  return measured;
}

double turned(double radians) { return radians < 0 ? radians + 2 * kPi : radians; }

double directionOf(const GcDbEntity& entity) {
  const auto* line = GcDbLine::cast(&entity);
  if (line == nullptr) return NAN;
  const GcGeVector3d along = line->endPoint() - line->startPoint();
  return turned(gc::atan2(along.y, along.x));
}
double sweepOf(const GcDbEntity& entity) {
  const auto* arc = GcDbArc::cast(&entity);
  return arc != nullptr ? arc->sweepAngle() : NAN;
}
double rotationOf(const GcDbEntity& entity) {
  const auto* paragraph = GcDbMText::cast(&entity);
  return paragraph != nullptr ? paragraph->rotation() : NAN;
}

struct Measure {
  std::string_view name;
  double (*of)(const GcDbEntity& entity);
  bool isAngle = false;
};

constexpr Measure kMeasures[] = {
    {"Length", lengthOf},
    {"ArcLength", lengthOf},
    {"Circumference", lengthOf},
    {"Perimeter", perimeterOf},
    {"Area", areaOf},
    {"Radius", radiusOf},
    {"Diameter", diameterOf},
    {"MajorRadius", majorRadiusOf},
    {"MinorRadius", minorRadiusOf},
    {"Measurement", measurementOf},
    {"Angle", directionOf, true},
    {"TotalAngle", sweepOf, true},
    {"Rotation", rotationOf, true},
};

bool measure(const GcDbEntity& entity, GcView name, FieldValue& value) {
  for (const Measure& each : kMeasures) {
    if (!equalNoCase(name, gc::fromUtf8(each.name))) continue;
    const double found = each.of(entity);
    if (std::isnan(found)) continue;
    value = each.isAngle ? FieldValue::ofAngle(found) : FieldValue::of(found);
    return true;
  }
  return false;
}

// ---- texts

GcText colorText(const GcDbEntity& entity) {
  const GcCmEntityColor color = entity.color();
  if (color.isByLayer()) return GC_T("ByLayer");
  if (color.isByBlock()) return GC_T("ByBlock");
  if (color.isByColor())
    return gc::fromUtf8(std::to_string(color.red()) + "," + std::to_string(color.green()) + "," +
                        std::to_string(color.blue()));
  constexpr const char* kNames[] = {"red", "yellow", "green", "cyan", "blue", "magenta", "white"};
  const int index = color.colorIndex();
  return gc::fromUtf8(index >= 1 && index <= 7 ? kNames[index - 1] : std::to_string(index));
}

GcText layerText(const GcDbEntity& entity) { return GcText(gcdbNameOfRecord(entity.layerId())); }
GcText linetypeText(const GcDbEntity& entity) { return GcText(gcdbNameOfRecord(entity.linetypeId())); }
GcText handleText(const GcDbEntity& entity) { return gcdbHandleText(entity.objectId().handle()); }
GcText kindText(const GcDbEntity& entity) { return GcText(entity.isA()->name()); }
GcText contentsText(const GcDbEntity& entity) {
  if (const auto* text = GcDbText::cast(&entity)) return GcText(view(text->textString()));
  const auto* paragraph = GcDbMText::cast(&entity);
  return paragraph != nullptr ? GcText(view(paragraph->contents())) : GcText();
}
GcText blockText(const GcDbEntity& entity) {
  const auto* reference = GcDbBlockReference::cast(&entity);
  return reference != nullptr ? GcText(gcdbNameOfRecord(reference->blockTableRecord())) : GcText();
}
GcText styleText(const GcDbEntity& entity) {
  if (const auto* text = GcDbText::cast(&entity)) return GcText(gcdbNameOfRecord(text->textStyle()));
  const auto* paragraph = GcDbMText::cast(&entity);
  return paragraph != nullptr ? GcText(gcdbNameOfRecord(paragraph->textStyle())) : GcText();
}

constexpr struct {
  std::string_view name;
  GcText (*of)(const GcDbEntity& entity);
} kTexts[] = {
    {"Layer", layerText},         {"Linetype", linetypeText},   {"Color", colorText},     {"TrueColor", colorText},
    {"Handle", handleText},       {"ObjectName", kindText},     {"StyleName", styleText}, {"Name", blockText},
    {"TextString", contentsText}, {"EffectiveName", blockText},
};

bool textOf(const GcDbEntity& entity, GcView name, FieldValue& value) {
  for (const auto& each : kTexts) {
    if (!equalNoCase(name, gc::fromUtf8(each.name))) continue;
    value = FieldValue::ofText(each.of(entity));
    const bool isOfSome = each.of == blockText || each.of == styleText || each.of == contentsText;
    return !isOfSome || !value.text.empty() || GcDbText::cast(&entity) != nullptr;
  }
  return false;
}

// ---- what the description of the class says under a name of its own

constexpr struct {
  std::string_view property, row;
} kRowNames[] = {
    {"StartPoint", "start"},
    {"EndPoint", "end"},
    {"InsertionPoint", "position"},
    {"InsertionPoint", "location"},
    {"Coordinates", "position"},
    {"Height", "textHeight"},
    {"XScaleFactor", "scaleX"},
    {"YScaleFactor", "scaleY"},
    {"ZScaleFactor", "scaleZ"},
    {"ScaleFactor", "widthFactor"},
    {"ObliqueAngle", "oblique"},
    {"LinetypeScale", "linetypeScale"},
    {"TextOverride", "text"},
    {"TagString", "tag"},
    {"PromptString", "prompt"},
    {"MajorAxis", "majorAxis"},
    {"TextAlignmentPoint", "alignmentPoint"},
};

bool valueOfRow(const GcDbField& row, const GcDbObject& object, FieldValue& value) {
  const GcDbGroup group = gcdbGetValue(row, row.value(&object), object.database());
  switch (row.kind) {
    case Kind::Real:
      value = row.is == Is::Angle ? FieldValue::ofAngle(group.real) : FieldValue::of(group.real);
      return true;
    case Kind::Point2d:
    case Kind::Vector2d:
    case Kind::Point3d:
    case Kind::Vector3d: value = FieldValue::of(group.point); return true;
    case Kind::String: value = FieldValue::ofText(group.text); return true;
    default: break;
  }
  if (row.kind < Kind::Bool || row.kind > Kind::Int64) return false;
  value = FieldValue::ofInteger(static_cast<double>(group.asInt()));
  return true;
}

bool described(const GcDbObject& object, std::string_view name, FieldValue& value) {
  const GcDbClassInfo* info = gcdbInfoOf(object);
  for (int i = 0; info != nullptr && i < info->rowCount; ++i) {
    const GcDbField& row = *info->rows[i];
    if (row.at == nullptr || row.is == Is::Marker || !row.applies(&object)) continue;
    const std::string_view own = row.name;
    const bool isSame = own.size() == name.size() && equalNoCase(gc::fromUtf8(own), gc::fromUtf8(name));
    if (isSame && valueOfRow(row, object, value)) return true;
  }
  return false;
}

bool byRow(const GcDbObject& object, const std::string& name, FieldValue& value) {
  for (const auto& each : kRowNames)
    if (equalNoCase(gc::fromUtf8(each.property), gc::fromUtf8(name)) && described(object, each.row, value)) return true;
  return described(object, name, value);
}

// ---- points at the ends of curves, values of attributes

bool endOf(const GcDbEntity& entity, GcView name, FieldValue& value) {
  const auto* curve = GcDbCurve::cast(&entity);
  GcGePoint3d point;
  const bool isStart = equalNoCase(name, GC_T("StartPoint"));
  if (curve == nullptr || (!isStart && !equalNoCase(name, GC_T("EndPoint")))) return false;
  if ((isStart ? curve->getStartPoint(point) : curve->getEndPoint(point)) != Gcad::eOk) return false;
  value = FieldValue::of(point);
  return true;
}

}  // namespace

bool fieldProperty(Editor&, GcDbObjectId id, GcView name, FieldValue& value) {
  GcDbObject* object = nullptr;
  if (gcdbOpenObject(object, id, GcDb::kForRead) != Gcad::eOk) return false;
  const auto* entity = GcDbEntity::cast(object);
  const bool found = (entity != nullptr &&
                      (textOf(*entity, name, value) || measure(*entity, name, value) || endOf(*entity, name, value))) ||
                     byRow(*object, gc::toUtf8(name), value);
  ignore(object->close());
  return found;
}

}  // namespace ed
