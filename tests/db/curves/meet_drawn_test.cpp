// Meetings with entities that are no curves, through the lines they are made of: references in references scaled
// unevenly, hatches, regions, writing, dimensions; at drawing scales from 1e-3 to 1e7, in tilted planes, also 5e6 out.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "db/blockreference.h"
#include "db/dimension.h"
#include "db/hatch.h"
#include "db/idmapping.h"
#include "db/mtext.h"
#include "db/region.h"
#include "db/text.h"
#include "tests/db/curves/any_curve.h"

namespace {

using Points = GcArray<GcGePoint3d>;

Points meet(const GcDbEntity& a, const GcDbEntity& b) {
  Points points;
  const Gcad::ErrorStatus status = a.intersectWith(&b, GcDb::kOnBothOperands, points);
  EXPECT_EQ(status, Gcad::eOk);
  return points;
}

double leastGap(const Points& points) {
  double least = 1e300;
  for (int i = 0; i < points.length(); ++i)
    for (int j = 0; j < i; ++j) least = std::min(least, points[i].distanceTo(points[j]));
  return least;
}

// As many, each one near to one of the others; at a flat angle the place is unsure.
void expectSame(const Points& found, const Points& expected, double near) {
  ASSERT_EQ(found.length(), expected.length());
  for (const GcGePoint3d& p : expected) {
    double least = 1e300;
    for (const GcGePoint3d& q : found) least = std::min(least, p.distanceTo(q));
    EXPECT_LE(least, near);
  }
}

void expectInOrder(const Points& found, const GcGePoint3d& from) {
  for (int i = 1; i < found.length(); ++i) EXPECT_LT(from.distanceTo(found[i - 1]), from.distanceTo(found[i]));
}

Points moved(const Points& points, const GcGeMatrix3d& place) {
  Points images;
  for (const GcGePoint3d& p : points) images.append(place * p);
  return images;
}

GcDbObjectId newBlock(GcDbDatabase& database, const GCHAR* name) {
  GcDbBlockTable* blocks = nullptr;
  EXPECT_EQ(database.getSymbolTable(blocks, GcDb::kForWrite), Gcad::eOk);
  auto* block = new GcDbBlockTableRecord;
  EXPECT_EQ(block->setName(name), Gcad::eOk);
  GcDbObjectId id;
  EXPECT_EQ(blocks->add(id, block), Gcad::eOk);
  EXPECT_EQ(block->close(), Gcad::eOk);
  EXPECT_EQ(blocks->close(), Gcad::eOk);
  return id;
}

GcDbObjectId append(GcDbObjectId blockId, GcDbEntity* entity) {
  GcDbBlockTableRecord* block = nullptr;
  EXPECT_EQ(gcdbOpenObject(block, blockId, GcDb::kForWrite), Gcad::eOk);
  GcDbObjectId id;
  EXPECT_EQ(block->appendGcDbEntity(id, entity), Gcad::eOk);
  EXPECT_EQ(block->close(), Gcad::eOk);
  return id;
}

void copyInto(GcDbDatabase& database, GcDbObjectId source, GcDbObjectId blockId) {
  GcDbObjectIdArray ids;
  ids.append(source);
  GcDbIdMapping map;
  ASSERT_EQ(database.deepCloneObjects(ids, blockId, map, false), Gcad::eOk);
}

// A line across what the generated curves cover.
GcDbLine probe(AnyCurve& any) {
  const double turn = any.between(0, AnyCurve::kTwoPi);
  const GcGeVector3d way(std::cos(turn), std::sin(turn), 0);
  const GcGePoint3d through = any.point();
  return {through + way * -30, through + way * 30};
}

// The probe's image meets the references where the probe meets the curve: a matrix takes lines to lines, so what is
// compared is the curve's own closed form with the meeting through two uneven scalings.
TEST(DrawnMeetings, ReferencesInReferencesScaledUnevenly) {
  int found = 0;
  for (uint32_t seed = 1; seed <= 150; ++seed)
    for (int kind = 0; kind < AnyCurve::kKinds; ++kind) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      GcDbDatabase database;
      AnyCurve any(5000 + seed * 16 + static_cast<uint32_t>(kind), database);
      AnyCurvePtr curve = any.curve(kind);
      GcDbObjectId curveId = curve->objectId();
      if (curveId.isNull()) curveId = append(database.modelSpaceId(), curve.get());
      const GcDbObjectId inner = newBlock(database, GC_T("inner")), outer = newBlock(database, GC_T("outer"));
      GcDbCurve* source = curve.release();
      ASSERT_EQ(source->close(), Gcad::eOk);
      copyInto(database, curveId, inner);
      auto* first = new GcDbBlockReference({any.between(-3, 3), any.between(-3, 3), 0}, inner);
      ASSERT_EQ(first->setScaleFactors({any.between(0.3, 3), -any.between(0.3, 3), 1}), Gcad::eOk);
      ASSERT_EQ(first->setRotation(any.between(0, 6)), Gcad::eOk);
      append(outer, first);
      const GcGeMatrix3d within = first->blockTransform();
      ASSERT_EQ(first->close(), Gcad::eOk);
      const double scale = std::pow(10, any.between(-3, 7));
      const double out = seed % 3 == 0 ? 5e6 : 10;
      GcDbBlockReference second({out, -out, out}, outer);
      ASSERT_EQ(second.setScaleFactors({scale * any.between(0.3, 3), scale * any.between(0.3, 3), scale}), Gcad::eOk);
      ASSERT_EQ(second.setRotation(any.between(0, 6)), Gcad::eOk);
      ASSERT_EQ(second.setNormal(any.unit()), Gcad::eOk);
      const GcGeMatrix3d place = second.blockTransform() * within;
      const GcDbLine across = probe(any);
      ASSERT_EQ(gcdbOpenObject(source, curveId, GcDb::kForRead), Gcad::eOk);
      const Points plain = meet(across, *source);
      ASSERT_EQ(source->close(), Gcad::eOk);
      const GcDbLine image(place * across.startPoint(), place * across.endPoint());
      const double near = 1e-9 * 100 * scale + 1e-14 * out;
      if (leastGap(plain) * scale < 1e4 * near) continue;
      const Points points = meet(image, second);
      expectSame(points, moved(plain, place), 1000 * near);
      expectInOrder(points, image.startPoint());
      expectSame(meet(second, image), points, 1000 * near);
      found += points.length();
    }
  EXPECT_GT(found, 1500);
}

