// Lightweight polylines: PLINE with its arcs, regular polygons.
#include <numbers>

#include "db/polyline.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/commands/rectangle.h"
#include "host/ed/editedpolyline.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;

// A polyline that is being drawn, user coordinates.
class Trail {
 public:
  explicit Trail(Editor& editor) { m_startWidth = m_endWidth = realVariable(editor, "PLINEWID"); }

  void begin(const GcGePoint3d& point) { add(point, 0); }
  void lineTo(const GcGePoint3d& point) {
    m_bulges.back() = 0;
    m_direction = GcGeVector2d(point.x - last().x, point.y - last().y);
    add(point, 0);
  }
  // An arc that leaves in the direction of the last segment.
  void arcTo(const GcGePoint3d& point) { arcTo(point, bulgeFromDirection(point)); }
  void arcTo(const GcGePoint3d& point, double bulge) {
    const GcGeVector2d chord(point.x - last().x, point.y - last().y);
    const double half = 2 * gc::atan(bulge);  // between the chord and the direction at its end
    m_bulges.back() = bulge;
    m_direction = {chord.x * gc::cos(half) - chord.y * gc::sin(half),
                   chord.x * gc::sin(half) + chord.y * gc::cos(half)};
    add(point, 0);
  }
  void undo() {
    if (m_points.size() < 2) return;
    m_points.pop_back();
    m_bulges.pop_back();
    m_widths.pop_back();
    m_widths.back() = {m_startWidth, m_endWidth};
    m_direction = m_points.size() < 2 ? GcGeVector2d(1, 0)
                                      : GcGeVector2d(last().x - m_points[m_points.size() - 2].x,
                                                     last().y - m_points[m_points.size() - 2].y);
  }
  void setWidths(double start, double end) {
    m_startWidth = start;
    m_endWidth = end;
    if (!m_widths.empty()) m_widths.back() = {start, end};
  }
  void setDirection(const GcGeVector2d& direction) { m_direction = direction; }
  [[nodiscard]] const GcGePoint3d& last() const { return m_points.back(); }
  [[nodiscard]] const GcGeVector2d& direction() const { return m_direction; }
  [[nodiscard]] size_t size() const { return m_points.size(); }
  [[nodiscard]] const GcGePoint3d& first() const { return m_points.front(); }
  [[nodiscard]] double startWidth() const { return m_startWidth; }
  [[nodiscard]] double bulgeFromDirection(const GcGePoint3d& point) const {
    const GcGeVector2d chord(point.x - last().x, point.y - last().y);
    const double turn = gc::atan2(m_direction.crossProduct(chord), m_direction.dotProduct(chord));
    return gc::tan(turn / 2);
  }
  void closeWithBulge(double bulge) { m_bulges.back() = bulge; }

  [[nodiscard]] GcDbPolyline* make(bool closed) const {
    auto* made = new GcDbPolyline(static_cast<unsigned>(m_points.size()));
    for (size_t i = 0; i < m_points.size(); ++i)
      ignore(made->addVertexAt(static_cast<unsigned>(i), {m_points[i].x, m_points[i].y}, m_bulges[i], m_widths[i].start,
                               m_widths[i].end));
    ignore(made->setElevation(m_points[0].z));
    made->setClosed(closed);
    return made;
  }

 private:
  struct Widths {
    double start, end;
  };
  void add(const GcGePoint3d& point, double bulge) {
    m_points.push_back(point);
    m_bulges.push_back(bulge);
    // A width that changes along a segment goes on with its end.
    if (m_points.size() > 1) m_startWidth = m_endWidth;
    m_widths.push_back({m_startWidth, m_endWidth});
  }

  std::vector<GcGePoint3d> m_points;
  std::vector<double> m_bulges;
  std::vector<Widths> m_widths;
  GcGeVector2d m_direction{1, 0};
  double m_startWidth = 0;
  double m_endWidth = 0;
};

