#include "host/ed/fields/format.h"

#include <array>
#include <cmath>
#include <optional>

#include "host/ap/paths.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

// The parts of a format that begin with %.
struct Format {
  std::optional<int> length, angle, precision, parts, textCase, fileName;
  int zeros = 0;
  double factor = 1;
  GcText before, after, listSeparator = GC_T(",");
  GCHAR decimal = GC_T('.'), thousands = 0;
};

class FormatReader {
 public:
  explicit FormatReader(GcView text) : m_rest(text) {}

  Format read() {
    while (!m_rest.empty()) {
      if (m_rest[0] != GC_T('%') || m_rest.size() < 3) {
        m_rest.remove_prefix(1);
        continue;
      }
      const GcText name{gcLower(m_rest[1]), gcLower(m_rest[2])};
      m_rest.remove_prefix(3);
      const int number = integer();
      take(name, number, bracketed());
    }
    return m_format;
  }

 private:
  int integer() {
    constexpr int kMost = 100000;
    int value = 0;
    while (!m_rest.empty() && m_rest[0] >= GC_T('0') && m_rest[0] <= GC_T('9')) {
      value = value < kMost ? value * 10 + (m_rest[0] - GC_T('0')) : value;
      m_rest.remove_prefix(1);
    }
    return value;
  }
  GcView bracketed() {
    if (m_rest.empty() || m_rest[0] != GC_T('[')) return {};
    const size_t end = m_rest.find(GC_T(']'));
    const GcView inside = m_rest.substr(1, end == GcView::npos ? GcView::npos : end - 1);
    m_rest.remove_prefix(end == GcView::npos ? m_rest.size() : end + 1);
    return inside;
  }

  void take(const GcText& name, int number, GcView inside) {
    if (name == GC_T("lu")) m_format.length = number;
    if (name == GC_T("au")) m_format.angle = number;
    if (name == GC_T("pr")) m_format.precision = number;
    if (name == GC_T("pt")) m_format.parts = number;
    if (name == GC_T("tc")) m_format.textCase = number;
    if (name == GC_T("fn")) m_format.fileName = number;
    if (name == GC_T("zs")) m_format.zeros = number;
    if (name == GC_T("ds") && number > 0) m_format.decimal = static_cast<GCHAR>(number);
    if (name == GC_T("th") && number > 0) m_format.thousands = static_cast<GCHAR>(number);
    if (name == GC_T("ls") && number > 0) m_format.listSeparator = GcText(1, static_cast<GCHAR>(number));
    double factor = 1;
    if (name == GC_T("ct") && gc::parseReal(inside, factor)) m_format.factor = factor;
    if (name != GC_T("ps")) return;
    const size_t comma = inside.find(GC_T(','));
    m_format.before = GcText(inside.substr(0, comma));
    if (comma != GcView::npos) m_format.after = GcText(inside.substr(comma + 1));
  }

  GcView m_rest;
  Format m_format;
};

// Puts the separators asked for into a number written with a point.
GcText separated(GcText text, const Format& format) {
  const size_t point = text.find(GC_T('.'));
  if (format.thousands != 0) {
    const size_t first = !text.empty() && text[0] == GC_T('-') ? 1 : 0;
    size_t end = text.find_first_not_of(GC_T("0123456789"), first);
    if (end == GcText::npos) end = text.size();
    for (size_t at = end; at > first + 3; at -= 3) text.insert(at - 3, 1, format.thousands);
  }
  if (point != GcText::npos && format.decimal != GC_T('.')) text[text.rfind(GC_T('.'))] = format.decimal;
  return text;
}

GcText lengthText(Editor& editor, double value, const Format& format) {
  constexpr int kCurrent = 6;
  int unit = format.length.value_or(kCurrent);
  if (unit < 1 || unit >= kCurrent) unit = integerVariable(editor, "LUNITS");
  const int precision = format.precision.value_or(integerVariable(editor, "LUPREC"));
  ap::LispSpace* lisp = editor.document().lisp();
  const GcText text =
      lisp != nullptr ? lisp->lengthText(value, unit, precision, format.zeros) : gc::fromUtf8(gc::realText(value));
  return separated(text, format);
}

GcText angleText(Editor& editor, double radians, const Format& format) {
  constexpr int kCurrent = 5;
  int unit = format.angle.value_or(kCurrent);
  if (unit < 0 || unit >= kCurrent) unit = integerVariable(editor, "AUNITS");
  const int precision = format.precision.value_or(integerVariable(editor, "AUPREC"));
  ap::LispSpace* lisp = editor.document().lisp();
  GcText text = lisp != nullptr ? lisp->angleText(radians, unit, precision) : gc::fromUtf8(gc::realText(radians));
  for (GCHAR& letter : text)
    if (letter == GC_T('d')) letter = GC_T('\u00B0');  // input has the letter, texts the sign
  return separated(text, format);
}

GcText pointText(Editor& editor, const GcGePoint3d& point, const Format& format) {
  constexpr int kAll = 7;
  const int parts = format.parts.value_or(kAll);
  const double xyz[] = {point.x, point.y, point.z};
  GcText text;
  for (int i = 0; i < 3; ++i) {
    if ((parts & (1 << i)) == 0) continue;
    if (!text.empty()) text += format.listSeparator;
    text += lengthText(editor, xyz[i] * format.factor, format);
  }
  return text;
}

