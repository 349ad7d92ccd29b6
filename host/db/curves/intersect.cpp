// Intersections of entities: every path of one with every path of the other.
#include <algorithm>
#include <cmath>

#include "host/db/curves/drawn_paths.h"
#include "host/ge/curves/meet.h"

namespace {

struct Found {
  size_t path;  // of the first entity
  double t;
  GcGePoint3d point;
};

void meetAll(const std::vector<GcGePath>& own, const std::vector<GcGePath>& others, std::vector<Found>& found,
             double& tol) {
  for (size_t i = 0; i < own.size(); ++i)
    for (const GcGePath& other : others) {
      const double pairTol = gcgeMeetTolerance(own[i], other);
      const GcGeMeetings meetings = gcgeMeet(own[i], other, pairTol);
      tol = std::max(tol, pairTol);
      const GcGePoint3d& origin = own[i].origin();
      for (const GcGeMeeting& m : meetings.points) found.push_back({i, m.ta, origin + m.point});
      for (const GcGeSharing& s : meetings.stretches) {
        found.push_back({i, s.ta0, origin + s.from});
        found.push_back({i, s.ta1, origin + s.to});
      }
    }
  std::stable_sort(found.begin(), found.end(),
                   [](const Found& x, const Found& y) { return x.path != y.path ? x.path < y.path : x.t < y.t; });
}

// Appends the points, each place once: the first in order stays.
void appendOnce(const std::vector<Found>& found, double near, GcArray<GcGePoint3d>& points) {
  std::vector<int> byX(found.size());
  for (size_t i = 0; i < byX.size(); ++i) byX[i] = static_cast<int>(i);
  std::sort(byX.begin(), byX.end(), [&](int a, int b) {
    return found[a].point.x != found[b].point.x ? found[a].point.x < found[b].point.x : a < b;
  });
  std::vector<bool> doubled(found.size(), false);
  for (size_t i = 0; i < byX.size(); ++i)
    for (size_t j = i + 1; j < byX.size(); ++j) {
      const Found &a = found[byX[i]], &b = found[byX[j]];
      if (b.point.x - a.point.x > near) break;
      if (a.point.distanceTo(b.point) <= near) doubled[std::max(byX[i], byX[j])] = true;
    }
  for (size_t i = 0; i < found.size(); ++i)
    if (!doubled[i]) points.append(found[i].point);
}

}  // namespace

Gcad::ErrorStatus GcDbEntity::intersectWith(const GcDbEntity* other, GcDb::Intersect mode, GcArray<GcGePoint3d>& points,
                                            intptr_t, intptr_t) const {
  if (other == nullptr) return Gcad::eNullEntityPointer;
  std::vector<GcGePath> own, others;
  Gcad::ErrorStatus status = gcdbDrawnPaths(*this, mode == GcDb::kExtendThis || mode == GcDb::kExtendBoth, own);
  if (status == Gcad::eOk)
    status = gcdbDrawnPaths(*other, mode == GcDb::kExtendArg || mode == GcDb::kExtendBoth, others);
  if (status != Gcad::eOk) return status;
  std::vector<Found> found;
  double tol = 0;
  meetAll(own, others, found, tol);
  appendOnce(found, 16 * tol, points);
  return Gcad::eOk;
}
