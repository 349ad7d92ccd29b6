#include "host/lisp/lib/documentlisp.h"

#include "host/ap/dynamiclinker.h"
#include "host/ed/patterns.h"
#include "host/ed/xrefs.h"
#include "host/lisp/core/diesel.h"
#include "host/lisp/core/printer.h"
#include "host/lisp/core/units.h"
#include "host/lisp/core/wcmatch.h"
#include "host/lisp/lib/calculations.h"

namespace lisplib {

DocumentLisp::DocumentLisp(ap::Document& document, const lisp::InterpreterOptions& options)
    : m_host(document, ed::editorOf(document)),
      m_environment(ed::editorOf(document)),
      m_interpreter(m_host, m_environment, options),
      m_reactors(document, ed::editorOf(document), m_interpreter) {
  m_host.setReactors(&m_reactors);
}

DocumentLisp::~DocumentLisp() { m_host.setReactors(nullptr); }

namespace {
ap::PlugIn* sender() {
  const ap::DynamicLinker* linker = ap::dynamicLinker();
  return linker == nullptr ? nullptr : linker->current();
}
}  // namespace

bool DocumentLisp::define(GcView name, int code) {
  ap::PlugIn* plugIn = sender();
  if (name.empty() || plugIn == nullptr) return false;
  m_interpreter.define(name, m_host.addFunction(plugIn, code, name));
  return true;
}

bool DocumentLisp::undefine(GcView name, int code) {
  ap::PlugIn* plugIn = sender();
  for (DrawingHost::Function& function : m_host.functions()) {
    if (function.plugIn != plugIn || function.code != code || function.name != name) continue;
    m_interpreter.undefine(name);
    function = {};
    return true;
  }
  return false;
}

bool DocumentLisp::registerFunction(int (*function)(), int code) {
  ap::PlugIn* plugIn = sender();
  for (DrawingHost::Function& known : m_host.functions()) {
    if (known.plugIn != plugIn || known.code != code || plugIn == nullptr) continue;
    known.direct = function;
    return true;
  }
  return false;
}

void DocumentLisp::forgetPlugIn(const void* plugIn) {
  for (DrawingHost::Function& function : m_host.functions()) {
    if (function.plugIn != plugIn) continue;
    m_interpreter.undefine(function.name);
    function = {};
  }
}

namespace {
ReactorEvent endOf(const lisp::EvalResult& result) {
  return result.status == lisp::EvalStatus::Done ? ReactorEvent::LispEnded : ReactorEvent::LispCancelled;
}
}  // namespace

void DocumentLisp::evaluate(GcView text) {
  m_reactors.lispHappened(ReactorEvent::LispWillStart, text);
  const lisp::EvalResult result = m_interpreter.evalFormsFrom(text, GC_T("command line"));
  m_interpreter.endAround(result);
  m_reactors.lispHappened(endOf(result), text);
}

bool DocumentLisp::runCommand(GcView name) {
  const lisp::LispValue function = m_interpreter.variable(GcText(GC_T("C:")) + upperText(name));
  if (!function) return false;
  const GcText form = GcText(GC_T("(C:")) + upperText(name) + GC_T(")");
  m_reactors.lispHappened(ReactorEvent::LispWillStart, form);
  const lisp::Root kept(m_interpreter.vm(), function);
  const lisp::EvalResult result = m_interpreter.call(function, {}, lisp::OnError::Report);
  m_interpreter.endAround(result);
  m_reactors.lispHappened(endOf(result), form);
  return true;
}

ap::LispNumber DocumentLisp::numberIn(GcView variable) { return numberOf(m_interpreter.variable(upperText(variable))); }

void DocumentLisp::putNumber(GcView variable, const ap::LispNumber& number) {
  m_interpreter.setVariable(upperText(variable), valueOf(m_interpreter.vm(), number));
}

bool DocumentLisp::convertUnits(double& value, GcView from, GcView to) { return lisp::convertUnits(value, from, to); }

GcText DocumentLisp::lengthText(double value, int unit, int precision, int zeros) {
  return lisp::formatLength(value, static_cast<lisp::LengthFormat>(unit), precision, zeros);
}

GcText DocumentLisp::angleText(double radians, int unit, int precision) {
  return lisp::formatAngle(radians, static_cast<lisp::AngleFormat>(unit), precision, 0, false);
}

GcText DocumentLisp::macroText(GcView text) { return lisp::evaluateMacro(text, m_environment); }

bool DocumentLisp::variableText(GcView variable, GcText& text) {
  const lisp::LispValue value = m_interpreter.variable(upperText(variable));
  if (!value) return false;
  text.clear();
  lisp::appendValue(text, value, lisp::PrintStyle::Raw, m_interpreter.vm());
  return true;
}

void DocumentLisp::flush() { m_interpreter.flush(); }

LispFitter::LispFitter(const lisp::VmLimits& limits) {
  ed::setPatternMatcher(lisp::wildcardMatch);
  m_options.limits = limits;
  m_options.shared = std::make_shared<lisp::SharedSpace>();
}

void LispFitter::fit(ap::Document& document) {
  document.setEditor(std::make_unique<ed::Editor>(document));
  document.setLisp(std::make_unique<DocumentLisp>(document, m_options));
  ed::resolveXrefs(ed::editorOf(document));
}

DocumentLisp& lispOf(const ap::Document& document) { return static_cast<DocumentLisp&>(*document.lisp()); }

}  // namespace lisplib
