// One line of text.
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

struct Placement {
  const Justification* justification = &kJustifications[0];
  GcGePoint3d point;
  GcGePoint3d second;  // Align and Fit
  bool two = false;
};

// Start point, justification and style, asked until there is a point.
Task<bool> askPlacement(CommandInput& in, Placement& place) {
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
      place.justification = found;
      answer = co_await in.ask(Ask(What::Point, "\nSpecify point of text: ").needed());
    }
    if (!answer.isPoint()) co_return false;
    place.point = answer.point;
    break;
  }
  place.two = place.justification->horizontal == GcDb::kTextAlign || place.justification->horizontal == GcDb::kTextFit;
  if (place.two) {
    const Answer second =
        co_await in.ask(Ask(What::Point, "\nSpecify second endpoint of baseline: ").from(place.point).needed());
    if (!second.isPoint()) co_return false;
    place.second = second.point;
  }
  co_return true;
}

void addText(CommandInput& in, const Placement& place, double height, double rotationRad, const GcText& contents) {
  auto* text = new GcDbText(place.point, contents.c_str(), in.database().textstyle(), height, rotationRad);
  ignore(text->setHorizontalMode(place.justification->horizontal));
  ignore(text->setVerticalMode(place.justification->vertical));
  if (place.two || place.justification != &kJustifications[0])
    ignore(text->setAlignmentPoint(place.two ? place.second : place.point));
  appendFromUser(in.editor(), text);
}

Task<bool> text(CommandInput& in) {
  Placement place;
  if (!co_await askPlacement(in, place)) co_return false;
  double height = fixedHeight(in.database().textstyle());
  if (height == 0 && place.justification->horizontal != GcDb::kTextAlign) {
    height = realVariable(in.editor(), "TEXTSIZE");
    const Answer answer = co_await in.ask(Ask(What::Distance, "\nSpecify height: ").from(place.point).positive());
    if (answer.kind == Answer::Kind::Number) height = answer.number;
    static_cast<void>(setVariable(in.editor(), GC_T("TEXTSIZE"), VariableValue::of(height)));
  }
  double rotation = 0;
  if (!place.two) {
    const Answer answer =
        co_await in.ask(Ask(What::Direction, "\nSpecify rotation angle of text <0>: ").from(place.point));
    if (answer.kind == Answer::Kind::Number) rotation = answer.number;
  }
  const Answer contents = co_await in.ask(Ask(What::Line, "\nEnter text: "));
  if (contents.text.empty()) co_return false;
  addText(in, place, height, rotation, contents.text);
  co_return true;
}

constexpr Command kCommands[] = {
    {"TEXT", "DTEXT DT -TEXT", text},
};

}  // namespace

std::span<const Command> textCommands() { return kCommands; }

}  // namespace ed
