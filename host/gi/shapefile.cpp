#include "host/gi/shapefile.h"

#include <algorithm>
#include <cmath>

#include "host/rx/math/elementary.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// Numbers of a file, lowest byte first; the end stops all further ones.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : m_bytes(bytes) {}
  [[nodiscard]] bool failed() const { return m_failed; }
  std::string_view take(size_t size) {
    if (size > m_bytes.size()) {
      m_failed = true;
      return {};
    }
    const std::string_view taken = m_bytes.substr(0, size);
    m_bytes.remove_prefix(size);
    return taken;
  }
  int word() {
    const std::string_view two = take(2);
    if (two.size() < 2) return 0;
    return static_cast<uint8_t>(two[0]) | static_cast<uint8_t>(two[1]) << 8;
  }

 private:
  std::string_view m_bytes;
  bool m_failed = false;
};

}  // namespace

std::optional<GcGiShapeFile> GcGiShapeFile::parse(std::string_view bytes) {
  constexpr size_t kMostOfHead = 64;
  const size_t end = bytes.substr(0, kMostOfHead).find('\x1A');
  if (end == std::string_view::npos || bytes.substr(0, end).find(" shapes ") == std::string_view::npos) return {};
  Bytes in(bytes.substr(end + 1));
  in.take(4);  // the least and the greatest number
  const int count = in.word();
  GcGiShapeFile file;
  std::vector<size_t> sizes;
  for (int i = 0; i < count && !in.failed(); ++i) {
    file.m_shapes.emplace_back().number = in.word();
    sizes.push_back(static_cast<size_t>(in.word()));
  }
  for (size_t i = 0; i < sizes.size() && !in.failed(); ++i) {
    const std::string_view shape = in.take(sizes[i]);
    const size_t zero = std::min(shape.find('\0'), shape.size());
    file.m_shapes[i].name = shape.substr(0, zero);
    const std::string_view codes = shape.substr(std::min(zero + 1, shape.size()));
    file.m_shapes[i].codes.assign(codes.begin(), codes.end());
  }
  if (in.failed()) return {};
  return file;
}

const GcGiShapeFile::Shape* GcGiShapeFile::find(int number) const {
  for (const Shape& shape : m_shapes)
    if (shape.number == number) return &shape;
  return nullptr;
}

int GcGiShapeFile::numberOf(GcView name) const {
  for (const Shape& shape : m_shapes)
    if (!shape.name.empty() && equalNoCase(fromUtf8(shape.name), name)) return shape.number;
  return 0;
}

GcText GcGiShapeFile::nameOf(int number) const {
  const Shape* shape = find(number);
  return shape == nullptr ? GcText() : fromUtf8(shape->name);
}

// Goes through the codes of a shape and of those it calls.
class ShapePen {
 public:
  explicit ShapePen(const GcGiShapeFile& file) : m_file(file) {}

  std::vector<std::vector<GcGePoint2d>> draw(int number) {
    run(number, 0);
    lift();
    return std::move(m_lines);
  }

 private:
  using Codes = std::vector<uint8_t>;

  enum Code : uint8_t {
    kEnd,
    kDown,
    kUp,
    kDivide,
    kMultiply,
    kPush,
    kPop,
    kCall,
    kStep,
    kSteps,
    kOctants,
    kFraction,
    kBulge,
    kBulges,
    kVerticalOnly
  };

  void run(int number, int depth) {
    constexpr int kDeepest = 8;
    const GcGiShapeFile::Shape* shape = m_file.find(number);
    if (shape == nullptr || depth > kDeepest) return;
    size_t at = 0;
    while (at < shape->codes.size() && shape->codes[at] != kEnd && ++m_done < kMostCodes)
      step(shape->codes, at, depth, true);
  }

  static uint8_t byte(const Codes& codes, size_t& at) { return at < codes.size() ? codes[at++] : 0; }
  static int number(const Codes& codes, size_t& at) { return static_cast<int8_t>(byte(codes, at)); }

  // One code with what belongs to it; only passed over when it does not count.
  void step(const Codes& codes, size_t& at, int depth, bool counts) {
    const uint8_t code = byte(codes, at);
    if (code > kVerticalOnly) return vector(code, counts);
    switch (code) {
      case kDown: m_isDown = counts || m_isDown; break;
      case kUp:
        if (counts) lift();
        break;
      case kDivide: scale(1.0 / std::max<int>(1, byte(codes, at)), counts); break;
      case kMultiply: scale(byte(codes, at), counts); break;
      case kPush:
        if (counts && m_kept.size() < kMostKept) m_kept.push_back(m_at);
        break;
      case kPop: pop(counts); break;
      case kCall: {
        const int called = byte(codes, at);
        if (counts) run(called, depth + 1);
        break;
      }
      case kStep:
      case kSteps: steps(codes, at, code == kSteps, counts); break;
      case kOctants: octants(codes, at, counts); break;
      case kFraction: fraction(codes, at, counts); break;
      case kBulge:
      case kBulges: bulges(codes, at, code == kBulges, counts); break;
      case kVerticalOnly: step(codes, at, depth, false); break;
      default: break;
    }
  }

