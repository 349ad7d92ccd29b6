// Dimensions: linear, aligned, radius, diameter, angular; and DIM1, which asks for the kind.
#include <algorithm>
#include <numbers>

#include "db/arc.h"
#include "db/circle.h"
#include "db/dimension.h"
#include "db/line.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/described.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;

constexpr double kRightAngle = std::numbers::pi / 2;

// Where the dimension line goes, and what a person may say before.
struct Place {
  GcGePoint3d point;
  bool given = false;
  GcText text;
  double textRotationRad = 0;
  bool hasTextRotation = false;
  bool hasRotation = false;  // linear: the direction that is measured
  double rotationRad = 0;
};

Task<Place> askPlace(CommandInput& in, const char* prompt, const char* words) {
  Place place;
  for (;;) {
    const Answer answer = co_await in.ask(Ask(What::Point, prompt).words(words).needed());
    if (answer.isPoint()) {
      place.point = answer.point;
      place.given = true;
      co_return place;
    }
    if (answer.isKeyword("Text") || answer.isKeyword("Mtext")) {
      place.text = (co_await in.ask(Ask(What::Line, "\nEnter dimension text <>: "))).text;
    } else if (answer.isKeyword("Angle")) {
      const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify angle of dimension text: "));
      place.hasTextRotation = angle.kind == Answer::Kind::Number;
      place.textRotationRad = angle.number;
    } else if (answer.isKeyword("Horizontal") || answer.isKeyword("Vertical")) {
      place.hasRotation = true;
      place.rotationRad = answer.isKeyword("Vertical") ? kRightAngle : 0;
    } else if (answer.isKeyword("Rotated")) {
      const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify angle of dimension line <0>: "));
      place.hasRotation = true;
      place.rotationRad = angle.kind == Answer::Kind::Number ? angle.number : 0;
    } else {
      co_return place;
    }
  }
}

void add(CommandInput& in, GcDbDimension* dimension, const Place& place) {
  if (!place.text.empty()) ignore(dimension->setDimensionText(place.text.c_str()));
  if (place.hasTextRotation) ignore(dimension->setTextRotation(place.textRotationRad));
  appendFromUser(in.editor(), dimension);
}

// ---- linear and aligned

struct Origins {
  GcGePoint3d first, second;  // user coordinates
  bool given = false;
};

// The ends of a line or arc, the ends of a circle's diameter.
bool endsOf(Editor& editor, GcDbObjectId id, Origins& origins) {
  GcDbCurve* curve = nullptr;
  if (gcdbOpenObject(curve, id, GcDb::kForRead) != Gcad::eOk) return false;
  origins.given = curve->getStartPoint(origins.first) == Gcad::eOk && curve->getEndPoint(origins.second) == Gcad::eOk;
  if (const auto* circle = GcDbCircle::cast(curve)) {
    origins.first = circle->center() - GcGeVector3d(circle->radius(), 0, 0);
    origins.second = circle->center() + GcGeVector3d(circle->radius(), 0, 0);
  }
  ignore(curve->close());
  const GcGeMatrix3d toUser = ucsToWorld(editor).inverse();
  origins.first = toUser * origins.first;
  origins.second = toUser * origins.second;
  return origins.given;
}

Task<Origins> askOrigins(CommandInput& in) {
  Origins origins;
  const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify first extension line origin or <select object>: "));
  if (first.isNone()) {
    const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect object to dimension: "));
    if (!endsOf(in.editor(), picked.entity, origins)) in.tell("\nObject selected is not a line, arc, or circle.\n");
    co_return origins;
  }
  const Answer second =
      co_await in.ask(Ask(What::Point, "\nSpecify second extension line origin: ").from(first.point).needed());
  origins.first = first.point;
  origins.second = second.point;
  origins.given = first.isPoint() && second.isPoint();
  co_return origins;
}

// How far a value lies outside an interval.
double outside(double value, double a, double b) {
  return std::max(0.0, std::max(std::min(a, b) - value, value - std::max(a, b)));
}

