// Shapes and frames of other programs' objects between DXF, where a shape has a name, and DWG, where it has a number.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <numbers>

#include "db/database.h"
#include "db/zombie.h"
#include "host/db/core/fileformats.h"
#include "host/db/core/store.h"
#include "host/db/entities/oleframe.h"
#include "host/db/entities/shape.h"
#include "host/dwg/record/recordcodec.h"
#include "host/rx/view.h"
#include "tests/gi/shapefiles.h"
#include "tests/scratch.h"

namespace {

constexpr int kWritten[] = {gc::dwg::kR2000, gc::dwg::kR2004, gc::dwg::kR2010, gc::dwg::kR2013, gc::dwg::kR2018};

class ForeignTest : public testing::Test {
 protected:
  [[nodiscard]] std::string path(const std::string& name) const { return (m_scratch.path() / name).string(); }
  void load(GcDbDatabase& database, const std::string& name) {
    std::string message;
    ASSERT_EQ(gcdbReadDrawing(database, path(name), message), Gcad::eOk) << message;
  }
  void save(GcDbDatabase& database, const std::string& name, int version) {
    std::string message;
    GcDbSaveOptions options;
    options.version = static_cast<GcDb::GcDbDwgVersion>(version);
    ASSERT_EQ(gcdbSaveDrawing(database, path(name), options, message), Gcad::eOk) << message;
  }
  // A drawing with a style for the file of shapes "ours.shx" beside it, and one entity.
  void put(const std::string& entity) {
    std::ofstream(path("in.dxf"))
        << "0\nSECTION\n2\nHEADER\n9\n$"
           "ACADVER\n1\nAC1032\n0\nENDSEC\n0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nSTYLE\n70\n1\n"
           "0\nSTYLE\n5\n1A0\n100\nAcDbSymbolTableRecord\n100\nAcDbTextStyleTableRecord\n2\n\n70\n1\n40\n0\n41\n1\n"
           "50\n0\n71\n0\n42\n1\n3\n" +
               path("ours.shx") + "\n4\n\n0\nENDTAB\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n" + entity +
               "0\nENDSEC\n0\nEOF\n";
  }
  void putShapes() {
    std::ofstream(path("ours.shx"), std::ios::binary)
        << gc::test::shapeFile({{130, "TRACK1", {0x14, 0}}, {133, "CIRC1", {0x10, 0}}});
  }
  // Through a DWG file of the version: what the entity 1AB is then, its groups as a DXF file has them.
  std::string throughDwg(int version, bool withShapesAfter) {
    GcDbDatabase database(false, true), back(false, true);
    load(database, "in.dxf");
    save(database, "out.dwg", version);
    if (!withShapesAfter) std::filesystem::remove(path("ours.shx"));
    load(back, "out.dwg");
    const GcDbStub* stub = back.store().find(0x1AB);
    if (stub == nullptr || stub->object == nullptr) return "nothing";
    return toUtf8(view(stub->object->isA()->name())) + " " + nameOf(*stub->object);
  }
  static std::string nameOf(const GcDbObject& object) {
    const auto* shape = GcDbShape::cast(&object);
    return shape == nullptr ? "" : toUtf8(view(shape->nameInFiles()));
  }

 private:
  gc::test::ScratchFolder m_scratch{"shapes"};
};

const std::string kShape =
    "0\nSHAPE\n5\n1AB\n100\nAcDbEntity\n8\n0\n100\nAcDbShape\n10\n1\n20\n2\n30\n0\n40\n2.5\n2\nCIRC1\n50\n30\n";

std::string bytesLine(const std::string& bytes) {
  static const char* kDigits = "0123456789ABCDEF";
  std::string line = "310\n";
  for (const char c : bytes) {
    line += kDigits[static_cast<uint8_t>(c) >> 4];
    line += kDigits[static_cast<uint8_t>(c) & 15];
  }
  return line + "\n";
}

std::string ole(const GcGePoint3d (&corners)[4]) {
  std::string bytes = "\x80\x55";
  for (const GcGePoint3d& corner : corners) {
    for (const double real : {corner.x, corner.y, corner.z})
      bytes.append(reinterpret_cast<const char*>(&real), sizeof real);
  }
  std::string text =
      "0\nOLE2FRAME\n5\n1AB\n100\nAcDbEntity\n8\n0\n100\nAcDbOle2Frame\n70\n2\n3\nOLE\n10\n1\n20\n8\n30\n0\n11\n5\n21\n"
      "6\n"
      "31\n0\n71\n1\n72\n1\n73\n0\n90\n";
  return text + std::to_string(bytes.size() + 3) + "\n" + bytesLine(bytes) + bytesLine("end") + "1\nOLE\n";
}

constexpr GcGePoint3d kCorners[4] = {{1, 8, 0}, {5, 8, 0}, {5, 6, 0}, {1, 6, 0}};

}  // namespace

