#include "host/ed/command/command.h"

#include <unordered_map>

#include "host/ap/output.h"
#include "host/ed/command/families.h"
#include "host/ed/commandline.h"
#include "host/ed/coordinates.h"

namespace ed {

Editor& CommandInput::editor() const { return m_run.editor(); }
GcDbDatabase& CommandInput::database() const { return editor().database(); }
GcGePoint3d CommandInput::toWorld(const GcGePoint3d& user) const { return ucsToWorld(editor()) * user; }

bool CommandInput::endWanted() const {
  const ap::LispSpace* lisp = editor().document().lisp();
  return lisp != nullptr && lisp->endWanted();
}

void CommandInput::tell(const char* text) const {
  if (integerVariable(editor(), "CMDECHO") != 0) ap::print(text);
}

bool CommandInput::AskAwaiter::await_ready() { return m_run.answerFromQueue(*this); }

void CommandInput::AskAwaiter::await_suspend(std::coroutine_handle<> waiting) {
  m_run.m_waiting = this;
  m_run.m_waitingCoroutine = waiting;
}

CommandRun::CommandRun(Editor& editor, const Command& command)
    : m_editor(editor), m_command(command), m_input(*this), m_body(command.body(m_input)) {}

void CommandRun::start() { m_body.run(); }

void CommandRun::feed(InputItem item) {
  if (item.kind == InputItem::Kind::Cancel) {
    m_cancelled = true;
    m_waiting = nullptr;
    m_body = Task<bool>();
    return;
  }
  m_queue.push_back(std::move(item));
  if (m_waiting == nullptr || !answerFromQueue(*m_waiting)) return;
  m_waiting = nullptr;
  m_waitingCoroutine.resume();
}

bool CommandRun::answerFromQueue(CommandInput::AskAwaiter& awaiter) {
  while (!m_queue.empty()) {
    const InputItem item = std::move(m_queue.front());
    m_queue.pop_front();
    if (item.kind == InputItem::Kind::Pause) {
      awaiter.m_answer = askPerson(m_editor, awaiter.m_ask);
      return true;
    }
    GcText complaint;
    if (accept(m_editor, awaiter.m_ask, item, awaiter.m_answer, complaint)) {
      if (awaiter.m_answer.isPoint()) m_editor.commandLine().rememberPoint(awaiter.m_answer.point);
      if (!awaiter.m_answer.wantsSecondPoint) return true;
      // A length or an angle shown by two points: the question goes on from the first.
      awaiter.m_ask.from(awaiter.m_answer.point).needed();
      awaiter.m_ask.prompt = GC_T("\nSpecify second point: ");
      continue;
    }
    m_refused = true;
    ap::print(complaint);
  }
  return false;
}

namespace {

using CommandIndex = std::unordered_map<std::string_view, const Command*>;

const CommandIndex& commandIndex() {
  static const CommandIndex* const index = [] {
    auto* made = new CommandIndex;
    for (const auto commands :
         {lineCommands(),       curveCommands(),          polylineCommands(),     textCommands(),
          blockCommands(),      editCommands(),           transformCommands(),    propertyCommands(),
          layerCommands(),      viewCommands(),           ucsCommands(),          undoCommands(),
          dimensionCommands(),  hatchCommands(),          polylineEditCommands(), modifyCommands(),
          arrayCommands(),      drawingFileCommands(),    recordCommands(),       inquiryCommands(),
          annotationCommands(), spaceCommands(),          layerToolCommands(),    attributeCommands(),
          groupCommands(),      reshapeCommands(),        settingCommands(),      clipboardCommands(),
          cornerCommands(),     spaceTransformCommands(), outsideCommands(),      linetypeCommands(),
          plotCommands(),       furtherCurveCommands(),   multilineCommands(),    revisionCloudCommands(),
          textMergeCommands(),  changeSpaceCommands(),    scaleListCommands(),    calculatorCommands(),
          regionCommands(),     xrefCommands(),           clipCommands(),         textStyleCommands(),
          fieldCommands()}) {
      for (const Command& command : commands) {
        made->emplace(command.name, &command);
        std::string_view aliases = command.alias;
        while (!aliases.empty()) {
          const size_t end = std::min(aliases.find(' '), aliases.size());
          made->emplace(aliases.substr(0, end), &command);
          aliases.remove_prefix(std::min(end + 1, aliases.size()));
        }
      }
    }
    return made;
  }();
  return *index;
}

}  // namespace

GcGePoint3d lastPoint(Editor& editor) {
  VariableValue value;
  static_cast<void>(getVariable(editor, GC_T("LASTPOINT"), value));
  return {value.point[0], value.point[1], value.point[2]};
}

const Command* findCommand(GcView typed) {
  bool withoutDialog = false;
  for (; !typed.empty() && GcView(GC_T("_.'-")).find(typed[0]) != GcView::npos; typed.remove_prefix(1))
    withoutDialog = withoutDialog || typed[0] == GC_T('-');
  std::string name = withoutDialog ? "-" : "";
  for (const GCHAR unit : typed) {
    if (unit > 0x7E) return nullptr;
    name.push_back(static_cast<char>(gcUpper(unit)));
  }
  auto at = commandIndex().find(name);
  if (at == commandIndex().end() && withoutDialog) at = commandIndex().find(std::string_view(name).substr(1));
  return at == commandIndex().end() ? nullptr : at->second;
}

std::vector<std::string_view> commandNames() {
  std::vector<std::string_view> names;
  for (const auto& [name, command] : commandIndex()) names.push_back(name);
  return names;
}

}  // namespace ed
