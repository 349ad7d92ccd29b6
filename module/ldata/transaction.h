// A transaction of the current document, open from construction on. Objects fetched through it are closed when it
// ends. One that is not committed takes its changes back.
#pragma once

#include "module/app/host.h"

class DocumentTransaction {
 public:
  DocumentTransaction() {
    GcApDocManager* documents = gcDocManagerPtr();
    GcApDocument* document = documents != nullptr ? documents->curDocument() : nullptr;
    m_manager = document != nullptr ? document->database()->transactionManager() : nullptr;
    if (m_manager != nullptr) m_manager->startTransaction();
  }
  DocumentTransaction(const DocumentTransaction&) = delete;
  DocumentTransaction& operator=(const DocumentTransaction&) = delete;
  ~DocumentTransaction() {
    if (m_manager != nullptr) ignore(m_manager->abortTransaction());
  }

  // The object, null when it cannot be opened so or is of another class.
  template <class T>
  T* get(GcDbObjectId id, GcDb::OpenMode mode) {
    T* object = nullptr;
    if (m_manager == nullptr || m_manager->getObject(object, id, mode) != Gcad::eOk) return nullptr;
    return object;
  }
  // Takes over an object that was just added to the database.
  void addNew(GcDbObject* object) {
    if (m_manager != nullptr) ignore(m_manager->addNewlyCreatedDBRObject(object));
  }
  bool commit() {
    GcDbTransactionManager* manager = m_manager;
    m_manager = nullptr;
    return manager != nullptr && manager->endTransaction() == Gcad::eOk;
  }

 private:
  GcDbTransactionManager* m_manager = nullptr;
};
