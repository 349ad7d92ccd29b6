// Splines and leaders as entities: against de Boor's algorithm with fifty digits, and what a file may leave out.
#include "db/spline.h"

#include <gtest/gtest.h>

#include <array>
#include <boost/math/quadrature/gauss.hpp>
#include <boost/multiprecision/cpp_bin_float.hpp>
#include <memory>
#include <random>

#include "db/ellipse.h"
#include "db/leader.h"

namespace {

using Wide = boost::multiprecision::cpp_bin_float_50;
using Vector = std::array<Wide, 3>;

// A spline by its definition, in wide numbers.
struct Reference {
  int degree = 3;
  std::vector<Wide> knots;
  std::vector<std::array<Wide, 4>> poles;  // times their weight, and the weight

  [[nodiscard]] Wide start() const { return knots[static_cast<size_t>(degree)]; }
  [[nodiscard]] Wide end() const { return knots[poles.size()]; }

  // The pole that blending of the given degree gives at t; poles of that degree, knots from `shift` on.
  static std::array<Wide, 4> deBoor(std::vector<std::array<Wide, 4>> row, const std::vector<Wide>& u, int p,
                                    const Wide& t) {
    const int count = static_cast<int>(row.size());
    int at = p;
    while (at + 1 < count && u[static_cast<size_t>(at) + 1] <= t) ++at;
    for (int r = 1; r <= p; ++r)
      for (int i = at; i > at - p + r - 1; --i) {
        const auto k = static_cast<size_t>(i);
        const Wide from = u[k], to = u[static_cast<size_t>(i + p - r + 1)];
        const Wide s = to == from ? Wide(0) : Wide((t - from) / (to - from));
        for (size_t c = 0; c < 4; ++c) row[k][c] = (1 - s) * row[k - 1][c] + s * row[k][c];
      }
    return row[static_cast<size_t>(at)];
  }

  void at(const Wide& t, Vector& point, Vector& first) const {
    const auto h = deBoor(poles, knots, degree, t);
    std::vector<std::array<Wide, 4>> slopes(poles.size() - 1);
    for (size_t i = 0; i < slopes.size(); ++i) {
      const Wide width = knots[i + static_cast<size_t>(degree) + 1] - knots[i + 1];
      for (size_t c = 0; c < 4; ++c)
        slopes[i][c] = width == 0 ? Wide(0) : Wide(degree * (poles[i + 1][c] - poles[i][c]) / width);
    }
    const std::vector<Wide> inner(knots.begin() + 1, knots.end() - 1);
    const auto d = deBoor(slopes, inner, degree - 1, t);
    for (size_t c = 0; c < 3; ++c) {
      point[c] = h[c] / h[3];
      first[c] = (d[c] - point[c] * d[3]) / h[3];
    }
  }

