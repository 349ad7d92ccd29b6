// The untrimmed parallel path: spans, then joints.
#include <algorithm>
#include <numbers>

#include "host/ge/curves/offset.h"
#include "host/rx/math/elementary.h"

namespace {

constexpr double kPi = std::numbers::pi;

// The spans parallel to one source span: `count` from index `first` on of all parallels, and what closes the joint
// behind them.
struct Group {
  size_t first = 0, count = 0;
  GcGeVector3d inWay, outWay;  // unit tangents of the source at its ends
  GcGeVector3d sourceEnd;      // the joint behind it
  bool kept = false;           // the parallel runs the source's way (no collapsed arc)
  bool tooNear = false;        // a chord in the place of a collapsed arc, clearly nearer than the distance
  bool hasLink = false;
  GcGeSpan link;
};

class Maker {
 public:
  Maker(const GcGePath& path, const GcGeVector3d& normal, double distance, const GcGeOffsetTol& tol)
      : m_path(path), m_normal(normal), m_distance(distance), m_tol(tol) {}

  GcGeRawOffset make() {
    m_groups.reserve(m_path.spans().size());
    m_spans.reserve(m_path.spans().size());
    for (const GcGeSpan& s : m_path.spans()) {
      if (s.isBounded() && !(gcgeSpeedAt(s, m_path.poles(), (s.u0 + s.u1) / 2) > 0)) continue;
      const Group group = parallel(s);
      if (group.count > 0) m_groups.push_back(group);
    }
    const size_t count = m_groups.size();
    GcGePath raw(m_path.origin());
    if (count == 0) return {std::move(raw), {}, {}};
    for (size_t i = 0; i + 1 < count || (m_path.isClosed() && i < count); ++i)
      close(m_groups[i], m_groups[(i + 1) % count]);
    double t = m_path.startParam();
    raw.reserve(m_spans.size() + count, m_poles.size());
    std::vector<bool> tooNear;
    for (const Group& group : m_groups) {
      if (group.tooNear) {
        tooNear.resize(raw.spans().size() + 1);
        tooNear.back() = true;
      }
      for (size_t i = 0; i < group.count; ++i) append(raw, m_spans[group.first + i], t);
      if (group.hasLink) append(raw, group.link, t);
    }
    raw.setClosed(m_path.isClosed());
    if (!tooNear.empty()) tooNear.resize(raw.spans().size());
    return {std::move(raw), std::move(m_cornerArcs), std::move(tooNear)};
  }

 private:
  // Puts the span behind the others, its parameter range kept or, when it has none, 1.
  void append(GcGePath& raw, GcGeSpan s, double& t) {
    if (!s.isBounded()) return raw.addSpan(s, nullptr);
    const double range = std::abs(s.tPerU) * (s.u1 - s.u0);
    const double step = range > 0 ? range : 1;
    s.tPerU = step / (s.u1 - s.u0);
    s.tBase = t - s.tPerU * s.u0;
    t += step;
    raw.addSpan(s, m_poles.data());
  }

  [[nodiscard]] GcGeVector3d right(const GcGeVector3d& way) const { return way.crossProduct(m_normal); }

  Group parallel(const GcGeSpan& s) {
    Group group;
    group.first = m_spans.size();
    const GcGePole* poles = m_path.poles();
    const double u0 = std::isfinite(s.u0) ? s.u0 : 0, u1 = std::isfinite(s.u1) ? s.u1 : u0 + 1;
    group.inWay = wayAt(s, u0, 1);
    group.outWay = wayAt(s, u1, -1);
    group.sourceEnd = gcgePointAt(s, poles, u1);
    if (s.kind == GcGeSpan::Kind::Line) {
      GcGeSpan moved = s;
      moved.a += right(group.inWay) * m_distance;
      m_spans.push_back(moved);
      group.kept = true;
    } else if (s.kind == GcGeSpan::Kind::Arc && s.circular) {
      addArc(s, group);
    } else {
      addFitted(s);
      group.kept = true;
    }
    group.count = m_spans.size() - group.first;
    return group;
  }

