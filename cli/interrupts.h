// What ends a program from outside: Ctrl-C, the time limit, the memory limit.
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

// Ends the interpreter's programs when the process has taken more memory since this began than the limit, wherever it
// went: the interpreter counts its own heap only, a drawing grows beside it. What does not end by itself within some
// seconds, or takes as much again, ends the process with exit code 7. The interpreter must outlive this.
class MemoryLimit {
 public:
  // megabytes: 0 for no limit.
  MemoryLimit(lisp::Interpreter& interpreter, double megabytes);
  ~MemoryLimit();
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;

 private:
  void look();

  lisp::Interpreter& m_interpreter;
  size_t m_limit;  // bytes
  size_t m_before;
  std::mutex m_mutex;
  std::condition_variable m_wake;
  bool m_over = false;
  std::chrono::steady_clock::time_point m_reached = std::chrono::steady_clock::time_point::max();
  std::thread m_thread;
};

}  // namespace cli
