#include "host/ed/snap.h"

#include <cmath>
#include <memory>
#include <numbers>

#include "db/arc.h"
#include "db/blockreference.h"
#include "db/circle.h"
#include "db/ellipse.h"
#include "db/mtext.h"
#include "db/point.h"
#include "db/polyline.h"
#include "db/text.h"
#include "host/ed/command/families.h"
#include "host/ed/coordinates.h"
#include "host/ed/pick.h"

namespace ed {

namespace {

enum Mode : unsigned {
  kEnd = 1 << 0,
  kMid = 1 << 1,
  kCenter = 1 << 2,
  kNode = 1 << 3,
  kQuadrant = 1 << 4,
  kIntersection = 1 << 5,
  kInsertion = 1 << 6,
  kPerpendicular = 1 << 7,
  kTangent = 1 << 8,
  kNearest = 1 << 9
};

struct ModeName {
  GcView name;
  unsigned bit;
};
constexpr ModeName kModes[] = {
    {GC_T("END"), kEnd},          {GC_T("MID"), kMid},       {GC_T("CEN"), kCenter},
    {GC_T("NOD"), kNode},         {GC_T("QUA"), kQuadrant},  {GC_T("INT"), kIntersection},
    {GC_T("APP"), kIntersection}, {GC_T("INS"), kInsertion}, {GC_T("PER"), kPerpendicular},
    {GC_T("TAN"), kTangent},      {GC_T("NEA"), kNearest},
};

unsigned modesOf(GcView text) {
  unsigned bits = 0;
  while (!text.empty()) {
    const size_t end = std::min(text.find(GC_T(',')), text.size());
    GcText word = upperText(text.substr(0, end));
    word.erase(0, std::min(word.find_first_not_of(GC_T("_ ")), word.size()));
    for (const ModeName& mode : kModes)
      if (word.substr(0, 3) == mode.name) bits |= mode.bit;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return bits;
}

class Search {
 public:
  Search(Editor& editor, unsigned modes, const GcGePoint3d& at)
      : m_modes(modes), m_at(at), m_from(ucsToWorld(editor) * lastPoint(editor)) {}

  void look(const GcDbEntity& entity, int depth = 0);
  void lookAtPair(const GcDbEntity& a, const GcDbEntity& b) {
    GcArray<GcGePoint3d> points;
    if (has(kIntersection) && a.intersectWith(&b, GcDb::kOnBothOperands, points) == Gcad::eOk)
      for (const GcGePoint3d& point : points) offer(point);
  }
  [[nodiscard]] bool found(GcGePoint3d& point) const {
    if (m_best < 0 && !m_hasNearest) return false;
    point = m_best < 0 ? m_nearest : m_point;
    return true;
  }

 private:
  [[nodiscard]] bool has(unsigned mode) const { return (m_modes & mode) != 0; }
  void offer(const GcGePoint3d& point) {
    const double distance = m_at.distanceTo(point);
    if (m_best >= 0 && distance >= m_best) return;
    m_best = distance;
    m_point = point;
  }
  void offerAt(const GcDbCurve& curve, double param) {
    GcGePoint3d point;
    if (curve.getPointAtParam(param, point) == Gcad::eOk) offer(point);
  }
  void lookAtCurve(const GcDbCurve& curve);
  void lookAtSegments(const GcDbPolyline& line);
  void lookAtRound(const GcDbCurve& curve, const GcGePoint3d& center, double from, double to);
  void lookAtTangents(const GcDbCurve& curve, const GcGePoint3d& center, double radius);

  unsigned m_modes;
  GcGePoint3d m_at;
  GcGePoint3d m_from;
  GcGePoint3d m_point;
  double m_best = -1;
  GcGePoint3d m_nearest;
  bool m_hasNearest = false;
};

// Center, and quadrants within the parameters.
void Search::lookAtRound(const GcDbCurve& curve, const GcGePoint3d& center, double from, double to) {
  if (has(kCenter)) offer(center);
  if (!has(kQuadrant)) return;
  constexpr double kQuarter = std::numbers::pi / 2;
  for (int i = 0; i < 8; ++i)
    if (const double angle = i * kQuarter; angle >= from && angle <= to) offerAt(curve, angle);
}

// Where lines from LASTPOINT touch a circle of the curve's plane.
void Search::lookAtTangents(const GcDbCurve& curve, const GcGePoint3d& center, double radius) {
  const GcGeVector3d away = m_from - center;
  const double distance = away.length();
  if (!has(kTangent) || distance <= radius) return;
  const GcGeVector3d x = away / distance;
  const GcGeVector3d y = curve.normal().crossProduct(x);
  const double c = radius / distance;
  for (const double s : {std::sqrt(1 - c * c), -std::sqrt(1 - c * c)}) {
    const GcGePoint3d point = center + x * (radius * c) + y * (radius * s);
    double param = 0;
    if (curve.getParamAtPoint(point, param) == Gcad::eOk) offer(point);
  }
}

void Search::lookAtSegments(const GcDbPolyline& line) {
  double end = 0;
  if (line.getEndParam(end) != Gcad::eOk) return;
  for (int i = 0; i < static_cast<int>(std::lround(end)); ++i) {
    if (has(kEnd)) offerAt(line, i);
    if (has(kMid)) offerAt(line, i + 0.5);
    double bulge = 0;
    GcGePoint3d a, b;
    if (!has(kCenter) || line.getBulgeAt(static_cast<unsigned>(i), bulge) != Gcad::eOk || bulge == 0) continue;
    if (line.getPointAtParam(i, a) != Gcad::eOk || line.getPointAtParam(i + 1, b) != Gcad::eOk) continue;
    const GcGeVector3d chord = b - a;
    const GcGeVector3d left = line.normal().crossProduct(chord);
    offer(a + chord * 0.5 + left * ((1 - bulge * bulge) / (4 * bulge)));
  }
}

void Search::lookAtCurve(const GcDbCurve& curve) {
  GcGePoint3d point;
  double from = 0, to = 0, length = 0;
  const bool bounded = curve.getStartParam(from) == Gcad::eOk && curve.getEndParam(to) == Gcad::eOk;
  if (has(kEnd) && !curve.isPeriodic()) {
    if (curve.getStartPoint(point) == Gcad::eOk) offer(point);
    if (curve.getEndPoint(point) == Gcad::eOk) offer(point);
  }
  if (const auto* line = GcDbPolyline::cast(&curve))
    lookAtSegments(*line);
  else if (has(kMid) && bounded && !curve.isClosed() && curve.getDistAtParam(to, length) == Gcad::eOk &&
           curve.getPointAtDist(length / 2, point) == Gcad::eOk)
    offer(point);
  if (const auto* circle = GcDbCircle::cast(&curve)) {
    lookAtRound(curve, circle->center(), from, to);
    lookAtTangents(curve, circle->center(), circle->radius());
  } else if (const auto* arc = GcDbArc::cast(&curve)) {
    lookAtRound(curve, arc->center(), from, to);
    lookAtTangents(curve, arc->center(), arc->radius());
  } else if (const auto* ellipse = GcDbEllipse::cast(&curve)) {
    lookAtRound(curve, ellipse->center(), from, to);
  }
  if (has(kPerpendicular) && curve.getClosestPointTo(m_from, point, true) == Gcad::eOk) offer(point);
  if (has(kNearest) && curve.getClosestPointTo(m_at, point) == Gcad::eOk &&
      (!m_hasNearest || m_at.distanceTo(point) < m_at.distanceTo(m_nearest))) {
    m_nearest = point;
    m_hasNearest = true;
  }
}

void Search::look(const GcDbEntity& entity, int depth) {
  constexpr int kMaxDepth = 4;
  if (const auto* curve = GcDbCurve::cast(&entity)) {
    lookAtCurve(*curve);
  } else if (const auto* point = GcDbPoint::cast(&entity)) {
    if (has(kNode)) offer(point->position());
  } else if (const auto* text = GcDbText::cast(&entity)) {
    if (has(kInsertion)) offer(text->isDefaultAlignment() ? text->position() : text->alignmentPoint());
  } else if (const auto* paragraph = GcDbMText::cast(&entity)) {
    if (has(kInsertion)) offer(paragraph->location());
  } else {
    const auto* reference = GcDbBlockReference::cast(&entity);
    if (reference != nullptr && has(kInsertion)) offer(reference->position());
    GcDbVoidPtrArray parts;
    if (depth >= kMaxDepth || entity.explode(parts) != Gcad::eOk) return;
    for (void* part : parts) {
      const std::unique_ptr<GcDbEntity> owned(static_cast<GcDbEntity*>(part));
      look(*owned, depth + 1);
    }
  }
}

}  // namespace

bool snapPoint(Editor& editor, const GcGePoint3d& user, GcView modes, GcGePoint3d& snapped) {
  const GcGeMatrix3d toWorld = ucsToWorld(editor);
  Search search(editor, modesOf(modes), toWorld * user);
  std::vector<GcDbEntity*> near;
  for (const GcDbObjectId id : entitiesAt(editor, user, integerVariable(editor, "APERTURE"))) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) == Gcad::eOk) near.push_back(entity);
  }
  for (size_t i = 0; i < near.size(); ++i) {
    search.look(*near[i]);
    for (size_t j = i + 1; j < near.size(); ++j) search.lookAtPair(*near[i], *near[j]);
  }
  for (GcDbEntity* entity : near) ignore(entity->close());
  if (!search.found(snapped)) return false;
  snapped = toWorld.inverse() * snapped;
  return true;
}

}  // namespace ed
