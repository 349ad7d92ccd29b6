// SPLINE, 3DFACE; what lies doubly over each other taken away (-OVERKILL); LIST; OOPS.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <unordered_map>

#include "db/curve.h"
#include "db/face.h"
#include "db/line.h"
#include "db/spline.h"
#include "host/db/entlist/entitylist.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/records.h"
#include "host/ge/curves/nurbs.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

// ---- SPLINE

struct SplinePoints {
  std::vector<GcGePoint3d> points;  // user coordinates
  GcGeVector3d startTangent, endTangent;
  bool closed = false;
};

Task<GcGeVector3d> askTangent(CommandInput& in, const char* prompt, const GcGePoint3d& from) {
  const Answer answer = co_await in.ask(Ask(What::Point, prompt).from(from));
  co_return answer.isPoint() ? answer.point - from : GcGeVector3d();
}

Task<bool> askSplinePoints(CommandInput& in, SplinePoints& made) {
  for (;;) {
    const Answer next =
        co_await in.ask(Ask(What::Point, "\nEnter next point or [start Tangency/end Tangency/toLerance/Undo/Close]: ")
                            .from(made.points.back())
                            .words("start Tangency end toLerance Undo Close"));
    if (next.isPoint()) {
      made.points.push_back(next.point);
    } else if (next.isKeyword("Undo") && made.points.size() > 1) {
      made.points.pop_back();
    } else if (next.isKeyword("Tangency") || next.isKeyword("start") || next.isKeyword("end")) {
      // Before the second point the tangent of the start is meant, later that of the end, which also ends the spline.
      if (made.points.size() == 1) {
        made.startTangent = co_await askTangent(in, "\nSpecify start tangent: ", made.points.front());
      } else {
        made.endTangent = co_await askTangent(in, "\nSpecify end tangent: ", made.points.back());
        co_return true;
      }
    } else if (next.isKeyword("toLerance")) {
      static_cast<void>(co_await in.ask(Ask(What::Distance, "\nSpecify fit tolerance <0>: ")));
    } else {
      made.closed = next.isKeyword("Close");
      co_return made.points.size() >= 2;
    }
  }
}

bool addSpline(CommandInput& in, const SplinePoints& wanted) {
  const GcGeMatrix3d user = ucsToWorld(in.editor());
  std::vector<GcGePoint3d> points;
  for (const GcGePoint3d& point : wanted.points) points.push_back(user * point);
  const GcGeVector3d start = user * wanted.startTangent;
  const GcGeVector3d end = user * wanted.endTangent;
  GcGeNurbs nurbs;
  if (!gcgeInterpolate(points, start, end, wanted.closed, nurbs)) return false;
  GcArray<GcGePoint3d> control, fit;
  GcArray<double> knots, weights;
  for (const GcGePoint3d& point : nurbs.points) control.append(point);
  for (const double knot : nurbs.knots) knots.append(knot);
  for (const GcGePoint3d& point : points) fit.append(point);
  if (wanted.closed) fit.append(points.front());
  auto* made = new GcDbSpline;
  if (made->setNurbsData(nurbs.degree, false, wanted.closed, false, control, knots, weights) != Gcad::eOk ||
      made->setFitData(fit, start, end) != Gcad::eOk) {
    delete made;
    return false;
  }
  return !appendWithDefaults(in.editor(), made).isNull();
}

// Control points instead: a clamped curve of the third degree with even knots.
bool addControlled(CommandInput& in, const std::vector<GcGePoint3d>& points) {
  const int count = static_cast<int>(points.size());
  const int degree = std::min(3, count - 1);
  GcArray<GcGePoint3d> control;
  GcArray<double> knots, weights;
  for (const GcGePoint3d& point : points) control.append(in.toWorld(point));
  for (int i = 0; i < count + degree + 1; ++i) knots.append(std::clamp(i - degree, 0, count - degree));
  auto* made = new GcDbSpline;
  if (made->setNurbsData(degree, false, false, false, control, knots, weights) == Gcad::eOk)
    return !appendWithDefaults(in.editor(), made).isNull();
  delete made;
  return false;
}

