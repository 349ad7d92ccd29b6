// One running host: terminal, document manager, plug-ins, LISP. Made once per process.
#pragma once

#include <memory>

#include "cli/options.h"
#include "cli/screenlog.h"
#include "cli/terminal.h"
#include "host/ap/docmanager.h"
#include "host/ap/dynamiclinker.h"
#include "host/ap/output.h"
#include "host/ed/commandline.h"
#include "host/ed/commandstack.h"
#include "host/lisp/lib/documentlisp.h"

namespace cli {

class Session final : private ap::Output {
 public:
  Session(Terminal& terminal, const RunOptions& options);
  ~Session() override;

  // Loads the plug-in beside the program, or the one named. A missing default plug-in is no failure.
  // Exit code: kDone, or kUsage with the reason told.
  int loadPlugIn();
  // Opens the drawing named by the options, or a new one. Exit code: kDone, or kCannotRead with the reason told.
  int openDrawing();

  // Records what the screen would show in the file named by the options, if any. Exit code: kDone, or kCannotWrite.
  int openScreenLog();
  // kCannotWrite, told, when the record has not been written whole.
  int checkScreenLog() const;
  // Lets prompts be answered from the file named by the options, if any. Exit code: kDone, or kCannotRead.
  int openInput();
  // Text queued for the document's command line runs now, unless a command is running.
  void runQueued();

  // Collects what the command line shows instead of showing it; null ends that.
  void capture(std::string* text) { m_capture = text; }

  Terminal& terminal() { return m_terminal; }
  [[nodiscard]] ap::Document& document() const { return *m_manager->current(); }
  [[nodiscard]] ap::DocumentManager& documents() const { return *m_manager; }
  lisp::Interpreter& lisp() { return lisplib::lispOf(document()).interpreter(); }
  lisplib::DrawingHost& host() { return lisplib::lispOf(document()).host(); }
  [[nodiscard]] ed::CommandLine& commandLine() const { return ed::editorOf(document()).commandLine(); }
  ap::DynamicLinker& linker() { return *m_linker; }

 private:
  void write(GcView text) override;

  Terminal& m_terminal;
  std::string* m_capture = nullptr;
  std::unique_ptr<ed::InputSource> m_input;
  std::unique_ptr<ScreenLog> m_screenLog;
  const RunOptions& m_options;
  ed::CommandStack m_commandStack;
  std::unique_ptr<ap::DynamicLinker> m_linker;
  std::unique_ptr<lisplib::LispFitter> m_fitter;
  std::unique_ptr<ap::DocumentManager> m_manager;
};

}  // namespace cli
