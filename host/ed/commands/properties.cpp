// Common properties: of entities (CHPROP, CHANGE), and those new entities get (COLOR, -STYLE).
#include <cmath>
#include <optional>

#include "db/blockreference.h"
#include "db/circle.h"
#include "db/line.h"
#include "db/text.h"
#include "db/textstyle.h"
#include "host/ed/append.h"
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

// A colour by number or name, or as a true colour after a word; nothing for what is none.
Task<std::optional<GcCmColor>> askColor(CommandInput& in, const char* prompt) {
  const Answer answer = co_await in.ask(Ask(What::Word, prompt));
  GcText text = answer.text;
  if (!text.empty() && text[0] == GC_T('_')) text.erase(0, 1);
  if (equalNoCase(text, GC_T("T")) || equalNoCase(text, GC_T("TRUECOLOR"))) {
    const Answer numbers = co_await in.ask(Ask(What::Word, "\nRed,Green,Blue: "));
    text = numbers.text;
  } else if (equalNoCase(text, GC_T("CO")) || equalNoCase(text, GC_T("COLORBOOK"))) {
    static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter Color Book name: ")));
    static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter color name: ")));
    in.tell("\nNo color books are installed; give the color as a true color.\n");
    co_return std::nullopt;
  }
  GcCmColor color;
  if (parseColor(text, color)) co_return color;
  if (!text.empty()) in.tell("\nInvalid color: a number from 0 to 256, a name, or red,green,blue.\n");
  co_return std::nullopt;
}

Task<bool> changeColor(CommandInput& in, Ids ids) {
  const std::optional<GcCmColor> color = co_await askColor(in, "\nNew color [Truecolor/COlorbook] <BYLAYER>: ");
  if (!color) co_return false;
  change(ids, [&](GcDbEntity& entity) { ignore(entity.setColor(*color)); });
  co_return true;
}

// Group 440: 0x02000000 and the opacity from 0 to 255; 0 by layer, 0x01000000 by block.
Task<bool> changeTransparency(CommandInput& in, Ids ids) {
  constexpr int64_t kByBlock = 0x01000000, kByAlpha = 0x02000000;
  const Answer value = co_await in.ask(
      Ask(What::Integer, "\nEnter transparency value (0-90) or [ByLayer/ByBlock]: ").words("ByLayer ByBlock"));
  if (value.isNone()) co_return true;
  if (value.kind == Answer::Kind::Number && (value.number < 0 || value.number > 90)) {
    in.tell("\nTransparency goes from 0 to 90.\n");
    co_return false;
  }
  const int64_t group = value.isKeyword("ByBlock")   ? kByBlock
                        : value.isKeyword("ByLayer") ? 0
                                                     : kByAlpha | std::lround(255 * (100 - value.number) / 100);
  for (const GcDbObjectId id : ids) setGroups(id, {GcDbGroup::ofInt(440, group)});
  co_return true;
}

Task<bool> changeThickness(CommandInput& in, Ids ids) {
  const Answer value = co_await in.ask(Ask(What::Distance, "\nSpecify new thickness <0.0000>: "));
  if (value.kind == Answer::Kind::Number)
    for (const GcDbObjectId id : ids) setGroups(id, {GcDbGroup::ofReal(39, value.number)});
  co_return true;
}

// Along Z; plane polylines keep it as a number of their own.
Task<bool> changeElevation(CommandInput& in, Ids ids) {
  const Answer value = co_await in.ask(Ask(What::Distance, "\nSpecify new elevation <0.0000>: "));
  if (value.kind != Answer::Kind::Number) co_return false;
  for (const GcDbObjectId id : ids) {
    const GcDbExtents extents = extentsOf({id});
    GcGeMatrix3d shift;
    transformEntities({id}, shift.setToTranslation({0, 0, value.number - extents.minPoint().z}));
  }
  co_return true;
}

Task<bool> askProperties(CommandInput& in, Ids ids) {
  constexpr const char* kPrompt =
      "\nEnter property to change "
      "[Color/Elev/LAyer/LType/ltScale/LWeight/Thickness/TRansparency/Material/Annotative]: ";
  for (;;) {
    const Answer option = co_await in.ask(
        Ask(What::Keyword, kPrompt)
            .words("Color Elev LAyer LType ltScale LWeight Thickness TRansparency Material Annotative"));
    if (option.kind != Answer::Kind::Keyword) break;
    if (option.isKeyword("Color")) {
      static_cast<void>(co_await changeColor(in, ids));
    } else if (option.isKeyword("Elev")) {
      static_cast<void>(co_await changeElevation(in, ids));
    } else if (option.isKeyword("Thickness")) {
      static_cast<void>(co_await changeThickness(in, ids));
    } else if (option.isKeyword("TRansparency")) {
      static_cast<void>(co_await changeTransparency(in, ids));
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
  const std::optional<GcCmColor> chosen =
      co_await askColor(in, "\nEnter default object color [Truecolor/COlorbook] <BYLAYER>: ");
  if (!chosen) co_return false;
  const GcText text = colorText(*chosen);
  co_return setVariable(in.editor(), GC_T("CECOLOR"), VariableValue::of(GcView(text))) == VariableStatus::Done;
}

constexpr Command kCommands[] = {
    {"CHPROP", "", chprop},
    {"CHANGE", "-CH", changeCommand},
    {"COLOR", "-COLOR COL", color},
};

}  // namespace

std::span<const Command> propertyCommands() { return kCommands; }

}  // namespace ed
