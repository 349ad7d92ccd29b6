#include "host/ed/input/ask.h"

#include <algorithm>

#include "host/ap/output.h"
#include "host/ed/command/families.h"
#include "host/ed/commandline.h"
#include "host/ed/input/keywords.h"
#include "host/ed/input/parse.h"
#include "host/ed/pick.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

double distanceFrom(const Ask& ask, GcGePoint3d point) {
  if (ask.flat) point.z = ask.base.z;
  return ask.base.distanceTo(point);
}

using Kind = InputItem::Kind;

const char* complaintOf(Ask::What what) {
  switch (what) {
    case Ask::What::Point: return "\nInvalid point.\n";
    case Ask::What::Distance: return "\nRequires numeric distance or two points.\n";
    case Ask::What::Angle:
    case Ask::What::Direction: return "\nRequires valid numeric angle or two points.\n";
    case Ask::What::Integer: return "\nRequires an integer value.\n";
    case Ask::What::Real: return "\nRequires numeric value.\n";
    case Ask::What::Entity: return "\nNo object found.\n";
    case Ask::What::Objects: return "\n*Invalid selection*\n";
    default: return "\nInvalid option keyword.\n";
  }
}

bool numberFits(const Ask& ask, double value) {
  return std::isfinite(value) && (ask.mayBeZero || value != 0) && (ask.mayBeNegative || value >= 0);
}

bool giveNumber(const Ask& ask, double value, Answer& answer, GcText& complaint) {
  if (!numberFits(ask, value)) {
    complaint = value == 0 ? GC_T("\nValue must be nonzero.\n") : GC_T("\nValue must be positive.\n");
    return false;
  }
  answer.kind = Answer::Kind::Number;
  answer.number = value;
  return true;
}

bool givePoint(Editor& editor, const GcGePoint3d& point, Answer& answer) {
  answer.kind = Answer::Kind::Point;
  answer.point = point;
  static_cast<void>(editor);
  return true;
}

// A point as an answer to each kind of question.
bool acceptPoint(Editor& editor, const Ask& ask, const GcGePoint3d& point, Answer& answer, GcText& complaint) {
  switch (ask.what) {
    case Ask::What::Point: return givePoint(editor, point, answer);
    case Ask::What::Distance:
    case Ask::What::Angle:
    case Ask::What::Direction:
      if (!ask.hasBase) {
        answer.wantsSecondPoint = true;
        return givePoint(editor, point, answer);
      }
      if (ask.what == Ask::What::Distance) return giveNumber(ask, distanceFrom(ask, point), answer, complaint);
      return giveNumber(ask, GcGeVector2d(point.x - ask.base.x, point.y - ask.base.y).angle(), answer, complaint);
    case Ask::What::Entity:
      answer.entity = entityAt(editor, point);
      if (answer.entity.isNull()) break;
      answer.kind = Answer::Kind::Entity;
      answer.point = point;
      return true;
    case Ask::What::Objects: return givePoint(editor, point, answer);
    default: break;
  }
  complaint = gc::fromUtf8(complaintOf(ask.what));
  return false;
}

bool acceptTypedValue(Editor& editor, const Ask& ask, GcView text, Answer& answer, GcText& complaint) {
  double number = 0;
  int32_t integer = 0;
  GcGePoint3d point;
  switch (ask.what) {
    case Ask::What::Integer: return parseInteger(text, integer) ? giveNumber(ask, integer, answer, complaint) : false;
    case Ask::What::Real: return parseLength(text, number) ? giveNumber(ask, number, answer, complaint) : false;
    case Ask::What::Distance:
      if (parseLength(text, number)) return giveNumber(ask, number, answer, complaint);
      break;
    case Ask::What::Angle:
    case Ask::What::Direction:
      if (parseAngle(editor, text, ask.what == Ask::What::Direction, number))
        return giveNumber(ask, number, answer, complaint);
      break;
    case Ask::What::Word:
    case Ask::What::Line:
      answer.kind = Answer::Kind::Text;
      answer.text = text;
      return true;
    case Ask::What::Keyword: return false;
    default: break;
  }
  if (parsePoint(editor, text, ask.hasBase ? ask.base : lastPoint(editor), point))
    return acceptPoint(editor, ask, point, answer, complaint);
  if (ask.what != Ask::What::Objects) return false;
  answer.kind = Answer::Kind::Text;
  answer.text = text;
  return true;
}

bool acceptText(Editor& editor, const Ask& ask, GcView text, Answer& answer, GcText& complaint) {
  if (text.empty()) {
    answer.kind = Answer::Kind::None;
    if (ask.mayBeEmpty) return true;
    complaint = gc::fromUtf8(complaintOf(ask.what));
    return false;
  }
  if (GcText word = matchKeyword(ask.keywords, text); !word.empty()) {
    answer.kind = Answer::Kind::Keyword;
    answer.text = std::move(word);
    editor.lastKeyword = answer.text;
    return true;
  }
  if (acceptTypedValue(editor, ask, text, answer, complaint)) return true;
  if (ask.anyText) {
    answer.kind = Answer::Kind::Text;
    answer.text = text;
    return true;
  }
  if (complaint.empty()) complaint = gc::fromUtf8(complaintOf(ask.what));
  return false;
}