GcText inCase(GcText text, int which) {
  enum { kUpper = 1, kLower, kFirst, kWords };
  bool starts = true;
  for (GCHAR& unit : text) {
    const bool isBlank = unit == GC_T(' ') || unit == GC_T('\t');
    if (which == kUpper)
      unit = gcUpper(unit);
    else if (which == kLower)
      unit = gcLower(unit);
    else if (which == kFirst || which == kWords)
      unit = starts && !isBlank ? gcUpper(unit) : gcLower(unit);
    if (!isBlank) starts = false;
    if (isBlank && which == kWords) starts = true;
  }
  return text;
}

GcText fileNameParts(const GcText& path, int which) {
  enum { kFolder = 1, kName = 2, kExtension = 4 };
  const GcView name = ap::fileNameOf(path);
  const size_t dot = name.rfind(GC_T('.'));
  GcText text;
  if ((which & kFolder) != 0) text += path.substr(0, path.size() - name.size());
  if ((which & kName) != 0) text += GcText(name.substr(0, dot));
  if ((which & kExtension) != 0 && dot != GcView::npos)
    text += GcText(name.substr((which & kName) != 0 ? dot : dot + 1));
  return text;
}

// ---- dates

struct Date {
  int year, month, day, weekday, hour, minute, second;  // weekday 0: Sunday
};

// Source: the calendar's civil-day count (proleptic Gregorian), day 2440588 being 1 January 1970.
Date dateOf(double julianDays) {
  constexpr double kFirst = 1721119, kLast = 5373484;  // years 0 to 9999
  const double days = std::isfinite(julianDays) ? std::clamp(julianDays, kFirst, kLast) : kFirst;
  auto whole = static_cast<int64_t>(std::floor(days));
  auto seconds = static_cast<int64_t>(std::round((days - static_cast<double>(whole)) * 86400));
  if (seconds == 86400) ++whole, seconds = 0;
  const int64_t z = whole - 2440588 + 719468, era = z / 146097, ofEra = z - era * 146097;
  const int64_t year = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
  const int64_t ofYear = ofEra - (365 * year + year / 4 - year / 100), shifted = (5 * ofYear + 2) / 153;
  Date date{};
  date.day = static_cast<int>(ofYear - (153 * shifted + 2) / 5 + 1);
  date.month = static_cast<int>(shifted < 10 ? shifted + 3 : shifted - 9);
  date.year = static_cast<int>(year + era * 400 + (date.month <= 2 ? 1 : 0));
  date.weekday = static_cast<int>((whole + 1) % 7);
  date.hour = static_cast<int>(seconds / 3600);
  date.minute = static_cast<int>(seconds / 60 % 60);
  date.second = static_cast<int>(seconds % 60);
  return date;
}

constexpr const char* kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};
constexpr const char* kDays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

std::string digits(int value, size_t least) {
  std::string text = std::to_string(value);
  return text.size() < least ? std::string(least - text.size(), '0') + text : text;
}

// A run of one letter; nothing for letters that mean nothing.
std::optional<std::string> datePart(const Date& date, GCHAR letter, size_t count) {
  const size_t two = count > 1 ? 2 : 1;
  constexpr size_t kShort = 3;
  switch (letter) {
    case GC_T('d'):
      if (count > 2) return std::string(kDays[date.weekday]).substr(0, count == kShort ? kShort : std::string::npos);
      return digits(date.day, two);
    case GC_T('M'):
      if (count > 2)
        return std::string(kMonths[date.month - 1]).substr(0, count == kShort ? kShort : std::string::npos);
      return digits(date.month, two);
    case GC_T('y'): return count > 2 ? digits(date.year, 4) : digits(date.year % 100, two);
    case GC_T('h'): return digits(date.hour % 12 == 0 ? 12 : date.hour % 12, two);
    case GC_T('H'): return digits(date.hour, two);
    case GC_T('m'): return digits(date.minute, two);
    case GC_T('s'): return digits(date.second, two);
    case GC_T('t'): return std::string(date.hour < 12 ? "AM" : "PM").substr(0, two);
    default: return std::nullopt;
  }
}

GcText dateText(double julianDays, GcView format) {
  const Date date = dateOf(julianDays);
  if (format.empty()) format = GC_T("M/d/yyyy");
  GcText text;
  bool isQuoted = false;
  for (size_t at = 0; at < format.size();) {
    const GCHAR letter = format[at];
    size_t end = at + 1;
    if (letter == GC_T('\'')) {
      isQuoted = !isQuoted;
    } else {
      while (!isQuoted && end < format.size() && format[end] == letter) ++end;
      const auto part = isQuoted ? std::nullopt : datePart(date, letter, end - at);
      text += part ? gc::fromUtf8(*part) : GcText(format.substr(at, end - at));
    }
    at = end;
  }
  return text;
}

}  // namespace

GcText formatField(Editor& editor, const FieldValue& value, GcView written) {
  if (value.kind == FieldValue::Kind::Date) return dateText(value.number, written);
  const Format format = FormatReader(written).read();
  GcText text;
  switch (value.kind) {
    case FieldValue::Kind::Number: text = lengthText(editor, value.number * format.factor, format); break;
    case FieldValue::Kind::Angle: text = angleText(editor, value.number, format); break;
    case FieldValue::Kind::Point: text = pointText(editor, value.point, format); break;
    case FieldValue::Kind::Integer:
      text = format.length
                 ? lengthText(editor, value.number * format.factor, format)
                 : separated(gc::fromUtf8(std::to_string(std::llround(value.number * format.factor))), format);
      break;
    default:
      text = format.fileName ? fileNameParts(value.text, *format.fileName) : value.text;
      if (format.textCase) text = inCase(text, *format.textCase);
  }
  return format.before + text + format.after;
}

}  // namespace ed
