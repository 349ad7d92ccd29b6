// Questions to the person.
#include "host/ed/commandline.h"
#include "host/ed/input/ask.h"
#include "host/ed/pick.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/names.h"
#include "host/rx/text/utf.h"

using ed::Answer;
using ed::Ask;
using lisp::LispValue;
using lisplib::hostOf;

LISP_GROUP("User input")

namespace {

// Bits of initget.
constexpr int kNoNull = 1;
constexpr int kNoZero = 2;
constexpr int kNoNegative = 4;
constexpr int kIgnoreZ = 64;
constexpr int kAnyText = 128;

// Base point and message of the getXXX functions, in either order, and the rules of the last initget, used up here.
struct Question {
  Ask ask;
};

Question question(lisp::Args& args, Ask::What what) {
  Question q{Ask(what, "")};
  while (args.more()) {
    const LispValue value = args.any();
    double at[3];
    if (value.isString())
      q.ask.prompt = value.asString()->view();
    else if (lisp::pointOf(value, at) != 0)
      q.ask.from({at[0], at[1], at[2]});
    else if (value)
      lisp::failType(args.vm(), lisp::kStringp, value);
  }
  ed::Editor& editor = hostOf(args.vm()).editor();
  const ed::Editor::InputRules rules = std::exchange(editor.inputRules, {});
  q.ask.keywords = rules.keywords;
  q.ask.mayBeEmpty = (rules.bits & kNoNull) == 0;
  q.ask.mayBeZero = (rules.bits & kNoZero) == 0;
  q.ask.mayBeNegative = (rules.bits & kNoNegative) == 0;
  q.ask.anyText = (rules.bits & kAnyText) != 0;
  q.ask.flat = (rules.bits & kIgnoreZ) != 0;
  return q;
}

Answer put(lisp::Args& args, const Ask& ask) {
  args.vm().flush();
  ed::Editor& editor = hostOf(args.vm()).editor();
  Answer answer = ed::askPerson(editor, ask);
  if (answer.kind == Answer::Kind::Cancelled) lisp::fail("Function cancelled");
  if (answer.isPoint()) editor.commandLine().rememberPoint(answer.point);
  if (answer.isNone()) editor.errorNumber = ed::Editor::kEnterPressed;
  return answer;
}

LispValue pointValue(lisp::Args& args, const GcGePoint3d& point) {
  const double at[] = {point.x, point.y, point.z};
  return args.newPoint(at, 3);
}

LispValue valueOf(lisp::Args& args, const Answer& answer, bool asInteger = false) {
  switch (answer.kind) {
    case Answer::Kind::Keyword:
    case Answer::Kind::Text: return args.newString(answer.text);
    case Answer::Kind::Number:
      return asInteger ? LispValue::integer(static_cast<int32_t>(answer.number)) : LispValue::real(answer.number);
    case Answer::Kind::Point: return pointValue(args, answer.point);
    default: return LispValue::nil();
  }
}

// A number, or the measure between two points when the first answer is one.
LispValue measured(lisp::Args& args, Ask::What what) {
  Question q = question(args, what);
  Answer answer = put(args, q.ask);
  if (answer.isPoint() && answer.wantsSecondPoint) {
    q.ask.from(answer.point);
    q.ask.prompt = GC_T("Specify second point: ");
    answer = put(args, q.ask);
  }
  return valueOf(args, answer);
}

LispValue point(lisp::Args& args) { return valueOf(args, put(args, question(args, Ask::What::Point).ask)); }

// A pick, or nothing with ERRNO telling why. A miss is an answer here, unlike at a command's question.
LispValue pick(lisp::Args& args, bool& picked, Answer& answer) {
  Question q = question(args, Ask::What::Point);
  if (q.ask.prompt.empty()) q.ask.prompt = GC_T("\nSelect object: ");
  q.ask.onEntity = true;
  ed::Editor& editor = hostOf(args.vm()).editor();
  answer = put(args, q.ask);
  picked = false;
  if (!answer.isPoint()) return valueOf(args, answer);
  answer.entity = ed::entityAt(editor, answer.point);
  picked = !answer.entity.isNull();
  editor.errorNumber = picked ? 0 : ed::Editor::kMissedPick;
  return LispValue::nil();
}

LispValue pickedList(lisp::Args& args, const Answer& answer) {
  return args.cons(lisplib::makeName(args.vm(), answer.entity),
                   args.cons(pointValue(args, answer.point), LispValue::nil()));
}

}  // namespace

LISP_BUILTIN("initget", "(initget [bits] [keywords]) -> nil",
             "Rules for the next getXXX: 1 no Enter, 2 no zero, 4 no negative, 8 no limits, 16 3D, 32 dashed, "
             "64 ignore z, 128 any text; keywords as \"Yes No eXit\".") {
  ed::Editor::InputRules rules;
  while (args.more()) {
    const LispValue value = args.any();
    if (value.isInteger())
      rules.bits = value.asInteger();
    else if (value.isString())
      rules.keywords = value.asString()->view();
    else if (value)
      lisp::failType(args.vm(), lisp::kStringp, value);
  }
  hostOf(args.vm()).editor().inputRules = rules;
  return LispValue::nil();
}

