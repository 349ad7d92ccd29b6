// How a command is written, and the table of all of them.
//
//   Task<bool> line(CommandInput& in) {
//     const Answer first = co_await in.ask(Ask(Ask::What::Point, "Specify first point: "));
//     ...
//     co_return true;    // false: the command could not do its work
//   }
//
// Points of answers are user coordinates; in.toWorld() leads to the drawing's.
#pragma once

#include <deque>
#include <span>

#include "host/ed/command/task.h"
#include "host/ed/input/ask.h"

namespace ed {

class CommandRun;

class CommandInput {
 public:
  explicit CommandInput(CommandRun& run) : m_run(run) {}
  [[nodiscard]] Editor& editor() const;
  [[nodiscard]] GcDbDatabase& database() const;
  [[nodiscard]] GcGePoint3d toWorld(const GcGePoint3d& user) const;

  class AskAwaiter {
   public:
    AskAwaiter(CommandRun& run, Ask ask) : m_run(run), m_ask(std::move(ask)) {}
    [[nodiscard]] bool await_ready();
    void await_suspend(std::coroutine_handle<> waiting);
    Answer await_resume() { return std::move(m_answer); }

   private:
    friend class CommandRun;
    CommandRun& m_run;
    Ask m_ask;
    Answer m_answer;
  };
  [[nodiscard]] AskAwaiter ask(Ask question) { return {m_run, std::move(question)}; }

  // Ctrl-C, or a limit of the program that runs the command: a long loop ends, with what it has done so far.
  [[nodiscard]] bool endWanted() const;
  // Tells the person something; nothing is shown while a program runs the command with CMDECHO off.
  void tell(const char* text) const;

 private:
  CommandRun& m_run;
};

struct Command {
  const char* name;   // English, upper case
  const char* alias;  // further names, separated by blanks; may be empty
  Task<bool> (*body)(CommandInput&);
};

// Null when there is none. Prefixes are taken off: _ (English name), . (built-in), - (without dialog box; commands that
// differ have a row of their own with it), ' (transparent).
const Command* findCommand(GcView typed);

// Names and further names of all of them, in no order.
std::vector<std::string_view> commandNames();

// A command while it runs: its queue of input and where it waits.
class CommandRun {
 public:
  CommandRun(Editor& editor, const Command& command);
  // Runs a body of its own, which must live as long as the run.
  template <class Body>
  CommandRun(Editor& editor, const Command& command, const Body& body)
      : m_editor(editor), m_command(command), m_input(*this), m_body(body(m_input)) {}
  [[nodiscard]] Editor& editor() const { return m_editor; }
  [[nodiscard]] const char* name() const { return m_command.name; }
  [[nodiscard]] bool done() const { return m_body.done(); }
  [[nodiscard]] bool succeeded() const { return done() && !m_cancelled && m_body.result(); }
  [[nodiscard]] bool cancelled() const { return m_cancelled; }

  void start();
  // Gives an item and runs the command as far as it goes.
  void feed(InputItem item);
  // An item was refused since the run began.
  [[nodiscard]] bool refused() const { return m_refused; }
  [[nodiscard]] const Ask* question() const { return m_waiting == nullptr ? nullptr : &m_waiting->m_ask; }

 private:
  friend class CommandInput;
  // Takes items from the queue until one answers; false when the queue is empty.
  bool answerFromQueue(CommandInput::AskAwaiter& awaiter);

  Editor& m_editor;
  const Command& m_command;
  CommandInput m_input;
  std::deque<InputItem> m_queue;
  CommandInput::AskAwaiter* m_waiting = nullptr;
  std::coroutine_handle<> m_waitingCoroutine;
  bool m_refused = false;
  bool m_cancelled = false;
  Task<bool> m_body;  // last: it refers to the rest
};

}  // namespace ed
