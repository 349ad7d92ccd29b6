// Commands that draw.
#include "db/line.h"
#include "host/ed/append.h"
#include "host/ed/command/command.h"

namespace ed {

namespace {

using What = Ask::What;

Task<bool> line(CommandInput& in) {
  std::vector<GcGePoint3d> points;
  std::vector<GcDbObjectId> drawn;
  const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify first point: "));
  if (!first.isPoint()) co_return false;
  points.push_back(first.point);
  for (;;) {
    const char* prompt =
        points.size() > 2 ? "\nSpecify next point or [Close/Undo]: " : "\nSpecify next point or [Undo]: ";
    const Answer next = co_await in.ask(Ask(What::Point, prompt).from(points.back()).words("Undo Close"));
    if (next.isPoint()) {
      drawn.push_back(appendWithDefaults(in.editor(), new GcDbLine(in.toWorld(points.back()), in.toWorld(next.point))));
      points.push_back(next.point);
    } else if (next.isKeyword("Undo") && !drawn.empty()) {
      GcDbEntity* last = nullptr;
      if (gcdbOpenObject(last, drawn.back(), GcDb::kForWrite) == Gcad::eOk) {
        ignore(last->erase());
        ignore(last->close());
      }
      drawn.pop_back();
      points.pop_back();
    } else if (next.isKeyword("Close") && points.size() > 2) {
      appendWithDefaults(in.editor(), new GcDbLine(in.toWorld(points.back()), in.toWorld(points[0])));
      break;
    } else if (next.isNone() || next.kind == Answer::Kind::Cancelled) {
      break;
    }
  }
  co_return true;
}

constexpr Command kCommands[] = {
    {"LINE", "L", line},
};

}  // namespace

std::span<const Command> drawCommands() { return kCommands; }

}  // namespace ed
