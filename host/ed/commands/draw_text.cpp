// One line of text.
#include "host/ed/commands/textplace.h"

#include "db/text.h"
#include "db/textstyle.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/records.h"

namespace ed {

namespace {

using What = Ask::What;

struct Justification {
  const char* word;
  GcDb::TextHorzMode horizontal;
  GcDb::TextVertMode vertical;
};
constexpr Justification kJustifications[] = {
    {"Left", GcDb::kTextLeft, GcDb::kTextBase},    {"Center", GcDb::kTextCenter, GcDb::kTextBase},
    {"Right", GcDb::kTextRight, GcDb::kTextBase},  {"Align", GcDb::kTextAlign, GcDb::kTextBase},
    {"Middle", GcDb::kTextMid, GcDb::kTextBase},   {"Fit", GcDb::kTextFit, GcDb::kTextBase},
    {"TL", GcDb::kTextLeft, GcDb::kTextTop},       {"TC", GcDb::kTextCenter, GcDb::kTextTop},
    {"TR", GcDb::kTextRight, GcDb::kTextTop},      {"ML", GcDb::kTextLeft, GcDb::kTextVertMid},
    {"MC", GcDb::kTextCenter, GcDb::kTextVertMid}, {"MR", GcDb::kTextRight, GcDb::kTextVertMid},
    {"BL", GcDb::kTextLeft, GcDb::kTextBottom},    {"BC", GcDb::kTextCenter, GcDb::kTextBottom},
    {"BR", GcDb::kTextRight, GcDb::kTextBottom},
};
constexpr const char* kWords = "Left Center Right Align Middle Fit TL TC TR ML MC MR BL BC BR";

const Justification* justificationOf(const Answer& answer) {
  for (const Justification& each : kJustifications)
    if (answer.isKeyword(each.word)) return &each;
  return nullptr;
}

// The height every text of the style has; 0 when each has its own.
double fixedHeight(GcDbObjectId styleId) {
  GcDbTextStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, styleId, GcDb::kForRead) != Gcad::eOk) return 0;
  const double height = style->textSize();
  ignore(style->close());
  return height;
}

// Start point, justification and style, asked until there is a point.
Task<bool> askPoints(CommandInput& in, TextPlace& place) {
  for (;;) {
    Ask ask(What::Point, "\nSpecify start point of text or [Justify/Style]: ");
    ask.words("Justify Style Left Center Right Align Middle Fit TL TC TR ML MC MR BL BC BR");
    Answer answer = co_await in.ask(ask);
    if (answer.isKeyword("Style")) {
      const Answer name = co_await in.ask(Ask(What::Line, "\nEnter style name: "));
      static_cast<void>(setVariable(in.editor(), GC_T("TEXTSTYLE"), VariableValue::of(GcView(name.text))));
      continue;
    }
    if (answer.isKeyword("Justify")) answer = co_await in.ask(Ask(What::Keyword, "\nEnter an option: ").words(kWords));
    if (const Justification* found = justificationOf(answer)) {
      place.horizontal = found->horizontal;
      place.vertical = found->vertical;
      answer = co_await in.ask(Ask(What::Point, "\nSpecify point of text: ").needed());
    }
    if (!answer.isPoint()) co_return false;
    place.point = answer.point;
    break;
  }
  if (place.hasTwoPoints()) {
    const Answer second =
        co_await in.ask(Ask(What::Point, "\nSpecify second endpoint of baseline: ").from(place.point).needed());
    if (!second.isPoint()) co_return false;
    place.second = second.point;
  }
  co_return true;
}

Task<bool> text(CommandInput& in) {
  TextPlace place;
  if (!co_await askTextPlace(in, place)) co_return false;
  const Answer contents = co_await in.ask(Ask(What::Line, "\nEnter text: "));
  if (contents.text.empty()) co_return false;
  auto* made = new GcDbText(place.point, contents.text.c_str(), in.database().textstyle());
  giveTextPlace(*made, place);
  appendFromUser(in.editor(), made);
  co_return true;
}

constexpr Command kCommands[] = {
    {"TEXT", "DTEXT DT -TEXT", text},
};

}  // namespace

std::span<const Command> textCommands() { return kCommands; }

Task<bool> askTextPlace(CommandInput& in, TextPlace& place) {
  if (!co_await askPoints(in, place)) co_return false;
  place.height = fixedHeight(in.database().textstyle());
  if (place.height == 0 && place.horizontal != GcDb::kTextAlign) {
    place.height = realVariable(in.editor(), "TEXTSIZE");
    const Answer answer = co_await in.ask(Ask(What::Distance, "\nSpecify height: ").from(place.point).positive());
    if (answer.kind == Answer::Kind::Number) place.height = answer.number;
    static_cast<void>(setVariable(in.editor(), GC_T("TEXTSIZE"), VariableValue::of(place.height)));
  }
  if (!place.hasTwoPoints()) {
    const Answer answer =
        co_await in.ask(Ask(What::Direction, "\nSpecify rotation angle of text <0>: ").from(place.point));
    if (answer.kind == Answer::Kind::Number) place.rotationRad = answer.number;
  }
  co_return true;
}

void giveTextPlace(GcDbText& text, const TextPlace& place) {
  if (place.height > 0) ignore(text.setHeight(place.height));
  ignore(text.setRotation(place.rotationRad));
  ignore(text.setHorizontalMode(place.horizontal));
  ignore(text.setVerticalMode(place.vertical));
  if (!text.isDefaultAlignment()) ignore(text.setAlignmentPoint(place.hasTwoPoints() ? place.second : place.point));
}

}  // namespace ed
