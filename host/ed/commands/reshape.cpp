// Entities reshaped: STRETCH, LENGTHEN, REVERSE, MATCHPROP.
#include <algorithm>
#include <numbers>

#include "db/arc.h"
#include "db/circle.h"
#include "db/dimension.h"
#include "db/hatch.h"
#include "db/line.h"
#include "db/mtext.h"
#include "db/polyline.h"
#include "db/polyline2d.h"
#include "db/text.h"
#include "db/vertex.h"
#include "host/db/entlist/entitylist.h"
#include "host/db/entlist/entitymake.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/pick.h"
#include "host/ed/selection.h"
#include "host/ed/stepundo.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

// ---- STRETCH

// The corners of a crossing window or polygon, user coordinates.
class Frame {
 public:
  explicit Frame(const GcGeMatrix3d& toUser) : m_toUser(toUser) {}
  void set(const Region& region) {
    m_corners = region.points;
    if (region.kind != Region::Kind::Crossing || region.points.size() != 2) return;
    const GcGePoint3d& a = region.points[0];
    const GcGePoint3d& b = region.points[1];
    m_corners = {a, {b.x, a.y, 0}, b, {a.x, b.y, 0}};
  }
  [[nodiscard]] bool holds(const GcGePoint3d& world) const {
    const GcGePoint3d p = m_toUser * world;
    bool in = false;
    for (size_t i = 0, j = m_corners.size() - 1; i < m_corners.size(); j = i++) {
      const GcGePoint3d& a = m_corners[i];
      const GcGePoint3d& b = m_corners[j];
      if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) in = !in;
    }
    return in;
  }

 private:
  GcGeMatrix3d m_toUser;
  std::vector<GcGePoint3d> m_corners;
};

void stretchLine(GcDbLine& line, const Frame& frame, const GcGeVector3d& by) {
  const GcGePoint3d start = line.startPoint();
  const GcGePoint3d end = line.endPoint();
  if (frame.holds(start)) ignore(line.setStartPoint(start + by));
  if (frame.holds(end)) ignore(line.setEndPoint(end + by));
}

void stretchPolyline(GcDbPolyline& line, const Frame& frame, const GcGeVector3d& by) {
  GcGeMatrix3d toPlane;
  toPlane.setToWorldToPlane(line.normal());
  for (unsigned i = 0; i < line.numVerts(); ++i) {
    GcGePoint3d at;
    if (line.getPointAt(i, at) != Gcad::eOk || !frame.holds(at)) continue;
    const GcGePoint3d moved = toPlane * (at + by);
    ignore(line.setPointAt(i, {moved.x, moved.y}));
  }
}

// The arc keeps its rise over the chord.
void stretchArc(GcDbArc& arc, const Frame& frame, const GcGeVector3d& by) {
  GcGePoint3d start, end;
  if (arc.getStartPoint(start) != Gcad::eOk || arc.getEndPoint(end) != Gcad::eOk) return;
  const bool movesStart = frame.holds(start);
  const bool movesEnd = frame.holds(end);
  if (movesStart && movesEnd) {
    GcGeMatrix3d shift;
    ignore(arc.transformBy(shift.setToTranslation(by)));
    return;
  }
  if (!movesStart && !movesEnd) return;
  GcGeMatrix3d toPlane;
  toPlane.setToWorldToPlane(arc.normal());
  const double half = arc.sweepAngle() / 2;
  const double rise = arc.radius() * (1 - gc::cos(half));
  const GcGePoint3d a = toPlane * (movesStart ? start + by : start);
  const GcGePoint3d b = toPlane * (movesEnd ? end + by : end);
  const double chord = gc::hypot(b.x - a.x, b.y - a.y);
  if (chord == 0 || rise == 0) return;
  const double radius = (chord * chord / 4 + rise * rise) / (2 * rise);
  // The centre lies to the left of the chord for less than a half circle.
  const double off = radius - rise;
  const GcGePoint3d center((a.x + b.x) / 2 - (b.y - a.y) / chord * off, (a.y + b.y) / 2 + (b.x - a.x) / chord * off,
                           a.z);
  ignore(arc.setCenter(toPlane.inverse() * center));
  ignore(arc.setRadius(radius));
  ignore(arc.setStartAngle(gc::atan2(a.y - center.y, a.x - center.x)));
  ignore(arc.setEndAngle(gc::atan2(b.y - center.y, b.x - center.x)));
}