  // A length in the high half, one of sixteen directions in the low one.
  void vector(uint8_t code, bool counts) {
    static constexpr double kAlong[] = {1, 1, 1, 0.5, 0, -0.5, -1, -1, -1, -1, -1, -0.5, 0, 0.5, 1, 1};
    const int direction = code & 15;
    const double length = code >> 4;
    if (counts) to({kAlong[direction] * length, kAlong[(direction + 12) & 15] * length});
  }

  void steps(const Codes& codes, size_t& at, bool many, bool counts) {
    do {
      const int x = number(codes, at), y = number(codes, at);
      if (many && x == 0 && y == 0) return;
      if (counts) to(GcGeVector2d(x, y));
    } while (many && at < codes.size() && ++m_done < kMostCodes);
  }

  void bulges(const Codes& codes, size_t& at, bool many, bool counts) {
    constexpr double kSemicircle = 127;
    do {
      const int x = number(codes, at), y = number(codes, at);
      if (many && x == 0 && y == 0) return;
      const double bulge = number(codes, at) / kSemicircle;
      if (counts) bulged(GcGeVector2d(x, y), bulge);
    } while (many && at < codes.size() && ++m_done < kMostCodes);
  }

  // Bulge: the tangent of a quarter of the sweep, counter-clockwise positive.
  void bulged(const GcGeVector2d& way, double bulge) {
    const double chord = way.length();
    if (bulge == 0 || chord == 0) return to(way);
    const double sweep = 4 * gc::atan(bulge), radius = chord / 2 / gc::sin(sweep / 2);
    const double start = gc::atan2(way.y, way.x) - sweep / 2 - kPi / 2;
    arc(radius, start, sweep);
  }

  // Radius; then a byte: clockwise, first octant, how many (0 for all).
  void octants(const Codes& codes, size_t& at, bool counts) {
    const double radius = byte(codes, at);
    const int which = number(codes, at);
    if (counts) arc(radius, firstOctant(which) * kPi / 4, octantCount(which) * kPi / 4);
  }

  // The first and the last octant of an arc are parts: 1/256 of one is the unit.
  void fraction(const Codes& codes, size_t& at, bool counts) {
    constexpr double kParts = 256;
    const double first = byte(codes, at) / kParts, last = byte(codes, at) / kParts;
    const int high = byte(codes, at), low = byte(codes, at), which = number(codes, at);
    const double sense = which < 0 ? -1 : 1, whole = std::fabs(octantCount(which)) - (last > 0 ? 1 : 0);
    const double start = (firstOctant(which) + sense * first) * kPi / 4;
    if (counts) arc(high * kParts + low, start, sense * (whole + last - first) * kPi / 4);
  }

  static int firstOctant(int which) { return (which < 0 ? -which : which) >> 4 & 7; }
  static double octantCount(int which) {
    const int count = (which < 0 ? -which : which) & 7;
    return (which < 0 ? -1.0 : 1.0) * (count == 0 ? 8 : count);
  }

  // From where the pen is; `start` is where that is as seen from the centre.
  void arc(double radius, double start, double sweep) {
    constexpr double kChord = kPi / 16;
    const int count = std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / kChord)));
    GcGePoint2d last(radius * gc::cos(start), radius * gc::sin(start));
    for (int i = 1; i <= count; ++i) {
      const double angle = start + sweep * i / count;
      const GcGePoint2d next(radius * gc::cos(angle), radius * gc::sin(angle));
      to(next - last);
      last = next;
    }
  }

  void scale(double by, bool counts) {
    if (counts && by > 0) m_scale *= by;
  }

  void pop(bool counts) {
    if (!counts || m_kept.empty()) return;
    const bool wasDown = m_isDown;
    lift();
    m_at = m_kept.back();
    m_kept.pop_back();
    m_isDown = wasDown;
  }

  void to(const GcGeVector2d& way) {
    if (m_isDown && m_line.empty()) m_line.push_back(m_at);
    m_at = m_at + way * m_scale;
    if (m_isDown) m_line.push_back(m_at);
  }

  void lift() {
    if (m_line.size() > 1) m_lines.push_back(m_line);
    m_line.clear();
    m_isDown = false;
  }

  static constexpr int kMostCodes = 100000;
  static constexpr size_t kMostKept = 64;
  const GcGiShapeFile& m_file;
  std::vector<std::vector<GcGePoint2d>> m_lines;
  std::vector<GcGePoint2d> m_line, m_kept;
  GcGePoint2d m_at;
  double m_scale = 1;
  bool m_isDown = true;
  int m_done = 0;
};

std::vector<std::vector<GcGePoint2d>> GcGiShapeFile::strokes(int number) const { return ShapePen(*this).draw(number); }
