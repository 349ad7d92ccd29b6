#include "host/ap/document.h"

namespace ap {

Document::Document(std::unique_ptr<GcDbDatabase> database, GcView fileName)
    : m_database(std::move(database)), m_fileName(fileName) {}

Document::~Document() {
  m_lisp.reset();
  m_editor.reset();
}

bool Document::takeQueuedText(GcText& text) {
  if (m_queue.empty()) return false;
  text = std::move(m_queue.front());
  m_queue.pop_front();
  return true;
}

}  // namespace ap
