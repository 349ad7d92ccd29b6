// The two things about log files that differ between platforms.
#pragma once

#include <cstdio>
#include <ctime>

#include "module/app/host.h"

namespace logplatform {

// Opens for appending without any translation of line ends; null when that fails.
std::FILE* openToAppend(const GcString& fileName);
std::tm localTime(std::time_t time);

}  // namespace logplatform
