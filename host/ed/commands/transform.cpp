// Commands that move, turn, scale and mirror entities, or their copies.
#include <numbers>

#include "ge/line3d.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/coordinates.h"
#include "host/ed/stepundo.h"
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

// As many items in a row as are wanted, the first of them the objects themselves: the second one, or after Fit the last
// one, lies at the point.
Task<bool> copyInRow(CommandInput& in, const Ids& ids, GcGePoint3d base) {
  constexpr int kMost = 32767;
  const Answer items = co_await in.ask(Ask(What::Integer, "\nEnter number of items to array: ").positive().needed());
  Answer second =
      co_await in.ask(Ask(What::Point, "\nSpecify second point or [Fit]: ").from(base).words("Fit").needed());
  const bool fits = second.isKeyword("Fit");
  if (fits) second = co_await in.ask(Ask(What::Point, "\nSpecify second point: ").from(base).needed());
  if (items.number < 2 || items.number > kMost || !second.isPoint()) {
    in.tell("\nRequires a number of items from 2 to 32767.\n");
    co_return false;
  }
  const int count = static_cast<int>(items.number);
  const GcGeVector3d step = (second.point - base) * (fits ? 1.0 / (count - 1) : 1.0);
  for (int i = 1; i < count; ++i) {
    GcGeMatrix3d matrix;
    matrix.setToTranslation(step * i);
    transformEntities(copyEntities(in.editor(), ids), inWorld(in.editor(), matrix));
  }
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
  if (base.isKeyword("Displacement")) {
    const Answer by = co_await in.ask(Ask(What::Point, "\nSpecify displacement <0.0000, 0.0000, 0.0000>: "));
    if (by.isPoint())
      transformEntities(copyEntities(in.editor(), ids), inWorld(in.editor(), displacement(by.point, {})));
    co_return by.isPoint();
  }
  if (!base.isPoint()) co_return false;
  StepUndo steps(in.database());
  for (bool first = true;;) {
    const Answer second =
        co_await in.ask(Ask(What::Point, first ? "\nSpecify second point or [Array] <use first point as displacement>: "
                                               : "\nSpecify second point or [Array/Exit/Undo] <Exit>: ")
                            .from(base.point)
                            .words("Exit Undo Array"));
    if (second.isKeyword("Undo")) {
      if (!steps.back()) in.tell("\nAll copies have been undone.\n");
      continue;
    }
    if (second.isKeyword("Array")) {
      steps.begin();
      static_cast<void>(co_await copyInRow(in, ids, base.point));
      first = false;
      continue;
    }
    if (!second.isPoint() && (!first || !second.isNone())) break;
    steps.begin();
    transformEntities(copyEntities(in.editor(), ids), inWorld(in.editor(), displacement(base.point, second)));
    if (!second.isPoint()) break;
    first = false;
  }
  co_return true;
}

void turn(CommandInput& in, const Ids& ids, const GcGePoint3d& base, double angleRad) {
  GcGeMatrix3d matrix;
  matrix.setToRotation(angleRad, GcGeVector3d::kZAxis, base);
  transformEntities(ids, inWorld(in.editor(), matrix));
}

Task<bool> rotate(CommandInput& in) {
  Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Answer base = co_await in.ask(Ask(What::Point, "\nSpecify base point: ").needed());
  if (!base.isPoint()) co_return false;
  double reference = 0;
  bool refers = false;
  for (;;) {
    Ask question(What::Direction, refers ? "\nSpecify the new angle or [Points] <0>: "
                                         : "\nSpecify rotation angle or [Copy/Reference] <0>: ");
    question.from(base.point).words(refers ? "Points" : "Copy Reference");
    const Answer angle = co_await in.ask(std::move(question));
    if (angle.isKeyword("Points")) {
      const Answer shown = co_await in.ask(Ask(What::Direction, "\nSpecify first point: ").needed());
      if (shown.kind != Answer::Kind::Number) co_return false;
      turn(in, ids, base.point, shown.number - reference);
      co_return true;
    }
    if (angle.isKeyword("Copy")) {
      ids = copyEntities(in.editor(), ids);
      continue;
    }
    if (angle.isKeyword("Reference")) {
      const Answer from = co_await in.ask(Ask(What::Direction, "\nSpecify the reference angle <0>: "));
      reference = from.kind == Answer::Kind::Number ? from.number : 0;
      refers = true;
      continue;
    }
    if (angle.kind == Answer::Kind::Cancelled) co_return false;
    turn(in, ids, base.point, (angle.kind == Answer::Kind::Number ? angle.number : 0) - reference);
    co_return true;
  }
}

void resize(CommandInput& in, const Ids& ids, const GcGePoint3d& base, double factor) {
  GcGeMatrix3d matrix;
  matrix.setToScaling(factor, base);
  transformEntities(ids, inWorld(in.editor(), matrix));
}

Task<bool> scale(CommandInput& in) {
  Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Answer base = co_await in.ask(Ask(What::Point, "\nSpecify base point: ").needed());
  if (!base.isPoint()) co_return false;
  double reference = 1;
  bool refers = false;
  for (;;) {
    Ask question(What::Distance, refers ? "\nSpecify new length or [Points] <1.0000>: "
                                        : "\nSpecify scale factor or [Copy/Reference]: ");
    question.from(base.point).words(refers ? "Points" : "Copy Reference").positive();
    const Answer factor = co_await in.ask(std::move(question));
    if (factor.isKeyword("Points")) {
      const Answer shown = co_await in.ask(Ask(What::Distance, "\nSpecify first point: ").positive().needed());
      if (shown.kind != Answer::Kind::Number) co_return false;
      resize(in, ids, base.point, shown.number / reference);
      co_return true;
    }
    if (factor.isKeyword("Copy")) {
      ids = copyEntities(in.editor(), ids);
      continue;
    }
    if (factor.isKeyword("Reference")) {
      const Answer length = co_await in.ask(Ask(What::Distance, "\nSpecify reference length <1>: ").positive());
      reference = length.kind == Answer::Kind::Number ? length.number : 1;
      refers = true;
      continue;
    }
    if (factor.kind == Answer::Kind::Cancelled) co_return false;
    resize(in, ids, base.point, (factor.kind == Answer::Kind::Number ? factor.number : 1) / reference);
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
