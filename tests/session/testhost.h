// A running host without a terminal: what its command line shows is collected.
#pragma once

#include <memory>
#include <string>

#include "host/ap/docmanager.h"
#include "host/ap/dynamiclinker.h"
#include "host/ap/output.h"
#include "host/db/core/undo.h"
#include "host/ed/commandline.h"
#include "host/ed/commandstack.h"
#include "host/lisp/lib/documentlisp.h"
#include "host/rx/text/utf.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#else
inline void __lsan_disable() {}
inline void __lsan_enable() {}
#endif

// While one lives, what stays allocated is no leak: the texts of named values do on purpose, and once the module is gone
// nobody can name who allocated them.
class TextsStay {
 public:
  TextsStay() { __lsan_disable(); }
  ~TextsStay() { __lsan_enable(); }
  TextsStay(const TextsStay&) = delete;
  TextsStay& operator=(const TextsStay&) = delete;
};

class TestHost final : private ap::Output {
 public:
  TestHost() {
    ap::setOutput(this);
    manager->addFitter(&m_fitter);
  }
  ~TestHost() override {
    linker.reset();
    manager.reset();
    ap::setOutput(nullptr);
  }
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  static GcText modulePath() { return gc::fromUtf8(GC_BIN_DIR "/VrkEntPropertyEx.grx"); }
  bool loadModule() { return linker->loadModule(modulePath().c_str(), true); }

  ap::Document& open() {
    ap::Document& document = manager->open(std::make_unique<GcDbDatabase>(), {});
    document.database()->undo().setOn(true);
    return document;
  }

  // Evaluates in a document, which becomes the current one; the printed value, or the message of an error. Queued
  // text runs behind it.
  std::string evaluate(ap::Document& document, const char* form) {
    manager->setCurrent(&document);
    lisp::Interpreter& lisp = lisplib::lispOf(document).interpreter();
    const lisp::EvalResult result = lisp.evalFormsFrom(gc::fromUtf8(form), GC_T("test"));
    runQueued(document);
    lisp.flush();
    return gc::toUtf8(result.status == lisp::EvalStatus::Done ? lisp.print(result.value) : result.message);
  }

  static void runQueued(ap::Document& document) {
    GcText text;
    while (document.takeQueuedText(text)) ed::editorOf(document).commandLine().type(text);
  }

  // What the command line has shown since the last call.
  std::string takeShown() { return std::exchange(m_shown, {}); }

 private:
  void write(GcView text) override { gc::appendToUtf8(text, m_shown); }

  std::string m_shown;
  ed::CommandStack m_commandStack;
  lisplib::LispFitter m_fitter{lisp::VmLimits()};

 public:
  std::unique_ptr<ap::DynamicLinker> linker = std::make_unique<ap::DynamicLinker>();
  std::unique_ptr<ap::DocumentManager> manager = std::make_unique<ap::DocumentManager>();
};
