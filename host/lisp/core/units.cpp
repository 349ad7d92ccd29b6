#include "host/lisp/core/units.h"

#include <charconv>
#include <cmath>

#include "host/rx/math/elementary.h"

namespace lisp {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kMaxDigits = 16;

int clampDigits(int digits) { return digits < 0 ? 0 : digits > kMaxDigits ? kMaxDigits : digits; }

std::string printed(double value, std::chars_format format, int digits) {
  char buffer[400];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, format, digits).ptr;
  return std::string(buffer, end);
}

// Adds one unit in the last place of a decimal number.
void incrementDigits(std::string& number) {
  size_t i = number.size();
  while (i-- > 0) {
    if (number[i] == '.') continue;
    if (number[i] != '9') {
      ++number[i];
      return;
    }
    number[i] = '0';
  }
  number.insert(number.begin(), '1');
}

// |value| with halves rounded up. A tie needs as many binary fraction digits as there are decimals, plus one; then
// one more decimal digit shows the value exactly, and it is a 5.
std::string fixedMagnitude(double value, int digits) {
  const double scaled = std::ldexp(std::abs(value), digits + 1);
  const bool tie = scaled < 9e15 && scaled == std::floor(scaled) && std::fmod(scaled, 2.0) == 1.0;
  if (!tie) return printed(std::abs(value), std::chars_format::fixed, digits);
  std::string number = printed(std::abs(value), std::chars_format::fixed, digits + 1);
  number.pop_back();
  if (number.back() == '.') number.pop_back();
  incrementDigits(number);
  return number;
}

bool allZero(std::string_view number) { return number.find_first_of("123456789") == std::string_view::npos; }

constexpr int kDropLeading = 4;
constexpr int kDropTrailing = 8;

void dropTrailingZeros(std::string& number) {
  if (number.find('.') == std::string::npos) return;
  while (number.back() == '0') number.pop_back();
  if (number.back() == '.') number.pop_back();
}

std::string decimal(double magnitude, int digits, int zeros) {
  std::string number = fixedMagnitude(magnitude, digits);
  if (zeros & kDropTrailing) dropTrailingZeros(number);
  if ((zeros & kDropLeading) && number.starts_with("0.")) number.erase(0, 1);
  return number;
}

std::string scientific(double magnitude, int digits, int zeros) {
  std::string number = printed(magnitude, std::chars_format::scientific, digits);
  const auto at = number.find('e');
  std::string exponent = number.substr(at + 1);
  number.resize(at);
  if (zeros & kDropTrailing) dropTrailingZeros(number);
  return number + "E" + exponent;
}

// Whole and fraction of inches: "5 1/2", "1/2", "5"; empty for zero.
std::string inchesWithFraction(double parts, double denominator, bool showZero) {
  double whole = std::floor(parts / denominator);
  double numerator = parts - whole * denominator;
  while (numerator > 0 && std::fmod(numerator, 2.0) == 0) numerator /= 2, denominator /= 2;
  std::string text;
  if (whole > 0 || (numerator == 0 && showZero) || (numerator > 0 && showZero))
    text = printed(whole, std::chars_format::fixed, 0);
  if (numerator > 0) {
    if (!text.empty()) text += ' ';
    text += printed(numerator, std::chars_format::fixed, 0) + "/" + printed(denominator, std::chars_format::fixed, 0);
  }
  return text;
}

// 1'-5 1/2" and 1'-5.50" from feet and what follows them.
std::string feetAndInches(double feet, const std::string& inches, bool inchesZero, int zeros) {
  const int shown = zeros & 3;
  const bool showFeet = feet > 0 || shown == 1 || shown == 2;
  const bool showInches = !inchesZero || shown == 1 || shown == 3 || !showFeet;
  std::string text;
  if (showFeet) text = printed(feet, std::chars_format::fixed, 0) + "'";
  if (showFeet && showInches) text += "-";
  if (showInches) text += inches + "\"";
  return text;
}

std::string architectural(double magnitude, int digits, int zeros) {
  const double denominator = std::ldexp(1.0, digits > 8 ? 8 : digits);
  const double total = std::floor(magnitude * denominator + 0.5);
  const double feet = std::floor(total / (12 * denominator));
  const double rest = total - feet * 12 * denominator;
  const bool lead = feet > 0 || rest == 0 || (zeros & 3) == 1 || (zeros & 3) == 2;
  return feetAndInches(feet, inchesWithFraction(rest, denominator, lead), rest == 0, zeros);
}