// Lines of one family crossed by a probe: where the distance across them is a whole number of steps, inside the square.
TEST(DrawnMeetings, HatchLinesAreCrossedWhereTheyAre) {
  int found = 0;
  for (uint32_t seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    GcDbDatabase database;
    AnyCurve any(800 + seed, database);
    GcDbHatch hatch;
    GcDbHatchLoop square;
    square.flags = 2;
    for (const GcGePoint2d& p : {GcGePoint2d(-4, -4), GcGePoint2d(4, -4), GcGePoint2d(4, 4), GcGePoint2d(-4, 4)})
      square.vertices.append({p, 0});
    ASSERT_EQ(hatch.appendLoop(square), Gcad::eOk);
    ASSERT_EQ(hatch.setPatternAngle(any.between(0, 6)), Gcad::eOk);
    ASSERT_EQ(hatch.setPatternScale(any.between(0.3, 2)), Gcad::eOk);
    ASSERT_EQ(hatch.setPattern(GcDbHatch::kUserDefined, GC_T("_USER")), Gcad::eOk);
    ASSERT_EQ(hatch.patternLines().length(), 1);
    const GcDbHatchPatternLine& family = hatch.patternLines()[0];
    const GcGeVector3d across(-std::sin(family.angleRad), std::cos(family.angleRad), 0);
    const double step = across.dotProduct({family.offsetX, family.offsetY, 0});
    const GcDbLine line = probe(any);
    const GcGeVector3d way = line.endPoint() - line.startPoint();
    const double climb = way.dotProduct(across);
    const double start = (line.startPoint() - GcGePoint3d(family.baseX, family.baseY, 0)).dotProduct(across);
    Points expected;
    bool unsure = std::abs(climb) < 0.1;
    for (int k = -2000; k <= 2000; ++k) {
      const double t = (k * step - start) / climb;
      if (!(t > 0 && t < 1)) continue;
      const GcGePoint3d p = line.startPoint() + way * t;
      const double inside = 4 - std::max(std::abs(p.x), std::abs(p.y));
      unsure = unsure || std::abs(inside) < 1e-6;
      if (inside > 0) expected.append(p);
    }
    if (unsure) continue;
    expectSame(meet(line, hatch), expected, 1e-8);
    const GcGeMatrix3d place = any.place();
    const double near = 1e-7 * place.scale() + 1e-14 * place.translation().length();
    if (near > 1e-4 * place.scale()) continue;
    ASSERT_EQ(hatch.transformBy(place), Gcad::eOk);
    const GcDbLine image(place * line.startPoint(), place * line.endPoint());
    const Points points = meet(image, hatch);
    expectSame(points, moved(expected, place), near);
    expectInOrder(points, image.startPoint());
    found += points.length();
  }
  EXPECT_GT(found, 500);
}

