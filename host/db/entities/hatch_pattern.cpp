#include "host/db/entities/hatch_pattern.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "db/database.h"
#include "host/rx/file/file_view.h"
#include "host/rx/math/elementary.h"
#include "host/rx/text/number.h"

namespace gchatch {
namespace {

constexpr double kRadPerDegree = 0.017453292519943295769;
constexpr double kMillimetresPerInch = 25.4;

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t\r\xEF\xBB\xBF");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// The name of a "*NAME, description" line; empty for other lines.
std::string_view nameOn(std::string_view line) {
  if (line.empty() || line[0] != '*') return {};
  return trimmed(line.substr(1, line.find(',') == std::string_view::npos ? line.size() : line.find(',') - 1));
}

// Collects the families of one pattern from the lines of a file.
class Collector {
 public:
  Collector(GcView name, double angleRad, double scale, GcArray<GcDbHatchPatternLine>& lines)
      : m_name(name), m_angleRad(angleRad), m_scale(scale), m_lines(lines) {}

  // False when the line belongs to the pattern and is malformed.
  bool take(std::string_view text) {
    const std::string_view line = trimmed(text.substr(0, text.find(';')));
    if (line.empty()) return true;
    if (line[0] == '*') {
      const bool before = m_found;
      m_inside = !before && equalNoCase(fromUtf8(nameOn(line)), m_name);
      m_found = m_found || m_inside;
      return true;
    }
    if (!m_inside) return true;
    GcDbHatchPatternLine family;
    if (!parseFamily(line, m_angleRad, m_scale, family)) return false;
    m_lines.append(family);
    return true;
  }
  [[nodiscard]] bool found() const { return m_found && !m_lines.isEmpty(); }

 private:
  GcView m_name;
  double m_angleRad, m_scale;
  GcArray<GcDbHatchPatternLine>& m_lines;
  bool m_found = false, m_inside = false;
};

bool builtIn(const char* const* file, GcView name, double angleRad, double scale,
             GcArray<GcDbHatchPatternLine>& lines) {
  Collector collector(name, angleRad, scale, lines);
  for (; *file != nullptr; ++file) collector.take(*file);
  return collector.found();
}

GcText inSmallLetters(GcView name) {
  GcText text(name);
  for (GCHAR& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<GCHAR>(c - 'A' + 'a');
  return text;
}

// Names of patterns have no case, names of files may: as given, in capitals, in small letters.
bool findFile(GcView name, GcString& found) {
  GcDbHostApplicationServices* services = gcdbHostApplicationServices();
  if (services == nullptr) return false;
  for (const GcText& each : {GcText(name), upperText(name), inSmallLetters(name)})
    if (services->findFile(found, (each + GC_T(".pat")).c_str()) == Gcad::eOk) return true;
  return false;
}

bool fromFile(GcView name, double angleRad, double scale, GcArray<GcDbHatchPatternLine>& lines) {
  GcString found;
  if (!findFile(name, found)) return false;
  gc::FileView file;
  if (!file.open(toUtf8(view(found))).ok()) return false;
  Collector collector(name, angleRad, scale, lines);
  std::string_view rest = file.bytes();
  while (!rest.empty()) {
    const size_t end = rest.find('\n');
    if (!collector.take(rest.substr(0, end))) return false;
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return collector.found();
}

// angle in degrees; along and across: the step to the next line.
GcDbHatchPatternLine placed(double angleDeg, double x, double y, double along, double across, double angleRad,
                            double scale) {
  GcDbHatchPatternLine line;
  line.angleRad = std::fmod(angleDeg * kRadPerDegree + angleRad, 360 * kRadPerDegree);
  const double c = gc::cos(angleRad) * scale;
  const double s = gc::sin(angleRad) * scale;
  line.baseX = c * x - s * y;
  line.baseY = s * x + c * y;
  const double lc = gc::cos(line.angleRad) * scale;
  const double ls = gc::sin(line.angleRad) * scale;
  line.offsetX = lc * along - ls * across;
  line.offsetY = ls * along + lc * across;
  return line;
}

}  // namespace

bool parseFamily(std::string_view text, double angleRad, double scale, GcDbHatchPatternLine& line) {
  constexpr size_t kFewest = 5, kMost = 5 + 64;
  std::vector<double> numbers;
  for (size_t at = 0; at <= text.size();) {
    const size_t end = std::min(text.find(',', at), text.size());
    double value = 0;
    if (!gc::parseReal(trimmed(text.substr(at, end - at)), value) || !std::isfinite(value)) return false;
    numbers.push_back(value);
    at = end + 1;
  }
  if (numbers.size() < kFewest || numbers.size() > kMost || numbers[4] == 0) return false;
  line = placed(numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], angleRad, scale);
  for (size_t i = kFewest; i < numbers.size(); ++i) line.dashes.append(numbers[i] * scale);
  return true;
}

bool patternLines(GcView name, bool metric, double angleRad, double scale, GcArray<GcDbHatchPatternLine>& lines) {
  lines.clear();
  const double inches = scale * (metric ? kMillimetresPerInch : 1);
  if (builtIn(kInchPatterns, name, angleRad, inches, lines) || builtIn(kIsoPatterns, name, angleRad, scale, lines))
    return true;
  lines.clear();
  return fromFile(name, angleRad, scale, lines);
}

void userLines(double angleRad, double space, bool isDouble, GcArray<GcDbHatchPatternLine>& lines) {
  constexpr double kCrossDeg = 90;
  lines.clear();
  lines.append(placed(0, 0, 0, 0, 1, angleRad, space));
  if (isDouble) lines.append(placed(kCrossDeg, 0, 0, 0, 1, angleRad, space));
}

}  // namespace gchatch
