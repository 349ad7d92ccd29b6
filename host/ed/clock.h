// The time of day, local, as drawings and LISP count it.
#pragma once

#include <cstdint>

namespace ed {

struct LocalTime {
  int year, month, day, hour, minute, second, millisecond;
};

[[nodiscard]] LocalTime localNow();
// Days since noon of the Julian calendar's first day, as drawings keep dates: midnight begins a day here.
[[nodiscard]] double julianDate(const LocalTime& time);
// yyyymmdd.hhmmssmmm
[[nodiscard]] double calendarDate(const LocalTime& time);
// Milliseconds since the program started, by a clock that never goes back.
[[nodiscard]] int64_t millisecondsRunning();

}  // namespace ed
