// Transactions: changes that stand or fall together. They nest; an inner one that ends hands its changes to the
// outer one, an aborted one leaves everything as it was when it began. Objects fetched through a transaction are
// closed by it.
#pragma once

#include "db/object.h"

struct GcDbTransactionState;

class GcDbTransaction;

class GcDbTransactionManager {
 public:
  explicit GcDbTransactionManager(GcDbDatabase& database);
  ~GcDbTransactionManager();  // aborts what is still open
  GcDbTransactionManager(const GcDbTransactionManager&) = delete;
  GcDbTransactionManager& operator=(const GcDbTransactionManager&) = delete;

  GcDbTransaction* startTransaction();
  // Errors: eNoActiveTransactions.
  Gcad::ErrorStatus endTransaction();
  Gcad::ErrorStatus abortTransaction();
  [[nodiscard]] int numActiveTransactions() const;
  [[nodiscard]] GcDbTransaction* topTransaction() const;  // null when there is none

  // An object that stays open until its transaction ends; asked for again, the same one, opened further when
  // it was open for read and is wanted for write. Errors: as gcdbOpenObject, eNoActiveTransactions.
  Gcad::ErrorStatus getObject(GcDbObject*& object, GcDbObjectId id, GcDb::OpenMode mode, bool openErased = false);
  template <class T>
  Gcad::ErrorStatus getObject(T*& object, GcDbObjectId id, GcDb::OpenMode mode, bool openErased = false) {
    GcDbObject* any = nullptr;
    const Gcad::ErrorStatus status = getObject(any, id, mode, openErased);
    object = status == Gcad::eOk ? T::cast(any) : nullptr;
    return status == Gcad::eOk && object == nullptr ? Gcad::eNotThatKindOfClass : status;
  }
  // Takes over a new object that was just added to the database (it is open for write).
  Gcad::ErrorStatus addNewlyCreatedDBRObject(GcDbObject* object, bool add = true);

 private:
  friend class GcDbTransaction;
  GcDbDatabase& m_database;
  GcDbTransactionState* m_state;
};

// One transaction, for those that pass it on.
class GcDbTransaction {
 public:
  Gcad::ErrorStatus getObject(GcDbObject*& object, GcDbObjectId id, GcDb::OpenMode mode, bool openErased = false) {
    return m_manager.getObject(object, id, mode, openErased);
  }

 private:
  friend class GcDbTransactionManager;
  friend struct GcDbTransactionState;
  explicit GcDbTransaction(GcDbTransactionManager& manager) : m_manager(manager) {}
  GcDbTransactionManager& m_manager;
};
