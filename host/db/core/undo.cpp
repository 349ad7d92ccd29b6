#include "host/db/core/undo.h"

#include <algorithm>
#include <iterator>

#include "db/database.h"
#include "db/layoutmanager.h"
#include "db/symboltable.h"
#include "host/db/core/header.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/core/store.h"
#include "host/db/objects/layouts.h"

void GcDbUndo::setOn(bool on) {
  m_on = on;
  if (on) return;
  m_done.clear();
  m_undone.clear();
}

void GcDbUndo::beginGroup() {
  if (m_depth++ > 0) return;
  m_fresh = true;
  m_groupSeed = seedNow();
}

void GcDbUndo::endGroup() {
  if (m_depth > 0) --m_depth;
}

void GcDbUndo::setMark() { m_mark = true; }

int GcDbUndo::marks() const {
  const auto marked = std::count_if(m_done.begin(), m_done.end(), [](const Group& group) { return group.mark; });
  return static_cast<int>(marked) + (m_mark ? 1 : 0);
}

void GcDbUndo::keep(Change change) {
  m_undone.clear();
  if (m_fresh || m_done.empty() || m_depth == 0) {
    m_done.emplace_back();
    m_done.back().mark = m_mark;
    m_done.back().seed = m_depth > 0 ? m_groupSeed : seedBefore(change);
    m_fresh = m_mark = false;
  }
  m_done.back().changes.push_back(std::move(change));
}

GcDbUndo::Change GcDbUndo::change(What what, GcDbObjectId id) {
  static const State kStates[] = {{What::Modified}, {What::Appended}, {What::Unappended}, {What::Erased},
                                  {What::Unerased}, {What::Replaced}, {What::ModelShown}, {What::SheetShown}};
  return {id, std::unique_ptr<const State, Release>(&kStates[static_cast<int>(what)])};
}

GcDbUndo::Change GcDbUndo::change(What what, const GcDbObject& object) {
  return {object.objectId(),
          std::unique_ptr<const State, Release>(new State{what, gcdbImageOf(object, GcDb::kUndoFiler), object.isA()})};
}

void GcDbUndo::record(What what, const GcDbObject& object) {
  if (m_applying || m_paused > 0) return;
  m_changed = true;
  if (!isRecording()) return;
  const bool hasImage = what == What::Modified || what == What::Replaced;
  record(hasImage ? change(what, object) : change(what, object.objectId()));
}

void GcDbUndo::record(Change made) {
  if (!m_openSeeds.empty())
    m_open.push_back(std::move(made));
  else
    keep(std::move(made));
}

size_t GcDbUndo::beginTransaction() {
  m_openSeeds.push_back(seedNow());
  return m_open.size();
}

void GcDbUndo::endTransaction() {
  const Seed seed = m_openSeeds.back();
  m_openSeeds.pop_back();
  if (!m_openSeeds.empty()) return;
  if (m_on && !m_open.empty()) {
    const bool single = m_depth == 0;  // outside any group the transaction is one of its own
    if (single) {
      beginGroup();
      m_groupSeed = seed;
    }
    for (Change& change : m_open) keep(std::move(change));
    if (single) endGroup();
  }
  m_open.clear();
}

void GcDbUndo::abortTransaction(size_t start) {
  Group group;
  group.seed = m_openSeeds.back();
  m_openSeeds.pop_back();
  const auto first = m_open.begin() + static_cast<std::ptrdiff_t>(start);
  group.changes.assign(std::make_move_iterator(first), std::make_move_iterator(m_open.end()));
  m_open.erase(first, m_open.end());
  apply(group);
}

void GcDbUndo::recordModified(const GcDbObject& object) { record(What::Modified, object); }
void GcDbUndo::recordAppended(const GcDbObject& object) { record(What::Appended, object); }
void GcDbUndo::recordErased(const GcDbObject& object, bool erasing) {
  record(erasing ? What::Erased : What::Unerased, object);
}

