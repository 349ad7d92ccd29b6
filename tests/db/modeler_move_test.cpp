// Bodies moved without their modeller: where their edges are afterwards, as text and as bytes.
#include "host/db/entities/modeler_move.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "db/circle.h"
#include "db/database.h"
#include "host/db/core/asgroups.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/modeler_body.h"
#include "host/db/entities/modeler_edges.h"
#include "host/db/entities/modeler_text.h"
#include "host/db/entities/solid3d.h"
#include "tests/modelspace.h"

namespace {

using Edges = std::vector<std::vector<GcGePoint3d>>;

constexpr double kPi = 3.14159265358979323846;

gcmodeler::PlaneArea square(double size) {
  gcmodeler::PlaneArea area;
  const GcGePoint3d corners[] = {{1, 2, 3}, {1 + size, 2, 3}, {1 + size, 2 + size, 3}, {1, 2 + size, 3}};
  GcGePath loop(corners[0]);
  for (int i = 0; i < 4; ++i) loop.addLine(corners[i], corners[(i + 1) % 4], i, i + 1);
  loop.setClosed(true, false);
  area.loops.push_back(loop);
  return area;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

Edges edgesIn(const std::vector<std::string>& lines) { return gcmodeler::edgesOf(joined(lines)); }
Edges edgesIn(const std::string& bytes) {
  std::string text;
  EXPECT_TRUE(gcmodeler::textOfBinary(bytes, text));
  return gcmodeler::edgesOf(text);
}

void expectMoved(const Edges& before, const Edges& after, const GcGeMatrix3d& matrix) {
  ASSERT_FALSE(before.empty());
  ASSERT_EQ(after.size(), before.size());
  for (size_t e = 0; e < before.size(); ++e) {
    ASSERT_EQ(after[e].size(), before[e].size());
    for (size_t i = 0; i < before[e].size(); ++i)
      EXPECT_LT((after[e][i] - matrix * before[e][i]).length(), 1e-8 * (1 + matrix.scale()));
  }
}

// Moves, turns, scales alike in all directions, mirrors every other time.
GcGeMatrix3d anyMotion(std::mt19937& random) {
  const auto any = [&](double from, double to) { return std::uniform_real_distribution<double>(from, to)(random); };
  GcGeMatrix3d move, turn, scale, mirror;
  move.setToTranslation({any(-100, 100), any(-100, 100), any(-100, 100)});
  turn.setToRotation(any(0, 2 * kPi), GcGeVector3d(any(-1, 1), any(-1, 1), 1.5).normal(), {any(-5, 5), 1, 2});
  scale.setToScaling(any(0.1, 10), {1, any(-5, 5), 2});
  if (random() % 2 == 0) mirror.entry[0][0] = -1;
  return move * turn * scale * mirror;
}

}  // namespace

TEST(ModelerMove, EdgesFollowInTextAndBytes) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  for (int round = 0; round < 50 && !testing::Test::HasFailure(); ++round) {
    std::vector<std::string> text = gcmodeler::write(square(2));
    std::string bytes = gcmodeler::writeBinary(square(2));
    const Edges textEdges = edgesIn(text), byteEdges = edgesIn(bytes);
    GcGeMatrix3d all;
    for (int step = 0; step < 3; ++step) {
      const GcGeMatrix3d matrix = anyMotion(random);
      all = matrix * all;
      ASSERT_TRUE(gcmodeler::moveText(text, matrix));
      ASSERT_TRUE(gcmodeler::moveBinary(bytes, matrix));
      expectMoved(textEdges, edgesIn(text), all);
      expectMoved(byteEdges, edgesIn(bytes), all);
      EXPECT_EQ(gcmodeler::binarySize(bytes), bytes.size());
    }
  }
}

// The first move makes the record, further ones change it.
TEST(ModelerMove, OneRecordIsMade) {
  std::vector<std::string> text = gcmodeler::write(square(2));
  const size_t lines = text.size();
  GcGeMatrix3d move;
  move.setToTranslation({5, 0, 0});
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(gcmodeler::moveText(text, move));
  EXPECT_EQ(text.size(), lines + 1);
  EXPECT_NE(joined(text).find("transform $-1 1.0 0.0 0.0 0.0 1.0 0.0 0.0 0.0 1.0 15.0 0.0 0.0 1.0 no_rotate no_reflect "
                              "no_shear #\n"),
            std::string::npos)
      << joined(text);
}

