// Ellipses, arcs and polylines with bulges against their closed forms in fifty digits: lengths, areas, nearest points,
// crossings with lines; also 5e6 from the origin.
#include <gtest/gtest.h>

#include <algorithm>
#include <boost/math/constants/constants.hpp>
#include <boost/math/quadrature/gauss.hpp>
#include <boost/multiprecision/cpp_bin_float.hpp>
#include <memory>
#include <random>

#include "db/arc.h"
#include "db/ellipse.h"
#include "db/line.h"
#include "db/polyline.h"

namespace {

using Wide = boost::multiprecision::cpp_bin_float_50;
const Wide kPi = boost::math::constants::pi<Wide>();

struct Point {
  Wide x, y;
};
Point operator+(const Point& a, const Point& b) { return {a.x + b.x, a.y + b.y}; }
Point operator-(const Point& a, const Point& b) { return {a.x - b.x, a.y - b.y}; }
Point operator*(const Point& a, const Wide& s) { return {a.x * s, a.y * s}; }
Wide dot(const Point& a, const Point& b) { return a.x * b.x + a.y * b.y; }
Wide cross(const Point& a, const Point& b) { return a.x * b.y - a.y * b.x; }
Wide length(const Point& a) { return sqrt(dot(a, a)); }
Point wide(const GcGePoint3d& p) { return {p.x, p.y}; }

// A stretch of center + a cos t + b sin t, or the straight one from a point to another; t from `from` on by `sweep`.
struct Piece {
  bool isLine = false;
  Point center, a, b;  // of a line: its start, the way to its end, nothing
  Wide from = 0, sweep = 1;

  [[nodiscard]] Point at(const Wide& t) const { return isLine ? center + a * t : center + a * cos(t) + b * sin(t); }
  [[nodiscard]] Point slope(const Wide& t) const { return isLine ? a : b * cos(t) - a * sin(t); }
  [[nodiscard]] Wide end() const { return from + sweep; }

  [[nodiscard]] Wide wholeLength() const {
    if (isLine) return ::length(a);
    constexpr int kParts = 24;
    Wide sum = 0;
    const Wide step = sweep / kParts;
    for (int i = 0; i < kParts; ++i) {
      const auto speed = [&](const Wide& t) { return Wide(::length(slope(t))); };
      sum += boost::math::quadrature::gauss<Wide, 30>::integrate(speed, Wide(from + step * i),
                                                                 Wide(from + step * (i + 1)));
    }
    return abs(sum);
  }
  // Between the chord and the curve, positive when that lies to the chord's right.
  [[nodiscard]] Wide segment() const { return isLine ? Wide(0) : Wide(cross(a, b) * (sweep - sin(sweep)) / 2); }

  // The parameter in the stretch that stands for this angle; false when it is not in it.
  bool inside(Wide& t) const {
    if (!isLine) {
      const Wide low = std::min(from, end());
      t -= 2 * kPi * floor((t - low) / (2 * kPi));
    }
    return t >= std::min(from, end()) && t <= std::max(from, end());
  }

  // Least distance: from the ends, and from the roots of (C - p) . C' between sample points, by halving.
  [[nodiscard]] Wide distanceTo(const Point& p) const {
    constexpr int kSamples = 64, kHalvings = 90;
    Wide least = std::min(::length(at(from) - p), ::length(at(end()) - p));
    const auto foot = [&](const Wide& t) { return dot(at(t) - p, slope(t)); };
    for (int i = 0; i < kSamples; ++i) {
      Wide low = from + sweep * i / kSamples, high = from + sweep * (i + 1) / kSamples;
      const bool rises = foot(high) > 0;
      if ((foot(low) > 0) == rises) continue;
      for (int k = 0; k < kHalvings; ++k) {
        const Wide middle = (low + high) / 2;
        ((foot(middle) > 0) == rises ? high : low) = middle;
      }
      least = std::min(least, ::length(at(low) - p));
    }
    return least;
  }

  // Where the line through two points crosses it. With n across the line: n.a cos t + n.b sin t = n.(p - center).
  void cutBy(const Point& p, const Point& q, std::vector<Point>& found) const {
    const Point n = {p.y - q.y, q.x - p.x};
    const Wide away = dot(n, p - center);
    if (isLine) {
      Wide t = away / dot(n, a);
      if (inside(t)) found.push_back(at(t));
      return;
    }
    const Wide x = dot(n, a), y = dot(n, b), reach = sqrt(Wide(x * x + y * y));
    if (abs(away) > reach) return;
    const Wide middle = atan2(y, x), half = acos(Wide(away / reach));
    for (Wide t : {Wide(middle - half), Wide(middle + half)})
      if (inside(t)) found.push_back(at(t));
  }
};

struct Made {
  std::unique_ptr<GcDbCurve> curve;
  std::vector<Piece> pieces;
  double size = 0, out = 0;
};

class Any {
 public:
  explicit Any(uint32_t seed) : m_engine(seed) {}
  double between(double low, double high) {
    return low + (high - low) * static_cast<double>(m_engine() >> 11) * 0x1p-53;
  }
  bool heads() { return m_engine() % 2 == 0; }

