#ifndef _WIN32

#include <iostream>

#include "cli/console.h"

namespace cli {

Utf8Console::Utf8Console() = default;
Utf8Console::~Utf8Console() = default;

bool readInputLine(std::string& line) {
  if (!std::getline(std::cin, line)) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

}  // namespace cli

#endif
