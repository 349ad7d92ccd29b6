// Curves without length, radius, axis or sense, and numbers that are none: every question ends, with a status or with
// finite numbers, for each of them alone and for each pair.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tests/db/curves/any_curve.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kPi = 3.14159265358979323846;
constexpr double kOdd[] = {0, -0.0, 1, -1, 0.5, 1e-320, 1e308, -1e308, kNaN, kInf, -kInf, 2 * kPi};

using Curve = std::unique_ptr<GcDbCurve>;

struct Case {
  std::string name;
  Curve curve;
};

Curve polyline(std::initializer_list<GcDbPolylineVertex> vertices, bool closed) {
  auto made = std::make_unique<GcDbPolyline>();
  for (const GcDbPolylineVertex& v : vertices) ignore(made->addVertexAt(made->numVerts(), v.point, v.bulge));
  made->setClosed(closed);
  return made;
}

Curve spline(int degree, const std::vector<GcGePoint3d>& points, const std::vector<double>& knots,
             const std::vector<double>& weights = {}) {
  auto made = std::make_unique<GcDbSpline>();
  GcArray<GcGePoint3d> p;
  GcArray<double> k, w;
  for (const GcGePoint3d& each : points) p.append(each);
  for (const double each : knots) k.append(each);
  for (const double each : weights) w.append(each);
  ignore(made->setNurbsData(degree, !weights.empty(), false, false, p, k, w));
  return made;
}

Curve through(std::initializer_list<GcGePoint3d> points) {
  auto made = std::make_unique<GcDbSpline>();
  GcArray<GcGePoint3d> p;
  for (const GcGePoint3d& each : points) p.append(each);
  ignore(made->setFitData(p, {}, {}));
  return made;
}

Curve ray(const GcGePoint3d& base, const GcGeVector3d& direction) {
  auto made = std::make_unique<GcDbRay>();
  ignore(made->setBasePoint(base));
  ignore(made->setUnitDir(direction));
  return made;
}

Curve leader(std::initializer_list<GcGePoint3d> points) {
  auto made = std::make_unique<GcDbLeader>();
  for (const GcGePoint3d& each : points) made->appendVertex(each);
  return made;
}

template <class T, class... A>
Curve make(A... arguments) {
  return std::make_unique<T>(arguments...);
}

std::vector<Case> lines() {
  std::vector<Case> all;
  const GcGePoint3d o(0, 0, 0), far(1e308, -1e308, 1e308);
  all.push_back({"line without length", make<GcDbLine>(o, o)});
  all.push_back({"line of the least length", make<GcDbLine>(o, GcGePoint3d(5e-324, 0, 0))});
  all.push_back({"line with NaN", make<GcDbLine>(o, GcGePoint3d(kNaN, 0, 0))});
  all.push_back({"line to infinity", make<GcDbLine>(o, GcGePoint3d(kInf, 0, 0))});
  all.push_back({"line across everything", make<GcDbLine>(GcGePoint3d(-1e308, 1e308, -1e308), far)});
  all.push_back({"line far out", make<GcDbLine>(GcGePoint3d(1e15, 1e15, 0), GcGePoint3d(1e15 + 1, 1e15, 0))});
  all.push_back({"ordinary line", make<GcDbLine>(GcGePoint3d(-3, -1, 0), GcGePoint3d(4, 2, 0))});
  all.push_back({"ray without direction", ray(o, {0, 0, 0})});
  all.push_back({"ray with NaN", ray(o, {kNaN, 1, 0})});
  all.push_back({"ray from infinity", ray({kInf, 0, 0}, {1, 0, 0})});
  all.push_back({"ordinary ray", ray(o, {0.6, 0.8, 0})});
  all.push_back({"leader without points", leader({})});
  all.push_back({"leader of one point", leader({{1, 1, 0}})});
  all.push_back({"leader back to its start", leader({{1, 1, 0}, {2, 1, 0}, {1, 1, 0}})});
  all.push_back({"leader with NaN", leader({{1, 1, 0}, {kNaN, 1, 0}})});
  return all;
}