  // The unit tangent; where the derivative vanishes, the one a little further on in the given sense.
  [[nodiscard]] GcGeVector3d wayAt(const GcGeSpan& s, double u, int sense) const {
    GcGeVector3d first = gcgeJetAt(s, m_path.poles(), u).first;
    const double scale = m_path.size();
    for (double step = 1e-7; first.length() <= 1e-12 * scale && step < 1; step *= 10)
      first = gcgeJetAt(s, m_path.poles(), u + sense * step * (s.u1 - s.u0)).first;
    const double size = first.length();
    return size > 0 ? first / size : first;
  }

  // A concentric arc; one whose radius would turn over becomes its chord, which lies too near and is cut away later.
  void addArc(const GcGeSpan& s, Group& group) {
    const double turn = s.b.crossProduct(s.c).dotProduct(m_normal) * s.sweep > 0 ? 1 : -1;
    const double radius = s.b.length(), scale = (radius + turn * m_distance) / radius;
    GcGeSpan moved = s;
    if (scale > 1e-12) {
      moved.b = s.b * scale;
      moved.c = s.c * scale;
      moved.a = s.a + (moved.b - s.b);
      group.kept = true;
      m_spans.push_back(moved);
      return;
    }
    const GcGeVector3d start = gcgePointAt(s, nullptr, s.u0), end = gcgePointAt(s, nullptr, s.u1);
    const GcGeVector3d from = start + right(group.inWay) * m_distance, to = end + right(group.outWay) * m_distance;
    // The chord's points are nearer to the arc than its ends are, which are nearest to the arc's other end or nearer.
    const double clearly = std::abs(m_distance) * (1 - 1e-3) - 64 * m_tol.point;
    group.tooNear = (from - end).length() < clearly && (to - start).length() < clearly;
    if ((to - from).length() > m_tol.point) m_spans.push_back(lineOf(from, to, s.tPerU * (s.u1 - s.u0)));
  }

  static GcGeSpan lineOf(const GcGeVector3d& from, const GcGeVector3d& to, double range) {
    GcGeSpan line;
    line.a = from;
    line.b = to - from;
    line.tPerU = range;
    return line;
  }

  // ---- fitted parallels ---------------------------------------------------------------------------------
  struct Sample {
    double u;
    GcGeVector3d point, first;  // of the parallel curve, by u of the source
    double stretch;             // its speed over the source's: 1 + distance times curvature
  };

  // O = C + d r with r the unit vector to the right; O' = C' (1 + d k), k the curvature to the left.
  [[nodiscard]] Sample sample(const GcGeSpan& s, double u) const {
    const GcGeJet jet = gcgeJetAt(s, m_path.poles(), u);
    const double speed = jet.first.length();
    if (!(speed > 0)) return {u, jet.point + right(wayAt(s, u, u < (s.u0 + s.u1) / 2 ? 1 : -1)) * m_distance, {}, 1};
    const double bend = jet.first.crossProduct(jet.second).dotProduct(m_normal) / (speed * speed * speed);
    const double stretch = 1 + m_distance * bend;
    return {u, jet.point + right(jet.first / speed) * m_distance, jet.first * stretch, stretch};
  }

  void addFitted(const GcGeSpan& s) {
    constexpr int kSteps = 32;
    Sample from = sample(s, s.u0);
    for (int i = 1; i <= kSteps; ++i) {
      const Sample to = sample(s, i == kSteps ? s.u1 : s.u0 + (s.u1 - s.u0) * i / kSteps);
      if ((from.stretch > 0) != (to.stretch > 0)) {  // a cusp between: both sides end there
        const Sample cusp = findCusp(s, from, to);
        m_run.push_back(cusp);
      }
      m_run.push_back(to);
      from = to;
    }
    // Runs of samples become as few cubics as the tolerance allows.
    Sample start = sample(s, s.u0);
    size_t i = 0;
    while (i < m_run.size()) {
      size_t take = 1;
      while (i + 2 * take <= m_run.size() && !crossesCusp(i, 2 * take) && fits(s, start, m_run[i + 2 * take - 1]))
        take *= 2;
      fit(s, start, m_run[i + take - 1], 0);
      start = m_run[i + take - 1];
      i += take;
    }
    m_run.clear();
  }

