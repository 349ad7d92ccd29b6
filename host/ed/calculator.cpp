#include "host/ed/calculator.h"

#include <cmath>
#include <numbers>

#include "db/arc.h"
#include "db/circle.h"
#include "db/polyline.h"
#include "host/ap/output.h"
#include "host/ed/calculator_nodes.h"
#include "host/ed/command/families.h"
#include "host/ed/coordinates.h"
#include "host/ed/snap.h"
#include "host/rx/math/elementary.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using Node = CalcNode;
using NodePtr = std::unique_ptr<CalcNode>;

constexpr double kPi = std::numbers::pi;
constexpr double kDegree = kPi / 180;
constexpr int kDeepest = 200;  // brackets within brackets
constexpr double kInchesPerFoot = 12;

constexpr struct {
  const char* name;
  CalcPick pick;
} kPicks[] = {
    {"cur", {CalcPick::What::Point, ""}},    {"rad", {CalcPick::What::Radius, ""}},
    {"cen", {CalcPick::What::Snap, "_cen"}}, {"end", {CalcPick::What::Snap, "_end"}},
    {"ins", {CalcPick::What::Snap, "_ins"}}, {"int", {CalcPick::What::Snap, "_int"}},
    {"mid", {CalcPick::What::Snap, "_mid"}}, {"nea", {CalcPick::What::Snap, "_nea"}},
    {"nod", {CalcPick::What::Snap, "_nod"}}, {"per", {CalcPick::What::Snap, "_per"}},
    {"qua", {CalcPick::What::Snap, "_qua"}}, {"tan", {CalcPick::What::Snap, "_tan"}},
};

// Words for a function of picked end points.
constexpr struct {
  const char *name, *meaning;
} kShortcuts[] = {{"dee", "dist(end,end)"}, {"ille", "ill(end,end,end,end)"}, {"mee", "(end+end)/2"},
                  {"nee", "nor(end,end)"},  {"vee", "vec(end,end)"},          {"vee1", "vec1(end,end)"}};

// Reads an expression: sums of products of powers of factors.
class Parser {
 public:
  Parser(std::string_view text, std::vector<CalcPick>& picks) : m_rest(text), m_picks(picks) {}

  // Null, with a message, for what is no expression.
  NodePtr whole() {
    NodePtr root = sum();
    skipBlanks();
    if (root != nullptr && !m_rest.empty()) root = fail("Unexpected \"" + std::string(1, m_rest[0]) + "\"");
    return root;
  }
  [[nodiscard]] const std::string& complaint() const { return m_complaint; }

 private:
  NodePtr fail(const std::string& what) {
    if (m_complaint.empty()) m_complaint = what;
    return nullptr;
  }
  void skipBlanks() {
    while (!m_rest.empty() && (m_rest[0] == ' ' || m_rest[0] == '\t')) m_rest.remove_prefix(1);
  }
  bool take(char c) {
    skipBlanks();
    if (m_rest.empty() || m_rest[0] != c) return false;
    m_rest.remove_prefix(1);
    return true;
  }
  static NodePtr valueNode(const CalcValue& value) {
    auto made = std::make_unique<Node>();
    made->value = value;
    return made;
  }

  using Level = NodePtr (Parser::*)();
  NodePtr chain(Level operand, std::string_view operations) {
    NodePtr left = (this->*operand)();
    while (left != nullptr) {
      skipBlanks();
      if (m_rest.empty() || operations.find(m_rest[0]) == std::string_view::npos) break;
      auto made = std::make_unique<Node>();
      made->kind = Node::Kind::Binary;
      made->operation = m_rest[0];
      m_rest.remove_prefix(1);
      made->parts.push_back(std::move(left));
      made->parts.push_back((this->*operand)());
      if (made->parts.back() == nullptr) return nullptr;
      left = std::move(made);
    }
    return left;
  }
  NodePtr sum() {
    if (++m_depth > kDeepest) return fail("Too many brackets within brackets");
    NodePtr made = chain(&Parser::product, "+-");
    --m_depth;
    return made;
  }
  NodePtr product() { return chain(&Parser::signedPower, "*/&"); }
  NodePtr power() { return chain(&Parser::signedFactor, "^"); }