// A region is met where the curves it was made of are.
TEST(DrawnMeetings, RegionsAreMetAtTheirCurves) {
  int found = 0;
  for (uint32_t seed = 1; seed <= 150; ++seed)
    for (const int kind : {AnyCurve::Circle, AnyCurve::Ellipse, AnyCurve::LwPolyline, AnyCurve::Spline}) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      GcDbDatabase database;
      AnyCurve any(4000 + seed * 16 + static_cast<uint32_t>(kind), database);
      const AnyCurvePtr curve = any.curve(kind);
      const GcGeMatrix3d place = any.place();
      const GcDbLine across = probe(any);
      ASSERT_EQ(curve->transformBy(place), Gcad::eOk);
      GcDbVoidPtrArray curves, made;
      curves.append(curve.get());
      std::unique_ptr<GcDbLine> chord;  // closes an open curve
      if (!curve->isClosed()) {
        GcGePoint3d from, to;
        ASSERT_EQ(curve->getStartPoint(from), Gcad::eOk);
        ASSERT_EQ(curve->getEndPoint(to), Gcad::eOk);
        curves.append((chord = std::make_unique<GcDbLine>(to, from)).get());
      }
      if (GcDbRegion::createFromCurves(curves, made) != Gcad::eOk) continue;  // crosses itself
      ASSERT_EQ(made.length(), 1);
      const std::unique_ptr<GcDbRegion> region(static_cast<GcDbRegion*>(made[0]));
      const GcDbLine image(place * across.startPoint(), place * across.endPoint());
      Points expected = meet(image, *curve);
      if (chord)
        for (const GcGePoint3d& p : meet(image, *chord)) expected.append(p);
      const double near = 1e-7 * place.scale() + 1e-13 * place.translation().length();
      if (leastGap(expected) < 100 * near) continue;
      const Points points = meet(image, *region);
      expectSame(points, expected, near);
      expectInOrder(points, image.startPoint());
      expectSame(meet(*region, image), expected, near);
      found += points.length();
    }
  EXPECT_GT(found, 300);
}

struct Drawn {
  const char* name;
  std::function<GcDbEntity*()> make;
};

std::vector<Drawn> writing() {
  std::vector<Drawn> all;
  all.push_back({"text", [] {
                   auto* text = new GcDbText({-3, -1, 0}, GC_T("Abc def"), {}, 2, 0.3);
                   return text;
                 }});
  all.push_back({"slanted text", [] {
                   auto* text = new GcDbText({-3, -1, 0}, GC_T("Abc"), {}, 2, 1.3);
                   ignore(text->setOblique(0.3));
                   return text;
                 }});
  for (const int attachment : {1, 5, 9})
    all.push_back({"paragraphs", [attachment] {
                     auto* text = new GcDbMText;
                     ignore(text->setContents(GC_T("first line\\Psecond {\\H2x;one}\\Pthird")));
                     ignore(text->setTextHeight(1));
                     ignore(text->setRotation(0.4));
                     ignore(text->setAttachment(static_cast<GcDbMText::AttachmentPoint>(attachment)));
                     return text;
                   }});
  return all;
}

// Wherever writing stands, as many sides of its boxes are crossed, at the same places.
TEST(DrawnMeetings, WritingAnywhere) {
  for (const Drawn& each : writing()) {
    int found = 0;
    for (uint32_t seed = 1; seed <= 120; ++seed) {
      SCOPED_TRACE(::testing::Message() << each.name << ", seed " << seed);
      GcDbDatabase database;
      AnyCurve any(100 + seed, database);
      GcDbEntity* entity = each.make();
      const GcDbObjectId id = append(database.modelSpaceId(), entity);
      const GcDbLine line = probe(any);
      const Points plain = meet(line, *entity);
      ASSERT_EQ(entity->close(), Gcad::eOk);
      GcGeMatrix3d place = any.place();
      const double near = 1e-8 * place.scale() + 1e-13 * place.translation().length();
      if (leastGap(plain) * place.scale() < 1e4 * near) continue;
      ASSERT_EQ(gcdbOpenObject(entity, id, GcDb::kForWrite), Gcad::eOk);
      ASSERT_EQ(entity->transformBy(place), Gcad::eOk);
      ASSERT_EQ(entity->close(), Gcad::eOk);
      ASSERT_EQ(gcdbOpenObject(entity, id, GcDb::kForRead), Gcad::eOk);
      const GcDbLine image(place * line.startPoint(), place * line.endPoint());
      const Points points = meet(image, *entity);
      expectSame(points, moved(plain, place), 100 * near);
      expectInOrder(points, image.startPoint());
      expectSame(meet(*entity, image), points, 100 * near);
      ASSERT_EQ(entity->close(), Gcad::eOk);
      found += points.length();
    }
    EXPECT_GT(found, 30) << each.name;
  }
}

