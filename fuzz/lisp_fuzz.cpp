// Any bytes as a LISP program: reading, compiling and running it ends within its limits, and what a value prints as
// reads back as something that prints the same. Every second program runs with a collection at each safe point.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "host/lisp/core/interpreter.h"
#include "host/lisp/core/reader.h"
#include "host/lisp/core/watchdog.h"

namespace {

using namespace lisp;

class QuietHost : public HostCalls {
 public:
  void write(TextView) override {}
  void alert(TextView) override {}
  void diagnose(TextView) override {}
};

// Programs made by chance shall not touch files.
void takeAwayFiles(Interpreter& interpreter) {
  for (const char* name : {"open", "load", "autoload", "vl-load-all", "vl-file-delete", "vl-file-rename",
                           "vl-file-copy", "vl-mkdir", "vl-directory-files", "vl-filename-mktemp"})
    interpreter.setVariable(fromUtf8(name), LispValue::nil());
}

// Symbols may be printed in ways that read as something else (a symbol made by chance is never quoted), so only
// what has been read and printed once must be stable.
void printsAsItReads(Vm& vm, LispValue value) {
  const Text first = vm.print(value, PrintStyle::Quoted);
  try {
    LispValue again;
    Reader reader(first, vm.heap(), vm.symbols());
    if (!reader.next(again)) return;
    const Text second = vm.print(again, PrintStyle::Quoted);
    LispValue third;
    Reader rereader(second, vm.heap(), vm.symbols());
    if (!rereader.next(third) || vm.print(third, PrintStyle::Quoted) != second) std::abort();
  } catch (const LispError&) {
    // <Entity name: ...> and its like need not read.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  QuietHost host;
  Environment environment;
  InterpreterOptions options;
  options.limits.depth = 2000;
  options.limits.stackSlots = 100'000;
  options.limits.memory = 64u << 20;
  Interpreter interpreter(host, environment, options);
  takeAwayFiles(interpreter);
  interpreter.vm().setStress(size % 2 == 1);
  Watchdog watchdog(interpreter, 0.5);
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const EvalResult result = interpreter.evalFile(bytes, GC_T("fuzz"));
  if (result.status == EvalStatus::Done) printsAsItReads(interpreter.vm(), result.value);
  return 0;
}
