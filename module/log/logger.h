// Named loggers for diagnostic lines. A logger without an appender drops everything, and no appender is attached
// unless the person asks for a log (see logsettings.h). Main thread only; nothing is locked.
#pragma once

#include <cstdint>
#include <memory>

#include "module/log/appender.h"

class Logger {
 public:
  // Deliberate: information is the most talkative level, not debugging.
  enum Level : int32_t { kErrors = 0, kDebugging = 1, kInformation = 2 };

  // The logger of the name, made at the first call. Names are compared exactly.
  static Logger& get(const GCHAR* name);
  static Logger& defaultLogger() { return get(GC_T("DefaultLogger")); }
  // Tells every appender to close and forgets all loggers.
  static void destroyAll();

  [[nodiscard]] int32_t level() const { return m_level; }
  void setLevel(int32_t level) { m_level = level; }
  [[nodiscard]] bool isEnabled() const { return m_enabled; }
  void setEnabled(bool enabled) { m_enabled = enabled; }
  [[nodiscard]] Appender* appender() const { return m_appender.get(); }
  void setAppender(std::unique_ptr<Appender> appender) { m_appender = std::move(appender); }

  [[nodiscard]] bool writes(Level level) const { return m_enabled && m_appender != nullptr && m_level >= level; }

  void error(const GCHAR* message) { write(kErrors, GC_T("ERROR: "), message); }
  void debug(const GCHAR* message) { write(kDebugging, GC_T("DEBUG: "), message); }
  void info(const GCHAR* message) { write(kInformation, GC_T("INFO: "), message); }

 private:
  void write(Level level, const GCHAR* prefix, const GCHAR* message);

  int32_t m_level = kInformation;
  bool m_enabled = true;
  std::unique_ptr<Appender> m_appender;
};