// A place beside the two points measures vertically, one above or below them horizontally.
double directionSeenFrom(const GcGePoint3d& place, const Origins& origins) {
  const double aside = outside(place.x, origins.first.x, origins.second.x);
  const double above = outside(place.y, origins.first.y, origins.second.y);
  return aside > above ? kRightAngle : 0;
}

Task<bool> linearAlong(CommandInput& in, bool hasRotation, double rotationRad) {
  const Origins origins = co_await askOrigins(in);
  if (!origins.given) co_return false;
  Place place =
      co_await askPlace(in, "\nSpecify dimension line location or [Mtext/Text/Angle/Horizontal/Vertical/Rotated]: ",
                        "Mtext Text Angle Horizontal Vertical Rotated");
  if (!place.given) co_return false;
  const double rotation = place.hasRotation ? place.rotationRad
                          : hasRotation     ? rotationRad
                                            : directionSeenFrom(place.point, origins);
  // The definition point lies on the extension line of the second point.
  const GcGeVector3d across(-gc::sin(rotation), gc::cos(rotation), 0);
  const GcGePoint3d at = origins.second + across * (place.point - origins.second).dotProduct(across);
  add(in, new GcDbRotatedDimension(rotation, origins.first, origins.second, at), place);
  co_return true;
}

Task<bool> linear(CommandInput& in) { co_return co_await linearAlong(in, false, 0); }

Task<bool> rotated(CommandInput& in) {
  const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify angle of dimension line <0>: "));
  co_return co_await linearAlong(in, true, angle.kind == Answer::Kind::Number ? angle.number : 0);
}

Task<bool> aligned(CommandInput& in) {
  const Origins origins = co_await askOrigins(in);
  if (!origins.given) co_return false;
  const Place place =
      co_await askPlace(in, "\nSpecify dimension line location or [Mtext/Text/Angle]: ", "Mtext Text Angle");
  const GcGeVector3d along = origins.second - origins.first;
  if (!place.given || along.isZeroLength()) co_return false;
  const GcGeVector3d across = GcGeVector3d(-along.y, along.x, 0).normal();
  const GcGePoint3d at = origins.second + across * (place.point - origins.second).dotProduct(across);
  add(in, new GcDbAlignedDimension(origins.first, origins.second, at), place);
  co_return true;
}

// ---- radius and diameter

struct Round {
  GcGePoint3d center;  // user coordinates
  double radius = 0;
};

bool roundOf(Editor& editor, GcDbObjectId id, Round& round) {
  GcDbCurve* curve = nullptr;
  if (gcdbOpenObject(curve, id, GcDb::kForRead) != Gcad::eOk) return false;
  if (const auto* circle = GcDbCircle::cast(curve))
    round = {circle->center(), circle->radius()};
  else if (const auto* arc = GcDbArc::cast(curve))
    round = {arc->center(), arc->radius()};
  ignore(curve->close());
  round.center = ucsToWorld(editor).inverse() * round.center;
  return round.radius > 0;
}

Task<bool> radial(CommandInput& in, bool diameter) {
  Round round;
  const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect arc or circle: ").needed());
  if (picked.kind != Answer::Kind::Entity || !roundOf(in.editor(), picked.entity, round)) {
    in.tell("\nObject selected is not a circle or arc.\n");
    co_return false;
  }
  const Place place =
      co_await askPlace(in, "\nSpecify dimension line location or [Mtext/Text/Angle]: ", "Mtext Text Angle");
  if (!place.given) co_return false;
  const GcGeVector3d away(place.point.x - round.center.x, place.point.y - round.center.y, 0);
  const GcGeVector3d ray = (away.isZeroLength() ? GcGeVector3d::kXAxis : away.normal()) * round.radius;
  const GcGePoint3d chord = round.center + ray;
  const double leader = std::max(0.0, away.length() - round.radius);
  GcDbDimension* made = nullptr;
  if (diameter)
    made = new GcDbDiametricDimension;
  else
    made = new GcDbRadialDimension;
  fill(*made, {markerGroup(GC_T("AcDbDimension")), GcDbGroup::ofPoint(10, diameter ? round.center - ray : round.center),
               GcDbGroup::ofPoint(11, place.point),
               markerGroup(diameter ? GC_T("AcDbDiametricDimension") : GC_T("AcDbRadialDimension")),
               GcDbGroup::ofPoint(15, chord), GcDbGroup::ofReal(40, leader)});
  add(in, made, place);
  co_return true;
}

