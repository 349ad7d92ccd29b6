// Commands that draw straight things: lines, construction lines, points, filled areas.
#include "db/line.h"
#include "db/point.h"
#include "db/solid.h"
#include "db/xline.h"
#include "host/ed/append.h"
#include "host/ed/command/command.h"
#include "host/ed/command/families.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;

void addLine(CommandInput& in, const GcGePoint3d& from, const GcGePoint3d& to, std::vector<GcDbObjectId>& drawn) {
  drawn.push_back(appendFromUser(in.editor(), new GcDbLine(from, to)));
}

Task<bool> line(CommandInput& in) {
  std::vector<GcGePoint3d> points;
  std::vector<GcDbObjectId> drawn;
  const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify first point: "));
  if (first.isNone()) {
    points.push_back(lastPoint(in.editor()));
  } else {
    if (!first.isPoint()) co_return false;
    points.push_back(first.point);
  }
  for (;;) {
    const char* prompt =
        points.size() > 2 ? "\nSpecify next point or [Close/Undo]: " : "\nSpecify next point or [Undo]: ";
    const Answer next = co_await in.ask(Ask(What::Point, prompt).from(points.back()).words("Undo Close"));
    if (next.isPoint()) {
      addLine(in, points.back(), next.point, drawn);
      points.push_back(next.point);
    } else if (next.isKeyword("Undo") && !drawn.empty()) {
      eraseEntity(drawn.back());
      drawn.pop_back();
      points.pop_back();
    } else if (next.isKeyword("Close") && points.size() > 2) {
      addLine(in, points.back(), points[0], drawn);
      break;
    } else if (next.isNone() || next.kind == Answer::Kind::Cancelled) {
      break;
    }
  }
  co_return true;
}

Task<bool> point(CommandInput& in) {
  const Answer at = co_await in.ask(Ask(What::Point, "\nSpecify a point: "));
  if (!at.isPoint()) co_return false;
  appendFromUser(in.editor(), new GcDbPoint(at.point));
  co_return true;
}

// Construction lines through a first point, or horizontal and vertical ones.
Task<bool> xline(CommandInput& in) {
  const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify a point or [Hor/Ver/Ang]: ").words("Hor Ver Ang"));
  GcGeVector3d fixed;
  if (first.isKeyword("Hor")) fixed = GcGeVector3d::kXAxis;
  if (first.isKeyword("Ver")) fixed = GcGeVector3d::kYAxis;
  if (first.isKeyword("Ang")) {
    const Answer angle = co_await in.ask(Ask(What::Direction, "\nEnter angle of xline (0): "));
    fixed = {gc::cos(angle.number), gc::sin(angle.number), 0};
  }
  if (!first.isPoint() && fixed.isZeroLength()) co_return false;
  for (;;) {
    Ask ask(What::Point, "\nSpecify through point: ");
    if (first.isPoint()) ask.from(first.point);
    const Answer through = co_await in.ask(ask);
    if (!through.isPoint()) break;
    auto* made = new GcDbXline;
    ignore(made->setBasePoint(first.isPoint() ? first.point : through.point));
    const GcGeVector3d direction = first.isPoint() ? through.point - first.point : fixed;
    if (made->setUnitDir(direction) == Gcad::eOk)
      appendFromUser(in.editor(), made);
    else
      delete made;
  }
  co_return true;
}

Task<bool> ray(CommandInput& in) {
  const Answer start = co_await in.ask(Ask(What::Point, "\nSpecify start point: "));
  if (!start.isPoint()) co_return false;
  for (;;) {
    const Answer through = co_await in.ask(Ask(What::Point, "\nSpecify through point: ").from(start.point));
    if (!through.isPoint()) break;
    auto* made = new GcDbRay;
    ignore(made->setBasePoint(start.point));
    if (made->setUnitDir(through.point - start.point) == Gcad::eOk)
      appendFromUser(in.editor(), made);
    else
      delete made;
  }
  co_return true;
}

// Corners in the zigzag order of the format: the third lies opposite the first's neighbour.
Task<bool> solid(CommandInput& in) {
  constexpr const char* kPrompts[] = {"\nSpecify first point: ", "\nSpecify second point: ", "\nSpecify third point: ",
                                      "\nSpecify fourth point or <exit>: "};
  std::vector<GcGePoint3d> corners;
  for (const char* prompt : kPrompts) {
    const Answer corner = co_await in.ask(Ask(What::Point, prompt));
    if (!corner.isPoint()) break;
    corners.push_back(corner.point);
  }
  if (corners.size() < 3) co_return false;
  if (corners.size() == 3) corners.push_back(corners[2]);
  appendFromUser(in.editor(), new GcDbSolid(corners[0], corners[1], corners[2], corners[3]));
  co_return true;
}

constexpr Command kCommands[] = {
    {"LINE", "L", line}, {"POINT", "PO", point}, {"XLINE", "XL", xline}, {"RAY", "", ray}, {"SOLID", "SO", solid},
};

}  // namespace

std::span<const Command> lineCommands() { return kCommands; }

}  // namespace ed