  // A sign counts for the whole power behind it: -2^2 is -4.
  NodePtr signedPower() { return withSign(&Parser::power); }
  NodePtr signedFactor() { return withSign(&Parser::factor); }
  NodePtr withSign(Level operand) {
    bool negative = false;
    for (;;) {
      if (take('-'))
        negative = !negative;
      else if (!take('+'))
        break;
    }
    NodePtr inner = (this->*operand)();
    if (inner == nullptr || !negative) return inner;
    auto made = std::make_unique<Node>();
    made->kind = Node::Kind::Negate;
    made->parts.push_back(std::move(inner));
    return made;
  }

  NodePtr factor() {
    skipBlanks();
    if (m_rest.empty()) return fail("Something is missing at the end");
    if (take('(')) {
      NodePtr inner = sum();
      if (inner != nullptr && !take(')')) return fail("A closing bracket is missing");
      return inner;
    }
    if (take('[')) return vector();
    if (take('@')) {
      auto made = std::make_unique<Node>();
      made->kind = Node::Kind::LastPoint;
      return made;
    }
    const char c = m_rest[0];
    if ((c >= '0' && c <= '9') || c == '.') return number();
    if (isLetter(c)) return named();
    return fail("Unexpected \"" + std::string(1, c) + "\"");
  }

  NodePtr vector() {
    auto made = std::make_unique<Node>();
    made->kind = Node::Kind::Vector;
    made->world = take('*');
    for (char separator = ',';;) {
      made->separators.push_back(separator);
      skipBlanks();
      const bool isEmpty = !m_rest.empty() && (m_rest[0] == ',' || m_rest[0] == '<' || m_rest[0] == ']');
      made->parts.push_back(isEmpty ? valueNode(CalcValue::of(0.0)) : sum());
      if (made->parts.back() == nullptr) return nullptr;
      if (take(']')) return made->parts.size() <= 3 ? std::move(made) : fail("A point has three coordinates at most");
      separator = take('<') ? '<' : ',';
      if (separator == ',' && !take(',')) return fail("A closing ] is missing");
    }
  }

