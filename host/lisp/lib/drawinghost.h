// What LISP asks of the drawing it works in: the interpreter's host side of one document.
#pragma once

#include <map>
#include <memory>

#include "db/database.h"
#include "host/db/entlist/entitymake.h"
#include "host/ed/editor.h"
#include "host/lisp/core/interpreter.h"
#include "host/lisp/lib/argumentchain.h"

namespace ap {
class PlugIn;
}

namespace lisplib {

class LispReactors;

// A call of a plug-in's function while it runs. Calls nest: a function may run a command that calls LISP.
struct ExternalCall {
  ExternalCall* outer;
  lisp::Vm& vm;
  resbuf* arguments;
  int code;
  lisp::Root result;
};

// The innermost call; null outside calls.
ExternalCall* currentCall();

// Objects that a function left open, found after its call.
struct OpenNote {
  lisp::Text function;
  std::vector<GcDbObjectId> objects;
};

class DrawingHost : public lisp::HostCalls {
 public:
  DrawingHost(ap::Document& document, ed::Editor& editor) : m_document(document), m_editor(editor) {}

  [[nodiscard]] ap::Document& document() const { return m_document; }
  [[nodiscard]] ed::Editor& editor() const { return m_editor; }
  [[nodiscard]] GcDbDatabase& database() const { return *m_document.database(); }

  // Functions of plug-ins. The index is the code under which LISP calls back.
  struct Function {
    ap::PlugIn* plugIn;
    int code;
    int (*direct)();  // called instead of an invoke message; null for most
    lisp::Text name;
  };
  int addFunction(ap::PlugIn* plugIn, int code, lisp::TextView name);
  std::vector<Function>& functions() { return m_functions; }

  // What entmake has begun and not ended, and how far walks through tables and dictionaries have come.
  GcDbEntityMaker& entityMaker();
  int& tablePosition(GcDbDatabase::Table table) { return m_tablePositions[table]; }
  int& dictionaryPosition(GcDbObjectId dictionary) { return m_dictionaryPositions[dictionary]; }

  // Reactors of the document's programs; null while LISP is being made or ended.
  LispReactors* reactors() const { return m_reactors; }
  void setReactors(LispReactors* reactors) { m_reactors = reactors; }
  // For builtins that change the drawing, as their last deed: calls the reactors' functions that are due. The value
  // is handed through and kept meanwhile.
  lisp::LispValue settled(lisp::Vm& vm, lisp::LispValue value);

  // What has been left open since the notes were taken last.
  std::vector<OpenNote> takeOpenNotes() { return std::move(m_openNotes); }

  // lisp::HostCalls
  void write(lisp::TextView text) override;
  bool readLine(lisp::Text& line) override;
  lisp::LispValue callExternal(int code, lisp::Args& args) override;
  void formatEntityName(uint64_t id, lisp::Text& out) override;
  void releaseSelectionSet(uint64_t handle) override;
  const char* reasonUnavailable(lisp::TextView name) override;
  void alert(lisp::TextView text) override;

 private:
  void noteOpen(const Function& function);

  ap::Document& m_document;
  ed::Editor& m_editor;
  std::vector<Function> m_functions;
  LispReactors* m_reactors = nullptr;
  NodeStock m_nodes;
  std::vector<OpenNote> m_openNotes;
  std::unique_ptr<GcDbEntityMaker> m_entityMaker;
  int m_tablePositions[GcDbDatabase::kTableCount] = {};
  std::map<GcDbObjectId, int> m_dictionaryPositions;
};

// The host side of an interpreter; every interpreter that has the builtins of this folder has one.
inline DrawingHost& hostOf(lisp::Vm& vm) { return static_cast<DrawingHost&>(vm.host()); }

// The last deed of a builtin that has changed the drawing: see DrawingHost::settled.
inline lisp::LispValue settled(lisp::Args& args, lisp::LispValue value) {
  return hostOf(args.vm()).settled(args.vm(), value);
}

// A LISP value for a set; it holds the set. nil for number 0.
lisp::LispValue makeSet(lisp::Vm& vm, ed::SetNumber number);
// The same for a set made for this value alone: the value takes over the one hold.
lisp::LispValue adoptSet(lisp::Vm& vm, ed::SetNumber number);

}  // namespace lisplib
