#include "module/log/modulelog.h"

#include "module/log/fileappender.h"

namespace {

// The number a text consists of; false when it is anything else.
bool parseLevel(const GcString& text, int32_t& level) {
  const bool negative = text.length() > 0 && text[0] == GC_T('-');
  const std::size_t digits = text.length() - (negative ? 1 : 0);
  if (digits == 0 || digits > 4) return false;
  int32_t value = 0;
  for (std::size_t i = negative ? 1 : 0; i < text.length(); ++i) {
    if (text[i] < GC_T('0') || text[i] > GC_T('9')) return false;
    value = value * 10 + (text[i] - GC_T('0'));
  }
  level = negative ? -value : value;
  return true;
}

}  // namespace

void modulelog::attachFromSettings() {
  GcString value;
  if (gcedGetEnv(GC_T("VRK_LOG"), value) != RTNORM || value.isEmpty()) return;
  auto appender = std::make_unique<FileAppender>(value);
  appender->open();
  logger().setAppender(std::move(appender));
  int32_t level = 0;
  if (gcedGetEnv(GC_T("VRK_LOG_LEVEL"), value) == RTNORM && parseLevel(value, level)) logger().setLevel(level);
}
