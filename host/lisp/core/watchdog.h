// Ends what an interpreter runs when its time is up, unless the watchdog ends before.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "host/lisp/core/interpreter.h"

namespace lisp {

class Watchdog {
 public:
  // `seconds` from now. The interpreter must outlive the watchdog.
  Watchdog(Interpreter& interpreter, double seconds);
  ~Watchdog();
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

 private:
  Interpreter& m_interpreter;
  std::mutex m_mutex;
  std::condition_variable m_wake;
  bool m_over = false;
  std::thread m_thread;
};

}  // namespace lisp
