// -LAYER and its kin.
#include <algorithm>
#include <cmath>

#include "host/ed/colors.h"
#include "host/ed/command/families.h"
#include "host/ed/commands/layer_states.h"
#include "host/ed/contents.h"
#include "host/ed/dictionaries.h"
#include "host/ed/layerdata.h"
#include "host/ed/patterns.h"
#include "host/ed/records.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

// Calls f for every layer whose name one of the patterns matches.
template <class F>
void forLayers(GcDbDatabase& database, GcView patterns, const F& f) {
  GcDbLayerTable* table = nullptr;
  if (database.getSymbolTable(table) != Gcad::eOk) return;
  const GcDbObjectIdArray records = table->records();
  ignore(table->close());
  for (const GcDbObjectId id : records) {
    GcDbLayerTableRecord* layer = nullptr;
    if (gcdbOpenObject(layer, id, GcDb::kForWrite) != Gcad::eOk) continue;
    if (matchesName(view(layer->getName()), patterns)) f(*layer);
    ignore(layer->close());
  }
}

Task<GcText> askNames(CommandInput& in, const char* prompt) {
  const Answer answer = co_await in.ask(Ask(What::Line, prompt));
  co_return answer.text;
}

void makeLayers(GcDbDatabase& database, GcView names) {
  for (size_t at = 0; at <= names.size();) {
    const size_t end = std::min(names.find(GC_T(','), at), names.size());
    if (end > at) static_cast<void>(needLayer(database, names.substr(at, end - at)));
    at = end + 1;
  }
}

GcDbObjectId layerOfEntity(GcDbObjectId id) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return {};
  const GcDbObjectId layer = entity->layerId();
  ignore(entity->close());
  return layer;
}

