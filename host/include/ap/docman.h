// Documents: each open drawing with its database, LISP name space and command line.
#pragma once

#include "rx/gcstring.h"
#include "rx/rxobject.h"

class GcDbDatabase;
class GcDbTransactionManager;
class GcApDocument;

class GcApDocManagerReactor : public GcRxObject {
 public:
  GCRX_DECLARE_MEMBERS(GcApDocManagerReactor);
  virtual void documentCreated(GcApDocument* document);
  virtual void documentToBeDestroyed(GcApDocument* document);
  virtual void documentDestroyed(const GCHAR* fileName);
  virtual void documentBecameCurrent(GcApDocument* document);
};

class GcApDocument : public GcRxObject {
 public:
  GCRX_DECLARE_MEMBERS(GcApDocument);
  [[nodiscard]] virtual GcDbDatabase* database() const = 0;
  [[nodiscard]] virtual const GCHAR* fileName() const = 0;
};

class GcApDocManager : public GcRxObject {
 public:
  GCRX_DECLARE_MEMBERS(GcApDocManager);
  [[nodiscard]] virtual GcApDocument* curDocument() const = 0;  // null when none is open
  virtual void addReactor(GcApDocManagerReactor* reactor) = 0;
  virtual void removeReactor(GcApDocManagerReactor* reactor) = 0;
  // Queues text for a document's command line; it runs after the running command and before the next form.
  virtual Gcad::ErrorStatus sendStringToExecute(GcApDocument* document, const GCHAR* text, bool activate = true,
                                                bool wrapUpInactiveDocument = false, bool echo = true) = 0;
};

// Null before the host has made it and after it is gone.
GcApDocManager* gcDocManagerPtr();
