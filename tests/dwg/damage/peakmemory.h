// How much memory a call takes at its peak.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>

namespace gc::dwg {

// Kilobytes of a line of the process's status; 0 where the system has none.
inline uint64_t statusKilobytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind(name + ":", 0) == 0) return std::stoull(line.substr(name.size() + 1));
  return 0;
}

// Bytes the call added to what the process has, at most; 0 where this cannot be told, sanitizers' own memory included.
template <class F>
uint64_t peakBytesOf(const F& call) {
#if defined(__SANITIZE_ADDRESS__)
  call();
  return 0;
#else
  std::ofstream("/proc/self/clear_refs") << 5;  // forgets the peak until here
  const uint64_t before = statusKilobytes("VmRSS");
  call();
  const uint64_t peak = statusKilobytes("VmHWM");
  return peak > before ? (peak - before) * 1024 : 0;
#endif
}

}  // namespace gc::dwg