  static bool isLetter(char c) { return (c >= 'a' && c <= 'z') || c == '_' || c == '$' || c == '!'; }
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }

  bool plainNumber(double& value, bool& isInteger) {
    size_t end = 0;
    isInteger = true;
    while (end < m_rest.size() && (isDigit(m_rest[end]) || m_rest[end] == '.')) {
      isInteger = isInteger && m_rest[end] != '.';
      ++end;
    }
    size_t exponent = end;
    if (exponent + 1 < m_rest.size() && m_rest[exponent] == 'e') {
      ++exponent;
      if (m_rest[exponent] == '+' || m_rest[exponent] == '-') ++exponent;
      if (exponent < m_rest.size() && isDigit(m_rest[exponent])) {
        while (exponent < m_rest.size() && isDigit(m_rest[exponent])) ++exponent;
        isInteger = false;
        end = exponent;
      }
    }
    if (!gc::parseReal(m_rest.substr(0, end), value)) return false;
    m_rest.remove_prefix(end);
    return true;
  }

  bool followedByWord() const { return m_rest.size() > 1 && (isLetter(m_rest[1]) || isDigit(m_rest[1])); }

  // A number, alone or with a unit behind it: feet and inches, radians, grads, degrees with minutes and seconds.
  NodePtr number() {
    double value = 0;
    bool isInteger = false;
    if (!plainNumber(value, isInteger)) return fail("This is no number");
    constexpr double kMostInteger = 2147483647;
    isInteger = isInteger && value <= kMostInteger;
    if (m_rest.empty()) return valueNode(isInteger ? CalcValue::ofInteger(value) : CalcValue::of(value));
    const char unit = m_rest[0];
    if (unit == '\'' || unit == '"') return valueNode(CalcValue::of(feetAndInches(value)));
    if (isLetter(unit) && followedByWord() && unit != 'd') return fail("This is no number");
    if (unit == 'r' || unit == 'g' || unit == 'd') {
      m_rest.remove_prefix(1);
      if (unit == 'r') value /= kDegree;
      if (unit == 'g') value *= 0.9;
      if (unit == 'd') value += minutesAndSeconds();
      return valueNode(CalcValue::of(value));
    }
    return valueNode(isInteger ? CalcValue::ofInteger(value) : CalcValue::of(value));
  }

  // What follows the first number of a length such as 5'6" or 5'-6"; the sign ' or " is next. In inches.
  double feetAndInches(double first) {
    const bool isFeet = m_rest[0] == '\'';
    m_rest.remove_prefix(1);
    if (!isFeet) return first;
    const std::string_view back = m_rest;
    double inches = 0;
    bool whole = false;
    if (m_rest.size() > 1 && m_rest[0] == '-' && isDigit(m_rest[1])) m_rest.remove_prefix(1);
    const bool hasInches =
        !m_rest.empty() && isDigit(m_rest[0]) && plainNumber(inches, whole) && !m_rest.empty() && m_rest[0] == '"';
    if (hasInches)
      m_rest.remove_prefix(1);
    else
      m_rest = back;
    return first * kInchesPerFoot + (hasInches ? inches : 0);
  }

  // Behind the d of 30d15'20".
  double minutesAndSeconds() {
    double degrees = 0, part = 0;
    bool whole = false;
    for (const auto& [mark, factor] : {std::pair('\'', 60.0), std::pair('"', 3600.0)}) {
      const std::string_view back = m_rest;
      if (m_rest.empty() || !isDigit(m_rest[0]) || !plainNumber(part, whole) || m_rest.empty() || m_rest[0] != mark) {
        m_rest = back;
        continue;
      }
      m_rest.remove_prefix(1);
      degrees += part / factor;
    }
    return degrees;
  }

  NodePtr named() {
    size_t end = 1;
    while (end < m_rest.size() && (isLetter(m_rest[end]) || isDigit(m_rest[end]))) ++end;
    const std::string name(m_rest.substr(0, end));
    m_rest.remove_prefix(end);
    if (take('(')) return call(name);
    if (name == "pi") return valueNode(CalcValue::of(kPi));
    for (const auto& each : kShortcuts)
      if (name == each.name) return meaning(each.meaning);
    auto made = std::make_unique<Node>();
    for (const auto& each : kPicks) {
      if (name != each.name) continue;
      made->kind = Node::Kind::Pick;
      made->pick = m_picks.size();
      m_picks.push_back(each.pick);
      return made;
    }
    made->kind = Node::Kind::Variable;
    made->name = name;
    return made;
  }

  NodePtr meaning(const char* text) {
    const std::string_view rest = std::exchange(m_rest, std::string_view(text));
    NodePtr made = sum();
    m_rest = rest;
    return made;
  }

  NodePtr call(const std::string& name) {
    auto made = std::make_unique<Node>();
    made->kind = Node::Kind::Call;
    made->name = name;
    for (bool more = !take(')'); more; more = !take(')')) {
      if (!made->parts.empty() && !take(',')) return fail("A comma or closing bracket is missing");
      made->parts.push_back(sum());
      if (made->parts.back() == nullptr) return nullptr;
    }
    if (name == "getvar" || name == "cvunit") {
      const size_t wanted = name == "getvar" ? 1 : 3;
      return made->parts.size() == wanted ? std::move(made) : fail("Wrong number of arguments of " + name);
    }
    const CalcFunction* function = findCalcFunction(name);
    if (function == nullptr) return fail("There is no function " + name);
    if (made->parts.size() < function->least || made->parts.size() > function->most)
      return fail("Wrong number of arguments of " + name);
    return made;
  }

  std::string_view m_rest;
  std::vector<CalcPick>& m_picks;
  std::string m_complaint;
  int m_depth = 0;
};

// Works out a tree.
class Evaluation {
 public:
  Evaluation(Editor& editor, const std::vector<CalcValue>& picked) : m_editor(editor), m_picked(picked) {}

