#include "host/dxf/angles.h"

#include <charconv>
#include <cmath>
#include <initializer_list>

namespace gc::dxf {
namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;  // pi / 180
constexpr int kSafeDigits = 15;                             // a decimal of so many digits survives being a double

// The value rounded to so many significant decimal digits.
double rounded(double value) {
  char text[40];
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, kSafeDigits - 1).ptr;
  double result = value;
  std::from_chars(text, end, result);
  return result;
}

}  // namespace

double radiansOf(double degrees) { return degrees * kRadiansPerDegree; }

double degreesOf(double radians) {
  const double near = radians / kRadiansPerDegree;
  if (radiansOf(near) == radians && near == std::trunc(near)) return near;
  const double brief = rounded(near);
  if (radiansOf(brief) == radians) return brief;
  if (radiansOf(near) == radians) return near;
  // The division rounds; a neighbour is exact.
  for (const double direction : {-HUGE_VAL, HUGE_VAL}) {
    const double next = std::nextafter(near, direction);
    if (radiansOf(next) == radians) return next;
  }
  return near;
}

}  // namespace gc::dxf