// Collects the points of an entity list.
class Points final : public GcDbGroupSink {
 public:
  void put(const GcDbGroup& group) override {
    if (group.code >= 10 && group.code <= 16 && group.kind == GcDbGroupKind::Point3d) found.push_back(group);
  }
  std::vector<GcDbGroup> found;
};

bool stretchesByPoints(const GcDbEntity& entity) {
  const GcText name = gcdbDxfNameOf(entity);
  for (const GCHAR* each : {GC_T("DIMENSION"), GC_T("SOLID"), GC_T("TRACE"), GC_T("3DFACE"), GC_T("LEADER")})
    if (name == each) return true;
  return false;
}

// What is defined by points follows point by point; all else goes along when its first point lies in the frame.
void stretchByPoints(GcDbObjectId id, bool pointwise, const Frame& frame, const GcGeVector3d& by) {
  Points points;
  if (!gcdbEntityList(id, nullptr, points) || points.found.empty()) return;
  if (!pointwise) {
    GcGeMatrix3d shift;
    if (frame.holds(points.found[0].point)) transformEntities({id}, shift.setToTranslation(by));
    return;
  }
  GcDbGroupList list;
  list.put(GcDbGroup::ofId(-1, id));
  for (GcDbGroup& group : points.found) {
    if (frame.holds(group.point)) group.point = group.point + by;
    list.put(group);
  }
  ignore(gcdbEntityModify(list));
}

void stretchEntity(GcDbObjectId id, const Frame& frame, const GcGeVector3d& by) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForWrite) != Gcad::eOk) return;
  bool done = true;
  if (auto* line = GcDbLine::cast(entity))
    stretchLine(*line, frame, by);
  else if (auto* polyline = GcDbPolyline::cast(entity))
    stretchPolyline(*polyline, frame, by);
  else if (auto* arc = GcDbArc::cast(entity))
    stretchArc(*arc, frame, by);
  else
    done = false;
  GcDbObjectIdArray vertices;
  const bool hasVertices = GcDb2dPolyline::cast(entity) != nullptr || GcDb3dPolyline::cast(entity) != nullptr;
  if (hasVertices) entity->subEntities(vertices);
  const bool pointwise = stretchesByPoints(*entity);
  ignore(entity->close());
  if (done) return;
  if (!hasVertices) {
    stretchByPoints(id, pointwise, frame, by);
    return;
  }
  for (const GcDbObjectId vertex : vertices)
    if (vertex.isValid() && !vertex.isErased()) stretchByPoints(vertex, true, frame, by);
}

struct Stretched {
  Ids whole;
  Ids partly;
};

// Objects named one by one go along whole; those of a crossing frame are stretched.
Task<Stretched> askStretched(CommandInput& in, Frame& frame) {
  Stretched chosen;
  for (;;) {
    const Answer answer = co_await in.ask(
        Ask(What::Objects, "\nSelect objects to stretch by crossing-window or crossing-polygon...\nSelect objects: ")
            .words("Crossing CPolygon Window WPolygon ALL Last Previous"));
    Region region;
    region.kind = Region::Kind::Crossing;
    if (answer.kind == Answer::Kind::Objects) {
      chosen.whole.insert(chosen.whole.end(), answer.objects.begin(), answer.objects.end());
      continue;
    }
    if (answer.isKeyword("Last")) {
      chosen.whole.push_back(lastEntity(in.editor()));
      continue;
    }
    if (answer.isPoint()) {
      region.points.push_back(answer.point);
    } else if (answer.isKeyword("CPolygon")) {
      region.kind = Region::Kind::CrossingPolygon;
    } else if (!answer.isKeyword("Crossing")) {
      break;
    }
    const size_t most = region.kind == Region::Kind::Crossing ? 2 : SIZE_MAX;
    while (region.points.size() < most) {
      const Answer point = co_await in.ask(Ask(What::Point, "\nSpecify next point: "));
      if (!point.isPoint()) break;
      region.points.push_back(point.point);
    }
    if (region.points.size() < 2) break;
    // The last frame counts, for all that earlier ones caught too.
    for (const GcDbObjectId id : entitiesIn(in.editor(), region))
      if (!isOnLockedLayer(id) && std::find(chosen.partly.begin(), chosen.partly.end(), id) == chosen.partly.end())
        chosen.partly.push_back(id);
    frame.set(region);
  }
  co_return chosen;
}