  bool of(const Node& node, CalcValue& value) {
    switch (node.kind) {
      case Node::Kind::Value: value = node.value; return true;
      case Node::Kind::Variable: return variable(node.name, value);
      case Node::Kind::LastPoint: value = CalcValue::of(lastPoint(m_editor).asVector()); return true;
      case Node::Kind::Pick: value = m_picked[node.pick]; return true;
      case Node::Kind::Vector: return vector(node, value);
      case Node::Kind::Negate:
        if (!of(*node.parts[0], value)) return false;
        value.number = -value.number;
        value.vector = -value.vector;
        return true;
      case Node::Kind::Binary: return binary(node, value);
      case Node::Kind::Call: return call(node, value);
    }
    return false;
  }
  [[nodiscard]] const std::string& complaint() const { return m_complaint; }

 private:
  bool fail(const std::string& what) {
    if (m_complaint.empty()) m_complaint = what;
    return false;
  }

  bool variable(const std::string& name, CalcValue& value) {
    using Kind = ap::LispNumber::Kind;
    const std::string plain = name[0] == '!' ? name.substr(1) : name;
    ap::LispSpace* lisp = m_editor.document().lisp();
    const ap::LispNumber number = lisp == nullptr ? ap::LispNumber() : lisp->numberIn(gc::fromUtf8(plain));
    if (number.kind == Kind::None) return fail("The variable " + plain + " holds no number or point");
    value = number.kind == Kind::Point     ? CalcValue::of(GcGeVector3d(number.x, number.y, number.z))
            : number.kind == Kind::Integer ? CalcValue::ofInteger(number.x)
                                           : CalcValue::of(number.x);
    return true;
  }

  bool vector(const Node& node, CalcValue& value) {
    double part[3] = {0, 0, 0};
    for (size_t i = 0; i < node.parts.size(); ++i) {
      CalcValue each;
      if (!of(*node.parts[i], each)) return false;
      if (each.isVector()) return fail("A coordinate is a number");
      part[i] = each.number;
    }
    const auto isAngle = [&](size_t i) { return i < node.separators.size() && node.separators[i] == '<'; };
    GcGeVector3d point(part[0], part[1], part[2]);
    if (isAngle(1)) {
      const double turn = part[1] * kDegree, rise = isAngle(2) ? part[2] * kDegree : 0;
      const double flat = part[0] * gc::cos(rise);
      point = {flat * gc::cos(turn), flat * gc::sin(turn), isAngle(2) ? part[0] * gc::sin(rise) : part[2]};
    } else if (isAngle(2)) {
      return fail("An angle follows a distance");
    }
    if (node.world) point = (ucsToWorld(m_editor).inverse() * GcGePoint3d(point.x, point.y, point.z)).asVector();
    value = CalcValue::of(point);
    return true;
  }

  bool binary(const Node& node, CalcValue& value) {
    CalcValue a, b;
    if (!of(*node.parts[0], a) || !of(*node.parts[1], b)) return false;
    const bool good =
        a.isVector() || b.isVector() ? ofVectors(node.operation, a, b, value) : ofNumbers(node.operation, a, b, value);
    if (!good) return fail(std::string("These cannot be put together by ") + node.operation);
    return true;
  }

  static bool ofNumbers(char operation, const CalcValue& a, const CalcValue& b, CalcValue& value) {
    bool isInteger = a.kind == CalcValue::Kind::Integer && b.kind == CalcValue::Kind::Integer;
    double result = 0;
    switch (operation) {
      case '+': result = a.number + b.number; break;
      case '-': result = a.number - b.number; break;
      case '*': result = a.number * b.number; break;
      case '^': result = std::pow(a.number, b.number); break;
      case '/':
        result = a.number / b.number;
        isInteger = false;
        break;
      default: return false;
    }
    constexpr double kMostInteger = 2147483647;
    isInteger = isInteger && std::fabs(result) <= kMostInteger && result == std::floor(result);
    value = isInteger ? CalcValue::ofInteger(result) : CalcValue::of(result);
    return std::isfinite(result);
  }

