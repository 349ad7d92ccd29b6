#include "host/ed/areas.h"

#include <algorithm>
#include <cmath>

#include "db/blockreference.h"
#include "db/curve.h"
#include "db/dimension.h"
#include "db/hatch.h"
#include "db/mtext.h"
#include "db/point.h"
#include "db/text.h"
#include "db/viewport.h"
#include "host/ed/coordinates.h"
#include "host/ed/selection.h"
#include "host/ed/strokes.h"
#include "host/gi/listener.h"
#include "host/gi/textline.h"

namespace ed {

namespace {

constexpr int kDeepest = 16;  // blocks within blocks
constexpr double kFar = 1e3;  // times what the drawing covers: how far endless lines are followed

struct Source {
  GcDbObjectId entity;
  bool isText = false;
};

// The texts of an entity as boxes around their letters.
class TextBoxes final : public GcGiListener {
 public:
  std::vector<std::vector<GcGePoint3d>> boxes;
  [[nodiscard]] double deviation() const override { return 0; }

 private:
  void text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction, const GCHAR* text,
            const GcGiTextStyle& style) override {
    constexpr double kRoom = 0.2;  // around the letters, of their height
    const double length = gcgiTextLength(view(text), style), room = kRoom * style.height;
    const GcGeVector3d along = direction.normal();
    const GcGeVector3d up = normal.normal().crossProduct(along);
    const GcGePoint3d low = position - along * room - up * room;
    const GcGeVector3d x = along * (length + 2 * room), y = up * (style.height + 2 * room);
    boxes.push_back({low, low + x, low + x + y, low + y});
    if (!isMoved()) return;
    for (GcGePoint3d& corner : boxes.back()) corner = transform() * corner;
  }
};

// The curves of entities, laid into one plane.
class Gatherer {
 public:
  Gatherer(Editor& editor, const GcGeVector3d& normal, const GcGePoint3d& onPlane)
      : m_normal(normal), m_onPlane(onPlane), m_deviation(editor.view().height / 5000) {
    const GcDbExtents all = editor.spaceExtents();
    m_far = kFar * (1 + (all.isEmpty() ? editor.view().height : (all.max - all.min).length()));
  }
  std::vector<GcGePath> paths;
  std::vector<Source> sources;

  void add(GcDbEntity& entity, GcDbObjectId owner, int depth) {
    if (GcDbHatch::cast(&entity) != nullptr || GcDbPoint::cast(&entity) != nullptr ||
        GcDbViewport::cast(&entity) != nullptr || entity.visibility() == GcDb::kInvisible)
      return;
    if (const auto* curve = GcDbCurve::cast(&entity)) {
      GcGePath path;
      if (curve->subPath(path) == Gcad::eOk && !path.isEmpty()) addPath(path, {owner, false});
      return;
    }
    if (GcDbText::cast(&entity) != nullptr || GcDbMText::cast(&entity) != nullptr) return addText(entity, owner);
    GcDbVoidPtrArray parts;
    if (depth < kDeepest && entity.explode(parts) == Gcad::eOk) {
      for (void* part : parts) {
        const std::unique_ptr<GcDbEntity> each(static_cast<GcDbEntity*>(part));
        add(*each, owner, depth + 1);
      }
      addAttributes(entity, owner);
      return;
    }
    for (const Stroke& stroke : strokesOf(entity, m_deviation)) addChain(stroke.points, stroke.closed, {owner, false});
  }

 private:
  void addAttributes(GcDbEntity& entity, GcDbObjectId owner) {
    const auto* reference = GcDbBlockReference::cast(&entity);
    if (reference == nullptr) return;
    GcDbObjectIdArray ids;
    reference->attributeIds(ids);
    for (const GcDbObjectId id : ids) {
      GcDbEntity* attribute = nullptr;
      if (gcdbOpenObject(attribute, id, GcDb::kForRead) != Gcad::eOk) continue;
      if (attribute->visibility() == GcDb::kVisible) addText(*attribute, owner);
      ignore(attribute->close());
    }
  }

  void addText(GcDbEntity& entity, GcDbObjectId owner) {
    TextBoxes found;
    entity.subWorldDraw(&found);
    for (const auto& box : found.boxes) addChain(box, true, {owner, true});
  }

