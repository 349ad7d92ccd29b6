#include "host/ed/fields/evaluate.h"

#include <filesystem>

#include "db/database.h"
#include "host/ap/paths.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/ed/calculator.h"
#include "host/ed/clock.h"
#include "host/ed/fields/properties.h"
#include "host/ed/fields/summary.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

bool isBlank(GCHAR c) { return c == GC_T(' ') || c == GC_T('\t'); }

GcView trimmed(GcView text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool startsWith(GcView text, GcView start) {
  return text.size() >= start.size() && equalNoCase(text.substr(0, start.size()), start);
}

// ---- facts: AcVar

FieldOutcome fromText(GcView text, FieldValue& value) {
  constexpr GcView kNothing = GC_T("----");
  value = FieldValue::ofText(text.empty() ? kNothing : text);
  return FieldOutcome::Done;
}

bool dateNamed(Editor& editor, GcView name, FieldValue& value) {
  const GcDbHeader& header = editor.database().header();
  if (equalNoCase(name, GC_T("Date")))
    value = FieldValue::ofDate(julianDate(localNow()));
  else if (equalNoCase(name, GC_T("CreateDate")))
    value = FieldValue::ofDate(header.real(GC_T("$TDCREATE"), julianDate(localNow())));
  else if (equalNoCase(name, GC_T("SaveDate")))
    value = FieldValue::ofDate(header.real(GC_T("$TDUPDATE"), julianDate(localNow())));
  else
    return false;
  return true;
}

// Bytes of the file; those who want kilobytes give a factor.
bool fileSize(Editor& editor, FieldValue& value) {
  const std::filesystem::path path(editor.document().fileName());
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  value = FieldValue::ofInteger(error ? 0.0 : static_cast<double>(size));
  return true;
}

bool ofFile(Editor& editor, GcView name, FieldValue& value) {
  if (equalNoCase(name, GC_T("Filesize"))) return fileSize(editor, value);
  if (!equalNoCase(name, GC_T("Filename"))) return false;
  const GcText path = ap::absolutePath(editor.document().fileName());
  value = FieldValue::ofText(*editor.document().fileName() == 0 ? textVariable(editor, "DWGNAME") : path);
  return true;
}

FieldOutcome customProperty(Editor& editor, GcView name, FieldValue& value) {
  for (const GcDbCustomProperty& property : editor.database().fileParts().customProperties)
    if (equalNoCase(view(property.name), name)) return fromText(view(property.value), value);
  return fromText({}, value);
}

FieldOutcome lispVariable(Editor& editor, GcView name, FieldValue& value) {
  GcText text;
  ap::LispSpace* lisp = editor.document().lisp();
  if (lisp != nullptr) static_cast<void>(lisp->variableText(name, text));
  return fromText(text, value);
}

FieldValue valueOf(const VariableValue& variable) {
  switch (variable.kind) {
    case VariableKind::Integer: return FieldValue::ofInteger(variable.integer);
    case VariableKind::Real: return FieldValue::of(variable.real);
    case VariableKind::Text: return FieldValue::ofText(variable.text);
    default: return FieldValue::of(GcGePoint3d(variable.point[0], variable.point[1], variable.point[2]));
  }
}

FieldOutcome variable(Editor& editor, GcView name, FieldValue& value, GcText& complaint) {
  constexpr GcView kCustom = GC_T("CustomDP."), kLisp = GC_T("Lisp.");
  GcText text;
  if (dateNamed(editor, name, value) || ofFile(editor, name, value)) return FieldOutcome::Done;
  if (drawingSummary(editor.database(), name, text)) return fromText(text, value);
  if (startsWith(name, kCustom)) return customProperty(editor, name.substr(kCustom.size()), value);
  if (startsWith(name, kLisp)) return lispVariable(editor, name.substr(kLisp.size()), value);
  VariableValue found;
  if (!getVariable(editor, equalNoCase(name, GC_T("Login")) ? GcView(GC_T("LOGINNAME")) : name, found)) {
    complaint = GC_T("No variable ") + GcText(name);
    return FieldOutcome::Failed;
  }
  value = valueOf(found);
  return FieldOutcome::Done;
}

// ---- properties of objects: AcObjProp

FieldOutcome property(Editor& editor, GcView expression, const FieldParts& parts, FieldValue& value,
                      GcText& complaint) {
  constexpr GcView kObject = GC_T("_ObjIdx");
  const FieldPlace place = nextFieldPlace(expression, kObject, 0);
  const size_t close = place.index < 0 ? GcView::npos : expression.find(GC_T(')'), place.end);
  const size_t dot = close == GcView::npos ? close : expression.find(GC_T('.'), close);
  if (dot == GcView::npos) return FieldOutcome::Unknown;  // of a block's own reference, say
  const GcView name = trimmed(expression.substr(dot + 1));
  const auto index = static_cast<size_t>(place.index);
  if (index < parts.objects.size() && fieldProperty(editor, parts.objects[index], name, value))
    return FieldOutcome::Done;
  complaint = GC_T("No property ") + GcText(name);
  return FieldOutcome::Failed;
}

// ---- expressions: AcExpr

// Child fields as numbers; false when one is none.
bool withChildren(GcView expression, const FieldParts& parts, GcText& text) {
  constexpr GcView kField = GC_T("_FldIdx");
  size_t from = 0;
  for (;;) {
    const FieldPlace place = nextFieldPlace(expression, kField, from);
    if (place.index < 0) break;
    const auto index = static_cast<size_t>(place.index);
    if (index >= parts.children.size() || !parts.children[index].isNumber) return false;
    text += GcText(expression.substr(from, place.begin - from)) + GC_T("(") +
            gc::fromUtf8(gc::realText(parts.children[index].number)) + GC_T(")");
    from = place.end;
  }
  text += GcText(expression.substr(from));
  return true;
}

FieldOutcome calculated(Editor& editor, GcView expression, const FieldParts& parts, FieldValue& value,
                        GcText& complaint) {
  GcText text;
  if (!withChildren(expression, parts, text)) {
    complaint = GC_T("A field within the expression is no number");
    return FieldOutcome::Failed;
  }
  Calculation calculation;
  CalcValue result;
  if (!calculation.parse(text, complaint)) return FieldOutcome::Failed;
  if (!calculation.picks().empty()) complaint = GC_T("The expression asks for points");
  if (!complaint.empty() || !calculation.evaluate(editor, {}, result, complaint)) return FieldOutcome::Failed;
  value = result.isVector() ? FieldValue::of(GcGePoint3d(result.vector.x, result.vector.y, result.vector.z))
                            : FieldValue::of(result.number);
  return FieldOutcome::Done;
}

FieldOutcome macro(Editor& editor, GcView expression, FieldValue& value) {
  ap::LispSpace* lisp = editor.document().lisp();
  if (lisp == nullptr) return FieldOutcome::Unknown;
  value = FieldValue::ofText(lisp->macroText(expression));
  return FieldOutcome::Done;
}

}  // namespace

