#include "host/ed/selection.h"

#include <algorithm>

#include "db/line.h"
#include "host/ed/coordinates.h"
#include "host/ed/strokes.h"

namespace ed {

namespace {

struct Flat {
  double x, y;
};

double turn(Flat a, Flat b, Flat c) { return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x); }

bool between(Flat a, Flat b, Flat p) {
  return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
         p.y <= std::max(a.y, b.y);
}

// Segments that touch count as crossing.
bool cross(Flat a, Flat b, Flat c, Flat d) {
  const double abc = turn(a, b, c);
  const double abd = turn(a, b, d);
  const double cda = turn(c, d, a);
  const double cdb = turn(c, d, b);
  if (((abc > 0) != (abd > 0)) && ((cda > 0) != (cdb > 0)) && abc != 0 && abd != 0 && cda != 0 && cdb != 0) return true;
  return (abc == 0 && between(a, b, c)) || (abd == 0 && between(a, b, d)) || (cda == 0 && between(c, d, a)) ||
         (cdb == 0 && between(c, d, b));
}

bool inside(const std::vector<Flat>& corners, Flat p) {
  bool in = false;
  for (size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
    const Flat a = corners[i];
    const Flat b = corners[j];
    if (turn(a, b, p) == 0 && between(a, b, p)) return true;
    if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) in = !in;
  }
  return in;
}

// A region on the screen.
class Outline {
 public:
  Outline(Editor& editor, const Region& region) : m_toDisplay(displayToWorld(editor).inverse()) {
    const GcGeMatrix3d fromUser = m_toDisplay * ucsToWorld(editor);
    for (const GcGePoint3d& point : region.points) {
      const GcGePoint3d at = fromUser * point;
      m_corners.push_back({at.x, at.y});
    }
    const bool box = region.kind == Region::Kind::Window || region.kind == Region::Kind::Crossing;
    if (box && m_corners.size() == 2) {
      const Flat a = m_corners[0];
      const Flat b = m_corners[1];
      m_corners = {{a.x, a.y}, {b.x, a.y}, {b.x, b.y}, {a.x, b.y}};
    }
    m_closed = region.kind != Region::Kind::Fence;
    m_whole = region.kind == Region::Kind::Window || region.kind == Region::Kind::WindowPolygon;
  }

  [[nodiscard]] bool takes(const std::vector<Stroke>& strokes) const {
    if (strokes.empty() || m_corners.empty()) return false;
    for (const Stroke& stroke : strokes) {
      const bool in = m_whole ? holds(stroke) : touches(stroke);
      if (in != m_whole) return in;
    }
    return m_whole;
  }

 private:
  [[nodiscard]] std::vector<Flat> flatten(const Stroke& stroke) const {
    std::vector<Flat> points;
    for (const GcGePoint3d& point : stroke.points) {
      const GcGePoint3d at = m_toDisplay * point;
      points.push_back({at.x, at.y});
    }
    if (stroke.closed && points.size() > 2) points.push_back(points[0]);
    return points;
  }
  [[nodiscard]] bool crossesBorder(const std::vector<Flat>& points) const {
    const size_t sides = m_closed ? m_corners.size() : m_corners.size() - 1;
    for (size_t i = 1; i < points.size(); ++i)
      for (size_t side = 0; side < sides; ++side)
        if (cross(points[i - 1], points[i], m_corners[side], m_corners[(side + 1) % m_corners.size()])) return true;
    return false;
  }
  [[nodiscard]] bool touches(const Stroke& stroke) const {
    const std::vector<Flat> points = flatten(stroke);
    if (points.empty()) return false;
    if (m_closed && inside(m_corners, points[0])) return true;
    if (points.size() > 1 && crossesBorder(points)) return true;
    return stroke.filled && points.size() > 2 && inside(points, m_corners[0]);
  }
  // Inside all the way: for a border that bends inwards, ends alone do not tell.
  [[nodiscard]] bool holds(const Stroke& stroke) const {
    const std::vector<Flat> points = flatten(stroke);
    for (const Flat& point : points)
      if (!inside(m_corners, point)) return false;
    return m_corners.size() == 4 || !crossesBorder(points);
  }

