// Programs started beside this one, their output into files. One implementation per platform.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace cli {

class ChildProcesses {
 public:
  struct Ended {
    bool any = false;  // false: nothing ended in the time given, or a signal came
    int64_t id = 0;
    int exitCode = 0;  // 128 and the signal's number when one ended it
  };

  ChildProcesses() = default;
  ~ChildProcesses();  // interrupts and waits for those that still run
  ChildProcesses(const ChildProcesses&) = delete;
  ChildProcesses& operator=(const ChildProcesses&) = delete;

  // Starts a program; words in UTF-8, the first is the program's path. Standard input is empty. Gives its id, 0 with a
  // reason when it could not be started.
  int64_t start(const std::vector<std::string>& words, const std::string& outFile, const std::string& errorFile,
                std::string& reason);
  // Waits for one of them to end, at most about a fifth of a second.
  Ended waitAny();
  void interruptAll();
  [[nodiscard]] size_t running() const { return m_running.size(); }

 private:
  struct Child {
    int64_t id = 0;
    void* handle = nullptr;  // Windows
  };
  std::vector<Child> m_running;
};

// The path of the running program.
std::string programPath();
// The id of this process.
int64_t processId();

}  // namespace cli
