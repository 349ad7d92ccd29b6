#include "host/ap/process.h"

#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <spawn.h>

extern char** environ;  // NOLINT(readability-redundant-declaration): not every libc declares it
#endif

namespace ap {

namespace {

bool g_allowed = false;
bool g_dryRun = false;

}  // namespace

void allowStartingPrograms(bool allowed) { g_allowed = allowed; }
bool mayStartPrograms() { return g_allowed; }
void setDryRun(bool dry) { g_dryRun = dry; }
bool isDryRun() { return g_dryRun; }

#ifdef _WIN32

bool startProgram(GcView command, GcView argument) {
  std::wstring line(command.begin(), command.end());
  if (!argument.empty()) line += L" \"" + std::wstring(argument.begin(), argument.end()) + L"\"";
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process) == 0)
    return false;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

#else

bool startProgram(GcView command, GcView argument) {
  std::vector<std::string> words;
  const std::string text = toUtf8(command);
  for (size_t at = text.find_first_not_of(' '); at < text.size(); at = text.find_first_not_of(' ', at)) {
    const size_t end = std::min(text.find(' ', at), text.size());
    words.push_back(text.substr(at, end - at));
    at = end;
  }
  if (!argument.empty()) words.push_back(toUtf8(argument));
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t child = 0;
  return !words.empty() && posix_spawnp(&child, pointers[0], nullptr, nullptr, pointers.data(), environ) == 0;
}

#endif

}  // namespace ap