bool acceptNumber(const Ask& ask, const InputItem& item, Answer& answer, GcText& complaint) {
  switch (ask.what) {
    case Ask::What::Integer:
      if (item.kind == Kind::Integer) return giveNumber(ask, item.number, answer, complaint);
      break;
    case Ask::What::Real:
    case Ask::What::Distance: return giveNumber(ask, item.number, answer, complaint);
    case Ask::What::Word:
    case Ask::What::Line: {
      const double value = item.number;
      const bool whole = item.kind == Kind::Integer;
      answer.kind = Answer::Kind::Text;
      answer.text = gc::fromUtf8(whole ? std::to_string(static_cast<int64_t>(value)) : gc::realText(value));
      return true;
    }
    default: break;
  }
  complaint = gc::fromUtf8(complaintOf(ask.what));
  return false;
}

bool acceptEntity(const Ask& ask, const InputItem& item, Answer& answer, GcText& complaint) {
  if (ask.what == Ask::What::Entity) {
    answer.kind = Answer::Kind::Entity;
    answer.entity = item.entity;
    answer.point = item.point;
    if (item.kind == Kind::Entity) answer.objects = {item.entity};  // by its name alone, not at a point
    return true;
  }
  if (ask.what == Ask::What::Objects) {
    answer.kind = Answer::Kind::Objects;
    answer.objects = {item.entity};
    return true;
  }
  if (ask.what == Ask::What::Point && item.kind == Kind::EntityPoint) {
    answer.kind = Answer::Kind::Point;
    answer.point = item.point;
    return true;
  }
  complaint = gc::fromUtf8(complaintOf(ask.what));
  return false;
}

}  // namespace

bool Answer::isKeyword(const char* word) const {
  return kind == Kind::Keyword && text == GcText(word, word + std::char_traits<char>::length(word));
}

bool accept(Editor& editor, const Ask& ask, const InputItem& item, Answer& answer, GcText& complaint) {
  answer = Answer();
  complaint.clear();
  switch (item.kind) {
    case Kind::Text: return acceptText(editor, ask, item.text, answer, complaint);
    case Kind::Integer:
    case Kind::Real:
      // A number is also what its text would be: an angle in degrees, a keyword "2P" never.
      if (ask.what == Ask::What::Angle || ask.what == Ask::What::Direction)
        return acceptText(editor, ask, gc::fromUtf8(gc::realText(item.number)), answer, complaint);
      return acceptNumber(ask, item, answer, complaint);
    case Kind::Point: answer.point2d = item.point2d; return acceptPoint(editor, ask, item.point, answer, complaint);
    case Kind::Entity:
    case Kind::EntityPoint: return acceptEntity(ask, item, answer, complaint);
    case Kind::Set:
      if (ask.what == Ask::What::Objects) {
        answer.kind = Answer::Kind::Objects;
        answer.objects = item.set;
        return true;
      }
      complaint = gc::fromUtf8(complaintOf(ask.what));
      return false;
    case Kind::Cancel:
    case Kind::Pause: answer.kind = Answer::Kind::Cancelled; return true;
  }
  return false;
}

InputWish wishOf(const Ask& ask) {
  InputWish wish;
  switch (ask.what) {
    case Ask::What::Point:
    case Ask::What::Distance:
    case Ask::What::Angle:
    case Ask::What::Direction: wish.what = ask.onEntity ? InputWish::What::Entity : InputWish::What::Point; break;
    case Ask::What::Entity: wish.what = InputWish::What::Entity; break;
    case Ask::What::Objects: wish.what = InputWish::What::Objects; break;
    default: break;
  }
  wish.prompt = ask.prompt;
  wish.keywords = ask.keywords;
  wish.base = ask.base;
  wish.hasBase = ask.hasBase;
  return wish;
}

Answer askPerson(Editor& editor, const Ask& ask) {
  const InputWish wish = wishOf(ask);
  Answer answer;
  GcText line;
  for (;;) {
    ap::print(ask.prompt);
    if (!editor.commandLine().readTyped(line, wish)) {
      answer = Answer();
      const bool empty = ask.mayBeEmpty && !editor.commandLine().wasInterrupted();
      answer.kind = empty ? Answer::Kind::None : Answer::Kind::Cancelled;
      return answer;
    }
    if (ask.what != Ask::What::Line) {
      while (!line.empty() && line.back() <= GC_T(' ')) line.pop_back();
      line.erase(0, std::min(line.find_first_not_of(GC_T(" \t")), line.size()));
    }
    GcText complaint;
    if (accept(editor, ask, InputItem::ofText(line), answer, complaint)) return answer;
    ap::print(complaint);
  }
}

}  // namespace ed
