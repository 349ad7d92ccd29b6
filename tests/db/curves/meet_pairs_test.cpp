// Meetings of generated pairs of every kind of curve, at drawing scales from 1e-3 to 1e7, in tilted planes, also 5e6 out.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include "db/arc.h"
#include "db/circle.h"
#include "db/ellipse.h"
#include "db/leader.h"
#include "db/line.h"
#include "db/polyline.h"
#include "db/spline.h"
#include "db/xline.h"

namespace {

using Curve = std::unique_ptr<GcDbCurve>;
constexpr double kTwoPi = 2 * 3.14159265358979323846;

class Any {
 public:
  explicit Any(uint32_t seed) : m_engine(seed * 2654435761u + 11) {}
  double between(double low, double high) {
    return low + (high - low) * static_cast<double>(m_engine() >> 11) * 0x1p-53;
  }
  GcGePoint3d point() {
    const double x = between(-5, 5), y = between(-5, 5);
    return {x, y, 0};
  }
  GcGeVector3d unit() {
    for (;;) {
      const double x = between(-1, 1), y = between(-1, 1), z = between(-1, 1);
      const GcGeVector3d v(x, y, z);
      if (v.length() > 0.1 && v.length() < 1) return v.normal();
    }
  }

  static constexpr int kKinds = 9;
  Curve curve(int kind) {
    const GcGeVector3d z(0, 0, 1);
    switch (kind) {
      case 0: {
        const GcGePoint3d a = point(), b = point();
        return std::make_unique<GcDbLine>(a, b);
      }
      case 1: {
        const GcGePoint3d center = point();
        return std::make_unique<GcDbCircle>(center, z, between(0.5, 5));
      }
      case 2: {
        const GcGePoint3d center = point();
        const double radius = between(0.5, 5), from = between(0, 6), sweep = between(0.2, 6);
        return std::make_unique<GcDbArc>(center, z, radius, from, std::fmod(from + sweep, kTwoPi));
      }
      case 3: {
        const GcGePoint3d center = point();
        const double turn = between(0, 6), major = between(1, 6), ratio = between(0.1, 1);
        return std::make_unique<GcDbEllipse>(center, z, GcGeVector3d(major * std::cos(turn), major * std::sin(turn), 0),
                                             ratio);
      }
      case 4: return polyline();
      case 5: return spline();
      case 6: {
        auto ray = std::make_unique<GcDbRay>();
        ignore(ray->setBasePoint(point()));
        ignore(ray->setUnitDir(flat()));
        return ray;
      }
      case 7: {
        auto line = std::make_unique<GcDbXline>();
        ignore(line->setBasePoint(point()));
        ignore(line->setUnitDir(flat()));
        return line;
      }
      default: {
        auto leader = std::make_unique<GcDbLeader>();
        for (int i = 0; i < 4; ++i) leader->appendVertex(point());
        return leader;
      }
    }
  }

  GcGeMatrix3d place() {
    GcGeMatrix3d turn, scale, move;
    turn.setToRotation(between(0, kTwoPi), unit());
    scale.setToScaling(std::pow(10.0, between(-3, 6)));
    move.setToTranslation(unit() * (m_engine() % 3 == 0 ? 5e6 : 10));
    return move * turn * scale;
  }

 private:
  GcGeVector3d flat() {
    const double turn = between(0, kTwoPi);
    return {std::cos(turn), std::sin(turn), 0};
  }
  Curve polyline() {
    auto made = std::make_unique<GcDbPolyline>();
    for (int i = 0; i < 6; ++i) {
      const GcGePoint3d p = point();
      const double bulge = m_engine() % 2 == 0 ? 0 : between(-1.2, 1.2);
      ignore(made->addVertexAt(i, GcGePoint2d(p.x, p.y), bulge));
    }
    made->setClosed(m_engine() % 2 == 0);
    return made;
  }
  Curve spline() {
    auto made = std::make_unique<GcDbSpline>();
    GcArray<GcGePoint3d> points;
    GcArray<double> knots;
    for (int i = 0; i < 7; ++i) points.append(point());
    for (const double k : {0, 0, 0, 0, 1, 2, 3, 4, 4, 4, 4}) knots.append(k);
    ignore(made->setNurbsData(3, false, false, false, points, knots, GcArray<double>()));
    return made;
  }

