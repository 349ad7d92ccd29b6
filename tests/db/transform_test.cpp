// Scaling by different factors along the axes: who can be scaled so is, point by point; who cannot says so and stays.
#include <gtest/gtest.h>

#include <functional>

#include "db/blockreference.h"
#include "db/dimension.h"
#include "db/hatch.h"
#include "db/mtext.h"
#include "db/text.h"
#include "host/db/core/memoryfiler.h"
#include "tests/db/curves/any_curve.h"

namespace {

GcGeMatrix3d uneven(double x, double y, double z) {
  GcGeMatrix3d matrix;
  matrix.entry[0][0] = x, matrix.entry[1][1] = y, matrix.entry[2][2] = z;
  return matrix;
}

bool hasBulges(const GcDbCurve& curve) {
  if (const GcDbPolyline* polyline = GcDbPolyline::cast(&curve)) return polyline->hasBulges();
  const GcDb2dPolyline* heavy = GcDb2dPolyline::cast(&curve);
  if (heavy == nullptr) return false;
  bool bulges = false;
  GcDbObjectIdArray ids;
  heavy->vertexIds(ids);
  for (const GcDbObjectId id : ids) {
    GcDb2dVertex* vertex = nullptr;
    if (gcdbOpenObject(vertex, id, GcDb::kForRead) != Gcad::eOk) continue;
    bulges = bulges || vertex->bulge() != 0;
    ignore(vertex->close());
  }
  return bulges;
}

TEST(UnevenScale, CurvesAreScaledPointByPointOrRefuse) {
  int scaled = 0, refused = 0;
  for (uint32_t seed = 1; seed <= 60; ++seed) {
    GcDbDatabase database;
    for (int kind = 0; kind < AnyCurve::kKinds; ++kind) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      AnyCurve any(seed * 16 + static_cast<uint32_t>(kind), database);
      const AnyCurvePtr curve = any.curve(kind);
      const GcGeMatrix3d matrix = uneven(any.between(0.3, 3), any.between(0.3, 3), any.between(0.3, 3));
      std::vector<GcGePoint3d> images;
      for (int i = 0; i < 10; ++i) {
        GcGePoint3d on;
        ASSERT_EQ(curve->getClosestPointTo(any.point(), on), Gcad::eOk);
        images.push_back(matrix * on);
      }
      const bool round = kind == AnyCurve::Circle || kind == AnyCurve::Arc || hasBulges(*curve);
      const std::vector<uint8_t> former = gcdbImageOf(*curve, GcDb::kCopyFiler);
      ASSERT_EQ(curve->transformBy(matrix), round ? Gcad::eCannotScaleNonUniformly : Gcad::eOk);
      ++(round ? refused : scaled);
      if (round) {
        EXPECT_EQ(gcdbImageOf(*curve, GcDb::kCopyFiler), former);
        continue;
      }
      for (const GcGePoint3d& image : images) {
        GcGePoint3d on;
        ASSERT_EQ(curve->getClosestPointTo(image, on), Gcad::eOk);
        EXPECT_LE(on.distanceTo(image), 1e-12 * (20 + image.asVector().length()));
      }
    }
  }
  EXPECT_GT(scaled, 400);
  EXPECT_GT(refused, 150);
}

void expectRefused(GcDbEntity& entity, const GcGeMatrix3d& matrix) {
  const std::vector<uint8_t> former = gcdbImageOf(entity, GcDb::kCopyFiler);
  EXPECT_EQ(entity.transformBy(matrix), Gcad::eCannotScaleNonUniformly);
  EXPECT_EQ(gcdbImageOf(entity, GcDb::kCopyFiler), former);
}

TEST(UnevenScale, HatchesDimensionsAndSkewedReferencesRefuse) {
  const GcGeMatrix3d matrix = uneven(2, 1, 1);
  GcDbHatch hatch;
  expectRefused(hatch, matrix);
  GcDbAlignedDimension dimension({0, 0, 0}, {4, 3, 0}, {0, 5, 0});
  expectRefused(dimension, matrix);
  GcDbBlockReference turned({1, 2, 0}, {});
  ignore(turned.setRotation(0.5));
  expectRefused(turned, matrix);
}

TEST(UnevenScale, ReferencesAlongTheAxesTakeItAsTheirFactors) {
  GcDbBlockReference level({1, 2, 0}, {});
  ASSERT_EQ(level.transformBy(uneven(2, 3, 4)), Gcad::eOk);
  EXPECT_EQ(level.position(), GcGePoint3d(2, 6, 0));
  EXPECT_EQ(level.scaleFactors().sx, 2);
  EXPECT_EQ(level.scaleFactors().sy, 3);
  EXPECT_EQ(level.scaleFactors().sz, 4);
}

// Text keeps its letters' base vectors: width factor and slant take up what height and turn cannot.
TEST(UnevenScale, TextTakesItAsWidthFactorAndSlant) {
  GcDbText text({1, 1, 0}, GC_T("abc"), {}, 2, 0);
  ASSERT_EQ(text.transformBy(uneven(3, 2, 1)), Gcad::eOk);
  EXPECT_DOUBLE_EQ(text.height(), 4);
  EXPECT_DOUBLE_EQ(text.widthFactor(), 1.5);
  EXPECT_DOUBLE_EQ(text.oblique(), 0);
  EXPECT_EQ(text.position(), GcGePoint3d(3, 2, 0));
}

}  // namespace
