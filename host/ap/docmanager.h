// The document manager: open documents, the current one, reactors, and who attaches parts to a new document.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "host/ap/document.h"

namespace ap {

// Gives each new document its parts (editor, LISP) before anybody is told of it.
class DocumentFitter {
 public:
  virtual ~DocumentFitter() = default;
  virtual void fit(Document& document) = 0;
};

// Files are looked for as they are named, beside the current drawing, and along the support path.
class HostServices final : public GcDbHostApplicationServices {
 public:
  Gcad::ErrorStatus findFile(GcString& found, const GCHAR* name, GcDbDatabase* database) override;
};

class DocumentManager final : public GcApDocManager {
 public:
  DocumentManager();
  ~DocumentManager() override;  // closes all documents

  [[nodiscard]] GcApDocument* curDocument() const override { return m_current; }
  [[nodiscard]] Document* current() const { return m_current; }
  void addReactor(GcApDocManagerReactor* reactor) override;
  void removeReactor(GcApDocManagerReactor* reactor) override;
  Gcad::ErrorStatus sendStringToExecute(GcApDocument* document, const GCHAR* text, bool activate,
                                        bool wrapUpInactiveDocument, bool echo) override;

  // Fitters are called in the order in which they came; they stay the caller's.
  void addFitter(DocumentFitter* fitter) { m_fitters.push_back(fitter); }

  // Opens a document around a database and makes it current: at once, or when the program that runs now has ended.
  enum class Become : uint8_t { CurrentNow, CurrentLater };
  Document& open(std::unique_ptr<GcDbDatabase> database, GcView fileName, Become when = Become::CurrentNow);
  void close(Document& document);
  void setCurrent(Document* document);
  void setCurrentLater(Document& document) { m_next = &document; }
  // What is to become current later, which is forgotten by this; null when nothing is.
  [[nodiscard]] Document* takeNext() { return std::exchange(m_next, nullptr); }
  [[nodiscard]] bool hasNext() const { return m_next != nullptr; }
  // When nothing runs in it any more; another one becomes current, now where no program runs.
  void closeLater(Document& document, Become when);
  // Makes current what was to become so later.
  void bringForward();
  // The same, and closes what was to be closed and is in use no more. A new drawing takes the place of the last one.
  void settle();
  [[nodiscard]] const std::vector<std::unique_ptr<Document>>& documents() const { return m_documents; }

 private:
  template <class Call>
  void tellReactors(const Call& call);

  HostServices m_services;
  std::vector<DocumentFitter*> m_fitters;
  std::vector<GcApDocManagerReactor*> m_reactors;
  std::vector<std::unique_ptr<Document>> m_documents;
  Document* m_current = nullptr;
  Document* m_next = nullptr;
};

// The one document manager of the process; null before it is made and after it is gone.
DocumentManager* documents();
// The current document; null when none is open.
Document* currentDocument();

}  // namespace ap
