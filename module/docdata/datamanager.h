// One record of type Data for every document that asks for one; it goes when its document goes.
#pragma once

#include <map>

#include "module/app/host.h"

template <class Data>
class GcApDataManager : public GcApDocManagerReactor {
 public:
  // Listens to the document manager from its own construction on, which happens when the module is loaded.
  GcApDataManager() {
    if (GcApDocManager* documents = gcDocManagerPtr()) documents->addReactor(this);
  }
  GcApDataManager(const GcApDataManager&) = delete;
  GcApDataManager& operator=(const GcApDataManager&) = delete;
  // The document manager may be gone by the time the module is unloaded.
  ~GcApDataManager() override {
    if (GcApDocManager* documents = gcDocManagerPtr()) documents->removeReactor(this);
    m_records.clear();
  }

  // The document's record, made at the first call.
  Data& of(GcApDocument* document) { return m_records[document]; }
  void documentToBeDestroyed(GcApDocument* document) override { m_records.erase(document); }

 private:
  std::map<GcApDocument*, Data> m_records;
};