  [[nodiscard]] bool crossesCusp(size_t from, size_t count) const {
    for (size_t i = from; i + 1 < from + count; ++i)
      if (std::abs(m_run[i].stretch) <= kAtCusp) return true;
    return false;
  }

  [[nodiscard]] Sample findCusp(const GcGeSpan& s, Sample low, Sample high) const {
    for (int i = 0; i < 60 && high.u - low.u > 1e-14; ++i) {
      const Sample middle = sample(s, (low.u + high.u) / 2);
      ((middle.stretch > 0) == (low.stretch > 0) ? low : high) = middle;
    }
    Sample cusp = low;
    cusp.first = {};
    cusp.stretch = 0;
    return cusp;
  }

  // Hermite's cubic with the ends' points and derivatives, at u between.
  static GcGeVector3d hermite(const Sample& from, const Sample& to, double part) {
    const double range = to.u - from.u, q = 1 - part;
    const GcGeVector3d p1 = from.point + from.first * (range / 3), p2 = to.point - to.first * (range / 3);
    return from.point * (q * q * q) + p1 * (3 * q * q * part) + p2 * (3 * q * part * part) +
           to.point * (part * part * part);
  }

  [[nodiscard]] bool fits(const GcGeSpan& s, const Sample& from, const Sample& to) const {
    for (const double part : {0.5, 0.2, 0.8}) {
      const GcGeVector3d truth = sample(s, from.u + (to.u - from.u) * part).point;
      if (!((hermite(from, to, part) - truth).length() <= m_tol.fit)) return false;
    }
    return true;
  }

  void fit(const GcGeSpan& s, const Sample& from, const Sample& to, int depth) {
    constexpr int kMostHalvings = 16;
    if (depth < kMostHalvings && !fits(s, from, to)) {
      const Sample middle = sample(s, (from.u + to.u) / 2);
      fit(s, from, middle, depth + 1);
      return fit(s, middle, to, depth + 1);
    }
    const double range = to.u - from.u;
    const GcGeVector3d corners[4] = {from.point, from.point + from.first * (range / 3),
                                     to.point - to.first * (range / 3), to.point};
    GcGeSpan cubic;
    cubic.kind = GcGeSpan::Kind::Bezier;
    cubic.degree = 3;
    cubic.firstPole = static_cast<int32_t>(m_poles.size());
    cubic.tPerU = std::abs(s.tPerU) * range;
    for (const GcGeVector3d& p : corners) m_poles.push_back({p.x, p.y, p.z, 1});
    m_spans.push_back(cubic);
  }

  // ---- joints -------------------------------------------------------------------------------------------
  GcGeSpan& firstOf(const Group& g) { return m_spans[g.first]; }
  GcGeSpan& lastOf(const Group& g) { return m_spans[g.first + g.count - 1]; }

  void close(Group& in, Group& out) {
    const GcGeVector3d from = gcgePointAt(lastOf(in), m_poles.data(), lastOf(in).u1);
    const GcGeVector3d to = gcgePointAt(firstOf(out), m_poles.data(), firstOf(out).u0);
    if ((to - from).length() <= m_tol.point) return;
    const double turn = in.outWay.crossProduct(out.inWay).dotProduct(m_normal);
    const bool back = in.outWay.dotProduct(out.inWay) < -1 + 1e-12;
    const bool opens = turn * m_distance > 0 || back;
    if (!opens) {  // sides that cross: cut here, or, when they do not do so just once, later with everything else
      if (!trimCrossing(in, out)) link(in, lineOf(from, to, 0));
      return;
    }
    const GcGeSpan arc = arcAbout(in.sourceEnd, from, to);
    if (back || !in.kept || !out.kept || !prolong(in, out)) return link(in, arc);
    m_cornerArcs.emplace_back(m_path.origin()).addSpan(arc, nullptr);
  }

  static void link(Group& in, const GcGeSpan& span) {
    in.link = span;
    in.hasLink = true;
  }