Task<bool> spline(CommandInput& in) {
  bool byControl = false;
  Answer first;
  for (;;) {
    first = co_await in.ask(
        Ask(What::Point, "\nSpecify first point or [Method/Knots/Degree]: ").words("Method Knots Degree").needed());
    if (first.isKeyword("Method")) {
      const Answer method =
          co_await in.ask(Ask(What::Keyword, "\nEnter spline creation method [Fit/CV] <Fit>: ").words("Fit CV"));
      byControl = method.isKeyword("CV");
    } else if (first.kind == Answer::Kind::Keyword) {
      static_cast<void>(co_await in.ask(Ask(What::Word, "\nEnter new value: ")));
    } else {
      break;
    }
  }
  if (!first.isPoint()) co_return false;
  SplinePoints made;
  made.points.push_back(first.point);
  if (!co_await askSplinePoints(in, made)) co_return false;
  if (byControl && made.closed) made.points.push_back(made.points.front());
  const bool good = byControl ? addControlled(in, made.points) : addSpline(in, made);
  if (!good) in.tell("\nA spline needs two different points.\n");
  co_return good;
}

// ---- 3DFACE: further faces share the last edge

Task<bool> face(CommandInput& in) {
  constexpr const char* kPrompts[] = {
      "\nSpecify first point or [Invisible]: ", "\nSpecify second point or [Invisible]: ",
      "\nSpecify third point or [Invisible] <exit>: ",
      "\nSpecify fourth point or [Invisible] <create three-sided face>: "};
  std::vector<GcGePoint3d> corners;
  bool any = false;
  for (;;) {
    const Answer corner = co_await in.ask(Ask(What::Point, kPrompts[corners.size()]).words("Invisible"));
    if (corner.isKeyword("Invisible")) continue;
    if (corner.isPoint()) corners.push_back(in.toWorld(corner.point));
    if (!corner.isPoint() && corners.size() < 3) co_return any;
    if (corner.isPoint() && corners.size() < 4) continue;
    if (corners.size() == 3) corners.push_back(corners[2]);
    any =
        !appendWithDefaults(in.editor(), new GcDbFace(corners[0], corners[1], corners[2], corners[3])).isNull() || any;
    corners = {corners[2], corners[3]};
  }
}

// ---- -OVERKILL

// What makes two entities the same: their lists without name, handle and owner.
class Likeness final : public GcDbGroupSink {
 public:
  explicit Likeness(double tolerance) : m_grid(tolerance) {}
  void put(const GcDbGroup& group) override {
    if (group.code == -1 || group.code == 5 || (group.code == 330 && m_text.empty())) return;
    char part[160];
    std::snprintf(part, sizeof part, "%d:%.0f:%.0f,%.0f,%.0f:%lld|", group.code, rounded(group.real),
                  rounded(group.point.x), rounded(group.point.y), rounded(group.point.z),
                  static_cast<long long>(group.integer));
    m_text += part + gc::toUtf8(group.text);
  }
  [[nodiscard]] const std::string& text() const { return m_text; }

 private:
  [[nodiscard]] double rounded(double value) const { return std::round(value / m_grid); }
  double m_grid;
  std::string m_text;
};

// A line by the endless line it lies on: its direction, made to point one way, and the foot of the origin on it.
struct Strip {
  GcDbObjectId id;
  std::string look;  // only lines that look alike are put together
  GcGeVector3d along;
  GcGePoint3d foot;
  double from = 0, to = 0;  // along the direction
};

std::string lookOf(const GcDbEntity& entity) {
  char look[96];
  std::snprintf(look, sizeof look, "%p %p %d %d", static_cast<void*>(entity.layerId().stub()),
                static_cast<void*>(entity.linetypeId().stub()), entity.colorIndex(),
                static_cast<int>(entity.lineWeight()));
  return look;
}

