// Entities taken to the clipboard and put down, in this drawing or another one that is open.
#include "db/blockreference.h"
#include "db/idmapping.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/records.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

// One clipboard for all documents, as long as the program runs: a drawing of its own and the base point in it.
struct Clipboard {
  std::unique_ptr<GcDbDatabase> drawing;
  GcGePoint3d base;  // world
};

Clipboard& clipboard() {
  static auto* const kept = new Clipboard;
  return *kept;
}

GcDbObjectIdArray arrayOf(const Ids& ids) {
  GcDbObjectIdArray array;
  for (const GcDbObjectId id : ids) array.append(id);
  return array;
}

bool take(CommandInput& in, const Ids& ids, const GcGePoint3d& base) {
  auto drawing = std::make_unique<GcDbDatabase>();
  GcDbIdMapping map;
  if (in.database().wblockCloneObjects(arrayOf(ids), drawing->modelSpaceId(), map, GcDb::kDrcIgnore) != Gcad::eOk)
    return false;
  clipboard().drawing = std::move(drawing);
  clipboard().base = base;
  return true;
}

GcGePoint3d cornerOf(const Ids& ids) {
  const GcDbExtents all = extentsOf(ids);
  return all.isEmpty() ? GcGePoint3d() : all.minPoint();
}

Task<bool> copy(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  co_return !ids.empty() && take(in, ids, cornerOf(ids));
}

Task<bool> cut(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty() || !take(in, ids, cornerOf(ids))) co_return false;
  for (const GcDbObjectId id : ids) eraseEntity(id);
  co_return true;
}

Task<bool> copyWithBase(CommandInput& in) {
  const Answer base = co_await in.ask(Ask(What::Point, "\nSpecify base point: ").needed());
  if (!base.isPoint()) co_return false;
  const Ids ids = co_await selectObjects(in);
  co_return !ids.empty() && take(in, ids, in.toWorld(base.point));
}

// What lies on the clipboard, as new entities of the current space where they were.
Ids putDown(CommandInput& in) {
  GcDbDatabase* drawing = clipboard().drawing.get();
  Ids made;
  if (drawing == nullptr) {
    in.tell("\nThe clipboard is empty.\n");
    return made;
  }
  const Ids sources = entitiesOf(drawing->modelSpaceId());
  GcDbIdMapping map;
  if (drawing->wblockCloneObjects(arrayOf(sources), in.editor().currentSpace(), map, GcDb::kDrcIgnore) != Gcad::eOk)
    return made;
  for (const GcDbObjectId id : sources) made.push_back(map.valueOf(id));
  return made;
}

Task<bool> paste(CommandInput& in) {
  const Answer at = co_await in.ask(Ask(What::Point, "\nSpecify insertion point: ").needed());
  if (!at.isPoint()) co_return false;
  const Ids made = putDown(in);
  GcGeMatrix3d shift;
  transformEntities(made, shift.setToTranslation(in.toWorld(at.point) - clipboard().base));
  co_return !made.empty();
}

Task<bool> pasteInPlace(CommandInput& in) { co_return !putDown(in).empty(); }

// As a block under a name nobody would choose.
Task<bool> pasteAsBlock(CommandInput& in) {
  const Answer at = co_await in.ask(Ask(What::Point, "\nSpecify insertion point: ").needed());
  if (!at.isPoint()) co_return false;
  const Ids made = putDown(in);
  if (made.empty()) co_return false;
  GcText name;
  for (int i = 1; name.empty() || !recordNamed(in.database().blockTableId(), name).isNull(); ++i)
    name = gc::fromUtf8("A$C" + std::to_string(i));
  if (!defineBlock(in.editor(), name, clipboard().base, made)) co_return false;
  const GcDbObjectId block = recordNamed(in.database().blockTableId(), name);
  co_return !appendWithDefaults(in.editor(), new GcDbBlockReference(in.toWorld(at.point), block)).isNull();
}

constexpr Command kCommands[] = {
    {"COPYCLIP", "", copy},          {"CUTCLIP", "", cut},
    {"COPYBASE", "", copyWithBase},  {"PASTECLIP", "", paste},
    {"PASTEORIG", "", pasteInPlace}, {"PASTEBLOCK", "", pasteAsBlock},
};

}  // namespace

std::span<const Command> clipboardCommands() { return kCommands; }

}  // namespace ed
