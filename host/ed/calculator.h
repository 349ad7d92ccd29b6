// The geometry calculator: expressions of numbers, points and vectors, with the points of picked entities.
// Units:   drawing units; angles of expressions in degrees unless they end in r (radians) or g (grads).
// System:  user coordinates; [*x,y,z] is a point of the world.
#pragma once

#include <memory>
#include <vector>

#include "host/ap/documentpart.h"
#include "host/ed/editor.h"
#include "host/ed/input/ask.h"

namespace ed {

struct CalcValue {
  enum class Kind : uint8_t { Integer, Real, Vector };
  Kind kind = Kind::Real;
  double number = 0;
  GcGeVector3d vector;

  static CalcValue of(double value) { return {Kind::Real, value, {}}; }
  static CalcValue ofInteger(double value) { return {Kind::Integer, value, {}}; }
  static CalcValue of(const GcGeVector3d& value) { return {Kind::Vector, 0, value}; }
  [[nodiscard]] bool isVector() const { return kind == Kind::Vector; }
};

// What the person is to show before the expression has a value, in the order in which it is asked for.
struct CalcPick {
  enum class What : uint8_t { Point, Snap, Radius };
  What what = What::Point;
  const char* snap = "";  // the mode's word
};

struct CalcNode;

class Calculation {
 public:
  Calculation();
  ~Calculation();
  // False, with a message, for what is no expression.
  [[nodiscard]] bool parse(GcView text, GcText& complaint);
  [[nodiscard]] const std::vector<CalcPick>& picks() const { return m_picks; }
  [[nodiscard]] static Ask questionFor(const CalcPick& pick);
  // What an answer to the question stands for; false when it shows nothing of the kind.
  [[nodiscard]] static bool take(Editor& editor, const CalcPick& pick, const Answer& answer, CalcValue& value);
  [[nodiscard]] bool evaluate(Editor& editor, const std::vector<CalcValue>& picked, CalcValue& value,
                              GcText& complaint) const;

 private:
  std::unique_ptr<CalcNode> m_root;
  GcText m_assigned;  // the variable of "name=…"; empty for none
  std::vector<CalcPick> m_picks;
};

[[nodiscard]] ap::LispNumber asLispNumber(const CalcValue& value);

// Asks the person for what the expression picks. A value without kind, and a message, where there is none.
ap::LispNumber calculate(Editor& editor, GcView expression);
// Asks for the expression too.
ap::LispNumber calculateTyped(Editor& editor);

}  // namespace ed
