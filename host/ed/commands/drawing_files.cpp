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

bool writeFile(CommandInput& in, GcDbDatabase& database, const GcText& name, GcDb::GcDbDwgVersion version) {
  GcDbSaveOptions how;
  how.version = std::max(version, GcDb::kDHL_AC1009);
  how.backup = integerVariable(in.editor(), "ISAVEBAK") != 0;
  std::string message;
  if (gcdbSaveDrawing(database, gc::toUtf8(name), how, message) == Gcad::eOk) return true;
  in.tell(("\n" + message + "\n").c_str());
  return false;
}

bool write(CommandInput& in, GcDbDatabase& database, const GcText& name, GcDb::GcDbDwgVersion version) {
  if (ap::isDryRun()) return true;
  const bool own = &database == &in.database();
  if (own) in.editor().watchers().tell(Happening::SaveBegins, name);
  const bool written = writeFile(in, database, name, version);
  if (own && written) in.editor().drawingSaved();
  if (own && written) in.editor().watchers().tell(Happening::SaveEnded, name);
  return written;
}

GcDb::GcDbDwgVersion ownVersion(const GcDbDatabase& database) {
  const GcDb::GcDbDwgVersion version = database.originalFileVersion();
  return version == GcDb::kDHL_Unknown ? GcDb::kDHL_Current : version;
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

Task<bool> saveTo(CommandInput& in, GcText name, GcDb::GcDbDwgVersion version, bool becomesName) {
  Editor& editor = in.editor();
  const GcText file = fullName(editor, name, GC_T(".dwg"));
  if (ap::fileExists(file) && !equalNoCase(file, editor.document().fileName()) &&
      integerVariable(editor, "EXPERT") < 2) {
    const Answer replace =
        co_await in.ask(Ask(What::Keyword, "\nA drawing with this name already exists. Do you want to replace it? <N> ")
                            .words("Yes No"));
    if (!replace.isKeyword("Yes")) co_return false;
  }
  if (!write(in, in.database(), file, version)) co_return false;
  if (becomesName) editor.document().setFileName(file);
  co_return true;
}

Task<bool> saveAs(CommandInput& in) {
  const Answer format =
      co_await in.ask(Ask(What::Word,
                          "\nCurrent file format: 2018 Drawing\nEnter file format [R14/2000/2004/2007/2010/2013/2018/"
                          "Standards/DXF/Template] <2018>: "));
  GcDb::GcDbDwgVersion version = versionNamed(format.text);
  const bool dxf = upperText(format.text).find(GC_T("DXF")) != GcText::npos;
  if (version == GcDb::kDHL_Unknown) version = ownVersion(in.database());
  const Answer name = co_await in.ask(Ask(What::Line, "\nSave drawing as: "));
  if (name.text.empty()) co_return false;
  GcText file = name.text;
  if (dxf && ap::extensionOf(file).empty()) file += GC_T(".dxf");
  co_return co_await saveTo(in, file, version, true);
}

// Under another name, which the open drawing does not take on.
Task<bool> save(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nSave drawing as: "));
  const GcText file = name.text.empty() ? GcText(in.editor().document().fileName()) : name.text;
  if (file.empty()) co_return false;
  co_return co_await saveTo(in, file, ownVersion(in.database()), false);
}

Task<bool> quickSave(CommandInput& in) {
  const GcText name = in.editor().document().fileName();
  if (!name.empty()) co_return write(in, in.database(), ap::absolutePath(name), ownVersion(in.database()));
  const Answer typed = co_await in.ask(Ask(What::Line, "\nSave drawing as: "));
  if (typed.text.empty()) co_return false;
  co_return co_await saveTo(in, typed.text, GcDb::kDHL_Current, true);
}

// ---- OPEN, NEW: further documents; the program goes on in its own

Task<bool> open(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter name of drawing to open: "));
  const GcView beside = ap::directoryOf(in.editor().document().fileName());
  GcText found;
  for (const GCHAR* extension : {GC_T(""), GC_T(".dwg"), GC_T(".dxf")})
    if (found.empty() && !name.text.empty()) found = ap::findSupportFile(name.text + extension, beside);
  if (found.empty()) {
    in.tell("\nCannot find the specified drawing file.\n");
    co_return false;
  }
  auto database = std::make_unique<GcDbDatabase>(false);
  std::string message;
  if (gcdbReadDrawing(*database, gc::toUtf8(found), message) != Gcad::eOk) {
    in.tell(("\n" + message + "\n").c_str());
    co_return false;
  }
  ap::Document& document = ap::documents()->open(std::move(database), found);
  document.database()->undo().setOn(true);
  co_return true;
}

Task<bool> newDrawing(CommandInput& in) {
  static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter template file name or [. (for none)]: ")));
  ap::Document& document = ap::documents()->open(std::make_unique<GcDbDatabase>(), GcView());
  document.database()->undo().setOn(true);
  co_return true;
}

// ---- -WBLOCK

Task<bool> wblock(CommandInput& in) {
  const Answer file = co_await in.ask(Ask(What::Line, "\nEnter name of output file: "));
  if (file.text.empty()) co_return false;
  const GcText target = fullName(in.editor(), file.text, GC_T(".dwg"));
  if (ap::fileExists(target) && integerVariable(in.editor(), "EXPERT") < 2) {
    const Answer replace = co_await in.ask(
        Ask(What::Keyword, "\nA drawing with this name already exists. Replace it? <N> ").words("Yes No"));
    if (!replace.isKeyword("Yes")) co_return false;
  }
  const Answer name = co_await in.ask(
      Ask(What::Line,
          "\nEnter name of existing block or [= (block=output file)/* (whole drawing)] <define new drawing>: "));
  GcText blockName = name.text;
  if (blockName == GC_T("=")) {
    blockName = ap::fileNameOf(target);
    blockName.resize(blockName.size() - ap::extensionOf(blockName).size());
  }
  GcDbObjectIdArray ids;
  std::vector<GcDbObjectId> selected;
  GcGePoint3d base;
  const bool whole = blockName == GC_T("*");
  if (blockName.empty()) {
    const Answer point = co_await in.ask(Ask(What::Point, "\nSpecify insertion base point: "));
    base = in.toWorld(point.point);
    selected = co_await selectObjects(in);
    gcdbSortAsDrawn(selected);
    for (const GcDbObjectId id : selected) ids.append(id);
  } else {
    GcDbBlockTableRecord* block = nullptr;
    const GcDbObjectId id = whole ? in.database().modelSpaceId() : recordNamed(in.database().blockTableId(), blockName);
    if (gcdbOpenObject(block, id, GcDb::kForRead) != Gcad::eOk) {
      in.tell("\nCannot find the block.\n");
      co_return false;
    }
    base = block->origin();
    ignore(block->close());
    for (const GcDbSortPair& each : gcdbDrawingOrder(id)) ids.append(each.entity);
  }
  GcDbDatabase other;
  GcDbIdMapping map;
  if (ids.length() > 0 &&
      in.database().wblockCloneObjects(ids, other.modelSpaceId(), map, GcDb::kDrcIgnore) != Gcad::eOk)
    co_return false;
  GcGeMatrix3d shift;
  shift.setToTranslation(GcGePoint3d() - base);
  std::vector<GcDbObjectId> copies;
  for (const GcDbObjectId id : ids) copies.push_back(map.valueOf(id));
  transformEntities(copies, shift);
  const bool written = write(in, other, target, GcDb::kDHL_Current);
  if (written)
    for (const GcDbObjectId id : selected) eraseEntity(id);
  co_return written;
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
    {"NEW", "QNEW", newDrawing}, {"OPEN", "", open},       {"SAVEAS", "", saveAs},
    {"SAVE", "", save},          {"QSAVE", "", quickSave}, {"-WBLOCK", "WBLOCK W -W", wblock},
    {"SCRIPT", "SCR", script},
};

}  // namespace

std::span<const Command> drawingFileCommands() { return kCommands; }

}  // namespace ed
