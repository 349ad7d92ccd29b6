// Switching the reactor of the current document on and off.
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/docdata/docdata.h"

namespace {

GcApDocument* currentDocument() {
  const GcApDocManager* documents = gcDocManagerPtr();
  return documents != nullptr ? documents->curDocument() : nullptr;
}

}  // namespace

int addReact() {
  GcApDocument* document = currentDocument();
  if (document == nullptr) return RTERROR;
  CDocData& data = docDataManager.of(document);
  if (data.reactor == nullptr) data.reactor = std::make_unique<CObjReactor>(workingDatabase());
  return RTNORM;
}

int removeReact() {
  GcApDocument* document = currentDocument();
  if (document != nullptr) docDataManager.of(document).reactor.reset();
  return RTNORM;
}