// The form newer modellers write: a head of its own, how many records there are, more references in each.
TEST(ModelerMove, NewerTextsKeepTheirCount) {
  std::vector<std::string> text = {"20800 3 1 0",
                                   "5 Maker 3 ASM 1 0",
                                   "1 9.9999999999999995e-007 1e-010",
                                   "asmheader $-1 -1 @3 223 #",
                                   "body $-1 -1 $-1 $2 $-1 $-1 #",
                                   "lump $-1 -1 $-1 $-1 $-1 $1 #"};
  GcGeMatrix3d turn;
  turn.setToRotation(kPi / 2, GcGeVector3d::kZAxis);
  ASSERT_TRUE(gcmodeler::moveText(text, turn));
  EXPECT_EQ(text[0], "20800 4 1 0");
  EXPECT_EQ(text[4], "body $-1 -1 $-1 $2 $-1 $3 #");
  EXPECT_EQ(text[6].substr(0, 17), "transform $-1 -1 ");
  EXPECT_EQ(text[6].find('$', 17), std::string::npos);
  EXPECT_NE(text[6].find(" 1.0 rotate no_reflect no_shear #"), std::string::npos) << text[6];
}

TEST(ModelerMove, WhatIsNoBodyStays) {
  GcGeMatrix3d move;
  move.setToTranslation({5, 0, 0});
  std::vector<std::string> none = {"400 0 1 0", "nothing", "here"};
  const std::vector<std::string> before = none;
  EXPECT_FALSE(gcmodeler::moveText(none, move));
  EXPECT_EQ(none, before);
  const std::string whole = gcmodeler::writeBinary(square(2));
  for (size_t size = 0; size < whole.size(); size += 7) {
    std::string cut = whole.substr(0, size);
    std::string moved = cut;
    if (!gcmodeler::moveBinary(moved, move)) {
      EXPECT_EQ(moved, cut);
    }
  }
}

TEST(ModelerMove, SolidsAndTheirBoxesMove) {
  GcDbDatabase database;
  auto* solid = new GcDb3dSolid;
  const std::string made = gcmodeler::writeBinary(square(2));
  GcArray<uint8_t> bytes;
  for (const char c : made) bytes.append(static_cast<uint8_t>(c));
  ASSERT_EQ(gc::test::append(database, solid).isNull(), false);
  GcDb3dSolid* open = nullptr;
  ASSERT_EQ(gcdbOpenObject(open, solid->objectId(), GcDb::kForWrite), Gcad::eOk);
  open->setBytes(bytes);
  GcGeMatrix3d mirror, uneven;
  mirror.entry[0][0] = -1;
  uneven.entry[0][0] = 2;
  GcDbExtents box;
  EXPECT_EQ(open->transformBy(uneven), Gcad::eCannotScaleNonUniformly);
  ASSERT_EQ(open->transformBy(mirror), Gcad::eOk);
  ASSERT_EQ(open->getGeomExtents(box), Gcad::eOk);
  EXPECT_TRUE(box.minPoint().isEqualTo({-3, 2, 3}));
  EXPECT_TRUE(box.maxPoint().isEqualTo({-1, 4, 3}));
  ASSERT_EQ(open->transformBy(mirror), Gcad::eOk);
  ASSERT_EQ(open->getGeomExtents(box), Gcad::eOk);
  EXPECT_TRUE(box.maxPoint().isEqualTo({3, 4, 3}));
  ignore(open->close());
}

// What a surface was made by is in places, ways and matrices among its groups.
TEST(ModelerMove, SurfacesTakeTheirMakingAlong) {
  GcDbDatabase database;
  auto* surface = new GcDbExtrudedSurface;
  const GcDbObjectId id = gc::test::append(database, surface);
  GcDbEntity* open = nullptr;
  ASSERT_EQ(gcdbOpenObject(open, id, GcDb::kForWrite), Gcad::eOk);
  GcDbFieldReader reader(*open, GcDb::kDHL_Current);
  ASSERT_TRUE(reader.take(GcDbGroup::ofText(100, GC_T("AcDbExtrudedSurface"))));
  ASSERT_TRUE(reader.take(GcDbGroup::ofPoint(10, {0, 2, 0})));
  for (int i = 0; i < 16; ++i) ASSERT_TRUE(reader.take(GcDbGroup::ofReal(40, i == 3 ? 7 : i % 5 == 0 ? 1 : 0)));
  GcGeMatrix3d move, turn;
  move.setToTranslation({1, 2, 3});
  turn.setToRotation(kPi / 2, GcGeVector3d::kZAxis);
  ASSERT_EQ(open->transformBy(move * turn), Gcad::eOk);
  const GcDbGroupList groups = gcdbAsGroups(*open).groups;
  GcDbGroupList::Cursor cursor(groups);
  std::vector<double> matrix;
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code == 10) {
      EXPECT_TRUE(group.point.isEqualTo({-2, 0, 0}));
    }
    if (group.code == 40) matrix.push_back(group.real);
  }
  ASSERT_EQ(matrix.size(), 16u);
  // Its own move of 7 along X goes with the turn, then comes the move.
  EXPECT_NEAR(matrix[3], 1, 1e-9);
  EXPECT_NEAR(matrix[7], 9, 1e-9);
  EXPECT_NEAR(matrix[11], 3, 1e-9);
  EXPECT_NEAR(matrix[1], -1, 1e-9);
  ignore(open->close());
}
