// A document's command line: typed text and items of programs in, commands run.
#pragma once

#include <memory>
#include <vector>

#include "host/ed/command/command.h"
#include "host/ed/input/source.h"

namespace ed {

enum class FeedStatus : uint8_t {
  Done,     // the item was taken
  Refused,  // it was no answer to the question
  Unknown,  // no such command
  Cancelled,
};

class CommandLine {
 public:
  explicit CommandLine(Editor& editor) : m_editor(editor) {}

  [[nodiscard]] bool isBusy() const { return !m_running.empty(); }
  // The names of the running commands, the innermost last, with ' between them.
  [[nodiscard]] GcText runningName() const;
  [[nodiscard]] size_t depth() const { return m_running.size(); }

  // Gives an item to the running command, or starts the one it names.
  FeedStatus feed(InputItem item);
  // Cancels the running command; the others that wait behind it go on waiting.
  void cancel();
  void cancelAll();

  // Runs a whole command apart from the one that may be running: it is cancelled when items are left to be asked for.
  FeedStatus runWhole(std::vector<InputItem> items);

  // Text as if typed: forms go to LISP, everything else is commands and their answers, each ended by a blank or a
  // line end.
  // What another document that has become current meanwhile is to do goes to that one's queue.
  void type(GcView text);
  // The running command has been typed, not sent by a program.
  [[nodiscard]] bool isTyped() const { return m_typed; }

  // Where lines come from when a command or a program asks the person; null: nowhere.
  void setSource(InputSource* source) { m_source = source; }
  [[nodiscard]] InputSource* source() const { return m_source; }
  bool readTyped(GcText& line, const InputWish& wish = {});
  // What the running command waits for; null when it waits for nothing or none is running.
  [[nodiscard]] const Ask* question() const { return isBusy() ? m_running.back()->question() : nullptr; }
  [[nodiscard]] bool wasInterrupted() const { return m_source != nullptr && m_source->interrupted(); }

  void rememberPoint(const GcGePoint3d& point);

  // ---- undo: a group per command or top-level form, whichever is outermost
  void beginGroup();
  void endGroup();
  // Groups a program opens and closes by command; forms and commands in between belong to them.
  void beginNamedGroup();
  void endNamedGroup();
  // Closes all open groups while something moves through the recorded ones.
  int undo(int groups);
  int redo(int groups);
  bool undoToMark();

 private:
  FeedStatus start(GcView typed);
  FeedStatus startVariable(GcView name);
  bool runProgramsCommand(GcView name);
  void evaluateTyped(GcView form);
  void runPlugIn(const GcText& name, void (*function)());
  void finish();
  void closeGroups();
  void openGroups();

  Editor& m_editor;
  InputSource* m_source = nullptr;
  std::vector<std::unique_ptr<CommandRun>> m_running;  // innermost last
  std::vector<GcText> m_names;                         // of those and of plug-ins' commands
  int m_groups = 0;
  int m_namedGroups = 0;
  bool m_typed = false;
  bool m_failedAtOnce = false;  // the command that was started last asked nothing and could not do its work
};

}  // namespace ed
