#ifdef _WIN32

#include <windows.h>

#include <algorithm>

#include "cli/childprocess.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

// One word of a command line, quoted as the C run-time library takes it apart: backslashes count only before a quote.
void appendQuoted(std::wstring& line, const std::wstring& word) {
  if (!line.empty()) line += L' ';
  line += L'"';
  size_t backslashes = 0;
  for (const wchar_t c : word) {
    if (c == L'"') line.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    line += c;
  }
  line.append(backslashes, L'\\');
  line += L'"';
}

HANDLE inheritableFile(const std::wstring& path, bool forWriting) {
  SECURITY_ATTRIBUTES security{sizeof security, nullptr, TRUE};
  return CreateFileW(path.c_str(), forWriting ? GENERIC_WRITE : GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                     &security, forWriting ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

ChildProcesses::~ChildProcesses() {
  interruptAll();
  while (!m_running.empty()) (void)waitAny();
}

int64_t ChildProcesses::start(const std::vector<std::string>& words, const std::string& outFile,
                              const std::string& errorFile, std::string& reason) {
  std::wstring line;
  for (const std::string& word : words) appendQuoted(line, gc::fromUtf8(word));
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = inheritableFile(L"NUL", false);
  startup.hStdOutput = inheritableFile(gc::fromUtf8(outFile), true);
  startup.hStdError = inheritableFile(gc::fromUtf8(errorFile), true);
  PROCESS_INFORMATION made{};
  const BOOL started =
      CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &made);
  const DWORD error = GetLastError();
  CloseHandle(startup.hStdInput);
  CloseHandle(startup.hStdOutput);
  CloseHandle(startup.hStdError);
  if (!started) {
    reason = "system error " + std::to_string(error);
    return 0;
  }
  CloseHandle(made.hThread);
  m_running.push_back({made.dwProcessId, made.hProcess});
  return made.dwProcessId;
}

ChildProcesses::Ended ChildProcesses::waitAny() {
  constexpr DWORD kPauseMs = 200;
  std::vector<HANDLE> handles;
  for (const Child& child : m_running) handles.push_back(child.handle);
  if (handles.empty()) return {};
  const DWORD count = std::min<DWORD>(static_cast<DWORD>(handles.size()), MAXIMUM_WAIT_OBJECTS);
  const DWORD which = WaitForMultipleObjects(count, handles.data(), FALSE, kPauseMs);
  if (which >= count) return {};
  DWORD code = 0;
  GetExitCodeProcess(handles[which], &code);
  CloseHandle(handles[which]);
  const int64_t id = m_running[which].id;
  m_running.erase(m_running.begin() + which);
  return {true, id, static_cast<int>(code)};
}

// There is no gentle way from another process; what a child had begun to save is not yet in its place.
void ChildProcesses::interruptAll() {
  constexpr UINT kInterruptedCode = 130;
  for (const Child& child : m_running) TerminateProcess(child.handle, kInterruptedCode);
}

std::string programPath() {
  wchar_t path[4096];
  const DWORD length = GetModuleFileNameW(nullptr, path, static_cast<DWORD>(std::size(path)));
  return gc::toUtf8(std::wstring_view(path, length));
}

int64_t processId() { return GetCurrentProcessId(); }

}  // namespace cli

#endif
