#include "host/ap/docmanager.h"

#include <algorithm>
#include <utility>

#include "host/ap/dynamiclinker.h"
#include "host/ap/paths.h"
#include "host/ap/profile.h"

namespace ap {

namespace {
DocumentManager* g_manager = nullptr;
}

DocumentManager* documents() { return g_manager; }
Document* currentDocument() { return g_manager == nullptr ? nullptr : g_manager->current(); }

Gcad::ErrorStatus HostServices::findFile(GcString& found, const GCHAR* name, GcDbDatabase* database) {
  const Document* document = currentDocument();
  GcView beside = document == nullptr ? GcView() : directoryOf(document->fileName());
  // A drawing that is in no document (one that another refers to) looks beside its own file.
  const bool isApart = database != nullptr && (document == nullptr || document->database() != database);
  if (isApart && !database->getFilename().isEmpty()) beside = directoryOf(view(database->getFilename()));
  const GcText file = findSupportFile(view(name), beside);
  if (file.empty()) return Gcad::eFileNotFound;
  found = toGcString(file);
  return Gcad::eOk;
}

DocumentManager::DocumentManager() {
  g_manager = this;
  gcdbSetHostApplicationServices(&m_services);
}

DocumentManager::~DocumentManager() {
  while (!m_documents.empty()) close(*m_documents.back());
  g_manager = nullptr;
  gcdbSetHostApplicationServices(nullptr);
}

// Reactors may take themselves (or each other) out while they are told.
template <class Call>
void DocumentManager::tellReactors(const Call& call) {
  const std::vector<GcApDocManagerReactor*> reactors = m_reactors;
  for (GcApDocManagerReactor* reactor : reactors)
    if (std::find(m_reactors.begin(), m_reactors.end(), reactor) != m_reactors.end()) call(*reactor);
}

void DocumentManager::addReactor(GcApDocManagerReactor* reactor) {
  if (reactor != nullptr && std::find(m_reactors.begin(), m_reactors.end(), reactor) == m_reactors.end())
    m_reactors.push_back(reactor);
}

void DocumentManager::removeReactor(GcApDocManagerReactor* reactor) { std::erase(m_reactors, reactor); }

Gcad::ErrorStatus DocumentManager::sendStringToExecute(GcApDocument* document, const GCHAR* text, bool, bool, bool) {
  if (text == nullptr) return Gcad::eInvalidInput;
  for (const auto& open : m_documents) {
    if (open.get() != document) continue;
    open->queueText(text);
    return Gcad::eOk;
  }
  return Gcad::eInvalidInput;
}

Document& DocumentManager::open(std::unique_ptr<GcDbDatabase> database, GcView fileName, Become when) {
  Document& document = *m_documents.emplace_back(std::make_unique<Document>(std::move(database), fileName));
  for (DocumentFitter* fitter : m_fitters) fitter->fit(document);
  tellReactors([&](GcApDocManagerReactor& reactor) { reactor.documentCreated(&document); });
  Document* before = m_current;
  setCurrent(&document);
  if (DynamicLinker* linker = dynamicLinker()) linker->documentOpened();
  if (when == Become::CurrentLater && before != nullptr) {
    setCurrent(before);
    setCurrentLater(document);
  }
  return document;
}

void DocumentManager::bringForward() {
  if (m_next != nullptr) setCurrent(std::exchange(m_next, nullptr));
}

void DocumentManager::closeLater(Document& document, Become when) {
  document.setToBeClosed();
  if (m_next != nullptr && m_next != &document) return;
  const auto other = std::find_if(m_documents.rbegin(), m_documents.rend(),
                                  [](const std::unique_ptr<Document>& each) { return !each->isToBeClosed(); });
  m_next = other == m_documents.rend() ? nullptr : other->get();
  if (when == Become::CurrentNow) bringForward();
}

void DocumentManager::settle() {
  bringForward();
  const auto mayGo = [](const std::unique_ptr<Document>& each) { return each->isToBeClosed() && !each->isInUse(); };
  for (;;) {
    const auto at = std::find_if(m_documents.begin(), m_documents.end(), mayGo);
    if (at == m_documents.end()) return;
    if (m_documents.size() == 1) open(std::make_unique<GcDbDatabase>(), GcView());
    close(**std::find_if(m_documents.begin(), m_documents.end(), mayGo));
  }
}

void DocumentManager::setCurrent(Document* document) {
  if (document == m_current) return;
  m_current = document;
  gcdbHostApplicationServices()->setWorkingDatabase(document == nullptr ? nullptr : document->database());
  if (document != nullptr)
    tellReactors([&](GcApDocManagerReactor& reactor) { reactor.documentBecameCurrent(document); });
}

void DocumentManager::close(Document& document) {
  Document* before = m_current == &document ? nullptr : m_current;
  if (m_next == &document) m_next = nullptr;
  setCurrent(&document);
  if (DynamicLinker* linker = dynamicLinker()) linker->documentCloses();
  tellReactors([&](GcApDocManagerReactor& reactor) { reactor.documentToBeDestroyed(&document); });
  const GcText name = document.fileName();
  const auto at = std::find_if(m_documents.begin(), m_documents.end(),
                               [&](const std::unique_ptr<Document>& open) { return open.get() == &document; });
  const std::unique_ptr<Document> dying = std::move(*at);
  m_documents.erase(at);
  // LISP and editor go while their document is still the current one: what they hold may ask for it.
  dying->setLisp(nullptr);
  dying->setEditor(nullptr);
  setCurrent(before != nullptr ? before : m_documents.empty() ? nullptr : m_documents.back().get());
  tellReactors([&](GcApDocManagerReactor& reactor) { reactor.documentDestroyed(name.c_str()); });
}

}  // namespace ap

GcApDocManager* gcDocManagerPtr() { return ap::documents(); }
