// Drawings as files: new, opened, saved; parts of one written as another; scripts.
#include "db/idmapping.h"
#include "host/ap/docmanager.h"
#include "host/ap/paths.h"
#include "host/ap/process.h"
#include "host/ap/profile.h"
#include "host/db/core/fileformats.h"
#include "host/db/core/undo.h"
#include "host/db/objects/draworder.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/commandline.h"
#include "host/ed/records.h"
#include "host/rx/file/file_view.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

// Relative names stand for files beside the drawing.
GcText fullName(Editor& editor, const GcText& typed, const GCHAR* extension) {
  GcText name = typed;
  if (ap::extensionOf(name).empty()) name += extension;
  const GcView beside = ap::directoryOf(editor.document().fileName());
  if (ap::isAbsolutePath(name) || beside.empty()) return ap::absolutePath(name);
  return GcText(beside) + GC_T("/") + name;
}

bool writeFile(CommandInput& in, GcDbDatabase& database, const GcText& name, GcDbSaveOptions how) {
  how.version = std::max(how.version, GcDb::kDHL_AC1009);
  how.backup = integerVariable(in.editor(), "ISAVEBAK") != 0;
  std::string message;
  if (gcdbSaveDrawing(database, gc::toUtf8(name), how, message) == Gcad::eOk) return true;
  in.tell(("\n" + message + "\n").c_str());
  return false;
}

bool write(CommandInput& in, GcDbDatabase& database, const GcText& name, const GcDbSaveOptions& how) {
  if (ap::isDryRun()) return true;
  const bool own = &database == &in.database();
  if (own) in.editor().watchers().tell(Happening::SaveBegins, name);
  const bool written = writeFile(in, database, name, how);
  if (own && written) in.editor().drawingSaved();
  if (own && written) in.editor().watchers().tell(Happening::SaveEnded, name);
  return written;
}

GcDb::GcDbDwgVersion ownVersion(const GcDbDatabase& database) {
  const GcDb::GcDbDwgVersion version = database.originalFileVersion();
  return version == GcDb::kDHL_Unknown ? GcDb::kDHL_Current : version;
}

GcDbSaveOptions inOwnVersion(const GcDbDatabase& database) {
  GcDbSaveOptions how;
  how.version = ownVersion(database);
  return how;
}

// ---- SAVEAS, SAVE, QSAVE

GcDb::GcDbDwgVersion versionNamed(GcView typed) {
  constexpr struct {
    GcView name;
    GcDb::GcDbDwgVersion version;
  } kVersions[] = {{GC_T("R12"), GcDb::kDHL_AC1009},  {GC_T("2000"), GcDb::kDHL_AC1015},
                   {GC_T("2004"), GcDb::kDHL_AC1018}, {GC_T("2007"), GcDb::kDHL_AC1021},
                   {GC_T("2010"), GcDb::kDHL_AC1024}, {GC_T("2013"), GcDb::kDHL_AC1027},
                   {GC_T("2018"), GcDb::kDHL_AC1032}};
  const GcText upper = upperText(typed);
  for (const auto& each : kVersions)
    if (upper.find(each.name) != GcText::npos) return each.version;
  return GcDb::kDHL_Unknown;
}

Task<bool> mayReplace(CommandInput& in, GcText file) {
  Editor& editor = in.editor();
  if (!ap::fileExists(file) || equalNoCase(file, editor.document().fileName()) ||
      integerVariable(editor, "EXPERT") >= 2)
    co_return true;
  const Answer replace = co_await in.ask(
      Ask(What::Keyword, "\nA drawing with this name already exists. Do you want to replace it? <N> ").words("Yes No"));
  co_return replace.isKeyword("Yes");
}

Task<bool> saveTo(CommandInput& in, GcText name, GcDbSaveOptions how, bool becomesName) {
  const GcText file = fullName(in.editor(), name, GC_T(".dwg"));
  if (!co_await mayReplace(in, file)) co_return false;
  if (!write(in, in.database(), file, how)) co_return false;
  if (becomesName) in.editor().document().setFileName(file);
  co_return true;
}