std::string engineering(double magnitude, int digits, int zeros) {
  double feet = std::floor(magnitude / 12);
  std::string inches = decimal(magnitude - feet * 12, digits, zeros);
  double value = 0;
  std::from_chars(inches.data(), inches.data() + inches.size(), value);
  if (value >= 12) {  // rounded up to a whole foot
    ++feet;
    inches = decimal(0, digits, zeros);
  }
  return feetAndInches(feet, inches, allZero(inches), zeros);
}

std::string fractional(double magnitude, int digits) {
  const double denominator = std::ldexp(1.0, digits > 8 ? 8 : digits);
  const double total = std::floor(magnitude * denominator + 0.5);
  return inchesWithFraction(total, denominator, total == 0 || total >= denominator);
}

std::string lengthText(double magnitude, LengthFormat format, int digits, int zeros) {
  switch (format) {
    case LengthFormat::Scientific: return scientific(magnitude, digits, zeros);
    case LengthFormat::Engineering: return engineering(magnitude, digits, zeros);
    case LengthFormat::Architectural: return architectural(magnitude, digits, zeros);
    case LengthFormat::Fractional: return fractional(magnitude, digits);
    case LengthFormat::Decimal: break;
  }
  return decimal(magnitude, digits, zeros);
}

Text signedText(bool negative, const std::string& magnitude) {
  Text text;
  if (negative && !allZero(magnitude)) text.push_back(GC_T('-'));
  appendAscii(text, magnitude);
  return text;
}

}  // namespace

Text fixedDigits(double value, int digits) { return signedText(value < 0, fixedMagnitude(value, clampDigits(digits))); }

Text formatLength(double value, LengthFormat format, int precision, int zeros) {
  return signedText(value < 0, lengthText(std::abs(value), format, clampDigits(precision), zeros));
}

// ---- angles

namespace {

// Degrees as 45d30'15": precision 0 degrees only, 1 and 2 minutes too, then seconds, from 5 on with decimals.
std::string sexagesimal(double degrees, int precision) {
  const int decimals = precision > 4 ? precision - 4 : 0;
  const double perUnit = precision == 0 ? 1 : precision <= 2 ? 60 : 3600 * std::pow(10.0, decimals);
  double total = std::floor(degrees * perUnit + 0.5);
  const auto whole = [](double v) { return printed(v, std::chars_format::fixed, 0); };
  const double d = std::floor(total / perUnit);
  std::string text = whole(d) + "d";
  if (precision == 0) return text;
  total -= d * perUnit;
  const double perMinute = perUnit / 60;
  const double m = std::floor(total / perMinute);
  text += whole(m) + "'";
  if (precision <= 2) return text;
  total -= m * perMinute;
  return text + printed(total / std::pow(10.0, decimals), std::chars_format::fixed, decimals) + "\"";
}

double normalized(double value, double turn) {
  value = std::fmod(value, turn);
  return value < 0 ? value + turn : value;
}

// A full turn that comes from rounding counts as zero.
std::string decimalAngle(double value, double turn, int precision) {
  std::string text = fixedMagnitude(value, precision);
  double back = 0;
  std::from_chars(text.data(), text.data() + text.size(), back);
  return back >= turn ? fixedMagnitude(0, precision) : text;
}

std::string surveyor(double degrees, int precision) {
  // The quadrant's letters and the angle from north or south.
  const bool north = degrees <= 180;
  const bool east = degrees <= 90 || degrees >= 270;
  const double off = degrees <= 90    ? 90 - degrees
                     : degrees <= 180 ? degrees - 90
                     : degrees <= 270 ? 270 - degrees
                                      : degrees - 270;
  const std::string angle = sexagesimal(off, precision);
  if (angle.starts_with("90d")) return east ? "E" : "W";
  if (allZero(angle)) return north ? "N" : "S";
  return std::string(north ? "N " : "S ") + angle + (east ? " E" : " W");
}

}  // namespace

