#include "host/ed/fields/update.h"

#include <algorithm>
#include <unordered_map>

#include "db/attribute.h"
#include "db/blockreference.h"
#include "db/dimension.h"
#include "db/mtext.h"
#include "db/text.h"
#include "host/db/objects/textfield.h"
#include "host/ed/fields/evaluate.h"
#include "host/rx/text/number.h"

namespace ed {

namespace {

constexpr GcView kGone = GC_T("####");

// Works out fields from the leaves up. Each is worked out once, however many name it.
class Evaluation {
 public:
  explicit Evaluation(Editor& editor) : m_editor(editor) {}

  // The text of a field and its number, if it is one.
  FieldPart evaluate(GcDbObjectId id, int depth = 0) {
    constexpr int kDeepest = 32;
    const auto [at, isNew] = m_done.try_emplace(id.stub());
    if (!isNew || depth >= kDeepest) return at->second;  // a field within itself reads as nothing
    const FieldPart part = worked(id, depth);
    m_done[id.stub()] = part;
    return part;
  }
  [[nodiscard]] bool hasFailed() const { return m_hasFailed; }
  void begin() { m_hasFailed = false; }

 private:
  struct Source {
    GcText evaluator, code, format, text;
    GcDbObjectIdArray children;
    FieldParts parts;
    GcDbDataValue value;
  };

  static bool read(GcDbObjectId id, Source& source) {
    GcDbTextField* field = nullptr;
    if (gcdbOpenObject(field, id, GcDb::kForRead) != Gcad::eOk) return false;
    source.evaluator = GcText(view(field->evaluator()));
    source.code = GcText(view(field->code()));
    source.format = GcText(view(field->format()));
    source.text = GcText(view(field->text()));
    source.value = field->value();
    source.children = field->children();
    for (const GcDbObjectId object : field->objects()) source.parts.objects.push_back(object);
    ignore(field->close());
    return true;
  }

  FieldPart worked(GcDbObjectId id, int depth) {
    Source source;
    if (!read(id, source)) return {GcText(kGone), false, 0};
    for (const GcDbObjectId child : source.children) source.parts.children.push_back(evaluate(child, depth + 1));
    return source.evaluator == GC_T("_text") ? composed(id, source) : valued(id, source);
  }

  // A text with fields in it.
  FieldPart composed(GcDbObjectId id, const Source& source) {
    constexpr GcView kField = GC_T("_FldIdx");
    GcText text;
    size_t from = 0;
    const GcView code = source.code;
    for (;;) {
      const FieldPlace place = nextFieldPlace(code, kField, from);
      text += GcText(code.substr(from, place.index < 0 ? GcView::npos : place.begin - from));
      if (place.index < 0) break;
      const auto index = static_cast<size_t>(place.index);
      text += index < source.parts.children.size() ? source.parts.children[index].text : GcText(kGone);
      from = place.end;
    }
    GcDbDataValue value;
    if (!text.empty()) value.setString(toGcString(text));
    keep(id, value, text);
    return {text, false, 0};
  }

  FieldPart valued(GcDbObjectId id, const Source& source) {
    FieldCode code = splitFieldCode(source.code);
    if (code.format.empty()) code.format = source.format;
    FieldValue value;
    GcText complaint;
    switch (evaluateField(m_editor, code, source.parts, value, complaint)) {
      case FieldOutcome::Unknown: m_hasFailed = true; return asItWas(source);
      case FieldOutcome::Failed: m_hasFailed = true; return failed(id, complaint);
      case FieldOutcome::Done: break;
    }
    const GcText text = formatField(m_editor, value, code.format);
    keep(id, dataOf(value), text);
    FieldPart part{text,
                   value.kind == FieldValue::Kind::Number || value.kind == FieldValue::Kind::Integer ||
                       value.kind == FieldValue::Kind::Angle,
                   value.number};
    if (value.kind == FieldValue::Kind::Text) part.isNumber = gc::parseReal(GcView(text), part.number);
    return part;
  }

  static FieldPart asItWas(const Source& source) {
    const bool isReal = source.value.kind == GcDbDataValue::kDouble && !source.value.isEmpty();
    const bool isLong = source.value.kind == GcDbDataValue::kLong && !source.value.isEmpty();
    return {source.text, isReal || isLong, isReal ? source.value.real : source.value.integer};
  }

  static GcDbDataValue dataOf(const FieldValue& value) {
    GcDbDataValue data;
    switch (value.kind) {
      case FieldValue::Kind::Text: data.setString(toGcString(value.text)); break;
      case FieldValue::Kind::Integer: data.setInteger(static_cast<int32_t>(value.number)); break;
      case FieldValue::Kind::Point: data.setPoint(value.point); break;
      default: data.setReal(value.number);
    }
    return data;
  }

  static void keep(GcDbObjectId id, const GcDbDataValue& value, const GcText& text) {
    GcDbTextField* field = nullptr;
    if (gcdbOpenObject(field, id, GcDb::kForWrite) != Gcad::eOk) return;
    field->setResult(value, toGcString(text));
    ignore(field->close());
  }

  static FieldPart failed(GcDbObjectId id, const GcText& complaint) {
    GcDbTextField* field = nullptr;
    if (gcdbOpenObject(field, id, GcDb::kForWrite) != Gcad::eOk) return {GcText(kGone), false, 0};
    field->setFailed(GcDbTextField::kOtherError, toGcString(complaint), toGcString(kGone));
    ignore(field->close());
    return {GcText(kGone), false, 0};
  }

  Editor& m_editor;
  std::unordered_map<GcDbStub*, FieldPart> m_done;
  bool m_hasFailed = false;
};

void putText(GcDbObjectId id, const GcText& text) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForWrite) != Gcad::eOk) return;
  if (auto* line = GcDbText::cast(entity))
    ignore(line->setTextString(text.c_str()));
  else if (auto* paragraph = GcDbMText::cast(entity))
    ignore(paragraph->setContents(text.c_str()));
  else if (auto* dimension = GcDbDimension::cast(entity))
    ignore(dimension->setDimensionText(text.c_str()));
  ignore(entity->close());
}

std::vector<GcDbObjectId> withAttributes(const std::vector<GcDbObjectId>& entities) {
  std::vector<GcDbObjectId> all;
  for (const GcDbObjectId id : entities) {
    all.push_back(id);
    GcDbBlockReference* reference = nullptr;
    GcDbObjectIdArray attributes;
    if (gcdbOpenObject(reference, id, GcDb::kForRead) != Gcad::eOk) continue;
    reference->attributeIds(attributes);
    ignore(reference->close());
    for (const GcDbObjectId each : attributes) all.push_back(each);
  }
  return all;
}

}  // namespace

FieldCount updateFields(Editor& editor, const std::vector<GcDbObjectId>& entities) {
  FieldCount count;
  Evaluation evaluation(editor);
  for (const GcDbObjectId id : withAttributes(entities)) {
    const GcDbObjectId field = gcdbFieldOf(id, GC_T("TEXT"));
    if (field.isNull()) continue;
    ++count.found;
    evaluation.begin();
    const FieldPart part = evaluation.evaluate(field);
    putText(id, part.text);
    if (!evaluation.hasFailed()) ++count.updated;
  }
  return count;
}

}  // namespace ed
