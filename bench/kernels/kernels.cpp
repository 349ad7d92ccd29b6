// Times curve questions of our kernel and of the peer, if built in, in turns: prints one line for each,
//   name <tab> what came out <tab> ours per second [<tab> peer's per second <tab> what came out there]
// kernels --polylines FILE: writes the polylines' corners for peers in other languages, and times nothing.
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <string>

#include "bench/ge/cases.h"
#include "bench/kernels/peer.h"
#include "host/ge/curves/measure.h"
#include "host/ge/curves/meet.h"
#include "host/ge/curves/offset.h"

namespace {

using namespace gebench;
using Work = std::function<double()>;  // one question; gives what came out

// Best rate of several rounds, in processor time: what else runs on the machine only slows down.
double perSecond(const Work& work) {
  double best = 0;
  constexpr int kRounds = 7;
  constexpr double kRoundSeconds = 0.12, kMostSeconds = 2;
  for (int round = 0; round < kRounds; ++round) {
    long count = 0;
    const std::clock_t start = std::clock();
    double spent = 0;
    for (long step = 1; spent < kRoundSeconds; step *= 2) {
      for (long i = 0; i < step; ++i) work();
      count += step;
      spent = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }
    best = std::max(best, static_cast<double>(count) / spent);
    if (spent > kMostSeconds) break;
  }
  return best;
}

void report(const std::string& name, const Work& ours, const Work& peers) {
  const double own = ours(), others = peers ? peers() : 0;
  std::printf("%s\t%.12g\t%.6g", name.c_str(), own, perSecond(ours));
  if (peers) std::printf("\t%.6g\t%.12g", perSecond(peers), others);
  std::printf("\n");
  std::fflush(stdout);
}

double total(const std::vector<GcGePath>& paths) {
  double spans = 0;
  for (const GcGePath& path : paths) spans += static_cast<double>(path.spans().size());
  return spans;
}

void splines(bool rational) {
  const std::string kind = rational ? "rational spline" : "spline";
  const GcGeNurbs first = wave(0, rational), second = wave(1.3, rational);
  const GcGePath path = pathOf(first), other = pathOf(second);
  const std::vector<GcGePoint3d> from = pointsAround(1024);
  const double whole = path.measure().total();
  // Each side asks the same questions in the same order.
  struct Turn {
    double part = 0;
    size_t index = 0;
    double nextPart() { return part = std::fmod(part + 0.137, 1.0); }
    size_t nextIndex() { return index++ & 1023; }
  } own, others;
  const GcGePath fresh = pathOf(first);
  const Work length = [&] { return fresh.length(); };
  const Work byDistance = [&] {
    double t = 0;
    GcGePoint3d p;
    path.paramAtDist(whole * own.nextPart(), t);
    path.pointAt(t, p);
    return p.x;
  };
  const Work nearest = [&] { return path.closestTo(from[own.nextIndex()]).distance; };
  const Work meets = [&] {
    return static_cast<double>(gcgeMeet(path, other, gcgeMeetTolerance(path, other)).points.size());
  };
  Work peerLength, peerByDistance, peerNearest, peerMeets;
#ifdef GC_HAS_OCCT
  const peer::Spline spline(first);
  const peer::Pair pair(first, second);
  peerLength = [&] { return spline.length(); };
  peerByDistance = [&] { return spline.pointAtDistance(whole * others.nextPart()).x; };
  peerNearest = [&] { return spline.distanceTo(from[others.nextIndex()]); };
  peerMeets = [&] { return static_cast<double>(pair.crossings()); };
#endif
  report(kind + ": length", length, peerLength);
  report(kind + ": point at distance", byDistance, peerByDistance);
  report(kind + ": closest point", nearest, peerNearest);
  report(kind + " with " + kind, meets, peerMeets);
}

void polylines(const Polylines& corners) {
  const std::string name = std::string("polylines, ") + corners.name;
  const GcGePath a = pathOf(corners.a), b = pathOf(corners.b);
  const auto count = [](const GcGePath& x, const GcGePath& y) {
    return static_cast<double>(gcgeMeet(x, y, gcgeMeetTolerance(x, y)).points.size());
  };
  Work peers;
#ifdef GC_HAS_OCCT
  const peer::Polylines pair(corners.a, corners.b);
  peers = [&] { return static_cast<double>(pair.crossings()); };
#endif
  report(
      name, [&] { return count(a, b); }, peers);
  report(name + ", new each time", [&] { return count(GcGePath(a), GcGePath(b)); }, {});
}

void offsets() {
  const GcGePath source = ring();
  for (const double distance : {0.2, -0.2, 2.0, -2.0}) {
    Work peers;
#ifdef GC_HAS_OCCT
    const peer::Ring other;
    peers = [&] { return static_cast<double>(other.parallel(distance)); };
#endif
    char name[64];
    std::snprintf(name, sizeof name, "parallel at %g of 500 arcs", distance);
    report(
        name, [&] { return total(gcgeOffset(GcGePath(source), GcGeVector3d::kZAxis, distance)); }, peers);
  }
}

bool writePolylines(const char* file) {
  std::FILE* out = std::fopen(file, "w");
  if (out == nullptr) return false;
  const auto put = [&](const char* name, const std::vector<GcGePoint3d>& corners) {
    std::fprintf(out, "%s", name);
    for (const GcGePoint3d& p : corners) std::fprintf(out, "\t%.17g %.17g", p.x, p.y);
    std::fprintf(out, "\n");
  };
  for (const Polylines& pair : {fewCrossings(), manyCrossings()}) put(pair.name, pair.a), put(pair.name, pair.b);
  std::vector<GcGePoint3d> corners;  // the ring, each arc as eight chords
  const GcGePath path = ring();
  for (int i = 0; i < kRingCorners; ++i)
    for (int k = 0; k < (i % 2 == 0 ? 1 : 8); ++k) {
      GcGePoint3d p;
      path.pointAt(i + k / 8.0, p);
      corners.push_back(p);
    }
  put("ring", corners);
  return std::fclose(out) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--polylines") == 0) return writePolylines(argv[2]) ? 0 : 1;
  if (argc > 1) return std::fprintf(stderr, "usage: kernels [--polylines FILE]\n"), 2;
  // What a drawing leaves behind: the allocator keeps what is freed instead of handing it back after each question.
  std::make_unique<char[]>(size_t{16} << 20)[0] = 1;
  splines(false);
  splines(true);
  polylines(fewCrossings());
  polylines(manyCrossings());
  offsets();
  return 0;
}
