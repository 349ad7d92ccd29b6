// Entities in order and together: DRAWORDER, -GROUP, UNGROUP.
#include "host/ed/groups.h"

#include <algorithm>

#include "db/dictionary.h"
#include "host/db/objects/standard.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/dictionaries.h"
#include "host/ed/drawingorder.h"
#include "host/ed/purge.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

// ---- DRAWORDER

Task<bool> drawOrder(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Answer option = co_await in.ask(
      Ask(What::Keyword, "\nEnter object ordering option [Above objects/Under objects/Front/Back] <Back>: ")
          .words("Above Under Front Back"));
  Place place = option.isKeyword("Front") ? Place::Front : Place::Back;
  Ids references;
  if (option.isKeyword("Above") || option.isKeyword("Under")) {
    place = option.isKeyword("Above") ? Place::Above : Place::Under;
    references = co_await selectObjects(in, "\nSelect reference objects: ");
    if (references.empty()) co_return false;
  }
  co_return reorder(in.editor().currentSpace(), ids, references, place);
}

// Texts, dimensions, leaders to the front; hatches to the back.
Task<bool> textToFront(CommandInput& in) {
  const Answer which = co_await in.ask(Ask(What::Keyword, "\nBring to front [Text/Dimensions/Leaders/All] <All>: ")
                                           .words("Text Dimensions Leaders All"));
  const bool all = !which.isKeyword("Text") && !which.isKeyword("Dimensions") && !which.isKeyword("Leaders");
  Ids chosen;
  const GcDbObjectId space = in.editor().currentSpace();
  for (const GcDbObjectId id : entitiesOf(space)) {
    const GcText name = id.objectClass()->name();
    const bool text = name.find(GC_T("Text")) != GcText::npos;
    const bool dimension = name.find(GC_T("Dimension")) != GcText::npos;
    const bool leader = name.find(GC_T("Leader")) != GcText::npos;
    if ((text && (all || which.isKeyword("Text"))) || (dimension && (all || which.isKeyword("Dimensions"))) ||
        (leader && (all || which.isKeyword("Leaders"))))
      chosen.push_back(id);
  }
  co_return reorder(space, chosen, {}, Place::Front);
}

// ---- -GROUP

Task<GcDbObjectId> askGroup(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter a group name: "));
  const GcDbObjectId id = groupNamed(in.database(), name.text);
  if (id.isNull()) in.tell("\nCannot find the group.\n");
  co_return id;
}

Task<bool> createGroup(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter a group name or [?]: "));
  const Answer description = co_await in.ask(Ask(What::Line, "\nEnter a group description: "));
  const Ids members = co_await selectObjects(in);
  if (members.empty()) co_return false;
  const GcView key = name.text == GC_T("*") ? GcView() : GcView(name.text);
  const bool made = !makeGroup(in.database(), key, description.text, members).isNull();
  if (!made) in.tell("\nA group of this name exists, or the name is invalid.\n");
  co_return made;
}

Task<bool> changeMembers(CommandInput& in, bool adds) {
  const GcDbObjectId id = co_await askGroup(in);
  if (id.isNull()) co_return false;
  const Ids chosen = co_await selectObjects(in);
  Ids members = groupMembers(id);
  for (const GcDbObjectId each : chosen) {
    const auto at = std::find(members.begin(), members.end(), each);
    if (adds && at == members.end()) members.push_back(each);
    if (!adds && at != members.end()) members.erase(at);
  }
  GcDbObjectIdArray kept;
  for (const GcDbObjectId each : members) kept.append(each);
  forEach<GcDbEntityGroup>({id}, [&](GcDbEntityGroup& group) { ignore(group.setEntities(kept)); });
  co_return true;
}

