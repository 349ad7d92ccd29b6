#include "db/transaction.h"

#include <memory>
#include <vector>

#include "db/database.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"
#include "rx/gcassert.h"

struct GcDbTransactionState {
  struct Level {
    std::unique_ptr<GcDbTransaction> transaction;
    std::vector<GcDbObject*> opened;  // to be closed at the end
    size_t mark = 0;                  // where the recorded changes stood
  };
  std::vector<Level> levels;

  [[nodiscard]] bool holds(const GcDbObject* object) const {
    for (const Level& level : levels)
      for (const GcDbObject* each : level.opened)
        if (each == object) return true;
    return false;
  }
  // What an inner transaction changes in an object that an outer one holds is recorded anew.
  void recordAnew() const {
    for (const Level& level : levels)
      for (const GcDbObject* each : level.opened) each->objectId().stub()->recorded = false;
  }
  static void closeAll(Level& level) {
    for (auto each = level.opened.rbegin(); each != level.opened.rend(); ++each) ignore((*each)->close());
    level.opened.clear();
  }
};

GcDbTransactionManager::GcDbTransactionManager(GcDbDatabase& database)
    : m_database(database), m_state(new GcDbTransactionState) {}

GcDbTransactionManager::~GcDbTransactionManager() {
  while (numActiveTransactions() > 0) ignore(abortTransaction());
  delete m_state;
}

int GcDbTransactionManager::numActiveTransactions() const { return static_cast<int>(m_state->levels.size()); }

GcDbTransaction* GcDbTransactionManager::topTransaction() const {
  return m_state->levels.empty() ? nullptr : m_state->levels.back().transaction.get();
}

GcDbTransaction* GcDbTransactionManager::startTransaction() {
  m_state->recordAnew();
  GcDbTransactionState::Level& level = m_state->levels.emplace_back();
  level.transaction.reset(new GcDbTransaction(*this));
  level.mark = m_database.undo().beginTransaction();
  return level.transaction.get();
}

Gcad::ErrorStatus GcDbTransactionManager::endTransaction() {
  if (m_state->levels.empty()) return Gcad::eNoActiveTransactions;
  GcDbTransactionState::closeAll(m_state->levels.back());
  m_state->levels.pop_back();
  m_database.undo().endTransaction();
  return Gcad::eOk;
}

// Objects are closed before their former state is put back.
Gcad::ErrorStatus GcDbTransactionManager::abortTransaction() {
  if (m_state->levels.empty()) return Gcad::eNoActiveTransactions;
  GcDbTransactionState::Level level = std::move(m_state->levels.back());
  m_state->levels.pop_back();
  GcDbTransactionState::closeAll(level);
  m_database.undo().abortTransaction(level.mark);
  m_state->recordAnew();
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbTransactionManager::getObject(GcDbObject*& object, GcDbObjectId id, GcDb::OpenMode mode,
                                                    bool openErased) {
  object = nullptr;
  if (m_state->levels.empty()) return Gcad::eNoActiveTransactions;
  if (id.isValid() && m_state->holds(id.stub()->object)) {
    if (id.isErased() && !openErased) return Gcad::eWasErased;
    GcDbObject* held = id.stub()->object;
    if (mode == GcDb::kForWrite && !held->isWriteEnabled()) {
      const Gcad::ErrorStatus status = held->upgradeOpen();
      if (status != Gcad::eOk) return status;
    }
    object = held;
    return Gcad::eOk;
  }
  const Gcad::ErrorStatus status = gcdbOpenGcDbObject(object, id, mode, openErased);
  if (status == Gcad::eOk) m_state->levels.back().opened.push_back(object);
  return status;
}

Gcad::ErrorStatus GcDbTransactionManager::addNewlyCreatedDBRObject(GcDbObject* object, bool add) {
  if (m_state->levels.empty()) return Gcad::eNoActiveTransactions;
  if (object == nullptr || object->objectId().isNull()) return Gcad::eNotInDatabase;
  if (add && !m_state->holds(object)) m_state->levels.back().opened.push_back(object);
  return Gcad::eOk;
}
