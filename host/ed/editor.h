// The editor's state of one document: what belongs to neither the drawing nor LISP.
#pragma once

#include <memory>

#include "host/ap/document.h"
#include "host/ed/selectionsets.h"

namespace ed {

class Editor final : public ap::DocumentPart {
 public:
  explicit Editor(ap::Document& document);
  ~Editor() override;

  [[nodiscard]] ap::Document& document() const { return m_document; }
  [[nodiscard]] GcDbDatabase& database() const { return *m_document.database(); }
  SelectionSets& sets() { return m_sets; }

 private:
  ap::Document& m_document;
  SelectionSets m_sets;
};

// The editor of a document, and of the current one (which must exist).
Editor& editorOf(const ap::Document& document);
Editor& currentEditor();

}  // namespace ed
