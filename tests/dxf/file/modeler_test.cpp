// Regions in files: text before 2013, bytes in a section of their own since.
#include <gtest/gtest.h>

#include "db/circle.h"
#include "db/database.h"
#include "db/idmapping.h"
#include "db/region.h"
#include "host/rx/view.h"
#include "tests/dxf/file/round_trip.h"
#include "tests/modelspace.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

using gc::test::load;
using gc::test::save;

using gc::test::append;

GcDbObjectId addDisc(GcDbDatabase& database, double radius) {
  const GcDbCircle circle({1, 2, 0}, GcGeVector3d::kZAxis, radius);
  GcDbVoidPtrArray curves, made;
  curves.append(const_cast<GcDbCircle*>(&circle));
  EXPECT_EQ(GcDbRegion::createFromCurves(curves, made), Gcad::eOk);
  return append(database, static_cast<GcDbEntity*>(made[0]));
}

// The area of the entity with the handle; -1 when it has none.
double areaOf(GcDbDatabase& database, GcDbHandle handle) {
  GcDbObjectId id;
  if (database.getGcDbObjectId(id, false, handle) != Gcad::eOk) return -1;
  GcDbRegion* region = nullptr;
  if (gcdbOpenObject(region, id, GcDb::kForRead) != Gcad::eOk) return -1;
  double area = -1;
  ignore(region->getArea(area));
  ignore(region->close());
  return area;
}

bool has(const std::string& file, const std::string& text) { return file.find(text) != std::string::npos; }

TEST(RegionsInFiles, HaveTextBefore2013AndARecordOfBytesSince) {
  GcDbDatabase database;
  const GcDbHandle handle = addDisc(database, 3).handle();
  const std::string old = save(database, GcDb::kDHL_AC1024);
  EXPECT_FALSE(has(old, "ACDSDATA"));
  EXPECT_TRUE(has(old, "\n  1\nkoo "));  // "400 ", enciphered
  for (const auto version : {GcDb::kDHL_AC1027, GcDb::kDHL_AC1032}) {
    for (const bool binary : {false, true}) {
      const std::string file = save(database, version, binary);
      EXPECT_TRUE(has(file, "ACDSDATA"));
      EXPECT_FALSE(has(file, "koo "));
      const auto again = load(file);
      ASSERT_TRUE(again);
      EXPECT_NEAR(areaOf(*again, handle), 9 * kPi, 1e-9);
      EXPECT_TRUE(save(*again, version, binary) == file);
      EXPECT_NEAR(areaOf(*load(save(*again, GcDb::kDHL_AC1015)), handle), 9 * kPi, 1e-9);
    }
  }
}

TEST(RegionsInFiles, CopiedErasedAndScaledOnesKeepTheirBytesApart) {
  GcDbDatabase made;
  addDisc(made, 1);
  const GcDbHandle second = addDisc(made, 2).handle();
  const GcDbHandle third = addDisc(made, 3).handle();
  const auto database = load(save(made));
  ASSERT_TRUE(database);
  const auto open = [&](GcDbHandle handle) {
    GcDbObjectId id;
    EXPECT_EQ(database->getGcDbObjectId(id, false, handle), Gcad::eOk);
    GcDbRegion* region = nullptr;
    EXPECT_EQ(gcdbOpenObject(region, id, GcDb::kForWrite), Gcad::eOk);
    return region;
  };
  GcDbRegion* erased = open(second);
  EXPECT_EQ(erased->erase(), Gcad::eOk);
  EXPECT_EQ(erased->close(), Gcad::eOk);
  GcDbRegion* scaled = open(third);
  GcDbObjectIdArray ids;
  ids.append(scaled->objectId());
  EXPECT_EQ(scaled->close(), Gcad::eOk);
  GcDbIdMapping map;
  EXPECT_EQ(database->deepCloneObjects(ids, database->modelSpaceId(), map, false), Gcad::eOk);
  GcDbIdMappingIter at(map);
  at.start();
  GcDbIdPair pair;
  ASSERT_TRUE(at.getMap(pair));
  const GcDbHandle copy = pair.value().handle();
  scaled = open(third);
  GcGeMatrix3d twice;
  twice.setToScaling(2, GcGePoint3d());
  EXPECT_EQ(scaled->transformBy(twice), Gcad::eOk);
  EXPECT_EQ(scaled->close(), Gcad::eOk);
  const auto again = load(save(*database));
  ASSERT_TRUE(again);
  EXPECT_EQ(areaOf(*again, second), -1);
  EXPECT_NEAR(areaOf(*again, third), 36 * kPi, 1e-9);
  EXPECT_NEAR(areaOf(*again, copy), 9 * kPi, 1e-9);
}

// The history's name and a record of something else stay, and records keep their order.
TEST(RegionsInFiles, WhatElseTheSectionHoldsStays) {
  GcDbDatabase made;
  addDisc(made, 1);
  const GcDbHandle second = addDisc(made, 2).handle();
  std::string file = save(made);
  const std::string other = "  0\nACDSRECORD\n 90\n9\n  2\nThumbnail_Data\n280\n15\n310\nABCD\n";
  const std::string record = "  0\nACDSRECORD\n";
  const std::string::size_type last = file.rfind(record);
  ASSERT_NE(last, std::string::npos);
  file.insert(last, other);
  const std::string none = "{00000000-0000-0000-0000-000000000000}";
  const std::string some = "{12345678-0000-0000-0000-000000000000}";
  file.replace(file.rfind(none), none.size(), some);
  const auto database = load(file);
  ASSERT_TRUE(database);
  EXPECT_NEAR(areaOf(*database, second), 4 * kPi, 1e-9);
  EXPECT_TRUE(save(*database) == file);
}

}  // namespace
