// Areas of the current space: what curves, texts and the curves of inserted blocks enclose around a point.
#pragma once

#include "host/ed/editor.h"
#include "host/ge/curves/arrangement.h"

namespace ed {

// A closed way around an area or an island in it. World coordinates, in the plane looked for.
struct AreaLoop {
  GcGePath path;
  GcDbObjectIdArray sources;  // the entities of the space it runs along
  bool isAroundText = false;
};

struct Area {
  AreaLoop outer;
  std::vector<AreaLoop> islands;  // the outermost ones
  std::vector<AreaLoop> nested;   // what lies in islands
};

// Cuts up the plane of the user system at the elevation of a point; curves count as seen along its Z.
class AreaFinder {
 public:
  // Among the given entities, or all that are visible when there are none.
  AreaFinder(Editor& editor, const std::vector<GcDbObjectId>& among, double elevation);
  ~AreaFinder();
  // The smallest area around the point (user coordinates). False when nothing encloses it.
  [[nodiscard]] bool areaAt(const GcGePoint3d& user, Area& area) const;
  [[nodiscard]] GcGeVector3d normal() const { return m_normal; }

 private:
  struct Plan;
  Editor& m_editor;
  GcGeVector3d m_normal;
  std::unique_ptr<Plan> m_plan;
};

// Curves put together into closed chains: each closed curve alone, others end to end. What closes nothing is left out.
[[nodiscard]] std::vector<GcDbObjectIdArray> closedChains(const std::vector<GcDbObjectId>& curves);

}  // namespace ed
