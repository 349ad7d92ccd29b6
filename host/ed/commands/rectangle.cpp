// RECTANG: with cut or rounded corners, turned, of a given area.
#include "host/ed/commands/rectangle.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "db/polyline.h"
#include "host/ed/append.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;

// What is asked before the corners.
struct Shape {
  double first = 0, second = 0;  // chamfer distances
  double radius = 0;
  double width = 0;
  double elevation = 0;
  double thickness = 0;
  double turnRad = 0;
};

double numberOr(const Answer& answer, double otherwise) {
  return answer.kind == Answer::Kind::Number ? answer.number : otherwise;
}

// Settings until a point, the first corner.
Task<Answer> askFirstCorner(CommandInput& in, Shape& shape) {
  for (;;) {
    const Answer answer =
        co_await in.ask(Ask(What::Point, "\nSpecify first corner point or [Chamfer/Elevation/Fillet/Thickness/Width]: ")
                            .words("Chamfer Elevation Fillet Thickness Width")
                            .needed());
    if (answer.isKeyword("Chamfer")) {
      const Answer first = co_await in.ask(Ask(What::Distance, "\nSpecify first chamfer distance for rectangles: "));
      const Answer second = co_await in.ask(Ask(What::Distance, "\nSpecify second chamfer distance for rectangles: "));
      shape.first = numberOr(first, 0);
      shape.second = numberOr(second, shape.first);
      shape.radius = 0;
    } else if (answer.isKeyword("Fillet")) {
      const Answer radius = co_await in.ask(Ask(What::Distance, "\nSpecify fillet radius for rectangles: "));
      shape.radius = numberOr(radius, 0);
      shape.first = shape.second = 0;
    } else if (answer.isKeyword("Width")) {
      const Answer width = co_await in.ask(Ask(What::Distance, "\nSpecify line width for rectangles: "));
      shape.width = numberOr(width, 0);
    } else if (answer.isKeyword("Elevation")) {
      const Answer height = co_await in.ask(Ask(What::Distance, "\nSpecify the elevation for rectangles: "));
      shape.elevation = numberOr(height, 0);
    } else if (answer.isKeyword("Thickness")) {
      const Answer thickness = co_await in.ask(Ask(What::Distance, "\nSpecify thickness for rectangles: "));
      shape.thickness = numberOr(thickness, 0);
    } else {
      co_return answer;
    }
  }
}

// Extents along the sides; either may be negative. False when cancelled or impossible.
struct Sides {
  double x = 0, y = 0;
};

Task<bool> askByArea(CommandInput& in, Sides& sides) {
  const Answer area =
      co_await in.ask(Ask(What::Real, "\nEnter area of rectangle in current units <100.0000>: ").positive());
  const Answer which = co_await in.ask(
      Ask(What::Keyword, "\nCalculate rectangle dimensions based on [Length/Width] <Length>: ").words("Length Width"));
  const bool byWidth = which.isKeyword("Width");
  const Answer side = co_await in.ask(
      Ask(What::Distance, byWidth ? "\nEnter rectangle width <10.0000>: " : "\nEnter rectangle length <10.0000>: ")
          .positive());
  const double whole = numberOr(area, 100), given = numberOr(side, 10);
  sides = byWidth ? Sides{whole / given, given} : Sides{given, whole / given};
  co_return side.kind != Answer::Kind::Cancelled;
}

Task<bool> askDimensions(CommandInput& in, Sides& sides) {
  const Answer length = co_await in.ask(Ask(What::Distance, "\nSpecify length for rectangles <10.0000>: ").positive());
  const Answer width = co_await in.ask(Ask(What::Distance, "\nSpecify width for rectangles <10.0000>: ").positive());
  sides = {numberOr(length, 10), numberOr(width, 10)};
  co_return width.kind != Answer::Kind::Cancelled;
}

Task<bool> askRotation(CommandInput& in, Shape& shape) {
  const Answer angle =
      co_await in.ask(Ask(What::Direction, "\nSpecify rotation angle or [Pick points] <0>: ").words("Pick"));
  if (!angle.isKeyword("Pick")) {
    shape.turnRad = numberOr(angle, shape.turnRad);
    co_return true;
  }
  const Answer shown = co_await in.ask(Ask(What::Direction, "\nSpecify first point: ").needed());
  shape.turnRad = numberOr(shown, shape.turnRad);
  co_return true;
}

