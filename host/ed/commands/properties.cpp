// Common properties: of entities (CHPROP, CHANGE), and those new entities get (COLOR, -STYLE).
#include "db/blockreference.h"
#include "db/circle.h"
#include "db/line.h"
#include "db/text.h"
#include "db/textstyle.h"
#include "host/ed/colors.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/records.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

template <class Change>
void change(const Ids& ids, const Change& apply) {
  for (const GcDbObjectId id : ids) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForWrite) != Gcad::eOk) continue;
    apply(*entity);
    ignore(entity->close());
  }
}

Task<bool> changeColor(CommandInput& in, Ids ids) {
  const Answer answer = co_await in.ask(Ask(What::Word, "\nNew color [Truecolor/COlorbook]: "));
  GcText text = answer.text;
  if (equalNoCase(text, GC_T("T")) || equalNoCase(text, GC_T("TRUECOLOR")))
    text = (co_await in.ask(Ask(What::Word, "\nRed,Green,Blue: "))).text;
  GcCmColor color;
  if (!parseColor(text, color)) co_return false;
  change(ids, [&](GcDbEntity& entity) { ignore(entity.setColor(color)); });
  co_return true;
}

Task<bool> askProperties(CommandInput& in, Ids ids) {
  constexpr const char* kPrompt =
      "\nEnter property to change [Color/LAyer/LType/ltScale/LWeight/Thickness/TRansparency/Material/Annotative]: ";
  for (;;) {
    const Answer option =
        co_await in.ask(Ask(What::Keyword, kPrompt)
                            .words("Color LAyer LType ltScale LWeight Thickness TRansparency Material Annotative"));
    if (option.kind != Answer::Kind::Keyword) break;
    if (option.isKeyword("Color")) {
      static_cast<void>(co_await changeColor(in, ids));
    } else if (option.isKeyword("LAyer")) {
      const Answer name = co_await in.ask(Ask(What::Line, "\nEnter new layer name: "));
      const GcDbObjectId layer = recordNamed(in.database().layerTableId(), name.text);
      if (layer.isNull())
        in.tell("\nCannot find layer.\n");
      else
        change(ids, [&](GcDbEntity& entity) { ignore(entity.setLayer(layer)); });
    } else if (option.isKeyword("LType")) {
      const Answer name = co_await in.ask(Ask(What::Word, "\nEnter new linetype name: "));
      const GcDbObjectId type = recordNamed(in.database().linetypeTableId(), name.text);
      if (!type.isNull()) change(ids, [&](GcDbEntity& entity) { ignore(entity.setLinetype(type)); });
    } else if (option.isKeyword("ltScale")) {
      const Answer scale = co_await in.ask(Ask(What::Real, "\nSpecify new linetype scale: ").positive());
      if (scale.kind == Answer::Kind::Number)
        change(ids, [&](GcDbEntity& entity) { ignore(entity.setLinetypeScale(scale.number)); });
    } else if (option.isKeyword("LWeight")) {
      const Answer weight =
          co_await in.ask(Ask(What::Real, "\nEnter new lineweight: ").words("ByLayer ByBlock Default"));
      const int hundredths = weight.isKeyword("ByLayer")   ? GcDb::kLnWtByLayer
                             : weight.isKeyword("ByBlock") ? GcDb::kLnWtByBlock
                             : weight.isKeyword("Default") ? GcDb::kLnWtByLwDefault
                                                           : static_cast<int>(std::lround(weight.number * 100));
      change(ids, [&](GcDbEntity& entity) { ignore(entity.setLineWeight(static_cast<GcDb::LineWeight>(hundredths))); });
    } else {
      static_cast<void>(co_await in.ask(Ask(What::Word, "\nEnter new value: ")));
    }
  }
  co_return true;
}

Task<bool> chprop(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  co_return co_await askProperties(in, ids);
}

// The nearer end of a line goes to the point, a circle passes through it, texts and blocks move there.
void changeToPoint(GcDbObjectId id, const GcGePoint3d& to) {
  forEach<GcDbLine>({id}, [&](GcDbLine& line) {
    const bool end = to.distanceTo(line.endPoint()) <= to.distanceTo(line.startPoint());
    ignore(end ? line.setEndPoint(to) : line.setStartPoint(to));
  });
  forEach<GcDbCircle>({id}, [&](GcDbCircle& circle) {
    if (to.distanceTo(circle.center()) > 0) ignore(circle.setRadius(to.distanceTo(circle.center())));
  });
  forEach<GcDbText>({id}, [&](GcDbText& text) {
    ignore(text.isDefaultAlignment() ? text.setPosition(to) : text.setAlignmentPoint(to));
    ignore(text.adjustAlignment());
  });
  forEach<GcDbBlockReference>({id}, [&](GcDbBlockReference& block) { ignore(block.setPosition(to)); });
}

// What a line of text is asked besides its place.
Task<bool> askText(CommandInput& in, GcDbObjectId id) {
  if (!id.isValid() || id.objectClass() != GcDbText::desc()) co_return false;
  const Answer style = co_await in.ask(Ask(What::Line, "\nEnter new text style: "));
  const Answer height = co_await in.ask(Ask(What::Distance, "\nSpecify new height: ").positive());
  const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify new rotation angle: "));
  const Answer contents = co_await in.ask(Ask(What::Line, "\nEnter new text: "));
  const GcDbObjectId styleId = recordNamed(in.database().textStyleTableId(), style.text);
  forEach<GcDbText>({id}, [&](GcDbText& text) {
    if (!styleId.isNull()) ignore(text.setTextStyle(styleId));
    if (height.kind == Answer::Kind::Number) ignore(text.setHeight(height.number));
    if (angle.kind == Answer::Kind::Number) ignore(text.setRotation(angle.number));
    if (!contents.text.empty()) ignore(text.setTextString(contents.text.c_str()));
  });
  co_return true;
}

Task<bool> changeCommand(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  const Answer option =
      co_await in.ask(Ask(What::Point, "\nSpecify change point or [Properties]: ").words("Properties"));
  if (option.isKeyword("Properties")) co_return co_await askProperties(in, ids);
  if (option.isPoint())
    for (const GcDbObjectId id : ids) changeToPoint(id, in.toWorld(option.point));
  for (const GcDbObjectId id : ids) static_cast<void>(co_await askText(in, id));
  co_return true;
}

Task<bool> color(CommandInput& in) {
  const Answer answer = co_await in.ask(Ask(What::Word, "\nEnter default object color: "));
  co_return setVariable(in.editor(), GC_T("CECOLOR"), VariableValue::of(GcView(answer.text))) == VariableStatus::Done;
}

constexpr Command kCommands[] = {
    {"CHPROP", "", chprop},
    {"CHANGE", "-CH", changeCommand},
    {"COLOR", "-COLOR COL", color},
};

}  // namespace

std::span<const Command> propertyCommands() { return kCommands; }

}  // namespace ed