LISP_BUILTIN("getpoint", "(getpoint [base] [message]) -> point | string | nil", "Asks for a point.") {
  return point(args);
}

LISP_BUILTIN("getcorner", "(getcorner base [message]) -> point | string | nil", "Asks for the other corner of a box.") {
  return point(args);
}

LISP_BUILTIN("getdist", "(getdist [base] [message]) -> real | string | nil",
             "Asks for a distance: a number, two points, or one seen from the base.") {
  return measured(args, Ask::What::Distance);
}

LISP_BUILTIN("getangle", "(getangle [base] [message]) -> real | string | nil",
             "Asks for an angle, radians; it is not counted from ANGBASE.") {
  return measured(args, Ask::What::Angle);
}

LISP_BUILTIN("getorient", "(getorient [base] [message]) -> real | string | nil", "Asks for a direction, radians.") {
  return measured(args, Ask::What::Direction);
}

LISP_BUILTIN("getint", "(getint [message]) -> integer | string | nil", "Asks for an integer.") {
  return valueOf(args, put(args, question(args, Ask::What::Integer).ask), true);
}

LISP_BUILTIN("getreal", "(getreal [message]) -> real | string | nil", "Asks for a number.") {
  return valueOf(args, put(args, question(args, Ask::What::Real).ask));
}

LISP_BUILTIN("getkword", "(getkword [message]) -> string | nil", "Asks for one of the keywords given by initget.") {
  return valueOf(args, put(args, question(args, Ask::What::Keyword).ask));
}

LISP_BUILTIN("getstring", "(getstring [blanks] [message]) -> string",
             "Asks for text; it ends at a blank unless the first argument is not nil.") {
  Ask ask(Ask::What::Line, "");
  bool blanks = false;
  while (args.more()) {
    const LispValue value = args.any();
    if (value.isString())
      ask.prompt = value.asString()->view();
    else
      blanks = static_cast<bool>(value);
  }
  const Answer answer = put(args, ask);
  const lisp::TextView text = answer.text;
  return args.newString(blanks ? text : text.substr(0, text.find_first_of(GC_T(" \t"))));
}

LISP_BUILTIN("entsel", "(entsel [message]) -> (entity point) | string | nil",
             "Asks for an entity at a point; ERRNO tells a miss (7) from Enter (52).") {
  bool picked = false;
  Answer answer;
  const LispValue other = pick(args, picked, answer);
  return picked ? pickedList(args, answer) : other;
}

namespace {

// (entity point), and within block references (entity point matrix (reference ...)). The matrix leads from the block's
// coordinates to the world's: four rows of three for row vectors (nentsel), four rows of four for columns (nentselp).
LispValue nestedList(lisp::Args& args, const ed::NestedPick& pick, const GcGePoint3d& at, bool columns) {
  lisp::ListBuilder list(args.vm());
  list.add(lisplib::makeName(args.vm(), pick.entity));
  list.add(pointValue(args, at));
  if (pick.parents.empty()) return list.list();
  lisp::ListBuilder matrix(args.vm());
  for (int row = 0; row < 4; ++row) {
    lisp::ListBuilder numbers(args.vm());
    for (int column = 0; column < (columns ? 4 : 3); ++column)
      numbers.add(LispValue::real(columns ? pick.toWorld.entry[row][column] : pick.toWorld.entry[column][row]));
    matrix.add(numbers.list());
  }
  list.add(matrix.list());
  lisp::ListBuilder parents(args.vm());
  for (const GcDbObjectId id : pick.parents) parents.add(lisplib::makeName(args.vm(), id));
  list.add(parents.list());
  return list.list();
}

LispValue nestedAt(lisp::Args& args, const GcGePoint3d& at, bool columns) {
  ed::Editor& editor = hostOf(args.vm()).editor();
  const ed::NestedPick pick = ed::nestedAt(editor, at);
  editor.errorNumber = pick.entity.isNull() ? ed::Editor::kMissedPick : 0;
  return pick.entity.isNull() ? LispValue::nil() : nestedList(args, pick, at, columns);
}

LispValue askNested(lisp::Args& args, bool columns) {
  bool picked = false;
  Answer answer;
  const LispValue other = pick(args, picked, answer);
  return picked ? nestedAt(args, answer.point, columns) : other;
}

}  // namespace

LISP_BUILTIN(
    "nentsel", "(nentsel [message]) -> (entity point [matrix references]) | string | nil",
    "Asks for an entity, within block references too: then with the matrix from the block to the world and the "
    "references around it, innermost first.") {
  return askNested(args, false);
}

LISP_BUILTIN("nentselp", "(nentselp [message] [point]) -> (entity point [matrix references]) | string | nil",
             "As nentsel, with a matrix of four by four; without asking when the point is given.") {
  for (uint32_t i = 0; i < args.count(); ++i) {
    double at[3];
    if (lisp::pointOf(args[i], at) != 0) return nestedAt(args, {at[0], at[1], at[2]}, true);
  }
  return askNested(args, true);
}
