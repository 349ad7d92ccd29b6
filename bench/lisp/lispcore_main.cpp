// Runs LISP programs on the bare engine, without a drawing: lispcore [--stress] [-e FORM | FILE]...
// Exit code 1 after an error, whose back trace goes to the standard error.
#include <cstdio>
#include <cstring>

#include "host/lisp/core/file_handle.h"
#include "host/lisp/core/interpreter.h"

namespace {

void printTrace(const lisp::EvalResult& result) {
  if (result.status == lisp::EvalStatus::Done || result.status == lisp::EvalStatus::Exit) return;
  std::fprintf(stderr, "error: %s\n", lisp::toUtf8(result.message).c_str());
  for (const lisp::TraceLine& line : result.trace)
    std::fprintf(stderr, "  at %s (%s:%u:%u)\n", lisp::toUtf8(line.function).c_str(), lisp::toUtf8(line.file).c_str(),
                 line.line, line.column);
}

}  // namespace

int main(int argc, char** argv) {
  lisp::HostCalls host;
  lisp::Environment environment;
  lisp::Interpreter interpreter(host, environment);
  bool statistics = false;
  int code = 0;
  for (int i = 1; i < argc && code == 0; ++i) {
    const std::string_view argument = argv[i];
    lisp::EvalResult result;
    if (argument == "--stress") {
      interpreter.vm().setStress(true);
      continue;
    }
    if (argument == "--statistics") {
      statistics = true;
      continue;
    }
    if (argument == "-e" && i + 1 < argc) {
      result = interpreter.evalFormsFrom(lisp::fromUtf8(argv[++i]), GC_T("-e"));
    } else {
      std::string bytes;
      if (!lisp::files::readWhole(lisp::fromUtf8(argument), bytes)) {
        std::fprintf(stderr, "cannot read %s\n", argv[i]);
        return 2;
      }
      result = interpreter.evalFile(bytes, lisp::fromUtf8(argument));
    }
    printTrace(result);
    code = result.status == lisp::EvalStatus::Done ? 0 : result.status == lisp::EvalStatus::Exit ? result.exitCode : 1;
  }
  if (statistics) {
    const auto& heap = interpreter.vm().heap().statistics();
    std::fprintf(stderr, "heap %.1f MB, %llu collections, longest pause %.2f ms, pauses %.1f ms in all\n",
                 static_cast<double>(heap.bytes) / 1e6, static_cast<unsigned long long>(heap.collections),
                 heap.longestPauseS * 1e3, heap.totalPauseS * 1e3);
  }
  return code;
}
