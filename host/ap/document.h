// An open drawing: database, file name, queued text, and the parts of editor and LISP.
#pragma once

#include <deque>
#include <memory>

#include "ap/docman.h"
#include "db/database.h"
#include "host/ap/documentpart.h"

namespace ap {

class Document final : public GcApDocument {
 public:
  // An empty file name is a new drawing.
  Document(std::unique_ptr<GcDbDatabase> database, GcView fileName);
  ~Document() override;

  [[nodiscard]] GcDbDatabase* database() const override { return m_database.get(); }
  [[nodiscard]] const GCHAR* fileName() const override { return m_fileName.c_str(); }
  void setFileName(GcView name) { m_fileName = name; }

  // Null until the layer has attached its part. Parts die in the reverse order: LISP, editor.
  [[nodiscard]] LispSpace* lisp() const { return m_lisp.get(); }
  void setLisp(std::unique_ptr<LispSpace> part) { m_lisp = std::move(part); }
  [[nodiscard]] DocumentPart* editor() const { return m_editor.get(); }
  void setEditor(std::unique_ptr<DocumentPart> part) { m_editor = std::move(part); }

  // Text that waits for the command line.
  void queueText(GcView text) { m_queue.emplace_back(text); }
  void queueTextFirst(GcView text) { m_queue.emplace_front(text); }
  bool takeQueuedText(GcText& text);

  // Whoever has a program or typed text running in the document holds one of these: it is not closed meanwhile.
  class Use {
   public:
    explicit Use(Document& document) : m_document(document) { ++document.m_uses; }
    ~Use() { --m_document.m_uses; }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

   private:
    Document& m_document;
  };
  [[nodiscard]] bool isInUse() const { return m_uses > 0; }
  // To be closed as soon as nothing runs in it.
  [[nodiscard]] bool isToBeClosed() const { return m_toBeClosed; }
  void setToBeClosed() { m_toBeClosed = true; }

 private:
  std::unique_ptr<GcDbDatabase> m_database;
  std::unique_ptr<DocumentPart> m_editor;
  std::unique_ptr<LispSpace> m_lisp;
  std::deque<GcText> m_queue;
  GcText m_fileName;
  int m_uses = 0;
  bool m_toBeClosed = false;
};

}  // namespace ap