// Every meeting with an entity of the block, each place once.
Points meetBlock(const GcDbEntity& entity, GcDbObjectId blockId, double near) {
  GcDbBlockTableRecord* block = nullptr;
  EXPECT_EQ(gcdbOpenObject(block, blockId, GcDb::kForRead), Gcad::eOk);
  Points all;
  for (const GcDbObjectId id : block->entities()) {
    GcDbEntity* part = nullptr;
    if (gcdbOpenObject(part, id, GcDb::kForRead) != Gcad::eOk) continue;
    Points points;
    ignore(entity.intersectWith(part, GcDb::kOnBothOperands, points));  // points of definition draw nothing
    EXPECT_EQ(part->close(), Gcad::eOk);
    for (const GcGePoint3d& p : points) {
      const bool known =
          std::any_of(all.begin(), all.end(), [&](const GcGePoint3d& q) { return p.distanceTo(q) <= near; });
      if (!known) all.append(p);
    }
  }
  EXPECT_EQ(block->close(), Gcad::eOk);
  return all;
}

// Dimensions are met at what their block holds, which is drawn anew when they are moved.
TEST(DrawnMeetings, DimensionsAnywhere) {
  int found = 0;
  for (uint32_t seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    GcDbDatabase database;
    AnyCurve any(100 + seed, database);
    GcDbDimension* dimension = new GcDbAlignedDimension({-4, -2, 0}, {4, 2, 0}, {0, 4, 0});
    if (seed % 2 == 0) {
      delete dimension;
      dimension = new GcDbRotatedDimension(0.2, {-4, -2, 0}, {4, 2, 0}, {0, 4, 0});
    }
    const GcDbObjectId id = append(database.modelSpaceId(), dimension);
    const GcGeMatrix3d place = any.place();
    ASSERT_EQ(dimension->transformBy(place), Gcad::eOk);
    ASSERT_EQ(dimension->recomputeDimBlock(), Gcad::eOk);
    ASSERT_EQ(dimension->close(), Gcad::eOk);
    ASSERT_EQ(gcdbOpenObject(dimension, id, GcDb::kForRead), Gcad::eOk);
    const GcDbLine line = probe(any), image(place * line.startPoint(), place * line.endPoint());
    const double near = 1e-8 * place.scale() + 1e-13 * place.translation().length();
    const Points expected = meetBlock(image, dimension->dimBlockId(), near), points = meet(image, *dimension);
    expectSame(points, expected, near);
    expectInOrder(points, image.startPoint());
    found += points.length();
    ASSERT_EQ(dimension->close(), Gcad::eOk);
  }
  EXPECT_GT(found, 100);
}

// Paragraph text is met at the box around each of its lines.
TEST(DrawnMeetings, ParagraphsAreMetAtTheBoxesOfTheirLines) {
  GcDbMText text;
  ASSERT_EQ(text.setContents(GC_T("one\\Plonger one")), Gcad::eOk);
  ASSERT_EQ(text.setTextHeight(1), Gcad::eOk);
  ASSERT_EQ(text.setLocation({10, 20, 0}), Gcad::eOk);
  const double width = text.actualWidth(), height = text.actualHeight();
  const auto level = [&](double y) { return meet(GcDbLine({-100, y, 0}, {100, y, 0}), text); };
  const auto upright = [&](double x) { return meet(GcDbLine({x, 100, 0}, {x, -100, 0}), text); };
  const Points first = level(20 - 0.5), second = level(20 - height + 0.5);
  ASSERT_EQ(first.length(), 2);
  ASSERT_EQ(second.length(), 2);
  EXPECT_NEAR(first[0].x, 10, 1e-9);
  EXPECT_LT(first[1].x, 10 + 0.7 * width);
  EXPECT_NEAR(second[0].x, 10, 1e-9);
  EXPECT_NEAR(second[1].x, 10 + width, 1e-9);
  EXPECT_EQ(upright(10.1).length(), 4);
  EXPECT_EQ(upright(10 + 0.9 * width).length(), 2);
  EXPECT_EQ(upright(10 + 1.1 * width).length(), 0);
  EXPECT_EQ(level(20.1).length(), 0);
}

}  // namespace