// Copies of the entities in the model space of a drawing of their own.
bool copyInto(GcDbDatabase& database, const std::vector<GcDbObjectId>& ids, GcDbDatabase& other,
              std::vector<GcDbObjectId>& copies) {
  GcDbObjectIdArray sources;
  for (const GcDbObjectId id : ids) sources.append(id);
  GcDbIdMapping map;
  if (sources.length() > 0 &&
      database.wblockCloneObjects(sources, other.modelSpaceId(), map, GcDb::kDrcIgnore) != Gcad::eOk)
    return false;
  for (const GcDbObjectId id : ids) copies.push_back(map.valueOf(id));
  return true;
}

// The number of decimals, after as many of the words as are wanted; a text that is neither is the name of the file.
struct TextForm {
  GcDbSaveOptions how;
  GcText name;
  std::vector<GcDbObjectId> objects;  // only these, when there are any
};

Task<bool> askTextForm(CommandInput& in, TextForm& form) {
  for (;;) {
    Ask question(What::Integer,
                 "\nEnter decimal places of accuracy (0 to 16) or [Version/Preview/Binary/select Objects] <16>: ");
    question.words("Version Preview Binary Objects select");
    question.anyText = true;
    const Answer answer = co_await in.ask(std::move(question));
    if (answer.isKeyword("Version")) {
      const Answer version =
          co_await in.ask(Ask(What::Word, "\nEnter version [R12/2000/2004/2007/2010/2013/2018] <2018>: "));
      const GcDb::GcDbDwgVersion named = versionNamed(version.text);
      if (named != GcDb::kDHL_Unknown) form.how.version = named;
    } else if (answer.isKeyword("Preview")) {
      static_cast<void>(co_await in.ask(Ask(What::Keyword, "\nSave preview image? [Yes/No] <N>: ").words("Yes No")));
    } else if (answer.isKeyword("Binary")) {
      form.how.binary = true;
      co_return true;
    } else if (answer.kind == Answer::Kind::Keyword) {
      form.objects = co_await selectObjects(in);
    } else if (answer.kind == Answer::Kind::Number && (answer.number < 0 || answer.number > 16)) {
      in.tell("\nRequires a number from 0 to 16.\n");
    } else {
      if (answer.kind == Answer::Kind::Number) form.how.decimals = static_cast<int>(answer.number);
      form.name = answer.text;
      co_return true;
    }
  }
}

Task<GcText> askName(CommandInput& in, const char* prompt) {
  const Answer name = co_await in.ask(Ask(What::Line, prompt));
  co_return name.text;
}

// The drawing in text form; when only some objects are wanted, a drawing of these alone.
Task<bool> saveText(CommandInput& in, TextForm form, bool becomesName) {
  if (form.name.empty()) form.name = co_await askName(in, "\nSave drawing as: ");
  if (form.name.empty()) co_return false;
  if (!equalNoCase(ap::extensionOf(form.name), GC_T(".dxf"))) form.name += GC_T(".dxf");
  if (form.objects.empty()) co_return co_await saveTo(in, form.name, form.how, becomesName);
  const GcText file = fullName(in.editor(), form.name, GC_T(".dxf"));
  if (!co_await mayReplace(in, file)) co_return false;
  GcDbDatabase part;
  std::vector<GcDbObjectId> copies;
  co_return copyInto(in.database(), form.objects, part, copies) && write(in, part, file, form.how);
}

// A drawing others begin as.
Task<bool> saveTemplate(CommandInput& in) {
  GcText name = co_await askName(in, "\nSave template as: ");
  if (name.empty()) co_return false;
  if (ap::extensionOf(name).empty()) name += GC_T(".dwt");
  const Answer description = co_await in.ask(Ask(What::Line, "\nEnter description for template: "));
  static_cast<void>(description);
  const Answer units = co_await in.ask(
      Ask(What::Keyword, "\nEnter measurement units [English/Metric] <English>: ").words("English Metric"));
  if (units.kind == Answer::Kind::Keyword)
    static_cast<void>(
        setVariable(in.editor(), GC_T("MEASUREMENT"), VariableValue::of(units.isKeyword("Metric") ? 1 : 0)));
  co_return co_await saveTo(in, name, {}, true);
}