Task<bool> askWidths(CommandInput& in, Trail& trail, double factor) {
  const Answer start = co_await in.ask(Ask(What::Distance, "\nSpecify starting width: "));
  const double from = start.kind == Answer::Kind::Number ? start.number * factor : trail.startWidth();
  const Answer end = co_await in.ask(Ask(What::Distance, "\nSpecify ending width: "));
  const double to = end.kind == Answer::Kind::Number ? end.number * factor : from;
  if (from < 0 || to < 0) co_return false;
  trail.setWidths(from, to);
  static_cast<void>(setVariable(in.editor(), GC_T("PLINEWID"), VariableValue::of(to)));
  co_return true;
}

// One arc told by its second point, angle, center or direction. False when the answers make none.
Task<bool> askArc(CommandInput& in, Trail& trail, const Answer& option) {
  double bulge = 0;
  const GcGePoint3d from = trail.last();
  if (option.isKeyword("Second")) {
    const Answer second = co_await in.ask(Ask(What::Point, "\nSpecify second point on arc: ").from(from).needed());
    const Answer end = co_await in.ask(Ask(What::Point, "\nSpecify end point of arc: ").from(from).needed());
    if (!second.isPoint() || !end.isPoint()) co_return false;
    // The angle at the second point is half of what the arc leaves of the circle.
    const GcGeVector2d a(from.x - second.point.x, from.y - second.point.y);
    const GcGeVector2d b(end.point.x - second.point.x, end.point.y - second.point.y);
    const double angle = gc::atan2(b.crossProduct(a), b.dotProduct(a));
    bulge = 1 / gc::tan(angle / 2);
    trail.arcTo(end.point, std::isfinite(bulge) ? bulge : 0);
    co_return true;
  }
  if (option.isKeyword("Angle")) {
    const Answer angle = co_await in.ask(Ask(What::Angle, "\nSpecify included angle: ").needed());
    const Answer end = co_await in.ask(Ask(What::Point, "\nSpecify end point of arc: ").from(from).needed());
    if (angle.kind != Answer::Kind::Number || !end.isPoint()) co_return false;
    trail.arcTo(end.point, gc::tan(angle.number / 4));
    co_return true;
  }
  if (option.isKeyword("CEnter")) {
    const Answer center = co_await in.ask(Ask(What::Point, "\nSpecify center point of arc: ").from(from).needed());
    const Answer end = co_await in.ask(Ask(What::Point, "\nSpecify end point of arc: ").from(from).needed());
    if (!center.isPoint() || !end.isPoint()) co_return false;
    const GcGeVector2d a(from.x - center.point.x, from.y - center.point.y);
    const GcGeVector2d b(end.point.x - center.point.x, end.point.y - center.point.y);
    double sweep = gc::atan2(a.crossProduct(b), a.dotProduct(b));
    if (sweep <= 0) sweep += 2 * std::numbers::pi;
    const GcGeVector2d ray = b * (a.length() / b.length());
    trail.arcTo({center.point.x + ray.x, center.point.y + ray.y, from.z}, gc::tan(sweep / 4));
    co_return true;
  }
  const Answer direction = co_await in.ask(Ask(What::Point, "\nSpecify the tangent direction: ").from(from).needed());
  if (!direction.isPoint()) co_return false;
  trail.setDirection({direction.point.x - from.x, direction.point.y - from.y});
  const Answer end = co_await in.ask(Ask(What::Point, "\nSpecify endpoint of the arc: ").from(from).needed());
  if (end.isPoint()) trail.arcTo(end.point);
  co_return end.isPoint();
}

constexpr const char* kLinePrompt = "\nSpecify next point or [Arc/Close/Halfwidth/Length/Undo/Width]: ";
constexpr const char* kLineWords = "Arc Close Halfwidth Length Undo Width";
constexpr const char* kArcPrompt =
    "\nSpecify endpoint of arc or [Angle/CEnter/CLose/Direction/Halfwidth/Line/Second pt/Undo/Width]: ";
constexpr const char* kArcWords = "Angle CEnter CLose Direction Halfwidth Line Second Undo Width";

void drawTrail(CommandInput& in, const Trail& trail, bool closed) {
  if (trail.size() > 1) {
    const GcDbObjectId made = appendFromUser(in.editor(), trail.make(closed));
    if (integerVariable(in.editor(), "PLINETYPE") == 0) static_cast<void>(needOwnVertices(made));
  }
}