FieldPlace nextFieldPlace(GcView code, GcView kind, size_t from) {
  constexpr GcView kBegin = GC_T("%<\\"), kEnd = GC_T(">%");
  for (size_t at = code.find(kBegin, from); at != GcView::npos; at = code.find(kBegin, at + 1)) {
    const size_t end = code.find(kEnd, at);
    if (end == GcView::npos) break;
    const GcView inside = code.substr(at + kBegin.size(), end - at - kBegin.size());
    int64_t index = 0;
    constexpr int64_t kMost = 100000;
    if (startsWith(inside, kind) && gc::parseInt(trimmed(inside.substr(kind.size())), index) && index >= 0 &&
        index < kMost)
      return {at, end + kEnd.size(), static_cast<int>(index)};
  }
  return {};
}

FieldCode splitFieldCode(GcView code) {
  FieldCode split;
  code = trimmed(code);
  if (code.empty() || code[0] != GC_T('\\')) return split;
  const size_t blank = code.find(GC_T(' '));
  const GcView head = code.substr(1, blank == GcView::npos ? blank : blank - 1);
  split.evaluator = GcText(head.substr(0, head.find(GC_T('.'))));
  if (blank == GcView::npos) return split;
  GcView rest = trimmed(code.substr(blank));
  constexpr GcView kFormat = GC_T("\\f \"");
  const size_t at = rest.rfind(kFormat);
  if (at != GcView::npos) {
    const GcView format = rest.substr(at + kFormat.size());
    split.format = GcText(format.substr(0, format.find(GC_T('"'))));
    rest = trimmed(rest.substr(0, at));
  }
  constexpr GcView kLink = GC_T("\\href \"");
  split.expression = GcText(trimmed(rest.substr(0, rest.find(kLink))));
  return split;
}

FieldOutcome evaluateField(Editor& editor, const FieldCode& code, const FieldParts& parts, FieldValue& value,
                           GcText& complaint) {
  if (equalNoCase(code.evaluator, GC_T("AcVar"))) return variable(editor, code.expression, value, complaint);
  if (equalNoCase(code.evaluator, GC_T("AcObjProp"))) return property(editor, code.expression, parts, value, complaint);
  if (equalNoCase(code.evaluator, GC_T("AcExpr"))) return calculated(editor, code.expression, parts, value, complaint);
  if (equalNoCase(code.evaluator, GC_T("AcDiesel"))) return macro(editor, code.expression, value);
  return FieldOutcome::Unknown;
}

}  // namespace ed
