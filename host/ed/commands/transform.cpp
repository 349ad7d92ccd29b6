// Commands that move, turn, scale and mirror entities, or their copies.
#include <numbers>

#include "ge/line3d.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/coordinates.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

// A matrix of user coordinates as one of world coordinates.
GcGeMatrix3d inWorld(Editor& editor, const GcGeMatrix3d& inUser) {
  const GcGeMatrix3d user = ucsToWorld(editor);
  return user * inUser * user.inverse();
}

// The displacement two answers describe: from the base to the second point, or the base itself on Enter.
GcGeMatrix3d displacement(const GcGePoint3d& base, const Answer& second) {
  GcGeMatrix3d matrix;
  return matrix.setToTranslation(second.isPoint() ? second.point - base : base.asVector());
}

Task<bool> move(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  Answer base = co_await in.ask(Ask(What::Point, "\nSpecify base point or [Displacement]: ").words("Displacement"));
  Answer second;
  if (base.isKeyword("Displacement"))
    base = co_await in.ask(Ask(What::Point, "\nSpecify displacement: "));
  else if (base.isPoint())
    second = co_await in.ask(
        Ask(What::Point, "\nSpecify second point or <use first point as displacement>: ").from(base.point));
  if (!base.isPoint()) co_return false;
  transformEntities(ids, inWorld(in.editor(), displacement(base.point, second)));
  co_return true;
}

Task<bool> copy(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  Answer base = co_await in.ask(
      Ask(What::Point, "\nSpecify base point or [Displacement/mOde/Multiple]: ").words("Displacement mOde Multiple"));
  while (base.isKeyword("Multiple") || base.isKeyword("mOde")) {
    if (base.isKeyword("mOde"))
      static_cast<void>(co_await in.ask(
          Ask(What::Keyword, "\nEnter a copy mode option [Single/Multiple]: ").words("Single Multiple")));
    base = co_await in.ask(Ask(What::Point, "\nSpecify base point: "));
  }
  if (base.isKeyword("Displacement")) base = co_await in.ask(Ask(What::Point, "\nSpecify displacement: "));
  if (!base.isPoint()) co_return false;
  for (bool first = true;; first = false) {
    const Answer second =
        co_await in.ask(Ask(What::Point, "\nSpecify second point or <use first point as displacement>: ")
                            .from(base.point)
                            .words("Exit Undo Array"));
    if (!second.isPoint() && !first) break;
    const Ids copies = copyEntities(in.editor(), ids);
    transformEntities(copies, inWorld(in.editor(), displacement(base.point, second)));
    if (!second.isPoint()) break;
  }
  co_return true;
}

Task<bool> rotate(CommandInput& in) {
  Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Answer base = co_await in.ask(Ask(What::Point, "\nSpecify base point: ").needed());
  if (!base.isPoint()) co_return false;
  double reference = 0;
  for (;;) {
    const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify rotation angle or [Copy/Reference] <0>: ")
                                             .from(base.point)
                                             .words("Copy Reference"));
    if (angle.isKeyword("Copy")) {
      ids = copyEntities(in.editor(), ids);
      continue;
    }
    if (angle.isKeyword("Reference")) {
      const Answer from = co_await in.ask(Ask(What::Direction, "\nSpecify the reference angle <0>: "));
      reference = from.kind == Answer::Kind::Number ? from.number : 0;
      continue;
    }
    if (angle.kind != Answer::Kind::Number) co_return false;
    GcGeMatrix3d matrix;
    matrix.setToRotation(angle.number - reference, GcGeVector3d::kZAxis, base.point);
    transformEntities(ids, inWorld(in.editor(), matrix));
    co_return true;
  }
}

Task<bool> scale(CommandInput& in) {
  Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Answer base = co_await in.ask(Ask(What::Point, "\nSpecify base point: ").needed());
  if (!base.isPoint()) co_return false;
  double reference = 1;
  for (;;) {
    const Answer factor = co_await in.ask(Ask(What::Distance, "\nSpecify scale factor or [Copy/Reference]: ")
                                              .from(base.point)
                                              .words("Copy Reference")
                                              .positive());
    if (factor.isKeyword("Copy")) {
      ids = copyEntities(in.editor(), ids);
      continue;
    }
    if (factor.isKeyword("Reference")) {
      const Answer length = co_await in.ask(Ask(What::Distance, "\nSpecify reference length <1>: ").positive());
      reference = length.kind == Answer::Kind::Number ? length.number : 1;
      continue;
    }
    if (factor.kind != Answer::Kind::Number) co_return false;
    GcGeMatrix3d matrix;
    matrix.setToScaling(factor.number / reference, base.point);
    transformEntities(ids, inWorld(in.editor(), matrix));
    co_return true;
  }
}

// A reflection in the plane through the line that stands upright on the user plane.
GcGeMatrix3d reflection(const GcGePoint3d& a, const GcGePoint3d& b) {
  const double angle = gc::atan2(b.y - a.y, b.x - a.x);
  GcGeMatrix3d turn;
  GcGeMatrix3d flip;
  turn.setToRotation(angle, GcGeVector3d::kZAxis, a);
  flip.entry[1][1] = -1;
  flip.entry[1][3] = 2 * a.y;
  return turn * flip * turn.inverse();
}

Task<bool> mirror(CommandInput& in) {
  Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Answer a = co_await in.ask(Ask(What::Point, "\nSpecify first point of mirror line: ").needed());
  const Answer b = co_await in.ask(Ask(What::Point, "\nSpecify second point of mirror line: ").from(a.point).needed());
  if (!a.isPoint() || !b.isPoint()) co_return false;
  const Answer erase = co_await in.ask(Ask(What::Keyword, "\nErase source objects? [Yes/No] <N>: ").words("Yes No"));
  if (!erase.isKeyword("Yes")) ids = copyEntities(in.editor(), ids);
  transformEntities(ids, inWorld(in.editor(), reflection(a.point, b.point)));
  co_return true;
}

constexpr Command kCommands[] = {
    {"MOVE", "M", move},    {"COPY", "CO CP", copy},  {"ROTATE", "RO", rotate},
    {"SCALE", "SC", scale}, {"MIRROR", "MI", mirror},
};

}  // namespace

std::span<const Command> transformCommands() { return kCommands; }

}  // namespace ed
