#include "host/db/core/undo.h"

#include <algorithm>
#include <iterator>

#include "db/database.h"
#include "db/layoutmanager.h"
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
  if (m_depth++ == 0) m_fresh = true;
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
    m_fresh = m_mark = false;
  }
  m_done.back().changes.push_back(std::move(change));
}

GcDbUndo::Change GcDbUndo::change(What what, GcDbObjectId id) {
  static const State kStates[] = {{What::Modified, {}},   {What::Appended, {}},  {What::Unappended, {}},
                                  {What::Erased, {}},     {What::Unerased, {}},  {What::Replaced, {}},
                                  {What::ModelShown, {}}, {What::SheetShown, {}}};
  return {id, std::unique_ptr<const State, Release>(&kStates[static_cast<int>(what)])};
}

GcDbUndo::Change GcDbUndo::change(What what, const GcDbObject& object) {
  return {object.objectId(),
          std::unique_ptr<const State, Release>(new State{what, gcdbImageOf(object, GcDb::kUndoFiler), object.isA()})};
}

void GcDbUndo::record(What what, const GcDbObject& object) {
  if (m_applying) return;
  m_changed = true;
  if (!m_on && m_transactions == 0) return;
  const bool hasImage = what == What::Modified || what == What::Replaced;
  record(hasImage ? change(what, object) : change(what, object.objectId()));
}

void GcDbUndo::record(Change made) {
  if (m_transactions > 0)
    m_open.push_back(std::move(made));
  else
    keep(std::move(made));
}

size_t GcDbUndo::beginTransaction() {
  ++m_transactions;
  return m_open.size();
}

void GcDbUndo::endTransaction() {
  if (--m_transactions > 0) return;
  if (m_on && !m_open.empty()) {
    const bool single = m_depth == 0;  // outside any group the transaction is one of its own
    if (single) beginGroup();
    for (Change& change : m_open) keep(std::move(change));
    if (single) endGroup();
  }
  m_open.clear();
}

void GcDbUndo::abortTransaction(size_t start) {
  --m_transactions;
  Group group;
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
  if (!m_applying && (m_on || m_transactions > 0)) record(layoutNow());
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

void GcDbUndo::applyOne(const Change& change, Group& inverse) {
  if (change.state->what == What::ModelShown || change.state->what == What::SheetShown) {
    inverse.changes.push_back(layoutNow());
    showLayout(change);
    return;
  }
  GcDbStub* stub = change.id.stub();
  GcDbObject* object = stub->object;
  if (object == nullptr) return;
  switch (change.state->what) {
    case What::ModelShown:
    case What::SheetShown: break;
    case What::Replaced: putBack(change, inverse); break;
    case What::Modified:
      inverse.changes.push_back(GcDbUndo::change(What::Modified, *object));
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
  m_applying = true;
  for (auto change = group.changes.rbegin(); change != group.changes.rend(); ++change) applyOne(*change, inverse);
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