  // Integral over the knot intervals, each in so many parts.
  template <class F>
  [[nodiscard]] Wide integral(const F& f, int parts) const {
    Wide sum = 0;
    for (size_t i = static_cast<size_t>(degree); i < poles.size(); ++i) {
      const Wide from = knots[i], width = (knots[i + 1] - knots[i]) / parts;
      if (width == 0) continue;
      for (int k = 0; k < parts; ++k)
        sum += boost::math::quadrature::gauss<Wide, 20>::integrate(f, Wide(from + k * width),
                                                                   Wide(from + (k + 1) * width));
    }
    return sum;
  }
  [[nodiscard]] Wide length(int parts) const {
    return integral(
        [&](const Wide& t) {
          Vector p, d;
          at(t, p, d);
          return Wide(sqrt(Wide(d[0] * d[0] + d[1] * d[1] + d[2] * d[2])));
        },
        parts);
  }
  // Of a curve in a level plane, closed by a straight line.
  [[nodiscard]] Wide area(int parts) const {
    Vector origin, ignored, last;
    at(start(), origin, ignored);
    at(end(), last, ignored);
    const Wide swept = integral(
        [&](const Wide& t) {
          Vector p, d;
          at(t, p, d);
          return Wide(((p[0] - origin[0]) * d[1] - (p[1] - origin[1]) * d[0]) / 2);
        },
        parts);
    return abs(swept);
  }
};

struct Made {
  std::unique_ptr<GcDbSpline> spline = std::make_unique<GcDbSpline>();
  Reference reference;
  double size = 0;
};

// A walk of control points; some knots twice. `out`: how far from the origin it lies.
Made anySpline(uint32_t seed, bool planar, double out) {
  std::mt19937_64 engine(seed);
  const auto between = [&](double low, double high) {
    return low + (high - low) * static_cast<double>(engine() >> 11) * 0x1p-53;
  };
  const int degree = 1 + static_cast<int>(engine() % 5);
  const int count = degree + 1 + static_cast<int>(engine() % 8);
  const bool rational = engine() % 2 == 0;
  const double scale = std::pow(10.0, between(-2, 3));
  GcArray<GcGePoint3d> points;
  GcArray<double> knots, weights;
  GcGePoint3d place(out, -out / 2, planar ? 0 : out / 3);
  for (int i = 0; i < count; ++i) {
    place = place + GcGeVector3d(between(0.2, 2), between(-2, 2), planar ? 0 : between(-2, 2)) * scale;
    points.append(place);
    weights.append(rational ? between(0.3, 3) : 1);
  }
  double knot = between(-3, 3);
  for (int i = 0; i <= degree; ++i) knots.append(knot);
  for (int i = 0; i < count - degree - 1; ++i) {
    if (i == 0 || degree < 2 || engine() % 4 != 0) knot += between(0.2, 2);
    knots.append(knot);
  }
  knot += 1;
  for (int i = 0; i <= degree; ++i) knots.append(knot);

  Made made;
  made.reference.degree = degree;
  for (const double k : knots) made.reference.knots.emplace_back(k);
  for (int i = 0; i < count; ++i) {
    const Wide w = weights[i];
    made.reference.poles.push_back({points[i].x * w, points[i].y * w, points[i].z * w, w});
    made.size = std::max(made.size, points[i].distanceTo(points[0]));
  }
  EXPECT_EQ(made.spline->setNurbsData(degree, rational, false, false, points, knots, weights), Gcad::eOk);
  return made;
}

double off(const GcGePoint3d& p, const Vector& wide) {
  const Wide x = wide[0] - p.x, y = wide[1] - p.y, z = wide[2] - p.z;
  return static_cast<double>(sqrt(Wide(x * x + y * y + z * z)));
}

TEST(Spline, PointsAndDerivativesAgreeWithFiftyDigits) {
  for (uint32_t seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const double out = seed % 3 == 0 ? 5e6 : 0;
    const Made made = anySpline(seed, false, out);
    const double near = 1e-12 * made.size + 4e-16 * out;
    double from = 0, to = 0;
    ASSERT_EQ(made.spline->getStartParam(from), Gcad::eOk);
    ASSERT_EQ(made.spline->getEndParam(to), Gcad::eOk);
    EXPECT_EQ(from, static_cast<double>(made.reference.start()));
    EXPECT_EQ(to, static_cast<double>(made.reference.end()));
    for (int i = 0; i <= 16; ++i) {
      const double t = i == 16 ? to : from + (to - from) * i / 16;
      Vector point, first;
      made.reference.at(t, point, first);
      GcGePoint3d p;
      GcGeVector3d d;
      ASSERT_EQ(made.spline->getPointAtParam(t, p), Gcad::eOk);
      EXPECT_LE(off(p, point), 2 * near) << t;
      ASSERT_EQ(made.spline->getFirstDeriv(t, d), Gcad::eOk);
      const double speed = d.length() + made.size;
      EXPECT_LE(off({d.x, d.y, d.z}, first), 1e-10 * speed + 1e-9 * out / 5e6) << t;
    }
  }
}

TEST(Spline, LengthsAndAreasAgreeWithFiftyDigits) {
  for (uint32_t seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const Made made = anySpline(1000 + seed, true, seed % 3 == 0 ? 5e6 : 0);
    double to = 0, length = 0, area = 0;
    ASSERT_EQ(made.spline->getEndParam(to), Gcad::eOk);
    ASSERT_EQ(made.spline->getDistAtParam(to, length), Gcad::eOk);
    // The reference's own error is what halving its parts changes.
    const Wide fine = made.reference.length(12);
    const double unsure = static_cast<double>(abs(Wide(fine - made.reference.length(6))));
    EXPECT_LE(std::abs(static_cast<double>(Wide(fine - length))), 1e-10 * length + unsure);
    EXPECT_LE(unsure, 1e-9 * length);
    ASSERT_EQ(made.spline->getArea(area), Gcad::eOk);
    EXPECT_LE(std::abs(static_cast<double>(Wide(made.reference.area(4) - area))), 1e-10 * made.size * length);
    double t = 0, back = 0;
    for (const double part : {0.1, 0.5, 0.9}) {
      ASSERT_EQ(made.spline->getParamAtDist(part * length, t), Gcad::eOk);
      ASSERT_EQ(made.spline->getDistAtParam(t, back), Gcad::eOk);
      EXPECT_NEAR(back, part * length, 1e-10 * length);
    }
  }
}

TEST(Spline, PiecesAndReversalKeepItsPoints) {
  for (uint32_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    Made made = anySpline(5000 + seed, false, 0);
    double from = 0, to = 0;
    ASSERT_EQ(made.spline->getStartParam(from), Gcad::eOk);
    ASSERT_EQ(made.spline->getEndParam(to), Gcad::eOk);
    GcArray<double> cuts;
    cuts.append(from + (to - from) * 0.3);
    GcDbVoidPtrArray pieces;
    ASSERT_EQ(made.spline->getSplitCurves(cuts, pieces), Gcad::eOk);
    ASSERT_EQ(pieces.length(), 2);
    double whole = 0, sum = 0;
    ASSERT_EQ(made.spline->getDistAtParam(to, whole), Gcad::eOk);
    for (void* each : pieces) {
      const std::unique_ptr<GcDbEntity> owner(static_cast<GcDbEntity*>(each));
      const GcDbCurve* piece = GcDbCurve::cast(owner.get());
      ASSERT_NE(piece, nullptr);
      double end = 0, length = 0;
      ASSERT_EQ(piece->getEndParam(end), Gcad::eOk);
      ASSERT_EQ(piece->getDistAtParam(end, length), Gcad::eOk);
      sum += length;
    }
    EXPECT_NEAR(sum, whole, 1e-9 * whole);
    GcGePoint3d start, end, newStart, newEnd;
    ASSERT_EQ(made.spline->getStartPoint(start), Gcad::eOk);
    ASSERT_EQ(made.spline->getEndPoint(end), Gcad::eOk);
    ASSERT_EQ(made.spline->reverseCurve(), Gcad::eOk);
    ASSERT_EQ(made.spline->getStartPoint(newStart), Gcad::eOk);
    ASSERT_EQ(made.spline->getEndPoint(newEnd), Gcad::eOk);
    EXPECT_LE(newStart.distanceTo(end), 1e-12 * made.size);
    EXPECT_LE(newEnd.distanceTo(start), 1e-12 * made.size);
  }
}

// Every point of every parallel lies at the distance, and none is nearer.
void expectParallel(const GcDbCurve& source, double distance) {
  SCOPED_TRACE(distance);
  GcDbVoidPtrArray made;
  ASSERT_EQ(source.getOffsetCurves(distance, made), Gcad::eOk);
  EXPECT_GT(made.length(), 0);
  for (void* each : made) {
    const std::unique_ptr<GcDbEntity> owner(static_cast<GcDbEntity*>(each));
    const GcDbSpline* parallel = GcDbSpline::cast(owner.get());
    ASSERT_NE(parallel, nullptr);
    double from = 0, to = 0;
    ASSERT_EQ(parallel->getStartParam(from), Gcad::eOk);
    ASSERT_EQ(parallel->getEndParam(to), Gcad::eOk);
    for (int i = 0; i <= 200; ++i) {
      GcGePoint3d at, nearest;
      ASSERT_EQ(parallel->getPointAtParam(from + (to - from) * i / 200, at), Gcad::eOk);
      ASSERT_EQ(source.getClosestPointTo(at, nearest), Gcad::eOk);
      EXPECT_NEAR(at.distanceTo(nearest), std::abs(distance), 2e-7 * std::abs(distance));
    }
  }
}

TEST(Spline, ParallelsOfEllipsesAndSplinesAreSplinesAtTheDistance) {
  const GcDbEllipse ellipse({3, 4, 0}, {0, 0, 1}, {6, 1, 0}, 0.4);
  const GcDbEllipse part({3, 4, 0}, {0, 0, 1}, {6, 1, 0}, 0.4, 0.3, 2.0);
  for (const double distance : {0.5, -0.5, 20.0}) {
    expectParallel(ellipse, distance);
    expectParallel(part, distance);
  }
  GcDbSpline wave;
  GcArray<GcGePoint3d> points;
  GcArray<double> knots;
  for (const GcGePoint3d& p :
       {GcGePoint3d(0, 0, 0), GcGePoint3d(2, 6, 0), GcGePoint3d(5, -5, 0), GcGePoint3d(8, 5, 0), GcGePoint3d(10, 0, 0)})
    points.append(p);
  for (const double k : {0, 0, 0, 0, 1, 2, 2, 2, 2}) knots.append(k);
  ASSERT_EQ(wave.setNurbsData(3, false, false, false, points, knots, GcArray<double>()), Gcad::eOk);
  for (const double distance : {0.3, -0.3, 2.0, -2.0}) expectParallel(wave, distance);
}

TEST(Spline, WithoutControlPointsRunsThroughItsFitPoints) {
  GcDbSpline spline;
  GcArray<GcGePoint3d> through;
  for (const GcGePoint3d& p : {GcGePoint3d(0, 0, 0), GcGePoint3d(3, 4, 0), GcGePoint3d(6, 0, 1)}) through.append(p);
  ASSERT_EQ(spline.setFitData(through, {}, {}), Gcad::eOk);
  double t = 0;
  for (const GcGePoint3d& p : through) EXPECT_EQ(spline.getParamAtPoint(p, t), Gcad::eOk);
  EXPECT_FALSE(spline.isClosed());
  EXPECT_EQ(GcDbSpline().getStartParam(t), Gcad::eDegenerateGeometry);
}

TEST(Spline, IsClosedWhenItEndsWhereItStarts) {
  GcDbSpline spline;
  GcArray<GcGePoint3d> points;
  GcArray<double> knots;
  for (const GcGePoint3d& p : {GcGePoint3d(0, 0, 0), GcGePoint3d(4, 0, 0), GcGePoint3d(0, 4, 0), GcGePoint3d(0, 0, 0)})
    points.append(p);
  for (const double k : {0, 0, 0, 0, 1, 1, 1, 1}) knots.append(k);
  ASSERT_EQ(spline.setNurbsData(3, false, false, false, points, knots, GcArray<double>()), Gcad::eOk);
  EXPECT_TRUE(spline.isClosed());
  EXPECT_FALSE(spline.isPeriodic());
  EXPECT_TRUE(spline.isPlanar());
  GcGePoint3d start, end;
  ASSERT_EQ(spline.getStartPoint(start), Gcad::eOk);
  ASSERT_EQ(spline.getEndPoint(end), Gcad::eOk);
  EXPECT_EQ(start, end);
}

TEST(Leader, CountsItsPoints) {
  GcDbLeader leader;
  for (const GcGePoint3d& p : {GcGePoint3d(0, 0, 0), GcGePoint3d(3, 4, 0), GcGePoint3d(3, 9, 0)})
    leader.appendVertex(p);
  double value = 0;
  GcGePoint3d p;
  ASSERT_EQ(leader.getEndParam(value), Gcad::eOk);
  EXPECT_EQ(value, 2);
  ASSERT_EQ(leader.getDistAtParam(1.5, value), Gcad::eOk);
  EXPECT_DOUBLE_EQ(value, 7.5);
  ASSERT_EQ(leader.getPointAtParam(0.5, p), Gcad::eOk);
  EXPECT_EQ(p, GcGePoint3d(1.5, 2, 0));
  EXPECT_FALSE(leader.isClosed());
}

}  // namespace
