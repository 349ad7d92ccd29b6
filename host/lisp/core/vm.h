// The evaluator: stacks, calls, errors, roots. Inside this folder and in builtins; hosts use interpreter.h.
//
// Three stacks that never move: values, frames, saved bindings. A call of a LISP function saves the values of its
// variables' symbols, sets them, and pushes a frame; nothing recurses in C++, so the depth is a number to choose.
// A builtin that calls functions owns a frame too (native.h). C++ code that calls back (call()) starts a run of its
// own on top of the stacks; such runs are limited in number, for they do use the C++ stack.
#pragma once

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <set>

#include "host/lisp/core/compiler.h"
#include "host/lisp/core/environment.h"
#include "host/lisp/core/function_cache.h"
#include "host/lisp/core/host_calls.h"
#include "host/lisp/core/native.h"
#include "host/lisp/core/printer.h"
#include "host/lisp/core/stack_memory.h"
#include "host/lisp/core/transfer_value.h"

namespace lisp {

struct Frame {
  const Word* pc;            // where it goes on; the instruction at work lies before
  Function* function;        // null: a builtin's frame, or the outermost of a run
  LispValue* base;           // arguments and temporaries
  struct Binding* bindings;  // saved bindings of this frame begin here
  const Subr* subr;          // builtin's frame only, as the rest
  uint32_t argCount;
  uint32_t state;
};

struct Binding {
  Symbol* symbol;
  LispValue saved;
};

// Symbols the interpreter itself refers to.
struct WellKnownNames {
  Symbol *quote, *lambda, *errorHandler, *t, *nil;
};

struct VmLimits {
  uint32_t depth = 400'000;       // nested calls
  size_t stackSlots = 16u << 20;  // values; 8 bytes each, real memory only as used
  size_t memory = 0;              // bytes, 0: none
};

// A value that stays alive. Lives in C++ variables; must end before its interpreter.
class Root {
 public:
  explicit Root(Vm& vm, LispValue value = {});
  ~Root();
  Root(const Root&) = delete;
  Root& operator=(const Root&) = delete;
  LispValue value;

 private:
  friend class Vm;
  Vm& m_vm;
  Root* m_previous;
  Root* m_next = nullptr;
};

// One line of a back trace, innermost first. The function is "-lambda-" when it has no name, "EVAL" for a form that a
// program made, and empty for a form at the top level of a text.
struct TraceLine {
  Text function;
  Text file;
  uint32_t line = 0;
  uint32_t column = 0;
};

// What several interpreters of one process share: the blackboard, and each other.
struct SharedSpace {
  std::map<Text, TransferValue> blackboard;
  std::map<Text, std::map<Text, Text>> registry;  // key, name: value in readable form
  std::set<Text> temporaryNames;
  std::vector<Vm*> members;
};

class Vm final : public HeapClient, public ObjectPrinter {
 public:
  Vm(HostCalls& host, Environment& environment, const VmLimits& limits, std::shared_ptr<SharedSpace> shared);
  ~Vm();
  Vm(const Vm&) = delete;
  Vm& operator=(const Vm&) = delete;

  Heap& heap() { return m_heap; }
  SymbolTable& symbols() { return m_symbols; }
  const WellKnownNames& names() const { return m_names; }
  FunctionCache& functionCache() { return m_functionCache; }
  HostCalls& host() { return m_host; }
  Environment& environment() { return m_environment; }
  SharedSpace& shared() { return *m_shared; }
  LispValue evalFunction() const { return m_evalFunction; }

  // Calls a function value (or a symbol or list that stands for one). Throws LispError.
  LispValue call(LispValue function, const LispValue* arguments, uint32_t count);
  LispValue eval(LispValue form, const CompileSource& source);
  // The compiled function a list stands for, and the function that evaluates a list as a form.
  Function* functionOf(LispValue list);
  Function* functionOfForm(LispValue form);

  void define(Symbol* symbol, LispValue builtin);
  Text print(LispValue value, PrintStyle style);
  void printObject(const Object& object, Text& out) override;
  void printing(size_t length) override;
  LispValue typeOf(LispValue value);
  void write(TextView text);
  void flush();
  bool isRunning() const { return m_runs > 0; }  // an evaluation is at work
  bool atLineStart() const { return m_atLineStart; }

  // From any thread.
  void requestInterrupt() { m_poll.fetch_or(kPollInterrupt, std::memory_order_relaxed); }
  void requestTimeLimit() { m_poll.fetch_or(kPollTimeLimit, std::memory_order_relaxed); }
  // The process takes more memory than it may, whether in this heap or elsewhere.
  void requestMemoryLimit() { m_poll.fetch_or(kPollMemoryLimit, std::memory_order_relaxed); }
  void clearInterrupts() { m_poll.fetch_and(~kPollEnd, std::memory_order_relaxed); }
  // Whether the program shall end: for long work of C++ code, which then stops and returns.
  bool endWanted() const { return (m_poll.load(std::memory_order_relaxed) & kPollEnd) != 0; }
  // The same for code that may throw: ends the program if that is wanted.
  void checkEnd() {
    if (endWanted()) [[unlikely]]
      endIfWanted(m_poll.fetch_and(~kPollEnd, std::memory_order_relaxed));
  }
  void setStress(bool on);
  void requestCollection() { m_poll.fetch_or(kPollHeap | kPollCollect, std::memory_order_relaxed); }