  Made make(int kind, double out) {
    const double scale = std::pow(10.0, between(-2, 3));
    Made made = kind == 0 ? ellipse(scale, out) : kind == 1 ? arc(scale, out) : polyline(scale, out);
    made.out = out;
    return made;
  }

 private:
  Made ellipse(double scale, double out) {
    const double turn = between(0, 6), major = between(1, 6) * scale, ratio = between(0.02, 1);
    const GcGeVector3d axis(major * std::cos(turn), major * std::sin(turn), 0);
    const GcGePoint3d center(out + scale, -out, 0);
    const double from = heads() ? 0 : between(0, 6), to = from == 0 ? 6.283185307179586 : from + between(0.2, 6);
    Made made;
    made.curve = std::make_unique<GcDbEllipse>(center, GcGeVector3d::kZAxis, axis, ratio, from, to);
    const Point a = {axis.x, axis.y};
    made.pieces.push_back({false, wide(center), a, Point{-a.y, a.x} * Wide(ratio), from, Wide(to) - Wide(from)});
    made.size = 2 * major;
    return made;
  }

  Made arc(double scale, double out) {
    const double radius = between(0.5, 5) * scale, from = between(0, 3), to = from + between(0.01, 3);
    const GcGePoint3d center(out - scale, out / 2, 0);
    Made made;
    made.curve = std::make_unique<GcDbArc>(center, GcGeVector3d::kZAxis, radius, from, to);
    made.pieces.push_back({false, wide(center), {radius, 0}, {0, radius}, from, Wide(to) - Wide(from)});
    made.size = 2 * radius;
    return made;
  }

  // The center lies (1 - bulge^2) / (4 bulge) chords to the left of the chord's middle; the sweep is 4 atan(bulge).
  Made polyline(double scale, double out) {
    auto polyline = std::make_unique<GcDbPolyline>();
    const int count = 3 + static_cast<int>(m_engine() % 6);
    std::vector<Point> corners;
    std::vector<double> bulges;
    for (int i = 0; i < count; ++i) {
      const GcGePoint2d p(out + between(-5, 5) * scale, -out + between(-5, 5) * scale);
      const double bulge = heads() ? 0 : between(-1.5, 1.5) * std::pow(10, -static_cast<int>(m_engine() % 6));
      EXPECT_EQ(polyline->addVertexAt(i, p, bulge), Gcad::eOk);
      corners.push_back({p.x, p.y});
      bulges.push_back(bulge);
    }
    polyline->setClosed(heads());
    Made made;
    for (int i = 0; i < count - (polyline->isClosed() ? 0 : 1); ++i) {
      const auto k = static_cast<size_t>(i);
      const Point from = corners[k], chord = corners[(k + 1) % corners.size()] - from;
      if (bulges[k] == 0) {
        made.pieces.push_back({true, from, chord, {}, 0, 1});
        continue;
      }
      const Wide bulge = bulges[k];
      const Point left = {-chord.y, chord.x};
      const Point center = from + chord * Wide(0.5) + left * Wide((1 - bulge * bulge) / (4 * bulge));
      const Point start = from - center;
      made.pieces.push_back({false, center, start, {-start.y, start.x}, 0, 4 * atan(bulge)});
    }
    made.size = 10 * scale;
    made.curve = std::move(polyline);
    return made;
  }