Text formatAngle(double radians, AngleFormat format, int precision, double base, bool clockwise) {
  const int digits = clampDigits(precision);
  if (format != AngleFormat::Surveyor) radians = clockwise ? base - radians : radians - base;
  const double turn = normalized(radians, 2 * kPi) / (2 * kPi);
  std::string text;
  switch (format) {
    case AngleFormat::Degrees: text = decimalAngle(turn * 360, 360, digits); break;
    case AngleFormat::DegreesMinutesSeconds:
      text = sexagesimal(turn * 360, digits);
      if (text.starts_with("360d")) text = sexagesimal(0, digits);
      break;
    case AngleFormat::Grads: text = decimalAngle(turn * 400, 400, digits) + "g"; break;
    case AngleFormat::Radians: text = fixedMagnitude(turn * 2 * kPi, digits) + "r"; break;
    case AngleFormat::Surveyor: text = surveyor(turn * 360, digits); break;
  }
  return fromUtf8(text);
}

// ---- reading

namespace {

// A cursor over text that is read once from left to right.
class Scanner {
 public:
  explicit Scanner(TextView text) : m_text(text) {
    blanks();
    while (!m_text.empty() && m_text.back() == GC_T(' ')) m_text.remove_suffix(1);
  }
  bool atEnd() const { return m_at >= m_text.size(); }
  void blanks() {
    while (!atEnd() && m_text[m_at] == GC_T(' ')) ++m_at;
  }
  bool take(GCHAR c) {
    if (atEnd() || m_text[m_at] != c) return false;
    ++m_at;
    return true;
  }
  bool takeLetter(GCHAR upper) {
    if (atEnd() || toUpper(m_text[m_at]) != upper) return false;
    ++m_at;
    return true;
  }
  GCHAR peek() const { return atEnd() ? GCHAR(0) : m_text[m_at]; }
  // A number without sign; with an exponent if one follows.
  bool number(double& value) {
    size_t end = m_at;
    while (end < m_text.size() && (isDigit(m_text[end]) || m_text[end] == GC_T('.'))) ++end;
    if (end < m_text.size() && toUpper(m_text[end]) == GC_T('E')) {
      size_t more = end + 1;
      if (more < m_text.size() && (m_text[more] == GC_T('+') || m_text[more] == GC_T('-'))) ++more;
      if (more < m_text.size() && isDigit(m_text[more])) {
        while (more < m_text.size() && isDigit(m_text[more])) ++more;
        end = more;
      }
    }
    if (!wholeReal(m_text.substr(m_at, end - m_at), value)) return false;
    m_at = end;
    return true;
  }
  // 17, 17.5, 1/2, 17 1/2, 17-1/2
  bool mixedNumber(double& value) {
    double first = 0;
    if (!number(first)) return false;
    if (fractionAfter(first, value)) return true;
    const size_t before = m_at;
    double second = 0, fraction = 0;
    if ((take(GC_T(' ')) || take(GC_T('-'))) && number(second) && fractionAfter(second, fraction)) {
      value = first + fraction;
      return true;
    }
    m_at = before;
    value = first;
    return true;
  }

 private:
  bool fractionAfter(double numerator, double& value) {
    const size_t before = m_at;
    double denominator = 0;
    if (take(GC_T('/')) && number(denominator) && denominator != 0) {
      value = numerator / denominator;
      return true;
    }
    m_at = before;
    return false;
  }
  TextView m_text;
  size_t m_at = 0;
};

bool sexagesimalAfter(Scanner& in, double degrees, double& value) {
  double minutes = 0, seconds = 0;
  if (in.number(minutes) && !in.take(GC_T('\''))) return false;
  if (in.number(seconds)) in.take(GC_T('"'));
  value = degrees + minutes / 60 + seconds / 3600;
  return true;
}

// A bearing: N 45d E, or one of the four directions. The result is in degrees, counter-clockwise from east.
bool bearing(Scanner& in, double& value) {
  if (in.takeLetter(GC_T('E'))) return value = 0, in.atEnd();
  if (in.takeLetter(GC_T('W'))) return value = 180, in.atEnd();
  const bool north = in.takeLetter(GC_T('N'));
  if (!north && !in.takeLetter(GC_T('S'))) return false;
  in.blanks();
  if (in.atEnd()) return value = north ? 90 : 270, true;
  double off = 0;
  if (!in.number(off)) return false;
  if (in.takeLetter(GC_T('D')) && !sexagesimalAfter(in, off, off)) return false;
  in.blanks();
  const bool east = in.takeLetter(GC_T('E'));
  if (!east && !in.takeLetter(GC_T('W'))) return false;
  value = north ? (east ? 90 - off : 90 + off) : (east ? 270 + off : 270 - off);
  return in.atEnd();
}

}  // namespace

