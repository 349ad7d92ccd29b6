// Local time, Julian dates and their pictures.
#pragma once

#include "host/lisp/core/text.h"

namespace lisp {

struct Moment {
  int year = 0, month = 0, day = 0, weekday = 0;  // month and day from 1, weekday from Sunday 0
  int hour = 0, minute = 0, second = 0, millisecond = 0;
};

Moment localNow();
// Seconds since 1970 in local time.
Moment localMoment(int64_t secondsSince1970, int millisecond);
// Julian day number with the time of day as fraction, counted from midnight as drawings do.
double julianDate(const Moment& moment);
Moment momentOf(double julianDate);
// Picture: YYYY YY, MONTH MON MO M, DDDD DDD DD D, HH H, MM, SS, MSEC, AM/PM am/pm A/P a/p; the rest stands as it is.
Text formatDate(const Moment& moment, TextView picture);

}  // namespace lisp
