// -LAYER and its kin.
#include "host/ed/colors.h"
#include "host/ed/command/families.h"
#include "host/ed/contents.h"
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

bool setCurrent(CommandInput& in, GcView name, bool make) {
  GcDbDatabase& database = in.database();
  const GcDbObjectId id = make ? needLayer(database, name) : recordNamed(database.layerTableId(), name);
  if (database.setClayer(id) == Gcad::eOk) return true;
  in.tell("\nCannot find layer.\n");
  return false;
}

GcText orCurrent(CommandInput& in, GcText names) {
  return names.empty() ? nameOfRecord(in.database().clayer()) : names;
}

Task<bool> askColor(CommandInput& in) {
  GcText text = (co_await in.ask(Ask(What::Word, "\nNew color [Truecolor/COlorbook]: "))).text;
  if (equalNoCase(text, GC_T("T")) || equalNoCase(text, GC_T("TRUECOLOR")))
    text = (co_await in.ask(Ask(What::Word, "\nRed,Green,Blue: "))).text;
  GcCmColor color;
  const GcView plain = !text.empty() && text[0] == GC_T('-') ? GcView(text).substr(1) : GcView(text);
  if (!parseColor(plain, color)) co_return false;
  const GcText names = orCurrent(in, co_await askNames(in, "\nEnter name list of layer(s): "));
  const bool off = plain.size() != text.size();
  forLayers(in.database(), names, [&](GcDbLayerTableRecord& layer) {
    ignore(layer.setColor(color));
    ignore(layer.setIsOff(off));
  });
  co_return true;
}

Task<bool> askLinetype(CommandInput& in) {
  const GcText type = (co_await in.ask(Ask(What::Word, "\nEnter loaded linetype name: "))).text;
  const GcText names = orCurrent(in, co_await askNames(in, "\nEnter name list of layer(s): "));
  const GcDbObjectId id =
      recordNamed(in.database().linetypeTableId(), type.empty() ? GcView(GC_T("Continuous")) : GcView(type));
  if (id.isNull()) {
    in.tell("\nLinetype not found.\n");
    co_return false;
  }
  forLayers(in.database(), names, [&](GcDbLayerTableRecord& layer) { ignore(layer.setLinetypeObjectId(id)); });
  co_return true;
}

Task<bool> askWeight(CommandInput& in) {
  const Answer weight = co_await in.ask(Ask(What::Real, "\nEnter lineweight (0.0mm - 2.11mm): ").words("Default"));
  const GcText names = orCurrent(in, co_await askNames(in, "\nEnter name list of layer(s): "));
  const int hundredths = weight.kind == Answer::Kind::Number ? static_cast<int>(std::lround(weight.number * 100))
                                                             : static_cast<int>(GcDb::kLnWtByLwDefault);
  forLayers(in.database(), names, [&](GcDbLayerTableRecord& layer) {
    ignore(layer.setLineWeight(static_cast<GcDb::LineWeight>(hundredths)));
  });
  co_return true;
}

Task<bool> askPlotting(CommandInput& in) {
  const Answer plots =
      co_await in.ask(Ask(What::Keyword, "\nEnter a plotting preference [Plot/No plot] <Plot>: ").words("Plot No"));
  const GcText names = orCurrent(in, co_await askNames(in, "\nEnter layer name(s) for this plot preference: "));
  for (const GcDbObjectId id : recordsOf(in.database().layerTableId()))
    if (matchesName(nameOfRecord(id), names)) setGroups(id, {GcDbGroup::ofInt(290, plots.isKeyword("No") ? 0 : 1)});
  co_return true;
}

Task<bool> listLayers(CommandInput& in) {
  const GcText names = co_await askNames(in, "\nEnter layer name(s) to list <*>: ");
  const GcText pattern = names.empty() ? GcText(GC_T("*")) : names;
  forLayers(in.database(), pattern, [&](GcDbLayerTableRecord& layer) {
    std::string line =
        "\n\"" + gc::toUtf8(view(layer.getName())) + "\"  color " + std::to_string(layer.color().colorIndex());
    if (layer.isOff()) line += "  off";
    if (layer.isFrozen()) line += "  frozen";
    if (layer.isLocked()) line += "  locked";
    in.tell(line.c_str());
  });
  in.tell("\n");
  co_return true;
}

