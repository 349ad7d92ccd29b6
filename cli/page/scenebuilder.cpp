#include "cli/page/scenebuilder.h"

#include <cmath>

#include "cli/page/outline.h"
#include "cli/page/shapecanvas.h"
#include "db/entity.h"
#include "db/viewport.h"
#include "host/db/core/header.h"
#include "host/db/core/store.h"
#include "host/ed/command/families.h"
#include "host/ed/coordinates.h"
#include "host/ed/viewplace.h"
#include "host/plot/worlddraw.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace cli::page {

using gc::plot::Looks;
using gc::plot::PlotDraw;
using gc::plot::Point;
using gc::plot::Projection;
using gc::plot::Viewport;

namespace {

constexpr uint32_t kDarkBackground = 0;  // colour 7 comes as white; a light page turns it round
// Length of the drawing on the canvas. Curves that are drawn by pieces are good to a 100th of its unit, so this many
// hundredths of the drawing can be zoomed into before pieces show.
constexpr double kCanvasSide = 40000;
constexpr double kMostMisjudged = 50;  // times the size that was expected
constexpr double kFarAway = 20;        // endless lines end that many sizes of the drawing away

// Settings that change how things look, as one text.
constexpr const GCHAR* kLookSettings[] = {GC_T("$LTSCALE"), GC_T("$PSLTSCALE"), GC_T("$PDMODE"),
                                          GC_T("$PDSIZE"),  GC_T("$ATTMODE"),   GC_T("$FILLMODE")};

double sizeOf(const Box& box) { return box.isEmpty() ? 0 : std::fmax(box.width(), box.height()); }

double positive(double value, double otherwise) { return value > 0 && std::isfinite(value) ? value : otherwise; }

}  // namespace

// One look at a block: the space itself, or the model through a viewport.
struct SceneBuilder::Window {
  Window(double unit, uint32_t itsNumber) : number(itsNumber), canvas(unit) {}
  uint32_t number;
  GcDbObjectId viewport;  // null: the space itself
  GcDbObjectId block;
  GcGeMatrix3d toScene;
  std::vector<GcDbObjectId> frozen;
  ShapeCanvas canvas;
  std::unique_ptr<PlotDraw> draw;
  std::unordered_map<GcDbObjectId, ShapeId, IdHash> shapes;
};

SceneBuilder::SceneBuilder() = default;
SceneBuilder::~SceneBuilder() = default;

void SceneBuilder::watch(ed::Editor& editor) {
  if (m_editor == &editor && m_changes.database() == &editor.database()) return;
  m_editor = &editor;
  m_changes.listenTo(&editor.database());
  m_signature.clear();
  m_later.clear();
}

GcText SceneBuilder::signature() const {
  const GcDbHeader& header = m_editor->database().header();
  std::string text = gc::toUtf8(m_editor->layout());
  for (const GCHAR* name : kLookSettings) text += ' ' + gc::realText(header.real(name));
  if (!m_editor->inPaperLayout())
    for (const auto& row : ed::displayToWorld(*m_editor).entry)
      for (const double number : row) text += ' ' + gc::realText(number);
  return gc::fromUtf8(text);
}

bool SceneBuilder::update(SceneChange& change) {
  change = SceneChange();
  std::vector<GcDbObjectId> changed = m_changes.takeEntities();
  changed.insert(changed.end(), m_later.begin(), m_later.end());
  m_later.clear();
  bool all = m_changes.takeLooks();
  if (GcText now = signature(); now != m_signature) {
    m_signature = std::move(now);
    all = true;
  }
  for (const GcDbObjectId id : changed) {
    if (all) break;
    if (!id.isValid()) continue;
    const GcDbObject* object = id.stub()->object;
    const GcDbObjectId owner = object == nullptr ? GcDbObjectId() : object->ownerId();
    const bool isShown =
        std::any_of(m_windows.begin(), m_windows.end(), [&](const auto& window) { return window->block == owner; });
    // What lies in a block that is not shown may be shown wherever the block is.
    const bool isSheet = owner == m_editor->database().modelSpaceId() || owner == m_editor->database().paperSpaceId();
    all = (!isShown && !isSheet) || id.objectClass() == GcDbViewport::desc();
  }
  if (all) {
    buildAll(change);
    return true;
  }
  for (const GcDbObjectId id : changed) rebuild(id, change);
  return !change.put.empty() || !change.gone.empty();
}

