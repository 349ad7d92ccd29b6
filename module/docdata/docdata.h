// What the module keeps for a document: the reactor that `addreact` switched on.
#pragma once

#include <memory>

#include "module/docdata/datamanager.h"
#include "module/reactor/objreactor.h"

struct CDocData {
  std::unique_ptr<CObjReactor> reactor;  // null: switched off
};

// The records of all documents. Made when the module is loaded, gone when it is unloaded.
extern GcApDataManager<CDocData> docDataManager;