void GcDbUndo::recordReplaced(const GcDbObject& object) { record(What::Replaced, object); }

GcDbUndo::Change GcDbUndo::layoutNow() const {
  const bool isModel = m_database.header().integer(GC_T("$TILEMODE"), 1) != 0;
  return change(isModel ? What::ModelShown : What::SheetShown, m_database.paperSpaceId());
}

void GcDbUndo::recordLayout() {
  if (!m_applying && isRecording()) record(layoutNow());
}

GcDbUndo::Change GcDbUndo::settingNow(GcView name) const {
  const GcDbHeader& header = m_database.header();
  const GcDbGroupList* groups = header.find(name);
  auto setting = std::make_unique<Setting>(Setting{GcText(name), {}, header.placeOf(name), groups != nullptr});
  if (groups != nullptr) setting->groups = *groups;
  return {{}, std::unique_ptr<const State, Release>(new State{What::Setting, {}, nullptr, std::move(setting), {}})};
}

GcDbUndo::Change GcDbUndo::currentNow() const {
  auto current = std::make_unique<Current>(Current{m_database.clayer(), m_database.celtype(), m_database.textstyle(),
                                                   m_database.dimstyle(), m_database.cecolor(), m_database.celtscale(),
                                                   m_database.celweight()});
  return {{}, std::unique_ptr<const State, Release>(new State{What::Current, {}, nullptr, {}, std::move(current)})};
}

void GcDbUndo::recordSetting(GcView name) {
  if (!m_applying && isRecording()) record(settingNow(name));
}

void GcDbUndo::recordCurrent() {
  if (!m_applying && isRecording()) record(currentNow());
}

// The setters do not check here: records that are still erased or frozen come back with the same group.
void GcDbUndo::showCurrent(const Current& current) {
  ignore(m_database.setClayer(current.layer));
  ignore(m_database.setCeltype(current.linetype));
  ignore(m_database.setTextstyle(current.textStyle));
  ignore(m_database.setDimstyle(current.dimStyle));
  ignore(m_database.setCecolor(current.color));
  ignore(m_database.setCeltscale(current.linetypeScale));
  ignore(m_database.setCelweight(current.lineWeight));
}

GcDbUndo::Seed GcDbUndo::seedNow() const { return {m_database.store().handseed(), m_database.store().size()}; }

// Outside any group: an object that has just been made has moved the seed.
GcDbUndo::Seed GcDbUndo::seedBefore(const Change& change) const {
  const Seed now = seedNow();
  return change.state->what == What::Appended ? Seed{change.id.stub()->handle, now.made - 1} : now;
}

void GcDbUndo::showLayout(const Change& change) {
  gcdbShowPaperBlock(m_database, change.id);
  GcDbLayoutManager* manager = gcdbHostApplicationServices()->layoutManager();
  const bool isModel = change.state->what == What::ModelShown;
  const GcString sheet = manager->getActiveLayoutName(false, &m_database);
  ignore(manager->setCurrentLayout(isModel ? kModelLayout : sheet.c_str(), &m_database));
}

namespace {
// What has been put back counts as changed, but not as recorded: the next change of the object must be.
void forgetRecording(GcDbStub& stub) {
  stub.recorded = false;
  if (!stub.writing) stub.modified = false;
}
}  // namespace

void GcDbUndo::putBack(const Change& change, Group& inverse) {
  GcDbStub* stub = change.id.stub();
  auto* fresh = static_cast<GcDbObject*>(change.state->kind->create());
  if (fresh == nullptr) return;
  inverse.changes.push_back(GcDbUndo::change(What::Replaced, *stub->object));
  delete m_database.store().replace(stub, fresh);
  ignore(gcdbImageInto(*fresh, change.state->image, GcDb::kUndoFiler));
  fresh->subLoaded();
  forgetRecording(*stub);
  m_database.notifyModified(fresh);
}

