// The embedding interface of the LISP engine: one interpreter per document. Hosts include this header, and builtin.h
// to add builtins of their own.
//
// Errors: no member throws a LISP error; evaluation returns an EvalResult. Main thread only, but for interrupt() and
// timeLimit(). Values are plain 64-bit words; those a host keeps across evaluations are held in a Root (vm.h).
#pragma once

#include <memory>
#include <span>

#include "host/lisp/core/vm.h"

namespace lisp {

enum class EvalStatus : uint8_t {
  Done,
  Error,      // reported already: by *error*, or printed
  Exit,       // exit or quit; exitCode says with what
  Cancelled,  // interrupted
  TimeLimit,
  MemoryLimit,
};

struct EvalResult {
  EvalStatus status = EvalStatus::Done;
  LispValue value;  // root it before the next evaluation if it is to stay
  Text message;     // of the error
  int exitCode = 0;
  bool endsAll = false;          // a limit of the whole process
  std::vector<TraceLine> trace;  // innermost function first, with file and line
};

// What becomes of an error that no program catches.
enum class OnError : uint8_t {
  Report,     // *error* is called, or the message printed, where the error arises
  Propagate,  // only returned
};

// Runs between the top-level forms of a text.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  // Called after each form; false ends the evaluation of the text.
  virtual bool formDone(LispValue value) = 0;
};

struct InterpreterOptions {
  VmLimits limits;
  std::shared_ptr<SharedSpace> shared;  // blackboard and registry in common; null: of its own
};

class Interpreter {
 public:
  // Host and environment must outlive the interpreter.
  Interpreter(HostCalls& host, Environment& environment, InterpreterOptions options = {});
  ~Interpreter();
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  // Evaluates the forms of a text one after the other; the value is the last form's. `name` appears in messages.
  EvalResult evalFormsFrom(TextView text, TextView name, FormObserver* observer = nullptr, OnError = OnError::Report);
  // The same for the bytes of a file: UTF-8, or the environment's legacy code page.
  EvalResult evalFile(std::string_view bytes, TextView name, FormObserver* observer = nullptr);
  EvalResult eval(LispValue form, OnError = OnError::Report);
  EvalResult call(LispValue function, std::span<const LispValue> arguments, OnError = OnError::Propagate);

  // After an evaluation that ran within another, with host code between them: what ends a program (a time limit, the
  // person) ends the one around it at its next safe point.
  void endAround(const EvalResult& inner);

  // Functions that programs call and the host runs (HostCalls::callExternal). Defining replaces; undefining makes the
  // name unknown again, provided that it still holds the external function.
  void define(TextView name, int code);
  void undefine(TextView name);

  LispValue integer(int32_t i) const { return LispValue::integer(i); }
  LispValue real(double d) const { return LispValue::real(d); }
  LispValue string(TextView text) { return m_vm.heap().string(text); }
  LispValue symbol(TextView name);
  LispValue cons(LispValue head, LispValue tail) { return m_vm.heap().cons(head, tail); }
  LispValue entityName(uint64_t id);
  LispValue selectionSet(uint64_t handle);
  LispValue opaque(const OpaqueType& type, uint64_t payload);

  LispValue variable(TextView name);
  void setVariable(TextView name, LispValue value);
  Text print(LispValue value, PrintStyle style = PrintStyle::Quoted) { return m_vm.print(value, style); }
  // Hands on what has been printed but still lies in the buffer.
  void flush() { m_vm.flush(); }

  // From any thread: the running program ends with "Function cancelled", or because a limit is reached. Programs can
  // catch the first; of a limit their *error* learns, with a little time for it.
  void interrupt() { m_vm.requestInterrupt(); }
  void timeLimit() { m_vm.requestTimeLimit(); }
  void memoryLimit() { m_vm.requestMemoryLimit(); }
  [[nodiscard]] bool endWanted() const { return m_vm.endWanted(); }

  Vm& vm() { return m_vm; }

 private:
  template <class Work>
  EvalResult guarded(OnError onError, Work work);

  Vm m_vm;
};

}  // namespace lisp
