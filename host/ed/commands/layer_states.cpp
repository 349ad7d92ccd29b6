#include "host/ed/commands/layer_states.h"

#include <fstream>

#include "host/ap/paths.h"
#include "host/ap/process.h"
#include "host/ap/profile.h"
#include "host/ed/layerdata.h"
#include "host/rx/file/file_view.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

struct Property {
  const char* word;
  int bit;
};
constexpr Property kProperties[] = {
    {"On", kStateOn},
    {"Frozen", kStateFrozen},
    {"Lock", kStateLocked},
    {"Plot", kStatePlot},
    {"Newvpfreeze", kStateNewViewport},
    {"Color", kStateColor},
    {"lineType", kStateLinetype},
    {"lineWeight", kStateLineWeight},
    {"plotStyle", kStatePlotStyle},
    {"TRansparency", kStateTransparency},
};

// Each word takes its property out of the state or puts it back in, until Enter.
Task<int> askProperties(CommandInput& in, int bits) {
  for (;;) {
    std::string prompt = "\nCurrent settings:";
    for (const Property& each : kProperties)
      if ((bits & each.bit) != 0) prompt += std::string(" ") + each.word;
    prompt +=
        "\nEnter property to change [On/Frozen/Lock/Plot/Newvpfreeze/Color/lineType/lineWeight/plotStyle/"
        "TRansparency]: ";
    const Answer answer =
        co_await in.ask(Ask(What::Keyword, prompt.c_str())
                            .words("On Frozen Lock Plot Newvpfreeze Color lineType lineWeight plotStyle TRansparency"));
    if (answer.kind != Answer::Kind::Keyword) co_return bits;
    for (const Property& each : kProperties)
      if (answer.isKeyword(each.word)) bits ^= each.bit;
  }
}

bool missing(CommandInput& in, const GcText& name) {
  if (hasLayerState(in.database(), name)) return false;
  in.tell(("\nCannot find layer state \"" + gc::toUtf8(name) + "\".\n").c_str());
  return true;
}

Task<bool> saveState(CommandInput& in) {
  const Answer nameAnswer = co_await in.ask(Ask(What::Line, "\nEnter new layer state name: "));
  const GcText& name = nameAnswer.text;
  if (name.empty()) co_return false;
  if (hasLayerState(in.database(), name)) {
    const Answer again =
        co_await in.ask(Ask(What::Keyword, "\nThat layer state exists. Replace it? [Yes/No] <N>: ").words("Yes No"));
    if (!again.isKeyword("Yes")) co_return false;
  }
  const int bits = co_await askProperties(in, kStateAll);
  co_return saveLayerState(in.database(), name, bits);
}

Task<bool> editState(CommandInput& in) {
  const Answer nameAnswer = co_await in.ask(Ask(What::Line, "\nEnter name of layer state to edit: "));
  const GcText& name = nameAnswer.text;
  if (missing(in, name)) co_return false;
  const int bits = co_await askProperties(in, layerStateBits(in.database(), name));
  co_return setLayerStateBits(in.database(), name, bits);
}

Task<bool> renameState(CommandInput& in) {
  const Answer fromAnswer = co_await in.ask(Ask(What::Line, "\nEnter name of layer state to rename: "));
  const GcText& from = fromAnswer.text;
  if (missing(in, from)) co_return false;
  const Answer toAnswer = co_await in.ask(Ask(What::Line, "\nEnter new layer state name: "));
  const GcText& to = toAnswer.text;
  if (renameLayerState(in.database(), from, to)) co_return true;
  in.tell("\nInvalid name, or a layer state of this name exists.\n");
  co_return false;
}

Task<bool> exportState(CommandInput& in) {
  const Answer nameAnswer = co_await in.ask(Ask(What::Line, "\nEnter name of layer state to export: "));
  const GcText& name = nameAnswer.text;
  if (missing(in, name)) co_return false;
  const Answer typed = co_await in.ask(Ask(What::Line, "\nEnter file name for layer state export: "));
  GcText file = typed.text;
  if (file.empty()) co_return false;
  if (ap::extensionOf(file).empty()) file += GC_T(".las");
  if (ap::isDryRun()) co_return true;
  std::ofstream out(gc::toUtf8(ap::absolutePath(file)), std::ios::binary);
  out << gc::toUtf8(layerStateText(in.database(), name));
  out.flush();
  if (!out.good()) in.tell("\nThe file cannot be written.\n");
  co_return out.good();
}

Task<bool> importStates(CommandInput& in) {
  const Answer nameAnswer = co_await in.ask(Ask(What::Line, "\nEnter file name for layer state import: "));
  const GcText& name = nameAnswer.text;
  const GcView beside = ap::directoryOf(in.editor().document().fileName());
  GcText found;
  for (const GCHAR* extension : {GC_T(""), GC_T(".las")})
    if (found.empty() && !name.empty()) found = ap::findSupportFile(name + extension, beside);
  gc::FileView file;
  if (found.empty() || !file.open(gc::toUtf8(found)).ok()) {
    in.tell("\nCannot find the file of layer states.\n");
    co_return false;
  }
  const std::vector<GcText> names = readLayerStates(in.database(), gc::fromUtf8(file.bytes()));
  for (const GcText& each : names) in.tell(("\nLayer state \"" + gc::toUtf8(each) + "\" imported.\n").c_str());
  if (names.empty()) in.tell("\nThe file holds no layer states.\n");
  co_return !names.empty();
}

}  // namespace

Task<bool> layerStateOption(CommandInput& in) {
  for (;;) {
    const Answer option =
        co_await in.ask(Ask(What::Keyword, "\nEnter an option [?/Save/Restore/Edit/Name/Delete/Import/EXport]: ")
                            .words("? Save Restore Edit Name Delete Import EXport"));
    if (option.isKeyword("Save")) {
      static_cast<void>(co_await saveState(in));
    } else if (option.isKeyword("Restore") || option.isKeyword("Delete")) {
      const bool restores = option.isKeyword("Restore");
      const Answer nameAnswer = co_await in.ask(Ask(What::Line, restores ? "\nEnter name of layer state to restore: "
                                                                         : "\nEnter name of layer state to delete: "));
      const GcText& name = nameAnswer.text;
      if (missing(in, name)) continue;
      static_cast<void>(restores ? restoreLayerState(in.database(), name) : eraseLayerState(in.database(), name));
    } else if (option.isKeyword("Edit")) {
      static_cast<void>(co_await editState(in));
    } else if (option.isKeyword("Name")) {
      static_cast<void>(co_await renameState(in));
    } else if (option.isKeyword("Import")) {
      static_cast<void>(co_await importStates(in));
    } else if (option.isKeyword("EXport")) {
      static_cast<void>(co_await exportState(in));
    } else if (option.isKeyword("?")) {
      for (const GcText& each : layerStates(in.database())) in.tell(("\n" + gc::toUtf8(each)).c_str());
      in.tell("\n");
    } else {
      co_return true;
    }
  }
}

}  // namespace ed
