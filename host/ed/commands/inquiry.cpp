// Questions about the drawing, variables by name, waiting.
#include "db/curve.h"
#include "db/region.h"
#include "host/ap/output.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/commandline.h"
#include "host/ed/coordinates.h"
#include "host/ed/variables/rows.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

// Results that programs read back as variables although they cannot set them.
void putResult(Editor& editor, const char* name, double value) {
  for (const VariableRow& row : sessionRows())
    if (std::string_view(row.name) == name) editor.sessionValues()[&row] = VariableValue::of(value);
}

struct Measured {
  double area = 0;
  double perimeter = 0;
  bool good = false;
};

Measured measure(GcDbObjectId id) {
  Measured found;
  GcDbRegion* region = nullptr;
  if (id.objectClass() == GcDbRegion::desc() && gcdbOpenObject(region, id, GcDb::kForRead) == Gcad::eOk) {
    found.good = region->getArea(found.area) == Gcad::eOk && region->getPerimeter(found.perimeter) == Gcad::eOk;
    ignore(region->close());
    return found;
  }
  GcDbCurve* curve = nullptr;
  if (gcdbOpenObject(curve, id, GcDb::kForRead) != Gcad::eOk) return found;
  double end = 0;
  found.good = curve->getArea(found.area) == Gcad::eOk && curve->getEndParam(end) == Gcad::eOk &&
               curve->getDistAtParam(end, found.perimeter) == Gcad::eOk;
  ignore(curve->close());
  return found;
}

Measured measure(const std::vector<GcGePoint3d>& points) {
  Measured found;
  GcGeVector3d twice;
  for (size_t i = 0, j = points.size() - 1; i < points.size(); j = i++) {
    twice = twice + (points[j] - points[0]).crossProduct(points[i] - points[0]);
    found.perimeter += points[j].distanceTo(points[i]);
  }
  found.area = twice.length() / 2;
  found.good = points.size() > 2;
  return found;
}

Task<bool> area(CommandInput& in) {
  Measured total;
  double sign = 0;  // 0: one area; else areas are added and taken away
  for (;;) {
    const Answer first =
        co_await in.ask(Ask(What::Point, "\nSpecify first corner point or [Object/Add area/Subtract area]: ")
                            .words("Object Add Subtract Entity"));
    if (first.isKeyword("Add") || first.isKeyword("Subtract")) {
      sign = first.isKeyword("Add") ? 1 : -1;
      continue;
    }
    if (!first.isPoint() && first.kind != Answer::Kind::Keyword) break;
    Measured one;
    if (first.isPoint()) {
      std::vector<GcGePoint3d> points{first.point};
      for (;;) {
        const Answer next = co_await in.ask(Ask(What::Point, "\nSpecify next point: ").from(points.back()));
        if (!next.isPoint()) break;
        points.push_back(next.point);
      }
      one = measure(points);
    } else {
      const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect objects: "));
      if (picked.kind == Answer::Kind::Entity) one = measure(picked.entity);
      if (!one.good) in.tell("\nSelected object does not have an area\n");
    }
    total.area += one.area * (sign < 0 ? -1 : 1);
    total.perimeter = sign == 0 ? one.perimeter : total.perimeter + one.perimeter;
    total.good = total.good || one.good;
    if (sign == 0) break;
  }
  if (!total.good) co_return false;
  putResult(in.editor(), "AREA", total.area);
  putResult(in.editor(), "PERIMETER", total.perimeter);
  in.tell(("\nArea = " + gc::realText(total.area) + ", Perimeter = " + gc::realText(total.perimeter) + "\n").c_str());
  co_return true;
}

Task<bool> distance(CommandInput& in) {
  const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify first point: ").needed());
  const Answer second = co_await in.ask(Ask(What::Point, "\nSpecify second point: ").from(first.point).needed());
  if (!first.isPoint() || !second.isPoint()) co_return false;
  const double length = first.point.distanceTo(second.point);
  putResult(in.editor(), "DISTANCE", length);
  in.tell(("\nDistance = " + gc::realText(length) + "\n").c_str());
  co_return true;
}

Task<bool> identify(CommandInput& in) {
  const Answer point = co_await in.ask(Ask(What::Point, "\nSpecify point: ").needed());
  if (!point.isPoint()) co_return false;
  in.tell(("\nX = " + gc::realText(point.point.x) + "     Y = " + gc::realText(point.point.y) +
           "     Z = " + gc::realText(point.point.z) + "\n")
              .c_str());
  co_return true;
}

// Nobody watches, so nothing needs to wait.
Task<bool> delay(CommandInput& in) {
  static_cast<void>(co_await in.ask(Ask(What::Integer, "\nEnter delay time (in milliseconds): ")));
  co_return true;
}

// ---- variables by name

// The typed value in the form the variable has.
bool parseValue(const Answer& answer, VariableValue& value) {
  const std::string text = gc::toUtf8(answer.text);
  int64_t integer = 0;
  switch (value.kind) {
    case VariableKind::Text: value.text = answer.text == GC_T(".") ? GcText() : answer.text; return true;
    case VariableKind::Integer:
      if (equalNoCase(answer.text, GC_T("ON")) || equalNoCase(answer.text, GC_T("OFF"))) {
        value.integer = equalNoCase(answer.text, GC_T("ON")) ? 1 : 0;
        return true;
      }
      if (!gc::parseInt(text, integer) || integer != static_cast<int32_t>(integer)) return false;
      value.integer = static_cast<int32_t>(integer);
      return true;
    case VariableKind::Real: return gc::parseReal(text, value.real);
    default: return false;
  }
}

Task<bool> setvar(CommandInput& in) {
  Editor& editor = in.editor();
  const Answer name = co_await in.ask(Ask(What::Word, "\nEnter variable name or [?]: "));
  VariableValue value;
  if (!getVariable(editor, name.text, value)) {
    in.tell("\nUnknown variable name. Type SETVAR ? for a listing of variables.\n");
    co_return false;
  }
  Ask ask(value.kind == VariableKind::Text                                             ? What::Line
          : value.kind == VariableKind::Point2d || value.kind == VariableKind::Point3d ? What::Point
                                                                                       : What::Word,
          "");
  ask.prompt = GC_T("\nEnter new value for ") + upperText(name.text) + GC_T(": ");
  const Answer answer = co_await in.ask(ask);
  if (answer.isNone()) co_return true;
  const bool isPoint = answer.isPoint();
  if (isPoint) value = VariableValue::ofPoint(answer.point.x, answer.point.y, answer.point.z);
  const bool good =
      (isPoint || parseValue(answer, value)) && setVariable(editor, name.text, value) == VariableStatus::Done;
  if (!good) in.tell("\nCannot set the variable to that value.\n");
  co_return good;
}

constexpr Command kCommands[] = {
    {"AREA", "AA", area}, {"DIST", "DI", distance},  {"ID", "", identify},
    {"DELAY", "", delay}, {"SETVAR", "SET", setvar},
};

}  // namespace

std::span<const Command> inquiryCommands() { return kCommands; }

}  // namespace ed