  std::mt19937_64 m_engine;
};

GcArray<GcGePoint3d> meet(const GcDbCurve& a, const GcDbCurve& b) {
  GcArray<GcGePoint3d> points;
  EXPECT_EQ(a.intersectWith(&b, GcDb::kOnBothOperands, points), Gcad::eOk);
  return points;
}

// How far a point may lie off a curve: the size of the pair and the rounding of its place.
double nearFor(const GcGeMatrix3d& place, double size) {
  return 1e-9 * size * place.scale() + 1e-14 * place.translation().length();
}

double leastGap(const GcArray<GcGePoint3d>& points) {
  double least = 1e300;
  for (int i = 0; i < points.length(); ++i)
    for (int j = 0; j < i; ++j) least = std::min(least, points[i].distanceTo(points[j]));
  return least;
}

void expectOn(const GcDbCurve& curve, const GcGePoint3d& p, double near) {
  GcGePoint3d nearest;
  ASSERT_EQ(curve.getClosestPointTo(p, nearest), Gcad::eOk);
  EXPECT_LE(nearest.distanceTo(p), near);
}

TEST(CurvePairs, MeetingsLieOnBothInOrderAndOnce) {
  int found = 0;
  for (uint32_t seed = 1; seed <= 300; ++seed)
    for (int first = 0; first < Any::kKinds; ++first)
      for (int second = 0; second < Any::kKinds; ++second) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed << " kinds " << first << ' ' << second);
        Any any(seed * 100 + static_cast<uint32_t>(first * Any::kKinds + second));
        const Curve a = any.curve(first), b = any.curve(second);
        const GcArray<GcGePoint3d> flat = meet(*a, *b);
        const GcGeMatrix3d place = any.place();
        ASSERT_EQ(a->transformBy(place), Gcad::eOk);
        ASSERT_EQ(b->transformBy(place), Gcad::eOk);
        const GcArray<GcGePoint3d> points = meet(*a, *b);
        // As many wherever the pair lies and whoever is asked, unless some lie so close that rounding makes them one.
        if (leastGap(flat) * place.scale() > 1000 * nearFor(place, 20)) {
          EXPECT_EQ(points.length(), flat.length());
          EXPECT_EQ(meet(*b, *a).length(), points.length());
        }
        double last = -1e300;
        for (int i = 0; i < points.length(); ++i) {
          // Lines without end may meet far from where they are given.
          const double far = (points[i].asVector() - place.translation()).length();
          const double near = nearFor(place, 20) + 1e-14 * far;
          expectOn(*a, points[i], near);
          expectOn(*b, points[i], near);
          for (int j = 0; j < i; ++j) EXPECT_GT(points[i].distanceTo(points[j]), 0);
          // Where a curve crosses itself its parameter is ambiguous: simple curves tell the order.
          double t = 0;
          const bool simple = first < 4 || first == 6 || first == 7;
          GcGePoint3d on;
          if (!simple || a->getClosestPointTo(points[i], on) != Gcad::eOk || a->getParamAtPoint(on, t) != Gcad::eOk)
            continue;
          EXPECT_GE(t, last - near);
          last = t;
        }
        found += points.length();
      }
  EXPECT_GT(found, 10000);  // the pairs do meet
}

// Lines through common points: what a curve passes, another one passing there meets.
TEST(CurvePairs, NothingIsMissedWhereACurveIsCutByChords) {
  for (uint32_t seed = 1; seed <= 1000; ++seed)
    for (int kind = 1; kind < 6; ++kind) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      Any any(9000 + seed * 10 + static_cast<uint32_t>(kind));
      const Curve curve = any.curve(kind);
      const GcGeMatrix3d place = any.place();
      ASSERT_EQ(curve->transformBy(place), Gcad::eOk);
      double from = 0, to = 0;
      ASSERT_EQ(curve->getStartParam(from), Gcad::eOk);
      ASSERT_EQ(curve->getEndParam(to), Gcad::eOk);
      GcGePoint3d p, q;
      const double s = any.between(0.05, 0.45), t = any.between(0.55, 0.95);
      // A chord of one segment of a polyline may lie on it.
      if (kind == 4 && std::floor(from + (to - from) * s) == std::floor(from + (to - from) * t)) continue;
      ASSERT_EQ(curve->getPointAtParam(from + (to - from) * s, p), Gcad::eOk);
      ASSERT_EQ(curve->getPointAtParam(from + (to - from) * t, q), Gcad::eOk);
      const GcGeVector3d over = (q - p) * 0.1;
      const GcDbLine chord(p + over * -1.0, q + over);
      const GcArray<GcGePoint3d> points = meet(*curve, chord);
      const double near = nearFor(place, 20);
      for (const GcGePoint3d& passed : {p, q}) {
        double nearest = 1e300;
        for (const GcGePoint3d& m : points) nearest = std::min(nearest, m.distanceTo(passed));
        EXPECT_LE(nearest, 1000 * near);  // at a flat angle the place is unsure
      }
    }
}

}  // namespace
