// Blocks: defined from entities, inserted, taken apart.
#include "db/blockreference.h"
#include "db/idmapping.h"
#include "host/ap/paths.h"
#include "host/ap/profile.h"
#include "host/db/objects/draworder.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/commands/attributes.h"
#include "host/ed/commands/insertion.h"
#include "host/ed/records.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

// The block of a name, read from a drawing file of that name when the drawing has none. "NAME=FILE" reads the file anew.
GcDbObjectId needBlock(Editor& editor, GcView typed) {
  GcDbDatabase& database = editor.database();
  const size_t equals = typed.find(GC_T('='));
  const GcView file = equals == GcView::npos ? typed : typed.substr(equals + 1);
  GcText name(equals == GcView::npos ? typed : typed.substr(0, equals));
  GcDbObjectId id;
  if (equals == GcView::npos) {
    id = recordNamed(database.blockTableId(), name);
    if (!id.isNull()) return id;
    name = ap::fileNameOf(name);
    name.resize(name.size() - ap::extensionOf(name).size());
    id = recordNamed(database.blockTableId(), name);
    if (!id.isNull()) return id;
  }
  const GcView beside = ap::directoryOf(editor.document().fileName());
  GcText found;
  for (const GCHAR* extension : {GC_T(""), GC_T(".dwg"), GC_T(".dxf")})
    if (found.empty()) found = ap::findSupportFile(GcText(file) + extension, beside);
  if (found.empty()) return id;
  GcDbDatabase other(false);
  if (other.readDwgFile(found.c_str()) == Gcad::eOk) ignore(database.insert(id, name.c_str(), &other));
  return id;
}

struct AttributeQuestion {
  GcText prompt;
  bool asked = false;
};

AttributeQuestion questionOf(GcDbObjectId definitionId) {
  AttributeQuestion question;
  GcDbAttributeDefinition* definition = nullptr;
  if (gcdbOpenObject(definition, definitionId, GcDb::kForRead) != Gcad::eOk) return question;
  const GcView prompt = view(definition->prompt().isEmpty() ? definition->tag() : definition->prompt());
  question.prompt = GC_T("\n") + GcText(prompt) + GC_T(" <") + GcText(view(definition->textString())) + GC_T(">: ");
  question.asked = !definition->isConstant() && !definition->isPreset();
  ignore(definition->close());
  return question;
}

Task<bool> askAttributes(CommandInput& in, GcDbObjectId referenceId, GcDbObjectId blockId) {
  const bool asks = integerVariable(in.editor(), "ATTREQ") != 0;
  for (const GcDbObjectId definition : attributeDefinitions(blockId)) {
    const AttributeQuestion question = questionOf(definition);
    GcText text;
    if (asks && question.asked) {
      Ask ask(What::Line, "");
      ask.prompt = question.prompt;
      text = (co_await in.ask(ask)).text;
    }
    addAttribute(referenceId, definition, text);
  }
  co_return true;
}

Task<bool> insert(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter block name: "));
  GcView typed = name.text;
  const bool exploded =
      !typed.empty() && typed[0] == GC_T('*') && recordNamed(in.database().blockTableId(), typed).isNull();
  if (exploded) typed.remove_prefix(1);
  Insertion insertion;
  insertion.block = needBlock(in.editor(), typed);
  if (insertion.block.isNull()) {
    in.tell("\nCannot find the block or a drawing file of this name.\n");
    co_return false;
  }
  static_cast<void>(setVariable(in.editor(), GC_T("INSNAME"), VariableValue::of(typed)));
  if (!co_await askInsertion(in, insertion)) co_return false;
  auto* reference = new GcDbBlockReference(insertion.point, insertion.block);
  ignore(reference->setScaleFactors(insertion.scale));
  ignore(reference->setRotation(insertion.rotationRad));
  const GcDbObjectId id = appendFromUser(in.editor(), reference);
  if (exploded) {
    explodeEntities(in.editor(), {id});
    co_return true;
  }
  co_return co_await askAttributes(in, id, insertion.block);
}

