#include "host/ed/commandline.h"

#include <algorithm>
#include <utility>

#include "db/database.h"
#include "host/ap/docmanager.h"
#include "host/ap/output.h"
#include "host/db/core/undo.h"
#include "host/ed/commandstack.h"
#include "host/ed/viewplace.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

// Where the form that begins at `at` ends: behind its closing parenthesis, or at the end of the text.
size_t endOfForm(GcView text, size_t at) {
  int depth = 0;
  bool inText = false;
  for (; at < text.size(); ++at) {
    const GCHAR unit = text[at];
    if (inText) {
      if (unit == GC_T('\\')) ++at;
      inText = unit != GC_T('"');
    } else if (unit == GC_T('"')) {
      inText = true;
    } else if (unit == GC_T(';')) {
      at = std::min(text.find(GC_T('\n'), at), text.size() - 1);
    } else if (unit == GC_T('(')) {
      ++depth;
    } else if (unit == GC_T(')') && --depth <= 0) {
      return at + 1;
    }
  }
  return text.size();
}

GcView withoutPrefixes(GcView typed, bool& global) {
  for (; !typed.empty() && (typed[0] == GC_T('_') || typed[0] == GC_T('.') || typed[0] == GC_T('\''));
       typed.remove_prefix(1))
    global = global || typed[0] == GC_T('_');
  return typed;
}

}  // namespace

GcText CommandLine::runningName() const {
  GcText names;
  for (const GcText& name : m_names) {
    if (!names.empty()) names.push_back(GC_T('\''));
    names += name;
  }
  return names;
}

FeedStatus CommandLine::start(GcView typed) {
  bool global = false;
  const GcView name = withoutPrefixes(typed, global);
  if (const auto function = CommandStack::find(name, global)) {
    runPlugIn(upperText(name), function);
    return FeedStatus::Done;
  }
  const std::vector<GcText>& undefined = m_editor.undefinedCommands;
  const Command* command = findCommand(typed);
  const bool hidden = command != nullptr && typed.find(GC_T('.')) == GcView::npos &&
                      std::find(undefined.begin(), undefined.end(), gc::fromUtf8(command->name)) != undefined.end();
  if (command == nullptr || hidden) {
    if (runProgramsCommand(name)) return FeedStatus::Done;
    if (VariableValue value; getVariable(m_editor, name, value)) return startVariable(name);
    ap::print(GC_T("\nUnknown command \"") + upperText(name) + GC_T("\".\n"));
    m_editor.watchers().tell(Happening::CommandUnknown, upperText(name));
    return FeedStatus::Unknown;
  }
  beginGroup();
  m_editor.watchers().tell(Happening::CommandStarts, gc::fromUtf8(command->name));
  m_running.push_back(std::make_unique<CommandRun>(m_editor, *command));
  m_names.push_back(gc::fromUtf8(command->name));
  m_running.back()->start();
  if (m_running.back()->done()) {
    const bool failed = !m_running.back()->succeeded();
    finish();
    m_failedAtOnce = failed;
  }
  return FeedStatus::Done;
}

// What a program does is not typed.
bool CommandLine::runProgramsCommand(GcView name) {
  ap::LispSpace* lisp = m_editor.document().lisp();
  const bool typed = std::exchange(m_typed, false);
  const bool found = lisp != nullptr && lisp->runCommand(name);
  m_typed = typed;
  return found;
}

void CommandLine::evaluateTyped(GcView form) {
  const bool typed = std::exchange(m_typed, false);
  beginGroup();
  m_editor.document().lisp()->evaluate(form);
  endGroup();
  m_typed = typed;
}

// The name of a variable, typed as a command, asks for its value.
FeedStatus CommandLine::startVariable(GcView name) {
  const FeedStatus status = start(GC_T("SETVAR"));
  return status == FeedStatus::Done ? feed(InputItem::ofText(name)) : status;
}

// A plug-in's command: it runs to its end at once.
void CommandLine::runPlugIn(const GcText& name, void (*function)()) {
  beginGroup();
  m_editor.watchers().tell(Happening::CommandStarts, name);
  m_names.push_back(name);
  function();
  m_names.pop_back();
  m_editor.watchers().tell(Happening::CommandEnded, name);
  endGroup();
}

void CommandLine::finish() {
  const CommandRun& run = *m_running.back();
  const Happening how = run.cancelled()   ? Happening::CommandCancelled
                        : run.succeeded() ? Happening::CommandEnded
                                          : Happening::CommandFailed;
  const GcText name = m_names.back();
  m_running.pop_back();
  m_names.pop_back();
  m_editor.watchers().tell(how, name);  // within the group, so that one undo takes back both
  endGroup();
}

FeedStatus CommandLine::feed(InputItem item) {
  if (!isBusy()) {
    if (item.kind == InputItem::Kind::Cancel || item.isEnter()) return FeedStatus::Done;
    if (item.kind != InputItem::Kind::Text) return FeedStatus::Refused;
    return start(item.text);
  }
  CommandRun& run = *m_running.back();
  const bool cancels = item.kind == InputItem::Kind::Cancel;
  run.feed(std::move(item));
  const bool refused = run.refused();
  if (run.done()) finish();
  return cancels ? FeedStatus::Cancelled : refused ? FeedStatus::Refused : FeedStatus::Done;
}

