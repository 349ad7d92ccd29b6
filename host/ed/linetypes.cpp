#include "host/ed/linetypes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "db/database.h"
#include "db/linetype.h"
#include "host/db/entlist/entitymake.h"
#include "host/ed/records.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

struct Usual {
  const char* name;
  const char* description;
  const char* dashes;
};

// Units: inches; each also comes half as long (2) and twice as long (X2).
constexpr Usual kInches[] = {
    {"BORDER", "Border __ __ . __ __ .", ".5,-.25,.5,-.25,0,-.25"},
    {"CENTER", "Center ____ _ ____ _", "1.25,-.25,.25,-.25"},
    {"DASHDOT", "Dash dot __ . __ .", ".5,-.25,0,-.25"},
    {"DASHED", "Dashed __ __ __", ".5,-.25"},
    {"DIVIDE", "Divide __ . . __ . .", ".5,-.25,0,-.25,0,-.25"},
    {"DOT", "Dot . . . .", "0,-.25"},
    {"HIDDEN", "Hidden _ _ _ _", ".25,-.125"},
    {"PHANTOM", "Phantom ______ __ __", "1.25,-.25,.25,-.25,.25,-.25"},
};

// Lines 02 to 15 of ISO 128, for a pen of 1 mm.
constexpr Usual kIso[] = {
    {"ACAD_ISO02W100", "ISO dash __ __", "12,-3"},
    {"ACAD_ISO03W100", "ISO dash space __    __", "12,-18"},
    {"ACAD_ISO04W100", "ISO long-dash dot ____ .", "24,-3,.5,-3"},
    {"ACAD_ISO05W100", "ISO long-dash double-dot ____ ..", "24,-3,.5,-3,.5,-3"},
    {"ACAD_ISO06W100", "ISO long-dash triple-dot ____ ...", "24,-3,.5,-3,.5,-3,.5,-3"},
    {"ACAD_ISO07W100", "ISO dot . . .", ".5,-3"},
    {"ACAD_ISO08W100", "ISO long-dash short-dash ____ __", "24,-3,6,-3"},
    {"ACAD_ISO09W100", "ISO long-dash double-short-dash ____ __ __", "24,-3,6,-3,6,-3"},
    {"ACAD_ISO10W100", "ISO dash dot __ .", "12,-3,.5,-3"},
    {"ACAD_ISO11W100", "ISO double-dash dot __ __ .", "12,-3,12,-3,.5,-3"},
    {"ACAD_ISO12W100", "ISO dash double-dot __ . .", "12,-3,.5,-3,.5,-3"},
    {"ACAD_ISO13W100", "ISO double-dash double-dot __ __ . .", "12,-3,12,-3,.5,-3,.5,-3"},
    {"ACAD_ISO14W100", "ISO dash triple-dot __ . . .", "12,-3,.5,-3,.5,-3,.5,-3"},
    {"ACAD_ISO15W100", "ISO double-dash triple-dot __ __ . . .", "12,-3,12,-3,.5,-3,.5,-3,.5,-3"},
};

constexpr double kMillimetresPerInch = 25.4;

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && static_cast<unsigned char>(text.front()) <= ' ') text.remove_prefix(1);
  while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.remove_suffix(1);
  return text;
}

// The next part up to a comma outside of quotes and brackets.
std::string_view takePart(std::string_view& text) {
  bool quoted = false, bracketed = false;
  size_t end = 0;
  for (; end < text.size(); ++end) {
    const char c = text[end];
    if (c == '"') quoted = !quoted;
    if (!quoted && c == '[') bracketed = true;
    if (!quoted && c == ']') bracketed = false;
    if (c == ',' && !quoted && !bracketed) break;
  }
  const std::string_view part = trimmed(text.substr(0, end));
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

// "45" degrees, "0.5r" radians, "50g" hundredths of a right angle.
bool parseTurn(std::string_view text, double& turnRad) {
  double unit = std::numbers::pi / 180;
  if (!text.empty()) {
    const char last = static_cast<char>(text.back() | 0x20);
    if (last == 'r') unit = 1;
    if (last == 'g') unit = std::numbers::pi / 200;
    if (last == 'r' || last == 'g' || last == 'd') text.remove_suffix(1);
  }
  if (!gc::parseReal(text, turnRad)) return false;
  turnRad *= unit;
  return true;
}

// S=, R= (of the line), A= (of the plane), U= (of the line, kept like R), X=, Y=.
bool takeSetting(std::string_view part, LinetypeMark& mark) {
  const size_t equals = part.find('=');
  if (equals == std::string_view::npos) return false;
  const std::string_view name = trimmed(part.substr(0, equals));
  const std::string_view value = trimmed(part.substr(equals + 1));
  switch (name.size() == 1 ? name[0] & ~0x20 : 0) {
    case 'S': return gc::parseReal(value, mark.scale) && mark.scale != 0;
    case 'X': return gc::parseReal(value, mark.offsetX);
    case 'Y': return gc::parseReal(value, mark.offsetY);
    case 'R':
    case 'U': return parseTurn(value, mark.turnRad);
    case 'A': mark.isAbsolute = true; return parseTurn(value, mark.turnRad);
    default: return false;
  }
}

// What stands between brackets.
bool parseMark(std::string_view text, LinetypeMark& mark) {
  std::string_view what = takePart(text);
  mark.isText = what.size() >= 2 && what.front() == '"' && what.back() == '"';
  if (mark.isText) what = what.substr(1, what.size() - 2);
  mark.text = gc::fromUtf8(what);
  mark.style = gc::fromUtf8(takePart(text));
  bool good = !mark.text.empty() && !mark.style.empty();
  while (good && !trimmed(text).empty()) good = takeSetting(takePart(text), mark);
  return good;
}

// The elements behind "A,". What is not understood is left out and named.
void parseElements(std::string_view text, LinetypeDefinition& definition) {
  while (!trimmed(text).empty()) {
    const std::string_view part = takePart(text);
    LinetypeElement element;
    LinetypeMark mark;
    const bool isMark = part.size() > 1 && part.front() == '[' && part.back() == ']';
    if (!isMark && gc::parseReal(part, element.length))
      definition.elements.push_back(element);
    else if (isMark && !definition.elements.empty() && parseMark(part.substr(1, part.size() - 2), mark))
      definition.elements.back().mark = std::move(mark);
    else
      definition.trouble = gc::fromUtf8(part);
  }
}

void addUsual(const Usual& usual, const char* suffix, double scale, std::vector<LinetypeDefinition>& found) {
  LinetypeDefinition made{gc::fromUtf8(std::string(usual.name) + suffix), gc::fromUtf8(usual.description), {}, {}};
  parseElements(usual.dashes, made);
  for (LinetypeElement& element : made.elements) element.length *= scale;
  found.push_back(std::move(made));
}

}  // namespace