std::vector<Case> rounds() {
  std::vector<Case> all;
  const GcGePoint3d o(0, 0, 0);
  const GcGeVector3d z(0, 0, 1), none(0, 0, 0);
  for (const double radius : {0.0, -1.0, kNaN, kInf, 1e-320, 1e300, 2.0})
    all.push_back({"circle of radius " + std::to_string(radius), make<GcDbCircle>(o, z, radius)});
  all.push_back({"circle without normal", make<GcDbCircle>(o, none, 1.0)});
  all.push_back({"circle with NaN normal", make<GcDbCircle>(o, GcGeVector3d(0, kNaN, 1), 1.0)});
  for (const double end : {0.0, 1e-300, kNaN, kInf, -1e308, 2 * kPi, 2.0})
    all.push_back({"arc to " + std::to_string(end), make<GcDbArc>(o, 2.0, 0.0, end)});
  all.push_back({"arc without radius", make<GcDbArc>(o, 0.0, 0.0, 1.0)});
  for (const double ratio : {0.0, 1e-300, 1e-12, kNaN, -0.5, 1.0, 7.0})
    all.push_back({"ellipse of ratio " + std::to_string(ratio), make<GcDbEllipse>(o, z, GcGeVector3d(3, 0, 0), ratio)});
  all.push_back({"ellipse without axis", make<GcDbEllipse>(o, z, none, 0.5)});
  all.push_back({"ellipse with NaN", make<GcDbEllipse>(o, z, GcGeVector3d(kNaN, 0, 0), 0.5)});
  all.push_back({"ellipse of no sweep", make<GcDbEllipse>(o, z, GcGeVector3d(3, 0, 0), 0.5, 1.0, 1.0)});
  all.push_back({"ellipse to NaN", make<GcDbEllipse>(o, z, GcGeVector3d(3, 0, 0), 0.5, 0.0, kNaN)});
  all.push_back({"ellipse of many turns", make<GcDbEllipse>(o, z, GcGeVector3d(3, 0, 0), 0.5, 0.0, 1e6)});
  return all;
}

std::vector<Case> chains() {
  std::vector<Case> all;
  all.push_back({"polyline without vertices", polyline({}, true)});
  all.push_back({"polyline of one vertex", polyline({{{1, 1}, 0.5}}, true)});
  all.push_back({"polyline of one place", polyline({{{1, 1}}, {{1, 1}, 1}, {{1, 1}, -1}}, true)});
  all.push_back({"doubled vertices", polyline({{{0, 0}}, {{0, 0}, 0.5}, {{4, 0}}, {{4, 0}, 3}, {{4, 3}}}, true)});
  all.push_back({"closed there and back", polyline({{{0, 0}}, {{4, 0}}}, true)});
  all.push_back({"open there and back", polyline({{{0, 0}}, {{4, 0}}, {{0, 0}}, {{4, 0}}}, false)});
  for (const double bulge : {kNaN, kInf, 1e300, -1e300, 1e-300, 1e-12, 1e8})
    all.push_back({"bulge " + std::to_string(bulge), polyline({{{0, 0}, bulge}, {{4, 0}}, {{4, 3}}}, true)});
  all.push_back({"vertex NaN", polyline({{{0, 0}}, {{kNaN, 0}}, {{4, 3}}}, true)});
  all.push_back({"vertices far apart", polyline({{{-1e308, 0}}, {{1e308, 0}, 1}, {{0, 1e308}}}, true)});
  const std::vector<GcGePoint3d> four = {{0, 0, 0}, {1, 3, 0}, {3, 3, 0}, {4, 0, 0}};
  const std::vector<GcGePoint3d> same(4, GcGePoint3d(1, 1, 1));
  const std::vector<double> clamped = {0, 0, 0, 0, 1, 1, 1, 1};
  all.push_back({"spline", spline(3, four, clamped)});
  all.push_back({"spline of one place", spline(3, same, clamped)});
  all.push_back({"spline without knots", spline(3, four, {})});
  all.push_back({"spline of equal knots", spline(3, four, std::vector<double>(8, 1.0))});
  all.push_back(
      {"spline of huge knots", spline(3, four, {-1e308, -1e308, -1e308, -1e308, 1e308, 1e308, 1e308, 1e308})});
  all.push_back({"spline of tight knots", spline(3, four, {0, 0, 0, 0, 5e-324, 5e-324, 5e-324, 5e-324})});
  all.push_back({"spline torn apart", spline(1, four, {0, 0, 1, 1, 2, 2})});
  all.push_back({"spline of cusps", spline(2, {{0, 0, 0}, {0, 0, 0}, {2, 2, 0}, {2, 2, 0}}, {0, 0, 0, 1, 2, 2, 2})});
  all.push_back({"spline on itself", spline(3, {{0, 0, 0}, {4, 0, 0}, {0, 0, 0}, {4, 0, 0}}, clamped)});
  all.push_back({"spline of weight 0", spline(3, four, clamped, {1, 0, 1, 1})});
  all.push_back({"spline of far weights", spline(3, four, clamped, {1, 1e-200, 1e200, 1})});
  all.push_back({"through nothing", through({})});
  all.push_back({"through one place", through({{1, 1, 0}, {1, 1, 0}})});
  all.push_back({"through doubled points", through({{0, 0, 0}, {1, 1, 0}, {1, 1, 0}, {2, 0, 0}})});
  all.push_back({"through NaN", through({{0, 0, 0}, {kNaN, 1, 0}, {2, 0, 0}})});
  return all;
}

