#include "host/lisp/core/calendar.h"

#include <chrono>
#include <cmath>
#include <ctime>

namespace lisp {

Moment localMoment(int64_t secondsSince1970, int millisecond) {
  const auto seconds = static_cast<std::time_t>(secondsSince1970);
  std::tm parts{};
#ifdef _WIN32
  localtime_s(&parts, &seconds);
#else
  localtime_r(&seconds, &parts);
#endif
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_wday,
          parts.tm_hour,        parts.tm_min,     parts.tm_sec,  millisecond};
}

Moment localNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  return localMoment(ms / 1000, static_cast<int>(ms % 1000));
}

namespace {

constexpr int64_t kJulianDayOf1970 = 2440588;

}  // namespace

double julianDate(const Moment& m) {
  using namespace std::chrono;
  const sys_days day = year(m.year) / m.month / m.day;
  const double ms = ((m.hour * 60.0 + m.minute) * 60.0 + m.second) * 1000.0 + m.millisecond;
  return static_cast<double>(day.time_since_epoch().count() + kJulianDayOf1970) + ms / 86400000.0;
}

Moment momentOf(double date) {
  using namespace std::chrono;
  double whole = std::floor(date);
  auto ms = static_cast<int64_t>(std::floor((date - whole) * 86400000.0 + 0.5));
  if (ms >= 86400000) ms = 0, ++whole;
  whole = std::fmin(std::fmax(whole, 0.0), 1e7);
  const sys_days day{days(static_cast<int64_t>(whole) - kJulianDayOf1970)};
  const year_month_day date3(day);
  Moment m;
  m.year = static_cast<int>(date3.year());
  m.month = static_cast<int>(static_cast<unsigned>(date3.month()));
  m.day = static_cast<int>(static_cast<unsigned>(date3.day()));
  m.weekday = static_cast<int>(weekday(day).c_encoding());
  m.hour = static_cast<int>(ms / 3600000);
  m.minute = static_cast<int>(ms / 60000 % 60);
  m.second = static_cast<int>(ms / 1000 % 60);
  m.millisecond = static_cast<int>(ms % 1000);
  return m;
}

namespace {

constexpr const char* kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};
constexpr const char* kDays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

void appendPadded(Text& out, int value, int width) {
  Text digits;
  appendInteger(digits, value);
  for (int i = static_cast<int>(digits.size()); i < width; ++i) out.push_back(GC_T('0'));
  out.append(digits);
}

// Appends what the token means at that moment; false when it is no token.
bool appendToken(Text& out, std::string_view token, const Moment& m, bool twelveHours) {
  const int hour = twelveHours ? (m.hour + 11) % 12 + 1 : m.hour;
  if (token == "YYYY") return appendPadded(out, m.year, 4), true;
  if (token == "YY") return appendPadded(out, m.year % 100, 2), true;
  if (token == "MONTH") return appendAscii(out, kMonths[m.month - 1]), true;
  if (token == "MON") return appendAscii(out, std::string_view(kMonths[m.month - 1], 3)), true;
  if (token == "MO") return appendPadded(out, m.month, 2), true;
  if (token == "MSEC") return appendPadded(out, m.millisecond, 3), true;
  if (token == "MM") return appendPadded(out, m.minute, 2), true;
  if (token == "M") return appendPadded(out, m.month, 1), true;
  if (token == "DDDD") return appendAscii(out, kDays[m.weekday]), true;
  if (token == "DDD") return appendAscii(out, std::string_view(kDays[m.weekday], 3)), true;
  if (token == "DD") return appendPadded(out, m.day, 2), true;
  if (token == "D") return appendPadded(out, m.day, 1), true;
  if (token == "HH") return appendPadded(out, hour, 2), true;
  if (token == "H") return appendPadded(out, hour, 1), true;
  if (token == "SS") return appendPadded(out, m.second, 2), true;
  return false;
}

constexpr std::string_view kTokens[] = {"YYYY", "YY",  "MONTH", "MON", "MO", "MSEC", "MM", "M",
                                        "DDDD", "DDD", "DD",    "D",   "HH", "H",    "SS"};

bool startsWith(TextView text, std::string_view ascii) {
  return text.size() >= ascii.size() && upperCase(text.substr(0, ascii.size())) == fromUtf8(ascii);
}

}  // namespace

Text formatDate(const Moment& m, TextView picture) {
  const Text upper = upperCase(picture);
  const bool twelveHours = upper.find(GC_T("AM/PM")) != Text::npos || upper.find(GC_T("A/P")) != Text::npos;
  Text out;
  for (size_t at = 0; at < picture.size();) {
    const TextView rest = picture.substr(at);
    if (startsWith(rest, "AM/PM") || startsWith(rest, "A/P")) {
      const bool longForm = startsWith(rest, "AM/PM");
      const bool small = rest[0] == GC_T('a');
      appendAscii(out, m.hour < 12 ? (small ? "a" : "A") : (small ? "p" : "P"));
      if (longForm) appendAscii(out, small ? "m" : "M");
      at += longForm ? 5 : 3;
      continue;
    }
    bool done = false;
    for (const std::string_view token : kTokens) {
      if (!startsWith(rest, token)) continue;
      done = appendToken(out, token, m, twelveHours);
      at += token.size();
      break;
    }
    if (!done) out.push_back(picture[at++]);
  }
  return out;
}

}  // namespace lisp
