// What ends a program from outside: Ctrl-C and the time limit.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "host/lisp/core/watchdog.h"

namespace cli {

// While it lives, Ctrl-C cancels what the interpreter runs. Pressed three times without effect (a program may catch
// cancellation, and builtins are not interrupted), it ends the process with exit code 130.
class Interrupts {
 public:
  explicit Interrupts(lisp::Interpreter& interpreter);
  ~Interrupts();
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;

  // The presses so far have been answered.
  static void forget();
};

// Ends the process with exit code 6 some seconds after its time is up, should nothing that can be interrupted run then.
// `seconds` count from the start of the process's work; 0 for no limit.
class TimeLimit {
 public:
  explicit TimeLimit(double seconds);
  ~TimeLimit();
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;

  // From now on the interpreter's programs end in time. It must outlive this.
  void watch(lisp::Interpreter& interpreter);
  // Before the interpreter goes.
  void stopWatching() { m_watchdog.reset(); }

 private:
  [[nodiscard]] double secondsLeft() const;

  double m_seconds;
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
  std::unique_ptr<lisp::Watchdog> m_watchdog;
  std::mutex m_mutex;
  std::condition_variable m_wake;
  bool m_over = false;
  std::thread m_thread;
};

}  // namespace cli