std::vector<LinetypeDefinition> parseLinetypes(GcView text) {
  std::vector<LinetypeDefinition> found;
  bool begun = false;
  while (!text.empty()) {
    const size_t end = std::min(text.find(GC_T('\n')), text.size());
    const GcView line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.size() > 1 && line[0] == GC_T('*')) {
      const size_t comma = std::min(line.find(GC_T(',')), line.size());
      LinetypeDefinition made;
      made.name = GcText(line.substr(1, comma - 1));
      if (comma < line.size()) made.description = GcText(line.substr(comma + 1));
      for (GcText* part : {&made.name, &made.description}) {
        while (!part->empty() && part->back() <= GC_T(' ')) part->pop_back();
        part->erase(0, std::min(part->find_first_not_of(GC_T(" \t")), part->size()));
      }
      found.push_back(std::move(made));
      begun = true;
    } else if (begun && line.size() > 1 && gcUpper(line[0]) == GC_T('A')) {
      const std::string pattern = gc::toUtf8(line.substr(1));
      std::string_view rest = trimmed(pattern);
      if (!rest.empty() && rest.front() == ',') rest.remove_prefix(1);
      parseElements(rest, found.back());
      begun = false;
    }
  }
  return found;
}

std::vector<LinetypeDefinition> usualLinetypes(bool metric) {
  std::vector<LinetypeDefinition> found;
  const double unit = metric ? kMillimetresPerInch : 1;
  for (const Usual& usual : kInches) {
    addUsual(usual, "", unit, found);
    addUsual(usual, "2", unit / 2, found);
    addUsual(usual, "X2", unit * 2, found);
  }
  for (const Usual& usual : kIso) addUsual(usual, "", 1, found);
  return found;
}

namespace {

enum MarkFlag : int { kAbsolute = 1, kLetters = 2, kShape = 4 };

GcDbObjectId needRecord(GcDbDatabase& database, const GcText& name) {
  GcDbObjectId id = recordNamed(database.linetypeTableId(), name);
  GcDbLinetypeTable* table = nullptr;
  if (!id.isNull() || database.getSymbolTable(table, GcDb::kForWrite) != Gcad::eOk) return id;
  auto* record = new GcDbLinetypeTableRecord;
  if (record->setName(name.c_str()) == Gcad::eOk && table->add(id, record) == Gcad::eOk)
    ignore(record->close());
  else
    delete record;
  ignore(table->close());
  return id;
}

GcDbObjectId styleOf(GcDbDatabase& database, const LinetypeMark& mark) {
  const GcDbObjectId id = recordNamed(database.textStyleTableId(), mark.style);
  return id.isNull() ? database.textstyle() : id;
}

void putElement(GcDbDatabase& database, const LinetypeElement& element, GcDbGroupList& groups, GcText& trouble) {
  groups.put(GcDbGroup::ofReal(49, element.length));
  if (!element.mark || !element.mark->isText) {
    groups.put(GcDbGroup::ofInt(74, 0));
    if (element.mark) trouble = element.mark->text;
    return;
  }
  const LinetypeMark& mark = *element.mark;
  groups.put(GcDbGroup::ofInt(74, kLetters | (mark.isAbsolute ? kAbsolute : 0)));
  groups.put(GcDbGroup::ofInt(75, 0));
  groups.put(GcDbGroup::ofId(340, styleOf(database, mark)));
  groups.put(GcDbGroup::ofReal(46, mark.scale));
  groups.put(GcDbGroup::ofReal(50, mark.turnRad));
  groups.put(GcDbGroup::ofReal(44, mark.offsetX));
  groups.put(GcDbGroup::ofReal(45, mark.offsetY));
  groups.put(GcDbGroup::ofText(9, mark.text));
}

}  // namespace

GcDbObjectId putLinetype(GcDbDatabase& database, const LinetypeDefinition& definition, GcText& trouble) {
  if (definition.elements.size() > kMostLinetypeElements) return {};
  const GcDbObjectId id = needRecord(database, definition.name);
  if (id.isNull()) return id;
  trouble = definition.trouble;
  double length = 0;
  for (const LinetypeElement& element : definition.elements) length += std::fabs(element.length);
  GcDbGroupList groups;
  groups.put(GcDbGroup::ofId(-1, id));
  groups.put(GcDbGroup::ofText(3, definition.description));
  groups.put(GcDbGroup::ofInt(73, static_cast<int64_t>(definition.elements.size())));
  groups.put(GcDbGroup::ofReal(40, length));
  for (const LinetypeElement& element : definition.elements) putElement(database, element, groups, trouble);
  return gcdbEntityModify(groups) == Gcad::eOk ? id : GcDbObjectId();
}

}  // namespace ed