namespace {

// A table finds its records by an index of names, which setName keeps: a record takes on the name of the state before the
// rest of it.
void renameFirst(GcDbObject& object, const std::vector<uint8_t>& image) {
  auto* record = GcDbSymbolTableRecord::cast(&object);
  if (record == nullptr) return;
  const GcText before(view(record->getName()));
  const std::vector<uint8_t> now = gcdbImageOf(object, GcDb::kUndoFiler);
  ignore(gcdbImageInto(object, image, GcDb::kUndoFiler));
  const GcText wanted(view(record->getName()));
  ignore(gcdbImageInto(object, now, GcDb::kUndoFiler));
  if (wanted != before) ignore(record->setName(wanted.c_str()));
}

}  // namespace

void GcDbUndo::applyOne(const Change& change, Group& inverse) {
  if (change.state->what == What::ModelShown || change.state->what == What::SheetShown) {
    inverse.changes.push_back(layoutNow());
    showLayout(change);
    return;
  }
  if (change.state->setting != nullptr) {
    const Setting& setting = *change.state->setting;
    inverse.changes.push_back(settingNow(setting.name));
    m_database.header().restore(setting.name, setting.present ? &setting.groups : nullptr, setting.place);
    return;
  }
  if (change.state->current != nullptr) {
    inverse.changes.push_back(currentNow());
    showCurrent(*change.state->current);
    return;
  }
  GcDbStub* stub = change.id.stub();
  GcDbObject* object = stub->object;
  if (object == nullptr) return;
  switch (change.state->what) {
    case What::ModelShown:
    case What::SheetShown:
    case What::Setting:
    case What::Current: break;
    case What::Replaced: putBack(change, inverse); break;
    case What::Modified:
      inverse.changes.push_back(GcDbUndo::change(What::Modified, *object));
      renameFirst(*object, change.state->image);
      ignore(gcdbImageInto(*object, change.state->image, GcDb::kUndoFiler));
      stub->pathKept = false;
      object->subLoaded();
      forgetRecording(*stub);
      m_database.notifyModified(object);
      break;
    case What::Appended:
      inverse.changes.push_back(GcDbUndo::change(What::Unappended, change.id));
      stub->erased = true;
      m_database.notifyUnAppended(object);
      break;
    case What::Unappended:
      inverse.changes.push_back(GcDbUndo::change(What::Appended, change.id));
      stub->erased = false;
      m_database.notifyReAppended(object);
      break;
    case What::Unerased:
      inverse.changes.push_back(GcDbUndo::change(What::Erased, change.id));
      stub->erased = true;
      m_database.notifyErased(object, true);
      break;
    case What::Erased:
      inverse.changes.push_back(GcDbUndo::change(What::Unerased, change.id));
      stub->erased = false;
      m_database.notifyErased(object, false);
      break;
  }
}

GcDbUndo::Group GcDbUndo::apply(const Group& group) {
  Group inverse;
  inverse.mark = group.mark;
  inverse.seed = {m_database.store().handseed(), group.seed.made};
  m_applying = true;
  for (auto change = group.changes.rbegin(); change != group.changes.rend(); ++change) applyOne(*change, inverse);
  m_database.store().restoreHandseed(group.seed.next, group.seed.made);
  m_applying = false;
  return inverse;
}

int GcDbUndo::undo(int groups) {
  int done = 0;
  for (; done < groups && !m_done.empty(); ++done) {
    const Group group = std::move(m_done.back());
    m_done.pop_back();
    m_undone.push_back(apply(group));
  }
  return done;
}

int GcDbUndo::redo(int groups) {
  int done = 0;
  for (; done < groups && !m_undone.empty(); ++done) {
    const Group group = std::move(m_undone.back());
    m_undone.pop_back();
    m_done.push_back(apply(group));
  }
  return done;
}

bool GcDbUndo::back() {
  while (!m_done.empty()) {
    const bool mark = m_done.back().mark;
    undo(1);
    if (mark) return true;
  }
  return false;
}