Task<bool> radius(CommandInput& in) { co_return co_await radial(in, false); }
Task<bool> diameter(CommandInput& in) { co_return co_await radial(in, true); }

// ---- angular

double angleSeen(const GcGePoint3d& from, const GcGePoint3d& to) {
  return GcGeVector2d(to.x - from.x, to.y - from.y).angle();
}

double turned(double fromRad, double toRad) {
  const double turn = std::fmod(toRad - fromRad, 2 * std::numbers::pi);
  return turn < 0 ? turn + 2 * std::numbers::pi : turn;
}

// The angle between two rays on the side of the place.
double angleTowards(const GcGePoint3d& vertex, const GcGePoint3d& first, const GcGePoint3d& second,
                    const GcGePoint3d& place) {
  const double start = angleSeen(vertex, first);
  const double whole = turned(start, angleSeen(vertex, second));
  return turned(start, angleSeen(vertex, place)) <= whole ? whole : 2 * std::numbers::pi - whole;
}

// The angle between two lines in whose quarter the place lies; 0 for parallel lines.
double angleBetween(const Origins& a, const Origins& b, const GcGePoint3d& place) {
  GcArray<GcGePoint3d> meets;
  const GcDbLine first(a.first, a.second);
  const GcDbLine second(b.first, b.second);
  if (first.intersectWith(&second, GcDb::kExtendBoth, meets) != Gcad::eOk || meets.isEmpty()) return 0;
  const GcGeVector3d u = (a.second - a.first).normal();
  const GcGeVector3d v = (b.second - b.first).normal();
  const GcGeVector3d seen = place - meets[0];
  // The place is s u + t v; the signs of s and t name the quarter.
  const double cross = u.x * v.y - u.y * v.x;
  const double s = (seen.x * v.y - seen.y * v.x) / cross;
  const double t = (u.x * seen.y - u.y * seen.x) / cross;
  const double cosine = u.dotProduct(v) * (s < 0 ? -1 : 1) * (t < 0 ? -1 : 1);
  return gc::acos(std::clamp(cosine, -1.0, 1.0));
}

Task<bool> angleAtVertex(CommandInput& in, const GcGePoint3d& vertex, const GcGePoint3d& first,
                         const GcGePoint3d& second) {
  const Place place = co_await askPlace(
      in, "\nSpecify dimension arc line location or [Mtext/Text/Angle/Quadrant]: ", "Mtext Text Angle Quadrant");
  if (!place.given) co_return false;
  auto* made = new GcDb3PointAngularDimension;
  fill(*made,
       {markerGroup(GC_T("AcDbDimension")), GcDbGroup::ofPoint(10, place.point), GcDbGroup::ofPoint(11, place.point),
        GcDbGroup::ofReal(42, angleTowards(vertex, first, second, place.point)),
        markerGroup(GC_T("AcDb3PointAngularDimension")), GcDbGroup::ofPoint(13, first), GcDbGroup::ofPoint(14, second),
        GcDbGroup::ofPoint(15, vertex)});
  add(in, made, place);
  co_return true;
}

Task<bool> angleOfLines(CommandInput& in, const Origins& first, GcDbObjectId secondLine) {
  Origins second;
  if (!endsOf(in.editor(), secondLine, second)) co_return false;
  const Place place = co_await askPlace(
      in, "\nSpecify dimension arc line location or [Mtext/Text/Angle/Quadrant]: ", "Mtext Text Angle Quadrant");
  if (!place.given) co_return false;
  auto* made = new GcDb2LineAngularDimension;
  fill(*made,
       {markerGroup(GC_T("AcDbDimension")), GcDbGroup::ofPoint(10, second.second), GcDbGroup::ofPoint(11, place.point),
        GcDbGroup::ofReal(42, angleBetween(first, second, place.point)), markerGroup(GC_T("AcDb2LineAngularDimension")),
        GcDbGroup::ofPoint(13, first.first), GcDbGroup::ofPoint(14, first.second), GcDbGroup::ofPoint(15, second.first),
        GcDbGroup::ofPoint(16, place.point)});
  add(in, made, place);
  co_return true;
}

