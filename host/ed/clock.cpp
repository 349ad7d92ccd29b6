#include "host/ed/clock.h"

#include <chrono>
#include <ctime>

namespace ed {

namespace {
const auto g_start = std::chrono::steady_clock::now();
}

LocalTime localNow() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
  std::tm parts{};
#ifdef _WIN32
  localtime_s(&parts, &seconds);
#else
  localtime_r(&seconds, &parts);
#endif
  return {parts.tm_year + 1900,
          parts.tm_mon + 1,
          parts.tm_mday,
          parts.tm_hour,
          parts.tm_min,
          parts.tm_sec,
          static_cast<int>(sinceEpoch % 1000)};
}

// Source: the calendar's civil-day count (proleptic Gregorian), day 2440588 being 1 January 1970.
double julianDate(const LocalTime& time) {
  const int month = (time.month + 9) % 12;
  const int year = time.year - (time.month <= 2 ? 1 : 0);
  const int days = 365 * year + year / 4 - year / 100 + year / 400 + (month * 306 + 5) / 10 + time.day - 1 - 719468;
  const double seconds = time.hour * 3600.0 + time.minute * 60.0 + time.second + time.millisecond / 1000.0;
  return 2440588.0 + days + seconds / 86400.0;
}

double calendarDate(const LocalTime& time) {
  const double date = time.year * 10000.0 + time.month * 100.0 + time.day;
  const double ofDay = time.hour * 10000.0 + time.minute * 100.0 + time.second + time.millisecond / 1000.0;
  return date + ofDay / 1e6;
}

int64_t millisecondsRunning() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - g_start).count();
}

}  // namespace ed
