// The LISP name space of a document: interpreter, host side, environment, functions of plug-ins.
#pragma once

#include "host/ap/docmanager.h"
#include "host/lisp/lib/drawingenvironment.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/reactors.h"

namespace lisplib {

class DocumentLisp final : public ap::LispSpace {
 public:
  DocumentLisp(ap::Document& document, const lisp::InterpreterOptions& options);
  ~DocumentLisp() override;

  lisp::Interpreter& interpreter() { return m_interpreter; }
  DrawingHost& host() { return m_host; }

  bool define(GcView name, int code) override;
  bool undefine(GcView name, int code) override;
  bool registerFunction(int (*function)(), int code) override;
  void forgetPlugIn(const void* plugIn) override;
  void evaluate(GcView text) override;
  bool runCommand(GcView name) override;
  [[nodiscard]] bool endWanted() const override { return m_interpreter.endWanted(); }
  ap::LispNumber numberIn(GcView variable) override;
  void putNumber(GcView variable, const ap::LispNumber& number) override;
  bool convertUnits(double& value, GcView from, GcView to) override;
  GcText lengthText(double value, int unit, int precision, int zeros) override;
  GcText angleText(double radians, int unit, int precision) override;
  GcText macroText(GcView text) override;
  bool variableText(GcView variable, GcText& text) override;
  void flush() override;

 private:
  DrawingHost m_host;
  DrawingEnvironment m_environment;
  lisp::Interpreter m_interpreter;
  LispReactors m_reactors;
};

// Gives every new document its editor and its LISP.
class LispFitter final : public ap::DocumentFitter {
 public:
  explicit LispFitter(const lisp::VmLimits& limits);
  void fit(ap::Document& document) override;

 private:
  lisp::InterpreterOptions m_options;
};

// The LISP of a document.
DocumentLisp& lispOf(const ap::Document& document);

}  // namespace lisplib