Task<bool> angular(CommandInput& in) {
  Editor& editor = in.editor();
  const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect arc, circle, line, or <specify vertex>: "));
  if (picked.isNone()) {
    const Answer vertex = co_await in.ask(Ask(What::Point, "\nSpecify angle vertex: ").needed());
    const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify first angle endpoint: ").needed());
    const Answer second = co_await in.ask(Ask(What::Point, "\nSpecify second angle endpoint: ").needed());
    co_return co_await angleAtVertex(in, vertex.point, first.point, second.point);
  }
  if (picked.kind != Answer::Kind::Entity) co_return false;
  Origins ends;
  Round round;
  const GcRxClass* kind = picked.entity.objectClass();
  if (kind == GcDbArc::desc() && roundOf(editor, picked.entity, round) && endsOf(editor, picked.entity, ends))
    co_return co_await angleAtVertex(in, round.center, ends.first, ends.second);
  if (kind == GcDbCircle::desc() && roundOf(editor, picked.entity, round)) {
    const Answer second = co_await in.ask(Ask(What::Point, "\nSpecify second angle endpoint: ").needed());
    co_return co_await angleAtVertex(in, round.center, picked.point, second.point);
  }
  if (kind == GcDbLine::desc() && endsOf(editor, picked.entity, ends)) {
    const Answer other = co_await in.ask(Ask(What::Entity, "\nSelect second line: ").needed());
    co_return co_await angleOfLines(in, ends, other.entity);
  }
  in.tell("\nObject selected is not an arc, circle, or line.\n");
  co_return false;
}

// ---- further linear dimensions, on from the last one or from its first origin

// The last linear or aligned dimension of the space, user coordinates.
struct Former {
  Origins origins;
  GcGePoint3d line;  // on the dimension line
  double rotationRad = 0;
};

bool takeFormer(CommandInput& in, GcDbObjectId id, Former& former) {
  GcDbDimension* dimension = nullptr;
  if (gcdbOpenObject(dimension, id, GcDb::kForRead) != Gcad::eOk) return false;
  const GcGeMatrix3d toUser = ucsToWorld(in.editor()).inverse();
  const auto take = [&](const auto& linear) {
    former.origins.first = toUser * linear.xLine1Point();
    former.origins.second = toUser * linear.xLine2Point();
    former.line = toUser * linear.dimLinePoint();
    former.origins.given = true;
  };
  if (const auto* turned = GcDbRotatedDimension::cast(dimension)) {
    take(*turned);
    former.rotationRad = turned->rotation();
  } else if (const auto* straight = GcDbAlignedDimension::cast(dimension)) {
    take(*straight);
    const GcGeVector3d along = former.origins.second - former.origins.first;
    former.rotationRad = gc::atan2(along.y, along.x);
  }
  ignore(dimension->close());
  return former.origins.given;
}

bool findFormer(CommandInput& in, Former& former) {
  const std::vector<GcDbObjectId> all = entitiesOf(in.editor().currentSpace());
  for (auto id = all.rbegin(); id != all.rend(); ++id)
    if (takeFormer(in, *id, former)) return true;
  return false;
}

// Baseline: each measures from the first origin, DIMDLI farther out. Continued: each from where the last one ended.
Task<bool> further(CommandInput& in, bool fromBaseline) {
  Former former;
  bool known = findFormer(in, former);
  bool any = false;
  for (;;) {
    const Answer next = co_await in.ask(
        Ask(What::Point, "\nSpecify second extension line origin or [Undo/Select] <Select>: ").words("Undo Select"));
    if (next.isKeyword("Select") || (next.isNone() && !any) || !known) {
      const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect base dimension: "));
      if (picked.kind != Answer::Kind::Entity || !takeFormer(in, picked.entity, former)) co_return any;
      known = true;
      continue;
    }
    if (next.isKeyword("Undo")) continue;
    if (!next.isPoint()) co_return any;
    const GcGePoint3d start = fromBaseline ? former.origins.first : former.origins.second;
    GcGeVector3d across(-gc::sin(former.rotationRad), gc::cos(former.rotationRad), 0);
    if (fromBaseline) {
      if (across.dotProduct(former.line - former.origins.first) < 0) across = -across;
      former.line =
          former.line + across * (realVariable(in.editor(), "DIMDLI") * realVariable(in.editor(), "DIMSCALE"));
    }
    const GcGePoint3d at = next.point + across * (former.line - next.point).dotProduct(across);
    appendFromUser(in.editor(), new GcDbRotatedDimension(former.rotationRad, start, next.point, at));
    former = {{start, next.point, true}, at, former.rotationRad};
    any = true;
  }
}

