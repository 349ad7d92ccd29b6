#include "host/ed/linetypes.h"

#include <cmath>

#include "db/database.h"
#include "db/linetype.h"
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

// The numbers between commas, with everything in brackets passed over.
std::vector<double> parseDashes(std::string_view text) {
  std::vector<double> dashes;
  while (!text.empty()) {
    const size_t begin = text.find_first_not_of(" \t,\r");
    if (begin == std::string_view::npos) break;
    text.remove_prefix(begin);
    if (text[0] == '[') {
      text.remove_prefix(std::min(text.find(']'), text.size() - 1) + 1);
      continue;
    }
    const size_t end = std::min(text.find(','), text.size());
    std::string_view word = text.substr(0, end);
    while (!word.empty() && (word.back() == ' ' || word.back() == '\t' || word.back() == '\r')) word.remove_suffix(1);
    double value = 0;
    if (gc::parseReal(word, value)) dashes.push_back(value);
    text.remove_prefix(end);
  }
  return dashes;
}

void addUsual(const Usual& usual, const char* suffix, double scale, std::vector<LinetypeDefinition>& found) {
  LinetypeDefinition made{gc::fromUtf8(std::string(usual.name) + suffix), gc::fromUtf8(usual.description),
                          parseDashes(usual.dashes), false};
  for (double& dash : made.dashes) dash *= scale;
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
      found.back().dashes = parseDashes(gc::toUtf8(line.substr(1)));
      found.back().simplified = line.find(GC_T('[')) != GcView::npos;
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

GcDbObjectId putLinetype(GcDbDatabase& database, const LinetypeDefinition& definition) {
  GcDbObjectId id = recordNamed(database.linetypeTableId(), definition.name);
  GcDbLinetypeTableRecord* record = nullptr;
  if (id.isNull()) {
    GcDbLinetypeTable* table = nullptr;
    if (database.getSymbolTable(table, GcDb::kForWrite) != Gcad::eOk) return {};
    record = new GcDbLinetypeTableRecord;
    const bool good = record->setName(definition.name.c_str()) == Gcad::eOk && table->add(id, record) == Gcad::eOk;
    ignore(table->close());
    if (!good) {
      delete record;
      return {};
    }
  } else if (gcdbOpenObject(record, id, GcDb::kForWrite) != Gcad::eOk) {
    return {};
  }
  double length = 0;
  ignore(record->setComments(definition.description.c_str()));
  ignore(record->setNumDashes(static_cast<int>(definition.dashes.size())));
  for (size_t i = 0; i < definition.dashes.size(); ++i) {
    ignore(record->setDashLengthAt(static_cast<int>(i), definition.dashes[i]));
    length += std::fabs(definition.dashes[i]);
  }
  ignore(record->setPatternLength(length));
  ignore(record->close());
  return id;
}

}  // namespace ed
