// Attributes: defined, edited by pattern, brought in step with their block, shown or hidden.
#include "host/ed/commands/attributes.h"

#include "db/blockreference.h"
#include "host/ed/append.h"
#include "host/ed/colors.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/commands/textplace.h"
#include "host/ed/contents.h"
#include "host/ed/patterns.h"
#include "host/ed/records.h"
#include "host/rx/text/utf.h"

namespace ed {

std::vector<GcDbObjectId> attributeDefinitions(GcDbObjectId block) {
  std::vector<GcDbObjectId> found;
  for (const GcDbObjectId id : entitiesOf(block))
    if (id.objectClass()->isDerivedFrom(GcDbAttributeDefinition::desc())) found.push_back(id);
  return found;
}

void addAttribute(GcDbObjectId referenceId, GcDbObjectId definitionId, const GcText& text) {
  GcDbBlockReference* reference = nullptr;
  GcDbAttributeDefinition* definition = nullptr;
  if (gcdbOpenObject(reference, referenceId, GcDb::kForWrite) != Gcad::eOk) return;
  if (gcdbOpenObject(definition, definitionId, GcDb::kForRead) == Gcad::eOk) {
    if (!definition->isConstant()) {
      auto* attribute = new GcDbAttribute;
      ignore(attribute->setAttributeFromBlock(definition, reference->blockTransform()));
      if (!text.empty()) ignore(attribute->setTextString(text.c_str()));
      if (reference->appendAttribute(attribute) == Gcad::eOk)
        ignore(attribute->close());
      else
        delete attribute;
    }
    ignore(definition->close());
  }
  ignore(reference->close());
}

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

// ---- -ATTDEF

struct Modes {
  bool invisible = false;
  bool constant = false;
  bool verify = false;
  bool preset = false;
};

// Each word switches its mode over; Enter goes on.
Task<Modes> askModes(CommandInput& in) {
  Modes modes;
  for (;;) {
    const Answer word = co_await in.ask(
        Ask(What::Keyword,
            "\nEnter an option to change [Invisible/Constant/Verify/Preset/Lock position/Annotative/Multiple lines] "
            "<done>: ")
            .words("Invisible Constant Verify Preset Lock Annotative Multiple"));
    if (word.kind != Answer::Kind::Keyword) co_return modes;
    if (word.isKeyword("Invisible")) modes.invisible = !modes.invisible;
    if (word.isKeyword("Constant")) modes.constant = !modes.constant;
    if (word.isKeyword("Verify")) modes.verify = !modes.verify;
    if (word.isKeyword("Preset")) modes.preset = !modes.preset;
  }
}

Task<bool> define(CommandInput& in) {
  const Modes modes = co_await askModes(in);
  const Answer tag = co_await in.ask(Ask(What::Word, "\nEnter attribute tag name: "));
  if (tag.text.empty()) {
    in.tell("\nA tag is required.\n");
    co_return false;
  }
  GcText prompt;
  if (!modes.constant) prompt = (co_await in.ask(Ask(What::Line, "\nEnter attribute prompt: "))).text;
  const Answer value = co_await in.ask(
      Ask(What::Line, modes.constant ? "\nEnter attribute value: " : "\nEnter default attribute value: "));
  TextPlace place;
  if (!co_await askTextPlace(in, place)) co_return false;
  auto* made = new GcDbAttributeDefinition(place.point, value.text.c_str(), upperText(tag.text).c_str(), prompt.c_str(),
                                           in.database().textstyle());
  giveTextPlace(*made, place);
  ignore(made->setInvisible(modes.invisible));
  ignore(made->setConstant(modes.constant));
  ignore(made->setVerifiable(modes.verify));
  ignore(made->setPreset(modes.preset));
  co_return !appendFromUser(in.editor(), made).isNull();
}

// ---- ATTSYNC

std::vector<GcDbObjectId> referencesOf(CommandInput& in, GcDbObjectId block) {
  Ids found;
  for (const GcDbObjectId id : entitiesOfAllBlocks(in.database())) {
    GcDbBlockReference* reference = nullptr;
    if (gcdbOpenObject(reference, id, GcDb::kForRead) != Gcad::eOk) continue;
    if (reference->blockTableRecord() == block) found.push_back(id);
    ignore(reference->close());
  }
  return found;
}

Ids attributesOf(GcDbObjectId referenceId) {
  GcDbBlockReference* reference = nullptr;
  GcDbObjectIdArray ids;
  if (gcdbOpenObject(reference, referenceId, GcDb::kForRead) != Gcad::eOk) return {};
  reference->attributeIds(ids);
  ignore(reference->close());
  Ids living;
  for (const GcDbObjectId id : ids)
    if (id.isValid() && !id.isErased()) living.push_back(id);
  return living;
}

GcText tagOf(GcDbObjectId definitionId) {
  GcDbAttributeDefinition* definition = nullptr;
  if (gcdbOpenObject(definition, definitionId, GcDb::kForRead) != Gcad::eOk) return {};
  GcText tag(view(definition->tag()));
  ignore(definition->close());
  return tag;
}

// New attributes of all definitions, in their order, with the texts the old ones of the same tag had.
void synchronize(GcDbObjectId reference, const Ids& definitions) {
  std::vector<std::pair<GcText, GcText>> texts;
  forEach<GcDbAttribute>(attributesOf(reference), [&](GcDbAttribute& attribute) {
    texts.emplace_back(view(attribute.tag()), view(attribute.textString()));
    ignore(attribute.erase());
  });
  for (const GcDbObjectId definition : definitions) {
    const GcText tag = tagOf(definition);
    const auto former =
        std::find_if(texts.begin(), texts.end(), [&](const auto& each) { return equalNoCase(each.first, tag); });
    addAttribute(reference, definition, former == texts.end() ? GcText() : former->second);
    if (former != texts.end() && former->second.empty())
      forEach<GcDbAttribute>({attributesOf(reference).back()},
                             [](GcDbAttribute& attribute) { ignore(attribute.setTextString(GC_T(""))); });
  }
}

Task<bool> synchronizeCommand(CommandInput& in) {
  const Answer way =
      co_await in.ask(Ask(What::Keyword, "\nEnter an option [?/Name/Select] <Select>: ").words("? Name Select"));
  GcText name;
  if (way.isKeyword("Name")) {
    name = (co_await in.ask(Ask(What::Line, "\nEnter name of block: "))).text;
  } else {
    const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect a block: ").needed());
    GcDbBlockReference* reference = nullptr;
    if (picked.kind != Answer::Kind::Entity || gcdbOpenObject(reference, picked.entity, GcDb::kForRead) != Gcad::eOk)
      co_return false;
    name = nameOfRecord(reference->blockTableRecord());
    ignore(reference->close());
    Ask sure(What::Keyword, "");
    sure.prompt = GC_T("\nATTSYNC block ") + name + GC_T("? [Yes/No] <Yes>: ");
    if ((co_await in.ask(sure.words("Yes No"))).isKeyword("No")) co_return false;
  }
  const GcDbObjectId block = recordNamed(in.database().blockTableId(), name);
  const Ids definitions = attributeDefinitions(block);
  if (definitions.empty()) {
    in.tell("\nThe drawing has no block of this name with attributes.\n");
    co_return false;
  }
  for (const GcDbObjectId reference : referencesOf(in, block)) synchronize(reference, definitions);
  co_return true;
}

// ---- -ATTEDIT

struct Filter {
  GcText block = GC_T("*");
  GcText tag = GC_T("*");
  GcText value = GC_T("*");
};

Task<Filter> askFilter(CommandInput& in) {
  Filter filter;
  const Answer block = co_await in.ask(Ask(What::Line, "\nEnter block name <*>: "));
  const Answer tag = co_await in.ask(Ask(What::Line, "\nEnter attribute tag <*>: "));
  const Answer value = co_await in.ask(Ask(What::Line, "\nEnter attribute value <*>: "));
  if (!block.text.empty()) filter.block = block.text;
  if (!tag.text.empty()) filter.tag = tag.text;
  if (!value.text.empty()) filter.value = value.text;
  co_return filter;
}

bool takes(const Filter& filter, const GcDbAttribute& attribute) {
  // An empty value is asked for by a backslash.
  const GcView text = view(attribute.textString());
  const bool valueFits = filter.value == GC_T("\\") ? text.empty() : matchesName(text, filter.value);
  return valueFits && matchesName(view(attribute.tag()), filter.tag);
}

GcText blockNameOf(GcDbObjectId referenceId) {
  GcDbBlockReference* reference = nullptr;
  if (gcdbOpenObject(reference, referenceId, GcDb::kForRead) != Gcad::eOk) return {};
  GcText name = nameOfRecord(reference->blockTableRecord());
  ignore(reference->close());
  return name;
}

Ids filtered(const Ids& references, const Filter& filter) {
  Ids found;
  for (const GcDbObjectId reference : references) {
    if (!matchesName(blockNameOf(reference), filter.block)) continue;
    for (const GcDbObjectId id : attributesOf(reference))
      forEach<GcDbAttribute>({id}, [&](GcDbAttribute& attribute) {
        if (takes(filter, attribute)) found.push_back(id);
      });
  }
  return found;
}

// The first `from` in the text becomes `to`; an empty `from` puts `to` before it.
void replaceFirst(GcDbAttribute& attribute, const GcText& from, const GcText& to) {
  GcText text(view(attribute.textString()));
  const size_t at = text.find(from);
  if (at == GcText::npos) return;
  text.replace(at, from.size(), to);
  ignore(attribute.setTextString(text.c_str()));
}

// All attributes that fit, wherever they are.
Task<bool> editAll(CommandInput& in) {
  const Answer visible =
      co_await in.ask(Ask(What::Keyword, "\nEdit only attributes visible on screen? [Yes/No] <Y>: ").words("Yes No"));
  const Filter filter = co_await askFilter(in);
  Ids references = entitiesOfAllBlocks(in.database());
  if (!visible.isKeyword("No")) references = co_await selectObjects(in, "\nSelect Attributes: ");
  const Answer from = co_await in.ask(Ask(What::Line, "\nEnter string to change: "));
  const Answer to = co_await in.ask(Ask(What::Line, "\nEnter new string: "));
  const Ids attributes = filtered(references, filter);
  forEach<GcDbAttribute>(attributes, [&](GcDbAttribute& attribute) { replaceFirst(attribute, from.text, to.text); });
  in.tell(("\n" + std::to_string(attributes.size()) + " attributes selected.\n").c_str());
  co_return !attributes.empty();
}

Task<bool> editValue(CommandInput& in, GcDbObjectId id) {
  const Answer how = co_await in.ask(
      Ask(What::Keyword, "\nEnter type of value modification [Change/Replace] <Replace>: ").words("Change Replace"));
  GcText from;
  if (how.isKeyword("Change")) from = (co_await in.ask(Ask(What::Line, "\nEnter string to change: "))).text;
  const Answer to = co_await in.ask(
      Ask(What::Line, how.isKeyword("Change") ? "\nEnter new string: " : "\nEnter new attribute value: "));
  forEach<GcDbAttribute>({id}, [&](GcDbAttribute& attribute) {
    if (how.isKeyword("Change"))
      replaceFirst(attribute, from, to.text);
    else
      ignore(attribute.setTextString(to.text.c_str()));
  });
  co_return true;
}

// One property after the other until Next or Enter.
Task<bool> editOne(CommandInput& in, GcDbObjectId id) {
  for (;;) {
    const Answer option = co_await in.ask(
        Ask(What::Keyword, "\nEnter an option [Value/Position/Height/Angle/Style/Layer/Color/Next] <N>: ")
            .words("Value Position Height Angle Style Layer Color Next"));
    if (option.kind != Answer::Kind::Keyword || option.isKeyword("Next")) co_return true;
    if (option.isKeyword("Value")) {
      static_cast<void>(co_await editValue(in, id));
    } else if (option.isKeyword("Position")) {
      const Answer point = co_await in.ask(Ask(What::Point, "\nSpecify new text insertion point <no change>: "));
      if (!point.isPoint()) continue;
      const GcGePoint3d at = in.toWorld(point.point);
      forEach<GcDbAttribute>({id}, [&](GcDbAttribute& attribute) {
        ignore(attribute.isDefaultAlignment() ? attribute.setPosition(at) : attribute.setAlignmentPoint(at));
        ignore(attribute.adjustAlignment());
      });
    } else if (option.isKeyword("Height")) {
      const Answer height = co_await in.ask(Ask(What::Distance, "\nSpecify new height <no change>: ").positive());
      if (height.kind == Answer::Kind::Number)
        forEach<GcDbAttribute>({id}, [&](GcDbAttribute& a) { ignore(a.setHeight(height.number)); });
    } else if (option.isKeyword("Angle")) {
      const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify new rotation angle <no change>: "));
      if (angle.kind == Answer::Kind::Number)
        forEach<GcDbAttribute>({id}, [&](GcDbAttribute& a) { ignore(a.setRotation(angle.number)); });
    } else if (option.isKeyword("Style")) {
      const Answer name = co_await in.ask(Ask(What::Line, "\nEnter new text style: "));
      const GcDbObjectId style = recordNamed(in.database().textStyleTableId(), name.text);
      if (!style.isNull()) forEach<GcDbAttribute>({id}, [&](GcDbAttribute& a) { ignore(a.setTextStyle(style)); });
    } else if (option.isKeyword("Layer")) {
      const Answer name = co_await in.ask(Ask(What::Line, "\nEnter new layer name: "));
      forEach<GcDbAttribute>({id}, [&](GcDbAttribute& a) { ignore(a.setLayer(name.text.c_str())); });
    } else {
      const Answer name = co_await in.ask(Ask(What::Word, "\nEnter new color: "));
      GcCmColor color;
      if (parseColor(name.text, color))
        forEach<GcDbAttribute>({id}, [&](GcDbAttribute& a) { ignore(a.setColor(color)); });
    }
  }
}

Task<bool> edit(CommandInput& in) {
  const Answer oneByOne =
      co_await in.ask(Ask(What::Keyword, "\nEdit attributes one at a time? [Yes/No] <Y>: ").words("Yes No"));
  if (oneByOne.isKeyword("No")) co_return co_await editAll(in);
  const Filter filter = co_await askFilter(in);
  const Ids chosen = co_await selectObjects(in, "\nSelect Attributes: ");
  const Ids attributes = filtered(chosen, filter);
  for (const GcDbObjectId id : attributes) static_cast<void>(co_await editOne(in, id));
  co_return !attributes.empty();
}

// ---- ATTDISP

Task<bool> show(CommandInput& in) {
  const Answer mode = co_await in.ask(
      Ask(What::Keyword, "\nEnter attribute visibility setting [Normal/ON/OFF] <Normal>: ").words("Normal ON OFF"));
  const int value = mode.isKeyword("ON") ? 2 : mode.isKeyword("OFF") ? 0 : 1;
  co_return setVariable(in.editor(), GC_T("ATTMODE"), VariableValue::of(value)) == VariableStatus::Done;
}

constexpr Command kCommands[] = {
    {"-ATTDEF", "ATTDEF ATT -ATT", define},
    {"-ATTEDIT", "ATTEDIT ATE -ATE", edit},
    {"ATTSYNC", "", synchronizeCommand},
    {"ATTDISP", "", show},
};

}  // namespace

std::span<const Command> attributeCommands() { return kCommands; }

}  // namespace ed
