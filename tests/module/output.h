// What a program of the build prints; empty when it cannot be run.
#pragma once

#include <cstdio>
#include <string>

#ifdef _WIN32
#define popen _popen
#define pclose _pclose
#endif

inline std::string outputOf(const std::string& command) {
  std::string out;
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return out;
  char buffer[4096];
  for (std::size_t got = 0; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, got);
  pclose(pipe);
  return out;
}
