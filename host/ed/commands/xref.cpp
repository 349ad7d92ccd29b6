// -XREF: drawings shown within this one.
#include "host/ed/xrefs.h"

#include "db/blockreference.h"
#include "host/ap/paths.h"
#include "host/ap/profile.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/commands/insertion.h"
#include "host/ed/patterns.h"
#include "host/ed/records.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

// References by names with wildcards, between commas.
Ids xrefsNamed(CommandInput& in, const GcText& names) {
  Ids found;
  for (const GcDbObjectId id : xrefsOf(in.database()))
    if (matchesName(nameOfRecord(id), names)) found.push_back(id);
  if (found.empty()) in.tell("\nNo matching xref names found.\n");
  return found;
}

const char* statusOf(GcDbObjectId block) {
  switch (gcdbNeedExternal(block).status) {
    case GcDbExternal::Status::Loaded: return "Loaded";
    case GcDbExternal::Status::Unloaded: return "Unloaded";
    case GcDbExternal::Status::NotFound: return "Not found";
    case GcDbExternal::Status::Circular: return "Circular";
    default: return "Unreadable";
  }
}

struct Described {
  std::string path;
  bool overlay = false;
};

Described describe(GcDbObjectId block) {
  constexpr int kOverlay = 8;
  Described found;
  GcDbBlockTableRecord* record = nullptr;
  if (gcdbOpenObject(record, block, GcDb::kForRead) != Gcad::eOk) return found;
  found.path = gc::toUtf8(view(record->pathName()));
  found.overlay = (record->blockFlags() & kOverlay) != 0;
  ignore(record->close());
  return found;
}

Task<bool> list(CommandInput& in) {
  const Answer names = co_await in.ask(Ask(What::Line, "\nXref(s) to list <*>: "));
  int count = 0;
  in.tell("\nXref name            Path                                     Xref type   Status\n");
  for (const GcDbObjectId id : xrefsOf(in.database())) {
    if (!names.text.empty() && !matchesName(nameOfRecord(id), names.text)) continue;
    const Described found = describe(id);
    const auto padded = [](std::string text, size_t width) {
      if (text.size() < width) text.resize(width, ' ');
      return text + " ";
    };
    in.tell((padded(gc::toUtf8(nameOfRecord(id)), 20) + padded(found.path, 40) +
             padded(found.overlay ? "Overlay" : "Attach", 11) + statusOf(id) + "\n")
                .c_str());
    ++count;
  }
  in.tell(("Total Xref(s): " + std::to_string(count) + "\n").c_str());
  co_return true;
}

Task<bool> changePath(CommandInput& in) {
  const Answer names = co_await in.ask(Ask(What::Line, "\nEdit path for which Xref(s): "));
  for (const GcDbObjectId id : xrefsNamed(in, names.text)) {
    in.tell(("\nXref name: " + gc::toUtf8(nameOfRecord(id)) + "\nOld path: " + describe(id).path + "\n").c_str());
    const Answer path = co_await in.ask(Ask(What::Line, "\nEnter new path: "));
    if (path.text.empty()) continue;
    setXrefPath(id, path.text);
    static_cast<void>(loadXref(in.editor(), id));
  }
  co_return true;
}

// ---- attached

struct NewReference {
  GcText name, path;
};

// "NAME=FILE", or a file whose name is the block's.
NewReference referenceOf(const GcText& typed) {
  NewReference made;
  const size_t equals = typed.find(GC_T('='));
  made.path = equals == GcText::npos ? typed : typed.substr(equals + 1);
  made.name = equals == GcText::npos ? GcText(ap::fileNameOf(typed)) : typed.substr(0, equals);
  if (equals == GcText::npos) made.name.resize(made.name.size() - ap::extensionOf(made.name).size());
  return made;
}

bool fileIsThere(Editor& editor, GcText& path) {
  const GcView beside = ap::directoryOf(editor.document().fileName());
  for (const GCHAR* extension : {GC_T(""), GC_T(".dwg"), GC_T(".dxf")})
    if (!ap::findSupportFile(path + extension, beside).empty()) {
      path += extension;
      return true;
    }
  return false;
}

