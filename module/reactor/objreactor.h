// Tells the LISP application of entities of its own that come and go.
//
// An entity is the application's own ("marked") when its extended data has an application whose name begins with
// ST_ or ZB_, in any case. The reactor queues a LISP expression with the entity's handle on the command line of the
// current document; the host evaluates it after the running command. Nothing is queued while one of the commands
// that bring whole states back is running.
#pragma once

#include "module/app/host.h"

class CObjReactor : public GcDbDatabaseReactor {
 public:
  // Listens to the database, which it does not own; null: to none.
  explicit CObjReactor(GcDbDatabase* database = nullptr);
  CObjReactor(const CObjReactor&) = delete;
  CObjReactor& operator=(const CObjReactor&) = delete;
  ~CObjReactor() override;

  // The descriptor; before registration, whatever class has the name.
  static GcRxClass* desc();
  [[nodiscard]] GcRxClass* isA() const override;
  static void rxInit();

  void objectAppended(const GcDbDatabase* database, const GcDbObject* object) override;
  // Deliberate: told of an erase and of its undoing alike.
  void objectErased(const GcDbDatabase* database, const GcDbObject* object, bool erased) override;
  void goodbye(const GcDbDatabase* database) override;

 private:
  static GcRxClass* gpDesc;
  GcDbDatabase* m_database;
};
