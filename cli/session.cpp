#include "cli/session.h"

#include "cli/drawingfile.h"
#include "cli/exitcode.h"
#include "cli/inputfile.h"
#include "cli/memoryuse.h"
#include "db/groupdata.h"
#include "host/ap/paths.h"
#include "host/ap/process.h"
#include "host/ap/profile.h"
#include "host/db/core/undo.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

constexpr const GCHAR* kDefaultPlugIn = GC_T("VrkEntPropertyEx.grx");

// Without a limit a program that runs wild still ends before the machine's memory does.
lisp::VmLimits limitsOf(const RunOptions& options) {
  lisp::VmLimits limits;
  limits.memory = static_cast<size_t>(options.memoryLimitMB * (1 << 20));
  if (limits.memory == 0) limits.memory = machineBytes() / 4 * 3;
  return limits;
}

}  // namespace

Session::Session(Terminal& terminal, const RunOptions& options) : m_terminal(terminal), m_options(options) {
  if (!options.log.empty()) ap::setProfileEntry(GC_T("VRK_LOG"), gc::fromUtf8(options.log));
  if (options.hasLogLevel) ap::setProfileEntry(GC_T("VRK_LOG_LEVEL"), gc::fromUtf8(std::to_string(options.logLevel)));
  for (const std::string& name : options.withoutClasses) gcdbLeaveClassOut(gc::fromUtf8(name).c_str());
  if (!options.profile.empty()) ap::setProfileEntry(GC_T("CPROFILE"), gc::fromUtf8(options.profile));
  ap::allowStartingPrograms(options.allowPrograms);
  ap::setDryRun(options.dryRun);
  ap::setOutput(this);
  m_linker = std::make_unique<ap::DynamicLinker>();
  m_fitter = std::make_unique<lisplib::LispFitter>(limitsOf(options));
  m_manager = std::make_unique<ap::DocumentManager>();
  m_manager->addFitter(m_fitter.get());
}

// Plug-ins go while the manager still stands, and after the documents: what they keep per document goes with those.
Session::~Session() {
  while (!m_manager->documents().empty()) m_manager->close(*m_manager->documents().back());
  m_linker.reset();
  m_manager.reset();
  ap::setOutput(nullptr);
}

void Session::write(GcView text) {
  if (m_capture != nullptr) {
    gc::appendToUtf8(text, *m_capture);
    return;
  }
  std::string bytes;
  gc::appendToUtf8(text, bytes);
  m_terminal.write(bytes);
}

int Session::loadPlugIn() {
  if (m_options.noModule) return kDone;
  GcText file = gc::fromUtf8(m_options.module);
  file = file.empty() ? ap::programDirectory() + GC_T("/") + kDefaultPlugIn : ap::absolutePath(file);
  if (m_options.module.empty() && !ap::fileExists(file)) return kDone;
  if (m_linker->loadModule(file.c_str(), false)) return kDone;
  complain("gcad: cannot load the module " + gc::toUtf8(m_linker->reason()) + "\n");
  return kUsage;
}

int Session::openDrawing() {
  std::unique_ptr<GcDbDatabase> database;
  if (m_options.drawing.empty())
    database = std::make_unique<GcDbDatabase>();
  else
    database = openDrawingFile(m_options.drawing);
  if (database == nullptr) return kCannotRead;
  m_manager->open(std::move(database), gc::fromUtf8(m_options.drawing));
  document().database()->undo().setOn(true);
  return kDone;
}

int Session::openInput() {
  if (m_options.input.empty()) return kDone;
  std::string reason;
  m_input = InputFile::open(m_options.input, reason);
  if (m_input == nullptr) {
    complain("gcad: " + reason + "\n");
    return kCannotRead;
  }
  commandLine().setSource(m_input.get());
  return kDone;
}

int Session::openScreenLog() {
  if (m_options.screenLog.empty()) return kDone;
  std::string reason;
  m_screenLog = ScreenLog::open(m_options.screenLog, reason);
  if (m_screenLog != nullptr) return kDone;
  complain("gcad: " + reason + "\n");
  return kCannotWrite;
}

int Session::checkScreenLog() const {
  if (m_screenLog == nullptr || m_screenLog->good()) return kDone;
  complain("gcad: " + m_options.screenLog + ": the record could not be written\n");
  return kCannotWrite;
}

void Session::runQueued() {
  // It waits for the running command to end. What the text itself begins may be ended by the text after it.
  if (commandLine().isBusy()) return;
  GcText text;
  // What is typed may lead to another document, whose queue goes on.
  while (document().takeQueuedText(text)) {
    commandLine().type(text);
    m_manager->settle();
  }
}

}  // namespace cli