Task<bool> saveAs(CommandInput& in) {
  const Answer format = co_await in.ask(
      Ask(What::Word, "\nEnter file format [R14/2000/2004/2007/2010/2013/2018/Standards/DXF/Template] <2018>: "));
  GcText word = upperText(format.text);
  if (!word.empty() && word[0] == GC_T('_')) word.erase(0, 1);
  TextForm form;
  const GcDb::GcDbDwgVersion named = versionNamed(word);
  form.how.version = named == GcDb::kDHL_Unknown ? ownVersion(in.database()) : named;
  if (word.find(GC_T("DXF")) != GcText::npos) {
    if (named == GcDb::kDHL_Unknown) static_cast<void>(co_await askTextForm(in, form));
    co_return co_await saveText(in, std::move(form), true);
  }
  if (!word.empty() && GcText(GC_T("TEMPLATE")).find(word) == 0) co_return co_await saveTemplate(in);
  GcText name = co_await askName(in, "\nSave drawing as: ");
  if (name.empty()) co_return false;
  if (!word.empty() && GcText(GC_T("STANDARDS")).find(word) == 0 && ap::extensionOf(name).empty()) name += GC_T(".dws");
  co_return co_await saveTo(in, name, form.how, true);
}

// In text form, while the drawing keeps its name.
Task<bool> textOut(CommandInput& in) {
  TextForm form;
  form.how.version = ownVersion(in.database());
  const GcText name = co_await askName(in, "\nEnter name of file: ");
  if (name.empty()) co_return false;
  static_cast<void>(co_await askTextForm(in, form));
  form.name = name;
  co_return co_await saveText(in, std::move(form), false);
}

// Under another name, which the open drawing does not take on.
Task<bool> save(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nSave drawing as: "));
  const GcText file = name.text.empty() ? GcText(in.editor().document().fileName()) : name.text;
  if (file.empty()) co_return false;
  co_return co_await saveTo(in, file, inOwnVersion(in.database()), false);
}

Task<bool> quickSave(CommandInput& in) {
  const GcText name = in.editor().document().fileName();
  if (!name.empty()) co_return write(in, in.database(), ap::absolutePath(name), inOwnVersion(in.database()));
  const Answer typed = co_await in.ask(Ask(What::Line, "\nSave drawing as: "));
  if (typed.text.empty()) co_return false;
  co_return co_await saveTo(in, typed.text, {}, true);
}

// ---- OPEN, NEW, CLOSE: what is typed goes on in the document that becomes current, a program in its own to its end

ap::DocumentManager::Become whenOf(CommandInput& in) {
  return in.editor().commandLine().isTyped() ? ap::DocumentManager::Become::CurrentNow
                                             : ap::DocumentManager::Become::CurrentLater;
}

void openDocument(CommandInput& in, std::unique_ptr<GcDbDatabase> database, GcView name) {
  ap::Document& document = ap::documents()->open(std::move(database), name, whenOf(in));
  document.database()->undo().setOn(true);
  // Persons and files of answers answer its prompts too.
  editorOf(document).commandLine().setSource(in.editor().commandLine().source());
}

// The drawing of the file, looked for beside this one too; null, told, when there is none.
std::unique_ptr<GcDbDatabase> readDrawing(CommandInput& in, const GcText& name,
                                          std::initializer_list<const GCHAR*> extensions, GcText& found) {
  const GcView beside = ap::directoryOf(in.editor().document().fileName());
  for (const GCHAR* extension : extensions)
    if (found.empty() && !name.empty()) found = ap::findSupportFile(name + extension, beside);
  if (found.empty()) {
    in.tell("\nCannot find the specified drawing file.\n");
    return nullptr;
  }
  auto database = std::make_unique<GcDbDatabase>(false);
  std::string message;
  if (gcdbReadDrawing(*database, gc::toUtf8(found), message) == Gcad::eOk) return database;
  in.tell(("\n" + message + "\n").c_str());
  return nullptr;
}

Task<bool> open(CommandInput& in) {
  const GcText name = co_await askName(in, "\nEnter name of drawing to open: ");
  GcText found;
  std::unique_ptr<GcDbDatabase> database = readDrawing(in, name, {GC_T(""), GC_T(".dwg"), GC_T(".dxf")}, found);
  if (database == nullptr) co_return false;
  openDocument(in, std::move(database), found);
  co_return true;
}

Task<bool> newDrawing(CommandInput& in) {
  const GcText name = co_await askName(in, "\nEnter template file name or [. (for none)]: ");
  auto database = std::make_unique<GcDbDatabase>();
  GcText found;
  if (!name.empty() && name != GC_T("."))
    database = readDrawing(in, name, {GC_T(""), GC_T(".dwt"), GC_T(".dwg"), GC_T(".dxf")}, found);
  if (database == nullptr) co_return false;
  openDocument(in, std::move(database), GcView());
  co_return true;
}