  // The arc about a corner from one point to another on the outer side: against the turn of the tangents' change it
  // follows the direction of travel.
  [[nodiscard]] GcGeSpan arcAbout(const GcGeVector3d& corner, const GcGeVector3d& from, const GcGeVector3d& to) const {
    const double sense = m_distance > 0 ? 1 : -1;
    GcGeSpan arc;
    arc.kind = GcGeSpan::Kind::Arc;
    arc.circular = true;
    arc.a = from;
    arc.b = from - corner;
    arc.c = m_normal.crossProduct(arc.b);
    double angle = gc::atan2((to - corner).dotProduct(arc.c), (to - corner).dotProduct(arc.b)) * sense;
    if (angle <= 0) angle += 2 * kPi;
    arc.sweep = sense * angle;
    arc.tPerU = 1;
    return arc;
  }

  // Prolongs both sides to where they meet. False when they do not, or only beyond a half turn.
  bool prolong(Group& in, Group& out) {
    GcGeSpan &x = lastOf(in), &y = firstOf(out);
    using Kind = GcGeSpan::Kind;
    if (x.kind == Kind::Bezier || y.kind == Kind::Bezier) return false;
    if (!x.isBounded() || !y.isBounded()) return false;
    if (x.kind == Kind::Line && y.kind == Kind::Line) {
      const double cross = x.b.crossProduct(y.b).dotProduct(m_normal);
      const GcGeVector3d off = y.a - x.a;
      const double u = off.crossProduct(y.b).dotProduct(m_normal) / cross;
      const double v = off.crossProduct(x.b).dotProduct(m_normal) / cross;
      if (!std::isfinite(u) || !std::isfinite(v) || u < x.u1 || v > y.u0) return false;
      x.u1 = u;
      y.u0 = v;
      return true;
    }
    return prolongArcs(x, y, in.sourceEnd);
  }

  // Cuts both sides where they cross. False unless they do so just once.
  bool trimCrossing(Group& in, Group& out) {
    if (&in == &out || in.count != 1 || out.count != 1) return false;
    GcGeSpan &x = lastOf(in), &y = firstOf(out);
    using Kind = GcGeSpan::Kind;
    if (x.kind == Kind::Bezier || y.kind == Kind::Bezier || !x.isBounded() || !y.isBounded()) return false;
    GcGeVector3d candidates[2];
    const int count = carriersMeet(x, y, candidates);
    int inside = 0;
    double u = 0, v = 0;
    for (int i = 0; i < count; ++i) {
      double ux = 0, uy = 0;
      if (!uInside(x, candidates[i], ux) || !uInside(y, candidates[i], uy)) continue;
      ++inside;
      u = ux;
      v = uy;
    }
    if (inside != 1) return false;
    x.u1 = u;
    y.u0 = v;
    return true;
  }

  // The local parameter of a point of the span's carrier; false when it is not between the ends.
  static bool uInside(const GcGeSpan& s, const GcGeVector3d& p, double& u) {
    if (s.kind == GcGeSpan::Kind::Line) {
      u = (p - s.a).dotProduct(s.b) / s.b.lengthSqrd();
    } else {
      const GcGeVector3d q = p - s.a;
      const double angle = gc::atan2(q.dotProduct(s.c), s.b.lengthSqrd() + q.dotProduct(s.b));
      const double middle = s.sweep * (s.u0 + s.u1) / 2;
      u = (angle - 2 * kPi * std::round((angle - middle) / (2 * kPi))) / s.sweep;
    }
    return u > s.u0 && u < s.u1;
  }

  struct Circle {
    GcGeVector3d center;
    double radius;
  };
  static Circle circleOf(const GcGeSpan& s) { return {s.center(), s.b.length()}; }

