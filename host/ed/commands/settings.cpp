// Settings that have commands of their own: grid, snap, limits, units and the like; commands taken away and given back.
#include <algorithm>

#include "host/ed/command/families.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

bool put(CommandInput& in, const GCHAR* name, const VariableValue& value) {
  return setVariable(in.editor(), name, value) == VariableStatus::Done;
}

// ---- ON or OFF

Task<bool> askSwitch(CommandInput& in, const char* prompt, const GCHAR* name) {
  const Answer answer = co_await in.ask(Ask(What::Keyword, prompt).words("ON OFF"));
  co_return answer.kind != Answer::Kind::Keyword || put(in, name, VariableValue::of(answer.isKeyword("ON") ? 1 : 0));
}

Task<bool> ortho(CommandInput& in) { co_return co_await askSwitch(in, "\nEnter mode [ON/OFF]: ", GC_T("ORTHOMODE")); }
Task<bool> fillCommand(CommandInput& in) {
  co_return co_await askSwitch(in, "\nEnter mode [ON/OFF]: ", GC_T("FILLMODE"));
}
Task<bool> automaticRegeneration(CommandInput& in) {
  co_return co_await askSwitch(in, "\nEnter mode [ON/OFF]: ", GC_T("REGENMODE"));
}

// ---- GRID, SNAP

struct Raster {
  const char* prompt;
  const GCHAR* mode;
  const GCHAR* unit;
};

Task<bool> askRaster(CommandInput& in, Raster raster) {
  const Answer answer = co_await in.ask(Ask(What::Distance, raster.prompt)
                                            .words("ON OFF Aspect Rotate Style Type Snap Major aDaptive Limits")
                                            .positive());
  if (answer.isKeyword("ON") || answer.isKeyword("OFF"))
    co_return put(in, raster.mode, VariableValue::of(answer.isKeyword("ON") ? 1 : 0));
  if (answer.isKeyword("Style") || answer.isKeyword("Type")) {
    const Answer style = co_await in.ask(Ask(What::Keyword, "\nEnter snap grid style [Standard/Isometric] <S>: ")
                                             .words("Standard Isometric Grid Polar"));
    if (answer.isKeyword("Type"))
      co_return put(in, GC_T("SNAPTYPE"), VariableValue::of(style.isKeyword("Polar") ? 1 : 0));
    co_return put(in, GC_T("SNAPSTYL"), VariableValue::of(style.isKeyword("Isometric") ? 1 : 0));
  }
  double x = answer.number, y = answer.number;
  if (answer.isKeyword("Aspect")) {
    x = (co_await in.ask(Ask(What::Distance, "\nSpecify horizontal spacing: ").positive().needed())).number;
    y = (co_await in.ask(Ask(What::Distance, "\nSpecify vertical spacing: ").positive().needed())).number;
  } else if (answer.kind != Answer::Kind::Number) {
    co_return answer.isNone();
  }
  co_return put(in, raster.unit, VariableValue::ofPoint2d(x, y)) && put(in, raster.mode, VariableValue::of(1));
}

Task<bool> snap(CommandInput& in) {
  co_return co_await askRaster(
      in, {"\nSpecify snap spacing or [ON/OFF/Aspect/Style/Type]: ", GC_T("SNAPMODE"), GC_T("SNAPUNIT")});
}
Task<bool> grid(CommandInput& in) {
  co_return co_await askRaster(in, {"\nSpecify grid spacing(X) or [ON/OFF/Snap/Major/aDaptive/Limits/Follow/Aspect]: ",
                                    GC_T("GRIDMODE"), GC_T("GRIDUNIT")});
}

// ---- -OSNAP