bool renameEntry(GcDbObjectId id, const GcText& to) {
  GcDbObject* object = nullptr;
  if (gcdbOpenGcDbObject(object, id, GcDb::kForRead) != Gcad::eOk) return false;
  const GcDbObjectId owner = object->ownerId();
  ignore(object->close());
  GcDbDictionary* dictionary = nullptr;
  GcString from;
  if (gcdbOpenObject(dictionary, owner, GcDb::kForWrite) != Gcad::eOk) return false;
  const bool good = dictionary->nameAt(id, from) == Gcad::eOk && dictionary->setName(from.c_str(), to.c_str());
  ignore(dictionary->close());
  return good;
}

Task<bool> group(CommandInput& in) {
  const Answer option = co_await in.ask(
      Ask(What::Keyword, "\nEnter a group option [?/Order/Add/Remove/Explode/REName/Selectable/Create] <Create>: ")
          .words("? Order Add Remove Explode REName Selectable Create"));
  if (option.isNone() || option.isKeyword("Create")) co_return co_await createGroup(in);
  if (option.isKeyword("Add") || option.isKeyword("Remove"))
    co_return co_await changeMembers(in, option.isKeyword("Add"));
  if (option.kind != Answer::Kind::Keyword || option.isKeyword("?") || option.isKeyword("Order")) co_return false;
  const GcDbObjectId id = co_await askGroup(in);
  if (id.isNull()) co_return false;
  if (option.isKeyword("Explode")) {
    eraseObject(id);
    co_return true;
  }
  if (option.isKeyword("REName")) {
    const Answer to = co_await in.ask(Ask(What::Line, "\nEnter a new name for the group: "));
    co_return renameEntry(id, to.text);
  }
  const Answer selectable =
      co_await in.ask(Ask(What::Keyword, "\nIs this group selectable? [Yes/No] <Yes>: ").words("Yes No"));
  forEach<GcDbEntityGroup>({id},
                           [&](GcDbEntityGroup& each) { ignore(each.setSelectable(!selectable.isKeyword("No"))); });
  co_return true;
}

// GROUP itself takes the objects first.
Task<bool> groupOfObjects(CommandInput& in) {
  GcText name, description;
  Ids members;
  while (members.empty()) {
    const Answer answer =
        co_await in.ask(Ask(What::Objects, "\nSelect objects or [Name/Description]: ").words("Name Description"));
    if (answer.isKeyword("Name")) {
      name = (co_await in.ask(Ask(What::Line, "\nEnter a group name: "))).text;
    } else if (answer.isKeyword("Description")) {
      description = (co_await in.ask(Ask(What::Line, "\nEnter a group description: "))).text;
    } else if (answer.kind == Answer::Kind::Objects) {
      members = answer.objects;
    } else {
      co_return false;
    }
  }
  for (const GcDbObjectId id : co_await selectObjects(in))
    if (std::find(members.begin(), members.end(), id) == members.end()) members.push_back(id);
  co_return !makeGroup(in.database(), name, description, members).isNull();
}

// The groups any of the entities belongs to go; the entities stay.
Task<bool> ungroup(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Entity, "\nSelect group or [Name]: ").words("Name"));
  if (name.isKeyword("Name")) {
    const GcDbObjectId id = co_await askGroup(in);
    eraseObject(id);
    co_return !id.isNull();
  }
  if (name.kind != Answer::Kind::Entity) co_return false;
  bool any = false;
  Ids groups;
  for (const GcDbDictionaryEntry& entry : entriesOf(dictionaryNamed(in.database(), GC_T("ACAD_GROUP"))))
    groups.push_back(entry.id);
  for (const GcDbObjectId id : groups) {
    const Ids members = groupMembers(id);
    if (std::find(members.begin(), members.end(), name.entity) == members.end()) continue;
    eraseObject(id);
    any = true;
  }
  co_return any;
}

constexpr Command kCommands[] = {
    {"DRAWORDER", "DR", drawOrder}, {"TEXTTOFRONT", "", textToFront}, {"-GROUP", "-G", group},
    {"GROUP", "G", groupOfObjects}, {"UNGROUP", "", ungroup},
};

}  // namespace

std::span<const Command> groupCommands() { return kCommands; }

}  // namespace ed
