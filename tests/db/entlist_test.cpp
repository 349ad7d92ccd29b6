// Entity lists: their order and form, objects made from them and changed by them.
#include <gtest/gtest.h>

#include "db/database.h"
#include "db/line.h"
#include "db/polyline2d.h"
#include "db/xrecord.h"
#include "host/db/core/store.h"
#include "host/db/entlist/entitylist.h"
#include "host/db/entlist/entitymake.h"

namespace {

std::vector<int> codesOf(const GcDbGroupList& list) {
  std::vector<int> codes;
  GcDbGroupList::Cursor cursor(list);
  for (GcDbGroup group; cursor.next(group);) codes.push_back(group.code);
  return codes;
}

GcDbGroup groupOf(const GcDbGroupList& list, int code) {
  GcDbGroupList::Cursor cursor(list);
  for (GcDbGroup group; cursor.next(group);)
    if (group.code == code) return group;
  ADD_FAILURE() << "no group " << code;
  return {};
}

GcDbGroupList listOf(std::initializer_list<GcDbGroup> groups) {
  GcDbGroupList list;
  for (const GcDbGroup& group : groups) list.put(group);
  return list;
}

class EntityLists : public testing::Test {
 protected:
  GcDbEntityMaker::Made make(std::initializer_list<GcDbGroup> groups) {
    return maker.make(listOf(groups), database.modelSpaceId());
  }
  GcDbGroupList get(GcDbObjectId id) {
    GcDbGroupList list;
    EXPECT_TRUE(gcdbEntityList(id, nullptr, list));
    return list;
  }
  GcDbDatabase database;
  GcDbEntityMaker maker{database};
};

TEST_F(EntityLists, ALineInTheDialectsOrder) {
  const auto made =
      make({GcDbGroup::ofText(0, GC_T("LINE")), GcDbGroup::ofPoint(10, {1, 2, 3}), GcDbGroup::ofPoint(11, {4, 5, 6})});
  ASSERT_EQ(made.status, Gcad::eOk);
  EXPECT_EQ(codesOf(get(made.id)), (std::vector<int>{-1, 0, 330, 5, 100, 67, 410, 8, 100, 10, 11, 210}));
  EXPECT_EQ(groupOf(get(made.id), 410).text, GcView(GC_T("Model")));
  EXPECT_EQ(database.store().openCount(), 0);
}

TEST_F(EntityLists, PartialListsChangeOnlyWhatTheySay) {
  const auto made = make({GcDbGroup::ofText(0, GC_T("LINE")), GcDbGroup::ofInt(62, 3),
                          GcDbGroup::ofPoint(10, {0, 0, 0}), GcDbGroup::ofPoint(11, {1, 0, 0})});
  ASSERT_EQ(gcdbEntityModify(listOf({GcDbGroup::ofId(-1, made.id), GcDbGroup::ofText(8, GC_T("Wall"))})), Gcad::eOk);
  const GcDbGroupList list = get(made.id);
  EXPECT_EQ(groupOf(list, 8).text, GcView(GC_T("Wall")));
  EXPECT_EQ(groupOf(list, 62).integer, 3);
  EXPECT_EQ(gcdbEntityModify(listOf({GcDbGroup::ofId(-1, made.id), GcDbGroup::ofReal(1234, 1)})),
            Gcad::eInvalidDxfCode);
}

TEST_F(EntityLists, PolylineWithItsVertices) {
  ASSERT_EQ(make({GcDbGroup::ofText(0, GC_T("POLYLINE")), GcDbGroup::ofInt(70, 1)}).status, Gcad::eOk);
  ASSERT_EQ(make({GcDbGroup::ofText(0, GC_T("VERTEX")), GcDbGroup::ofPoint(10, {0, 0, 0})}).status, Gcad::eOk);
  ASSERT_EQ(make({GcDbGroup::ofText(0, GC_T("VERTEX")), GcDbGroup::ofPoint(10, {5, 0, 0})}).status, Gcad::eOk);
  EXPECT_EQ(make({GcDbGroup::ofText(0, GC_T("LINE"))}).status, Gcad::eBadDxfSequence);
  const auto made = make({GcDbGroup::ofText(0, GC_T("SEQEND"))});
  ASSERT_EQ(made.status, Gcad::eOk);
  GcDb2dPolyline* polyline = nullptr;
  ASSERT_EQ(gcdbOpenObject(polyline, made.id, GcDb::kForRead), Gcad::eOk);
  GcDbObjectIdArray vertices;
  polyline->vertexIds(vertices);
  EXPECT_EQ(vertices.length(), 2);
  EXPECT_TRUE(polyline->isClosed());
  EXPECT_EQ(polyline->close(), Gcad::eOk);
  EXPECT_EQ(database.store().openCount(), 0);
}

TEST_F(EntityLists, AnonymousBlocksGetTheirNumber) {
  ASSERT_EQ(make({GcDbGroup::ofText(0, GC_T("BLOCK")), GcDbGroup::ofText(2, GC_T("*U")), GcDbGroup::ofInt(70, 1),
                  GcDbGroup::ofPoint(10, {1, 1, 0})})
                .status,
            Gcad::eOk);
  ASSERT_EQ(
      make({GcDbGroup::ofText(0, GC_T("LINE")), GcDbGroup::ofPoint(10, {}), GcDbGroup::ofPoint(11, {1, 0, 0})}).status,
      Gcad::eOk);
  const auto made = make({GcDbGroup::ofText(0, GC_T("ENDBLK"))});
  EXPECT_EQ(made.blockName, GC_T("*U1"));
  GcDbBlockTableRecord* block = nullptr;
  ASSERT_EQ(gcdbOpenObject(block, made.id, GcDb::kForRead), Gcad::eOk);
  EXPECT_EQ(block->entities().length(), 1);
  EXPECT_EQ(block->origin(), GcGePoint3d(1, 1, 0));
  EXPECT_EQ(block->close(), Gcad::eOk);
  GcDbGroupList list;
  EXPECT_TRUE(gcdbRecordList(made.id, list));
  EXPECT_TRUE(groupOf(list, -2).id.isValid());
}

TEST_F(EntityLists, LayersAreMadeAndRenamed) {
  const auto made = make({GcDbGroup::ofText(0, GC_T("LAYER")), GcDbGroup::ofText(100, GC_T("AcDbSymbolTableRecord")),
                          GcDbGroup::ofText(100, GC_T("AcDbLayerTableRecord")), GcDbGroup::ofText(2, GC_T("X")),
                          GcDbGroup::ofInt(70, 0), GcDbGroup::ofInt(62, 5)});
  ASSERT_EQ(made.status, Gcad::eOk);
  EXPECT_EQ(make({GcDbGroup::ofText(0, GC_T("LAYER")), GcDbGroup::ofText(2, GC_T("x"))}).status,
            Gcad::eDuplicateRecordName);
  ASSERT_EQ(gcdbEntityModify(
                listOf({GcDbGroup::ofId(-1, made.id), GcDbGroup::ofText(2, GC_T("Y")), GcDbGroup::ofInt(62, -5)})),
            Gcad::eOk);
  GcDbLayerTable* layers = nullptr;
  ASSERT_EQ(database.getSymbolTable(layers), Gcad::eOk);
  EXPECT_TRUE(layers->has(GC_T("y")));
  EXPECT_FALSE(layers->has(GC_T("x")));
  EXPECT_EQ(layers->close(), Gcad::eOk);
  EXPECT_EQ(groupOf(get(made.id), 62).integer, -5);
}

TEST_F(EntityLists, ExtensionRecordsKeepWhateverComes) {
  const auto made =
      make({GcDbGroup::ofText(0, GC_T("XRECORD")), GcDbGroup::ofText(100, GC_T("AcDbXrecord")),
            GcDbGroup::ofText(1, GC_T("a")), GcDbGroup::ofReal(40, 1.5), GcDbGroup::ofText(1, GC_T("b"))});
  ASSERT_EQ(made.status, Gcad::eOk);
  EXPECT_EQ(codesOf(get(made.id)), (std::vector<int>{-1, 0, 330, 5, 100, 280, 1, 40, 1}));
}

}  // namespace