TEST_F(ForeignTest, ShapesHaveTheirNumberWhereTheirFileIsThere) {
  for (const int version : kWritten) {
    SCOPED_TRACE(version);
    put(kShape);
    putShapes();
    EXPECT_EQ(throughDwg(version, true), "AcDbShape CIRC1");
    EXPECT_EQ(throughDwg(version, false), "AcDbShape *133," + path("ours.shx"));
  }
}

TEST_F(ForeignTest, ShapesOfMissingFilesKeepTheirName) {
  put(kShape);
  for (const int version : kWritten) EXPECT_EQ(throughDwg(version, false), "AcDbShape CIRC1") << version;
}

TEST_F(ForeignTest, ANameByNumberIsThePlace) {
  std::string byNumber = kShape;
  byNumber.replace(byNumber.find("CIRC1"), 5, "*130," + path("ours.shx"));
  put(byNumber);
  for (const int version : kWritten) EXPECT_EQ(throughDwg(version, false), "AcDbShape *130," + path("ours.shx"));
  putShapes();
  EXPECT_EQ(throughDwg(gc::dwg::kR2018, true), "AcDbShape TRACK1");
}

TEST_F(ForeignTest, FramesKeepTheirBytesAndCorners) {
  put(ole(kCorners));
  GcDbDatabase database(false, true);
  load(database, "in.dxf");
  const auto* before = GcDbOle2Frame::cast(database.store().find(0x1AB)->object);
  ASSERT_NE(before, nullptr);
  ASSERT_TRUE(before->bytesHaveCorners());
  for (const int version : kWritten) {
    SCOPED_TRACE(version);
    save(database, "out.dwg", version);
    GcDbDatabase back(false, true);
    load(back, "out.dwg");
    GcDbOle2Frame* after = nullptr;
    ASSERT_EQ(gcdbOpenObject(after, GcDbObjectId(back.store().find(0x1AB)), GcDb::kForRead), Gcad::eOk);
    EXPECT_EQ(after->bytesInRecords(), before->bytesInRecords());
    GcDbExtents box;
    ASSERT_EQ(after->getGeomExtents(box), Gcad::eOk);
    EXPECT_EQ(box.minPoint(), GcGePoint3d(1, 6, 0));
    EXPECT_EQ(box.maxPoint(), GcGePoint3d(5, 8, 0));
    ignore(after->close());
  }
}

TEST_F(ForeignTest, FramesMoveAndTurnWithTheirBytes) {
  put(ole(kCorners));
  GcDbDatabase database(false, true);
  load(database, "in.dxf");
  GcDbEntity* frame = nullptr;
  ASSERT_EQ(gcdbOpenObject(frame, GcDbObjectId(database.store().find(0x1AB)), GcDb::kForWrite), Gcad::eOk);
  const GcArray<uint8_t> bytes = GcDbOle2Frame::cast(frame)->bytesInRecords();
  GcGeMatrix3d turn, move;
  turn.setToRotation(std::numbers::pi / 2, GcGeVector3d::kZAxis);
  move.setToTranslation({10, 0, 0});
  ASSERT_EQ(frame->transformBy(move * turn), Gcad::eOk);
  GcDbExtents box;
  ASSERT_EQ(frame->getGeomExtents(box), Gcad::eOk);
  EXPECT_TRUE(box.minPoint().isEqualTo(GcGePoint3d(2, 1, 0))) << box.minPoint().x << " " << box.minPoint().y;
  EXPECT_TRUE(box.maxPoint().isEqualTo(GcGePoint3d(4, 5, 0)));
  EXPECT_NE(GcDbOle2Frame::cast(frame)->bytesInRecords(), bytes);
  ASSERT_EQ(frame->transformBy((move * turn).inverse()), Gcad::eOk);
  ASSERT_EQ(frame->getGeomExtents(box), Gcad::eOk);
  EXPECT_TRUE(box.maxPoint().isEqualTo(GcGePoint3d(5, 8, 0)));
  ignore(frame->close());
}
