// -SCALELISTEDIT: the scales that the drawing offers for layouts, viewports and annotations.
#include "host/db/objects/standard.h"
#include "host/ed/command/families.h"
#include "host/ed/dictionaries.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

GcDbObjectId list(CommandInput& in) { return dictionaryNamed(in.database(), GC_T("ACAD_SCALELIST"), true); }

struct Listed {
  GcDbObjectId id;
  GcText name;
  double paper = 1, drawing = 1;
  bool isUnit = false;
};

std::vector<Listed> scalesOf(GcDbObjectId dictionary) {
  std::vector<Listed> scales;
  for (const GcDbDictionaryEntry& entry : entriesOf(dictionary)) {
    GcDbScale* scale = nullptr;
    if (gcdbOpenObject(scale, entry.id, GcDb::kForRead) != Gcad::eOk) continue;
    scales.push_back(
        {entry.id, GcText(view(scale->name())), scale->paperUnits(), scale->drawingUnits(), scale->isUnitScale()});
    ignore(scale->close());
  }
  return scales;
}

void tellScales(CommandInput& in) {
  in.tell("\n  Scale name          Paper units  Drawing units\n");
  for (const Listed& each : scalesOf(list(in))) {
    std::string name = gc::toUtf8(each.name);
    name.resize(std::max<size_t>(name.size(), 20), ' ');
    in.tell(("  " + name + gc::realText(each.paper) + " = " + gc::realText(each.drawing) + "\n").c_str());
  }
}

// "1:50" or "1=50".
bool parseRatio(GcView text, double& paper, double& drawing) {
  const size_t at = text.find_first_of(GC_T(":="));
  return at != GcView::npos && gc::parseReal(text.substr(0, at), paper) &&
         gc::parseReal(text.substr(at + 1), drawing) && paper > 0 && drawing > 0;
}

// The first of A0, A1 … that no scale has.
GcText freeKey(GcDbObjectId dictionary) {
  for (int i = 0;; ++i) {
    GcText key = gc::fromUtf8("A" + std::to_string(i));
    if (entryNamed(dictionary, key).isNull()) return key;
  }
}

Task<bool> addScale(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter name for new scale: "));
  if (name.text.empty()) co_return false;
  for (const Listed& each : scalesOf(list(in)))
    if (equalNoCase(each.name, name.text)) {
      in.tell("\nA scale of this name exists already.\n");
      co_return false;
    }
  double paper = 0, drawing = 0;
  while (paper == 0) {
    const Answer ratio = co_await in.ask(Ask(What::Line, "\nEnter scale ratio: "));
    if (ratio.text.empty()) co_return false;
    if (parseRatio(ratio.text, paper, drawing)) break;
    paper = 0;
    in.tell("\nA ratio of two positive numbers is needed, as 1:50 or 1=50.\n");
  }
  co_return !putEntry(list(in), freeKey(list(in)), new GcDbScale(name.text.c_str(), paper, drawing, paper == drawing))
      .isNull();
}

Task<bool> deleteScale(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter scale name to delete: "));
  for (const Listed& each : scalesOf(list(in))) {
    if (!equalNoCase(each.name, name.text)) continue;
    if (each.isUnit) {
      in.tell("\nThe scale 1:1 cannot be deleted.\n");
      co_return false;
    }
    eraseObject(each.id);
    co_return true;
  }
  in.tell("\nThe drawing has no scale of this name.\n");
  co_return false;
}

Task<bool> resetScales(CommandInput& in) {
  const Answer yes =
      co_await in.ask(Ask(What::Keyword, "\nReset scale list to defaults? [Yes/No] <No>: ").words("Yes No"));
  if (!yes.isKeyword("Yes")) co_return false;
  for (const Listed& each : scalesOf(list(in))) eraseObject(each.id);
  gcdbAddStandardScales(list(in));
  co_return true;
}

Task<bool> scaleListEdit(CommandInput& in) {
  for (;;) {
    const Answer option = co_await in.ask(
        Ask(What::Keyword, "\nEnter option [?/Add/Delete/Reset/Exit] <Add>: ").words("? Add Delete Reset Exit"));
    if (option.isKeyword("?")) {
      tellScales(in);
    } else if (option.isNone() || option.isKeyword("Add")) {
      static_cast<void>(co_await addScale(in));
    } else if (option.isKeyword("Delete")) {
      static_cast<void>(co_await deleteScale(in));
    } else if (option.isKeyword("Reset")) {
      static_cast<void>(co_await resetScales(in));
    } else {
      co_return option.isKeyword("Exit");
    }
  }
}

constexpr Command kCommands[] = {
    {"-SCALELISTEDIT", "SCALELISTEDIT", scaleListEdit},
};

}  // namespace

std::span<const Command> scaleListCommands() { return kCommands; }

}  // namespace ed
