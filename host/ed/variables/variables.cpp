#include "host/ed/variables/variables.h"

#include <algorithm>
#include <cstring>

#include "db/database.h"
#include "host/db/core/header.h"
#include "host/ed/editor.h"
#include "host/ed/variables/rows.h"
#include "host/rx/text/number.h"
#include "rx/gcassert.h"

namespace ed {

namespace {

using RowIndex = std::unordered_map<GcText, const VariableRow*>;

GcText widen(std::string_view ascii) { return GcText(ascii.begin(), ascii.end()); }

const RowIndex& rowIndex() {
  static const RowIndex* const index = [] {
    auto* made = new RowIndex;
    for (const auto rows : {headerRows(), sessionRows(), drawingRows(), factRows()})
      for (const VariableRow& row : rows)
        GC_ASSERT(made->emplace(widen(row.name), &row).second, "a variable has two rows");
    return made;
  }();
  return *index;
}

const VariableRow* findRow(GcView upperName) {
  const auto at = rowIndex().find(GcText(upperName));
  return at == rowIndex().end() ? nullptr : at->second;
}

VariableValue valueOfGroup(const GcDbGroup& group) {
  switch (group.kind) {
    case GcDbGroupKind::Text: return VariableValue::of(group.text);
    case GcDbGroupKind::Real: return VariableValue::of(group.real);
    case GcDbGroupKind::Point2d: return VariableValue::ofPoint2d(group.point.x, group.point.y);
    case GcDbGroupKind::Point3d: return VariableValue::ofPoint(group.point.x, group.point.y, group.point.z);
    default: return VariableValue::of(static_cast<int32_t>(group.asInt()));
  }
}

bool headerValue(Editor& editor, GcView name, VariableValue& value) {
  const GcDbGroupList* groups = editor.database().header().find(GcText(1, GC_T('$')).append(name));
  GcDbGroup group;
  if (groups == nullptr || !GcDbGroupList::Cursor(*groups).next(group)) return false;
  value = valueOfGroup(group);
  return true;
}

void setHeader(Editor& editor, GcView name, const VariableValue& value) {
  GcDbHeader& header = editor.database().header();
  const GcText key = GcText(1, GC_T('$')).append(name);
  switch (value.kind) {
    case VariableKind::Integer: header.setInteger(key, value.integer); break;
    case VariableKind::Real: header.setReal(key, value.real); break;
    case VariableKind::Text: header.setText(key, value.text); break;
    case VariableKind::Point2d:
    case VariableKind::Point3d: header.setPoint(key, {value.point[0], value.point[1], value.point[2]}); break;
  }
}

// The value in the kind that is wanted; false when it is of another.
bool convert(const VariableValue& given, VariableKind wanted, VariableValue& value) {
  value = given;
  if (given.kind == wanted) return true;
  if (given.kind == VariableKind::Integer && wanted == VariableKind::Real) {
    value = VariableValue::of(static_cast<double>(given.integer));
    return true;
  }
  const bool bothPoints = (given.kind == VariableKind::Point2d || given.kind == VariableKind::Point3d) &&
                          (wanted == VariableKind::Point2d || wanted == VariableKind::Point3d);
  value.kind = wanted;
  return bothPoints;
}

VariableValue read(Editor& editor, const VariableRow& row) {
  VariableValue value = initialValue(row);
  if (row.get != nullptr) {
    row.get(editor, value);
  } else if (row.keep == Keep::Header) {
    VariableValue kept;
    if (headerValue(editor, widen(row.name), kept) && !convert(kept, row.kind, value)) value = initialValue(row);
  } else if (const auto at = editor.sessionValues().find(&row); at != editor.sessionValues().end()) {
    value = at->second;
  }
  return value;
}

VariableStatus setUnlisted(Editor& editor, GcView name, const VariableValue& given) {
  VariableValue kept;
  VariableValue value;
  if (!headerValue(editor, name, kept)) return VariableStatus::Unknown;
  if (!convert(given, kept.kind, value)) return VariableStatus::WrongType;
  setHeader(editor, name, value);
  return VariableStatus::Done;
}

// Whether a variable that can be set is kept in the drawing; one without a row is a setting of its header.
bool isOfDrawing(const VariableRow* row) {
  if (row == nullptr || row->keep != Keep::Computed) return row == nullptr || row->keep == Keep::Header;
  const std::string_view name = row->name;
  return name != "ERRNO" && name != "CVPORT";
}

VariableStatus assign(Editor& editor, const GcText& upper, const VariableValue& given) {
  const VariableRow* row = findRow(upper);
  if (row == nullptr) return setUnlisted(editor, upper, given);
  if (row->readOnly || (row->keep == Keep::Computed && row->set == nullptr)) return VariableStatus::ReadOnly;
  VariableValue value;
  if (!convert(given, row->kind, value)) return VariableStatus::WrongType;
  const bool ranged = row->least != 0 || row->most != 0;
  const bool number = row->kind == VariableKind::Integer || row->kind == VariableKind::Real;
  if (ranged && number && !(value.number() >= row->least && value.number() <= row->most))
    return VariableStatus::OutOfRange;
  if (row->set != nullptr) return row->set(editor, value) ? VariableStatus::Done : VariableStatus::Refused;
  if (row->keep == Keep::Header)
    setHeader(editor, upper, value);
  else
    editor.sessionValues()[row] = value;
  return VariableStatus::Done;
}

}  // namespace

VariableValue VariableValue::of(int32_t value) {
  VariableValue made;
  made.integer = value;
  return made;
}
VariableValue VariableValue::of(double value) {
  VariableValue made;
  made.kind = VariableKind::Real;
  made.real = value;
  return made;
}
VariableValue VariableValue::of(GcView value) {
  VariableValue made;
  made.kind = VariableKind::Text;
  made.text = value;
  return made;
}
VariableValue VariableValue::ofPoint(double x, double y, double z) {
  VariableValue made;
  made.kind = VariableKind::Point3d;
  made.point[0] = x;
  made.point[1] = y;
  made.point[2] = z;
  return made;
}
VariableValue VariableValue::ofPoint2d(double x, double y) {
  VariableValue made = ofPoint(x, y, 0);
  made.kind = VariableKind::Point2d;
  return made;
}

VariableValue initialValue(const VariableRow& row) {
  VariableValue value;
  value.kind = row.kind;
  const std::string_view text = row.initial == nullptr ? "" : row.initial;
  double numbers[3] = {0, 0, 0};
  if (row.kind == VariableKind::Text) {
    value.text = widen(text);
    return value;
  }
  size_t at = 0;
  for (double& number : numbers) {
    const size_t end = std::min(text.find(',', at), text.size());
    if (at < text.size()) static_cast<void>(gc::parseReal(text.substr(at, end - at), number));
    at = std::min(end + 1, text.size());
  }
  value.integer = static_cast<int32_t>(numbers[0]);
  value.real = numbers[0];
  std::copy(numbers, numbers + 3, value.point);
  return value;
}

bool getVariable(Editor& editor, GcView name, VariableValue& value) {
  const GcText upper = upperText(name);
  if (const VariableRow* row = findRow(upper)) {
    value = read(editor, *row);
    return true;
  }
  return headerValue(editor, upper, value);
}

VariableStatus setVariable(Editor& editor, GcView name, const VariableValue& given) {
  const GcText upper = upperText(name);
  editor.watchers().tell(Happening::VariableChanges, upper);
  const VariableStatus status = assign(editor, upper, given);
  const bool done = status == VariableStatus::Done;
  if (done && isOfDrawing(findRow(upper))) editor.variableChanged();
  editor.watchers().tell(done ? Happening::VariableChanged : Happening::VariableRefused, upper);
  return status;
}

VariableStatus setQuietly(Editor& editor, GcView name, const VariableValue& value) {
  return assign(editor, upperText(name), value);
}

int32_t integerVariable(Editor& editor, const char* name) {
  VariableValue value;
  return getVariable(editor, widen(name), value) ? value.integer : 0;
}

double realVariable(Editor& editor, const char* name) {
  VariableValue value;
  return getVariable(editor, widen(name), value) ? value.number() : 0.0;
}

GcText textVariable(Editor& editor, const char* name) {
  VariableValue value;
  return getVariable(editor, widen(name), value) ? value.text : GcText();
}

std::vector<GcText> variableNames() {
  std::vector<GcText> names;
  for (const auto& [name, row] : rowIndex()) names.push_back(name);
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace ed
