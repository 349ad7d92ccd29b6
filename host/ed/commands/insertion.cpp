#include "host/ed/commands/insertion.h"

namespace ed {

namespace {

using What = Ask::What;

Task<double> askFactor(CommandInput& in, const char* prompt, double otherwise) {
  const Answer answer = co_await in.ask(Ask(What::Real, prompt).words("Corner XYZ"));
  co_return answer.kind == Answer::Kind::Number&& answer.number != 0 ? answer.number : otherwise;
}

// Options that may be given before the point.
Task<bool> askPoint(CommandInput& in, Insertion& insertion) {
  for (;;) {
    const Answer answer =
        co_await in.ask(Ask(What::Point, "\nSpecify insertion point or [Basepoint/Scale/X/Y/Z/Rotate]: ")
                            .words("Basepoint Scale X Y Z Rotate"));
    if (answer.isPoint()) {
      insertion.point = answer.point;
      co_return true;
    }
    if (answer.kind != Answer::Kind::Keyword) co_return false;
    if (answer.isKeyword("Rotate")) {
      const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify rotation angle: "));
      insertion.rotationRad = angle.number;
      insertion.hasRotation = true;
      continue;
    }
    const double factor = co_await askFactor(in, "\nSpecify scale factor: ", 1);
    if (answer.isKeyword("Scale")) insertion.scale = GcGeScale3d(factor);
    if (answer.isKeyword("X")) insertion.scale.sx = factor;
    if (answer.isKeyword("Y")) insertion.scale.sy = factor;
    if (answer.isKeyword("Z")) insertion.scale.sz = factor;
    insertion.hasScale = true;
  }
}

Task<bool> askRest(CommandInput& in, Insertion& insertion) {
  if (!insertion.hasScale) {
    const double x =
        co_await askFactor(in, "\nEnter X scale factor, specify opposite corner, or [Corner/XYZ] <1>: ", 1);
    const double y = co_await askFactor(in, "\nEnter Y scale factor <use X scale factor>: ", x);
    insertion.scale = {x, y, x};
  }
  if (!insertion.hasRotation) {
    const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify rotation angle <0>: ").from(insertion.point));
    if (angle.kind == Answer::Kind::Number) insertion.rotationRad = angle.number;
  }
  co_return true;
}

}  // namespace

Task<bool> askInsertion(CommandInput& in, Insertion& insertion) {
  co_return co_await askPoint(in, insertion) && co_await askRest(in, insertion);
}

}  // namespace ed