Task<bool> stretch(CommandInput& in) {
  Frame frame(ucsToWorld(in.editor()).inverse());
  const Stretched chosen = co_await askStretched(in, frame);
  if (chosen.whole.empty() && chosen.partly.empty()) co_return false;
  Answer base = co_await in.ask(Ask(What::Point, "\nSpecify base point or [Displacement]: ").words("Displacement"));
  Answer second;
  if (base.isKeyword("Displacement"))
    base = co_await in.ask(Ask(What::Point, "\nSpecify displacement: "));
  else if (base.isPoint())
    second = co_await in.ask(
        Ask(What::Point, "\nSpecify second point or <use first point as displacement>: ").from(base.point));
  if (!base.isPoint()) co_return false;
  const GcGeVector3d by =
      ucsToWorld(in.editor()) * (second.isPoint() ? second.point - base.point : base.point.asVector());
  GcGeMatrix3d shift;
  transformEntities(chosen.whole, shift.setToTranslation(by));
  for (const GcDbObjectId id : chosen.partly)
    if (std::find(chosen.whole.begin(), chosen.whole.end(), id) == chosen.whole.end()) stretchEntity(id, frame, by);
  co_return true;
}

// ---- LENGTHEN

struct NewLength {
  enum class Kind : uint8_t { Delta, DeltaAngle, Percent, Total, TotalAngle } kind = Kind::Delta;
  double value = 0;
};

// By how much the curve grows, drawing units.
double growth(const NewLength& wanted, double length, double radius) {
  switch (wanted.kind) {
    case NewLength::Kind::Delta: return wanted.value;
    case NewLength::Kind::DeltaAngle: return wanted.value * radius;
    case NewLength::Kind::Percent: return length * (wanted.value / 100 - 1);
    case NewLength::Kind::Total: return wanted.value - length;
    case NewLength::Kind::TotalAngle: return wanted.value * radius - length;
  }
  return 0;
}

bool lengthenLine(GcDbLine& line, bool atEnd, const NewLength& wanted) {
  const GcGeVector3d along = line.endPoint() - line.startPoint();
  const double length = along.length();
  const double now = length + growth(wanted, length, 0);
  if (length == 0 || now <= 0) return false;
  const GcGeVector3d whole = along * (now / length);
  return (atEnd ? line.setEndPoint(line.startPoint() + whole) : line.setStartPoint(line.endPoint() - whole)) ==
         Gcad::eOk;
}

bool lengthenArc(GcDbArc& arc, bool atEnd, const NewLength& wanted) {
  const double sweep = arc.sweepAngle();
  const double grown = growth(wanted, sweep * arc.radius(), arc.radius()) / arc.radius();
  if (sweep + grown <= 0 || sweep + grown >= 2 * std::numbers::pi) return false;
  return (atEnd ? arc.setEndAngle(arc.endAngle() + grown) : arc.setStartAngle(arc.startAngle() - grown)) == Gcad::eOk;
}

// Straight end segments only.
bool lengthenPolyline(GcDbPolyline& line, bool atEnd, const NewLength& wanted) {
  if (line.isClosed() || line.numVerts() < 2) return false;
  const unsigned last = line.numVerts() - 1;
  GcGePoint2d end, next;
  double bulge = 0, param = 0, length = 0;
  ignore(line.getPointAt(atEnd ? last : 0, end));
  ignore(line.getPointAt(atEnd ? last - 1 : 1, next));
  ignore(line.getBulgeAt(atEnd ? last - 1 : 0, bulge));
  if (bulge != 0 || line.getEndParam(param) != Gcad::eOk || line.getDistAtParam(param, length) != Gcad::eOk)
    return false;
  const double segment = gc::hypot(end.x - next.x, end.y - next.y);
  const double now = segment + growth(wanted, length, 0);
  if (segment == 0 || now <= 0) return false;
  const double f = now / segment;
  return line.setPointAt(atEnd ? last : 0, {next.x + (end.x - next.x) * f, next.y + (end.y - next.y) * f}) == Gcad::eOk;
}

