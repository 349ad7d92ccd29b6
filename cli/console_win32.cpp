#ifdef _WIN32

#include <windows.h>

#include <iostream>

#include "cli/console.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

constexpr wchar_t kEndOfInput = 0x1A;  // Ctrl-Z, then Enter

bool isConsole(DWORD which) {
  DWORD mode;
  return GetConsoleMode(GetStdHandle(which), &mode) != 0;
}

bool readConsoleLine(std::string& line) {
  std::wstring typed;
  while (typed.empty() || typed.back() != L'\n') {
    wchar_t block[1024];
    DWORD count = 0;
    if (!ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), block, static_cast<DWORD>(std::size(block)), &count, nullptr))
      return false;
    if (count == 0) break;  // Ctrl-C
    typed.append(block, count);
  }
  if (!typed.empty() && typed.front() == kEndOfInput) return false;
  while (!typed.empty() && (typed.back() == L'\n' || typed.back() == L'\r')) typed.pop_back();
  line = gc::toUtf8(typed);
  return true;
}

}  // namespace

Utf8Console::Utf8Console() {
  if (!isConsole(STD_OUTPUT_HANDLE) && !isConsole(STD_ERROR_HANDLE)) return;
  m_former = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
}

Utf8Console::~Utf8Console() {
  if (m_former != 0) SetConsoleOutputCP(m_former);
}

bool readInputLine(std::string& line) {
  if (isConsole(STD_INPUT_HANDLE)) return readConsoleLine(line);
  if (!std::getline(std::cin, line)) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

}  // namespace cli

#endif