std::vector<Case> allCases() {
  std::vector<Case> all;
  for (auto* part : {lines, rounds, chains})
    for (Case& each : part()) all.push_back(std::move(each));
  return all;
}

bool isFinite(const GcGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }
bool isFinite(const GcGeVector3d& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }
bool isFinite(double value) { return std::isfinite(value); }

// What a query gives is finite, or a failure that leaves the output alone.
template <class Value, class Query>
void expectSound(const char* what, const Query& query) {
  Value value{};
  const Gcad::ErrorStatus status = query(value);
  if (status == Gcad::eOk)
    EXPECT_TRUE(isFinite(value)) << what;
  else
    EXPECT_EQ(value, Value{}) << what;
}

void askNumbers(const GcDbCurve& c, double t) {
  SCOPED_TRACE(t);
  expectSound<GcGePoint3d>("pointAtParam", [&](auto& v) { return c.getPointAtParam(t, v); });
  expectSound<GcGePoint3d>("pointAtDist", [&](auto& v) { return c.getPointAtDist(t, v); });
  expectSound<double>("paramAtDist", [&](auto& v) { return c.getParamAtDist(t, v); });
  expectSound<double>("distAtParam", [&](auto& v) { return c.getDistAtParam(t, v); });
  expectSound<GcGeVector3d>("firstDeriv", [&](auto& v) { return c.getFirstDeriv(t, v); });
  expectSound<GcGeVector3d>("secondDeriv", [&](auto& v) { return c.getSecondDeriv(t, v); });
}

void askPoints(const GcDbCurve& c, const GcGePoint3d& p) {
  expectSound<double>("paramAtPoint", [&](auto& v) { return c.getParamAtPoint(p, v); });
  expectSound<double>("distAtPoint", [&](auto& v) { return c.getDistAtPoint(p, v); });
  for (const bool extend : {false, true}) {
    expectSound<GcGePoint3d>("closest", [&](auto& v) { return c.getClosestPointTo(p, v, extend); });
    for (const GcGeVector3d& way : {GcGeVector3d(0, 0, 1), GcGeVector3d(1, 0, 0), GcGeVector3d(0, 0, 0),
                                    GcGeVector3d(kNaN, 0, 1), GcGeVector3d(1e-320, 0, 0)})
      expectSound<GcGePoint3d>("projected", [&](auto& v) { return c.getClosestPointTo(p, way, v, extend); });
  }
}

void dispose(GcDbVoidPtrArray& made) {
  for (void* each : made) {
    auto* entity = static_cast<GcDbEntity*>(each);
    const GcDbCurve* curve = GcDbCurve::cast(entity);
    double t = 0;
    if (curve != nullptr) ignore(curve->getEndParam(t));
    delete entity;
  }
  made.clear();
}

void askShapes(const GcDbCurve& c) {
  for (const double distance : {0.5, -0.5, 1e-300, 1e300, 0.0, kNaN, kInf}) {
    GcDbVoidPtrArray made;
    ignore(c.getOffsetCurves(distance, made));
    dispose(made);
  }
  for (const double t : kOdd) {
    GcDbVoidPtrArray made;
    GcArray<double> cuts;
    cuts.append(t);
    ignore(c.getSplitCurves(cuts, made));
    dispose(made);
  }
}