bool stripOf(GcDbObjectId id, double tolerance, Strip& strip) {
  GcDbLine* line = nullptr;
  if (id.isErased() || gcdbOpenObject(line, id, GcDb::kForRead) != Gcad::eOk) return false;
  const GcGePoint3d start = line->startPoint();
  const GcGeVector3d along = line->endPoint() - start;
  strip.id = id;
  strip.look = lookOf(*line);
  ignore(line->close());
  const double length = along.length();
  if (length <= tolerance) return false;
  const bool backwards = along.x < 0 || (along.x == 0 && (along.y < 0 || (along.y == 0 && along.z < 0)));
  strip.along = along * ((backwards ? -1 : 1) / length);
  const double at = strip.along.dotProduct(start.asVector());
  strip.from = backwards ? at - length : at;
  strip.to = strip.from + length;
  strip.foot = start - strip.along * at;
  return true;
}

// Neighbours in this order lie on one endless line, one behind the other.
class StripOrder {
 public:
  explicit StripOrder(double tolerance) : m_grid(10 * tolerance) {}
  bool operator()(const Strip& a, const Strip& b) const {
    const auto left = key(a), right = key(b);
    return a.look != b.look ? a.look < b.look : left != right ? left < right : a.from < b.from;
  }

 private:
  [[nodiscard]] std::array<double, 6> key(const Strip& s) const {
    constexpr double kTurn = 1e-8;
    return {std::round(s.along.x / kTurn), std::round(s.along.y / kTurn), std::round(s.along.z / kTurn),
            std::round(s.foot.x / m_grid), std::round(s.foot.y / m_grid), std::round(s.foot.z / m_grid)};
  }
  double m_grid;
};

bool onOneLine(const Strip& a, const Strip& b, double tolerance) {
  const double reach = std::max(std::fabs(b.from), std::fabs(b.to));
  return a.look == b.look && (a.foot - b.foot).length() <= tolerance &&
         (a.along - b.along).length() * reach <= tolerance;
}

void stretchTo(const Strip& strip) {
  forEach<GcDbLine>({strip.id}, [&](GcDbLine& line) {
    ignore(line.setStartPoint(strip.foot + strip.along * strip.from));
    ignore(line.setEndPoint(strip.foot + strip.along * strip.to));
  });
}

// Lines on one line that touch or overlap become one.
int mergeLines(const Ids& ids, double tolerance) {
  std::vector<Strip> strips;
  for (const GcDbObjectId id : ids)
    if (Strip strip; stripOf(id, tolerance, strip)) strips.push_back(std::move(strip));
  std::sort(strips.begin(), strips.end(), StripOrder(tolerance));
  int gone = 0;
  for (size_t i = 0; i < strips.size();) {
    Strip whole = strips[i];
    size_t next = i + 1;
    for (; next < strips.size(); ++next) {
      if (!onOneLine(whole, strips[next], tolerance) || strips[next].from > whole.to + tolerance) break;
      whole.to = std::max(whole.to, strips[next].to);
      eraseEntity(strips[next].id);
      ++gone;
    }
    if (next > i + 1) stretchTo(whole);
    i = next;
  }
  return gone;
}