bool lengthenAt(CommandInput& in, const Answer& picked, const NewLength& wanted) {
  GcDbCurve* curve = nullptr;
  if (gcdbOpenObject(curve, picked.entity, GcDb::kForWrite) != Gcad::eOk) return false;
  GcGePoint3d nearest;
  double end = 0, length = 0, at = 0;
  bool good = curve->getClosestPointTo(in.toWorld(picked.point), nearest) == Gcad::eOk &&
              curve->getDistAtPoint(nearest, at) == Gcad::eOk && curve->getEndParam(end) == Gcad::eOk &&
              curve->getDistAtParam(end, length) == Gcad::eOk;
  const bool atEnd = at >= length / 2;
  if (auto* line = GcDbLine::cast(curve))
    good = good && lengthenLine(*line, atEnd, wanted);
  else if (auto* arc = GcDbArc::cast(curve))
    good = good && lengthenArc(*arc, atEnd, wanted);
  else if (auto* polyline = GcDbPolyline::cast(curve))
    good = good && lengthenPolyline(*polyline, atEnd, wanted);
  else
    good = false;
  ignore(curve->close());
  return good;
}

// The end nearer to the pick goes along the curve to beside the point.
bool lengthenTo(CommandInput& in, const Answer& picked, const GcGePoint3d& to) {
  GcDbCurve* curve = nullptr;
  if (gcdbOpenObject(curve, picked.entity, GcDb::kForRead) != Gcad::eOk) return false;
  GcGePoint3d start, end, nearest, pick;
  double length = 0, at = 0;
  NewLength wanted{NewLength::Kind::Total, 0};
  bool good = curve->getStartPoint(start) == Gcad::eOk && curve->getEndPoint(end) == Gcad::eOk &&
              curve->getClosestPointTo(in.toWorld(picked.point), pick) == Gcad::eOk &&
              curve->getClosestPointTo(to, nearest, true) == Gcad::eOk;
  const bool atEnd = good && pick.distanceTo(end) <= pick.distanceTo(start);
  if (const auto* line = GcDbLine::cast(curve)) {
    const GcGeVector3d way = atEnd ? end - start : start - end;
    wanted.value = way.length() == 0 ? 0 : (nearest - (atEnd ? start : end)).dotProduct(way) / way.length();
    static_cast<void>(line);
  } else if (const auto* arc = GcDbArc::cast(curve)) {
    GcGeMatrix3d toPlane;
    const GcGeVector3d out = toPlane.setToWorldToPlane(arc->normal()) * (nearest - arc->center());
    const double angle = gc::atan2(out.y, out.x);
    const double turn = atEnd ? angle - arc->startAngle() : arc->endAngle() - angle;
    const double whole = 2 * std::numbers::pi;
    wanted = {NewLength::Kind::TotalAngle, turn - whole * std::floor(turn / whole)};
  } else {
    // Back along the curve only; a straight end may go on.
    double endParam = 0;
    good = good && curve->getEndParam(endParam) == Gcad::eOk && curve->getDistAtParam(endParam, length) == Gcad::eOk;
    GcGePoint3d on;
    good = good && curve->getClosestPointTo(to, on) == Gcad::eOk && curve->getDistAtPoint(on, at) == Gcad::eOk;
    wanted.value = atEnd ? at : length - at;
  }
  ignore(curve->close());
  return good && wanted.value > 0 && lengthenAt(in, picked, wanted);
}

// A length, or an angle after the word.
Task<bool> askNewLength(CommandInput& in, NewLength& wanted, bool total) {
  const Answer length = co_await in.ask(
      Ask(What::Distance, total ? "\nSpecify total length or [Angle]: " : "\nEnter delta length or [Angle]: ")
          .words("Angle"));
  wanted.kind = total ? NewLength::Kind::Total : NewLength::Kind::Delta;
  wanted.value = length.number;
  if (!length.isKeyword("Angle")) co_return length.kind == Answer::Kind::Number;
  const Answer angle = co_await in.ask(Ask(What::Angle, total ? "\nSpecify total angle: " : "\nEnter delta angle: "));
  wanted.kind = total ? NewLength::Kind::TotalAngle : NewLength::Kind::DeltaAngle;
  wanted.value = angle.number;
  co_return angle.kind == Answer::Kind::Number;
}

