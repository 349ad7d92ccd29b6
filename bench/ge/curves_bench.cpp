// Curve queries on one core: cubic NURBS of 20 poles, polylines of 1,000 segments.
#include <benchmark/benchmark.h>

#include <numbers>
#include <random>

#include "host/ge/curves/measure.h"
#include "host/ge/curves/meet.h"
#include "host/ge/curves/nurbs.h"
#include "host/ge/curves/offset.h"

namespace {

constexpr double kPi = std::numbers::pi;

std::mt19937_64& engine() {
  static std::mt19937_64 e(42);
  return e;
}
double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(engine()); }

GcGeNurbs wave(double phase, bool rational) {
  constexpr int kPoles = 20;
  GcGeNurbs spline;
  for (int i = 0; i < kPoles; ++i) {
    spline.points.push_back({i * 5.0, 20 * std::sin(i * 0.9 + phase) + between(-2, 2), 0});
    if (rational) spline.weights.push_back(between(0.5, 2));
  }
  spline.knots.assign(4, 0);
  for (int i = 1; i < kPoles - 3; ++i) spline.knots.push_back(i);
  spline.knots.insert(spline.knots.end(), 4, kPoles - 3);
  return spline;
}

GcGePath pathOf(const GcGeNurbs& spline) {
  GcGePath path;
  if (!gcgePathOfNurbs(spline, path)) std::abort();
  return path;
}

void splineToPath(benchmark::State& state) {
  const GcGeNurbs spline = wave(0, false);
  for (auto _ : state) {
    GcGePath path;
    benchmark::DoNotOptimize(gcgePathOfNurbs(spline, path));
  }
}
BENCHMARK(splineToPath);

void splineLength(benchmark::State& state) {
  const GcGePath path = pathOf(wave(0, state.range(0) != 0));
  for (auto _ : state) benchmark::DoNotOptimize(path.length());
}
BENCHMARK(splineLength)->Arg(0)->Arg(1);

void splinePointAtDistance(benchmark::State& state) {
  const GcGePath path = pathOf(wave(0, state.range(0) != 0));
  const double total = path.measure().total();
  double at = 0;
  for (auto _ : state) {
    at += 0.137 * total;
    if (at > total) at -= total;
    double t = 0;
    GcGePoint3d point;
    path.paramAtDist(at, t);
    path.pointAt(t, point);
    benchmark::DoNotOptimize(point);
  }
}
BENCHMARK(splinePointAtDistance)->Arg(0)->Arg(1);

void splineClosestPoint(benchmark::State& state) {
  const GcGePath path = pathOf(wave(0, state.range(0) != 0));
  std::vector<GcGePoint3d> from;
  for (int i = 0; i < 1024; ++i) from.push_back({between(-10, 105), between(-40, 40), 0});
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(path.closestTo(from[i++ & 1023]));
}
BENCHMARK(splineClosestPoint)->Arg(0)->Arg(1);

// 0: paths used again and again, 1: made anew each time.
void splineWithSpline(benchmark::State& state) {
  const GcGeNurbs a = wave(0, false), b = wave(1.3, false);
  GcGePath pa = pathOf(a), pb = pathOf(b);
  size_t crossings = 0;
  for (auto _ : state) {
    if (state.range(0) != 0) pa = pathOf(a), pb = pathOf(b);
    crossings = gcgeMeet(pa, pb, gcgeMeetTolerance(pa, pb)).points.size();
  }
  state.counters["crossings"] = static_cast<double>(crossings);
}
BENCHMARK(splineWithSpline)->Arg(0)->Arg(1);

GcGePath wavyPolyline(int segments, double waves, double height, double turnRad, bool arcs) {
  GcGePoint3d last;
  GcGePath path(last);
  for (int i = 0; i <= segments; ++i) {
    const double x = static_cast<double>(i) / segments * 100, y = height * std::sin(x / 100 * waves * 2 * kPi);
    const double c = std::cos(turnRad), s = std::sin(turnRad);
    const GcGePoint3d next(50 + (x - 50) * c - y * s, (x - 50) * s + y * c, 0);
    if (i > 0) path.addBulge(last, next, arcs && i % 2 == 0 ? 0.2 : 0, GcGeVector3d::kZAxis, i - 1, i);
    last = next;
  }
  return path;
}

// Two polylines of 1,000 segments; the argument is the number of waves, which sets the number of crossings.
void polylineWithPolyline(benchmark::State& state) {
  const double waves = static_cast<double>(state.range(0));
  const GcGePath a = wavyPolyline(1000, waves, 30, 0, false), b = wavyPolyline(1000, waves, 30, kPi / 2, false);
  size_t crossings = 0;
  for (auto _ : state) {
    const GcGePath pa(a), pb(b);  // trees are made anew
    crossings = gcgeMeet(pa, pb, gcgeMeetTolerance(pa, pb)).points.size();
  }
  state.counters["crossings"] = static_cast<double>(crossings);
}
BENCHMARK(polylineWithPolyline)->Arg(5)->Arg(6)->Arg(31)->Arg(33);

// A closed polyline of 1,000 vertices, every second segment an arc.
void polylineOffset(benchmark::State& state) {
  const double distance = static_cast<double>(state.range(0)) / 100;
  GcGePath source((GcGePoint3d()));
  const auto corner = [](int i) {
    const double angle = 2 * kPi * i / 1000, radius = 100 + 4 * std::sin(angle * 25);
    return GcGePoint3d(radius * std::cos(angle), radius * std::sin(angle), 0);
  };
  for (int i = 0; i < 1000; ++i)
    source.addBulge(corner(i), corner((i + 1) % 1000), i % 2 == 0 ? 0 : 0.15, GcGeVector3d::kZAxis, i, i + 1);
  source.setClosed(true, true);
  size_t spans = 0;
  for (auto _ : state) {
    const GcGePath fresh(source);
    spans = 0;
    for (const GcGePath& p : gcgeOffset(fresh, GcGeVector3d::kZAxis, distance)) spans += p.spans().size();
  }
  state.counters["spans"] = static_cast<double>(spans);
}
BENCHMARK(polylineOffset)->Arg(20)->Arg(-20)->Arg(200)->Arg(-200)->Unit(benchmark::kMicrosecond);

void polylineOffsetLarge(benchmark::State& state) {
  GcGePath source((GcGePoint3d()));
  GcGePoint3d last;
  for (int i = 1; i < 10000; ++i) {
    const GcGePoint3d next(i * 0.1, between(-1, 1), 0);
    source.addLine(last, next, i - 1, i);
    last = next;
  }
  for (auto _ : state) {
    const GcGePath fresh(source);
    benchmark::DoNotOptimize(gcgeOffset(fresh, GcGeVector3d::kZAxis, 0.05));
  }
}
BENCHMARK(polylineOffsetLarge)->Unit(benchmark::kMillisecond);

}  // namespace
