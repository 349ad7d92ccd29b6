// Drawings as R12 has them: what it knows goes unchanged, everything else is replaced or left out and told.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "db/dictionary.h"
#include "db/ellipse.h"
#include "db/hatch.h"
#include "db/line.h"
#include "db/mtext.h"
#include "db/polyline.h"
#include "db/xline.h"
#include "db/xrecord.h"
#include "host/db/core/savereport.h"
#include "host/rx/text/number.h"
#include "host/rx/view.h"
#include "tests/dxf/file/round_trip.h"

namespace {

using gc::test::load;

struct Saved {
  std::string bytes;
  GcDbSaveReport report;

  [[nodiscard]] std::vector<std::string> lines() const {
    std::vector<std::string> all;
    for (const GcDbSaveEntry& entry : report.entries()) all.push_back(GcDbSaveReport::describe(entry));
    return all;
  }
  [[nodiscard]] bool tells(const std::string& part) const {
    const auto all = lines();
    return std::any_of(all.begin(), all.end(),
                       [&](const std::string& line) { return line.find(part) != std::string::npos; });
  }
};

Saved saveAs(GcDbDatabase& database, GcDb::GcDbDwgVersion version, bool binary = false) {
  Saved saved;
  gc::dxf::StringSink sink;
  gc::dxf::WriteOptions options;
  options.version = version;
  options.binary = binary;
  options.report = &saved.report;
  EXPECT_EQ(gc::dxf::write(database, sink, options), Gcad::eOk);
  saved.bytes = std::move(sink.text());
  return saved;
}

Saved saveR12(GcDbDatabase& database) { return saveAs(database, GcDb::kDHL_AC1009); }

// How often the text stands in the bytes.
int countOf(const std::string& bytes, const std::string& text) {
  int count = 0;
  for (std::size_t at = bytes.find(text); at != std::string::npos; at = bytes.find(text, at + 1)) ++count;
  return count;
}

template <class Entity>
Entity* add(GcDbDatabase& database, Entity* entity) {
  GcDbBlockTableRecord* space = nullptr;
  EXPECT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  entity->setDatabaseDefaults(&database);
  EXPECT_EQ(space->appendGcDbEntity(entity), Gcad::eOk);
  EXPECT_EQ(space->close(), Gcad::eOk);
  return entity;
}

GcDbPolyline* square() {
  auto* square = new GcDbPolyline;
  const GcGePoint2d corners[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  for (unsigned i = 0; i < 4; ++i) EXPECT_EQ(square->addVertexAt(i, corners[i], i == 1 ? 0.5 : 0), Gcad::eOk);
  square->setClosed(true);
  return square;
}

TEST(R12, ALineIsTheSameAndItsHandleToo) {
  GcDbDatabase database;
  auto* line = add(database, new GcDbLine({1, 2, 3}, {4, 5, 6}));
  const GcDbHandle handle = line->handle();
  EXPECT_EQ(line->close(), Gcad::eOk);
  const Saved saved = saveR12(database);
  EXPECT_NE(saved.bytes.find("$ACADVER\n  1\nAC1009\n"), std::string::npos);
  EXPECT_EQ(countOf(saved.bytes, "\n100\n"), 0) << "no subclass markers";
  EXPECT_EQ(saved.bytes.find("OBJECTS"), std::string::npos);
  const auto again = load(saved.bytes);
  ASSERT_TRUE(again);
  EXPECT_TRUE(gc::test::reportOf(*again).empty());
  GcDbObjectId id;
  ASSERT_EQ(again->getGcDbObjectId(id, false, handle), Gcad::eOk);
  GcDbLine* read = nullptr;
  ASSERT_EQ(gcdbOpenObject(read, id, GcDb::kForRead), Gcad::eOk);
  EXPECT_TRUE(read->startPoint() == GcGePoint3d(1, 2, 3));
  EXPECT_TRUE(read->endPoint() == GcGePoint3d(4, 5, 6));
  EXPECT_EQ(read->close(), Gcad::eOk);
}

TEST(R12, TheSeedIsAboveEveryHandleWritten) {
  GcDbDatabase database;
  EXPECT_EQ(add(database, square())->close(), Gcad::eOk);
  const auto again = load(saveR12(database).bytes);
  ASSERT_TRUE(again);
  EXPECT_TRUE(gc::test::reportOf(*again).empty()) << gc::test::reportOf(*again).front();
}

TEST(R12, ALightweightPolylineBecomesAHeavyOne) {
  GcDbDatabase database;
  auto* polyline = add(database, square());
  EXPECT_EQ(polyline->setConstantWidth(0.25), Gcad::eOk);
  EXPECT_EQ(polyline->setElevation(7), Gcad::eOk);
  const GcDbHandle handle = polyline->handle();
  EXPECT_EQ(polyline->close(), Gcad::eOk);
  const Saved saved = saveR12(database);
  EXPECT_TRUE(saved.tells("mapped: R12 has no such entity: written as POLYLINE"));
  EXPECT_EQ(countOf(saved.bytes, "\nVERTEX\n"), 4);
  const auto again = load(saved.bytes);
  GcDbObjectId id;
  ASSERT_EQ(again->getGcDbObjectId(id, false, handle), Gcad::eOk);
  GcDbCurve* curve = nullptr;
  ASSERT_EQ(gcdbOpenObject(curve, id, GcDb::kForRead), Gcad::eOk);
  EXPECT_STREQ(toUtf8(view(curve->isA()->name())).c_str(), "AcDb2dPolyline");
  EXPECT_TRUE(curve->isClosed());
  double end = 0, length = 0;
  EXPECT_EQ(curve->getEndParam(end), Gcad::eOk);
  EXPECT_EQ(curve->getDistAtParam(end, length), Gcad::eOk);
  const double radius = 6.25, sweep = 4 * std::atan(0.5);  // of the arc over the chord of 10
  EXPECT_NEAR(length, 30 + radius * sweep, 1e-9);
  GcGePoint3d start;
  EXPECT_EQ(curve->getStartPoint(start), Gcad::eOk);
  EXPECT_EQ(start.z, 7);
  EXPECT_EQ(curve->close(), Gcad::eOk);
}

TEST(R12, AnEllipseBecomesAPolylineThatLiesOnIt) {
  GcDbDatabase database;
  EXPECT_EQ(add(database, new GcDbEllipse({5, 5, 0}, GcGeVector3d::kZAxis, {4, 0, 0}, 0.5))->close(), Gcad::eOk);
  const Saved saved = saveR12(database);
  EXPECT_TRUE(saved.tells("ELLIPSE"));
  int vertices = 0;
  for (std::size_t at = saved.bytes.find("\nVERTEX\n"); at != std::string::npos;
       at = saved.bytes.find("\nVERTEX\n", at + 1), ++vertices) {
    double x = 0, y = 0;
    ASSERT_EQ(std::sscanf(saved.bytes.c_str() + saved.bytes.find("\n 10\n", at), "\n 10\n%lf\n 20\n%lf", &x, &y), 2);
    EXPECT_NEAR((x - 5) * (x - 5) / 16 + (y - 5) * (y - 5) / 4, 1, 1e-3);
  }
  EXPECT_GT(vertices, 30);
}

TEST(R12, AHatchBecomesABlockOfItsLines) {
  GcDbDatabase database;
  auto* hatch = new GcDbHatch;
  GcDbHatchLoop loop;
  loop.flags = 1 | 2;
  for (const GcGePoint2d& p : {GcGePoint2d(0, 0), GcGePoint2d(10, 0), GcGePoint2d(10, 10), GcGePoint2d(0, 10)})
    loop.vertices.append({p, 0});
  ASSERT_EQ(hatch->appendLoop(loop), Gcad::eOk);
  ASSERT_EQ(hatch->setPattern(GcDbHatch::kPreDefined, GC_T("SOLID")), Gcad::eOk);
  EXPECT_EQ(add(database, hatch)->close(), Gcad::eOk);
  const Saved saved = saveR12(database);
  EXPECT_TRUE(saved.tells("HATCH")) << "told";
  EXPECT_EQ(countOf(saved.bytes, "\nHATCH\n"), 0);
  EXPECT_EQ(countOf(saved.bytes, "INSERT\n"), 1);
  EXPECT_EQ(countOf(saved.bytes, "*X1\n"), 3) << "the block's name twice, the reference's once";
  EXPECT_GT(countOf(saved.bytes, "\nSOLID\n"), 0);
}

TEST(R12, ParagraphsBecomeLinesOfText) {
  GcDbDatabase database;
  auto* text = new GcDbMText;
  EXPECT_EQ(text->setContents(GC_T("one\\Ptwo")), Gcad::eOk);
  EXPECT_EQ(text->setTextHeight(2), Gcad::eOk);
  EXPECT_EQ(add(database, text)->close(), Gcad::eOk);
  const Saved saved = saveR12(database);
  EXPECT_TRUE(saved.tells("written as 2 TEXT"));
  EXPECT_EQ(countOf(saved.bytes, "\nTEXT\n"), 2);
  EXPECT_EQ(countOf(saved.bytes, "\none\n"), 1);
  EXPECT_EQ(countOf(saved.bytes, "\ntwo\n"), 1);
}

TEST(R12, EndlessLinesEnd) {
  GcDbDatabase database;
  auto* xline = new GcDbXline;
  EXPECT_EQ(xline->setUnitDir({0, 1, 0}), Gcad::eOk);
  EXPECT_EQ(add(database, xline)->close(), Gcad::eOk);
  const Saved saved = saveR12(database);
  EXPECT_TRUE(saved.tells("XLINE"));
  EXPECT_TRUE(saved.tells("written as LINE"));
}

TEST(R12, WhatEntitiesLoseIsToldByName) {
  GcDbDatabase database;
  auto* line = add(database, new GcDbLine({0, 0, 0}, {1, 0, 0}));
  EXPECT_EQ(line->setLineWeight(static_cast<GcDb::LineWeight>(50)), Gcad::eOk);
  EXPECT_EQ(line->setColor(GcCmEntityColor::fromRgb(1, 2, 3)), Gcad::eOk);
  EXPECT_EQ(line->setLinetypeScale(0.5), Gcad::eOk);
  EXPECT_EQ(line->close(), Gcad::eOk);
  const Saved r12 = saveR12(database);
  EXPECT_TRUE(r12.tells("mapped: R12 has no lineWeight (370), trueColor (420)"));
  EXPECT_TRUE(r12.tells("mapped: R12 has no linetype scale (48)"));
  const Saved r2000 = saveAs(database, GcDb::kDHL_AC1015);
  EXPECT_TRUE(r2000.tells("mapped: R2000 has no trueColor (420)"));
  EXPECT_FALSE(r2000.tells("lineWeight"));
  EXPECT_TRUE(saveAs(database, GcDb::kDHL_AC1032).report.isClean()) << "the newest version says everything";
}

TEST(R12, NamesAreFittedAndStayApart) {
  GcDbDatabase database;
  const GcText longName(40, 'A');
  for (const GcText& name :
       {GcText(GC_T("walls and doors")), GcText(GC_T("walls.and.doors")), longName, longName + longName}) {
    GcDbLayerTable* layers = nullptr;
    ASSERT_EQ(database.getLayerTable(layers, GcDb::kForWrite), Gcad::eOk);
    auto* layer = new GcDbLayerTableRecord;
    ASSERT_EQ(layer->setName(name.c_str()), Gcad::eOk);
    ASSERT_EQ(layers->add(layer), Gcad::eOk);
    auto* line = add(database, new GcDbLine);
    EXPECT_EQ(line->setLayer(layer->objectId()), Gcad::eOk);
    EXPECT_EQ(line->close(), Gcad::eOk);
    EXPECT_EQ(layer->close(), Gcad::eOk);
    EXPECT_EQ(layers->close(), Gcad::eOk);
  }
  const Saved saved = saveR12(database);
  EXPECT_TRUE(saved.tells("name walls and doors becomes walls_and_doors"));
  EXPECT_TRUE(saved.tells("name walls.and.doors becomes walls_and_doors$1"));
  EXPECT_TRUE(saved.tells("becomes " + std::string(31, 'A')));
  EXPECT_TRUE(saved.tells("becomes " + std::string(29, 'A') + "$1"));
  const auto again = load(saved.bytes);
  ASSERT_TRUE(again);
  EXPECT_TRUE(gc::test::reportOf(*again).empty()) << gc::test::reportOf(*again).front();
}

TEST(R12, ObjectsAreLeftOutAndListed) {
  GcDbDatabase database;
  GcDbDictionary* root = nullptr;
  ASSERT_EQ(gcdbOpenObject(root, database.namedObjectsDictionaryId(), GcDb::kForWrite), Gcad::eOk);
  auto* record = new GcDbXrecord;
  GcDbObjectId id;
  ASSERT_EQ(root->setAt(GC_T("MINE"), record, id), Gcad::eOk);
  EXPECT_EQ(record->close(), Gcad::eOk);
  EXPECT_EQ(root->close(), Gcad::eOk);
  EXPECT_TRUE(saveR12(database).tells("XRECORD " + gc::hexText(id.handle()) +
                                      ": left out: R12 has no objects beside entities and table records"));
}

TEST(R12, BinaryFilesHaveCodesOfOneByteAndSayTheSame) {
  GcDbDatabase database;
  EXPECT_EQ(add(database, square())->close(), Gcad::eOk);
  const std::string ascii = saveR12(database).bytes;
  const std::string binary = saveAs(database, GcDb::kDHL_AC1009, true).bytes;
  EXPECT_EQ(gc::dxf::formOf(binary), gc::dxf::FileForm::Binary8);
  EXPECT_TRUE(gc::test::losses(ascii, binary).empty());
  EXPECT_TRUE(gc::test::losses(binary, ascii).empty());
}

TEST(R12, ArrowheadsAreNamedByDimensionStylesBothWays) {
  const char* kFile =
      "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nDIMSTYLE\n70\n1\n0\nDIMSTYLE\n2\nMINE\n70\n0\n5\nTICK\n6\n\n7\nNONE\n"
      "0\nENDTAB\n0\nENDSEC\n0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nTICK\n70\n0\n10\n0.0\n20\n0.0\n30\n0.0\n"
      "0\nENDBLK\n8\n0\n0\nENDSEC\n0\nEOF\n";
  const auto database = load(kFile);
  ASSERT_TRUE(database);
  const auto newer = load(gc::test::save(*database, GcDb::kDHL_AC1015));
  ASSERT_TRUE(newer);
  const std::string r12 = saveR12(*newer).bytes;
  EXPECT_NE(r12.find("  5\nTICK\n  6\n\n"), std::string::npos) << "through a version that refers by handle";
  EXPECT_NE(saveR12(*database).bytes.find("  7\nNONE\n"), std::string::npos) << "a block that is not there";
}

}  // namespace