Task<bool> attach(CommandInput& in, bool overlay) {
  const Answer typed = co_await in.ask(
      Ask(What::Line, overlay ? "\nEnter name of file to overlay: " : "\nEnter name of file to attach: "));
  if (typed.text.empty()) co_return false;
  NewReference made = referenceOf(typed.text);
  GcDbObjectId block = recordNamed(in.database().blockTableId(), made.name);
  const bool exists = gcdbIsExternal(block);
  if (!block.isNull() && !exists) {
    in.tell("\nA block of this name exists; give the reference another name: NAME=FILE.\n");
    co_return false;
  }
  if (!exists && !fileIsThere(in.editor(), made.path)) {
    in.tell(("\nCannot find the drawing file \"" + gc::toUtf8(made.path) + "\".\n").c_str());
    co_return false;
  }
  if (!exists) block = makeXref(in.database(), made.name, made.path, overlay);
  if (block.isNull()) {
    in.tell("\nNo block can have this name.\n");
    co_return false;
  }
  if (!loadXref(in.editor(), block)) {
    if (!exists) detachXref(in.editor(), block);
    co_return false;
  }
  Insertion insertion;
  insertion.block = block;
  if (!co_await askInsertion(in, insertion)) co_return false;
  auto* reference = new GcDbBlockReference(insertion.point, block);
  ignore(reference->setScaleFactors(insertion.scale));
  ignore(reference->setRotation(insertion.rotationRad));
  co_return !appendFromUser(in.editor(), reference).isNull();
}

using Deed = void (*)(CommandInput& in, GcDbObjectId block);

Task<bool> forNamed(CommandInput& in, const char* prompt, Deed deed) {
  const Answer names = co_await in.ask(Ask(What::Line, prompt));
  const Ids found = xrefsNamed(in, names.text);
  for (const GcDbObjectId id : found) deed(in, id);
  co_return !found.empty();
}

void bindOne(CommandInput& in, GcDbObjectId block) {
  const std::string name = gc::toUtf8(nameOfRecord(block));
  const bool insert = integerVariable(in.editor(), "BINDTYPE") != 0;
  if (!bindXref(in.editor(), block, insert))
    in.tell(("\n\"" + name + "\" is not loaded and cannot be bound.\n").c_str());
}

Task<bool> xref(CommandInput& in) {
  const Answer option = co_await in.ask(
      Ask(What::Keyword, "\nEnter an option [?/Bind/Detach/Path/Unload/Reload/Overlay/Attach] <Attach>: ")
          .words("? Bind Detach Path PAthtype Unload Reload Overlay Attach"));
  if (option.kind == Answer::Kind::Cancelled) co_return false;
  if (option.isKeyword("?")) co_return co_await list(in);
  if (option.isKeyword("Path")) co_return co_await changePath(in);
  if (option.isKeyword("Bind")) co_return co_await forNamed(in, "\nEnter xref name(s) to bind: ", bindOne);
  if (option.isKeyword("Detach"))
    co_return co_await forNamed(in, "\nEnter xref name(s) to detach: ", [](CommandInput& input, GcDbObjectId id) {
      detachXref(input.editor(), id);
    });
  if (option.isKeyword("Unload"))
    co_return co_await forNamed(in, "\nEnter xref name(s) to unload: ", [](CommandInput& input, GcDbObjectId id) {
      unloadXref(input.editor(), id);
    });
  if (option.isKeyword("Reload"))
    co_return co_await forNamed(in, "\nEnter xref name(s) to reload: ", [](CommandInput& input, GcDbObjectId id) {
      static_cast<void>(loadXref(input.editor(), id));
    });
  if (option.isKeyword("PAthtype")) {
    in.tell("\nPaths are kept as they are given; -XREF Path changes them.\n");
    co_return false;
  }
  co_return co_await attach(in, option.isKeyword("Overlay"));
}

constexpr Command kCommands[] = {
    {"-XREF", "XREF XR -XR XATTACH XA", xref},
};

}  // namespace

std::span<const Command> xrefCommands() { return kCommands; }

}  // namespace ed