void CommandLine::cancel() {
  if (isBusy()) static_cast<void>(feed(InputItem::of(InputItem::Kind::Cancel)));
}

void CommandLine::cancelAll() {
  while (isBusy()) cancel();
}

FeedStatus CommandLine::runWhole(std::vector<InputItem> items) {
  if (items.empty() || items[0].kind != InputItem::Kind::Text || items[0].text.empty()) return FeedStatus::Unknown;
  const size_t depth = m_running.size();
  m_failedAtOnce = false;
  FeedStatus status = start(items[0].text);
  if (status != FeedStatus::Done) return status;
  bool succeeded = !m_failedAtOnce;
  for (size_t i = 1; i < items.size() && m_running.size() > depth; ++i) {
    CommandRun& run = *m_running.back();
    run.feed(std::move(items[i]));
    if (run.refused()) status = FeedStatus::Refused;
    if (!run.done()) continue;
    succeeded = run.succeeded();
    if (run.cancelled()) status = FeedStatus::Cancelled;
    finish();
  }
  while (m_running.size() > depth) {
    cancel();
    status = FeedStatus::Cancelled;
  }
  return status == FeedStatus::Done && !succeeded ? FeedStatus::Refused : status;
}

bool CommandLine::readTyped(GcText& line, const InputWish& wish) {
  if (m_source == nullptr) return false;
  m_source->expect(wish);
  return m_source->readLine(line);
}

namespace {

// What a program that waits below has left to become current stays so, for when that program ends.
class PendingAside {
 public:
  PendingAside() : m_pending(ap::documents()->takeNext()) {}
  ~PendingAside() {
    ap::DocumentManager& manager = *ap::documents();
    const bool lives = std::any_of(manager.documents().begin(), manager.documents().end(),
                                   [this](const auto& each) { return each.get() == m_pending; });
    if (lives && !manager.hasNext()) manager.setCurrentLater(*m_pending);
  }
  PendingAside(const PendingAside&) = delete;
  PendingAside& operator=(const PendingAside&) = delete;

 private:
  ap::Document* m_pending;
};

// Gives the rest of what is typed to the document that has become current.
bool handOver(ap::Document& from, GcView rest) {
  ap::documents()->bringForward();
  ap::Document* to = ap::currentDocument();
  if (to == nullptr || to == &from) return false;
  if (!rest.empty()) to->queueTextFirst(rest);
  return true;
}

}  // namespace

void CommandLine::type(GcView text) {
  const ap::Document::Use use(m_editor.document());
  const PendingAside aside;
  for (size_t at = 0; at < text.size();) {
    const bool wholeLine = question() != nullptr && question()->what == Ask::What::Line;
    if (!wholeLine && text[at] == GC_T('(')) {
      const size_t end = endOfForm(text, at);
      evaluateTyped(text.substr(at, end - at));
      at = end;
      if (at < text.size() && (text[at] == GC_T('\n') || text[at] == GC_T(' '))) ++at;
      if (!isBusy() && handOver(m_editor.document(), text.substr(at))) return;
      continue;
    }
    const size_t end = std::min(text.find_first_of(wholeLine ? GC_T("\r\n") : GC_T(" \t\r\n"), at), text.size());
    m_typed = true;
    static_cast<void>(feed(InputItem::ofText(text.substr(at, end - at))));
    m_typed = false;
    at = end < text.size() && text[end] == GC_T('\r') && end + 1 < text.size() && text[end + 1] == GC_T('\n') ? end + 2
                                                                                                              : end + 1;
    if (!isBusy() && handOver(m_editor.document(), text.substr(std::min(at, text.size())))) return;
  }
}

void CommandLine::rememberPoint(const GcGePoint3d& point) {
  static_cast<void>(setQuietly(m_editor, GC_T("LASTPOINT"), VariableValue::ofPoint(point.x, point.y, point.z)));
}

void CommandLine::beginGroup() {
  ++m_groups;
  m_editor.database().undo().beginGroup();
}

void CommandLine::endGroup() {
  if (m_groups == 0) return;
  --m_groups;
  m_editor.database().undo().endGroup();
}

void CommandLine::beginNamedGroup() {
  ++m_namedGroups;
  beginGroup();
}

void CommandLine::endNamedGroup() {
  if (m_namedGroups == 0) return;
  --m_namedGroups;
  endGroup();
}

void CommandLine::closeGroups() {
  for (int i = 0; i < m_groups; ++i) m_editor.database().undo().endGroup();
}

void CommandLine::openGroups() {
  for (int i = 0; i < m_groups; ++i) m_editor.database().undo().beginGroup();
}

int CommandLine::undo(int groups) {
  closeGroups();
  const int done = m_editor.database().undo().undo(groups);
  openGroups();
  takeView(m_editor);
  return done;
}

int CommandLine::redo(int groups) {
  closeGroups();
  const int done = m_editor.database().undo().redo(groups);
  openGroups();
  takeView(m_editor);
  return done;
}

bool CommandLine::undoToMark() {
  closeGroups();
  const bool marked = m_editor.database().undo().back();
  openGroups();
  takeView(m_editor);
  return marked;
}

}  // namespace ed
