#ifdef _WIN32

#include <windows.h>

#include <psapi.h>

#include "cli/memoryuse.h"

namespace cli {

size_t residentBytes() {
  PROCESS_MEMORY_COUNTERS counters = {};
  return K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) != 0 ? counters.WorkingSetSize : 0;
}

size_t machineBytes() {
  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof status;
  return GlobalMemoryStatusEx(&status) != 0 ? static_cast<size_t>(status.ullTotalPhys) : 0;
}

}  // namespace cli

#endif
