// Regions: loops found among curves, their measures, the modeller's text there and back.
#include "db/region.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <string>

#include "db/arc.h"
#include "db/circle.h"
#include "db/ellipse.h"
#include "db/line.h"
#include "db/polyline.h"
#include "db/spline.h"
#include "host/db/entities/modeler_text.h"
#include "host/rx/view.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Curves {
  std::vector<std::unique_ptr<GcDbCurve>> owned;
  GcDbVoidPtrArray all;
  void add(GcDbCurve* curve) {
    owned.emplace_back(curve);
    all.append(curve);
  }
};

std::vector<std::unique_ptr<GcDbRegion>> regionsOf(const Curves& curves) {
  GcDbVoidPtrArray made;
  ignore(GcDbRegion::createFromCurves(curves.all, made));
  std::vector<std::unique_ptr<GcDbRegion>> regions;
  for (void* each : made) regions.emplace_back(static_cast<GcDbRegion*>(each));
  return regions;
}

void expectArea(const GcDbRegion& region, double area, double perimeter, const GcGePoint3d& centroid) {
  double value = 0;
  EXPECT_EQ(region.getArea(value), Gcad::eOk);
  EXPECT_NEAR(value, area, 1e-9 * area);
  EXPECT_EQ(region.getPerimeter(value), Gcad::eOk);
  EXPECT_NEAR(value, perimeter, 1e-9 * perimeter);
  GcGePoint3d at;
  EXPECT_EQ(region.getCentroid(at), Gcad::eOk);
  EXPECT_NEAR((at - centroid).length(), 0, 1e-8 * (1 + centroid.asVector().length()));
}

TEST(Region, OfAHalfCircleAndItsChordFarOutInATiltedPlane) {
  GcGeMatrix3d place;
  place.setToRotation(0.7, GcGeVector3d(1, 2, 3), GcGePoint3d());
  GcGeMatrix3d move;
  move.setToTranslation({5e6, -5e6, 100});
  place = move * place;
  Curves curves;
  curves.add(new GcDbLine({-2, 0, 0}, {2, 0, 0}));
  curves.add(new GcDbArc({0, 0, 0}, 2, 0, kPi));
  for (auto& curve : curves.owned) ASSERT_EQ(curve->transformBy(place), Gcad::eOk);
  const auto regions = regionsOf(curves);
  ASSERT_EQ(regions.size(), 1u);
  expectArea(*regions[0], 2 * kPi, 4 + 2 * kPi, place * GcGePoint3d(0, 8 / (3 * kPi), 0));
}

TEST(Region, OfEveryKindOfCurveAndBackAgain) {
  Curves curves;
  curves.add(new GcDbCircle({1, 2, 0}, GcGeVector3d::kZAxis, 3));
  curves.add(new GcDbEllipse({50, 0, 0}, GcGeVector3d::kZAxis, {4, 3, 0}, 0.25));
  auto* polyline = new GcDbPolyline;
  ignore(polyline->addVertexAt(0, {100, 0}));
  ignore(polyline->addVertexAt(1, {110, 0}, 1));
  ignore(polyline->addVertexAt(2, {110, 10}));
  ignore(polyline->addVertexAt(3, {100, 10}));
  polyline->setClosed(true);
  curves.add(polyline);
  const auto regions = regionsOf(curves);
  ASSERT_EQ(regions.size(), 3u);
  double area = 0;
  EXPECT_EQ(regions[0]->getArea(area), Gcad::eOk);
  EXPECT_NEAR(area, 9 * kPi, 1e-9);
  EXPECT_EQ(regions[1]->getArea(area), Gcad::eOk);
  EXPECT_NEAR(area, 25 * 0.25 * kPi, 1e-9);
  EXPECT_EQ(regions[2]->getArea(area), Gcad::eOk);
  EXPECT_NEAR(area, 100 + 12.5 * kPi, 1e-9);
  const char* const kinds[][4] = {{"AcDbCircle"}, {"AcDbEllipse"}, {"AcDbLine", "AcDbArc", "AcDbLine", "AcDbLine"}};
  for (int i = 0; i < 3; ++i) {
    GcDbVoidPtrArray parts;
    EXPECT_EQ(regions[static_cast<size_t>(i)]->explode(parts), Gcad::eOk);
    for (int k = 0; k < parts.length(); ++k) {
      const std::unique_ptr<GcDbEntity> part(static_cast<GcDbEntity*>(parts[k]));
      EXPECT_EQ(GcString(part->isA()->name()), GcString(fromUtf8(kinds[i][k]).c_str()));
    }
  }
}

