// gcad: the program's entry point on both platforms. Arguments are UTF-8 from here on.
#include <exception>
#include <string>
#include <vector>

#include "cli/audit.h"
#include "cli/batch.h"
#include "cli/convert.h"
#include "cli/exitcode.h"
#include "cli/functions.h"
#include "cli/info.h"
#include "cli/options.h"
#include "cli/plot.h"
#include "cli/repl.h"
#include "cli/run.h"
#include "cli/terminal.h"
#include "cli/view.h"
#include "host/rx/text/utf.h"

namespace {

int carryOut(const std::vector<std::string>& arguments) {
  cli::Options options;
  std::string out;
  std::string message;
  const int code = cli::parseOptions(arguments, options, out, message);
  cli::Terminal terminal;
  terminal.write(out);
  cli::complain(message);
  if (code >= 0) return code;
  switch (options.command) {
    case cli::Options::Command::Run: return cli::run(terminal, options.run);
    case cli::Options::Command::Convert: return cli::convert(options.convert);
    case cli::Options::Command::Audit: return cli::audit(terminal, options.audit);
    case cli::Options::Command::Info: return cli::info(terminal, options.info);
    case cli::Options::Command::Functions: return cli::functions(terminal, options.functions);
    case cli::Options::Command::Plot: return cli::plot(terminal, options.plot);
    case cli::Options::Command::Batch: return cli::batch(terminal, options.batch);
    case cli::Options::Command::Repl: return cli::repl(terminal, options.run);
    case cli::Options::Command::View: return cli::view(terminal, options.run, options.view);
    default: return cli::kUsage;
  }
}

int guarded(const std::vector<std::string>& arguments) {
  try {
    return carryOut(arguments);
  } catch (const std::bad_alloc&) {
    cli::complain("gcad: out of memory\n");
    return cli::kMemoryLimit;
  } catch (const std::exception& error) {
    cli::complain(std::string("gcad: ") + error.what() + "\n");
    return cli::kLispError;
  }
}

}  // namespace

#ifdef _WIN32
int wmain(int count, wchar_t** values) {
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(gc::toUtf8(values[i]));
  return guarded(arguments);
}
#else
int main(int count, char** values) { return guarded(std::vector<std::string>(values + 1, values + count)); }
#endif