void SceneBuilder::buildAll(SceneChange& change) {
  const GcDbHeader& header = m_editor->database().header();
  const bool paper = m_editor->inPaperLayout();
  const GcGePoint3d min = header.point(paper ? GC_T("$PEXTMIN") : GC_T("$EXTMIN"));
  const GcGePoint3d max = header.point(paper ? GC_T("$PEXTMAX") : GC_T("$EXTMAX"));
  const double told = std::fmax(max.x - min.x, max.y - min.y);
  const double size = told < 1e15 ? positive(told, m_editor->view().height) : m_editor->view().height;
  if (!buildAtUnit(change, kCanvasSide / positive(size, 1))) {
    Box box;
    for (const auto& [id, shape] : change.put) {
      box.add({shape.bounds.minX, shape.bounds.minY});
      box.add({shape.bounds.maxX, shape.bounds.maxY});
    }
    static_cast<void>(buildAtUnit(change, kCanvasSide / sizeOf(box)));
  }
}

// False when the drawing is of quite another size than the unit is made for.
bool SceneBuilder::buildAtUnit(SceneChange& change, double unit) {
  change = SceneChange();
  change.anew = true;
  m_unit = unit;
  m_windows.clear();
  m_clips.clear();
  m_entities.clear();
  m_freeIds.clear();
  m_later.clear();
  m_orders.clear();
  m_nextOrder = 0;
  m_paper = Box();
  GcDbDatabase& database = m_editor->database();
  m_looks = std::make_unique<Looks>(database, kDarkBackground, Looks::For::Screen);
  addWindow({}, {});
  const GcText name = m_editor->layout();
  if (m_editor->inPaperLayout()) {
    for (const gc::plot::Layout& layout : gc::plot::layoutsOf(database)) {
      if (layout.isModel || !equalNoCase(layout.name, name)) continue;
      m_windows[0]->block = layout.block;
      const double left = -layout.marginLeftMm / layout.mmPerUnit, bottom = -layout.marginBottomMm / layout.mmPerUnit;
      if (layout.paperWidthMm > 0 && layout.paperHeightMm > 0 && layout.mmPerUnit > 0)
        m_paper = {left, bottom, left + layout.paperWidthMm / layout.mmPerUnit,
                   bottom + layout.paperHeightMm / layout.mmPerUnit};
    }
    for (const GcDbObjectId id : gc::plot::drawOrderOf(m_windows[0]->block))
      if (Viewport viewport; gc::plot::readViewport(id, viewport) && viewport.isOn) addWindow(id, viewport);
  }
  Box box;
  for (size_t number = 0; number < m_windows.size(); ++number) buildWindow(number, change);
  for (const auto& [id, shape] : change.put) {
    box.add({shape.bounds.minX, shape.bounds.minY});
    box.add({shape.bounds.maxX, shape.bounds.maxY});
  }
  const double size = sizeOf(box) * unit;
  return !(size > 0) || (size < kCanvasSide * kMostMisjudged && size > kCanvasSide / kMostMisjudged);
}

void SceneBuilder::addWindow(GcDbObjectId viewport, const Viewport& view) {
  GcDbDatabase& database = m_editor->database();
  const auto number = static_cast<uint32_t>(m_windows.size());
  m_windows.push_back(std::make_unique<Window>(m_unit, number));
  Window& window = *m_windows.back();
  const bool paper = m_editor->inPaperLayout();
  window.viewport = viewport;
  window.block = number == 0 && paper ? database.paperSpaceId() : database.modelSpaceId();
  if (number > 0) window.toScene = view.toPaper;
  if (number == 0 && !paper) window.toScene = ed::displayToWorld(*m_editor).inverse();
  window.frozen = view.frozenLayers;

  Projection projection;
  GcGeMatrix3d scaling;
  scaling.setToScaling(m_unit);
  projection.toPage = scaling * window.toScene;
  const GcDbHeader& header = database.header();
  const bool paperDashes = header.integer(GC_T("$PSLTSCALE"), 1) != 0;
  projection.dashScale =
      positive(header.real(GC_T("$LTSCALE"), 1), 1) * m_unit * (number == 0 || paperDashes ? 1 : view.scale);
  projection.finestPeriodMm = 0;
  const double far = kCanvasSide * kFarAway;
  projection.visible = {-far, -far, far, far};
  window.draw = std::make_unique<PlotDraw>(window.canvas, *m_looks, projection);

  std::vector<Point>& clip = m_clips.emplace_back();
  if (number == 0) return;
  if (!view.clipEntity.isNull()) {
    m_windows[0]->draw->draw(view.clipEntity);
    if (const Shape outline = m_windows[0]->canvas.take(); !outline.isEmpty()) clip = outlinesOf(outline)[0].points;
  }
  if (!clip.empty()) return;
  const double x = view.width / 2, y = view.height / 2;
  for (const Point corner : {Point{-x, -y}, Point{x, -y}, Point{x, y}, Point{-x, y}})
    clip.push_back({view.center.x + corner.x, view.center.y + corner.y});
}

