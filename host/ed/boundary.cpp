#include "host/ed/boundary.h"

#include <algorithm>
#include <cmath>

#include "db/curve.h"
#include "host/ed/coordinates.h"
#include "host/ed/selection.h"
#include "host/ed/strokes.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using Polygon = std::vector<GcGePoint2d>;

struct Open {
  GcDbObjectId id;
  GcGePoint3d start, end;
  bool used = false;
};

bool meet(const GcGePoint3d& a, const GcGePoint3d& b, double size) { return a.distanceTo(b) <= 1e-8 * size; }

double sizeOf(const GcGePoint3d& p) { return 1 + std::max({std::fabs(p.x), std::fabs(p.y), std::fabs(p.z)}); }

// A curve's corners in the user system, closely enough to tell what lies inside.
Polygon polygonOf(GcDbObjectId id, const GcGeMatrix3d& toUser, double deviation) {
  Polygon polygon;
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return polygon;
  for (const Stroke& stroke : strokesOf(*entity, deviation))
    for (const GcGePoint3d& point : stroke.points) {
      const GcGePoint3d at = toUser * point;
      polygon.push_back({at.x, at.y});
    }
  ignore(entity->close());
  return polygon;
}

double distance(const GcGePoint2d& a, const GcGePoint2d& b) { return gc::hypot(a.x - b.x, a.y - b.y); }

// The corners of a chain, each curve turned so that it goes on where the last one ended.
Polygon outlineOf(const GcDbObjectIdArray& chain, const GcGeMatrix3d& toUser, double deviation) {
  Polygon outline;
  for (int i = 0; i < chain.length(); ++i) {
    Polygon part = polygonOf(chain[i], toUser, deviation);
    if (part.empty()) continue;
    if (i == 1 && distance(outline.back(), part.front()) > distance(outline.front(), part.front()) &&
        distance(outline.back(), part.back()) > distance(outline.front(), part.back()))
      std::reverse(outline.begin(), outline.end());
    if (!outline.empty() && distance(outline.back(), part.back()) < distance(outline.back(), part.front()))
      std::reverse(part.begin(), part.end());
    outline.insert(outline.end(), part.begin(), part.end());
  }
  return outline;
}

bool inside(const Polygon& polygon, const GcGePoint2d& at) {
  bool within = false;
  for (size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
    const GcGePoint2d& a = polygon[i];
    const GcGePoint2d& b = polygon[j];
    if ((a.y > at.y) != (b.y > at.y) && at.x < (b.x - a.x) * (at.y - a.y) / (b.y - a.y) + a.x) within = !within;
  }
  return within;
}

double areaOf(const Polygon& polygon) {
  double twice = 0;
  for (size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++)
    twice += polygon[j].x * polygon[i].y - polygon[i].x * polygon[j].y;
  return std::fabs(twice) / 2;
}

struct Area {
  GcDbObjectIdArray curves;
  Polygon outline;
  double area = 0;
};

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

bool boundaryAt(Editor& editor, const GcGePoint3d& user, const std::vector<GcDbObjectId>& among, Boundary& boundary) {
  const GcGeMatrix3d toUser = ucsToWorld(editor).inverse();
  const double deviation = editor.view().height / 5000;
  std::vector<Area> areas;
  for (const GcDbObjectIdArray& chain : closedChains(among.empty() ? visibleEntities(editor) : among)) {
    Area each{chain, outlineOf(chain, toUser, deviation), 0};
    if (each.outline.size() < 3) continue;
    each.area = areaOf(each.outline);
    areas.push_back(std::move(each));
  }
  std::sort(areas.begin(), areas.end(), [](const Area& a, const Area& b) { return a.area < b.area; });
  const GcGePoint2d at(user.x, user.y);
  const auto outer = std::find_if(areas.begin(), areas.end(), [&](const Area& a) { return inside(a.outline, at); });
  if (outer == areas.end()) return false;
  boundary.outer = outer->curves;
  // Islands: what lies within, but not within another island.
  std::vector<const Area*> kept;
  for (auto each = outer; each != areas.begin();) {
    --each;
    const GcGePoint2d& corner = each->outline[0];
    const bool nested =
        std::any_of(kept.begin(), kept.end(), [&](const Area* k) { return inside(k->outline, corner); });
    if (nested || !inside(outer->outline, corner)) continue;
    kept.push_back(&*each);
    boundary.islands.push_back(each->curves);
  }
  return true;
}

}  // namespace ed