  void addChain(const std::vector<GcGePoint3d>& points, bool closed, const Source& source) {
    if (points.size() < 2) return;
    GcGePath path(points[0]);
    const size_t count = closed && points.size() > 2 ? points.size() : points.size() - 1;
    for (size_t i = 0; i < count; ++i) {
      const GcGePoint3d& to = points[(i + 1) % points.size()];
      if (points[i].distanceTo(to) > 0) path.addLine(points[i], to, static_cast<double>(i), static_cast<double>(i + 1));
    }
    path.setClosed(closed);
    if (!path.isEmpty()) addPath(path, source);
  }

  void addPath(const GcGePath& given, const Source& source) {
    if (!given.isBounded()) return addEndless(given, source);
    if (!given.isFinite() || !(given.length() > 0)) return;
    const GcGePath flat = given.flattened(m_normal);
    // flattened() lays the path into the plane through its own origin.
    GcGeMatrix3d lift;
    lift.setToTranslation(m_normal * m_normal.dotProduct(m_onPlane - flat.origin()));
    GcGePath path = flat.transformed(lift);
    if (!(path.length() > 0)) return;
    path.setClosed(given.isClosed(), given.isPeriodic());
    paths.push_back(std::move(path));
    sources.push_back(source);
  }

  // Construction lines and rays, as far as they can matter.
  void addEndless(const GcGePath& given, const Source& source) {
    const GcGeSpan& span = given.spans().front();
    const GcGePoint3d base = given.origin() + span.a;
    const double from = std::isfinite(span.u0) ? span.u0 : -m_far, to = std::isfinite(span.u1) ? span.u1 : m_far;
    addChain({base + span.b * from, base + span.b * to}, false, source);
  }

  GcGeVector3d m_normal;
  GcGePoint3d m_onPlane;
  double m_deviation, m_far = 0;
};

GcGePoint3d somePointOf(const GcGePath& path) {
  const GcGeSpan& span = path.spans().front();
  return path.origin() + path.pointOn(0, (span.u0 + span.u1) / 2);
}

// Sets of loops that hang together.
class Groups {
 public:
  explicit Groups(size_t count) : m_parent(count) {
    for (size_t i = 0; i < count; ++i) m_parent[i] = i;
  }
  size_t of(size_t i) {
    while (m_parent[i] != i) i = m_parent[i] = m_parent[m_parent[i]];
    return i;
  }
  void join(size_t a, size_t b) { m_parent[of(a)] = of(b); }

 private:
  std::vector<size_t> m_parent;
};

}  // namespace

struct AreaFinder::Plan {
  struct Ring {
    AreaLoop loop;
    double area = 0;  // below 0: around a group of curves, from outside
    size_t group = 0;
  };
  GcGePoint3d onPlane;
  std::vector<Ring> rings;
};

AreaFinder::AreaFinder(Editor& editor, const std::vector<GcDbObjectId>& among, double elevation)
    : m_editor(editor), m_plan(std::make_unique<Plan>()) {
  const GcGeMatrix3d user = ucsToWorld(editor);
  m_normal = user.column(2).normal();
  m_plan->onPlane = user * GcGePoint3d(0, 0, elevation);
  Gatherer gatherer(editor, m_normal, m_plan->onPlane);
  for (const GcDbObjectId id : among.empty() ? visibleEntities(editor) : among) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) continue;
    gatherer.add(*entity, id, 0);
    ignore(entity->close());
  }
  const GcGeArrangement arrangement(gatherer.paths, m_normal);
  const std::vector<GcGeArrangement::Loop> loops = arrangement.areas();
  Groups groups(loops.size());
  std::vector<size_t> loopOf(2 * arrangement.edges().size(), loops.size());
  for (size_t i = 0; i < loops.size(); ++i)
    for (const int half : loops[i]) loopOf[static_cast<size_t>(half)] = i;
  for (size_t e = 0; e < arrangement.edges().size(); ++e)
    if (loopOf[2 * e] < loops.size() && loopOf[2 * e + 1] < loops.size()) groups.join(loopOf[2 * e], loopOf[2 * e + 1]);
  for (size_t i = 0; i < loops.size(); ++i) {
    Plan::Ring ring;
    ring.loop.path = arrangement.pathOf(loops[i]);
    ring.area = ring.loop.path.vectorArea().dotProduct(m_normal);
    ring.group = groups.of(i);
    ring.loop.isAroundText = true;
    for (const int half : loops[i]) {
      const size_t curve = static_cast<size_t>(arrangement.edges()[static_cast<size_t>(half / 2)].owners.front().curve);
      const Source& source = gatherer.sources[curve];
      if (!ring.loop.sources.contains(source.entity)) ring.loop.sources.append(source.entity);
      ring.loop.isAroundText = ring.loop.isAroundText && source.isText;
    }
    m_plan->rings.push_back(std::move(ring));
  }
}

