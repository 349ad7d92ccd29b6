// The core of the database: open states, handles, names, undo, memory copies, groups of one object.
#include <gtest/gtest.h>

#include <vector>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/line.h"
#include "db/xrecord.h"
#include "host/db/core/header.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"
#include "host/db/describe/fieldio.h"

namespace {

GcDbObjectId addLine(GcDbDatabase& database, const GcGePoint3d& from, const GcGePoint3d& to) {
  GcDbBlockTableRecord* space = nullptr;
  EXPECT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  auto* line = new GcDbLine(from, to);
  GcDbObjectId id;
  EXPECT_EQ(space->appendGcDbEntity(id, line), Gcad::eOk);
  EXPECT_EQ(space->close(), Gcad::eOk);
  EXPECT_EQ(line->close(), Gcad::eOk);
  return id;
}

// Collects groups as "code value" texts.
class TextSink : public GcDbGroupSink {
 public:
  void put(const GcDbGroup& group) override {
    std::string line = std::to_string(group.code) + " ";
    if (group.kind == GcDbGroupKind::Text)
      line += toUtf8(group.text);
    else if (group.kind == GcDbGroupKind::Point3d)
      line += std::to_string(group.point.x);
    else
      line += std::to_string(group.asReal());
    lines.push_back(line);
    list.put(group);
  }
  std::vector<std::string> lines;
  GcDbGroupList list;
};

TEST(Database, NewDrawingHasItsStandardRecords) {
  GcDbDatabase database;
  GcDbLayerTable* layers = nullptr;
  ASSERT_EQ(database.getSymbolTable(layers), Gcad::eOk);
  EXPECT_TRUE(layers->has(GC_T("0")));
  EXPECT_EQ(layers->close(), Gcad::eOk);
  EXPECT_EQ(database.clayer(), database.layerZero());
  EXPECT_EQ(database.store().openCount(), 0);
}

TEST(Database, ManyReadersOrOneWriter) {
  GcDbDatabase database;
  const GcDbObjectId id = addLine(database, {0, 0, 0}, {1, 0, 0});
  GcDbLine *first = nullptr, *second = nullptr;
  ASSERT_EQ(gcdbOpenObject(first, id, GcDb::kForRead), Gcad::eOk);
  ASSERT_EQ(gcdbOpenObject(second, id, GcDb::kForRead), Gcad::eOk);
  GcDbLine* writer = nullptr;
  EXPECT_EQ(gcdbOpenObject(writer, id, GcDb::kForWrite), Gcad::eWasOpenForRead);
  EXPECT_EQ(database.store().openObjects().length(), 1);
  EXPECT_EQ(database.store().openCount(), 2);
  EXPECT_EQ(first->close(), Gcad::eOk);
  EXPECT_EQ(second->upgradeOpen(), Gcad::eOk);
  EXPECT_EQ(gcdbOpenObject(writer, id, GcDb::kForRead), Gcad::eWasOpenForWrite);
  EXPECT_EQ(second->close(), Gcad::eOk);
  GcDbDictionary* wrong = nullptr;
  EXPECT_EQ(gcdbOpenObject(wrong, id, GcDb::kForRead), Gcad::eNotThatKindOfClass);
  EXPECT_EQ(database.store().openCount(), 0);
}

TEST(Database, HandlesFindTheirObjects) {
  GcDbDatabase database;
  const GcDbObjectId id = addLine(database, {0, 0, 0}, {1, 0, 0});
  GcDbObjectId found;
  EXPECT_EQ(database.getGcDbObjectId(found, false, id.handle()), Gcad::eOk);
  EXPECT_EQ(found, id);
  EXPECT_EQ(database.getGcDbObjectId(found, false, GcDbHandle(0x7FFFFFFFFFFF)), Gcad::eUnknownHandle);
  EXPECT_EQ(database.getGcDbObjectId(found, true, GcDbHandle(0x7FFFFFFFFFFF)), Gcad::eOk);
  EXPECT_EQ(found.handle(), 0x7FFFFFFFFFFFu);
  EXPECT_FALSE(found.isValid());
}

TEST(Database, EntityNamesOutliveNothing) {
  gds_name name = {0, 0};
  GcDbObjectId id;
  {
    GcDbDatabase database;
    ASSERT_EQ(gcdbGetGdsName(name, addLine(database, {}, {1, 1, 1})), Gcad::eOk);
    EXPECT_EQ(gcdbGetObjectId(id, name), Gcad::eOk);
  }
  EXPECT_EQ(gcdbGetObjectId(id, name), Gcad::eInvalidInput);
  EXPECT_TRUE(id.isNull());
}

TEST(Undo, ChangesAppendsAndErasesComeBack) {
  GcDbDatabase database;
  const GcDbObjectId kept = addLine(database, {0, 0, 0}, {1, 0, 0});
  database.undo().setOn(true);
  database.undo().beginGroup();
  GcDbLine* line = nullptr;
  ASSERT_EQ(gcdbOpenObject(line, kept, GcDb::kForWrite), Gcad::eOk);
  EXPECT_EQ(line->setEndPoint({5, 5, 5}), Gcad::eOk);
  EXPECT_EQ(line->close(), Gcad::eOk);
  const GcDbObjectId fresh = addLine(database, {2, 2, 2}, {3, 3, 3});
  database.undo().endGroup();
  database.undo().beginGroup();
  ASSERT_EQ(gcdbOpenObject(line, kept, GcDb::kForWrite), Gcad::eOk);
  EXPECT_EQ(line->erase(), Gcad::eOk);
  EXPECT_EQ(line->close(), Gcad::eOk);
  database.undo().endGroup();

  EXPECT_TRUE(kept.isErased());
  EXPECT_EQ(database.undo().undo(1), 1);
  EXPECT_FALSE(kept.isErased());
  EXPECT_EQ(database.undo().undo(1), 1);
  EXPECT_TRUE(fresh.isErased());
  ASSERT_EQ(gcdbOpenObject(line, kept, GcDb::kForRead), Gcad::eOk);
  EXPECT_EQ(line->endPoint(), GcGePoint3d(1, 0, 0));
  EXPECT_EQ(line->close(), Gcad::eOk);
  EXPECT_EQ(database.undo().redo(2), 2);
  EXPECT_FALSE(fresh.isErased());
  EXPECT_TRUE(kept.isErased());
}

TEST(Describe, GroupsOfALineGoOutAndIn) {
  GcDbDatabase database;
  const GcDbObjectId id = addLine(database, {1, 2, 3}, {4, 5, 6});
  GcDbLine* line = nullptr;
  ASSERT_EQ(gcdbOpenObject(line, id, GcDb::kForWrite), Gcad::eOk);
  EXPECT_EQ(line->setThickness(2.5), Gcad::eOk);
  EXPECT_EQ(line->setColor(GcCmColor::fromRgb(1, 2, 3)), Gcad::eOk);
  TextSink sink;
  gcdbFieldsOut(*line, sink, GcDb::kDHL_AC1032);
  const std::vector<std::string> expected = {"100 AcDbEntity", "8 0",         "62 178.000000", "420 66051.000000",
                                             "100 AcDbLine",   "39 2.500000", "10 1.000000",   "11 4.000000"};
  EXPECT_EQ(sink.lines, expected);

  GcDbLine copy;
  GcDbFieldReader reader(copy, GcDb::kDHL_AC1032);
  GcDbGroupList::Cursor cursor(sink.list);
  for (GcDbGroup group; cursor.next(group);) EXPECT_TRUE(group.code == 8 || reader.take(group)) << group.code;
  EXPECT_EQ(copy.startPoint(), line->startPoint());
  EXPECT_EQ(copy.endPoint(), line->endPoint());
  EXPECT_EQ(copy.thickness(), 2.5);
  EXPECT_EQ(copy.color(), line->color());
  EXPECT_EQ(line->close(), Gcad::eOk);
}

TEST(Describe, ImagesKeepEverything) {
  GcDbDatabase database;
  GcDbLine line({1, 2, 3}, {4, 5, 6});
  GcDbLine copy;
  const std::vector<uint8_t> image = gcdbImageOf(line, GcDb::kCopyFiler);
  EXPECT_EQ(gcdbImageInto(copy, image, GcDb::kCopyFiler), Gcad::eOk);
  EXPECT_EQ(gcdbImageOf(copy, GcDb::kCopyFiler), image);
  EXPECT_EQ(copy.endPoint(), GcGePoint3d(4, 5, 6));
}

TEST(ExtendedData, ReplacesOnlyTheNamedApplications) {
  GcDbDatabase database;
  GcDbRegAppTable* apps = nullptr;
  ASSERT_EQ(database.getSymbolTable(apps, GcDb::kForWrite), Gcad::eOk);
  for (const GCHAR* name : {GC_T("ONE"), GC_T("TWO")}) {
    auto* record = new GcDbRegAppTableRecord;
    EXPECT_EQ(record->setName(name), Gcad::eOk);
    EXPECT_EQ(apps->add(record), Gcad::eOk);
    EXPECT_EQ(record->close(), Gcad::eOk);
  }
  EXPECT_EQ(apps->close(), Gcad::eOk);
  const GcDbObjectId id = addLine(database, {}, {1, 0, 0});
  GcDbLine* line = nullptr;
  ASSERT_EQ(gcdbOpenObject(line, id, GcDb::kForWrite), Gcad::eOk);
  resbuf* both = gcutBuildList(1001, GC_T("ONE"), 1070, 5, 1001, GC_T("TWO"), 1000, GC_T("text"), 0);
  EXPECT_EQ(line->setXData(both), Gcad::eOk);
  gcutRelRb(both);
  resbuf* dropOne = gcutBuildList(1001, GC_T("ONE"), 0);
  EXPECT_EQ(line->setXData(dropOne), Gcad::eOk);
  gcutRelRb(dropOne);
  resbuf* chain = line->xData();
  ASSERT_NE(chain, nullptr);
  EXPECT_EQ(GcString(chain->resval.rstring), GcString(GC_T("TWO")));
  gcutRelRb(chain);
  resbuf* foreign = gcutBuildList(1001, GC_T("NOBODY"), 1070, 1, 0);
  EXPECT_EQ(line->setXData(foreign), Gcad::eRegappIdNotFound);
  gcutRelRb(foreign);
  EXPECT_EQ(line->close(), Gcad::eOk);
}

TEST(Dictionary, KeysIgnoreCaseAndKeepOrder) {
  GcDbDatabase database;
  GcDbDictionary* root = nullptr;
  ASSERT_EQ(database.getNamedObjectsDictionary(root, GcDb::kForWrite), Gcad::eOk);
  for (const GCHAR* key : {GC_T("zebra"), GC_T("Apple")}) {
    auto* record = new GcDbXrecord;
    GcDbObjectId id;
    EXPECT_EQ(root->setAt(key, record, id), Gcad::eOk);
    EXPECT_EQ(record->close(), Gcad::eOk);
  }
  EXPECT_TRUE(root->has(GC_T("APPLE")));
  GcDbDictionaryIterator* each = root->newIterator();
  while (!each->done() && GcString(each->name()) != GcString(GC_T("zebra"))) each->next();
  ASSERT_FALSE(each->done());
  EXPECT_TRUE(each->next());
  EXPECT_EQ(GcString(each->name()), GcString(GC_T("Apple")));
  delete each;
  EXPECT_EQ(root->remove(GC_T("ZEBRA")), Gcad::eOk);
  EXPECT_FALSE(root->has(GC_T("zebra")));
  EXPECT_EQ(root->close(), Gcad::eOk);
}

TEST(Memory, ALineTakesAtMostTwoHundredBytes) {
  GcDbDatabase database;
  constexpr int kLines = 100000;
  const size_t before = database.store().overheadBytes();
  for (int i = 0; i < kLines; ++i) addLine(database, {double(i), 0, 0}, {double(i), 1, 0});
  const double overhead = static_cast<double>(database.store().overheadBytes() - before) / kLines;
  const double listed = sizeof(GcDbObjectId) * 1.5;  // the block's array, at the worst of its growth
  EXPECT_LE(static_cast<double>(sizeof(GcDbLine)) + overhead + listed, 200.0);
}

}  // namespace