TEST(Region, WithASplineSide) {
  Curves curves;
  auto* spline = new GcDbSpline;
  GcArray<GcGePoint3d> points;
  for (const GcGePoint3d& p : {GcGePoint3d(0, 0, 0), GcGePoint3d(0, 6, 0), GcGePoint3d(6, 6, 0), GcGePoint3d(6, 0, 0)})
    points.append(p);
  GcArray<double> knots;
  for (const double k : {0., 0., 0., 0., 1., 1., 1., 1.}) knots.append(k);
  ASSERT_EQ(spline->setNurbsData(3, false, false, false, points, knots, {}), Gcad::eOk);
  curves.add(spline);
  curves.add(new GcDbLine({0, 0, 0}, {6, 0, 0}));
  const auto regions = regionsOf(curves);
  ASSERT_EQ(regions.size(), 1u);
  double area = 0;
  EXPECT_EQ(regions[0]->getArea(area), Gcad::eOk);
  // Integral of y x' of the cubic: 6^2 * 3/5.
  EXPECT_NEAR(area, 21.6, 1e-9);
  GcGePoint3d at;
  EXPECT_EQ(regions[0]->getCentroid(at), Gcad::eOk);
  EXPECT_NEAR(at.x, 3, 1e-9);
}

TEST(Region, LoopsAreFoundInAnyOrderAndDirection) {
  std::mt19937 random(7);
  Curves curves;
  std::vector<std::array<GcGePoint3d, 2>> sides;
  for (int i = 0; i < 200; ++i) {
    const GcGePoint3d a(10 * i, 0, 0), b(10 * i + 5, 0, 0), c(10 * i + 5, 5, 0), d(10 * i, 5, 0);
    for (const auto& side : {std::array{a, b}, std::array{b, c}, std::array{c, d}, std::array{d, a}})
      sides.push_back(side);
  }
  std::shuffle(sides.begin(), sides.end(), random);
  for (auto& side : sides) {
    if (random() % 2 == 0) std::swap(side[0], side[1]);
    curves.add(new GcDbLine(side[0], side[1]));
  }
  const auto regions = regionsOf(curves);
  ASSERT_EQ(regions.size(), 200u);
  double area = 0;
  for (const auto& region : regions) {
    EXPECT_EQ(region->getArea(area), Gcad::eOk);
    EXPECT_NEAR(area, 25, 1e-9);
  }
}

TEST(Region, WhatBoundsNothingMakesNone) {
  Curves open;
  open.add(new GcDbLine({0, 0, 0}, {5, 0, 0}));
  open.add(new GcDbLine({5, 0, 0}, {5, 5, 0}));
  EXPECT_TRUE(regionsOf(open).empty());
  Curves bent;  // a closed loop in no plane
  const GcGePoint3d corners[] = {{0, 0, 0}, {5, 0, 0}, {5, 5, 3}, {0, 5, 0}};
  for (int i = 0; i < 4; ++i) bent.add(new GcDbLine(corners[i], corners[(i + 1) % 4]));
  EXPECT_TRUE(regionsOf(bent).empty());
  Curves flat;
  flat.add(new GcDbLine({0, 0, 0}, {5, 0, 0}));
  flat.add(new GcDbLine({5, 0, 0}, {0, 0, 0}));
  EXPECT_TRUE(regionsOf(flat).empty());
}

TEST(Region, MovesTurnsAndScales) {
  Curves curves;
  curves.add(new GcDbCircle({1, 2, 0}, GcGeVector3d::kZAxis, 3));
  const auto regions = regionsOf(curves);
  ASSERT_EQ(regions.size(), 1u);
  GcGeMatrix3d scale;
  scale.setToScaling(2, GcGePoint3d(1, 0, 0));
  EXPECT_EQ(regions[0]->transformBy(scale), Gcad::eOk);
  expectArea(*regions[0], 36 * kPi, 12 * kPi, {1, 4, 0});
  GcGeMatrix3d turn;
  turn.setToRotation(kPi / 2, GcGeVector3d::kXAxis, GcGePoint3d());
  EXPECT_EQ(regions[0]->transformBy(turn), Gcad::eOk);
  expectArea(*regions[0], 36 * kPi, 12 * kPi, {1, 0, 4});
  EXPECT_NEAR(std::fabs(regions[0]->normal().y), 1, 1e-12);
}

