// Finding entities by place: windows, polygons, fences; and by order: all, the last one.
#pragma once

#include "host/ed/editor.h"

namespace ed {

struct Region {
  enum class Kind : uint8_t { Window, Crossing, WindowPolygon, CrossingPolygon, Fence } kind = Kind::Window;
  std::vector<GcGePoint3d> points;  // user coordinates; two opposite corners for Window and Crossing
};

// Entities of the current space that lie inside the region (Window…) or inside or across it (Crossing…, Fence), newest
// first. Those of frozen or switched-off layers are left out.
[[nodiscard]] std::vector<GcDbObjectId> entitiesIn(Editor& editor, const Region& region);
// A region as a selection remembers it: in world coordinates, boxes with all four corners.
[[nodiscard]] SelectionOrigin originOf(Editor& editor, const Region& region);
[[nodiscard]] SelectionOrigin originOfPick(Editor& editor, const GcGePoint3d& userPoint);
// Where a fence of world points meets an entity on the screen, in world coordinates, along the fence.
[[nodiscard]] std::vector<GcGePoint3d> crossings(Editor& editor, const std::vector<GcGePoint3d>& fence,
                                                 GcDbObjectId entity);
// Entities of the current space on layers that are thawed and on; newest first.
[[nodiscard]] std::vector<GcDbObjectId> visibleEntities(Editor& editor);
// Entities of model space and of every layout, whatever their layer; newest first.
[[nodiscard]] std::vector<GcDbObjectId> wholeDrawing(Editor& editor);
// The newest entity of the current space; null when it is empty.
[[nodiscard]] GcDbObjectId lastEntity(Editor& editor);

[[nodiscard]] bool isOnLockedLayer(GcDbObjectId entity);
[[nodiscard]] bool isInSpace(GcDbObjectId entity, GcDbObjectId space);

}  // namespace ed