// Lengths that were given choose one of four places by the corner.
Task<bool> askSides(CommandInput& in, const GcGePoint3d& corner, Shape& shape, Sides& sides) {
  bool given = false;
  for (;;) {
    const Answer other =
        co_await in.ask(Ask(What::Point, "\nSpecify other corner point or [Area/Dimensions/Rotation]: ")
                            .from(corner)
                            .words("Area Dimensions Rotation")
                            .needed());
    if (other.isKeyword("Area")) co_return co_await askByArea(in, sides);
    if (other.isKeyword("Dimensions")) {
      given = co_await askDimensions(in, sides);
    } else if (other.isKeyword("Rotation")) {
      static_cast<void>(co_await askRotation(in, shape));
    } else if (other.isPoint()) {
      const double c = gc::cos(shape.turnRad), s = gc::sin(shape.turnRad);
      const GcGeVector3d to = other.point - corner;
      const Sides shown{to.x * c + to.y * s, to.y * c - to.x * s};
      sides = given ? Sides{std::copysign(sides.x, shown.x), std::copysign(sides.y, shown.y)} : shown;
      co_return true;
    } else {
      co_return false;
    }
  }
}

struct Corner {
  GcGePoint2d before, after;  // the same point where nothing is cut
  double bulge = 0;
};

// The corner cut back along both sides as far as these are long enough; else it stays sharp.
Corner cornerOf(const GcGePoint2d& at, const GcGePoint2d& previous, const GcGePoint2d& next, const Shape& shape) {
  const GcGeVector2d back(previous.x - at.x, previous.y - at.y), on(next.x - at.x, next.y - at.y);
  const double cutBack = shape.radius > 0 ? shape.radius : shape.first;
  const double cutOn = shape.radius > 0 ? shape.radius : shape.second;
  const double least = std::min(back.length(), on.length());
  if (cutBack + cutOn <= 0 || cutBack + cutOn > least) return {at, at, 0};
  const bool left = back.y * on.x - back.x * on.y > 0;
  const double quarter = gc::tan(std::numbers::pi / 8);
  return {{at.x + back.x * cutBack / back.length(), at.y + back.y * cutBack / back.length()},
          {at.x + on.x * cutOn / on.length(), at.y + on.y * cutOn / on.length()},
          shape.radius > 0 ? (left ? quarter : -quarter) : 0};
}

GcDbPolyline* makeRectangle(const GcGePoint3d& at, const Sides& sides, const Shape& shape) {
  const double c = gc::cos(shape.turnRad), s = gc::sin(shape.turnRad);
  const auto corner = [&](double x, double y) { return GcGePoint2d(at.x + x * c - y * s, at.y + x * s + y * c); };
  const GcGePoint2d corners[] = {corner(0, 0), corner(sides.x, 0), corner(sides.x, sides.y), corner(0, sides.y)};
  auto* line = new GcDbPolyline;
  const auto add = [&](const GcGePoint2d& point, double bulge) {
    ignore(line->addVertexAt(line->numVerts(), point, bulge, shape.width, shape.width));
  };
  for (int i = 0; i < 4; ++i) {
    const Corner made = cornerOf(corners[i], corners[(i + 3) % 4], corners[(i + 1) % 4], shape);
    add(made.before, made.bulge);
    if (made.after.x != made.before.x || made.after.y != made.before.y) add(made.after, 0);
  }
  line->setClosed(true);
  ignore(line->setElevation(at.z + shape.elevation));
  ignore(line->setThickness(shape.thickness));
  return line;
}

}  // namespace

Task<bool> drawRectangle(CommandInput& in) {
  Shape shape;
  const Answer first = co_await askFirstCorner(in, shape);
  if (!first.isPoint()) co_return false;
  Sides sides;
  if (!co_await askSides(in, first.point, shape, sides)) co_return false;
  appendFromUser(in.editor(), makeRectangle(first.point, sides, shape));
  co_return true;
}

}  // namespace ed
