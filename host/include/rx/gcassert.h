// Assertions about our own mistakes. They stay on in every build: a broken promise inside the host
// must stop the process before it reaches a drawing on disk.
#pragma once

[[noreturn]] void gcAssertFailed(const char* condition, const char* message, const char* file, int line);

#define GC_ASSERT(condition, message) \
  ((condition) ? static_cast<void>(0) : gcAssertFailed(#condition, message, __FILE__, __LINE__))
