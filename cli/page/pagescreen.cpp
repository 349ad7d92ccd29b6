#include "cli/page/pagescreen.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "cm/color.h"
#include "host/ed/colors.h"

namespace cli::page {

namespace {

using namespace std::chrono_literals;
using nlohmann::json;

constexpr auto kBetweenLooks = 40ms;  // while a program draws without asking
constexpr size_t kMostLines = 20000;
constexpr int kComplement = -1;

}  // namespace

PageScreen::PageScreen(PageState& state, SceneBuilder& builder, std::function<void()> wake,
                       std::function<void()> refresh)
    : m_state(state),
      m_builder(builder),
      m_wake(std::move(wake)),
      m_refresh(std::move(refresh)),
      m_former(ed::setScreen(this)) {}

PageScreen::~PageScreen() { ed::setScreen(m_former); }

void PageScreen::setDragging(bool dragging) {
  m_dragging = dragging;
  if (dragging) return;
  m_dragged.clear();
  m_draggedShapes.clear();
  m_state.endDrag();
}

// Drawn in complement, the same line once more takes the first away.
void PageScreen::line(const GcGePoint3d& from, const GcGePoint3d& to, int color, bool highlight) {
  if (m_former != nullptr) m_former->line(from, to, color, highlight);
  const Line line{m_builder.scenePoint(from), m_builder.scenePoint(to), color, highlight};
  const auto same = color == kComplement ? std::find(m_lines.rbegin(), m_lines.rend(), line) : m_lines.rend();
  if (same != m_lines.rend())
    m_lines.erase(std::next(same).base());
  else if (m_lines.size() < kMostLines)
    m_lines.push_back(line);
  m_linesChanged = true;
  if (!m_dragging) publishNowAndThen();
}

void PageScreen::publishNowAndThen() {
  const auto now = std::chrono::steady_clock::now();
  if (now - m_published < kBetweenLooks) return;
  publish();
  m_wake();
}

void PageScreen::publish() {
  m_published = std::chrono::steady_clock::now();
  if (!std::exchange(m_linesChanged, false)) return;
  json list = json::array();
  for (const Line& line : m_lines) {
    const bool isIndexed = line.color >= 0 && line.color <= 255;
    const int64_t rgb = isIndexed ? static_cast<int64_t>(GcCmEntityColor::lookUpRGB(line.color)) : kComplement;
    list.push_back({line.from.x, line.from.y, line.to.x, line.to.y, rgb, line.highlight ? 1 : 0});
  }
  m_state.set(PageState::kLines, json{{"t", "lines"}, {"lines", std::move(list)}}.dump());
}

void PageScreen::dragFrame(int status, const GcGeMatrix3d& matrix, const std::vector<GcDbObjectId>& entities,
                           int cursor) {
  if (m_former != nullptr) m_former->dragFrame(status, matrix, entities, cursor);
  if (!m_dragging) return;
  if (entities != m_dragged) {
    m_dragged = entities;
    m_draggedShapes.clear();
    for (const GcDbObjectId id : entities)
      if (ShapeId shape = 0; m_builder.shapeOf(id, shape)) m_draggedShapes.push_back(shape);
  }
  m_state.dragTo(m_draggedShapes, m_builder.dragMatrix(matrix));
  publish();
  m_wake();
}

void PageScreen::command(const std::vector<ed::InputItem>& items) {
  if (m_former != nullptr) m_former->command(items);
}

// Temporary lines do not outlive a change of the view.
void PageScreen::viewChanged(const GcGePoint2d& center, double height) {
  if (m_former != nullptr) m_former->viewChanged(center, height);
  // Within a viewport the model moves, not what the page looks at.
  if (const ed::Editor& editor = ed::currentEditor(); !editor.inPaperLayout() || editor.inPaperSpace())
    m_state.set(PageState::kView, json{{"t", "view"}, {"x", center.x}, {"y", center.y}, {"h", height}}.dump());
  m_lines.clear();
  m_linesChanged = true;
  publishNowAndThen();
}

void PageScreen::entityChanged(GcDbObjectId entity) {
  if (m_former != nullptr) m_former->entityChanged(entity);
  const auto now = std::chrono::steady_clock::now();
  if (now - m_published >= kBetweenLooks) m_refresh();
}

void PageScreen::update() {
  if (m_former != nullptr) m_former->update();
  m_lines.clear();
  m_linesChanged = true;
  m_refresh();
}

}  // namespace cli::page