Task<bool> baseline(CommandInput& in) { co_return co_await further(in, true); }
Task<bool> continued(CommandInput& in) { co_return co_await further(in, false); }

// ---- coordinates of a point

Task<bool> ordinate(CommandInput& in) {
  const Answer feature = co_await in.ask(Ask(What::Point, "\nSpecify feature location: ").needed());
  if (!feature.isPoint()) co_return false;
  bool given = false;
  bool ofX = false;
  Place place;
  for (;;) {
    const Answer end =
        co_await in.ask(Ask(What::Point, "\nSpecify leader endpoint or [Xdatum/Ydatum/Mtext/Text/Angle]: ")
                            .from(feature.point)
                            .words("Xdatum Ydatum Mtext Text Angle"));
    if (end.isKeyword("Xdatum") || end.isKeyword("Ydatum")) {
      given = true;
      ofX = end.isKeyword("Xdatum");
    } else if (end.isKeyword("Text") || end.isKeyword("Mtext")) {
      place.text = (co_await in.ask(Ask(What::Line, "\nEnter dimension text <>: "))).text;
    } else if (end.isPoint()) {
      // A leader that runs up or down tells of X.
      const GcGeVector3d run = end.point - feature.point;
      if (!given) ofX = std::fabs(run.y) > std::fabs(run.x);
      auto* made = new GcDbOrdinateDimension;
      fill(*made,
           {markerGroup(GC_T("AcDbDimension")), GcDbGroup::ofPoint(10, {}), GcDbGroup::ofPoint(11, end.point),
            GcDbGroup::ofInt(70, ofX ? 6 + 64 : 6), GcDbGroup::ofReal(42, ofX ? feature.point.x : feature.point.y),
            markerGroup(GC_T("AcDbOrdinateDimension")), GcDbGroup::ofPoint(13, feature.point),
            GcDbGroup::ofPoint(14, end.point)});
      add(in, made, place);
      co_return true;
    } else {
      co_return false;
    }
  }
}

// One dimension of a kind that is asked for.
Task<bool> dim1(CommandInput& in) {
  const Answer kind = co_await in.ask(
      Ask(What::Keyword, "\nDim: ").words("HORizontal VErtical ALigned ROtated RAdius Diameter ANgular").needed());
  if (kind.isKeyword("HORizontal")) co_return co_await linearAlong(in, true, 0);
  if (kind.isKeyword("VErtical")) co_return co_await linearAlong(in, true, kRightAngle);
  if (kind.isKeyword("ALigned")) co_return co_await aligned(in);
  if (kind.isKeyword("ROtated")) co_return co_await rotated(in);
  if (kind.isKeyword("RAdius")) co_return co_await radius(in);
  if (kind.isKeyword("Diameter")) co_return co_await diameter(in);
  co_return kind.isKeyword("ANgular") ? co_await angular(in) : false;
}

constexpr Command kCommands[] = {
    {"DIMLINEAR", "DLI", linear},
    {"DIMALIGNED", "DAL", aligned},
    {"DIMROTATED", "", rotated},
    {"DIMRADIUS", "DRA", radius},
    {"DIMDIAMETER", "DDI", diameter},
    {"DIMANGULAR", "DAN", angular},
    {"DIM1", "", dim1},
    {"DIMBASELINE", "DBA", baseline},
    {"DIMCONTINUE", "DCO", continued},
    {"DIMORDINATE", "DOR", ordinate},
};

}  // namespace

std::span<const Command> dimensionCommands() { return kCommands; }

}  // namespace ed
