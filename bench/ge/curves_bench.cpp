// Curve queries on one core: cubic NURBS of 20 poles, polylines of 1,000 segments.
#include <benchmark/benchmark.h>

#include "bench/ge/cases.h"
#include "host/ge/curves/measure.h"
#include "host/ge/curves/meet.h"
#include "host/ge/curves/offset.h"

namespace {

using namespace gebench;

// The argument of the spline benchmarks: 1 for a rational spline.
void splineToPath(benchmark::State& state) {
  const GcGeNurbs spline = wave(0, state.range(0) != 0);
  for (auto _ : state) {
    GcGePath path;
    benchmark::DoNotOptimize(gcgePathOfNurbs(spline, path));
  }
}
BENCHMARK(splineToPath)->Arg(0)->Arg(1);

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
  const std::vector<GcGePoint3d> from = pointsAround(1024);
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(path.closestTo(from[i++ & 1023]));
}
BENCHMARK(splineClosestPoint)->Arg(0)->Arg(1);

// First argument 0: paths used again and again, 1: made anew each time; second 1: rational.
void splineWithSpline(benchmark::State& state) {
  const bool rational = state.range(1) != 0;
  const GcGeNurbs a = wave(0, rational), b = wave(1.3, rational);
  GcGePath pa = pathOf(a), pb = pathOf(b);
  size_t crossings = 0;
  for (auto _ : state) {
    if (state.range(0) != 0) pa = pathOf(a), pb = pathOf(b);
    crossings = gcgeMeet(pa, pb, gcgeMeetTolerance(pa, pb)).points.size();
  }
  state.counters["crossings"] = static_cast<double>(crossings);
}
BENCHMARK(splineWithSpline)->ArgsProduct({{0, 1}, {0, 1}});

// Trees are made anew each time. The argument: 0 for few crossings, 1 for many.
void polylineWithPolyline(benchmark::State& state) {
  const Polylines pair = state.range(0) != 0 ? manyCrossings() : fewCrossings();
  const GcGePath a = pathOf(pair.a), b = pathOf(pair.b);
  size_t crossings = 0;
  for (auto _ : state) {
    const GcGePath pa(a), pb(b);
    crossings = gcgeMeet(pa, pb, gcgeMeetTolerance(pa, pb)).points.size();
  }
  state.counters["crossings"] = static_cast<double>(crossings);
}
BENCHMARK(polylineWithPolyline)->Arg(0)->Arg(1);

// A closed polyline of 1,000 vertices, every second segment an arc; the argument: hundredths of the distance.
void polylineOffset(benchmark::State& state) {
  const double distance = static_cast<double>(state.range(0)) / 100;
  const GcGePath source = ring();
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
  std::mt19937_64 engine(42);
  std::uniform_real_distribution<double> height(-1, 1);
  for (int i = 1; i < 10000; ++i) {
    const GcGePoint3d next(i * 0.1, height(engine), 0);
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
