// Questions to the person or program behind the command line, and their answers.
#pragma once

#include "host/ed/editor.h"
#include "host/ed/input/inputitem.h"
#include "host/ed/input/source.h"

namespace ed {

struct Ask {
  enum class What : uint8_t {
    Point,
    Distance,   // a number, a point seen from the base, or two points
    Angle,      // a difference of angles
    Direction,  // an angle counted from ANGBASE, or a point seen from the base
    Integer,
    Real,
    Word,  // text up to a blank
    Line,  // text with blanks
    Keyword,
    Entity,   // one entity, by name or picked at a point
    Objects,  // an item of a selection: entities, a set, a word
  };
  What what = What::Point;
  GcText prompt;
  GcText keywords;
  GcGePoint3d base;
  bool hasBase = false;
  bool mayBeEmpty = true;  // Enter is an answer
  bool mayBeZero = true;
  bool mayBeNegative = true;
  bool flat = false;      // distances to points leave z out of account
  bool anyText = false;   // text that is nothing else is an answer too
  bool onEntity = false;  // Point: one on an entity is meant

  Ask(What kind, const char* text) : what(kind), prompt(text, text + std::char_traits<char>::length(text)) {}
  Ask& words(const char* list) {
    keywords.assign(list, list + std::char_traits<char>::length(list));
    return *this;
  }
  Ask& from(const GcGePoint3d& point) {
    base = point;
    hasBase = true;
    return *this;
  }
  Ask& needed() {
    mayBeEmpty = false;
    return *this;
  }
  Ask& positive() {
    mayBeZero = mayBeNegative = false;
    return *this;
  }
};

struct Answer {
  enum class Kind : uint8_t { None, Cancelled, Keyword, Text, Number, Point, Entity, Objects };
  Kind kind = Kind::None;
  GcText text;        // Keyword, Text
  double number = 0;  // Number: lengths, radians, counts
  GcGePoint3d point;  // Point, Entity (where it was picked)
  GcDbObjectId entity;
  std::vector<GcDbObjectId> objects;
  bool point2d = false;
  bool wantsSecondPoint = false;  // a distance begun by its first point

  [[nodiscard]] bool isPoint() const { return kind == Kind::Point; }
  [[nodiscard]] bool isNone() const { return kind == Kind::None; }
  [[nodiscard]] bool isKeyword(const char* word) const;
};

// Takes the item as an answer. False: it is none, and `complaint` says so to the person.
[[nodiscard]] bool accept(Editor& editor, const Ask& ask, const InputItem& item, Answer& answer, GcText& complaint);

// The same question as a source of typed lines understands it.
[[nodiscard]] InputWish wishOf(const Ask& ask);

// Puts the question to the person: prints the prompt and reads lines until one is an answer. At the end of input the
// answer is None, or Cancelled where Enter is no answer.
Answer askPerson(Editor& editor, const Ask& ask);

}  // namespace ed