bool parseLength(TextView text, LengthFormat format, double& value) {
  Scanner in(text);
  const bool negative = in.take(GC_T('-'));
  if (!negative) in.take(GC_T('+'));
  const bool feetAllowed = format == LengthFormat::Engineering || format == LengthFormat::Architectural;
  double inches = 0;
  if (!in.mixedNumber(inches)) return false;
  if (feetAllowed && in.take(GC_T('\''))) {
    const double feet = inches;
    inches = 0;
    in.take(GC_T('-'));
    in.blanks();
    if (!in.atEnd() && !in.mixedNumber(inches)) return false;
    inches += feet * 12;
  }
  if (feetAllowed) in.take(GC_T('"'));
  if (!in.atEnd()) return false;
  value = negative ? -inches : inches;
  return true;
}

bool parseAngle(TextView text, AngleFormat format, double base, bool clockwise, double& radians) {
  Scanner in(text);
  double value = 0;
  if (format == AngleFormat::Surveyor || isLetter(in.peek())) {
    if (!bearing(in, value)) return false;
    radians = normalized(value, 360) * kPi / 180;
    return true;
  }
  const bool negative = in.take(GC_T('-'));
  if (!negative) in.take(GC_T('+'));
  if (!in.number(value)) return false;
  double turn = format == AngleFormat::Grads ? 400 : format == AngleFormat::Radians ? 2 * kPi : 360;
  if (in.takeLetter(GC_T('D'))) {
    turn = 360;
    if (!sexagesimalAfter(in, value, value)) return false;
  } else if (in.takeLetter(GC_T('G'))) {
    turn = 400;
  } else if (in.takeLetter(GC_T('R'))) {
    turn = 2 * kPi;
  }
  if (!in.atEnd()) return false;
  if (negative != clockwise) value = -value;
  radians = normalized(value / turn * 2 * kPi + base, 2 * kPi);
  return true;
}

// ---- conversion