Task<bool> lengthen(CommandInput& in) {
  NewLength wanted;
  bool known = false;
  bool dynamic = false;
  bool any = false;
  StepUndo steps(in.database());
  for (;;) {
    const Answer answer =
        co_await in.ask(Ask(What::Entity, known ? "\nSelect an object to change or [Undo]: "
                                                : "\nSelect an object to measure or [DElta/Percent/Total/DYnamic]: ")
                            .words("DElta Percent Total DYnamic Undo"));
    if (answer.isKeyword("DElta") || answer.isKeyword("Total")) {
      known = co_await askNewLength(in, wanted, answer.isKeyword("Total"));
      dynamic = false;
    } else if (answer.isKeyword("DYnamic")) {
      known = dynamic = true;
    } else if (answer.isKeyword("Undo")) {
      if (!steps.back()) in.tell("\nAll has been undone.\n");
    } else if (answer.kind == Answer::Kind::Entity && dynamic) {
      const Answer to = co_await in.ask(Ask(What::Point, "\nSpecify new end point: ").needed());
      if (!to.isPoint()) co_return any;
      steps.begin();
      const bool good = lengthenTo(in, answer, in.toWorld(to.point));
      if (!good) {
        steps.drop();
        in.tell("\nCannot change the length of that object so.\n");
      }
      any = any || good;
    } else if (answer.isKeyword("Percent")) {
      const Answer percent = co_await in.ask(Ask(What::Real, "\nEnter percentage length <100>: ").positive());
      wanted = {NewLength::Kind::Percent, percent.kind == Answer::Kind::Number ? percent.number : 100};
      known = true;
      dynamic = false;
    } else if (answer.kind == Answer::Kind::Entity && known) {
      steps.begin();
      const bool good = lengthenAt(in, answer, wanted);
      if (!good) {
        steps.drop();
        in.tell("\nCannot change the length of that object so.\n");
      }
      any = any || good;
    } else if (answer.kind != Answer::Kind::Entity) {
      co_return any;
    }
  }
}

// ---- REVERSE

Task<bool> reverse(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  forEach<GcDbCurve>(ids, [](GcDbCurve& curve) { ignore(curve.reverseCurve()); });
  co_return !ids.empty();
}

// ---- MATCHPROP

void matchSpecial(const GcDbEntity& from, GcDbEntity& to) {
  if (const auto* source = GcDbText::cast(&from))
    if (auto* text = GcDbText::cast(&to)) {
      ignore(text->setTextStyle(source->textStyle()));
      ignore(text->setHeight(source->height()));
      ignore(text->setRotation(source->rotation()));
      ignore(text->setOblique(source->oblique()));
      ignore(text->setWidthFactor(source->widthFactor()));
    }
  if (const auto* source = GcDbMText::cast(&from))
    if (auto* text = GcDbMText::cast(&to)) {
      ignore(text->setTextStyle(source->textStyle()));
      ignore(text->setTextHeight(source->textHeight()));
      ignore(text->setRotation(source->rotation()));
    }
  if (const auto* source = GcDbDimension::cast(&from))
    if (auto* dimension = GcDbDimension::cast(&to)) ignore(dimension->setDimensionStyle(source->dimensionStyle()));
  double width = 0;
  if (const auto* source = GcDbPolyline::cast(&from))
    if (auto* line = GcDbPolyline::cast(&to); line != nullptr && source->getConstantWidth(width) == Gcad::eOk)
      ignore(line->setConstantWidth(width));
  if (const auto* source = GcDbHatch::cast(&from))
    if (auto* hatch = GcDbHatch::cast(&to)) {
      ignore(hatch->setPatternScale(source->patternScale()));
      ignore(hatch->setPatternAngle(source->patternAngle()));
      ignore(hatch->setPattern(source->patternType(), source->patternName().c_str()));
    }
}

Task<bool> matchProperties(CommandInput& in) {
  const Answer source = co_await in.ask(Ask(What::Entity, "\nSelect source object: ").needed());
  if (source.kind != Answer::Kind::Entity) co_return false;
  Ids ids = co_await selectObjects(in, "\nSelect destination object(s) or [Settings]: ");
  std::erase(ids, source.entity);
  GcDbEntity* from = nullptr;
  if (ids.empty() || gcdbOpenObject(from, source.entity, GcDb::kForRead) != Gcad::eOk) co_return false;
  forEach<GcDbEntity>(ids, [&](GcDbEntity& to) {
    ignore(to.setPropertiesFrom(*from));
    matchSpecial(*from, to);
  });
  ignore(from->close());
  co_return true;
}

constexpr Command kCommands[] = {
    {"STRETCH", "S", stretch},
    {"LENGTHEN", "LEN", lengthen},
    {"REVERSE", "", reverse},
    {"MATCHPROP", "MA PAINTER", matchProperties},
};

}  // namespace

std::span<const Command> reshapeCommands() { return kCommands; }

}  // namespace ed