  // Innermost first; at most `limit` lines.
  std::vector<TraceLine> backTrace(size_t limit) const;
  TextView currentFunctionName() const;
  // Runs *error* or prints the message, with the erring function's bindings still in place.
  void report(LispError& error);
  const std::vector<TraceLine>& lastTrace() const { return m_lastTrace; }
  // Whether uncaught errors are reported where they arise (top-level forms) or only travel to the C++ caller.
  bool setReporting(bool on);

  void traceFunction(Symbol* symbol, bool on);
  int& printDepth() { return m_traceDepth; }

  // Values on their way to and from other interpreters.
  TransferValue transferable(LispValue value);
  LispValue transferred(const TransferValue& value);
  // False when the name has been given out before.
  bool takeTemporaryName(const Text& name) { return m_shared->temporaryNames.insert(name).second; }
  // What has been typed but not yet read by read-char.
  Text& typedText() { return m_typedText; }

  // Of vl-exit-with-value, on its way to the top.
  LispValue exitValue;
  // Errors of input functions, the ERRNO variable.
  int errorNumber = 0;
  // Directory of each file being loaded, innermost last.
  std::vector<Text> loadPath;

  // HeapClient
  void visitRoots(Marker& marker) override;
  bool visitWeak(Marker& marker) override;
  void dropDeadWeak(const Marker& marker) override;
  void release(SelectionSet& set) override;
  void requestSafePoint() override { m_poll.fetch_or(kPollHeap, std::memory_order_relaxed); }

 private:
  friend class Native;
  friend class Root;
  static constexpr uint32_t kPollHeap = 1;
  static constexpr uint32_t kPollInterrupt = 2;
  static constexpr uint32_t kPollTimeLimit = 4;
  static constexpr uint32_t kPollCollect = 8;
  static constexpr uint32_t kPollMemoryLimit = 16;
  static constexpr uint32_t kPollEnd = kPollInterrupt | kPollTimeLimit | kPollMemoryLimit;

  struct Entry {
    LispValue callee;
    uint32_t argCount;
    bool resume;  // go on with the frame on top instead of calling
  };

  LispValue execute(Entry entry);
  LispValue executeGuarded(Entry entry);
  void poll(LispValue callee);
  void endIfWanted(uint32_t requests);
  void installBuiltins();
  Subr* makeSubr(const Builtin& row, Symbol* name);
  LispValue resolveCallee(LispValue callee);
  LispValue applySpecial(const Subr& subr, const LispValue* arguments, uint32_t count);
  [[noreturn]] void failArity(uint32_t given, uint32_t wanted);
  [[noreturn]] void failNoFunction(const Symbol* symbol);
  [[noreturn]] void failDepth();
  void checkSubrArity(const Subr& subr, uint32_t count);
  LispValue coreBinary(Core id, LispValue left, LispValue right);
  bool coreTest(Core id, LispValue left, LispValue right);
  LispValue coreUnary(Core id, LispValue argument, uint32_t path);
  LispValue coreStep(Core id, LispValue argument, int32_t by);
  LispValue coreCall(Core id, const LispValue* arguments, uint32_t count);
  bool isIntact(Core id) { return m_symbols.core(id).value == m_symbols.core(id).builtin; }
  void unbindTo(Binding* mark);
  bool recover(const LispError& error, const Frame* entry);
  bool insideCatch() const;
  void describeFrame(const Frame& frame, TraceLine& line) const;
  void callHandler(LispValue handler, LispError& error);

  HostCalls& m_host;
  Environment& m_environment;
  std::shared_ptr<SharedSpace> m_shared;
  Heap m_heap;
  SymbolTable m_symbols;
  FunctionCache m_functionCache;  // lists used as functions
  FunctionCache m_formCache;      // lists evaluated as forms
  WellKnownNames m_names;
  StackMemory m_values;
  StackMemory m_frames;
  StackMemory m_saved;
  LispValue* m_valueLimit;
  Frame* m_frameLimit;
  Binding* m_bindingLimit;
  LispValue* m_top;       // first free value slot
  Frame* m_frame;         // the frame at work
  Binding* m_bindingTop;  // first free saved binding
  std::atomic<uint32_t> m_poll{0};
  LispValue m_callee;  // about to be called, at a safe point
  LispValue m_evalFunction;
  const Subr* m_catchSubr = nullptr;
  Subr* m_traceSubr = nullptr;
  Root* m_roots = nullptr;
  int m_runs = 0;
  int m_traceDepth = 0;
  bool m_reporting = false;
  bool m_inHandler = false;
  std::chrono::steady_clock::time_point m_handlerEnd;  // until then the handler of a limit is left alone
  bool m_atLineStart = true;
  Text m_output;
  Text m_typedText;
  std::vector<TraceLine> m_lastTrace;
};

}  // namespace lisp