AreaFinder::~AreaFinder() = default;

bool AreaFinder::areaAt(const GcGePoint3d& user, Area& area) const {
  GcGePoint3d at = ucsToWorld(m_editor) * user;
  at = at - m_normal * m_normal.dotProduct(at - m_plan->onPlane);
  const auto& rings = m_plan->rings;
  const Plan::Ring* outer = nullptr;
  for (const Plan::Ring& ring : rings)
    if (ring.area > 0 && (outer == nullptr || ring.area < outer->area) && gcgeEncloses(ring.loop.path, m_normal, at))
      outer = &ring;
  if (outer == nullptr) return false;
  area = {};
  area.outer = outer->loop;
  std::vector<const Plan::Ring*> within;
  for (const Plan::Ring& ring : rings)
    if (ring.area < 0 && ring.group != outer->group &&
        gcgeEncloses(outer->loop.path, m_normal, somePointOf(ring.loop.path)))
      within.push_back(&ring);
  for (const Plan::Ring* ring : within) {
    const bool isNested = std::any_of(within.begin(), within.end(), [&](const Plan::Ring* other) {
      return other != ring && gcgeEncloses(other->loop.path, m_normal, somePointOf(ring->loop.path));
    });
    AreaLoop island = ring->loop;
    island.path = island.path.reversed();
    (isNested ? area.nested : area.islands).push_back(std::move(island));
  }
  return true;
}

namespace {

struct Open {
  GcDbObjectId id;
  GcGePoint3d start, end;
  bool used = false;
};

bool meet(const GcGePoint3d& a, const GcGePoint3d& b, double size) { return a.distanceTo(b) <= 1e-8 * size; }

double sizeOf(const GcGePoint3d& p) { return 1 + std::max({std::fabs(p.x), std::fabs(p.y), std::fabs(p.z)}); }

}  // namespace

std::vector<GcDbObjectIdArray> closedChains(const std::vector<GcDbObjectId>& curves) {
  std::vector<GcDbObjectIdArray> chains;
  std::vector<Open> open;
  for (const GcDbObjectId id : curves) {
    GcDbCurve* curve = nullptr;
    if (gcdbOpenObject(curve, id, GcDb::kForRead) != Gcad::eOk) continue;
    Open each{id, {}, {}, false};
    if (curve->isClosed())
      chains.push_back({}), chains.back().append(id);
    else if (curve->getStartPoint(each.start) == Gcad::eOk && curve->getEndPoint(each.end) == Gcad::eOk)
      open.push_back(each);
    ignore(curve->close());
  }
  for (Open& first : open) {
    if (first.used) continue;
    first.used = true;
    GcDbObjectIdArray chain;
    chain.append(first.id);
    std::vector<Open*> links{&first};
    GcGePoint3d end = first.end;
    for (bool grows = true; grows && !meet(end, first.start, sizeOf(end));) {
      grows = false;
      for (Open& next : open) {
        if (next.used || !(meet(end, next.start, sizeOf(end)) || meet(end, next.end, sizeOf(end)))) continue;
        end = meet(end, next.start, sizeOf(end)) ? next.end : next.start;
        next.used = grows = true;
        chain.append(next.id);
        links.push_back(&next);
        break;
      }
    }
    if (meet(end, first.start, sizeOf(end)) && chain.length() > 1)
      chains.push_back(chain);
    else
      for (size_t i = 1; i < links.size(); ++i) links[i]->used = false;
  }
  return chains;
}

}  // namespace ed