// Changes that are not saved are asked for. The drawing goes when what runs in it has ended.
Task<bool> close(CommandInput& in) {
  constexpr int kView = 16;  // looking elsewhere is no change
  if ((in.editor().changedBits() & ~kView) != 0) {
    const Answer discards = co_await in.ask(
        Ask(What::Keyword, "\nReally want to discard all changes to drawing? [Yes/No] <N>: ").words("Yes No"));
    if (!discards.isKeyword("Yes")) co_return false;
  }
  ap::documents()->closeLater(in.editor().document(), whenOf(in));
  co_return true;
}

// ---- -WBLOCK

// What a block or the model space holds, from its base point; false, told, when there is no such block.
bool contentsOf(CommandInput& in, const GcText& name, std::vector<GcDbObjectId>& ids, GcGePoint3d& base) {
  GcDbBlockTableRecord* block = nullptr;
  const GcDbObjectId id = recordNamed(in.database().blockTableId(), name);
  if (gcdbOpenObject(block, id, GcDb::kForRead) != Gcad::eOk) {
    in.tell(("\nCannot find block \"" + gc::toUtf8(name) + "\".\n").c_str());
    return false;
  }
  base = block->origin();
  ignore(block->close());
  for (const GcDbSortPair& each : gcdbDrawingOrder(id)) ids.push_back(each.entity);
  return true;
}

Task<bool> wblock(CommandInput& in) {
  const GcText file = co_await askName(in, "\nEnter name of output file: ");
  if (file.empty()) co_return false;
  const GcText target = fullName(in.editor(), file, GC_T(".dwg"));
  if (!co_await mayReplace(in, target)) co_return false;
  GcText name = co_await askName(
      in, "\nEnter name of existing block or [= (block=output file)/* (whole drawing)] <define new drawing>: ");
  if (name == GC_T("*")) co_return writeFile(in, in.database(), target, {});
  if (name == GC_T("=")) {
    name = ap::fileNameOf(target);
    name.resize(name.size() - ap::extensionOf(name).size());
  }
  std::vector<GcDbObjectId> ids;
  GcGePoint3d base;
  const bool selects = name.empty();
  if (selects) {
    const Answer point = co_await in.ask(Ask(What::Point, "\nSpecify insertion base point: "));
    base = in.toWorld(point.point);
    ids = co_await selectObjects(in);
    gcdbSortAsDrawn(ids);
  } else if (!contentsOf(in, name, ids, base)) {
    co_return false;
  }
  GcDbDatabase other;
  std::vector<GcDbObjectId> copies;
  if (!copyInto(in.database(), ids, other, copies)) co_return false;
  GcGeMatrix3d shift;
  transformEntities(copies, shift.setToTranslation(GcGePoint3d() - base));
  const bool written = write(in, other, target, {});
  if (!written || !selects) co_return written;
  for (const GcDbObjectId id : ids) eraseEntity(id);
  in.editor().lastErased = ids;  // OOPS brings them back
  co_return true;
}

// A file of command line input, which follows as if typed.
Task<bool> script(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter script file name: "));
  const GcView beside = ap::directoryOf(in.editor().document().fileName());
  GcText found = ap::findSupportFile(name.text, beside);
  if (found.empty()) found = ap::findSupportFile(name.text + GC_T(".scr"), beside);
  gc::FileView file;
  if (found.empty() || !file.open(gc::toUtf8(found)).ok()) {
    in.tell("\nCannot find the script file.\n");
    co_return false;
  }
  in.editor().document().queueText(gc::fromUtf8(file.bytes()));
  co_return true;
}

constexpr Command kCommands[] = {
    {"NEW", "QNEW", newDrawing}, {"OPEN", "", open},       {"CLOSE", "", close},    {"SAVEAS", "", saveAs},
    {"SAVE", "", save},          {"QSAVE", "", quickSave}, {"DXFOUT", "", textOut}, {"-WBLOCK", "WBLOCK W -W", wblock},
    {"SCRIPT", "SCR", script},
};

}  // namespace

std::span<const Command> drawingFileCommands() { return kCommands; }

}  // namespace ed
