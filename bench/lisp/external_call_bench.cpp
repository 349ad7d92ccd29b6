// What one call of a host function costs the engine: evaluating the call, handing over the arguments, taking a result.
#include <benchmark/benchmark.h>

#include "host/lisp/core/interpreter.h"

namespace {

// Reads its arguments as a conversion to a result buffer chain would: every value and every list element once.
class ReadingHost : public lisp::HostCalls {
 public:
  void write(lisp::TextView) override {}
  lisp::LispValue callExternal(int code, lisp::Args& args) override {
    for (uint32_t i = 0; i < args.count(); ++i) {
      lisp::LispValue v = args[i];
      for (; v.isPair(); v = v.tail()) m_sum += v.head().isNumber() ? v.head().asDouble() : 0.0;
      if (v.isNumber()) m_sum += v.asDouble();
      if (v.isString()) m_sum += static_cast<double>(v.asString()->length);
    }
    return lisp::LispValue::integer(code);
  }
  double m_sum = 0;
};

void calls(benchmark::State& state, const char* form) {
  ReadingHost host;
  lisp::Environment environment;
  lisp::Interpreter interpreter(host, environment);
  interpreter.define(GC_T("host-call"), 7);
  interpreter.evalFormsFrom(GC_T("(setq p '(1.0 2.0 3.0) s \"ModelSpace\")"), GC_T("bench"));
  interpreter.evalFormsFrom(lisp::fromUtf8(std::string("(defun run () (repeat 1000 ") + form + "))"), GC_T("bench"));
  const lisp::LispValue run = interpreter.symbol(GC_T("run"));
  for (auto _ : state) benchmark::DoNotOptimize(interpreter.call(run, {}).value);
  state.SetItemsProcessed(state.iterations() * 1000);
}

}  // namespace

BENCHMARK_CAPTURE(calls, no_arguments, "(host-call)");
BENCHMARK_CAPTURE(calls, string_and_two_points, "(host-call s p p)");
BENCHMARK_CAPTURE(calls, new_point, "(host-call s (list 1.0 2.0 3.0) 5.0)");
BENCHMARK_CAPTURE(calls, builtin_for_comparison, "(strlen s)");
