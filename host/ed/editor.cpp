#include "host/ed/editor.h"

#include "host/ap/docmanager.h"
#include "rx/gcassert.h"

namespace ed {

Editor::Editor(ap::Document& document) : m_document(document) {}
Editor::~Editor() = default;

Editor& editorOf(const ap::Document& document) {
  GC_ASSERT(document.editor() != nullptr, "a document has its editor before anybody is told of it");
  return static_cast<Editor&>(*document.editor());
}

Editor& currentEditor() {
  const ap::Document* document = ap::currentDocument();
  GC_ASSERT(document != nullptr, "an editor needs a document");
  return editorOf(*document);
}

}  // namespace ed
