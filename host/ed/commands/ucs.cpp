// User coordinate systems.
#include <memory>
#include <numbers>

#include "db/ucs.h"
#include "host/ed/command/families.h"
#include "host/ed/coordinates.h"
#include "host/ed/records.h"
#include "host/ed/systems.h"

namespace ed {

namespace {

using What = Ask::What;

void set(CommandInput& in, const GcGeMatrix3d& toWorld) {
  Editor& editor = in.editor();
  editor.earlierUcs().push_back(ucsToWorld(editor));
  const GcGeVector3d at = toWorld.translation();
  static_cast<void>(setUcs(editor, {at.x, at.y, at.z}, toWorld.column(0), toWorld.column(1)));
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

// ---- named systems

bool restore(Editor& editor, GcView name) {
  const GcDbObjectId id = recordNamed(editor.database().UCSTableId(), name);
  GcDbUCSTableRecord* record = nullptr;
  if (id.isNull() || gcdbOpenObject(record, id, GcDb::kForRead) != Gcad::eOk) return false;
  const GcGeMatrix3d former = ucsToWorld(editor);
  const bool good = setUcs(editor, record->origin(), record->xAxis(), record->yAxis(), view(record->getName()));
  if (good) editor.earlierUcs().push_back(former);
  ignore(record->close());
  return good;
}

// A system of that name is changed to be the present one.
bool save(Editor& editor, GcView name) {
  GcDbUCSTable* table = nullptr;
  GcDbUCSTableRecord* record = nullptr;
  const GcDbObjectId known = recordNamed(editor.database().UCSTableId(), name);
  if (!known.isNull()) {
    if (gcdbOpenObject(record, known, GcDb::kForWrite) != Gcad::eOk) return false;
  } else {
    if (editor.database().getSymbolTable(table, GcDb::kForWrite) != Gcad::eOk) return false;
    auto made = std::make_unique<GcDbUCSTableRecord>();
    const bool added = made->setName(GcText(name).c_str()) == Gcad::eOk && table->add(made.get()) == Gcad::eOk;
    ignore(table->close());
    if (!added) return false;
    record = made.release();
  }
  const GcGeMatrix3d user = ucsToWorld(editor);
  const GcGeVector3d at = user.translation();
  record->setOrigin({at.x, at.y, at.z});
  record->setXAxis(user.column(0));
  record->setYAxis(user.column(1));
  static_cast<void>(setUcs(editor, record->origin(), record->xAxis(), record->yAxis(), view(record->getName())));
  ignore(record->close());
  return true;
}

bool remove(Editor& editor, GcView name) {
  GcDbUCSTableRecord* record = nullptr;
  const GcDbObjectId id = recordNamed(editor.database().UCSTableId(), name);
  if (id.isNull() || gcdbOpenObject(record, id, GcDb::kForWrite) != Gcad::eOk) return false;
  const bool erased = record->erase() == Gcad::eOk;
  ignore(record->close());
  return erased;
}

Task<bool> named(CommandInput& in, Answer option) {
  struct Choice {
    const char* word;
    const char* prompt;
    bool (*act)(Editor& editor, GcView name);
    const char* refusal;
  };
  static constexpr Choice kChoices[] = {
      {"Restore", "\nEnter name of UCS to restore: ", restore, "\nCannot find the specified UCS.\n"},
      {"Save", "\nEnter name to save current UCS: ", save, "\nInvalid name.\n"},
      {"Delete", "\nEnter UCS name to delete: ", remove, "\nCannot find the specified UCS.\n"},
  };
  if (option.isKeyword("NAmed"))
    option =
        co_await in.ask(Ask(What::Keyword, "\nEnter an option [Restore/Save/Delete]: ").words("Restore Save Delete"));
  for (const Choice& choice : kChoices) {
    if (!option.isKeyword(choice.word)) continue;
    const Answer name = co_await in.ask(Ask(What::Line, choice.prompt));
    if (name.kind == Answer::Kind::Text && choice.act(in.editor(), name.text)) co_return true;
    in.tell(choice.refusal);
  }
  co_return false;
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
    co_return co_await named(in, option);
  }
  co_return true;
}

constexpr Command kCommands[] = {
    {"UCS", "", ucs},
};

}  // namespace

std::span<const Command> ucsCommands() { return kCommands; }

}  // namespace ed
