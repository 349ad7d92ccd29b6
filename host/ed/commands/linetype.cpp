// -LINETYPE: loaded from files of definitions or the usual ones, set, made.
#include "host/ap/paths.h"
#include "host/ap/profile.h"
#include "host/ed/command/families.h"
#include "host/ed/linetypes.h"
#include "host/ed/patterns.h"
#include "host/ed/records.h"
#include "host/rx/file/file_view.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;
using Definitions = std::vector<LinetypeDefinition>;

// The file's where there is one on the support path; the usual ones for names such files go by elsewhere.
Definitions definitionsOf(CommandInput& in, const GcText& fileName) {
  const GcView beside = ap::directoryOf(in.editor().document().fileName());
  GcText found;
  for (const GCHAR* extension : {GC_T(""), GC_T(".lin")})
    if (found.empty() && !fileName.empty()) found = ap::findSupportFile(fileName + extension, beside);
  gc::FileView file;
  if (!found.empty() && file.open(gc::toUtf8(found)).ok()) return parseLinetypes(gc::fromUtf8(file.bytes()));
  const bool iso = upperText(fileName).find(GC_T("ISO")) != GcText::npos;
  return usualLinetypes(iso || (fileName.empty() && integerVariable(in.editor(), "MEASUREMENT") != 0));
}

Task<bool> load(CommandInput& in) {
  const Answer names = co_await in.ask(Ask(What::Line, "\nEnter linetype(s) to load: "));
  const Answer file = co_await in.ask(Ask(What::Line, "\nEnter name of linetype file to search: "));
  bool any = false;
  for (const LinetypeDefinition& definition : definitionsOf(in, file.text)) {
    if (!matchesName(definition.name, names.text)) continue;
    if (!recordNamed(in.database().linetypeTableId(), definition.name).isNull()) {
      Ask again(What::Keyword, "");
      again.prompt = GC_T("\nLinetype \"") + definition.name + GC_T("\" is already loaded. Reload it? <Y> ");
      any = true;
      if ((co_await in.ask(again.words("Yes No"))).isKeyword("No")) continue;
    }
    GcText trouble;
    if (putLinetype(in.database(), definition, trouble).isNull()) {
      in.tell(("\nBad definition of linetype \"" + gc::toUtf8(definition.name) + "\".\n").c_str());
      continue;
    }
    any = true;
    in.tell(("\nLinetype \"" + gc::toUtf8(definition.name) + "\" loaded.\n").c_str());
    if (!trouble.empty()) in.tell(("\nLeft out of its pattern: " + gc::toUtf8(trouble) + "\n").c_str());
  }
  if (!any) in.tell("\nNo matching linetypes found.\n");
  co_return any;
}

// The names and descriptions of a file.
Task<bool> list(CommandInput& in) {
  const Answer file = co_await in.ask(Ask(What::Line, "\nEnter name of linetype file to list: "));
  for (const LinetypeDefinition& definition : definitionsOf(in, file.text))
    in.tell(("\n" + gc::toUtf8(definition.name) + "  " + gc::toUtf8(definition.description)).c_str());
  in.tell("\n");
  co_return true;
}

Task<bool> set(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nSpecify linetype name or [?] <ByLayer>: "));
  if (name.text.empty()) co_return true;
  // A name that is not loaded yet may be one of the usual ones.
  if (recordNamed(in.database().linetypeTableId(), name.text).isNull())
    for (const LinetypeDefinition& usual : usualLinetypes(integerVariable(in.editor(), "MEASUREMENT") != 0))
      if (GcText trouble; equalNoCase(usual.name, name.text)) putLinetype(in.database(), usual, trouble);
  const bool good =
      setVariable(in.editor(), GC_T("CELTYPE"), VariableValue::of(GcView(name.text))) == VariableStatus::Done;
  if (!good) in.tell("\nLinetype not found.\n");
  co_return good;
}

// A definition typed in; the drawing has it, files are left as they are.
Task<bool> create(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter name of linetype to create: "));
  static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter linetype file name: ")));
  const Answer description = co_await in.ask(Ask(What::Line, "\nDescriptive text: "));
  const Answer pattern = co_await in.ask(Ask(What::Line, "\nEnter linetype pattern: A,"));
  const Definitions made =
      parseLinetypes(GC_T("*") + name.text + GC_T(",") + description.text + GC_T("\nA,") + pattern.text + GC_T("\n"));
  GcText trouble;
  const bool good = made.size() == 1 && !made[0].elements.empty() && made[0].trouble.empty() &&
                    !putLinetype(in.database(), made[0], trouble).isNull();
  if (!good) in.tell("\nInvalid linetype name or pattern.\n");
  co_return good;
}

Task<bool> linetype(CommandInput& in) {
  for (;;) {
    const Answer option =
        co_await in.ask(Ask(What::Keyword, "\nEnter an option [?/Create/Load/Set]: ").words("? Create Load Set"));
    if (option.isKeyword("Load"))
      static_cast<void>(co_await load(in));
    else if (option.isKeyword("Set"))
      static_cast<void>(co_await set(in));
    else if (option.isKeyword("Create"))
      static_cast<void>(co_await create(in));
    else if (option.isKeyword("?"))
      static_cast<void>(co_await list(in));
    else if (option.kind != Answer::Kind::Keyword)
      co_return true;
  }
}

constexpr Command kCommands[] = {
    {"-LINETYPE", "LINETYPE LT -LT LTYPE", linetype},
};

}  // namespace

std::span<const Command> linetypeCommands() { return kCommands; }

}  // namespace ed
