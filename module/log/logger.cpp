#include "module/log/logger.h"

#include <cstdio>
#include <map>
#include <string>
#include <string_view>

namespace {

using Name = std::basic_string<GCHAR>;
using NameView = std::basic_string_view<GCHAR>;
using Registry = std::map<Name, Logger, std::less<>>;

// Static objects that die after destroyAll() may log once more; what they make anew goes with the registry, silently.
Registry& registry() {
  static Registry loggers;
  return loggers;
}

void say(const char* text) {
  std::puts(text);
  std::fflush(stdout);
}

}  // namespace

Logger& Logger::get(const GCHAR* name) {
  Registry& loggers = registry();
  const NameView key(name);
  const auto found = loggers.find(key);
  if (found != loggers.end()) return found->second;
  say("Konstruktor Logger");
  return loggers[Name(key)];
}

void Logger::destroyAll() {
  Registry& loggers = registry();
  for (auto& [name, logger] : loggers) {
    say("Destruktor Logger");
    if (logger.m_appender != nullptr) logger.m_appender->close();
  }
  loggers.clear();
}

void Logger::write(Level level, const GCHAR* prefix, const GCHAR* message) {
  if (!writes(level)) return;
  GcString line(prefix);
  line += GcString(message);
  m_appender->writeLine(line);
}
