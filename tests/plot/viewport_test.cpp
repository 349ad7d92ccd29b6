// A sheet is plotted at the right size: what a viewport shows is measured in the picture, layer by layer.
#include <gtest/gtest.h>

#include <string>

#include "db/circle.h"
#include "db/database.h"
#include "db/layout.h"
#include "db/layoutmanager.h"
#include "db/line.h"
#include "db/viewport.h"
#include "host/plot/plot.h"

namespace gc::plot {
namespace {

class Bytes : public ByteSink {
 public:
  void write(const char* bytes, std::size_t count) override { text.append(bytes, count); }
  std::string text;
};

class Sheet : public testing::Test {
 protected:
  template <class T>
  GcDbObjectId add(GcDbObjectId blockId, T* entity) {
    GcDbBlockTableRecord* block = nullptr;
    GcDbObjectId id;
    EXPECT_EQ(gcdbOpenObject(block, blockId, GcDb::kForWrite), Gcad::eOk);
    EXPECT_EQ(block->appendGcDbEntity(id, entity), Gcad::eOk);
    ignore(entity->close());
    ignore(block->close());
    return id;
  }
  GcDbObjectId addLayer(const GCHAR* name) {
    GcDbLayerTable* layers = nullptr;
    GcDbObjectId id;
    EXPECT_EQ(m_database.getLayerTable(layers, GcDb::kForWrite), Gcad::eOk);
    auto* layer = new GcDbLayerTableRecord;
    ignore(layer->setName(name));
    EXPECT_EQ(layers->add(id, layer), Gcad::eOk);
    ignore(layer->close());
    ignore(layers->close());
    return id;
  }
  std::string plot() {
    Bytes bytes;
    PlotReport report;
    PlotRequest request;
    request.layout = GC_T("Layout1");
    EXPECT_EQ(plotToSvg(m_database, request, bytes, report), Gcad::eOk);
    EXPECT_EQ(report.viewports, 1);
    return bytes.text;
  }
  [[nodiscard]] static bool has(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
  }

  GcDbDatabase m_database;
};

// Lines of 100 units through a viewport at 1:2 are 50 mm long; its centre lies at 100,100 from the margins of 5 mm.
TEST_F(Sheet, ViewportsShowTheModelAtTheirScaleWithoutTheirFrozenLayers) {
  const GcDbObjectId layer = addLayer(GC_T("Sometimes"));
  add(m_database.modelSpaceId(), new GcDbLine({0, 0, 0}, {100, 0, 0}));
  auto* other = new GcDbLine({0, 10, 0}, {100, 10, 0});
  ignore(other->setLayer(layer));
  add(m_database.modelSpaceId(), other);
  GcDbLayoutManager& manager = *gcdbHostApplicationServices()->layoutManager();
  ASSERT_EQ(manager.setCurrentLayout(GC_T("Layout1"), &m_database), Gcad::eOk);
  auto* made = new GcDbViewport;
  ignore(made->setWidth(120));
  ignore(made->setHeight(80));
  ignore(made->setCenterPoint({100, 100, 0}));
  ignore(made->setCustomScale(0.5));
  const GcDbObjectId id = add(m_database.paperSpaceId(), made);
  GcDbViewport* viewport = nullptr;
  ASSERT_EQ(gcdbOpenObject(viewport, id, GcDb::kForWrite), Gcad::eOk);
  ignore(viewport->setOn());
  ignore(viewport->close());

  const std::string both = plot();
  EXPECT_TRUE(has(both, "M105 192L155 192")) << both;
  EXPECT_TRUE(has(both, "M105 187L155 187")) << both;

  ASSERT_EQ(gcdbOpenObject(viewport, id, GcDb::kForWrite), Gcad::eOk);
  GcDbObjectIdArray frozen;
  frozen.append(layer);
  ignore(viewport->freezeLayersInViewport(frozen));
  ignore(viewport->close());
  const std::string one = plot();
  EXPECT_TRUE(has(one, "M105 192L155 192"));
  EXPECT_FALSE(has(one, "M105 187L155 187"));
}

// The window's outline is the circle's while the clip is on, the rectangle's otherwise.
TEST_F(Sheet, AViewportIsClippedByItsObject) {
  add(m_database.modelSpaceId(), new GcDbLine({0, 0, 0}, {100, 0, 0}));
  GcDbLayoutManager& manager = *gcdbHostApplicationServices()->layoutManager();
  ASSERT_EQ(manager.setCurrentLayout(GC_T("Layout1"), &m_database), Gcad::eOk);
  const GcDbObjectId circle = add(m_database.paperSpaceId(), new GcDbCircle({100, 100, 0}, GcGeVector3d::kZAxis, 30));
  auto* made = new GcDbViewport;
  ignore(made->setWidth(60));
  ignore(made->setHeight(60));
  ignore(made->setCenterPoint({100, 100, 0}));
  const GcDbObjectId id = add(m_database.paperSpaceId(), made);
  const auto change = [&](GcDbObjectId clip) {
    GcDbViewport* viewport = nullptr;
    ASSERT_EQ(gcdbOpenObject(viewport, id, GcDb::kForWrite), Gcad::eOk);
    ignore(viewport->setOn());
    ASSERT_EQ(viewport->setNonRectClipEntityId(clip), Gcad::eOk);
    ignore(viewport->close());
  };
  const auto clipOf = [&] {
    const std::string picture = plot();
    const size_t from = picture.find(" d=\"", picture.find("<clipPath"));
    return picture.substr(from + 4, picture.find('"', from + 4) - from - 4);
  };
  // 135 to 75 mm from the left, 105 from the bottom of a sheet of 297 mm.
  change({});
  EXPECT_EQ(clipOf(), "M75 162L135 162L135 222L75 222Z");
  change(circle);
  const std::string round = clipOf();
  EXPECT_EQ(round.find('L'), std::string::npos) << round;
  EXPECT_EQ(round.substr(0, 8), "M135 192") << round;
}

}  // namespace
}  // namespace gc::plot