struct SnapName {
  GcView name;  // as far as it must be typed
  int bit;      // of OSMODE
};
constexpr SnapName kSnapNames[] = {
    {GC_T("END"), 1},    {GC_T("MID"), 2},    {GC_T("CEN"), 4},    {GC_T("NOD"), 8},    {GC_T("QUA"), 16},
    {GC_T("INT"), 32},   {GC_T("INS"), 64},   {GC_T("PER"), 128},  {GC_T("TAN"), 256},  {GC_T("NEA"), 512},
    {GC_T("QUI"), 1024}, {GC_T("APP"), 2048}, {GC_T("EXT"), 4096}, {GC_T("PAR"), 8192},
};

// "end,mid": the bits together; false for a word that names no mode.
bool parseSnapModes(GcView list, int& bits) {
  while (!list.empty()) {
    const size_t end = std::min(list.find(GC_T(',')), list.size());
    GcText word = upperText(list.substr(0, end));
    word.erase(0, std::min(word.find_first_not_of(GC_T("_ ")), word.size()));
    const auto* found = std::find_if(std::begin(kSnapNames), std::end(kSnapNames),
                                     [&](const SnapName& each) { return word.substr(0, 3) == each.name; });
    if (found == std::end(kSnapNames)) return false;
    bits |= found->bit;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return true;
}

Task<bool> objectSnap(CommandInput& in) {
  const Answer modes = co_await in.ask(Ask(What::Word, "\nEnter list of object snap modes: "));
  const GcView typed = !modes.text.empty() && modes.text[0] == GC_T('_') ? GcView(modes.text).substr(1) : modes.text;
  if (typed.empty() || equalNoCase(typed, GC_T("OFF")) || equalNoCase(typed.substr(0, 3), GC_T("NON")))
    co_return put(in, GC_T("OSMODE"), VariableValue::of(0));
  int bits = 0;
  if (!parseSnapModes(typed, bits)) {
    in.tell("\nInvalid object snap mode.\n");
    co_return false;
  }
  co_return put(in, GC_T("OSMODE"), VariableValue::of(bits));
}

// ---- LIMITS, BASE, ELEV

Task<bool> limits(CommandInput& in) {
  const Answer low =
      co_await in.ask(Ask(What::Point, "\nSpecify lower left corner or [ON/OFF] <0.0000,0.0000>: ").words("ON OFF"));
  if (low.kind == Answer::Kind::Keyword)
    co_return put(in, GC_T("LIMCHECK"), VariableValue::of(low.isKeyword("ON") ? 1 : 0));
  if (low.isPoint() && !put(in, GC_T("LIMMIN"), VariableValue::ofPoint2d(low.point.x, low.point.y))) co_return false;
  const Answer high = co_await in.ask(Ask(What::Point, "\nSpecify upper right corner: "));
  co_return !high.isPoint() || put(in, GC_T("LIMMAX"), VariableValue::ofPoint2d(high.point.x, high.point.y));
}

Task<bool> base(CommandInput& in) {
  const Answer at = co_await in.ask(Ask(What::Point, "\nEnter base point <0.0000,0.0000,0.0000>: "));
  co_return !at.isPoint() || put(in, GC_T("INSBASE"), VariableValue::ofPoint(at.point.x, at.point.y, at.point.z));
}

Task<bool> elevation(CommandInput& in) {
  const Answer height = co_await in.ask(Ask(What::Distance, "\nSpecify new default elevation: "));
  const Answer thick = co_await in.ask(Ask(What::Distance, "\nSpecify new default thickness: "));
  const bool good = height.kind != Answer::Kind::Number || put(in, GC_T("ELEVATION"), VariableValue::of(height.number));
  co_return good && (thick.kind != Answer::Kind::Number || put(in, GC_T("THICKNESS"), VariableValue::of(thick.number)));
}

// ---- -UNITS

struct UnitQuestion {
  const char* prompt;
  const GCHAR* name;
  int offset;  // of the typed number against the variable
};

Task<bool> units(CommandInput& in) {
  constexpr UnitQuestion kQuestions[] = {
      {"\nEnter choice of length units, 1 scientific to 5 fractional: ", GC_T("LUNITS"), 0},
      {"\nEnter number of digits to right of decimal point (0 to 8): ", GC_T("LUPREC"), 0},
      {"\nEnter choice of angle units, 1 decimal degrees to 5 surveyor's units: ", GC_T("AUNITS"), -1},
      {"\nEnter number of fractional places for display of angles (0 to 8): ", GC_T("AUPREC"), 0},
  };
  for (const UnitQuestion& question : kQuestions) {
    const Answer answer = co_await in.ask(Ask(What::Integer, question.prompt));
    if (answer.kind != Answer::Kind::Number) continue;
    if (!put(in, question.name, VariableValue::of(static_cast<int32_t>(answer.number) + question.offset))) {
      in.tell("\nThe value is out of range.\n");
      co_return false;
    }
  }
  const Answer zero = co_await in.ask(Ask(What::Angle, "\nEnter direction for angle 0: "));
  if (zero.kind == Answer::Kind::Number && !put(in, GC_T("ANGBASE"), VariableValue::of(zero.number))) co_return false;
  const Answer clockwise =
      co_await in.ask(Ask(What::Keyword, "\nMeasure angles clockwise? [Yes/No] <N>: ").words("Yes No"));
  co_return clockwise.kind != Answer::Kind::Keyword ||
      put(in, GC_T("ANGDIR"), VariableValue::of(clockwise.isKeyword("Yes") ? 1 : 0));
}

// ---- -LWEIGHT

Task<bool> lineWeight(CommandInput& in) {
  const Answer weight = co_await in.ask(
      Ask(What::Real, "\nEnter default lineweight for new objects or [?]: ").words("ByLayer ByBlock Default ?"));
  if (weight.isNone() || weight.isKeyword("?")) co_return true;
  const int hundredths = weight.isKeyword("ByLayer")   ? -1
                         : weight.isKeyword("ByBlock") ? -2
                         : weight.isKeyword("Default") ? -3
                                                       : static_cast<int>(std::lround(weight.number * 100));
  const bool good = put(in, GC_T("CELWEIGHT"), VariableValue::of(hundredths));
  if (!good) in.tell("\nLineweights are those of the format's list, 0.00 to 2.11 mm.\n");
  co_return good;
}

// Circles are drawn exactly; there is nothing to set.
Task<bool> viewResolution(CommandInput& in) {
  const Answer fast = co_await in.ask(Ask(What::Keyword, "\nDo you want fast zooms? [Yes/No] <Y>: ").words("Yes No"));
  if (!fast.isKeyword("No"))
    static_cast<void>(co_await in.ask(Ask(What::Integer, "\nEnter circle zoom percent (1-20000) <1000>: ")));
  co_return true;
}

// ---- UNDEFINE, REDEFINE

Task<bool> undefine(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Word, "\nEnter command name: "));
  const Command* command = findCommand(name.text);
  if (command == nullptr) {
    in.tell("\nUnknown command name.\n");
    co_return false;
  }
  in.editor().undefinedCommands.push_back(gc::fromUtf8(command->name));
  co_return true;
}

Task<bool> redefine(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Word, "\nEnter command name: "));
  const Command* command = findCommand(name.text);
  co_return command != nullptr&& std::erase(in.editor().undefinedCommands, gc::fromUtf8(command->name)) > 0;
}

constexpr Command kCommands[] = {
    {"ORTHO", "", ortho},
    {"FILL", "", fillCommand},
    {"REGENAUTO", "", automaticRegeneration},
    {"SNAP", "SN", snap},
    {"GRID", "", grid},
    {"-OSNAP", "OSNAP OS -OS", objectSnap},
    {"LIMITS", "", limits},
    {"BASE", "", base},
    {"ELEV", "", elevation},
    {"-UNITS", "UNITS UN -UN", units},
    {"-LWEIGHT", "LWEIGHT LW", lineWeight},
    {"VIEWRES", "", viewResolution},
    {"UNDEFINE", "", undefine},
    {"REDEFINE", "", redefine},
};

}  // namespace

std::span<const Command> settingCommands() { return kCommands; }

}  // namespace ed