  GcGeMatrix3d m_toDisplay;
  std::vector<Flat> m_corners;
  bool m_closed = true;
  bool m_whole = true;
};

// Calls f(id) for the living entities of a block, newest first.
template <class F>
void forEachEntity(GcDbObjectId block, const F& f) {
  GcDbBlockTableRecord* space = nullptr;
  if (gcdbOpenObject(space, block, GcDb::kForRead) != Gcad::eOk) return;
  const GcDbObjectIdArray& ids = space->entities();
  for (int i = ids.length(); i-- > 0;)
    if (ids[i].isValid() && !ids[i].isErased()) f(ids[i]);
  ignore(space->close());
}

GcDbObjectId layerOf(GcDbObjectId entity) {
  GcDbEntity* open = nullptr;
  if (gcdbOpenObject(open, entity, GcDb::kForRead) != Gcad::eOk) return {};
  const GcDbObjectId layer = open->layerId();
  ignore(open->close());
  return layer;
}

template <class Test>
bool layerIs(GcDbObjectId layerId, const Test& test) {
  GcDbLayerTableRecord* layer = nullptr;
  if (gcdbOpenObject(layer, layerId, GcDb::kForRead) != Gcad::eOk) return false;
  const bool result = test(*layer);
  ignore(layer->close());
  return result;
}

}  // namespace

bool isOnLockedLayer(GcDbObjectId entity) {
  return layerIs(layerOf(entity), [](const GcDbLayerTableRecord& layer) { return layer.isLocked(); });
}

bool isInSpace(GcDbObjectId entity, GcDbObjectId space) {
  GcDbEntity* open = nullptr;
  if (gcdbOpenObject(open, entity, GcDb::kForRead) != Gcad::eOk) return false;
  const bool in = open->ownerId() == space;
  ignore(open->close());
  return in;
}

std::vector<GcDbObjectId> visibleEntities(Editor& editor) {
  std::vector<GcDbObjectId> found;
  GcDbObjectId lastLayer;
  bool lastShown = false;
  forEachEntity(editor.currentSpace(), [&](GcDbObjectId id) {
    const GcDbObjectId layer = layerOf(id);
    if (layer != lastLayer || layer.isNull()) {
      lastLayer = layer;
      lastShown = layerIs(layer, [](const GcDbLayerTableRecord& l) { return !l.isFrozen() && !l.isOff(); });
    }
    if (lastShown) found.push_back(id);
  });
  return found;
}

std::vector<GcDbObjectId> wholeDrawing(Editor& editor) {
  std::vector<GcDbObjectId> found;
  GcDbBlockTable* blocks = nullptr;
  if (editor.database().getSymbolTable(blocks) != Gcad::eOk) return found;
  const GcDbObjectIdArray records = blocks->records();
  ignore(blocks->close());
  const auto isSpace = [](GcDbObjectId id) {
    GcDbBlockTableRecord* block = nullptr;
    if (gcdbOpenObject(block, id, GcDb::kForRead) != Gcad::eOk) return false;
    const bool space = block->isModelSpace() || block->isPaperSpace();
    ignore(block->close());
    return space;
  };
  for (const GcDbObjectId id : records)
    if (isSpace(id)) forEachEntity(id, [&](GcDbObjectId entity) { found.push_back(entity); });
  std::stable_sort(found.begin(), found.end(),
                   [](GcDbObjectId a, GcDbObjectId b) { return uint64_t{a.handle()} > uint64_t{b.handle()}; });
  return found;
}

std::vector<GcDbObjectId> entitiesIn(Editor& editor, const Region& region) {
  const Outline outline(editor, region);
  const double deviation = editor.view().height / 2000;
  std::vector<GcDbObjectId> found;
  for (const GcDbObjectId id : visibleEntities(editor)) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) continue;
    if (outline.takes(strokesOf(*entity, deviation))) found.push_back(id);
    ignore(entity->close());
  }
  return found;
}