using Change = void (*)(GcDbLayerTableRecord& layer);
struct Switch {
  const char* word;
  const char* prompt;
  Change change;
};
constexpr Switch kSwitches[] = {
    {"ON", "\nEnter name list of layer(s) to turn on: ", [](GcDbLayerTableRecord& l) { ignore(l.setIsOff(false)); }},
    {"OFF", "\nEnter name list of layer(s) to turn off: ", [](GcDbLayerTableRecord& l) { ignore(l.setIsOff(true)); }},
    {"Freeze",
     "\nEnter name list of layer(s) to freeze: ", [](GcDbLayerTableRecord& l) { ignore(l.setIsFrozen(true)); }},
    {"Thaw", "\nEnter name list of layer(s) to thaw: ", [](GcDbLayerTableRecord& l) { ignore(l.setIsFrozen(false)); }},
    {"LOck", "\nEnter name list of layer(s) to lock: ", [](GcDbLayerTableRecord& l) { ignore(l.setIsLocked(true)); }},
    {"Unlock",
     "\nEnter name list of layer(s) to unlock: ", [](GcDbLayerTableRecord& l) { ignore(l.setIsLocked(false)); }},
};

Task<bool> layer(CommandInput& in) {
  constexpr const char* kPrompt =
      "\nEnter an option [?/Make/Set/New/Rename/ON/OFF/Color/Ltype/LWeight/Plot/Freeze/Thaw/LOck/Unlock/Description]: ";
  constexpr const char* kWords =
      "? Make Set New Rename ON OFF Color Ltype LWeight MATerial Plot Freeze Thaw LOck Unlock stAte Description";
  for (;;) {
    const Answer option = co_await in.ask(Ask(What::Keyword, kPrompt).words(kWords));
    if (option.kind != Answer::Kind::Keyword) break;
    if (option.isKeyword("Make") || option.isKeyword("Set")) {
      const GcText name = co_await askNames(in, "\nEnter layer name: ");
      if (!name.empty()) setCurrent(in, name, option.isKeyword("Make"));
    } else if (option.isKeyword("New")) {
      makeLayers(in.database(), co_await askNames(in, "\nEnter name list for new layer(s): "));
    } else if (option.isKeyword("Rename")) {
      const GcText from = co_await askNames(in, "\nEnter old layer name: ");
      const GcText to = co_await askNames(in, "\nEnter new layer name: ");
      forLayers(in.database(), from, [&](GcDbLayerTableRecord& l) { ignore(l.setName(to.c_str())); });
    } else if (option.isKeyword("Color")) {
      static_cast<void>(co_await askColor(in));
    } else if (option.isKeyword("Ltype")) {
      static_cast<void>(co_await askLinetype(in));
    } else if (option.isKeyword("LWeight")) {
      static_cast<void>(co_await askWeight(in));
    } else if (option.isKeyword("Plot")) {
      static_cast<void>(co_await askPlotting(in));
    } else if (option.isKeyword("?")) {
      static_cast<void>(co_await listLayers(in));
    } else if (option.isKeyword("Description") || option.isKeyword("MATerial")) {
      static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter value: ")));
      static_cast<void>(co_await askNames(in, "\nEnter layer name(s): "));
      in.tell("\nDescriptions and materials of layers are not kept.\n");
    }
    for (const Switch& each : kSwitches) {
      if (!option.isKeyword(each.word)) continue;
      const GcText names = orCurrent(in, co_await askNames(in, each.prompt));
      forLayers(in.database(), names, [&](GcDbLayerTableRecord& l) { each.change(l); });
    }
  }
  co_return true;
}

constexpr Command kCommands[] = {
    {"-LAYER", "LAYER -LA LA", layer},
};

}  // namespace

std::span<const Command> layerCommands() { return kCommands; }

}  // namespace ed