Task<bool> overkill(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  if (ids.empty()) co_return false;
  double tolerance = 1e-6;
  bool merges = true;
  for (;;) {
    const Answer option = co_await in.ask(
        Ask(What::Keyword,
            "\nEnter an option [Done/Ignore/tOlerance/optimize Plines/combine parallel/combine coendS/Associativity] "
            "<Done>: ")
            .words("Done Ignore tOlerance Plines parallel coendS Associativity"));
    if (option.kind != Answer::Kind::Keyword || option.isKeyword("Done")) break;
    if (option.isKeyword("tOlerance")) {
      const Answer value = co_await in.ask(Ask(What::Distance, "\nSpecify tolerance <0.000001>: ").positive());
      if (value.kind == Answer::Kind::Number) tolerance = value.number;
    } else {
      const Answer value = co_await in.ask(Ask(What::Word, "\nEnter new value: "));
      const bool no = !value.text.empty() && gcUpper(value.text[value.text[0] == GC_T('_') ? 1 : 0]) == GC_T('N');
      if (option.isKeyword("parallel")) merges = !no;
    }
  }
  int gone = 0;
  std::unordered_map<std::string, GcDbObjectId> seen;
  for (const GcDbObjectId id : ids) {
    Likeness likeness(tolerance);
    if (!gcdbEntityList(id, nullptr, likeness) || seen.emplace(likeness.text(), id).second) continue;
    eraseEntity(id);
    ++gone;
  }
  const int merged = merges ? mergeLines(ids, tolerance) : 0;
  in.tell(("\n" + std::to_string(gone) + " duplicate(s) deleted\n" + std::to_string(merged) +
           " overlapping object(s) or segment(s) deleted\n")
              .c_str());
  co_return true;
}

// ---- LIST

void tellMeasure(CommandInput& in, GcDbObjectId id) {
  GcDbCurve* curve = nullptr;
  if (gcdbOpenObject(curve, id, GcDb::kForRead) != Gcad::eOk) return;
  double end = 0, length = 0, area = 0;
  char text[96];
  if (curve->getEndParam(end) == Gcad::eOk && curve->getDistAtParam(end, length) == Gcad::eOk) {
    std::snprintf(text, sizeof text, "\n  length %.4f", length);
    in.tell(text);
  }
  if (curve->isClosed() && curve->getArea(area) == Gcad::eOk) {
    std::snprintf(text, sizeof text, "\n  area %.4f", area);
    in.tell(text);
  }
  ignore(curve->close());
}

Task<bool> listObjects(CommandInput& in) {
  const Ids ids = co_await selectObjects(in);
  for (const GcDbObjectId id : ids) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) continue;
    const std::string name = gc::toUtf8(gcdbDxfNameOf(*entity));
    const std::string layer = gc::toUtf8(nameOfRecord(entity->layerId()));
    GcDbExtents box;
    const bool bounded = entity->getGeomExtents(box) == Gcad::eOk;
    ignore(entity->close());
    char text[256];
    std::snprintf(text, sizeof text, "\n%s  layer \"%s\"  handle %llX", name.c_str(), layer.c_str(),
                  static_cast<unsigned long long>(static_cast<uint64_t>(id.handle())));
    in.tell(text);
    tellMeasure(in, id);
    if (!bounded) continue;
    std::snprintf(text, sizeof text, "\n  from %.4f,%.4f,%.4f to %.4f,%.4f,%.4f", box.min.x, box.min.y, box.min.z,
                  box.max.x, box.max.y, box.max.z);
    in.tell(text);
  }
  in.tell("\n");
  co_return !ids.empty();
}

// ---- OOPS: what ERASE took last comes back

Task<bool> oops(CommandInput& in) {
  bool any = false;
  for (const GcDbObjectId id : in.editor().lastErased) {
    GcDbObject* object = nullptr;
    if (gcdbOpenGcDbObject(object, id, GcDb::kForWrite, true) != Gcad::eOk) continue;
    any = (object->isErased() && object->erase(false) == Gcad::eOk) || any;
    ignore(object->close());
  }
  in.editor().lastErased.clear();
  co_return any;
}

constexpr Command kCommands[] = {
    {"SPLINE", "SPL", spline},      {"3DFACE", "3F", face}, {"-OVERKILL", "OVERKILL", overkill},
    {"LIST", "LI LS", listObjects}, {"OOPS", "", oops},
};

}  // namespace

std::span<const Command> furtherCurveCommands() { return kCommands; }

}  // namespace ed