SelectionOrigin originOf(Editor& editor, const Region& region) {
  using Kind = Region::Kind;
  using How = SelectionOrigin::How;
  const bool whole = region.kind == Kind::Window || region.kind == Kind::WindowPolygon;
  SelectionOrigin origin{region.kind == Kind::Fence ? How::Fence : whole ? How::Window : How::Crossing, {}};
  const GcGeMatrix3d toWorld = ucsToWorld(editor);
  const bool box = region.kind == Kind::Window || region.kind == Kind::Crossing;
  if (box && region.points.size() == 2) {
    const GcGeMatrix3d fromDisplay = displayToWorld(editor);
    const GcGePoint3d a = fromDisplay.inverse() * (toWorld * region.points[0]);
    const GcGePoint3d b = fromDisplay.inverse() * (toWorld * region.points[1]);
    for (const GcGePoint3d& corner : {a, GcGePoint3d(b.x, a.y, a.z), b, GcGePoint3d(a.x, b.y, b.z)})
      origin.points.push_back(fromDisplay * corner);
    return origin;
  }
  for (const GcGePoint3d& point : region.points) origin.points.push_back(toWorld * point);
  return origin;
}

SelectionOrigin originOfPick(Editor& editor, const GcGePoint3d& userPoint) {
  return {SelectionOrigin::How::Picked, {ucsToWorld(editor) * userPoint}};
}

namespace {

// Where a side of a fence crosses the entity as it is seen, when the two do not meet in space.
void appendSeenCrossings(Editor& editor, const GcGePoint3d& from, const GcGePoint3d& to,
                         const std::vector<Stroke>& strokes, std::vector<GcGePoint3d>& found) {
  const GcGeMatrix3d toDisplay = displayToWorld(editor).inverse();
  const auto flat = [&](const GcGePoint3d& point) {
    const GcGePoint3d at = toDisplay * point;
    return Flat{at.x, at.y};
  };
  const Flat a = flat(from);
  const Flat b = flat(to);
  for (const Stroke& stroke : strokes) {
    std::vector<GcGePoint3d> points = stroke.points;
    if (stroke.closed && points.size() > 2) points.push_back(points[0]);
    for (size_t i = 1; i < points.size(); ++i) {
      const Flat c = flat(points[i - 1]);
      const Flat d = flat(points[i]);
      const double before = turn(a, b, c);
      const double behind = turn(a, b, d);
      if (!cross(a, b, c, d) || before == behind) continue;
      found.push_back(points[i - 1] + (points[i] - points[i - 1]) * (before / (before - behind)));
    }
  }
}

}  // namespace

std::vector<GcGePoint3d> crossings(Editor& editor, const std::vector<GcGePoint3d>& fence, GcDbObjectId entityId) {
  std::vector<GcGePoint3d> found;
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, entityId, GcDb::kForRead) != Gcad::eOk) return found;
  for (size_t side = 1; side < fence.size(); ++side) {
    GcArray<GcGePoint3d> met;
    const GcDbLine line(fence[side - 1], fence[side]);
    ignore(line.intersectWith(entity, GcDb::kOnBothOperands, met));
    for (const GcGePoint3d& point : met) found.push_back(point);
    if (met.isEmpty())
      appendSeenCrossings(editor, fence[side - 1], fence[side], strokesOf(*entity, editor.view().height / 2000), found);
  }
  ignore(entity->close());
  return found;
}

GcDbObjectId lastEntity(Editor& editor) {
  GcDbBlockTableRecord* space = nullptr;
  GcDbObjectId found;
  if (gcdbOpenObject(space, editor.currentSpace(), GcDb::kForRead) != Gcad::eOk) return found;
  const GcDbObjectIdArray& ids = space->entities();
  for (int i = ids.length(); i-- > 0 && found.isNull();)
    if (ids[i].isValid() && !ids[i].isErased()) found = ids[i];
  ignore(space->close());
  return found;
}

}  // namespace ed
