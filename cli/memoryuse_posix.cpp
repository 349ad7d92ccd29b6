#ifndef _WIN32

#include <unistd.h>

#include <cstdio>

#include "cli/memoryuse.h"

namespace cli {

namespace {

size_t pageBytes() { return static_cast<size_t>(sysconf(_SC_PAGESIZE)); }

}  // namespace

size_t residentBytes() {
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr) return 0;
  unsigned long all = 0, resident = 0;
  const int read = std::fscanf(file, "%lu %lu", &all, &resident);
  (void)std::fclose(file);
  return read == 2 ? resident * pageBytes() : 0;
}

size_t machineBytes() {
  const long pages = sysconf(_SC_PHYS_PAGES);
  return pages > 0 ? static_cast<size_t>(pages) * pageBytes() : 0;
}

}  // namespace cli

#endif
