// The module's own logger, "ldataLogger", and formatted lines on it. Formatting happens only when the line is
// really written.
#pragma once

#include "module/log/logger.h"

namespace modulelog {

inline Logger& logger() { return Logger::get(GC_T("ldataLogger")); }

inline void debug(const GCHAR* message) { logger().debug(message); }
inline void error(const GCHAR* message) { logger().error(message); }

// printf-like over 16-bit strings, as the host formats.
template <class... Values>
void debugf(const GCHAR* format, Values... values) {
  Logger& log = logger();
  if (!log.writes(Logger::kDebugging)) return;
  GcString line;
  gcutFormat(line, format, values...);
  log.debug(line.c_str());
}
template <class... Values>
void infof(const GCHAR* format, Values... values) {
  Logger& log = logger();
  if (!log.writes(Logger::kInformation)) return;
  GcString line;
  gcutFormat(line, format, values...);
  log.info(line.c_str());
}

// Attaches a file appender to the module's logger when the environment entry VRK_LOG names a file; VRK_LOG_LEVEL,
// a decimal number, sets its level. Entries are the host's (gcedGetEnv), which can be read from the init message on.
void attachFromSettings();

}  // namespace modulelog
