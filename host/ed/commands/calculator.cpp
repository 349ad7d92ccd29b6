// CAL: the geometry calculator at the command line.
#include "host/ed/calculator.h"

#include "host/ap/output.h"
#include "host/ed/command/families.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

std::string shown(const CalcValue& value) {
  if (value.kind == CalcValue::Kind::Integer) return std::to_string(static_cast<int64_t>(value.number));
  if (!value.isVector()) return gc::realText(value.number);
  return "(" + gc::realText(value.vector.x) + " " + gc::realText(value.vector.y) + " " + gc::realText(value.vector.z) +
         ")";
}

Task<bool> calculator(CommandInput& in) {
  const Answer typed = co_await in.ask(Ask(What::Line, "\n>> Expression: "));
  Calculation calculation;
  GcText complaint;
  if (typed.text.empty()) co_return false;
  if (!calculation.parse(typed.text, complaint)) {
    in.tell(gc::toUtf8(complaint).c_str());
    co_return false;
  }
  std::vector<CalcValue> picked;
  for (const CalcPick& pick : calculation.picks()) {
    for (;;) {
      const Answer answer = co_await in.ask(Calculation::questionFor(pick));
      if (answer.kind == Answer::Kind::Cancelled) co_return false;
      if (CalcValue value; Calculation::take(in.editor(), pick, answer, value)) {
        picked.push_back(value);
        break;
      }
      in.tell("\nNothing of this kind is there.\n");
    }
  }
  CalcValue value;
  if (!calculation.evaluate(in.editor(), picked, value, complaint)) {
    in.tell(gc::toUtf8(complaint).c_str());
    co_return false;
  }
  in.tell(("\n" + shown(value) + "\n").c_str());
  co_return true;
}

constexpr Command kCommands[] = {
    {"CAL", "", calculator},
};

}  // namespace

std::span<const Command> calculatorCommands() { return kCommands; }

}  // namespace ed