// Files keep only the weights of the format's list, hundredths of a millimetre; the nearest one counts.
int nearestLineWeight(double millimetres) {
  constexpr int kWeights[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                              53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
  return *std::min_element(std::begin(kWeights), std::end(kWeights), [&](int a, int b) {
    return std::fabs(a - millimetres * 100) < std::fabs(b - millimetres * 100);
  });
}

Task<bool> askNew(CommandInput& in) {
  makeLayers(in.database(), co_await askNames(in, "\nEnter name list for new layer(s): "));
  co_return true;
}

// Layers wait for nobody's word here: all count as reconciled.
Task<bool> reconcile(CommandInput& in) {
  static_cast<void>(co_await askNames(in, "\nEnter name list of layer(s) to reconcile: "));
  co_return true;
}

// Thawed when it is made current by its name; a frozen layer cannot be.
bool setCurrent(CommandInput& in, GcView name, bool make) {
  GcDbDatabase& database = in.database();
  const GcDbObjectId id = make ? needLayer(database, name) : recordNamed(database.layerTableId(), name);
  if (id.isNull()) {
    in.tell(make ? "\nInvalid layer name.\n" : ("\nCannot find layer \"" + gc::toUtf8(name) + "\".\n").c_str());
    return false;
  }
  bool frozen = false;
  forEach<GcDbLayerTableRecord>({id}, [&](GcDbLayerTableRecord& layer) {
    frozen = layer.isFrozen() && !make;
    if (!make) return;
    ignore(layer.setIsFrozen(false));
    ignore(layer.setIsOff(false));
  });
  if (frozen) in.tell("\nCannot set to a frozen layer.\n");
  return !frozen && database.setClayer(id) == Gcad::eOk;
}

// By name, or that of an object after Enter.
Task<bool> askCurrent(CommandInput& in, bool make) {
  GcText name = co_await askNames(in, make ? "\nEnter name for new layer (becomes the current layer): "
                                           : "\nEnter layer name to make current or <select object>: ");
  if (name.empty() && !make) {
    const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect object: "));
    if (picked.kind == Answer::Kind::Entity) name = nameOfRecord(layerOfEntity(picked.entity));
  }
  co_return !name.empty() && setCurrent(in, name, make);
}

// The names, or the current layer's for Enter.
Task<GcText> askLayers(CommandInput& in, std::string purpose) {
  const GcText current = nameOfRecord(in.database().clayer());
  const std::string prompt = "\nEnter name list of layer(s) " + purpose + " <" + gc::toUtf8(current) + ">: ";
  GcText names = co_await askNames(in, prompt.c_str());
  co_return names.empty() ? current : names;
}

// A true colour's three numbers, or a colour of a book: "book$colour". The books themselves are their makers'; a colour
// of one is known here only by what the drawing already has of it.
Task<GcText> askColorText(CommandInput& in) {
  const Answer typed = co_await in.ask(Ask(What::Word, "\nNew color [Truecolor/COlorbook]: "));
  GcText text = typed.text;
  if (!text.empty() && text[0] == GC_T('_')) text.erase(0, 1);
  if (equalNoCase(text, GC_T("T")) || equalNoCase(text, GC_T("TRUECOLOR"))) {
    const Answer numbers = co_await in.ask(Ask(What::Word, "\nRed,Green,Blue: "));
    co_return numbers.text;
  }
  if (equalNoCase(text, GC_T("CO")) || equalNoCase(text, GC_T("COLORBOOK"))) {
    static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter Color Book name: ")));
    static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter color name: ")));
    in.tell("\nNo color books are installed; give the color as a true color.\n");
    co_return GcText();
  }
  co_return text;
}

Task<bool> askColor(CommandInput& in) {
  const GcText text = co_await askColorText(in);
  GcCmColor color;
  const GcView plain = !text.empty() && text[0] == GC_T('-') ? GcView(text).substr(1) : GcView(text);
  const bool good = parseColor(plain, color) && !color.isByBlock() && !color.isByLayer();
  const GcText names = co_await askLayers(in, "for color");
  if (!good) {
    in.tell("\nInvalid color: a number from 1 to 255, a name, or red,green,blue.\n");
    co_return false;
  }
  const bool off = plain.size() != text.size();
  forLayers(in.database(), names, [&](GcDbLayerTableRecord& layer) {
    ignore(layer.setColor(color));
    if (off) ignore(layer.setIsOff(true));
  });
  co_return true;
}

Task<bool> askLinetype(CommandInput& in) {
  const GcText type = (co_await in.ask(Ask(What::Line, "\nEnter loaded linetype name <Continuous>: "))).text;
  const GcText names = co_await askLayers(in, "for linetype");
  const GcDbObjectId id =
      recordNamed(in.database().linetypeTableId(), type.empty() ? GcView(GC_T("Continuous")) : GcView(type));
  if (id.isNull()) {
    in.tell(("\nLinetype \"" + gc::toUtf8(type) + "\" not found. Use -LINETYPE to load it.\n").c_str());
    co_return false;
  }
  forLayers(in.database(), names, [&](GcDbLayerTableRecord& layer) { ignore(layer.setLinetypeObjectId(id)); });
  co_return true;
}

Task<bool> askWeight(CommandInput& in) {
  const Answer weight = co_await in.ask(Ask(What::Real, "\nEnter lineweight (0.0mm - 2.11mm): ").words("Default"));
  const GcText names = co_await askLayers(in, "for lineweight");
  const int hundredths =
      weight.kind == Answer::Kind::Number ? nearestLineWeight(weight.number) : static_cast<int>(GcDb::kLnWtByLwDefault);
  forLayers(in.database(), names, [&](GcDbLayerTableRecord& layer) {
    ignore(layer.setLineWeight(static_cast<GcDb::LineWeight>(hundredths)));
  });
  co_return true;
}

// Calls f with the id of every layer of the names.
template <class F>
void forLayerIds(GcDbDatabase& database, const GcText& names, const F& f) {
  for (const GcDbObjectId id : recordsOf(database.layerTableId()))
    if (matchesName(nameOfRecord(id), names)) f(id);
}

Task<bool> askTransparency(CommandInput& in) {
  constexpr int kMost = 90;
  const Answer value = co_await in.ask(Ask(What::Integer, "\nEnter transparency value (0-90): "));
  const GcText names = co_await askLayers(in, "for transparency");
  const int percent = static_cast<int>(value.number);
  if (percent < 0 || percent > kMost) {
    in.tell("\nTransparency goes from 0 to 90.\n");
    co_return false;
  }
  forLayerIds(in.database(), names, [&](GcDbObjectId id) { static_cast<void>(setLayerTransparency(id, percent)); });
  co_return true;
}

Task<bool> askDescription(CommandInput& in) {
  const GcText text = (co_await in.ask(Ask(What::Line, "\nEnter layer description: "))).text;
  const GcText names = co_await askLayers(in, "for the description");
  forLayerIds(in.database(), names, [&](GcDbObjectId id) { static_cast<void>(setLayerDescription(id, text)); });
  co_return true;
}

Task<bool> askMaterial(CommandInput& in) {
  const GcText name = (co_await in.ask(Ask(What::Line, "\nEnter material name <Global>: "))).text;
  const GcText names = co_await askLayers(in, "for material");
  const GcDbObjectId materials = dictionaryNamed(in.database(), GC_T("ACAD_MATERIAL"));
  const GcDbObjectId id =
      materials.isNull() ? materials : entryNamed(materials, name.empty() ? GcView(GC_T("Global")) : GcView(name));
  if (id.isNull()) {
    in.tell("\nThe drawing has no material of this name.\n");
    co_return false;
  }
  forLayerIds(in.database(), names,
              [&](GcDbObjectId layer) { static_cast<void>(setGroups(layer, {GcDbGroup::ofId(347, id)})); });
  co_return true;
}

Task<bool> askPlotting(CommandInput& in) {
  const Answer plots =
      co_await in.ask(Ask(What::Keyword, "\nEnter a plotting preference [Plot/No plot] <Plot>: ").words("Plot No"));
  const GcText names = co_await askLayers(in, "for this plot preference");
  forLayerIds(in.database(), names, [&](GcDbObjectId id) {
    static_cast<void>(setGroups(id, {GcDbGroup::ofInt(290, plots.isKeyword("No") ? 0 : 1)}));
  });
  co_return true;
}

Task<bool> askRename(CommandInput& in) {
  const GcText from = co_await askNames(in, "\nEnter old layer name: ");
  const GcDbObjectId id = recordNamed(in.database().layerTableId(), from);
  if (id.isNull()) {
    in.tell(("\nCannot find layer \"" + gc::toUtf8(from) + "\".\n").c_str());
    co_return false;
  }
  const GcText to = co_await askNames(in, "\nEnter new layer name: ");
  bool good = false;
  forEach<GcDbLayerTableRecord>({id},
                                [&](GcDbLayerTableRecord& layer) { good = layer.setName(to.c_str()) == Gcad::eOk; });
  if (!good) in.tell("\nInvalid name, or a layer of this name exists.\n");
  co_return good;
}

std::string describeLayer(const GcDbLayerTableRecord& layer) {
  std::string line = "\n\"" + gc::toUtf8(view(layer.getName())) + "\"  color " + gc::toUtf8(colorText(layer.color())) +
                     "  linetype " + gc::toUtf8(nameOfRecord(layer.linetypeObjectId()));
  if (layer.isOff()) line += "  off";
  if (layer.isFrozen()) line += "  frozen";
  if (layer.isLocked()) line += "  locked";
  if (!layer.isPlottable()) line += "  not plotted";
  return line;
}

Task<bool> listLayers(CommandInput& in) {
  const GcText names = co_await askNames(in, "\nEnter layer name(s) to list <*>: ");
  const GcText pattern = names.empty() ? GcText(GC_T("*")) : names;
  std::vector<std::string> lines;
  forLayers(in.database(), pattern, [&](GcDbLayerTableRecord& layer) { lines.push_back(describeLayer(layer)); });
  for (const std::string& line : lines) in.tell(line.c_str());
  in.tell("\n");
  co_return true;
}

// ---- ON, OFF, Freeze, Thaw, LOck, Unlock

using Change = void (*)(GcDbLayerTableRecord& layer);
struct Switch {
  const char* word;
  const char* purpose;
  Change change;
};
constexpr Switch kSwitches[] = {
    {"ON", "to turn on", [](GcDbLayerTableRecord& l) { ignore(l.setIsOff(false)); }},
    {"OFF", "to turn off", [](GcDbLayerTableRecord& l) { ignore(l.setIsOff(true)); }},
    {"Freeze", "to freeze", [](GcDbLayerTableRecord& l) { ignore(l.setIsFrozen(true)); }},
    {"Thaw", "to thaw", [](GcDbLayerTableRecord& l) { ignore(l.setIsFrozen(false)); }},
    {"LOck", "to lock", [](GcDbLayerTableRecord& l) { ignore(l.setIsLocked(true)); }},
    {"Unlock", "to unlock", [](GcDbLayerTableRecord& l) { ignore(l.setIsLocked(false)); }},
};

// The current layer is switched off only when asked twice, and never frozen.
Task<bool> switchLayers(CommandInput& in, const Switch& which) {
  const GcText names = co_await askLayers(in, which.purpose);
  const GcDbObjectId current = in.database().clayer();
  const GcText currentName = nameOfRecord(current);
  const std::string_view word = which.word;
  bool spares = false;
  if (matchesName(currentName, names) && word == "Freeze") {
    in.tell(("\nCannot freeze layer \"" + gc::toUtf8(currentName) + "\". It is the CURRENT layer.\n").c_str());
    spares = true;
  } else if (matchesName(currentName, names) && word == "OFF") {
    const std::string question =
        "\nReally want layer \"" + gc::toUtf8(currentName) + "\" (the CURRENT layer) off? [Yes/No] <N>: ";
    const Answer sure = co_await in.ask(Ask(What::Keyword, question.c_str()).words("Yes No"));
    spares = !sure.isKeyword("Yes");
  }
  bool any = false;
  forLayers(in.database(), names, [&](GcDbLayerTableRecord& layer) {
    any = true;
    if (!spares || layer.objectId() != current) which.change(layer);
  });
  if (!any) in.tell("\nNo matching layer names found.\n");
  co_return any;
}

// ---- the command

struct Option {
  const char* word;
  Task<bool> (*body)(CommandInput&);
};
constexpr Option kOptions[] = {
    {"?", listLayers},
    {"Make", [](CommandInput& in) { return askCurrent(in, true); }},
    {"Set", [](CommandInput& in) { return askCurrent(in, false); }},
    {"New", askNew},
    {"Rename", askRename},
    {"Color", askColor},
    {"Ltype", askLinetype},
    {"LWeight", askWeight},
    {"TRansparency", askTransparency},
    {"MATerial", askMaterial},
    {"Plot", askPlotting},
    {"stAte", layerStateOption},
    {"Description", askDescription},
    {"rEconcile", reconcile},
};

Task<bool> layer(CommandInput& in) {
  constexpr const char* kPrompt =
      "\nEnter an option [?/Make/Set/New/Rename/ON/OFF/Color/Ltype/LWeight/TRansparency/MATerial/Plot/Freeze/Thaw/LOck/"
      "Unlock/stAte/Description/rEconcile]: ";
  constexpr const char* kWords =
      "? Make Set New Rename ON OFF Color Ltype LWeight TRansparency MATerial Plot Freeze Thaw LOck Unlock stAte "
      "Description rEconcile";
  for (;;) {
    const Answer answer = co_await in.ask(Ask(What::Keyword, kPrompt).words(kWords));
    if (answer.kind != Answer::Kind::Keyword) break;
    for (const Option& each : kOptions)
      if (answer.isKeyword(each.word)) static_cast<void>(co_await each.body(in));
    for (const Switch& each : kSwitches)
      if (answer.isKeyword(each.word)) static_cast<void>(co_await switchLayers(in, each));
  }
  co_return true;
}

constexpr Command kCommands[] = {
    {"-LAYER", "LAYER -LA LA", layer},
};

}  // namespace

std::span<const Command> layerCommands() { return kCommands; }

}  // namespace ed