// A later version of the text: more words in each record, edges with parameters, a face turned over with a hole.
TEST(ModelerText, OtherVersionsAreRead) {
  const std::string text =
      "700 0 1 0 \n@4 some @12 ACIS 32.0 NT @24 Fri May 13 10:01:59 2022 \n1 1e-06 1e-10 \n"
      "body $-1 -1 $-1 $1 $-1 $-1 #\nlump $-1 -1 $-1 $-1 $2 $0 #\nshell $-1 -1 $-1 $-1 $-1 $3 $-1 $1 #\n"
      "face $-1 -1 $-1 $-1 $4 $2 $-1 $5 reversed double out #\nloop $-1 -1 $-1 $6 $7 $3 #\n"
      "plane-surface $-1 -1 $-1 0 0 0 0 0 -1 1 0 0 forward_v I I I I #\nloop $-1 -1 $-1 $-1 $12 $3 #\n"
      "coedge $-1 -1 $-1 $7 $7 $-1 $8 forward $4 $-1 #\nedge $-1 -1 $-1 $9 0 $9 6.28 $7 $10 forward @7 unknown #\n"
      "vertex $-1 -1 $-1 $8 $11 #\nellipse-curve $-1 -1 $-1 0 0 0 0 0 1 5 0 0 1 I I #\npoint $-1 -1 $-1 5 0 0 #\n"
      "coedge $-1 -1 $-1 $12 $12 $-1 $13 reversed $6 $-1 #\nedge $-1 -1 $-1 $14 0 $14 6.28 $12 $15 forward @7 unknown "
      "#\n"
      "vertex $-1 -1 $-1 $13 $16 #\nellipse-curve $-1 -1 $-1 0 0 0 0 0 1 2 0 0 1 I I #\npoint $-1 -1 $-1 2 0 0 #\n"
      "End-of-ACIS-data \n";
  gcmodeler::PlaneArea area;
  ASSERT_TRUE(gcmodeler::read(text, area));
  ASSERT_EQ(area.loops.size(), 2u);
  EXPECT_NEAR(area.normal.z, 1, 1e-12);
  EXPECT_NEAR(area.loops[0].vectorArea().z, 25 * kPi, 1e-9);
  EXPECT_NEAR(area.loops[1].vectorArea().z, -4 * kPi, 1e-9);
}

TEST(ModelerText, DamagedTextIsRefusedOrReadButNeverFollowedForEver) {
  Curves curves;
  curves.add(new GcDbCircle({1, 2, 0}, GcGeVector3d::kZAxis, 3));
  gcmodeler::PlaneArea circle;
  GcGePath path;
  ASSERT_EQ(curves.owned[0]->subPath(path), Gcad::eOk);
  circle.loops.push_back(path);
  std::string text;
  for (const std::string& line : gcmodeler::write(circle)) text += line + '\n';
  gcmodeler::PlaneArea area;
  ASSERT_TRUE(gcmodeler::read(text, area));
  std::mt19937 random(11);
  for (int i = 0; i < 4000; ++i) {
    std::string damaged = text;
    for (int k = 0; k < 3; ++k) damaged[random() % damaged.size()] = "0123456789$ #-"[random() % 14];
    gcmodeler::read(damaged, area);
    gcmodeler::read(damaged.substr(0, random() % damaged.size()), area);
  }
}

TEST(ModelerText, TheCipherIsItsOwnInverse) {
  const std::string line = "face $-1 -1 forward_v I I ~!{}\t#";
  EXPECT_EQ(gcmodeler::cipher(gcmodeler::cipher(line)), line);
  EXPECT_EQ(gcmodeler::cipher("400 "), "koo ");
}

// ---- bytes -------------------------------------------------------------------------------------------------

GcArray<uint8_t> bytesOf(const std::string& text) {
  GcArray<uint8_t> bytes;
  for (const char c : text) bytes.append(static_cast<uint8_t>(c));
  return bytes;
}

TEST(ModelerBytes, RegionsOfEveryKindOfCurveComeBack) {
  GcGeMatrix3d place;
  place.setToRotation(0.7, GcGeVector3d(1, 2, 3), GcGePoint3d());
  Curves curves;
  curves.add(new GcDbCircle({1, 2, 0}, GcGeVector3d::kZAxis, 3));
  curves.add(new GcDbEllipse({50, 0, 0}, GcGeVector3d::kZAxis, {4, 3, 0}, 0.25));
  auto* polyline = new GcDbPolyline;
  ignore(polyline->addVertexAt(0, {100, 0}));
  ignore(polyline->addVertexAt(1, {110, 0}, -0.3));
  ignore(polyline->addVertexAt(2, {110, 10}));
  polyline->setClosed(true);
  curves.add(polyline);
  for (auto& curve : curves.owned) ASSERT_EQ(curve->transformBy(place), Gcad::eOk);
  const auto regions = regionsOf(curves);
  ASSERT_EQ(regions.size(), 3u);
  for (const auto& region : regions) {
    GcArray<uint8_t> bytes;
    ASSERT_EQ(region->getBytes(bytes), Gcad::eOk);
    GcDbRegion back;
    ASSERT_EQ(back.setBytes(bytes), Gcad::eOk);
    double area = 0, perimeter = 0;
    GcGePoint3d centroid;
    ASSERT_EQ(region->getArea(area), Gcad::eOk);
    ASSERT_EQ(region->getPerimeter(perimeter), Gcad::eOk);
    ASSERT_EQ(region->getCentroid(centroid), Gcad::eOk);
    expectArea(back, area, perimeter, centroid);
  }
}

