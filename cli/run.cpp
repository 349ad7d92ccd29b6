#include "cli/run.h"

#include <algorithm>

#include "cli/drawingfile.h"
#include "cli/exitcode.h"
#include "cli/script.h"
#include "cli/session.h"
#include "host/ap/paths.h"
#include "host/db/core/fileformats.h"
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

// Where the drawing goes at the end; empty when it is not saved.
std::string targetOf(const RunOptions& options) { return options.inPlace ? options.drawing : options.save; }

// What can be told before anything runs: a script must not work for an hour to find its output in the way.
int checkTarget(const RunOptions& options) {
  const std::string target = targetOf(options);
  if (target.empty() || options.inPlace) return kDone;
  if (gcdbFormatOfName(target) == nullptr) {
    complain("gcad: " + target + ": the extension names no format a drawing can be saved in\n");
    return kUsage;
  }
  const bool isInput = !options.drawing.empty() &&
                       ap::absolutePath(gc::fromUtf8(target)) == ap::absolutePath(gc::fromUtf8(options.drawing));
  if (isInput) {
    complain("gcad: " + target + " is the drawing that is read; --in-place saves over it\n");
    return kUsage;
  }
  return mayWrite(target, options.force) ? kDone : kCannotWrite;
}

int save(Session& session, const RunOptions& options) {
  const std::string target = targetOf(options);
  if (target.empty()) return kDone;
  GcDbDatabase& database = *session.document().database();
  GcDbSaveOptions how;
  how.backup = options.backup;
  if (!options.saveAs.empty())
    how.version = versionOfName(options.saveAs);
  else if (!options.drawing.empty())
    how.version = std::max(database.originalFileVersion(), GcDb::kDHL_AC1015);
  if (options.dryRun) return kDone;
  std::string message;
  if (gcdbSaveDrawing(database, target, how, message) == Gcad::eOk) return kDone;
  complain("gcad: " + message + "\n");
  return kCannotWrite;
}

}  // namespace

int run(Terminal& terminal, const RunOptions& options) {
  if (const int code = checkTarget(options); code != kDone) return code;
  Session session(terminal, options);
  if (const int code = session.loadPlugIn(); code != kDone) return code;
  if (const int code = session.openDrawing(); code != kDone) return code;
  if (const int code = session.openInput(); code != kDone) return code;
  if (const int code = session.openScreenLog(); code != kDone) return code;
  giveArguments(session, options);
  if (const int code = runSources(session, options); code != kDone) return code;
  if (const int code = save(session, options); code != kDone) return code;
  return session.checkScreenLog();
}

}  // namespace cli