namespace {

enum class Kind : uint8_t { Length, Time, Mass, Angle, Volume, Temperature };

struct Unit {
  const char* names;  // separated by blanks
  Kind kind;
  double factor;  // in metres, seconds, kilograms, radians, cubic metres, kelvin
  double offset = 0;
};

constexpr Unit kUnits[] = {
    {"millimeter millimeters millimetre millimetres mm", Kind::Length, 0.001},
    {"centimeter centimeters centimetre centimetres cm", Kind::Length, 0.01},
    {"decimeter decimeters decimetre decimetres dm", Kind::Length, 0.1},
    {"meter meters metre metres m", Kind::Length, 1},
    {"kilometer kilometers kilometre kilometres km", Kind::Length, 1000},
    {"micron microns micrometer micrometers", Kind::Length, 1e-6},
    {"angstrom angstroms", Kind::Length, 1e-10},
    {"inch inches in \"", Kind::Length, 0.0254},
    {"foot feet ft '", Kind::Length, 0.3048},
    {"yard yards yd", Kind::Length, 0.9144},
    {"mile miles mi", Kind::Length, 1609.344},
    {"mil mils", Kind::Length, 0.0000254},
    {"nautical_mile nautical_miles inautical_mile", Kind::Length, 1852},
    {"survey_foot survey_feet", Kind::Length, 1200.0 / 3937.0},
    {"rod rods", Kind::Length, 5.0292},
    {"chain chains", Kind::Length, 20.1168},
    {"furlong furlongs", Kind::Length, 201.168},
    {"fathom fathoms", Kind::Length, 1.8288},
    {"second seconds sec s", Kind::Time, 1},
    {"minute minutes min", Kind::Time, 60},
    {"hour hours hr h", Kind::Time, 3600},
    {"day days", Kind::Time, 86400},
    {"week weeks", Kind::Time, 604800},
    {"year years yr", Kind::Time, 31556925.9747},
    {"milligram milligrams mg", Kind::Mass, 1e-6},
    {"gram grams gramme grammes g", Kind::Mass, 0.001},
    {"kilogram kilograms kilogramme kg", Kind::Mass, 1},
    {"tonne tonnes", Kind::Mass, 1000},
    {"ounce ounces oz", Kind::Mass, 0.028349523125},
    {"pound pounds lb lbs", Kind::Mass, 0.45359237},
    {"ton tons", Kind::Mass, 907.18474},
    {"stone", Kind::Mass, 6.35029318},
    {"degree degrees deg", Kind::Angle, kPi / 180},
    {"radian radians rad", Kind::Angle, 1},
    {"grad grads gradian gradians", Kind::Angle, kPi / 200},
    {"circle circles revolution revolutions", Kind::Angle, 2 * kPi},
    {"quadrant quadrants", Kind::Angle, kPi / 2},
    {"liter liters litre litres l", Kind::Volume, 0.001},
    {"milliliter milliliters millilitre millilitres ml", Kind::Volume, 1e-6},
    {"gallon gallons gal", Kind::Volume, 0.003785411784},
    {"quart quarts qt", Kind::Volume, 0.000946352946},
    {"pint pints pt", Kind::Volume, 0.000473176473},
    {"barrel barrels", Kind::Volume, 0.158987294928},
    {"kelvin k", Kind::Temperature, 1},
    {"celsius centigrade c", Kind::Temperature, 1, 273.15},
    {"fahrenheit f", Kind::Temperature, 5.0 / 9.0, 459.67 * 5.0 / 9.0},
    {"rankine", Kind::Temperature, 5.0 / 9.0},
};

// A unit with the power it stands in: "sq ft" and "ft^2" are length to the second.
struct Measure {
  Kind kind = Kind::Length;
  int power = 1;
  double factor = 1;
  double offset = 0;
};

bool findUnit(std::string_view name, Measure& measure) {
  for (const Unit& unit : kUnits) {
    std::string_view names = unit.names;
    while (!names.empty()) {
      const auto end = names.find(' ');
      if (names.substr(0, end) == name) {
        measure.kind = unit.kind;
        measure.factor = unit.factor;
        measure.offset = unit.offset;
        return true;
      }
      names = end == std::string_view::npos ? std::string_view() : names.substr(end + 1);
    }
  }
  return false;
}

bool parseMeasure(TextView text, Measure& measure) {
  static constexpr struct {
    std::string_view prefix;
    int power;
  } kPrefixes[] = {{"square ", 2}, {"sq ", 2}, {"sq_", 2}, {"cubic ", 3}, {"cu ", 3}, {"cu_", 3}};
  std::string name = toUtf8(lowerCase(text));
  for (const auto& p : kPrefixes) {
    if (!name.starts_with(p.prefix)) continue;
    measure.power = p.power;
    name.erase(0, p.prefix.size());
    break;
  }
  const auto caret = name.find('^');
  if (caret != std::string::npos && caret + 1 < name.size()) {
    measure.power = name[caret + 1] - '0';
    name.resize(caret);
  }
  if (name == "acre" || name == "acres" || name == "hectare" || name == "hectares") {
    measure = {Kind::Length, 2, name[0] == 'a' ? 63.614907234075254 : 100.0, 0};  // side of the square, metres
    return true;
  }
  if (measure.power < 1 || measure.power > 3 || !findUnit(name, measure)) return false;
  if (measure.kind == Kind::Volume) measure = {Kind::Length, 3, gc::cbrt(measure.factor), 0};
  return measure.power == 1 || measure.kind == Kind::Length;
}

}  // namespace

bool convertUnits(double& value, TextView from, TextView to) {
  Measure a, b;
  if (!parseMeasure(from, a) || !parseMeasure(to, b) || a.kind != b.kind || a.power != b.power) return false;
  if (a.kind == Kind::Temperature) {
    value = (value * a.factor + a.offset - b.offset) / b.factor;
  } else {
    const double ratio = a.factor / b.factor;
    value *= a.power == 1 ? ratio : a.power == 2 ? ratio * ratio : ratio * ratio * ratio;
  }
  return true;
}

}  // namespace lisp