  static bool ofVectors(char operation, const CalcValue& a, const CalcValue& b, CalcValue& value) {
    const bool both = a.isVector() && b.isVector();
    if (both && operation == '*') {
      value = CalcValue::of(a.vector.dotProduct(b.vector));
      return true;
    }
    value.kind = CalcValue::Kind::Vector;
    if (both && operation == '+') value.vector = a.vector + b.vector;
    if (both && operation == '-') value.vector = a.vector - b.vector;
    if (both && operation == '&') value.vector = a.vector.crossProduct(b.vector);
    if (both) return operation == '+' || operation == '-' || operation == '&';
    if (operation == '*') value.vector = a.isVector() ? a.vector * b.number : b.vector * a.number;
    if (operation == '/' && a.isVector() && b.number != 0) value.vector = a.vector / b.number;
    return operation == '*' || (operation == '/' && a.isVector() && b.number != 0);
  }

  // Names stand for themselves as arguments of these two.
  bool readSetting(const Node& node, CalcValue& value) {
    const Node& name = *node.parts[0];
    VariableValue found;
    if (name.kind != Node::Kind::Variable || !getVariable(m_editor, gc::fromUtf8(name.name), found) ||
        found.kind == VariableKind::Text)
      return fail("getvar needs the name of a variable that holds a number or a point");
    if (found.kind == VariableKind::Integer) value = CalcValue::ofInteger(found.integer);
    if (found.kind == VariableKind::Real) value = CalcValue::of(found.real);
    if (found.kind == VariableKind::Point2d || found.kind == VariableKind::Point3d)
      value = CalcValue::of(GcGeVector3d(found.point[0], found.point[1], found.point[2]));
    return true;
  }
  bool convert(const Node& node, CalcValue& value) {
    CalcValue from;
    if (!of(*node.parts[0], from)) return false;
    ap::LispSpace* lisp = m_editor.document().lisp();
    double factor = 1;
    const bool named =
        node.parts[1]->kind == Node::Kind::Variable && node.parts[2]->kind == Node::Kind::Variable && lisp != nullptr;
    if (!named || !lisp->convertUnits(factor, gc::fromUtf8(node.parts[1]->name), gc::fromUtf8(node.parts[2]->name)))
      return fail("cvunit needs two units of one kind");
    value = from.isVector() ? CalcValue::of(from.vector * factor) : CalcValue::of(from.number * factor);
    return true;
  }

  bool call(const Node& node, CalcValue& value) {
    if (node.name == "getvar") return readSetting(node, value);
    if (node.name == "cvunit") return convert(node, value);
    std::vector<CalcValue> arguments(node.parts.size());
    for (size_t i = 0; i < arguments.size(); ++i)
      if (!of(*node.parts[i], arguments[i])) return false;
    return findCalcFunction(node.name)->body(m_editor, arguments, value) ||
           fail("The function " + node.name + " has no value for these arguments");
  }

  Editor& m_editor;
  const std::vector<CalcValue>& m_picked;
  std::string m_complaint;
};

bool radiusOf(GcDbObjectId id, const GcGePoint3d& world, double& radius) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return false;
  bool good = true;
  GcDbPolyline* line = GcDbPolyline::cast(entity);
  GcGePoint3d on;
  double param = 0, bulge = 0;
  if (const auto* circle = GcDbCircle::cast(entity)) {
    radius = circle->radius();
  } else if (const auto* arc = GcDbArc::cast(entity)) {
    radius = arc->radius();
  } else if (line != nullptr && line->getClosestPointTo(world, on) == Gcad::eOk &&
             line->getParamAtPoint(on, param) == Gcad::eOk) {
    const auto segment = static_cast<unsigned>(param);
    GcGePoint2d a, b;
    ignore(line->getBulgeAt(segment, bulge));
    good = bulge != 0 && line->getPointAt(segment, a) == Gcad::eOk &&
           line->getPointAt((segment + 1) % line->numVerts(), b) == Gcad::eOk;
    // The chord is 2 r sin(sweep / 2), the bulge tan(sweep / 4).
    if (good) radius = a.distanceTo(b) * (1 + bulge * bulge) / (4 * std::fabs(bulge));
  } else {
    good = false;
  }
  ignore(entity->close());
  return good;
}

std::string lowered(GcView text) {
  std::string made = gc::toUtf8(text);
  for (char& c : made)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return made;
}

