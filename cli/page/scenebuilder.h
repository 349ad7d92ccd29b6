// Turns the space a document shows into shapes, and keeps them up with its changes.
//
// Model space is shown in display coordinates, as its view looks at it; a layout's sheet in its own coordinates, with
// a window for each viewport, through which the model is seen.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <unordered_map>

#include "cli/page/changes.h"
#include "cli/page/pagestate.h"
#include "ge/matrix3d.h"
#include "host/ed/editor.h"
#include "host/plot/layouts.h"
#include "host/plot/look.h"

namespace cli::page {

class SceneBuilder {
 public:
  SceneBuilder();
  ~SceneBuilder();
  SceneBuilder(const SceneBuilder&) = delete;
  SceneBuilder& operator=(const SceneBuilder&) = delete;

  // The scene of the editor's document from now on.
  void watch(ed::Editor& editor);
  // What has changed since the last call; nothing that programs hold open for writing. False: nothing.
  bool update(SceneChange& change);

  // ---- between drawing and scene, as of the last update
  [[nodiscard]] GcDbObjectId entityOf(ShapeId shape) const;
  // The shape in the window that is worked in; false when the entity has none there.
  bool shapeOf(GcDbObjectId entity, ShapeId& shape) const;
  // From world coordinates of the space that is worked in to the scene.
  [[nodiscard]] GcGeMatrix3d toScene() const;
  // A drag's transformation of the world, as (a b c d e f) of the scene.
  [[nodiscard]] std::array<double, 6> dragMatrix(const GcGeMatrix3d& world) const;
  // The user coordinates a click means: on the user system's plane at the elevation.
  [[nodiscard]] GcGePoint3d userPoint(double x, double y) const;
  [[nodiscard]] gc::plot::Point scenePoint(const GcGePoint3d& user) const;

  // Outlines of the windows by their number, the sheet's (0) left empty.
  [[nodiscard]] const std::vector<std::vector<gc::plot::Point>>& clips() const { return m_clips; }
  // Of a layout's paper; empty for model space.
  [[nodiscard]] const Box& paper() const { return m_paper; }

 private:
  struct Window;
  struct IdHash {
    std::size_t operator()(GcDbObjectId id) const { return std::hash<const void*>()(id.stub()); }
  };
  void buildAll(SceneChange& change);
  bool buildAtUnit(SceneChange& change, double unit);
  void addWindow(GcDbObjectId viewport, const gc::plot::Viewport& view);
  void buildWindow(size_t number, SceneChange& change);
  void rebuild(GcDbObjectId entity, SceneChange& change);
  Shape draw(Window& window, GcDbObjectId entity);
  ShapeId newId();
  [[nodiscard]] size_t currentWindow() const;
  [[nodiscard]] GcText signature() const;

  ed::Editor* m_editor = nullptr;
  Changes m_changes;
  std::vector<std::unique_ptr<Window>> m_windows;
  std::vector<std::vector<gc::plot::Point>> m_clips;
  std::unordered_map<GcDbObjectId, uint32_t, IdHash> m_orders;
  std::vector<GcDbObjectId> m_entities;  // by shape
  std::vector<ShapeId> m_freeIds;
  std::vector<GcDbObjectId> m_later;  // changed, but held open
  std::unique_ptr<gc::plot::Looks> m_looks;
  GcText m_signature;
  Box m_paper;
  double m_unit = 1;
  uint32_t m_nextOrder = 0;
};

}  // namespace cli::page
