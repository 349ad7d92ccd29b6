// Splines, leaders, tolerances.
#include "host/dwg/packing/elementfields.h"
#include "host/dwg/packing/packings.h"

namespace gc::dwg::packing {

namespace {

enum SplineField {
  kFlags,
  kDegree,
  kKnotTolerance,
  kControlTolerance,
  kFitTolerance,
  kStartTangent,
  kEndTangent,
  kKnots,
  kWeights,
  kControlPoints,
  kFitPoints,
  kScenario,
  kMethod,
  kParameters
};

enum SplineBits : unsigned { kClosed = 1, kPeriodic = 2, kRational = 4, kPlanar = 8, kLinear = 16 };
enum Scenario : int32_t { kByControls = 1, kByFit = 2 };

// From AC1027 on: what made the spline (1 points it runs through, 4 it is closed), and how its parameters run.
constexpr int32_t kMethodFit = 1;
constexpr int32_t kMethodClosed = 4;
constexpr int32_t kKnotCustom = 15;

// How a record says what follows.
struct Form {
  int32_t scenario = 0;
  int32_t method = 0;
  int32_t parameters = 0;
  bool operator==(const Form&) const = default;

  // The scenario alone does not tell: programs leave it at 1 where the method says otherwise.
  [[nodiscard]] bool isByFit(int version) const {
    if (version < kR2013) return scenario != kByControls;
    return parameters != kKnotCustom && (scenario != kByControls || (method & kMethodFit) != 0);
  }
};

template <class Io>
void bareReal(Io& io, Elements& array, int index) {
  double value = Io::kWriting ? *static_cast<const double*>(array.at(index)) : 0;
  value = io.rec.bd(value);
  if constexpr (!Io::kWriting) *static_cast<double*>(array.append()) = value;
}

template <class Io>
void barePoint(Io& io, Elements& array, int index) {
  GcGePoint3d value;
  if constexpr (Io::kWriting) value = *static_cast<const GcGePoint3d*>(array.at(index));
  value = io.rec.bd3(value);
  if constexpr (!Io::kWriting) *static_cast<GcGePoint3d*>(array.append()) = value;
}

template <class Io>
void splineByControls(Io& io) {
  auto flags = static_cast<unsigned>(io.num(kFlags));
  Elements knots = io.elements(kKnots);
  Elements weights = io.elements(kWeights);
  Elements points = io.elements(kControlPoints);
  flags = (flags & ~kRational) | (io.rec.b((flags & kRational) != 0) ? kRational : 0u);
  flags = (flags & ~kClosed) | (io.rec.b((flags & kClosed) != 0) ? kClosed : 0u);
  flags = (flags & ~kPeriodic) | (io.rec.b((flags & kPeriodic) != 0) ? kPeriodic : 0u);
  io.bd(kKnotTolerance);
  io.bd(kControlTolerance);
  const int knotCount = io.rec.count(io.rec.bl(knots.size()), 2);
  const int pointCount = io.rec.count(io.rec.bl(points.size()), 6);
  const bool isWeighted = io.rec.b(points.size() > 0 && weights.size() == points.size());
  for (int i = 0; i < knotCount && !io.rec.failed(); ++i) bareReal(io, knots, i);
  for (int i = 0; i < pointCount && !io.rec.failed(); ++i) {
    barePoint(io, points, i);
    if (isWeighted) bareReal(io, weights, i);
  }
  io.setNum(kFlags, flags | kPlanar);
}

template <class Io>
void splineByFit(Io& io, int32_t method) {
  Elements points = io.elements(kFitPoints);
  io.bd(kFitTolerance);
  io.bd3(kStartTangent);
  io.bd3(kEndTangent);
  const int count = io.rec.count(io.rec.bl(points.size()), 6);
  for (int i = 0; i < count && !io.rec.failed(); ++i) barePoint(io, points, i);
  const bool isClosed = io.version() >= kR2013 && (method & kMethodClosed) != 0;
  io.setNum(kFlags, kPlanar | (isClosed ? kClosed : 0u));
}

// The form it was read in, as long as that says what the spline is now.
template <class Io>
Form formOf(const Io& io) {
  const bool hasControls = io.elements(kControlPoints).size() > 0;
  const bool isClosed = (static_cast<unsigned>(io.num(kFlags)) & kClosed) != 0;
  const Form kept{static_cast<int32_t>(io.num(kScenario)), static_cast<int32_t>(io.num(kMethod)),
                  static_cast<int32_t>(io.num(kParameters))};
  const bool saysClosed = (kept.method & kMethodClosed) != 0;
  if (io.version() >= kR2013 && kept.scenario != 0 && kept.isByFit(io.version()) == !hasControls &&
      (hasControls || saysClosed == isClosed))
    return kept;
  if (hasControls) return {kByControls, 0, kKnotCustom};
  return {kByFit, kMethodFit | (isClosed ? kMethodClosed : 0), 0};
}

template <class Io>
void spline(Io& io) {
  Form form = Io::kWriting ? formOf(io) : Form();
  form.scenario = io.rec.bl(form.scenario);
  if (io.version() >= kR2013) {
    form.method = io.rec.bl(form.method);
    form.parameters = io.rec.bl(form.parameters);
    io.setNum(kScenario, form.scenario);
    io.setNum(kMethod, form.method);
    io.setNum(kParameters, form.parameters);
  }
  io.bl(kDegree);
  if (form.isByFit(io.version()))
    splineByFit(io, form.method);
  else
    splineByControls(io);
}

constinit const PackRow kSpline[] = {
    section("AcDbSpline"),
    piece(spline<PieceIn>, spline<PieceOut>, {70, 71, 42, 43, 44, 12, 13, -40, -41, -10, -11, -72, -70, -71}),
};

constinit const PackRow kHelix[] = {
    section("AcDbSpline"),
    piece(spline<PieceIn>, spline<PieceOut>, {70, 71, 42, 43, 44, 12, 13, -40, -41, -10, -11, -72, -70, -71}),
    section("AcDbHelix"),
    field(Op::BL, 90),
    field(Op::BL, 91),
    field(Op::BD3, 10),
    field(Op::BD3, 11),
    field(Op::BD3, 12),
    field(Op::BD, 40),
    field(Op::BD, 41),
    field(Op::BD, 42),
    field(Op::B, 290),
    field(Op::RC, 280),
};

// ---- leaders ---------------------------------------------------------------------------------------------

template <class Io>
void leaderPoints(Io& io) {
  Elements points = io.elements(0);
  const int count = io.rec.count(io.rec.bl(points.size()), 6);
  for (int i = 0; i < count && !io.rec.failed(); ++i) barePoint(io, points, i);
}

constinit const PackRow kLeader[] = {
    section("AcDbLeader"),
    fixed(Op::B),
    field(Op::BS, 73),
    field(Op::BS, 72),
    piece(leaderPoints<PieceIn>, leaderPoints<PieceOut>, {-10}),
    field(Op::BD3, -10),
    field(Op::BD3, 210),
    field(Op::BD3, 211),
    field(Op::BD3, 212),
    field(Op::BD3, 213).from(kR14),
    fixed(Op::BD).until(kR2000),
    field(Op::BD, 40).until(kR2010),
    field(Op::BD, 41).until(kR2010),
    field(Op::B, 74),
    field(Op::B, 71),
    field(Op::BS, -71),
    fixed(Op::BD).until(kR2000),
    fixed(Op::B).until(kR2000),
    fixed(Op::B).until(kR2000),
    fixed(Op::BS).until(kR2000),
    field(Op::BS, 77).until(kR2000),
    fixed(Op::B),
    fixed(Op::B),
    field(Op::H, 340).as(5),
    field(Op::H, 3).as(5),
};

constinit const PackRow kTolerance[] = {
    section("AcDbFcf"),    fixed(Op::BS).until(kR2000), fixed(Op::BD).until(kR2000), fixed(Op::BD).until(kR2000),
    field(Op::BD3, 10),    field(Op::BD3, 11),          field(Op::BD3, 210),         field(Op::T, 1),
    field(Op::H, 3).as(5),
};

}  // namespace

void addSplines(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbSpline", kSpline));
  list.push_back(packingOf("AcDbHelix", kHelix));
  list.push_back(packingOf("AcDbLeader", kLeader));
  list.push_back(packingOf("AcDbFcf", kTolerance));
}

}  // namespace gc::dwg::packing
