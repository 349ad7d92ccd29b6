// Undo and redo.
#include <climits>

#include "host/db/core/undo.h"
#include "host/ed/command/families.h"
#include "host/ed/commandline.h"

namespace ed {

namespace {

using What = Ask::What;

Task<bool> u(CommandInput& in) {
  const int done = in.editor().commandLine().undo(1);
  if (done == 0) in.tell("\nEverything has been undone.\n");
  co_return true;
}

Task<bool> redo(CommandInput& in) {
  const int done = in.editor().commandLine().redo(1);
  if (done == 0) in.tell("\nREDO must immediately follow an undo.\n");
  co_return done > 0;
}

Task<bool> redoSeveral(CommandInput& in) {
  constexpr int kEverything = INT_MAX;
  const Answer answer = co_await in.ask(
      Ask(What::Integer, "\nEnter number of actions or [All/Last]: ").words("All Last").positive().needed());
  const int count = answer.isKeyword("All")               ? kEverything
                    : answer.kind == Answer::Kind::Number ? static_cast<int>(answer.number)
                                                          : 1;
  const int done = in.editor().commandLine().redo(count);
  if (done == 0) in.tell("\nREDO must immediately follow an undo.\n");
  co_return done > 0;
}

Task<bool> control(CommandInput& in) {
  const Answer answer =
      co_await in.ask(Ask(What::Keyword, "\nEnter an undo control option [All/None/One/Combine/Layer]: ")
                          .words("All None One Combine Layer"));
  if (answer.isKeyword("None"))
    in.database().undo().setOn(false);
  else if (answer.isKeyword("All"))
    in.database().undo().setOn(true);
  co_return true;
}

Task<bool> undo(CommandInput& in) {
  CommandLine& line = in.editor().commandLine();
  const Answer answer = co_await in.ask(
      Ask(What::Integer, "\nEnter the number of operations to undo or [Auto/Control/BEgin/End/Mark/Back]: ")
          .words("Auto Control BEgin Group End Mark Back")
          .positive());
  if (answer.kind == Answer::Kind::Number) {
    static_cast<void>(line.undo(static_cast<int>(answer.number)));
  } else if (answer.isNone()) {
    static_cast<void>(line.undo(1));
  } else if (answer.isKeyword("BEgin") || answer.isKeyword("Group")) {
    line.beginNamedGroup();
  } else if (answer.isKeyword("End")) {
    line.endNamedGroup();
  } else if (answer.isKeyword("Mark")) {
    in.database().undo().setMark();
  } else if (answer.isKeyword("Back")) {
    if (!line.undoToMark()) in.tell("\nEverything has been undone.\n");
  } else if (answer.isKeyword("Control")) {
    co_return co_await control(in);
  } else if (answer.isKeyword("Auto")) {
    static_cast<void>(co_await in.ask(Ask(What::Keyword, "\nEnter UNDO Auto mode [ON/OFF] <On>: ").words("ON OFF")));
  }
  co_return true;
}

constexpr Command kCommands[] = {
    {"U", "", u},
    {"REDO", "", redo},
    {"MREDO", "", redoSeveral},
    {"UNDO", "", undo},
};

}  // namespace

std::span<const Command> undoCommands() { return kCommands; }

}  // namespace ed
