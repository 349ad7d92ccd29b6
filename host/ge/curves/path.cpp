#include "host/ge/curves/path.h"

#include <algorithm>
#include <limits>
#include <numbers>

#include "host/ge/curves/measure.h"
#include "host/ge/curves/tree.h"
#include "host/rx/math/elementary.h"

GcGePath::GcGePath() = default;
GcGePath::GcGePath(const GcGePoint3d& origin) : m_origin(origin) {}
GcGePath::GcGePath(GcGePath&&) noexcept = default;
GcGePath& GcGePath::operator=(GcGePath&&) noexcept = default;
GcGePath::~GcGePath() = default;

GcGePath::GcGePath(const GcGePath& other)
    : m_origin(other.m_origin),
      m_spans(other.m_spans),
      m_poles(other.m_poles),
      m_closed(other.m_closed),
      m_periodic(other.m_periodic),
      m_size(other.m_size) {}

GcGePath& GcGePath::operator=(const GcGePath& other) {
  if (this != &other) *this = GcGePath(other);
  return *this;
}

void GcGePath::changed() {
  m_size = -1;
  m_tree.reset();
  m_measure.reset();
}

void GcGePath::clear(const GcGePoint3d& origin) {
  m_origin = origin;
  m_spans.clear();
  m_poles.clear();
  m_closed = m_periodic = false;
  changed();
}

void GcGePath::reserve(size_t spans, size_t poles) {
  m_spans.reserve(spans);
  m_poles.reserve(poles);
}

GcGeSpan& GcGePath::append(GcGeSpan::Kind kind, double t0, double t1) {
  changed();
  GcGeSpan& span = m_spans.emplace_back();
  span.kind = kind;
  span.tBase = t0;
  span.tPerU = t1 - t0;
  return span;
}

void GcGePath::addLine(const GcGePoint3d& from, const GcGePoint3d& to, double t0, double t1) {
  GcGeSpan& span = append(GcGeSpan::Kind::Line, t0, t1);
  span.a = from - m_origin;
  span.b = to - from;
}

void GcGePath::addUnbounded(const GcGePoint3d& base, const GcGeVector3d& unitDirection, double u0, double u1) {
  GcGeSpan& span = append(GcGeSpan::Kind::Line, 0, 1);
  span.a = base - m_origin;
  span.b = unitDirection;
  span.u0 = u0;
  span.u1 = u1;
}

void GcGePath::addArc(const GcGePoint3d& center, const GcGeVector3d& x, const GcGeVector3d& y, double startRad,
                      double sweepRad, double t0, double t1) {
  GcGeSpan& span = append(GcGeSpan::Kind::Arc, t0, t1);
  const auto [s, c] = gc::sinCos(startRad);
  span.b = x * c + y * s;
  span.c = y * c - x * s;
  span.a = (center - m_origin) + span.b;
  span.sweep = sweepRad;
  const double r = x.length();
  span.circular = std::abs(r - y.length()) <= 1e-14 * r && std::abs(x.dotProduct(y)) <= 1e-14 * r * r;
}

// Source: bulge = tan(sweep / 4). With chord d, half the chord is r sin(sweep / 2), so r = d (1 + bulge^2) / (4 bulge);
// the radius vector at the start is turned from the chord by (sweep - pi) / 2.
void GcGePath::addBulge(const GcGePoint3d& from, const GcGePoint3d& to, double bulge, const GcGeVector3d& normal,
                        double t0, double t1) {
  const GcGeVector3d chord = to - from;
  if (bulge == 0 || chord.lengthSqrd() == 0) return addLine(from, to, t0, t1);
  GcGeSpan& span = append(GcGeSpan::Kind::Arc, t0, t1);
  const GcGeVector3d left = normal.crossProduct(chord);
  // Start to centre: half the chord, then (1 - bulge^2) / (4 bulge) chords to the left. The derivative there is
  // the radius vector turned by a quarter, for both signs of the bulge along the sweep's own sense.
  const double aside = (1 - bulge * bulge) / (4 * bulge);
  span.a = from - m_origin;
  span.b = -(chord * 0.5 + left * aside);
  span.c = normal.crossProduct(span.b);
  span.sweep = 4 * gc::atan(bulge);
  span.circular = true;
}

void GcGePath::addBezier(const GcGePole* poles, int degree, double t0, double t1) {
  GcGeSpan& span = append(GcGeSpan::Kind::Bezier, t0, t1);
  span.degree = static_cast<int16_t>(degree);
  span.firstPole = static_cast<int32_t>(m_poles.size());
  m_poles.insert(m_poles.end(), poles, poles + degree + 1);
  for (int i = 1; i <= degree; ++i) span.rational = span.rational || poles[i].w != poles[0].w;
  if (span.rational || poles[0].w == 1) return;
  for (int i = 0; i <= degree; ++i) {  // one common weight means none
    GcGePole& pole = m_poles[span.firstPole + i];
    pole = {pole.x / pole.w, pole.y / pole.w, pole.z / pole.w, 1};
  }
}

void GcGePath::addSpan(const GcGeSpan& span, const GcGePole* poles) {
  changed();
  m_spans.push_back(span);
  if (span.kind != GcGeSpan::Kind::Bezier) return;
  m_spans.back().firstPole = static_cast<int32_t>(m_poles.size());
  m_poles.insert(m_poles.end(), poles + span.firstPole, poles + span.firstPole + span.degree + 1);
}

