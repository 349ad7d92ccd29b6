// The screen of programs: temporary lines and drags, as the pages show them.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "cli/page/pagestate.h"
#include "cli/page/scenebuilder.h"
#include "host/ed/screen.h"

namespace cli::page {

class PageScreen final : public ed::Screen {
 public:
  // While it lives it is the screen; what it is told it also tells the former one. `wake` gets changes to the pages.
  PageScreen(PageState& state, SceneBuilder& builder, std::function<void()> wake, std::function<void()> refresh);
  ~PageScreen() override;
  PageScreen(const PageScreen&) = delete;
  PageScreen& operator=(const PageScreen&) = delete;

  // Frames are shown while a drag asks for input; the last one, behind the click, is not.
  void setDragging(bool dragging);
  // Puts the lines where pages find them.
  void publish();

  void line(const GcGePoint3d& from, const GcGePoint3d& to, int color, bool highlight) override;
  [[nodiscard]] bool showsDrags() const override { return true; }
  void dragFrame(int status, const GcGeMatrix3d& matrix, const std::vector<GcDbObjectId>& entities,
                 int cursor) override;
  void command(const std::vector<ed::InputItem>& items) override;
  void viewChanged(const GcGePoint2d& center, double height) override;
  void entityChanged(GcDbObjectId entity) override;
  void update() override;

 private:
  struct Line {
    gc::plot::Point from, to;
    int color;
    bool highlight;
    friend bool operator==(const Line&, const Line&) = default;
  };
  void publishNowAndThen();

  PageState& m_state;
  SceneBuilder& m_builder;
  std::function<void()> m_wake, m_refresh;
  ed::Screen* m_former;
  std::vector<Line> m_lines;
  bool m_linesChanged = false;
  bool m_dragging = false;
  std::vector<GcDbObjectId> m_dragged;
  std::vector<ShapeId> m_draggedShapes;
  std::chrono::steady_clock::time_point m_published;
};

}  // namespace cli::page