Shape SceneBuilder::draw(Window& window, GcDbObjectId entity) {
  m_looks->freezeAlso(window.frozen);
  window.draw->draw(entity);
  Shape shape = window.canvas.take();
  shape.window = window.number;
  const auto [at, isNew] = m_orders.try_emplace(entity, m_nextOrder);
  if (isNew) ++m_nextOrder;
  shape.order = at->second;
  return shape;
}

ShapeId SceneBuilder::newId() {
  if (m_freeIds.empty()) {
    m_entities.emplace_back();
    return static_cast<ShapeId>(m_entities.size() - 1);
  }
  const ShapeId id = m_freeIds.back();
  m_freeIds.pop_back();
  return id;
}

void SceneBuilder::buildWindow(size_t number, SceneChange& change) {
  Window& window = *m_windows[number];
  for (const GcDbObjectId id : gc::plot::drawOrderOf(window.block)) {
    if (id.stub()->writing) {
      m_later.push_back(id);
      continue;
    }
    Shape shape = draw(window, id);
    if (shape.isEmpty()) continue;
    const ShapeId shapeId = newId();
    m_entities[shapeId] = id;
    window.shapes[id] = shapeId;
    change.put.emplace_back(shapeId, std::move(shape));
  }
}

void SceneBuilder::rebuild(GcDbObjectId entity, SceneChange& change) {
  if (!entity.isValid()) return;
  if (entity.stub()->writing) {
    m_later.push_back(entity);
    return;
  }
  const GcDbObject* object = entity.stub()->object;
  const bool exists = object != nullptr && !entity.isErased();
  for (const auto& window : m_windows) {
    const auto at = window->shapes.find(entity);
    const bool isHere = exists && object->ownerId() == window->block;
    Shape shape = isHere ? draw(*window, entity) : Shape();
    if (shape.isEmpty()) {
      if (at == window->shapes.end()) continue;
      change.gone.push_back(at->second);
      m_entities[at->second] = {};
      m_freeIds.push_back(at->second);
      window->shapes.erase(at);
      continue;
    }
    const ShapeId id = at == window->shapes.end() ? newId() : at->second;
    m_entities[id] = entity;
    window->shapes[entity] = id;
    change.put.emplace_back(id, std::move(shape));
  }
}

// Between drawing and scene.

size_t SceneBuilder::currentWindow() const {
  if (!m_editor->inPaperLayout() || m_editor->inPaperSpace()) return 0;
  const GcDbObjectId viewport = ed::viewportNumbered(*m_editor, m_editor->viewportNumber());
  for (const auto& window : m_windows)
    if (!viewport.isNull() && window->viewport == viewport) return window->number;
  return 0;
}

GcDbObjectId SceneBuilder::entityOf(ShapeId shape) const {
  return shape < m_entities.size() ? m_entities[shape] : GcDbObjectId();
}

bool SceneBuilder::shapeOf(GcDbObjectId entity, ShapeId& shape) const {
  if (m_windows.empty()) return false;
  const auto& shapes = m_windows[currentWindow()]->shapes;
  const auto at = shapes.find(entity);
  if (at != shapes.end()) shape = at->second;
  return at != shapes.end();
}

GcGeMatrix3d SceneBuilder::toScene() const {
  return m_windows.empty() ? GcGeMatrix3d() : m_windows[currentWindow()]->toScene;
}

std::array<double, 6> SceneBuilder::dragMatrix(const GcGeMatrix3d& world) const {
  const GcGeMatrix3d scene = toScene();
  const GcGeMatrix3d m = scene * world * scene.inverse();
  return {m.entry[0][0], m.entry[1][0], m.entry[0][1], m.entry[1][1], m.entry[0][3], m.entry[1][3]};
}

GcGePoint3d SceneBuilder::userPoint(double x, double y) const {
  const GcGeMatrix3d toUser = ed::ucsToWorld(*m_editor).inverse() * toScene().inverse();
  GcGePoint3d at = toUser * GcGePoint3d(x, y, 0);
  const GcGeVector3d sight = toUser * GcGeVector3d::kZAxis;
  const double elevation = ed::realVariable(*m_editor, "ELEVATION");
  constexpr double kAlmostAlong = 1e-9;
  if (std::fabs(sight.z) > kAlmostAlong * sight.length()) at += sight * ((elevation - at.z) / sight.z);
  at.z = elevation;
  return at;
}

Point SceneBuilder::scenePoint(const GcGePoint3d& user) const {
  const GcGePoint3d at = toScene() * (ed::ucsToWorld(*m_editor) * user);
  return {at.x, at.y};
}

}  // namespace cli::page