Task<bool> explode(CommandInput& in) {
  const std::vector<GcDbObjectId> ids = co_await selectOnce(in);
  co_return explodeEntities(in.editor(), ids);
}

// Makes a block of the entities, which go from the drawing.
Task<bool> block(CommandInput& in) {
  GcDbDatabase& database = in.database();
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter block name: "));
  if (name.text.empty()) co_return false;
  GcDbObjectId id = recordNamed(database.blockTableId(), name.text);
  if (!id.isNull()) {
    const Answer redefine =
        co_await in.ask(Ask(What::Keyword, "\nBlock already exists. Redefine it? [Yes/No] <N>: ").words("Yes No"));
    if (!redefine.isKeyword("Yes")) co_return false;
  }
  const Answer base = co_await in.ask(Ask(What::Point, "\nSpecify insertion base point: "));
  if (!base.isPoint()) co_return false;
  std::vector<GcDbObjectId> ids = co_await selectObjects(in);
  gcdbSortAsDrawn(ids);
  co_return defineBlock(in.editor(), name.text, in.toWorld(base.point), ids);
}

constexpr Command kCommands[] = {
    {"-INSERT", "INSERT -I I DDINSERT", insert},
    {"-BLOCK", "BLOCK -B B", block},
    {"EXPLODE", "X", explode},
};

}  // namespace

std::span<const Command> blockCommands() { return kCommands; }

bool explodeEntities(Editor&, const std::vector<GcDbObjectId>& ids) {
  bool any = false;
  for (const GcDbObjectId id : ids) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForWrite) != Gcad::eOk) continue;
    GcDbVoidPtrArray pieces;
    const bool good = entity->explode(pieces) == Gcad::eOk;
    const GcDbObjectId owner = entity->ownerId();
    if (good) ignore(entity->erase());
    ignore(entity->close());
    GcDbBlockTableRecord* space = nullptr;
    if (!good || gcdbOpenObject(space, owner, GcDb::kForWrite) != Gcad::eOk) continue;
    for (void* piece : pieces) {
      auto* made = static_cast<GcDbEntity*>(piece);
      if (space->appendGcDbEntity(made) == Gcad::eOk)
        ignore(made->close());
      else
        delete made;
    }
    ignore(space->close());
    any = true;
  }
  return any;
}

bool defineBlock(Editor& editor, GcView name, const GcGePoint3d& base, const std::vector<GcDbObjectId>& ids) {
  GcDbDatabase& database = editor.database();
  GcDbObjectId id = recordNamed(database.blockTableId(), name);
  GcDbBlockTableRecord* record = nullptr;
  if (id.isNull()) {
    GcDbBlockTable* blocks = nullptr;
    if (database.getSymbolTable(blocks, GcDb::kForWrite) != Gcad::eOk) return false;
    record = new GcDbBlockTableRecord;
    const bool made = record->setName(GcText(name).c_str()) == Gcad::eOk && blocks->add(id, record) == Gcad::eOk;
    ignore(blocks->close());
    if (!made) {
      delete record;
      return false;
    }
  } else {
    if (gcdbOpenObject(record, id, GcDb::kForRead) != Gcad::eOk) return false;
    const GcDbObjectIdArray former = record->entities();
    ignore(record->close());
    for (const GcDbObjectId entity : former) eraseEntity(entity);
    if (gcdbOpenObject(record, id, GcDb::kForWrite) != Gcad::eOk) return false;
  }
  ignore(record->setOrigin(base));
  ignore(record->close());
  GcDbObjectIdArray sources;
  for (const GcDbObjectId each : ids) sources.append(each);
  GcDbIdMapping map;
  if (database.deepCloneObjects(sources, id, map) != Gcad::eOk) return false;
  for (const GcDbObjectId each : ids) eraseEntity(each);
  return true;
}

}  // namespace ed
