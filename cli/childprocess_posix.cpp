#ifndef _WIN32

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <ctime>

#include "cli/childprocess.h"

extern char** environ;

namespace cli {

ChildProcesses::~ChildProcesses() {
  interruptAll();
  while (!m_running.empty()) (void)waitAny();
}

int64_t ChildProcesses::start(const std::vector<std::string>& words, const std::string& outFile,
                              const std::string& errorFile, std::string& reason) {
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  constexpr int kCreate = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, outFile.c_str(), kCreate, 0600);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errorFile.c_str(), kCreate, 0600);
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  pid_t id = 0;
  const int failed = posix_spawn(&id, arguments[0], &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  if (failed != 0) {
    reason = std::strerror(failed);
    return 0;
  }
  m_running.push_back({id, nullptr});
  return id;
}

ChildProcesses::Ended ChildProcesses::waitAny() {
  constexpr timespec kPause{0, 5'000'000};
  for (int tries = 0; tries < 40; ++tries) {
    for (size_t i = 0; i < m_running.size(); ++i) {
      int status = 0;
      const pid_t id = waitpid(static_cast<pid_t>(m_running[i].id), &status, WNOHANG);
      if (id == 0) continue;
      const int64_t ended = m_running[i].id;
      m_running.erase(m_running.begin() + static_cast<std::ptrdiff_t>(i));
      return {true, ended, WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status)};
    }
    if (nanosleep(&kPause, nullptr) != 0) break;  // a signal came
  }
  return {};
}

void ChildProcesses::interruptAll() {
  for (const Child& child : m_running) kill(static_cast<pid_t>(child.id), SIGINT);
}

std::string programPath() {
  char path[4096];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  return length <= 0 ? std::string("gcad") : std::string(path, static_cast<size_t>(length));
}

int64_t processId() { return getpid(); }

}  // namespace cli

#endif
