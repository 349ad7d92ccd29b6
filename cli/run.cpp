#include "cli/run.h"

#include "cli/exitcode.h"
#include "cli/script.h"
#include "cli/session.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

// The script's arguments, as the list *ARGV*.
void giveArguments(Session& session, const RunOptions& options) {
  lisp::Interpreter& lisp = session.lisp();
  lisp::LispValue list;
  for (size_t i = options.arguments.size(); i-- > 0;)
    list = lisp.cons(lisp.string(gc::fromUtf8(options.arguments[i])), list);
  lisp.setVariable(GC_T("*ARGV*"), list);
}

int runSources(Session& session, const RunOptions& options) {
  for (const Source& source : options.sources) {
    bool ended = false;
    const int code = runSource(session, source, ended);
    if (code != kDone || ended) return code;
  }
  return kDone;
}

}  // namespace

int run(Terminal& terminal, const RunOptions& options) {
  Session session(terminal, options);
  if (const int code = session.loadPlugIn(); code != kDone) return code;
  if (const int code = session.openDrawing(); code != kDone) return code;
  giveArguments(session, options);
  return runSources(session, options);
}

}  // namespace cli