  bool prolongArcs(GcGeSpan& x, GcGeSpan& y, const GcGeVector3d& corner) {
    GcGeVector3d candidates[2];
    const int count = carriersMeet(x, y, candidates);
    double best = 0;
    bool found = false;
    double bestU = 0, bestV = 0;
    for (int i = 0; i < count; ++i) {
      double u = 0, v = 0;
      if (!onwards(x, x.u1, 1, candidates[i], u) || !onwards(y, y.u0, -1, candidates[i], v)) continue;
      const double away = (candidates[i] - corner).length();
      constexpr double kFarthest = 10;  // distances: beyond that a round corner is the better answer
      if (away > kFarthest * std::abs(m_distance) || (found && away >= best)) continue;
      found = true;
      best = away;
      bestU = u;
      bestV = v;
    }
    if (!found) return false;
    x.u1 = bestU;
    y.u0 = bestV;
    return true;
  }

  // The local parameter of a point on the prolonged span, reached from `end` in the sense by half a turn at most.
  [[nodiscard]] bool onwards(const GcGeSpan& s, double end, int sense, const GcGeVector3d& p, double& u) const {
    if (s.kind == GcGeSpan::Kind::Line) {
      u = (p - s.a).dotProduct(s.b) / s.b.lengthSqrd();
      return (u - end) * sense >= 0;
    }
    const GcGeVector3d q = p - s.a;
    const double angle = gc::atan2(q.dotProduct(s.c), s.b.lengthSqrd() + q.dotProduct(s.b));
    double ahead = (angle - s.sweep * end) * sense * (s.sweep > 0 ? 1 : -1);
    ahead -= 2 * kPi * std::floor(ahead / (2 * kPi));
    if (ahead > kPi) return false;
    u = end + sense * ahead / std::abs(s.sweep);
    return std::abs(u - s.u0) * std::abs(s.sweep) < 2 * kPi && std::abs(u - s.u1) * std::abs(s.sweep) < 2 * kPi;
  }

  int carriersMeet(const GcGeSpan& x, const GcGeSpan& y, GcGeVector3d* out) const {
    if (x.kind == GcGeSpan::Kind::Line && y.kind == GcGeSpan::Kind::Line) {
      const double cross = x.b.crossProduct(y.b).dotProduct(m_normal);
      out[0] = x.a + x.b * ((y.a - x.a).crossProduct(y.b).dotProduct(m_normal) / cross);
      return cross != 0 ? 1 : 0;
    }
    if (x.kind == GcGeSpan::Kind::Line) return lineCircle(x, circleOf(y), out);
    if (y.kind == GcGeSpan::Kind::Line) return lineCircle(y, circleOf(x), out);
    const Circle a = circleOf(x), b = circleOf(y);
    const GcGeVector3d between = b.center - a.center;
    const double apart = between.length();
    if (apart == 0) return 0;
    const double along = (apart + (a.radius - b.radius) * (a.radius + b.radius) / apart) / 2;
    const double squared = (a.radius - along) * (a.radius + along);
    if (!(squared >= 0)) return 0;
    const GcGeVector3d e = between / apart, f = m_normal.crossProduct(e);
    const double aside = std::sqrt(squared);
    out[0] = a.center + e * along + f * aside;
    out[1] = a.center + e * along - f * aside;
    return 2;
  }

  static int lineCircle(const GcGeSpan& line, const Circle& circle, GcGeVector3d* out) {
    const GcGeVector3d way = line.b / line.b.length(), off = circle.center - line.a;
    const double along = off.dotProduct(way);
    const GcGeVector3d foot = line.a + way * along;
    const double away = (circle.center - foot).length(), squared = (circle.radius - away) * (circle.radius + away);
    if (!(squared >= 0)) return 0;
    const double half = std::sqrt(squared);
    out[0] = foot - way * half;
    out[1] = foot + way * half;
    return 2;
  }

  static constexpr double kAtCusp = 0;
  const GcGePath& m_path;
  GcGeVector3d m_normal;
  double m_distance;
  GcGeOffsetTol m_tol;
  std::vector<Group> m_groups;
  std::vector<GcGeSpan> m_spans;
  std::vector<GcGePole> m_poles;
  std::vector<Sample> m_run;
  std::vector<GcGePath> m_cornerArcs;
};

}  // namespace

GcGeRawOffset gcgeRawOffset(const GcGePath& path, const GcGeVector3d& normal, double distance,
                            const GcGeOffsetTol& tol) {
  return Maker(path, normal, distance, tol).make();
}