// The head and the first record, byte by byte.
TEST(ModelerBytes, AreLaidOutAsTheFormatSays) {
  Curves curves;
  curves.add(new GcDbCircle({1, 2, 0}, GcGeVector3d::kZAxis, 3));
  GcArray<uint8_t> bytes;
  ASSERT_EQ(regionsOf(curves)[0]->getBytes(bytes), Gcad::eOk);
  const std::string all(reinterpret_cast<const char*>(bytes.begin()), static_cast<size_t>(bytes.length()));
  using namespace std::string_literals;
  const std::string head = "ACIS BinaryFile"s + "\x28\x55\0\0"s + "\0\0\0\0"s + "\2\0\0\0"s + "\0\0\0\0"s;
  EXPECT_EQ(all.substr(0, head.size()), head);
  const std::string body =
      "\x0D\x04"
      "body"s +
      "\x0C\xFF\xFF\xFF\xFF"s + "\x04\xFF\xFF\xFF\xFF"s + "\x0C\xFF\xFF\xFF\xFF"s + "\x0C\2\0\0\0"s;
  EXPECT_NE(all.find(body), std::string::npos);
  const std::string plane =
      "\x0E\x05"
      "plane"
      "\x0D\x07"
      "surface"s;
  EXPECT_NE(all.find(plane), std::string::npos);
  const std::string end =
      "\x0E\x03"
      "End"
      "\x0E\x02"
      "of"
      "\x0E\x03"
      "ASM"
      "\x0D\x04"
      "data"s;
  EXPECT_EQ(all.substr(all.size() - end.size()), end);
}

// Integers of eight bytes, as the newest kind of head announces them.
TEST(ModelerBytes, OfTheNewestKindAreRead) {
  Curves curves;
  curves.add(new GcDbCircle({1, 2, 0}, GcGeVector3d::kZAxis, 3));
  GcArray<uint8_t> bytes;
  ASSERT_EQ(regionsOf(curves)[0]->getBytes(bytes), Gcad::eOk);
  std::string wide = "ASM BinaryFile8";
  const auto integer = [&](int at) {
    int32_t value = 0;
    std::memcpy(&value, bytes.begin() + at, sizeof value);
    const int64_t stretched = value;
    wide.append(reinterpret_cast<const char*>(&stretched), sizeof stretched);
  };
  const auto copy = [&](int at, int count) {
    wide.append(reinterpret_cast<const char*>(bytes.begin()) + at, static_cast<size_t>(count));
  };
  int at = 15;
  for (int i = 0; i < 4; ++i, at += 4) integer(at);
  while (at < bytes.length()) {
    const int tag = bytes[at];
    copy(at++, 1);
    if (tag == 4 || tag == 12 || tag == 21) {
      integer(at);
      at += 4;
      continue;
    }
    const int size = tag == 6                             ? 8
                     : tag == 19 || tag == 20             ? 24
                     : tag == 7 || tag == 13 || tag == 14 ? 1 + bytes[at]
                                                          : 0;
    copy(at, size);
    at += size;
  }
  GcDbRegion region;
  ASSERT_EQ(region.setBytes(bytesOf(wide)), Gcad::eOk);
  expectArea(region, 9 * kPi, 6 * kPi, {1, 2, 0});
}

TEST(ModelerBytes, ThatAreNoPlaneAreaAreKept) {
  GcDbRegion region;
  const GcArray<uint8_t> bytes = bytesOf("ASM BinaryFile4 and what nobody knows");
  EXPECT_EQ(region.setBytes(bytes), Gcad::eNotApplicable);
  GcArray<uint8_t> kept;
  EXPECT_EQ(region.getBytes(kept), Gcad::eOk);
  EXPECT_TRUE(kept == bytes);
  double area = 0;
  EXPECT_EQ(region.getArea(area), Gcad::eNotApplicable);
}

TEST(ModelerBytes, DamagedOnesAreRefusedOrReadButNeverFollowedForEver) {
  Curves curves;
  curves.add(new GcDbEllipse({50, 0, 0}, GcGeVector3d::kZAxis, {4, 3, 0}, 0.25));
  GcArray<uint8_t> bytes;
  ASSERT_EQ(regionsOf(curves)[0]->getBytes(bytes), Gcad::eOk);
  std::mt19937 random(13);
  for (int i = 0; i < 4000; ++i) {
    GcArray<uint8_t> damaged = bytes;
    for (int k = 0; k < 3; ++k) damaged[static_cast<int>(random() % damaged.length())] = static_cast<uint8_t>(random());
    if (i % 2 == 0) damaged.setLogicalLength(static_cast<int>(random() % damaged.length()));
    GcDbRegion region;
    ignore(region.setBytes(damaged));
  }
}

}  // namespace
