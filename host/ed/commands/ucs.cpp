// User coordinate systems.
#include <numbers>

#include "host/ed/command/families.h"
#include "host/ed/coordinates.h"
#include "host/ed/systems.h"

namespace ed {

namespace {

using What = Ask::What;

void set(CommandInput& in, const GcGeMatrix3d& toWorld) {
  Editor& editor = in.editor();
  editor.earlierUcs().push_back(ucsToWorld(editor));
  const GcGeVector3d at = toWorld.translation();
  setUcs(editor, {at.x, at.y, at.z}, toWorld.column(0), toWorld.column(1));
}

// From an origin, a point on the X axis and one on the side of positive Y; missing ones keep the present axes.
Task<bool> fromPoints(CommandInput& in, GcGePoint3d origin) {
  const GcGeMatrix3d user = ucsToWorld(in.editor());
  const Answer onX = co_await in.ask(Ask(What::Point, "\nSpecify point on X-axis or <accept>: ").from(origin));
  GcGeVector3d x = user.column(0);
  GcGeVector3d y = user.column(1);
  if (onX.isPoint()) {
    x = (in.toWorld(onX.point) - in.toWorld(origin)).normal();
    const Answer onY = co_await in.ask(Ask(What::Point, "\nSpecify point on XY plane or <accept>: ").from(origin));
    const GcGeVector3d towards =
        onY.isPoint() ? in.toWorld(onY.point) - in.toWorld(origin) : user.column(2).crossProduct(x);
    y = (towards - x * towards.dotProduct(x)).normal();
    if (x.isZeroLength() || y.isZeroLength()) co_return false;
  }
  GcGeMatrix3d made;
  set(in, made.setCoordSystem(in.toWorld(origin), x, y, x.crossProduct(y)));
  co_return true;
}

Task<bool> turned(CommandInput& in, GcGeVector3d axis) {
  const Answer angle = co_await in.ask(Ask(What::Angle, "\nSpecify rotation angle about axis <90>: "));
  GcGeMatrix3d turn;
  turn.setToRotation(angle.kind == Answer::Kind::Number ? angle.number : std::numbers::pi / 2, axis);
  set(in, ucsToWorld(in.editor()) * turn);
  co_return true;
}

Task<bool> ucs(CommandInput& in) {
  Editor& editor = in.editor();
  const Answer option = co_await in.ask(
      Ask(What::Point, "\nSpecify origin of UCS or [Face/NAmed/OBject/Previous/View/World/X/Y/Z/ZAxis] <World>: ")
          .words("Face NAmed OBject Previous View World X Y Z ZAxis New Origin 3point Restore Save Delete"));
  if (option.isPoint()) co_return co_await fromPoints(in, option.point);
  if (option.isNone() || option.isKeyword("World")) {
    set(in, GcGeMatrix3d::kIdentity);
  } else if (option.isKeyword("Previous")) {
    if (editor.earlierUcs().empty()) co_return false;
    const GcGeMatrix3d former = editor.earlierUcs().back();
    set(in, former);
    editor.earlierUcs().resize(editor.earlierUcs().size() - 2);
  } else if (option.isKeyword("X") || option.isKeyword("Y") || option.isKeyword("Z")) {
    co_return co_await turned(in, option.isKeyword("X")   ? GcGeVector3d::kXAxis
                                  : option.isKeyword("Y") ? GcGeVector3d::kYAxis
                                                          : GcGeVector3d::kZAxis);
  } else if (option.isKeyword("3point") || option.isKeyword("New") || option.isKeyword("Origin")) {
    const Answer origin = co_await in.ask(Ask(What::Point, "\nSpecify new origin point <0,0,0>: "));
    const GcGePoint3d at = origin.isPoint() ? origin.point : GcGePoint3d();
    if (!option.isKeyword("Origin")) co_return co_await fromPoints(in, at);
    GcGeMatrix3d moved;
    set(in, ucsToWorld(editor) * moved.setToTranslation(at.asVector()));
  } else if (option.isKeyword("ZAxis")) {
    const Answer origin = co_await in.ask(Ask(What::Point, "\nSpecify new origin point: "));
    const Answer onZ =
        co_await in.ask(Ask(What::Point, "\nSpecify point on positive portion of Z-axis: ").from(origin.point));
    if (!origin.isPoint() || !onZ.isPoint()) co_return false;
    const GcGeVector3d z = (in.toWorld(onZ.point) - in.toWorld(origin.point)).normal();
    const GcGeVector3d x = gcgeArbitraryXAxis(z);
    GcGeMatrix3d made;
    set(in, made.setCoordSystem(in.toWorld(origin.point), x, z.crossProduct(x), z));
  } else if (option.isKeyword("OBject")) {
    const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect object to align UCS: "));
    GcGeMatrix3d own;
    if (picked.kind != Answer::Kind::Entity || !entitySystem(picked.entity, own)) co_return false;
    set(in, own);
  } else if (option.isKeyword("View")) {
    set(in, displayToWorld(editor));
  } else {
    co_return false;
  }
  co_return true;
}

constexpr Command kCommands[] = {
    {"UCS", "", ucs},
};

}  // namespace

std::span<const Command> ucsCommands() { return kCommands; }

}  // namespace ed
