// Circles and arcs.
#include <numbers>

#include "db/arc.h"
#include "db/circle.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;

GcGeVector2d flat(const GcGeVector3d& v) { return {v.x, v.y}; }

double angleFrom(const GcGePoint3d& center, const GcGePoint3d& point) { return flat(point - center).angle(); }

// The center of the circle through three points of a plane z = const; false when they lie on a line.
// Source: intersection of the perpendicular bisectors.
bool circleThrough(const GcGePoint3d& a, const GcGePoint3d& b, const GcGePoint3d& c, GcGePoint3d& center) {
  const GcGeVector3d ab = b - a;
  const GcGeVector3d ac = c - a;
  const double cross = ab.x * ac.y - ab.y * ac.x;
  const double size = std::max(ab.length(), ac.length());
  if (std::fabs(cross) <= 1e-12 * size * size) return false;
  const double b2 = ab.x * ab.x + ab.y * ab.y;
  const double c2 = ac.x * ac.x + ac.y * ac.y;
  center = {a.x + (ac.y * b2 - ab.y * c2) / (2 * cross), a.y + (ab.x * c2 - ac.x * b2) / (2 * cross), a.z};
  return true;
}

void addCircle(CommandInput& in, const GcGePoint3d& center, double radius) {
  appendFromUser(in.editor(), new GcDbCircle(center, GcGeVector3d::kZAxis, radius));
}

Task<std::vector<GcGePoint3d>> askPoints(CommandInput& in, std::span<const char* const> prompts) {
  std::vector<GcGePoint3d> points;
  for (const char* prompt : prompts) {
    const Answer answer = co_await in.ask(Ask(What::Point, prompt).needed());
    if (!answer.isPoint()) break;
    points.push_back(answer.point);
  }
  co_return points;
}

Task<bool> circleByPoints(CommandInput& in, bool three) {
  static constexpr const char* kPrompts[] = {
      "\nSpecify first point on circle: ", "\nSpecify second point on circle: ", "\nSpecify third point on circle: "};
  const auto points = co_await askPoints(in, std::span(kPrompts).first(three ? 3 : 2));
  if (points.size() != (three ? 3U : 2U)) co_return false;
  GcGePoint3d center = points[0] + (points[1] - points[0]) * 0.5;
  if (three && !circleThrough(points[0], points[1], points[2], center)) {
    in.tell("\nCircle does not exist.\n");
    co_return false;
  }
  addCircle(in, center, flat(points[0] - center).length());
  co_return true;
}

Task<bool> circle(CommandInput& in) {
  const Answer center =
      co_await in.ask(Ask(What::Point, "\nSpecify center point for circle or [3P/2P]: ").words("3P 2P").needed());
  if (center.isKeyword("3P") || center.isKeyword("2P")) co_return co_await circleByPoints(in, center.isKeyword("3P"));
  if (!center.isPoint()) co_return false;
  Answer radius = co_await in.ask(Ask(What::Distance, "\nSpecify radius of circle or [Diameter]: ")
                                      .from(center.point)
                                      .words("Diameter")
                                      .positive());
  double factor = 1;
  if (radius.isKeyword("Diameter")) {
    factor = 0.5;
    radius = co_await in.ask(Ask(What::Distance, "\nSpecify diameter of circle: ").from(center.point).positive());
  }
  if (radius.kind != Answer::Kind::Number) co_return false;
  addCircle(in, center.point, radius.number * factor);
  co_return true;
}

void addArc(CommandInput& in, const GcGePoint3d& center, double radius, double start, double end) {
  appendFromUser(in.editor(), new GcDbArc(center, radius, start, end));
}

// Through three points: counter-clockwise when the second lies left of the chord's way round.
bool arcThrough(CommandInput& in, const GcGePoint3d& start, const GcGePoint3d& on, const GcGePoint3d& end) {
  GcGePoint3d center;
  if (!circleThrough(start, on, end, center)) return false;
  const bool leftTurn = flat(on - start).crossProduct(flat(end - on)) > 0;
  const double from = angleFrom(center, leftTurn ? start : end);
  const double to = angleFrom(center, leftTurn ? end : start);
  addArc(in, center, flat(start - center).length(), from, to);
  return true;
}

// With center and start known: the end by a point, the angle or the length of the chord.
Task<bool> arcFromCenter(CommandInput& in, GcGePoint3d center, GcGePoint3d start) {
  const double radius = flat(start - center).length();
  const double from = angleFrom(center, start);
  const Answer end = co_await in.ask(Ask(What::Point, "\nSpecify end point of arc or [Angle/chord Length]: ")
                                         .from(center)
                                         .words("Angle Length")
                                         .needed());
  double to = 0;
  if (end.isPoint()) {
    to = angleFrom(center, end.point);
  } else if (end.isKeyword("Angle")) {
    const Answer angle = co_await in.ask(Ask(What::Angle, "\nSpecify included angle: ").needed());
    if (angle.kind != Answer::Kind::Number) co_return false;
    to = from + angle.number;
    if (angle.number < 0) {
      addArc(in, center, radius, to, from);
      co_return true;
    }
  } else if (end.isKeyword("Length")) {
    const Answer length = co_await in.ask(Ask(What::Distance, "\nSpecify length of chord: ").from(start).needed());
    if (length.kind != Answer::Kind::Number || std::fabs(length.number) > 2 * radius) co_return false;
    const double sweep = 2 * gc::asin(std::fabs(length.number) / (2 * radius));
    to = from + (length.number < 0 ? 2 * std::numbers::pi - sweep : sweep);
  } else {
    co_return false;
  }
  addArc(in, center, radius, from, to);
  co_return true;
}

Task<bool> arc(CommandInput& in) {
  const Answer first =
      co_await in.ask(Ask(What::Point, "\nSpecify start point of arc or [Center]: ").words("Center").needed());
  if (first.isKeyword("Center")) {
    const Answer center = co_await in.ask(Ask(What::Point, "\nSpecify center point of arc: ").needed());
    const Answer start =
        co_await in.ask(Ask(What::Point, "\nSpecify start point of arc: ").from(center.point).needed());
    if (!center.isPoint() || !start.isPoint()) co_return false;
    co_return co_await arcFromCenter(in, center.point, start.point);
  }
  if (!first.isPoint()) co_return false;
  const Answer second = co_await in.ask(Ask(What::Point, "\nSpecify second point of arc or [Center/End]: ")
                                            .from(first.point)
                                            .words("Center End")
                                            .needed());
  if (second.isKeyword("Center")) {
    const Answer center = co_await in.ask(Ask(What::Point, "\nSpecify center point of arc: ").needed());
    if (!center.isPoint()) co_return false;
    co_return co_await arcFromCenter(in, center.point, first.point);
  }
  if (!second.isPoint()) co_return false;
  const Answer end = co_await in.ask(Ask(What::Point, "\nSpecify end point of arc: ").from(first.point).needed());
  co_return end.isPoint() && arcThrough(in, first.point, second.point, end.point);
}

constexpr Command kCommands[] = {
    {"CIRCLE", "C", circle},
    {"ARC", "A", arc},
};

}  // namespace

std::span<const Command> curveCommands() { return kCommands; }

}  // namespace ed
