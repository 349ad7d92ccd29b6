#include "cli/run.h"

#include "cli/exitcode.h"
#include "cli/interrupts.h"
#include "cli/savefile.h"
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

// All in the drawing of the options, whatever others the programs open.
int runSources(Session& session, const RunOptions& options) {
  ap::Document& own = session.document();
  for (const Source& source : options.sources) {
    bool ended = false;
    session.documents().setCurrent(&own);
    const int code = runSource(session, source, ended);
    if (code != kDone || ended) return code;
  }
  return kDone;
}

// The same, until the time is up, the memory is used or Ctrl-C is pressed.
int runSourcesWithin(Session& session, const RunOptions& options, TimeLimit& limit) {
  limit.watch(session.lisp());
  const Interrupts interrupts(session.lisp());
  const MemoryLimit memory(session.lisp(), options.memoryLimitMB);
  const int code = runSources(session, options);
  limit.stopWatching();
  return code;
}

// Where the drawing goes at the end; without a path when it is not saved.
SaveTarget targetOf(const RunOptions& options) {
  return {options.inPlace ? options.drawing : options.save,
          options.drawing,
          options.saveAs,
          options.inPlace,
          false,
          options.backup,
          options.force};
}

}  // namespace

int run(Terminal& terminal, const RunOptions& options) {
  const SaveTarget target = targetOf(options);
  // A script must not work for an hour to find its output in the way.
  if (!target.path.empty())
    if (const int code = checkTarget(target); code != kDone) return code;
  TimeLimit limit(options.timeLimitS);
  Session session(terminal, options);
  if (const int code = session.loadPlugIn(); code != kDone) return code;
  if (const int code = session.openDrawing(); code != kDone) return code;
  if (const int code = session.openInput(); code != kDone) return code;
  if (const int code = session.openScreenLog(); code != kDone) return code;
  giveArguments(session, options);
  ap::Document& own = session.document();
  const ap::Document::Use use(own);
  if (const int code = runSourcesWithin(session, options, limit); code != kDone) return code;
  if (!target.path.empty() && !options.dryRun)
    if (const int code = saveDrawing(*own.database(), target); code != kDone) return code;
  return session.checkScreenLog();
}

}  // namespace cli