  std::mt19937_64 m_engine;
};

// What a question may be off by: a part of the size, and the rounding of the places it is told in.
double near(const Made& made) { return 1e-10 * made.size; }
double nearInPlace(const Made& made) { return near(made) + 8 * 2.3e-16 * made.out; }

template <class Check>
void forAll(uint32_t first, uint32_t count, const Check& check) {
  for (int kind = 0; kind < 3; ++kind)
    for (uint32_t seed = first; seed < first + count; ++seed) {
      SCOPED_TRACE(::testing::Message() << "kind " << kind << " seed " << seed);
      Any any(seed * 3 + static_cast<uint32_t>(kind));
      const Made made = any.make(kind, seed % 3 == 0 ? 5e6 : 0);
      check(made, any);
    }
}

TEST(WideCurve, Lengths) {
  forAll(1, 40, [](const Made& made, Any& any) {
    Wide whole = 0;
    for (const Piece& piece : made.pieces) whole += piece.wholeLength();
    double end = 0, found = 0, t = 0;
    ASSERT_EQ(made.curve->getEndParam(end), Gcad::eOk);
    ASSERT_EQ(made.curve->getDistAtParam(end, found), Gcad::eOk);
    const double expected = static_cast<double>(whole);
    EXPECT_NEAR(found, expected, 1e-10 * expected);
    // The way back: the length up to the parameter found for a distance is that distance.
    const double share = any.between(0.05, 0.95) * expected;
    ASSERT_EQ(made.curve->getParamAtDist(share, t), Gcad::eOk);
    ASSERT_EQ(made.curve->getDistAtParam(t, found), Gcad::eOk);
    EXPECT_NEAR(found, share, 1e-10 * expected);
  });
}

TEST(WideCurve, AreasClosedByTheChord) {
  forAll(1000, 100, [](const Made& made, Any&) {
    Wide sum = 0;
    const Point origin = made.pieces[0].at(made.pieces[0].from);
    for (const Piece& piece : made.pieces)
      sum += cross(piece.at(piece.from) - origin, piece.at(piece.end()) - origin) / 2 + piece.segment();
    double found = 0;
    ASSERT_EQ(made.curve->getArea(found), Gcad::eOk);
    EXPECT_NEAR(found, static_cast<double>(abs(sum)), 1e-10 * made.size * made.size);
  });
}

TEST(WideCurve, NearestPoints) {
  forAll(2000, 12, [](const Made& made, Any& any) {
    for (int i = 0; i < 3; ++i) {
      const Point middle = made.pieces[0].at(made.pieces[0].from);
      const GcGePoint3d p(static_cast<double>(middle.x) + any.between(-1, 1) * made.size,
                          static_cast<double>(middle.y) + any.between(-1, 1) * made.size, 0);
      Wide least = made.pieces[0].distanceTo(wide(p));
      for (const Piece& piece : made.pieces) least = std::min(least, piece.distanceTo(wide(p)));
      GcGePoint3d found;
      ASSERT_EQ(made.curve->getClosestPointTo(p, found), Gcad::eOk);
      EXPECT_NEAR(found.distanceTo(p), static_cast<double>(least), nearInPlace(made));
      // It lies on the curve, too.
      Wide on = made.pieces[0].distanceTo(wide(found));
      for (const Piece& piece : made.pieces) on = std::min(on, piece.distanceTo(wide(found)));
      EXPECT_LE(static_cast<double>(on), nearInPlace(made));
    }
  });
}

TEST(WideCurve, CrossingsWithLines) {
  int crossings = 0;
  forAll(3000, 150, [&](const Made& made, Any& any) {
    const Point middle = made.pieces[0].at(made.pieces[0].from);
    const auto random = [&](double reach) {
      return GcGePoint3d(static_cast<double>(middle.x) + any.between(-reach, reach) * made.size,
                         static_cast<double>(middle.y) + any.between(-reach, reach) * made.size, 0);
    };
    const GcGePoint3d p = random(0.7), q = random(0.7);
    const GcGeVector3d way = (q - p).normal() * (20 * made.size);
    const GcDbLine line(p + way * -1.0, p + way);
    std::vector<Point> expected;
    for (const Piece& piece : made.pieces) piece.cutBy(wide(line.startPoint()), wide(line.endPoint()), expected);
    double least = 1e300;
    for (size_t i = 0; i < expected.size(); ++i)
      for (size_t k = 0; k < i; ++k) least = std::min(least, static_cast<double>(length(expected[i] - expected[k])));
    if (least < 1e-3 * made.size) return;  // at a flat angle the place is unsure
    GcArray<GcGePoint3d> found;
    ASSERT_EQ(line.intersectWith(made.curve.get(), GcDb::kOnBothOperands, found), Gcad::eOk);
    ASSERT_EQ(found.length(), static_cast<int>(expected.size()));
    std::sort(expected.begin(), expected.end(), [&](const Point& a, const Point& b) {
      const Point along = {way.x, way.y};
      return dot(a, along) < dot(b, along);
    });
    for (int i = 0; i < found.length(); ++i)
      EXPECT_LE(static_cast<double>(length(wide(found[i]) - expected[static_cast<size_t>(i)])),
                100 * nearInPlace(made));
    crossings += found.length();
  });
  EXPECT_GT(crossings, 300);
}

}  // namespace