void GcGePath::addJoined(const GcGeSpan& span, const GcGePole* poles, double tol) {
  if (!m_spans.empty()) {
    GcGeSpan& last = m_spans.back();
    const bool sameKind = last.kind == span.kind && last.u1 == span.u0 && last.tBase == span.tBase;
    bool sameFrame = (last.a - span.a).length() <= tol && last.b == span.b && last.c == span.c;
    if (span.kind == GcGeSpan::Kind::Bezier)
      sameFrame = last.degree == span.degree &&
                  std::equal(m_poles.begin() + last.firstPole, m_poles.begin() + last.firstPole + last.degree + 1,
                             poles + span.firstPole);
    if (sameKind && sameFrame && last.sweep == span.sweep) {
      last.u1 = span.u1;
      return changed();
    }
  }
  addSpan(span, poles);
}

bool GcGePath::isBounded() const { return !isEmpty() && m_spans.front().isBounded() && m_spans.back().isBounded(); }

// One sum over everything; NaN stays NaN, and no comparison with it holds.
bool GcGePath::isFinite() const {
  const auto sizeOf = [](const auto& v) { return std::abs(v.x) + std::abs(v.y) + std::abs(v.z); };
  double sum = sizeOf(m_origin);
  for (const GcGeSpan& s : m_spans) {
    if (std::isnan(s.u0) || std::isnan(s.u1)) return false;
    sum += sizeOf(s.a) + sizeOf(s.b) + sizeOf(s.c) + std::abs(s.sweep) + std::abs(s.tBase) + std::abs(s.tPerU);
  }
  for (const GcGePole& p : m_poles) {
    if (!(p.w > 0)) return false;
    sum += sizeOf(p) + p.w;
  }
  return sum < kMostNumber;
}

double GcGePath::size() const {
  if (m_size >= 0) return m_size;
  GcGeBox box;
  for (const GcGeSpan& s : m_spans) {
    if (s.kind == GcGeSpan::Kind::Bezier) {
      for (int i = 0; i <= s.degree; ++i) box.add(m_poles[s.firstPole + i].point());
      continue;
    }
    const bool startIsKnown = &s != m_spans.data() && std::isfinite(s.u1);  // it is the end of the one before
    if (!startIsKnown && std::isfinite(s.u0)) box.add(gcgePointAt(s, poles(), s.u0));
    if (std::isfinite(s.u1)) box.add(gcgePointAt(s, poles(), s.u1));
    if (s.kind != GcGeSpan::Kind::Arc) continue;
    box.add(gcgePointAt(s, poles(), (s.u0 + s.u1) / 2));
    if (std::abs(s.sweep * (s.u1 - s.u0)) <= std::numbers::pi / 2) continue;
    box.add(gcgePointAt(s, poles(), 0.75 * s.u0 + 0.25 * s.u1));
    box.add(gcgePointAt(s, poles(), 0.25 * s.u0 + 0.75 * s.u1));
  }
  const double diagonal = box.diagonal();
  m_size = diagonal > 0 || isBounded() ? diagonal : 1;
  return m_size;
}

double GcGePath::tolerance() const {
  constexpr double kOfSize = 1e-10, kOfPlace = 16 * std::numeric_limits<double>::epsilon();
  return kOfSize * size() + kOfPlace * m_origin.asVector().length();
}

// ---- by parameter ----------------------------------------------------------------------------------------

bool GcGePath::locate(double t, int& span, double& u) const {
  if (isEmpty() || std::isnan(t)) return false;
  const double first = startParam(), last = endParam();
  const double range = std::isfinite(last - first) ? last - first : 1;
  const double slack = 1e-12 * range + 4 * std::numeric_limits<double>::epsilon() * std::abs(t);
  if (t < first - slack || t > last + slack) return false;
  // The last span that begins at or before t: mostly the one at t's share of the range, for steps are mostly even.
  const int end = static_cast<int>(m_spans.size()) - 1;
  const double share = (t - first) / (last - first) * (end + 1);
  const int guess = share > 0 ? static_cast<int>(std::min<double>(share, end)) : 0;
  const bool fromGuess = m_spans[guess].t0() <= t, toGuess = guess == end || m_spans[guess + 1].t0() > t;
  int low = fromGuess ? guess : 0, high = toGuess ? guess : end;
  while (low < high) {
    const int middle = (low + high + 1) / 2;
    if (m_spans[middle].t0() <= t)
      low = middle;
    else
      high = middle - 1;
  }
  span = low;
  const GcGeSpan& s = m_spans[low];
  u = t >= s.t1() ? s.u1 : s.uAt(t);
  return true;
}

bool GcGePath::pointAt(double t, GcGePoint3d& point) const {
  int span = 0;
  double u = 0;
  if (!locate(t, span, u)) return false;
  point = m_origin + pointOn(span, u);
  return true;
}

bool GcGePath::jetAt(double t, GcGeJet& jet) const {
  int span = 0;
  double u = 0;
  if (!locate(t, span, u)) return false;
  const GcGeSpan& s = m_spans[span];
  jet = gcgeJetAt(s, poles(), u);
  jet.first = jet.first / s.tPerU;
  jet.second = jet.second / (s.tPerU * s.tPerU);
  return true;
}

const GcGeTree& GcGePath::tree() const {
  if (!m_tree) m_tree = std::make_unique<GcGeTree>(*this);
  return *m_tree;
}

const GcGeMeasure& GcGePath::measure() const {
  if (!m_measure) m_measure = std::make_unique<GcGeMeasure>(*this);
  return *m_measure;
}