Task<bool> pline(CommandInput& in) {
  Trail trail(in.editor());
  const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify start point: ").needed());
  if (!first.isPoint()) co_return false;
  trail.begin(first.point);
  bool arcs = false;
  for (;;) {
    const Answer next = co_await in.ask(
        Ask(What::Point, arcs ? kArcPrompt : kLinePrompt).from(trail.last()).words(arcs ? kArcWords : kLineWords));
    if (next.isPoint()) {
      arcs ? trail.arcTo(next.point) : trail.lineTo(next.point);
    } else if (next.isKeyword("Arc") || next.isKeyword("Line")) {
      arcs = next.isKeyword("Arc");
    } else if (next.isKeyword("Undo")) {
      trail.undo();
    } else if (next.isKeyword("Width") || next.isKeyword("Halfwidth")) {
      static_cast<void>(co_await askWidths(in, trail, next.isKeyword("Width") ? 1 : 2));
    } else if (next.isKeyword("Length")) {
      const Answer length =
          co_await in.ask(Ask(What::Distance, "\nSpecify length of line: ").from(trail.last()).needed());
      const GcGeVector2d step = trail.direction() * (length.number / trail.direction().length());
      trail.lineTo({trail.last().x + step.x, trail.last().y + step.y, trail.last().z});
    } else if ((next.isKeyword("Close") || next.isKeyword("CLose")) && trail.size() > 1) {
      if (arcs) trail.closeWithBulge(trail.bulgeFromDirection(trail.first()));
      drawTrail(in, trail, true);
      co_return true;
    } else if (next.kind == Answer::Kind::Keyword && arcs) {
      static_cast<void>(co_await askArc(in, trail, next));
    } else if (next.isNone() || next.kind == Answer::Kind::Cancelled) {
      break;
    }
  }
  drawTrail(in, trail, false);
  co_return true;
}

GcDbPolyline* closedPolyline(const std::vector<GcGePoint2d>& corners, double elevation, double width) {
  auto* made = new GcDbPolyline(static_cast<unsigned>(corners.size()));
  for (size_t i = 0; i < corners.size(); ++i)
    ignore(made->addVertexAt(static_cast<unsigned>(i), corners[i], 0, width, width));
  ignore(made->setElevation(elevation));
  made->setClosed(true);
  return made;
}

Task<bool> polygon(CommandInput& in) {
  const Answer sides = co_await in.ask(Ask(What::Integer, "\nEnter number of sides: ").positive());
  const int count =
      sides.kind == Answer::Kind::Number ? static_cast<int>(sides.number) : integerVariable(in.editor(), "POLYSIDES");
  if (count < 3 || count > 1024) co_return false;
  const Answer center = co_await in.ask(Ask(What::Point, "\nSpecify center of polygon: ").needed());
  if (!center.isPoint()) co_return false;
  const Answer where =
      co_await in.ask(Ask(What::Keyword, "\nEnter an option [Inscribed in circle/Circumscribed about circle] <I>: ")
                          .words("Inscribed Circumscribed"));
  const Answer radius =
      co_await in.ask(Ask(What::Distance, "\nSpecify radius of circle: ").from(center.point).positive());
  if (radius.kind != Answer::Kind::Number) co_return false;
  const double half = std::numbers::pi / count;
  const double reach = where.isKeyword("Circumscribed") ? radius.number / gc::cos(half) : radius.number;
  std::vector<GcGePoint2d> corners;
  for (int i = 0; i < count; ++i) {
    const double angle = -std::numbers::pi / 2 - half + 2 * half * i;  // a side lies at the bottom
    corners.push_back({center.point.x + reach * gc::cos(angle), center.point.y + reach * gc::sin(angle)});
  }
  appendFromUser(in.editor(), closedPolyline(corners, center.point.z, 0));
  co_return true;
}

constexpr Command kCommands[] = {
    {"PLINE", "PL", pline},
    {"RECTANG", "REC RECTANGLE", drawRectangle},
    {"POLYGON", "POL", polygon},
};

}  // namespace

std::span<const Command> polylineCommands() { return kCommands; }

}  // namespace ed