// The name before the equals sign of "name=expression"; what follows is left in `text`.
std::string takeAssigned(std::string_view& text) {
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos) return {};
  std::string name(text.substr(0, equals));
  while (!name.empty() && name.back() == ' ') name.pop_back();
  name.erase(0, std::min(name.find_first_not_of(' '), name.size()));
  if (name.empty() || name.find_first_of(" ()[]+-*/^&,<") != std::string::npos) return {};
  text.remove_prefix(equals + 1);
  return name;
}

}  // namespace

Calculation::Calculation() = default;
Calculation::~Calculation() = default;

bool Calculation::parse(GcView text, GcText& complaint) {
  const std::string lower = lowered(text);
  std::string_view rest = lower;
  m_assigned = gc::fromUtf8(takeAssigned(rest));
  Parser parser(rest, m_picks);
  m_root = parser.whole();
  if (m_root == nullptr) complaint = gc::fromUtf8("\n" + parser.complaint() + ".\n");
  return m_root != nullptr;
}

Ask Calculation::questionFor(const CalcPick& pick) {
  if (pick.what == CalcPick::What::Point) return Ask(Ask::What::Point, "\nEnter a point: ").needed();
  if (pick.what == CalcPick::What::Radius)
    return Ask(Ask::What::Entity, "\nSelect circle, arc or polyline segment for RAD function: ").needed();
  Ask ask(Ask::What::Entity, "");
  ask.prompt = gc::fromUtf8(std::string("\nSelect entity for ") + (pick.snap + 1) + " snap: ");
  return ask.needed();
}

bool Calculation::take(Editor& editor, const CalcPick& pick, const Answer& answer, CalcValue& value) {
  if (pick.what == CalcPick::What::Point) {
    value = CalcValue::of(answer.point.asVector());
    return answer.isPoint();
  }
  if (answer.kind != Answer::Kind::Entity) return false;
  double radius = 0;
  if (pick.what == CalcPick::What::Radius) {
    const bool good = radiusOf(answer.entity, ucsToWorld(editor) * answer.point, radius);
    value = CalcValue::of(radius);
    return good;
  }
  GcGePoint3d snapped;
  const bool good = snapPoint(editor, answer.point, gc::fromUtf8(pick.snap), snapped);
  value = CalcValue::of(snapped.asVector());
  return good;
}

bool Calculation::evaluate(Editor& editor, const std::vector<CalcValue>& picked, CalcValue& value,
                           GcText& complaint) const {
  Evaluation evaluation(editor, picked);
  if (m_root == nullptr || !evaluation.of(*m_root, value)) {
    complaint = gc::fromUtf8("\n" + evaluation.complaint() + ".\n");
    return false;
  }
  ap::LispSpace* lisp = editor.document().lisp();
  if (!m_assigned.empty() && lisp != nullptr) lisp->putNumber(m_assigned, asLispNumber(value));
  return true;
}

ap::LispNumber asLispNumber(const CalcValue& value) {
  using Kind = ap::LispNumber::Kind;
  if (value.isVector()) return {Kind::Point, value.vector.x, value.vector.y, value.vector.z};
  return {value.kind == CalcValue::Kind::Integer ? Kind::Integer : Kind::Real, value.number, 0, 0};
}

ap::LispNumber calculate(Editor& editor, GcView expression) {
  Calculation calculation;
  GcText complaint;
  std::vector<CalcValue> picked;
  CalcValue value;
  bool good = calculation.parse(expression, complaint);
  for (const CalcPick& pick : calculation.picks()) {
    if (!good) break;
    const Answer answer = askPerson(editor, Calculation::questionFor(pick));
    good = Calculation::take(editor, pick, answer, picked.emplace_back());
    if (!good) complaint = GC_T("\nNothing of this kind is there.\n");
  }
  good = good && calculation.evaluate(editor, picked, value, complaint);
  if (!good) ap::print(complaint);
  return good ? asLispNumber(value) : ap::LispNumber();
}

ap::LispNumber calculateTyped(Editor& editor) {
  const Answer expression = askPerson(editor, Ask(Ask::What::Line, "\n>> Expression: "));
  return expression.text.empty() ? ap::LispNumber() : calculate(editor, expression.text);
}

}  // namespace ed
