#include "host/ed/pick.h"

#include <algorithm>
#include <cmath>

#include "db/attribute.h"
#include "db/blockreference.h"
#include "host/ed/coordinates.h"
#include "host/ed/strokes.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

struct Flat {
  double x, y;
};

Flat flat(const GcGeMatrix3d& toDisplay, const GcGePoint3d& world) {
  const GcGePoint3d at = toDisplay * world;
  return {at.x, at.y};
}

// Distance from a point to a segment; the point itself is the origin.
double distanceTo(Flat a, Flat b) {
  const double dx = b.x - a.x;
  const double dy = b.y - a.y;
  const double square = dx * dx + dy * dy;
  const double t = square == 0 ? 0 : std::clamp(-(a.x * dx + a.y * dy) / square, 0.0, 1.0);
  return gc::hypot(a.x + t * dx, a.y + t * dy);
}

bool contains(const std::vector<Flat>& corners) {
  bool inside = false;
  for (size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
    const Flat a = corners[i];
    const Flat b = corners[j];
    if ((a.y > 0) != (b.y > 0) && 0 < (b.x - a.x) * -a.y / (b.y - a.y) + a.x) inside = !inside;
  }
  return inside;
}

bool passes(const Stroke& stroke, const GcGeMatrix3d& toDisplay, Flat at, double reach) {
  std::vector<Flat> points;
  for (const GcGePoint3d& point : stroke.points) {
    const Flat f = flat(toDisplay, point);
    points.push_back({f.x - at.x, f.y - at.y});
  }
  if (points.size() == 1) return gc::hypot(points[0].x, points[0].y) <= reach;
  for (size_t i = 1; i < points.size(); ++i)
    if (distanceTo(points[i - 1], points[i]) <= reach) return true;
  if (points.size() < 3) return false;
  if (stroke.closed && distanceTo(points.back(), points[0]) <= reach) return true;
  return stroke.filled && contains(points);
}

// Entities within the reach, newest first, until `most` are found.
std::vector<GcDbObjectId> find(Editor& editor, const GcGePoint3d& user, int pixels, size_t most) {
  std::vector<GcDbObjectId> found;
  const GcGeMatrix3d toDisplay = displayToWorld(editor).inverse();
  const Flat at = flat(toDisplay, ucsToWorld(editor) * user);
  const double pixel = editor.view().height / editor.view().pixels;
  const double reach = std::max(pixels, 1) * pixel;
  GcDbBlockTableRecord* space = nullptr;
  if (gcdbOpenObject(space, editor.currentSpace(), GcDb::kForRead) != Gcad::eOk) return found;
  const GcDbObjectIdArray& ids = space->entities();
  for (int i = ids.length(); i-- > 0 && found.size() < most;) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, ids[i], GcDb::kForRead) != Gcad::eOk) continue;
    for (const Stroke& stroke : strokesOf(*entity, pixel)) {
      if (!passes(stroke, toDisplay, at, reach)) continue;
      found.push_back(ids[i]);
      break;
    }
    ignore(entity->close());
  }
  ignore(space->close());
  return found;
}

}  // namespace

GcDbObjectId entityAt(Editor& editor, const GcGePoint3d& user) {
  const std::vector<GcDbObjectId> found = find(editor, user, integerVariable(editor, "PICKBOX"), 1);
  return found.empty() ? GcDbObjectId() : found.front();
}

std::vector<GcDbObjectId> entitiesAt(Editor& editor, const GcGePoint3d& user, int pixels) {
  return find(editor, user, pixels, SIZE_MAX);
}

namespace {

// Looks for a part of a block at a point of the display.
class NestedSearch {
 public:
  NestedSearch(Editor& editor, const GcGePoint3d& user)
      : m_toDisplay(displayToWorld(editor).inverse()),
        m_at(flat(m_toDisplay, ucsToWorld(editor) * user)),
        m_pixel(editor.view().height / editor.view().pixels),
        m_reach(std::max(integerVariable(editor, "PICKBOX"), 1) * m_pixel) {}

  // The attribute or part under the point; false when only the reference's other attributes lie there.
  bool lookInto(const GcDbBlockReference& reference, const GcGeMatrix3d& around, NestedPick& pick, int depth = 0) {
    constexpr int kMaxDepth = 32;
    if (depth == kMaxDepth) return false;
    GcDbObjectIdArray attributes;
    reference.attributeIds(attributes);
    if (lookAt(attributes, around, pick, depth)) return true;
    GcDbBlockTableRecord* block = nullptr;
    if (gcdbOpenObject(block, reference.blockTableRecord(), GcDb::kForRead) != Gcad::eOk) return false;
    const GcDbObjectIdArray parts = block->entities();
    ignore(block->close());
    if (!lookAt(parts, around * reference.blockTransform(), pick, depth + 1)) return false;
    pick.parents.push_back(reference.objectId());
    return true;
  }

 private:
  bool lookAt(const GcDbObjectIdArray& ids, const GcGeMatrix3d& toWorld, NestedPick& pick, int depth) {
    for (int i = ids.length(); i-- > 0;) {
      GcDbEntity* entity = nullptr;
      if (gcdbOpenObject(entity, ids[i], GcDb::kForRead) != Gcad::eOk) continue;
      bool found = false;
      if (const auto* reference = GcDbBlockReference::cast(entity))
        found = lookInto(*reference, toWorld, pick, depth);
      else if (!entity->isKindOf(GcDbAttributeDefinition::desc()) && hits(*entity, toWorld)) {
        pick.entity = ids[i];
        pick.toWorld = toWorld;
        found = true;
      }
      ignore(entity->close());
      if (found) return true;
    }
    return false;
  }
  [[nodiscard]] bool hits(GcDbEntity& entity, const GcGeMatrix3d& toWorld) const {
    const GcGeMatrix3d toDisplay = m_toDisplay * toWorld;
    for (const Stroke& stroke : strokesOf(entity, m_pixel))
      if (passes(stroke, toDisplay, m_at, m_reach)) return true;
    return false;
  }

  GcGeMatrix3d m_toDisplay;
  Flat m_at;
  double m_pixel;
  double m_reach;
};

}  // namespace

NestedPick nestedAt(Editor& editor, const GcGePoint3d& user) {
  NestedPick pick;
  const GcDbObjectId top = entityAt(editor, user);
  GcDbBlockReference* reference = nullptr;
  if (top.isNull() || gcdbOpenObject(reference, top, GcDb::kForRead) != Gcad::eOk) {
    pick.entity = top;
    return pick;
  }
  if (!NestedSearch(editor, user).lookInto(*reference, GcGeMatrix3d(), pick)) pick.entity = top;
  ignore(reference->close());
  return pick;
}

}  // namespace ed