void askAll(const GcDbCurve& c) {
  static_cast<void>(c.isClosed());
  static_cast<void>(c.isPeriodic());
  static_cast<void>(c.isPlanar());
  expectSound<double>("startParam", [&](auto& v) { return c.getStartParam(v); });
  expectSound<double>("endParam", [&](auto& v) { return c.getEndParam(v); });
  expectSound<GcGePoint3d>("startPoint", [&](auto& v) { return c.getStartPoint(v); });
  expectSound<GcGePoint3d>("endPoint", [&](auto& v) { return c.getEndPoint(v); });
  expectSound<double>("area", [&](auto& v) { return c.getArea(v); });
  for (const double t : kOdd) askNumbers(c, t);
  for (const GcGePoint3d& p : {GcGePoint3d(0, 0, 0), GcGePoint3d(1, 1, 0), GcGePoint3d(1e308, 0, 0),
                               GcGePoint3d(kNaN, 0, 0), GcGePoint3d(kInf, 0, 0), GcGePoint3d(2, -3, 1e15)})
    askPoints(c, p);
  askShapes(c);
}

TEST(DegenerateCurve, EveryQuestionEndsSoundly) {
  for (const Case& each : allCases()) {
    SCOPED_TRACE(each.name);
    askAll(*each.curve);
  }
}

// Curves squeezed, blown up or broken along one axis or more.
TEST(DegenerateCurve, GeneratedOnesSqueezedAndBlownUpStaySound) {
  constexpr double kFactors[] = {1, 1, 1, 0, 1e-9, 1e-15, 1e-160, 1e-300, 1e80, 1e160, -1, kNaN, kInf};
  for (uint32_t seed = 1; seed <= 12; ++seed) {
    GcDbDatabase database;
    for (int kind = 0; kind < AnyCurve::kKinds; ++kind) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      AnyCurve any(80000 + seed * 16 + static_cast<uint32_t>(kind), database);
      const AnyCurvePtr curve = any.curve(kind), other = any.curve(static_cast<int>(seed) % AnyCurve::kKinds);
      GcGeMatrix3d matrix;
      for (int i = 0; i < 3; ++i)
        matrix.entry[i][i] = kFactors[static_cast<size_t>(any.between(0, std::size(kFactors) - 1e-9))];
      ignore(curve->transformBy(matrix));
      askAll(*curve);
      GcArray<GcGePoint3d> points;
      ignore(curve->intersectWith(other.get(), GcDb::kExtendBoth, points));
      for (const GcGePoint3d& p : points) EXPECT_TRUE(isFinite(p));
    }
  }
}

TEST(DegenerateCurve, EveryPairMeetsSoundly) {
  const std::vector<Case> all = allCases();
  for (const Case& first : all)
    for (const Case& second : all) {
      SCOPED_TRACE(first.name + " with " + second.name);
      for (const GcDb::Intersect mode :
           {GcDb::kOnBothOperands, GcDb::kExtendThis, GcDb::kExtendArg, GcDb::kExtendBoth}) {
        GcArray<GcGePoint3d> points;
        ignore(first.curve->intersectWith(second.curve.get(), mode, points));
        for (const GcGePoint3d& p : points) EXPECT_TRUE(isFinite(p));
      }
    }
}

TEST(DegenerateCurve, MovedBySingularMatricesStaysSound) {
  GcGeMatrix3d flat, nothing, broken;
  flat.entry[2][2] = 0;
  for (auto& row : nothing.entry)
    for (double& number : row) number = 0;
  broken.entry[0][0] = kNaN;
  for (const GcGeMatrix3d& m : {flat, nothing, broken})
    for (Case& each : allCases()) {
      SCOPED_TRACE(each.name);
      ignore(each.curve->transformBy(m));
      expectSound<GcGePoint3d>("startPoint", [&](auto& v) { return each.curve->getStartPoint(v); });
      expectSound<double>("area", [&](auto& v) { return each.curve->getArea(v); });
    }
}

}  // namespace
